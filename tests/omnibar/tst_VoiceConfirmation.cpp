// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "Presses.h"
#include "ScriptedVoice.h"
#include "SharedWindow.h"

#include "AgentBridge.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

#include <cmath>
#include <functional>
#include <memory>

namespace
{

const QString s_transcript = QStringLiteral("open the file manager");
const QString s_magenta = rgb(QStringLiteral("#FB21FD"));

//! What the user does to a transcript that waits for confirmation.
struct Ending
{
    const char *name;
    std::function<void(Conversation &)> act;
    bool sends;
};

void pressKey(Conversation &bar, Qt::Key key)
{
    bar.item("inputField")->forceActiveFocus();
    bar.key(key);
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(Conversation &)>)

//! The strip below the bar while a transcript waits to be sent. The timer is stopped or driven by the tests.
//! One long file, because the tests share the window.
class tst_VoiceConfirmation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void strip();
    void appearsInAMovement();
    void ring_data();
    void ring();
    void labels_data();
    void labels();
    void buttons_data();
    void buttons();
    void endings_data();
    void endings();
    void countdown();
    void withoutADelay();
    void manualMode();
    void rephrase();
    void rephraseButton_data();
    void rephraseButton();
    void rephraseWithTheBridgeGone();
    void attachedFilesStay();
    void compactWindow();
    void focusReturnsToTheInput();
    void announcements();
    void looks_data();
    void looks();

private:
    //! Says something and halts the countdown.
    void say(Conversation &bar, const QString &transcript = s_transcript);
    //! Opens the shared window for a voice with a long countdown.
    Conversation &open();
    static QString label(Conversation &bar) { return bar.item("voiceConfirmLabel")->property("text").toString(); }
    static bool isPending(Conversation &bar) { return bar.property("voiceConfirmPending").toBool(); }
    static QString input(Conversation &bar) { return bar.property("inputField.text").toString(); }

    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
};

void tst_VoiceConfirmation::initTestCase()
{
    QAccessible::setActive(true);
    QGuiApplication::styleHints()->setCursorFlashTime(0);
}

Conversation &tst_VoiceConfirmation::open()
{
    Conversation &bar = m_window.take();
    m_voice->set("voiceConfirmDelaySec", 12);
    return bar;
}

void tst_VoiceConfirmation::say(Conversation &bar, const QString &transcript)
{
    m_voice->emitSignal("transcriptReady", transcript);
    bar.evaluate("voiceConfirmTimer.stop()");
    QVERIFY(bar.settle());
}

void tst_VoiceConfirmation::strip()
{
    Conversation &bar = open();
    QVERIFY(bar.begin());
    QVERIFY(!bar.item("voiceConfirmBar"));
    say(bar);
    QQuickItem *strip = bar.item("voiceConfirmBar");
    const QRectF card = bar.place(bar.item("barCard"));
    QCOMPARE(bar.place(strip), QRectF(card.left() + 20, card.bottom() + 4, 680, 36));
    QCOMPARE(strip->property("radius").toInt(), 10);
    QCOMPARE(colourOf(strip), rgba(0.15, 0.10, 0.22, 0.92));
    QCOMPARE(colourOf(strip, "border.color"), rgba(0.9, 0.5, 1.0, 0.25));
    QVERIFY(!bar.isSeen(bar.item("idleCards")));
    QCOMPARE(QAccessible::queryAccessibleInterface(strip)->text(QAccessible::Name), text("Voice prompt"));
    QCOMPARE(bar.property("shortcutHintHeight").toInt(), 62);

    // From left to right, in the middle of the strip.
    qreal right = 0;
    for (const char *name :
         {"countdownRing", "voiceConfirmLabel", "voiceRephraseBtn", "voiceSendBtn", "voiceCancelBtn"}) {
        const QRectF place = bar.place(bar.item(name));
        QVERIFY2(right == 0 || place.left() == right + 12, name);
        QVERIFY2(qAbs(place.center().y() - bar.place(strip).center().y()) <= 1, name);
        right = place.right();
    }
    QCOMPARE(bar.place(strip).right() - right, 12.0);

    // In a conversation the bar makes room for it above the hint.
    bar.emitReply(text("hello"));
    QVERIFY(bar.settle());
    QCOMPARE(bar.place(bar.item("barCard")).bottom(), bar.window()->height() - 62.0);
    QVERIFY(bar.place(bar.item("keyHint")).top() >= bar.place(strip).bottom());
    QVERIFY(bar.isSeen(strip));
    QCOMPARE(bar.item("keyHint")->property("text").toString(),
             text("<b>Esc</b> to cancel voice · <b>Enter</b> to send"));
}

