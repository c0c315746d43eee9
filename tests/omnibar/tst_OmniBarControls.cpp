// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"
#include "ScriptedVoice.h"

#include "AgentBridge.h"
#include "OmniBarFixture.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QQmlProperty>
#include <QTest>
#include <QtMath>

#include <cmath>
#include <memory>

namespace
{

//! A stand-in for the chat client that keeps the status that it is given.
const char *s_stillBridge = R"(QtObject {
    property string status: "idle"
    property bool isThinking: false
    property string currentAgent: "auto"
    property string currentModel: ""
    property string inputMode: "text"
    property string activePhase: ""
    property string routedAgent: ""
    property int planStepIndex: -1
    property int planStepTotal: 0
    property string planStepCapability: ""
    property string planStepPhase: ""
    signal agentReplied(string response)
    signal structuredReplyReceived(string uiJson)
    signal errorOccurred(string error)
    signal usageReported(int inputTokens, int outputTokens)
    signal actionStarted(string actionName)
    signal planStepChanged()
    function sendIntent(text) {}
    function cancelRequest() {}
})";

//! All animations of an item, running or not.
QList<QObject *> animationsOf(QObject *item, const char *type = "QQuickAbstractAnimation")
{
    QList<QObject *> found;
    const auto parts = item->findChildren<QObject *>();
    std::copy_if(parts.cbegin(), parts.cend(), std::back_inserter(found),
                 [type](const QObject *part) { return part->inherits(type); });
    return found;
}

bool isAnimated(QObject *item)
{
    const auto animations = animationsOf(item);
    return std::any_of(animations.cbegin(), animations.cend(),
                       [](const QObject *animation) { return animation->property("running").toBool(); });
}

} // namespace

//! The controls of the bar: what they show and when. One long file, because the tests share two windows.
class tst_OmniBarControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void cleanupTestCase();

    void row();
    void idleBarHasNoUnusedParts();
    void shadowFollowsTheBar();
    void brand();
    void placeholder_data();
    void placeholder();
    void connectionDot_data();
    void connectionDot();
    void connectionDotIsStillInCompactMode();
    void connectionDotWithoutABridge();
    void connectionDotNamesThePhase();
    void tipOfTheDot();
    void thinkingGlow();
    void hintStrip_data();
    void hintStrip();
    void hintStripIsHidden_data();
    void hintStripIsHidden();
    void notifyLine();

private:
    SharedWindow<OmniBarFixture> m_window;
    //! Another one with stand-ins for the chat client and the voice path. Only one of the two can be open.
    SharedWindow<OmniBarFixture> m_stillWindow {[this](OmniBarFixture &bar) {
        m_voice = std::make_unique<ScriptedVoice>(bar);
        m_bridge = bar.fake(s_stillBridge);
        bar.provide("agentBridge", m_bridge);
    }};
    std::unique_ptr<ScriptedVoice> m_voice;
    QObject *m_bridge = nullptr;
};

void tst_OmniBarControls::cleanup()
{
    m_window.giveBack();
    m_stillWindow.giveBack();
}

void tst_OmniBarControls::cleanupTestCase()
{
    m_window.close();
    m_stillWindow.close();
}

void tst_OmniBarControls::row()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    const QRectF card = bar.place(bar.item("barCard"));
    const auto place = [&](const char *name) { return bar.place(bar.item(name)); };

    QVERIFY(!bar.isSeen(bar.item("sendBtn")));
    QCOMPARE(place("barCloseBtn").size(), QSizeF(32, 32));
    QCOMPARE(place("barCloseBtn").right(), card.right() - 10);
    QCOMPARE(place("micBtn").size(), QSizeF(36, 36));
    QCOMPARE(place("micBtn").right(), place("barCloseBtn").left() - 10);
    QCOMPARE(place("settingsBtn").size(), QSizeF(36, 36));
    QCOMPARE(place("settingsBtn").right(), place("micBtn").left() - 10);
    QCOMPARE(place("inputField").right(), place("settingsBtn").left() - 10);
    QCOMPARE(place("inputField").height(), 36.0);

    // The input makes room for two more.
    bar.type("hello");
    Q_EMIT bar.agent()->usageReported(10, 5);
    QVERIFY(bar.settle());
    QCOMPARE(place("sendBtn").size(), QSizeF(36, 36));
    QCOMPARE(place("sendBtn").right(), place("barCloseBtn").left() - 10);
    QCOMPARE(place("micBtn").right(), place("sendBtn").left() - 10);
    QCOMPARE(place("usageRing").size(), QSizeF(28, 28));
    QCOMPARE(place("usageRing").right(), place("settingsBtn").left() - 10);
    QCOMPARE(place("inputField").right(), place("usageRing").left() - 10);
    for (const char *name : {"inputField", "usageRing", "settingsBtn", "micBtn", "sendBtn", "barCloseBtn"}) {
        QCOMPARE(place(name).center().y(), card.center().y());
    }
    bar.screenshot("bar-full");
}

