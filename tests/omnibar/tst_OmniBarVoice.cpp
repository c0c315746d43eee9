// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "Presses.h"
#include "ScriptedVoice.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

#include <memory>

namespace
{

const QStringList s_silence;

bool openWithSpeaker(Conversation &bar, ScriptedVoice &voice)
{
    voice.set("ttsAvailable", true);
    return bar.open() && bar.settle();
}

} // namespace

//! The speaker button, transcripts that appear in the input, and replies that are read aloud.
class tst_OmniBarVoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void speaker_data();
    void speaker();
    void speakerComesToRest();
    void clickOnTheSpeaker();
    void inputMakesRoomForTheSpeaker();

    void transcriptGoesIntoTheInput();
    void transcriptWhileCompact();
    void repliesAreSpoken();
    void looks_data();
    void looks();

private:
    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
};

void tst_OmniBarVoice::initTestCase()
{
    QAccessible::setActive(true);
    QGuiApplication::styleHints()->setCursorFlashTime(0);
}

void tst_OmniBarVoice::speaker_data()
{
    QTest::addColumn<bool>("speaking");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<QString>("hoverFill");
    QTest::addColumn<QString>("tip");
    // For assistive technology, which adds "checked" or "not checked" to the name if a click changes that.
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");

    const QString blue = rgba(0.15, 0.55, 0.92, 0.85);
    const QString faint = rgba(1, 1, 1, 0.12);
    const QString name = text("Read replies aloud");
    QTest::newRow("off") << false << false << rgba(1, 1, 1, 0.08) << faint << text("Read replies aloud (off)") << name
                         << text("Turns reading aloud on");
    QTest::newRow("on") << false << true << rgba(0.15, 0.55, 0.92, 0.35) << faint << text("Read replies aloud (on)")
                        << name << text("Turns reading aloud off");
    const QString tip = text("Speaking... (click to stop)");
    const QString stop = text("Stop reading aloud");
    QTest::newRow("speaking") << true << true << blue << blue << tip << stop << tip;
    QTest::newRow("speaking, switched off") << true << false << blue << blue << tip << stop << tip;
}

void tst_OmniBarVoice::speaker()
{
    QFETCH(bool, speaking);
    QFETCH(bool, enabled);
    QFETCH(QString, fill);
    QFETCH(QString, hoverFill);
    QFETCH(QString, tip);

    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    QVERIFY(openWithSpeaker(bar, voice));
    QQuickItem *button = bar.item("speakerBtn");
    QVERIFY(bar.isSeen(button));
    voice.set("isSpeaking", speaking);
    voice.set("ttsEnabled", enabled);

    QCOMPARE(button->size(), QSizeF(36, 36));
    QCOMPARE(backgroundOf(button)->property("radius").toInt(), 18);
    QTRY_COMPARE(colourOf(backgroundOf(button)), fill);
    QCOMPARE(borderOf(button), enabled ? text("1 ") + rgba(0.2, 0.6, 1.0, 0.5) : QString());
    QCOMPARE(iconsIn(button), QStringList(text(enabled ? "audio-volume-high" : "audio-volume-muted")));
    // Themes cross the muted speaker out in another colour.
    QVERIFY(button->property("iconMask").toBool());
    const QStringList pulse {text("1 to 0.6, 500 InOutSine"), text("0.6 to 1, 500 InOutSine")};
    QTRY_COMPARE(runningIn(button), speaking ? pulse : QStringList());

    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QTEST(accessible->text(QAccessible::Name), "name");
    QTEST(accessible->text(QAccessible::Description), "description");
    QCOMPARE(bool(accessible->state().checkable), !speaking);
    QCOMPARE(bool(accessible->state().checked), enabled && !speaking);

    bar.hover(button);
    QTRY_COMPARE(colourOf(backgroundOf(button)), hoverFill);
    QTRY_COMPARE(tipsOf(bar), QStringList(tip));
}

void tst_OmniBarVoice::speakerComesToRest()
{
    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    QVERIFY(openWithSpeaker(bar, voice));
    QQuickItem *button = bar.item("speakerBtn");
    for (int round = 0; round < 2; ++round) {
        voice.set("isSpeaking", true);
        QTRY_VERIFY(button->opacity() < 0.9);
        voice.set("isSpeaking", false);
        QCOMPARE(button->opacity(), 1.0);
        QTRY_COMPARE(runningIn(button), QStringList());
    }
}