void tst_VoiceConfirmation::appearsInAMovement()
{
    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar);
    QQuickItem *strip = bar.item("voiceConfirmBar");
    QCOMPARE(bar.behaviour(strip, "height"), text("200 OutCubic"));
    QCOMPARE(strip->height(), 36.0);
    bar.invoke("voiceConfirmCancel");
    QVERIFY(strip->height() > 0);
    // Its content is gone at once: it would show the state of the next confirmation.
    QVERIFY(!bar.isSeen(bar.item("voiceConfirmLabel")));
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(strip));
    QVERIFY(bar.isSeen(bar.item("idleCards")));
    say(bar);
    QCOMPARE(strip->height(), 36.0);
}

void tst_VoiceConfirmation::ring_data()
{
    QTest::addColumn<int>("total");
    QTest::addColumn<int>("left");
    QTest::addColumn<double>("part");
    QTest::addColumn<bool>("isShown");

    QTest::newRow("full") << 12 << 12 << 1.0 << true;
    QTest::newRow("a quarter is over") << 12 << 9 << 0.75 << true;
    QTest::newRow("the last second") << 12 << 1 << 1 / 12.0 << true;
    QTest::newRow("over") << 12 << 0 << 0.0 << false;
    QTest::newRow("a shorter delay was set meanwhile") << 4 << 9 << 1.0 << true;
    QTest::newRow("no delay was set meanwhile") << 0 << 9 << 1.0 << true;
}

void tst_VoiceConfirmation::ring()
{
    QFETCH(int, total);
    QFETCH(int, left);
    QFETCH(double, part);
    QFETCH(bool, isShown);

    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar);
    m_voice->set("voiceConfirmDelaySec", total);
    bar.setProperty("voiceConfirmCountdown", left);
    QQuickItem *ring = bar.item("countdownRing");
    QCOMPARE(bar.isSeen(ring), isShown);
    QCOMPARE(ring->size(), QSizeF(22, 22));
    QCOMPARE(ring->property("radius").toDouble(), 8.0);
    QCOMPARE(ring->property("line").toDouble(), 2.0);
    QCOMPARE(colourOf(ring), s_magenta);
    QCOMPARE(colourOf(ring, "track"), rgba(1, 1, 1, 0.15));
    QCOMPARE(ring->property("from").toDouble(), -M_PI / 2);
    QCOMPARE(ring->property("to").toDouble(), -M_PI / 2 + 2 * M_PI * part);
}

void tst_VoiceConfirmation::labels_data()
{
    QTest::addColumn<bool>("rephrasing");
    QTest::addColumn<int>("left");
    QTest::addColumn<QString>("label");

    QTest::newRow("countdown") << false << 12 << text("Sending in 12s");
    QTest::newRow("last second") << false << 1 << text("Sending in 1s");
    QTest::newRow("edited") << false << 0 << text("Edited");
    QTest::newRow("rephrasing") << true << 3 << text("Rephrasing…");
    QTest::newRow("rephrasing after an edit") << true << 0 << text("Rephrasing…");
}

void tst_VoiceConfirmation::labels()
{
    QFETCH(bool, rephrasing);
    QFETCH(int, left);

    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar);
    bar.setProperty("voiceRephrasing", rephrasing);
    bar.setProperty("voiceConfirmCountdown", left);
    QTEST(label(bar), "label");
    QCOMPARE(colourOf(bar.item("voiceConfirmLabel")), rgba(0.85, 0.7, 1.0, 0.9));
    QCOMPARE(bar.item("voiceConfirmLabel")->property("font").value<QFont>().pointSizeF(), 9.0);
}