// While the window is created, no binding has its value yet: conditions such as "not idle" are true for a moment.
void tst_OmniBarControls::idleBarHasNoUnusedParts()
{
    m_window.close(); // parts stay once they are loaded, so this needs a new window
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    for (const char *name : {"keyHint", "slashMenu", "sessionPopup", "settingsPanel", "voiceConfirmBar"}) {
        QVERIFY2(!bar.item(name), name);
    }
}

void tst_OmniBarControls::shadowFollowsTheBar()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QTRY_VERIFY(OmniBarFixture::itemIn(bar.item("barCard"), QStringLiteral("panelShadow")));
    QQuickItem *shadow = OmniBarFixture::itemIn(bar.item("barCard"), QStringLiteral("panelShadow"));
    QCOMPARE(shadow->property("radius").toDouble(), 18.0);
    bar.setProperty("barRadius", 8);
    QCOMPARE(shadow->property("radius").toDouble(), 8.0);
    bar.setProperty("barRadius", 18);
}

void tst_OmniBarControls::brand()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    const QRectF card = bar.place(bar.item("barCard"));
    const QRectF dot = bar.place(bar.item("connectionDot"));
    // The disc is 30 wide, 10 in from the left; the dot sticks out of its lower right corner by 1.
    const QRectF disc(card.left() + 10, card.center().y() - 15, 30, 30);
    QCOMPARE(dot.size(), QSizeF(8, 8));
    QCOMPARE(dot.bottomRight(), disc.bottomRight() + QPointF(1, 1));

    const auto words = bar.itemsWhere(bar.item("barCard"), [&](QQuickItem *item) {
        return item->inherits("QQuickText") && bar.isSeen(item)
            && bar.place(item).right() < bar.place(bar.item("inputField")).left();
    });
    QStringList texts;
    for (QQuickItem *word : words) {
        texts << word->property("text").toString();
    }
    QCOMPARE(texts, QStringList({text("Tovi"), text("for"), text("KeldaOS")}));
    QCOMPARE(words.at(0)->property("font").value<QFont>().pointSize(), 12);
    QCOMPARE(words.at(0)->property("font").value<QFont>().bold(), true);
    QCOMPARE(colourOf(words.at(0)), rgba(1, 1, 1, 0.95));
    QCOMPARE(words.at(1)->property("font").value<QFont>().pointSize(), 11);
    QCOMPARE(words.at(1)->property("font").value<QFont>().italic(), true);
    QCOMPARE(colourOf(words.at(1)), rgba(1, 1, 1, 0.55));
    QCOMPARE(words.at(2)->property("font").value<QFont>().bold(), true);
    QCOMPARE(colourOf(words.at(2)), rgba(1, 1, 1, 0.92));
    QCOMPARE(bar.place(words.at(0)).left(), disc.right() + 7);
    bar.setProperty("systemName", text("AnotherOS"));
    QCOMPARE(words.at(2)->property("text").toString(), text("AnotherOS"));
}

void tst_OmniBarControls::placeholder_data()
{
    QTest::addColumn<bool>("listening");
    QTest::addColumn<QString>("partial");
    QTest::addColumn<bool>("transcribing");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("expected");

    const QStringList none;
    const QStringList two {text("a.txt"), text("<b>.md")};
    QTest::newRow("idle") << false << "" << false << "idle" << none << text("Ask Tovi anything…");
    QTest::newRow("thinking") << false << "" << false << "thinking" << none << text("Ask Tovi anything…");
    QTest::newRow("connecting") << false << "" << false << "connecting" << none << text("Ask Tovi anything…");
    QTest::newRow("files") << false << "" << false << "idle" << two
                           << text("a.txt, <b>.md attached — ask your question…");
    QTest::newRow("disconnected") << false << "" << false << "disconnected" << two << text("Connecting...");
    QTest::newRow("error") << false << "" << false << "error" << two << text("Connecting...");
    QTest::newRow("transcribing") << false << "half" << true << "error" << two << text("Transcribing...");
    QTest::newRow("listening") << true << "" << true << "error" << two << text("Listening...");
    QTest::newRow("hearing") << true << "open the" << true << "error" << two << text("open the");
}