void tst_OmniBarVoice::clickOnTheSpeaker()
{
    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    QVERIFY(openWithSpeaker(bar, voice));
    QQuickItem *button = bar.item("speakerBtn");
    for (const auto &way : waysToPress) {
        bar.item("inputField")->forceActiveFocus();
        voice.set("ttsEnabled", false);
        press(bar, button, way.by);
        QVERIFY2(voice.ttsEnabled(), way.name);
        press(bar, button, way.by);
        QVERIFY2(!voice.ttsEnabled(), way.name);
        QCOMPARE(voice.takeCalls(), s_silence);

        // While it speaks a click stops the speech and leaves the switch alone.
        for (const bool enabled : {true, false}) {
            voice.set("ttsEnabled", enabled);
            voice.set("isSpeaking", true);
            press(bar, button, way.by);
            QCOMPARE(voice.takeCalls(), QStringList(text("stopSpeaking()")));
            QCOMPARE(voice.ttsEnabled(), enabled);
            voice.set("isSpeaking", false);
        }
        const bool isKey = way.by != By::Mouse && way.by != By::Assistance;
        QCOMPARE(bar.item("inputField")->hasActiveFocus(), !isKey);
    }
}

void tst_OmniBarVoice::inputMakesRoomForTheSpeaker()
{
    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    const auto place = [&](const char *name) { return bar.place(bar.item(name)); };
    const auto isRow = [&](const QVector<const char *> &names) {
        for (int i = 0; i + 1 < names.size(); ++i) {
            if (!bar.isSeen(bar.item(names.at(i))) || place(names.at(i)).right() != place(names.at(i + 1)).left() - 10
                || place(names.at(i)).center().y() != place(names.at(i + 1)).center().y()) {
                return false;
            }
        }
        return place(names.last()).right() == place("barCard").right() - 10;
    };
    QVERIFY(!bar.isSeen(bar.item("speakerBtn")));
    QVERIFY(isRow({"inputField", "settingsBtn", "micBtn", "barCloseBtn"}));
    const qreal width = place("inputField").width();

    voice.set("ttsAvailable", true);
    QTRY_VERIFY(isRow({"inputField", "settingsBtn", "micBtn", "speakerBtn", "barCloseBtn"}));
    QCOMPARE(place("inputField").width(), width - 46);
    bar.type("hello");
    QTRY_VERIFY(isRow({"inputField", "settingsBtn", "micBtn", "speakerBtn", "sendBtn", "barCloseBtn"}));
    QCOMPARE(place("inputField").width(), width - 92);

    voice.set("ttsAvailable", false);
    QTRY_VERIFY(isRow({"inputField", "settingsBtn", "micBtn", "sendBtn", "barCloseBtn"}));
    QCOMPARE(place("inputField").width(), width - 46);
}

void tst_OmniBarVoice::transcriptGoesIntoTheInput()
{
    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    voice.set("voiceSubmitMode", text("manual"));
    QQuickItem *input = bar.item("inputField");
    bar.focus(bar.item("micBtn"));
    voice.emitSignal("transcriptReady", text("öffne den 😀 file manager"));
    QCOMPARE(input->property("text").toString(), text("öffne den 😀 file manager"));
    QVERIFY(input->hasActiveFocus());
    QCOMPARE(input->property("cursorPosition").toInt(), input->property("length").toInt());
    QTRY_VERIFY(bar.isSeen(bar.item("sendBtn")));

    // From here on it is edited like typed text.
    bar.type(" now");
    bar.key(Qt::Key_Return);
    const auto request = bar.bridge.takeRequest(text("chat"));
    QCOMPARE(request.params.value(text("message")).toString(), text("öffne den 😀 file manager now"));
    QCOMPARE(request.params.value(text("inputMode")).toString(), text("text"));

    bar.expectWarning("[OmniBar] voice: No speech detected in audio");
    voice.emitSignal("errorOccurred", text("No speech detected in audio"));
    QCOMPARE(bar.log.count(text("[OmniBar] voice: No speech detected in audio")), 1);
    QCOMPARE(input->property("text").toString(), QString());
}