void tst_VoiceConfirmation::buttons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<QString>("hoverFill");

    // The width of "Rephrase" follows its text.
    QTest::newRow("Rephrase") << text("voiceRephraseBtn") << text("Rephrase") << 0 << rgba(0.35, 0.65, 1.0, 0.16)
                              << rgba(0.35, 0.65, 1.0, 0.28);
    QTest::newRow("Send") << text("voiceSendBtn") << text("Send") << 48 << s_magenta << rgb(text("#d916dd"));
    QTest::newRow("Cancel") << text("voiceCancelBtn") << text("Cancel") << 54 << rgba(1, 1, 1, 0.08)
                            << rgba(1, 1, 1, 0.16);
}

void tst_VoiceConfirmation::buttons()
{
    QFETCH(QString, name);
    QFETCH(QString, label);
    QFETCH(int, width);
    QFETCH(QString, fill);
    QFETCH(QString, hoverFill);

    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar);
    QQuickItem *button = bar.item(name);
    auto *content = button->property("contentItem").value<QQuickItem *>();
    QCOMPARE(button->height(), 24.0);
    QCOMPARE(button->width(), width > 0 ? qreal(width) : std::ceil(content->implicitWidth() + 14));
    QCOMPARE(button->property("label").toString(), label);
    QVERIFY(!content->property("truncated").toBool());
    QCOMPARE(colourOf(content), rgb(text("white")));
    QCOMPARE(content->property("font").value<QFont>().bold(), label == text("Send"));
    QCOMPARE(content->property("font").value<QFont>().pointSizeF(), 9.0);
    QCOMPARE(colourOf(backgroundOf(button)), fill);
    bar.hover(button);
    QTRY_COMPARE(colourOf(backgroundOf(button)), hoverFill);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QCOMPARE(accessible->text(QAccessible::Name), label);
    bar.hover(bar.item("scrim"));
}

void tst_VoiceConfirmation::endings_data()
{
    QTest::addColumn<std::function<void(Conversation &)>>("act");
    QTest::addColumn<bool>("sends");

    for (const auto &way : waysToPress) {
        const By by = way.by;
        const QByteArray send = QByteArray("Send, ") + way.name;
        QTest::newRow(send.constData()) << std::function<void(Conversation &)>([by](Conversation &bar) {
            press(bar, bar.item("voiceSendBtn"), by);
        }) << true;
        const QByteArray cancel = QByteArray("Cancel, ") + way.name;
        QTest::newRow(cancel.constData()) << std::function<void(Conversation &)>([by](Conversation &bar) {
            press(bar, bar.item("voiceCancelBtn"), by);
        }) << false;
    }
    const Ending others[] = {
        {"Enter in the input", [](Conversation &bar) { pressKey(bar, Qt::Key_Return); }, true},
        {"Escape in the input", [](Conversation &bar) { pressKey(bar, Qt::Key_Escape); }, false},
        {"Escape on a button",
         [](Conversation &bar) {
             bar.focus(bar.item("voiceRephraseBtn"));
             bar.key(Qt::Key_Escape);
         },
         false},
        {"the bar's send button", [](Conversation &bar) { bar.click("sendBtn"); }, true},
    };
    for (const auto &[name, act, sends] : others) {
        QTest::newRow(name) << act << sends;
    }
}

void tst_VoiceConfirmation::endings()
{
    QFETCH(std::function<void(Conversation &)>, act);
    QFETCH(bool, sends);

    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar);
    act(bar);
    QVERIFY(!isPending(bar));
    QCOMPARE(input(bar), QString());
    QCOMPARE(bar.property("voiceConfirmCountdown").toInt(), 12);
    QCOMPARE(bar.rows(), sends ? QStringList(text("user: ") + s_transcript) : QStringList());
    if (sends) {
        const auto request = bar.bridge.takeRequest(text("chat"));
        QCOMPARE(request.params.value(text("message")).toString(), s_transcript);
        QCOMPARE(request.params.value(text("inputMode")).toString(), text("voice"));
        QVERIFY(bar.answer(request, text("Done.")));
    }
    QVERIFY(!bar.property("compactMode").toBool());
}