void tst_OmniBarControls::placeholder()
{
    QFETCH(bool, listening);
    QFETCH(QString, partial);
    QFETCH(bool, transcribing);
    QFETCH(QString, status);
    QFETCH(QStringList, files);
    QFETCH(QString, expected);

    m_window.close();
    OmniBarFixture &bar = m_stillWindow.take();
    ScriptedVoice &voice = *m_voice;
    QObject *bridge = m_bridge;
    QVERIFY(bar.open());
    // One after the other, so that the text has to follow each change.
    QVariantList attached;
    for (const QString &file : files) {
        QVariantMap entry;
        entry.insert(text("name"), file);
        entry.insert(text("path"), QString(text("/home/me/") + file));
        attached.append(entry);
    }
    bar.setProperty("slashAttachedFiles", attached);
    bridge->setProperty("status", status);
    voice.set("isTranscribing", transcribing);
    voice.set("partialTranscript", partial);
    voice.set("isListening", listening);

    QQuickItem *input = bar.item("inputField");
    QCOMPARE(input->property("placeholderText").toString(), expected);
    QCOMPARE(colourOf(input, "placeholderTextColor"), rgba(1, 1, 1, 0.50));
    QCOMPARE(colourOf(input), rgba(1, 1, 1, 0.95));
    QCOMPARE(input->property("font").value<QFont>().pixelSize(), 15);
    const auto words = bar.itemsWhere(input, [&](QQuickItem *item) { return item->inherits("QQuickText"); });
    QCOMPARE(words.size(), 1);
    QCOMPARE(words.first()->property("text").toString(), expected);
    QVERIFY(bar.isSeen(words.first()));
    bar.type("x");
    QVERIFY(!bar.isSeen(words.first()));
}

void tst_OmniBarControls::connectionDot_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("colour");
    QTest::addColumn<QString>("tip");
    QTest::addColumn<bool>("blinks");

    QTest::newRow("connected") << "connected"
                               << "#4ade80"
                               << "Connected" << false;
    QTest::newRow("idle") << "idle"
                          << "#4ade80"
                          << "Connected" << false;
    QTest::newRow("thinking") << "thinking"
                              << "#FFD700"
                              << "Processing..." << false;
    QTest::newRow("connecting") << "connecting"
                                << "#FFD700"
                                << "Connecting..." << false;
    QTest::newRow("error") << "error"
                           << "#ef4444"
                           << "Connection error" << false;
    QTest::newRow("disconnected") << "disconnected"
                                  << "#ef4444"
                                  << "Disconnected" << true;
    QTest::newRow("capital") << "Disconnected"
                             << "#ef4444"
                             << "Disconnected" << false;
    QTest::newRow("empty") << ""
                           << "#ef4444"
                           << "Disconnected" << false;
    QTest::newRow("unknown") << "running"
                             << "#ef4444"
                             << "Disconnected" << false;
    QTest::newRow("a name of JavaScript") << "constructor"
                                          << "#ef4444"
                                          << "Disconnected" << false;
}

void tst_OmniBarControls::connectionDot()
{
    QFETCH(QString, status);
    QFETCH(QString, colour);
    QFETCH(QString, tip);
    QFETCH(bool, blinks);

    m_window.close();
    OmniBarFixture &bar = m_stillWindow.take();
    QObject *bridge = m_bridge;
    QVERIFY(bar.open());
    bridge->setProperty("status", status);
    bar.evaluate("phases.stickyPhaseLabel = ''");
    QQuickItem *dot = bar.item("connectionDot");
    QCOMPARE(colourOf(dot), rgb(colour));
    QCOMPARE(dot->property("look").toMap().value(text("tip")).toString(), tip);
    QCOMPARE(QQmlProperty(dot, text("border.width")).read().toDouble(), 1.5);
    QCOMPARE(colourOf(dot, "border.color"), rgb(text("#3D1B6E")));
    QCOMPARE(isAnimated(dot), blinks);
    if (blinks) {
        QTRY_VERIFY(dot->opacity() < 0.9);
        const auto steps = animationsOf(dot, "QQuickNumberAnimation");
        QCOMPARE(steps.size(), 2);
        QCOMPARE(bar.animationSpec(steps.at(0)), text("800 InOutSine"));
        QCOMPARE(bar.animationSpec(steps.at(1)), text("800 InOutSine"));
        QCOMPARE(steps.at(0)->property("to").toDouble(), 0.3);
        QCOMPARE(steps.at(1)->property("to").toDouble(), 1.0);
        bridge->setProperty("status", text("idle"));
        QCOMPARE(isAnimated(dot), false);
    }
    QCOMPARE(dot->opacity(), 1.0);
}