void tst_OmniBarVoice::transcriptWhileCompact()
{
    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    bar.key(Qt::Key_Escape);
    QVERIFY(bar.settle());
    voice.emitSignal("transcriptReady", text("open the browser"));
    QVERIFY(bar.settle());
    // The bubble keeps the focus.
    QVERIFY(bar.item("compactBubble")->hasActiveFocus());
    bar.key(Qt::Key_Return);
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    QCOMPARE(bar.property("inputField.text").toString(), text("open the browser"));
}

void tst_OmniBarVoice::repliesAreSpoken()
{
    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    voice.set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(text("a"), text("Nobody hears this.")));
    QCOMPARE(voice.takeCalls(), s_silence);
    QVERIFY(bar.settle());
    bar.click("speakerBtn");
    QVERIFY(bar.exchange(text("b"), text("**Done**, <tool_call>x</tool_call>it is open.")));
    QCOMPARE(voice.takeCalls(), QStringList(text("speak(**Done**, it is open.)")));
    QCOMPARE(bar.field(3, "text").toString(), text("**Done**, it is open."));
    bar.emitReply(QString());
    QCOMPARE(voice.takeCalls(), s_silence);
    QVERIFY(bar.settle());
    bar.click("speakerBtn");
    QVERIFY(bar.exchange(text("c"), text("Quiet again.")));
    QCOMPARE(voice.takeCalls(), s_silence);
}

void tst_OmniBarVoice::looks_data()
{
    QTest::addColumn<bool>("light");
    QTest::addColumn<QString>("state");

    for (const bool light : {false, true}) {
        for (const char *state : {"idle", "hovered", "focused", "listening", "transcribing", "enabled", "speaking"}) {
            QTest::newRow(
                qPrintable(QStringLiteral("%1-%2").arg(QLatin1String(state), QLatin1String(light ? "light" : "dark"))))
                << light << QString::fromLatin1(state);
        }
    }
}

//! Everything fits; screenshots on request.
void tst_OmniBarVoice::looks()
{
    QFETCH(bool, light);
    QFETCH(QString, state);

    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    voice.set("ttsAvailable", true);
    QVERIFY(bar.begin());
    bar.setLight(light);
    QVERIFY(bar.exchange(text("What is the time?"), text("It is **late**."),
                         {{text("usage"), QJsonObject {{text("inputTokens"), 7000}}}}));
    QVERIFY(bar.settle());
    QQuickItem *microphone = bar.item("micBtn");
    QQuickItem *speaker = bar.item("speakerBtn");
    voice.set("isListening", state == QLatin1String("listening"));
    voice.set("partialTranscript",
              state == QLatin1String("listening") ? text("open the file manager and show ").repeated(6) : QString());
    voice.set("inputLevel", 0.03);
    voice.set("isTranscribing", state == QLatin1String("transcribing"));
    voice.set("isSpeaking", state == QLatin1String("speaking"));
    voice.set("ttsEnabled", state == QLatin1String("speaking") || state == QLatin1String("enabled"));
    if (state == QLatin1String("hovered")) {
        bar.hover(microphone);
        QTRY_COMPARE(tipsOf(bar), QStringList(text("Voice input (click to speak)")));
        QTRY_COMPARE(colourOf(backgroundOf(microphone)), rgba(1, 1, 1, 0.15));
    } else if (state == QLatin1String("focused")) {
        bar.focus(speaker);
    }
    haltPulses(microphone);
    haltPulses(speaker);
    QTRY_COMPARE(colourOf(backgroundOf(microphone)),
                 colourOf(microphone, state == QLatin1String("hovered") ? "hoverFill" : "fill"));
    QTRY_COMPARE(colourOf(backgroundOf(speaker)), colourOf(speaker, "fill"));
    QVERIFY(bar.settle());
    QVERIFY(bar.place(bar.item("barCard")).contains(bar.place(speaker)));
    QVERIFY(bar.place(bar.item("inputField")).width() > 150);
    bar.screenshot(text("voice-") + QString::fromLatin1(QTest::currentDataTag()));
}

REGISTER_TEST(tst_OmniBarVoice, QGuiApplication)

#include "tst_OmniBarVoice.moc"