void tst_VoiceConfirmation::countdown()
{
    Conversation &bar = open();
    m_voice->set("voiceConfirmDelaySec", 3);
    QVERIFY(bar.begin());
    m_voice->emitSignal("transcriptReady", s_transcript);
    QObject *timer = bar.property("voiceConfirmTimer").value<QObject *>();
    QCOMPARE(timer->property("interval").toInt(), 1000);
    QVERIFY(timer->property("running").toBool());
    bar.evaluate("voiceConfirmTimer.stop()");
    for (const char *expected : {"Sending in 3s", "Sending in 2s", "Sending in 1s"}) {
        QCOMPARE(label(bar), text(expected));
        QCOMPARE(bar.rows(), QStringList());
        bar.evaluate("voiceConfirmTimer.triggered()");
    }
    QCOMPARE(bar.rows(), QStringList(text("user: ") + s_transcript));
    QVERIFY(!isPending(bar));
    // The next typed prompt is no voice prompt.
    QVERIFY(bar.answer(bar.bridge.takeRequest(text("chat")), text("Done.")));
    QCOMPARE(bar.ask(text("typed")).params.value(text("inputMode")).toString(), text("text"));
}

void tst_VoiceConfirmation::withoutADelay()
{
    Conversation &bar = open();
    m_voice->set("voiceConfirmDelaySec", 0);
    QVERIFY(bar.begin());
    const bool wasBuilt = bar.item("voiceConfirmBar");
    m_voice->emitSignal("transcriptReady", s_transcript);
    const auto request = bar.bridge.takeRequest(text("chat"));
    QCOMPARE(request.params.value(text("message")).toString(), s_transcript);
    QCOMPARE(request.params.value(text("inputMode")).toString(), text("voice"));
    QCOMPARE(bar.item("voiceConfirmBar") != nullptr, wasBuilt);
    QVERIFY(!wasBuilt || !bar.isSeen(bar.item("voiceConfirmBar")));
    QVERIFY(bar.answer(request, text("Done.")));
}

void tst_VoiceConfirmation::manualMode()
{
    Conversation &bar = open();
    m_voice->set("voiceSubmitMode", text("manual"));
    QVERIFY(bar.begin());
    for (const char *words : {"open", "the browser"}) {
        m_voice->set("isListening", true);
        m_voice->set("isListening", false);
        m_voice->emitSignal("transcriptReady", text(words));
    }
    QVERIFY(bar.settle());
    QCOMPARE(input(bar), text("open the browser"));
    QVERIFY(bar.item("inputField")->hasActiveFocus());
    QVERIFY(!isPending(bar));
    QCOMPARE(bar.rows(), QStringList());
    // Typed while the next utterance is being transcribed.
    m_voice->set("isTranscribing", true);
    bar.type(" now");
    m_voice->set("isTranscribing", false);
    m_voice->emitSignal("transcriptReady", text("please"));
    QCOMPARE(input(bar), text("open the browser now please"));
    bar.key(Qt::Key_Return);
    const auto request = bar.bridge.takeRequest(text("chat"));
    QCOMPARE(request.params.value(text("message")).toString(), text("open the browser now please"));
    QCOMPARE(request.params.value(text("inputMode")).toString(), text("text"));
    QVERIFY(bar.answer(request, text("Done.")));
    m_voice->emitSignal("transcriptReady", text("again"));
    QCOMPARE(input(bar), text("again"));
}