void tst_OmniBarControls::connectionDotIsStillInCompactMode()
{
    m_window.close();
    OmniBarFixture &bar = m_stillWindow.take();
    QVERIFY(bar.open());
    m_bridge->setProperty("status", text("disconnected"));
    QVERIFY(isAnimated(bar.item("connectionDot")));
    bar.setProperty("compactMode", true);
    QVERIFY(!isAnimated(bar.item("connectionDot")));
    bar.setProperty("compactMode", false);
    QVERIFY(isAnimated(bar.item("connectionDot")));
}

void tst_OmniBarControls::connectionDotWithoutABridge()
{
    m_stillWindow.close();
    OmniBarFixture &bar = m_window.renew();
    bar.omit("agentBridge");
    QVERIFY(bar.open());
    QQuickItem *dot = bar.item("connectionDot");
    QCOMPARE(colourOf(dot), rgb(text("#ef4444")));
    QCOMPARE(dot->property("look").toMap().value(text("tip")).toString(), text("Disconnected"));
    QVERIFY(isAnimated(dot));
}

void tst_OmniBarControls::connectionDotNamesThePhase()
{
    m_window.close();
    OmniBarFixture &bar = m_stillWindow.take();
    QObject *bridge = m_bridge;
    QVERIFY(bar.open());
    bridge->setProperty("status", text("thinking"));
    bridge->setProperty("activePhase", text("executing"));
    QCOMPARE(bar.item("connectionDot")->property("look").toMap().value(text("tip")).toString(), text("Executing…"));
}

void tst_OmniBarControls::tipOfTheDot()
{
    m_stillWindow.close();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    QCOMPARE(tipsOf(bar), QStringList());
    bar.hover(bar.item("connectionDot"));
    QTRY_COMPARE(tipsOf(bar), QStringList(text("Connected")));
    bar.screenshot("tip");
    bar.hover(bar.item("inputField"));
    QTRY_COMPARE(tipsOf(bar), QStringList());
}

void tst_OmniBarControls::thinkingGlow()
{
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    QVERIFY(!bar.item("thinkingGlow"));
    bar.type("hello");
    bar.key(Qt::Key_Return);
    const auto request = bar.bridge.takeRequest(text("chat"));
    QVERIFY(bar.settle());
    QCOMPARE(bar.items("thinkingGlow").size(), 1); // the hidden bubble has none
    QQuickItem *glow = bar.item("thinkingGlow");
    QCOMPARE(bar.place(glow), bar.place(bar.item("barCard")).adjusted(-2, -2, 2, 2));
    QCOMPARE(glow->property("radius").toDouble(), 20.0);
    QCOMPARE(colourOf(glow), rgba(0, 0, 0, 0));
    QCOMPARE(QQmlProperty(glow, text("border.width")).read().toDouble(), 2.0);
    QVERIFY(isAnimated(glow));

    struct Half
    {
        const char *type;
        QVariant from;
        QVariant to;
    };
    const QColor magenta(text("#FB21FD"));
    const QColor blue(text("#2756FB"));
    const Half halves[] = {
        {"QQuickColorAnimation", magenta, blue},
        {"QQuickColorAnimation", blue, magenta},
        {"QQuickNumberAnimation", 0.55, 1.0},
        {"QQuickNumberAnimation", 1.0, 0.55},
    };
    for (const Half &half : halves) {
        const auto all = animationsOf(glow, half.type);
        QCOMPARE(all.size(), 2);
        QVERIFY(std::any_of(all.cbegin(), all.cend(), [&](QObject *animation) {
            return animation->property("from") == half.from && animation->property("to") == half.to
                && bar.animationSpec(animation) == text("900 InOutSine");
        }));
    }
    const QString before = colourOf(glow, "border.color");
    QTRY_VERIFY(colourOf(glow, "border.color") != before);

    bar.bridge.reply(request, QJsonObject {{text("response"), text("hi")}});
    QTRY_VERIFY(!bar.item("thinkingGlow"));
}