void tst_VoiceConfirmation::rephrase()
{
    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar, text("open uh the browser"));
    bar.click("voiceRephraseBtn");
    QCOMPARE(label(bar), text("Rephrasing…"));
    const auto first = bar.bridge.takeRequest(text("chat"));
    QVERIFY(first.params.value(text("message")).toString().endsWith(text("\"open uh the browser\"")));

    // Nothing usable: the countdown stays halted, and the label goes on to show it.
    bar.bridge.reply(first, QJsonObject {{text("response"), text(" ")}});
    QTRY_COMPARE(label(bar), text("Sending in 12s"));
    QCOMPARE(bar.evaluate("voiceConfirmTimer.running").toBool(), false);
    QCOMPARE(input(bar), text("open uh the browser"));

    bar.click("voiceRephraseBtn");
    bar.bridge.reply(bar.bridge.takeRequest(text("chat")),
                     QJsonObject {{text("response"), text("\"Open the browser\"")}});
    QTRY_COMPARE(input(bar), text("Open the browser"));
    QCOMPARE(label(bar), text("Sending in 12s"));
    QCOMPARE(bar.evaluate("voiceConfirmTimer.running").toBool(), true);
    QCOMPARE(bar.rows(), QStringList());

    // The user's edit counts, not a late reply.
    bar.evaluate("voiceConfirmTimer.stop()");
    bar.click("voiceRephraseBtn");
    const auto late = bar.bridge.takeRequest(text("chat"));
    bar.item("inputField")->forceActiveFocus();
    bar.type("!");
    QCOMPARE(label(bar), text("Edited"));
    bool arrived = false;
    const auto connection = connect(bar.agent(), &AgentBridge::rephraseReady, this, [&arrived] { arrived = true; });
    bar.bridge.reply(late, QJsonObject {{text("response"), text("Launch a browser")}});
    QTRY_VERIFY(arrived);
    disconnect(connection);
    QCOMPARE(input(bar), text("Open the browser!"));
    QCOMPARE(label(bar), text("Edited"));
    bar.key(Qt::Key_Return);
    const auto request = bar.bridge.takeRequest(text("chat"));
    QCOMPARE(request.params.value(text("message")).toString(), text("Open the browser!"));
    QCOMPARE(request.params.value(text("inputMode")).toString(), text("voice"));
    QVERIFY(bar.answer(request, text("Done.")));
}

void tst_VoiceConfirmation::rephraseButton_data()
{
    QTest::addColumn<By>("by");

    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by;
    }
}

void tst_VoiceConfirmation::rephraseButton()
{
    QFETCH(By, by);

    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar);
    QQuickItem *button = bar.item("voiceRephraseBtn");
    press(bar, button, by);
    QVERIFY(bar.property("voiceRephrasing").toBool());
    QCOMPARE(button->property("label").toString(), text("..."));
    QCOMPARE(button->opacity(), 0.55);
    QVERIFY(!button->isEnabled());
    QCOMPARE(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name), text("Rephrase"));
    bar.bridge.reply(bar.bridge.takeRequest(text("chat")), QJsonObject {{text("response"), text("Open it")}});
    QTRY_VERIFY(button->isEnabled());
    QCOMPARE(button->opacity(), 1.0);
    QCOMPARE(button->property("label").toString(), text("Rephrase"));
}

void tst_VoiceConfirmation::rephraseWithTheBridgeGone()
{
    Conversation &bar = open();
    bar.expectWarning("[AgentBridge] WebSocket error:");
    QVERIFY(bar.begin());
    bar.spoil();
    say(bar);
    bar.click("voiceRephraseBtn");
    bar.bridge.takeRequest(text("chat"));
    bar.bridge.drop();
    QTRY_COMPARE(label(bar), text("Sending in 12s"));
    QCOMPARE(input(bar), s_transcript);
    // Without a connection the text comes back unchanged.
    bar.click("voiceRephraseBtn");
    QVERIFY(!bar.property("voiceRephrasing").toBool());
    QCOMPARE(input(bar), s_transcript);
    QCOMPARE(bar.evaluate("voiceConfirmTimer.running").toBool(), true);
}