void tst_OmniBarControls::hintStrip_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("hint");
    QTest::addColumn<QString>("colour");

    const QString faint = rgba(0, 0, 0, 0.4);
    const QString idle = text("<b>Esc</b> to minimize · Type <b>/</b> for commands");
    const QString stop = text("<b>Esc</b> to stop");
    const QString confirm = text("<b>Esc</b> to cancel voice · <b>Enter</b> to send");
    QTest::newRow("nothing runs") << "true" << idle << faint;
    QTest::newRow("thinking") << "bridge.isThinking = true" << stop << faint;
    QTest::newRow("status alone") << "bridge.status = 'thinking'" << stop << faint;
    QTest::newRow("plan asked for") << "planRequestInFlight = true" << stop << faint;
    QTest::newRow("plan runs") << "planExecuting = true" << stop << faint;
    QTest::newRow("voice") << "voiceConfirmPending = true" << confirm << rgba(0.8, 0.5, 1.0, 0.5);
    QTest::newRow("voice while thinking")
        << "(voiceConfirmPending = true, bridge.isThinking = true)" << confirm << rgba(0.8, 0.5, 1.0, 0.5);
}

void tst_OmniBarControls::hintStrip()
{
    QFETCH(QString, state);
    QFETCH(QString, hint);
    QFETCH(QString, colour);

    m_window.close();
    OmniBarFixture &bar = m_stillWindow.take();
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {text("hello")});
    QTRY_VERIFY(bar.item("keyHint"));
    bar.evaluate(state);
    QVERIFY(bar.settle());
    QQuickItem *line = bar.item("keyHint");
    QVERIFY(bar.isSeen(line));
    QCOMPARE(line->property("text").toString(), hint);
    QCOMPARE(colourOf(line), colour);
    QCOMPARE(line->property("textFormat").toInt(), int(Qt::RichText));
    QCOMPARE(line->property("font").value<QFont>().pixelSize(), 10);
    QCOMPARE(bar.place(line).width(), 1280.0 - 24);
    QCOMPARE(bar.place(line).center().x(), 640.0);
    QCOMPARE(bar.place(line).bottom(), 800.0 - 2);
    // In the strip below the bar.
    QVERIFY(bar.place(line).top() >= bar.place(bar.item("barCard")).bottom());
    bar.screenshot("hint");
}

void tst_OmniBarControls::hintStripIsHidden_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("shown");

    QTest::newRow("idle") << "true" << false;
    QTest::newRow("idle with a line") << "wiNotifyBarLine = 'hello'" << false;
    QTest::newRow("settings") << "settingsPanelOpen = true" << true;
    QTest::newRow("chat") << "appendUserMessage('hello')" << true;
    QTest::newRow("compact with chat") << "(appendUserMessage('hello'), compactMode = true)" << false;
}

void tst_OmniBarControls::hintStripIsHidden()
{
    QFETCH(QString, state);
    QFETCH(bool, shown);

    m_stillWindow.close();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    bar.evaluate(state);
    QVERIFY(bar.settle());
    QCOMPARE(bar.item("keyHint") && bar.item("keyHint")->isVisible(), shown);
    QVERIFY(!bar.isSeen(bar.item("notifyLine")));
}

void tst_OmniBarControls::notifyLine()
{
    m_stillWindow.close();
    OmniBarFixture &bar = m_window.take();
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {text("hello")});
    QTRY_VERIFY(bar.item("notifyLine"));
    QVERIFY(!bar.isSeen(bar.item("notifyLine")));
    const QString words = text("Tidy the <b>desktop</b>? ") + QString(400, QLatin1Char('x')) + QLatin1Char(' ')
        + QString(400, QLatin1Char('y'));
    bar.setProperty("wiNotifyBarLine", words);
    QVERIFY(bar.settle());
    QQuickItem *line = bar.item("notifyLine");
    QVERIFY(bar.isSeen(line));
    QCOMPARE(line->property("text").toString(), words);
    QCOMPARE(line->property("textFormat").toInt(), int(Qt::PlainText));
    QCOMPARE(colourOf(line), rgba(1, 1, 1, 0.52));
    QCOMPARE(line->property("font").value<QFont>().pixelSize(), 10);
    QCOMPARE(line->property("lineCount").toInt(), 2);
    QVERIFY(bar.place(line).bottom() <= bar.place(bar.item("keyHint")).top());
    bar.screenshot("notify-line");
}

REGISTER_TEST(tst_OmniBarControls, QGuiApplication)

#include "tst_OmniBarControls.moc"