void tst_VoiceConfirmation::attachedFilesStay()
{
    Conversation &bar = open();
    QVERIFY(bar.begin());
    const QVariantMap file {{text("name"), text("notes.txt")},
                            {text("path"), text("/home/me/notes.txt")},
                            {text("content"), text("secret")},
                            {text("chars"), 6}};
    bar.setProperty("slashAttachedFiles", QVariantList {file});
    say(bar);
    bar.click("voiceSendBtn");
    const auto request = bar.bridge.takeRequest(text("chat"));
    QCOMPARE(request.params.value(text("message")).toString(), s_transcript);
    QCOMPARE(bar.evaluate("slashAttachedFiles.length").toInt(), 1);
    QVERIFY(bar.answer(request, text("Done.")));
}

void tst_VoiceConfirmation::compactWindow()
{
    Conversation &bar = open();
    QVERIFY(bar.begin());
    say(bar);
    bar.invoke("shrinkToCompactBubble");
    QVERIFY(bar.settle());
    QVERIFY(isPending(bar));
    QVERIFY(!bar.isSeen(bar.item("voiceConfirmBar")));
    bar.invoke("expandFromBubble");
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("voiceConfirmBar")));
    QCOMPARE(input(bar), s_transcript);
}

void tst_VoiceConfirmation::focusReturnsToTheInput()
{
    Conversation &bar = open();
    QVERIFY(bar.begin());
    for (const char *name : {"voiceSendBtn", "voiceCancelBtn"}) {
        say(bar);
        bar.focus(bar.item(name));
        bar.key(Qt::Key_Return);
        QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    }
}

void tst_VoiceConfirmation::announcements()
{
    Conversation &bar = open();
    QVERIFY(bar.begin());
    const auto announced = [&bar] {
        QStringList names;
        const QList<QQuickItem *> announcements = bar.items("announcement");
        for (QQuickItem *announcement : announcements) {
            if (announcement->isVisible()) {
                names += QAccessible::queryAccessibleInterface(announcement)->text(QAccessible::Name);
            }
        }
        return names.join(QLatin1Char('|'));
    };
    m_voice->set("isListening", true);
    QCOMPARE(announced(), text("Listening..."));
    m_voice->set("isListening", false);
    QCOMPARE(announced(), text("Listening ended"));
    say(bar, text(" <b>open</b>\nit "));
    QCOMPARE(announced(), text("Understood: <b>open</b> it"));
}

void tst_VoiceConfirmation::looks_data()
{
    QTest::addColumn<bool>("light");
    QTest::addColumn<QString>("state");

    for (const bool light : {false, true}) {
        for (const char *state : {"idle", "countdown", "edited", "rephrasing", "focused", "manual"}) {
            QTest::newRow(qPrintable(QLatin1String(state) + QLatin1String(light ? "-light" : "-dark")))
                << light << QString::fromLatin1(state);
        }
    }
}

//! Everything fits; screenshots on request.
void tst_VoiceConfirmation::looks()
{
    QFETCH(bool, light);
    QFETCH(QString, state);

    Conversation &bar = open();
    QVERIFY(bar.begin());
    bar.setLight(light);
    const bool isIdle = state == text("idle");
    if (!isIdle) {
        QVERIFY(bar.exchange(text("What is the time?"), text("It is **late**.")));
    }
    const bool isManual = state == text("manual");
    m_voice->set("voiceSubmitMode", text(isManual ? "manual" : "auto"));
    m_voice->emitSignal("transcriptReady", s_transcript.repeated(isIdle ? 1 : 6));
    bar.evaluate("voiceConfirmTimer.stop()");
    bar.setProperty("voiceConfirmCountdown", state == text("edited") ? 0 : 8);
    bar.setProperty("voiceRephrasing", state == text("rephrasing"));
    QVERIFY(bar.settle());
    if (state == text("focused")) {
        bar.focus(bar.item("voiceSendBtn"));
        QVERIFY(bar.settle());
    }
    if (!isManual) {
        QCOMPARE(bar.looseTexts(bar.item("voiceConfirmBar")), QStringList());
    }
    bar.screenshot(text("confirm-") + QString::fromLatin1(QTest::currentDataTag()));
}

REGISTER_TEST(tst_VoiceConfirmation, QGuiApplication)

#include "tst_VoiceConfirmation.moc"
