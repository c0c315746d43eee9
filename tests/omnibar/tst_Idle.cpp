// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "ScriptedVoice.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"
#include "WaitUntil.h"

#include <QAbstractAnimation>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QSet>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>

using namespace std::chrono_literals;

namespace
{

//! The clock of the animations ticks every 50 ms: whatever is animated draws ten frames in this time, and running()
//! finds the timers that are slower.
constexpr auto s_watch = 500ms;
constexpr int s_messages = 10;

//! All running timers and animations of the window.
QStringList running(Conversation &bar)
{
    QSet<QObject *> seen;
    QStringList names;
    std::function<void(QObject *)> look = [&](QObject *object) {
        if (!object || seen.contains(object)) {
            return;
        }
        seen.insert(object);
        const bool moves = (object->inherits("QQmlTimer") || object->inherits("QQuickAbstractAnimation")
                            || object->inherits("QAbstractAnimation") || object->inherits("QQuickAnimator"))
            && (object->property("running").toBool()
                || object->property("state").toInt() == QAbstractAnimation::Running);
        if (moves) {
            names.append(QString::fromLatin1(object->metaObject()->className()) + QLatin1Char(' ')
                         + object->objectName());
        }
        const QObjectList children = object->children();
        std::for_each(children.cbegin(), children.cend(), look);
        if (auto *item = qobject_cast<QQuickItem *>(object)) {
            const auto childItems = item->childItems();
            std::for_each(childItems.cbegin(), childItems.cend(), look);
        }
    };
    look(bar.window());
    look(bar.window()->contentItem());
    return names;
}

//! Whether nothing is drawn while messages of the bridge come in, which needs the event loop.
bool drawsNothing(Conversation &bar)
{
    QSignalSpy frames(bar.window(), &QQuickWindow::frameSwapped);
    const QString line = QStringLiteral("[AgentBridge] Received WebSocket message:");
    QElapsedTimer watch;
    watch.start();
    for (int i = 0; i < s_messages || watch.elapsed() < s_watch.count(); ++i) {
        const int before = bar.log.count(line);
        bar.bridge.ready();
        if (!waitUntil([&] { return bar.log.count(line) > before; })) {
            return false;
        }
        QTest::qWait(static_cast<int>(s_watch.count()) / s_messages);
    }
    return frames.isEmpty();
}

//! Whether the window stops drawing; its last change may need another frame.
bool comesToRest(Conversation &bar)
{
    return drawsNothing(bar) || drawsNothing(bar) || drawsNothing(bar);
}

using Scene = bool (*)(Conversation &);

} // namespace

Q_DECLARE_METATYPE(Scene)

//! A window that waits neither draws nor runs timers.
class tst_Idle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QGuiApplication::styleHints()->setCursorFlashTime(0); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void atRest_data();
    void atRest();
    void thinkingMoves();
    void disconnectedMoves();
    void voiceMoves_data();
    void voiceMoves();

private:
    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
};

void tst_Idle::atRest_data()
{
    QTest::addColumn<Scene>("scene");

    QTest::newRow("idle") << Scene([](Conversation &) { return true; });
    QTest::newRow("typing") << Scene([](Conversation &bar) {
        bar.type(QStringLiteral("half a sentence"));
        return true;
    });
    QTest::newRow("after a reply") << Scene([](Conversation &bar) {
        return bar.exchange(QStringLiteral("a"), QStringLiteral("b"),
                            {{QStringLiteral("usage"), QJsonObject {{QStringLiteral("inputTokens"), 7}}}});
    });
    QTest::newRow("after progress") << Scene([](Conversation &bar) {
        const auto request = bar.ask();
        bar.bridge.event(QStringLiteral("plan.phase"), {{QStringLiteral("phase"), QStringLiteral("executing")}});
        return bar.answer(request, QStringLiteral("done"));
    });
    QTest::newRow("after a plan") << Scene([](Conversation &bar) {
        bar.invoke("appendUserMessage", {QStringLiteral("a plan")});
        bar.setProperty("planExecutingVisible", true);
        bar.evaluate(QStringLiteral("plan.planBarLingerTimer.start()"));
        bar.setProperty("lastActionId", QStringLiteral("act_1"));
        if (!bar.settle() || running(bar).isEmpty()) {
            return false;
        }
        // The last second of the countdown.
        bar.setProperty("undoSecondsLeft", 1);
        return QTest::qWaitFor(
            [&] { return !bar.property("undoShown").toBool() && !bar.property("planExecutingVisible").toBool(); });
    });
    QTest::newRow("settings") << Scene([](Conversation &bar) {
        bar.setProperty("settingsPanelOpen", true);
        return QTest::qWaitFor([&] { return bar.item(QStringLiteral("lookTab")) != nullptr; });
    });
    QTest::newRow("compact") << Scene([](Conversation &bar) {
        bar.invoke("shrinkToCompactBubble");
        return true;
    });
    QTest::newRow("back from compact") << Scene([](Conversation &bar) {
        bar.invoke("shrinkToCompactBubble");
        if (!bar.settle()) {
            return false;
        }
        bar.invoke("expandFromBubble");
        return true;
    });
}

void tst_Idle::atRest()
{
    QFETCH(Scene, scene);

    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    voice.set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    QTRY_COMPARE(running(bar), QStringList());
    QVERIFY(comesToRest(bar));
    QCOMPARE(running(bar), QStringList());
}

void tst_Idle::thinkingMoves()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const auto request = bar.ask();
    QVERIFY(bar.settle());
    QVERIFY(running(bar).size() >= 3); // the glow, the dot, the three dots
    QVERIFY(bar.answer(request, QStringLiteral("done")));
    QTRY_COMPARE(running(bar), QStringList());
}

void tst_Idle::disconnectedMoves()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge] WebSocket error:"));
    QVERIFY(bar.begin());
    QVERIFY(bar.settle());
    QTRY_COMPARE(running(bar), QStringList());
    bar.bridge.drop();
    QTRY_COMPARE(bar.property("bridgeStatus").toString(), QStringLiteral("disconnected"));
    QVERIFY(!running(bar).isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(bar.property("bridgeStatus").toString(), QStringLiteral("idle"),
                              OmniBarFixture::ReconnectTimeout);
    QTRY_COMPARE(running(bar), QStringList());
    QCOMPARE(bar.item(QStringLiteral("connectionDot"))->opacity(), 1.0);
}

void tst_Idle::voiceMoves_data()
{
    QTest::addColumn<QString>("state");

    QTest::newRow("listening") << QStringLiteral("isListening");
    QTest::newRow("transcribing") << QStringLiteral("isTranscribing");
    QTest::newRow("speaking") << QStringLiteral("isSpeaking");
}

void tst_Idle::voiceMoves()
{
    QFETCH(QString, state);

    Conversation &bar = m_window.take();
    ScriptedVoice &voice = *m_voice;
    voice.set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(bar.settle());
    QTRY_COMPARE(running(bar), QStringList());
    voice.set(state.toLatin1().constData(), true);
    QVERIFY(!running(bar).isEmpty());
    voice.set(state.toLatin1().constData(), false);
    QTRY_COMPARE(running(bar), QStringList());
    QVERIFY(comesToRest(bar));
    // A switch and a transcript change the picture once.
    voice.set("ttsEnabled", true);
    voice.set("voiceSubmitMode", QStringLiteral("manual"));
    voice.emitSignal("transcriptReady", QStringLiteral("open the browser"));
    QVERIFY(bar.settle());
    QTRY_COMPARE(running(bar), QStringList());
    QVERIFY(comesToRest(bar));
    // A countdown changes it once a second.
    voice.set("voiceSubmitMode", QStringLiteral("auto"));
    voice.set("voiceConfirmDelaySec", 15);
    voice.emitSignal("transcriptReady", QStringLiteral("open the browser"));
    QVERIFY(bar.settle());
    QTRY_COMPARE(running(bar), QStringList(QStringLiteral("QQmlTimer voiceConfirmTimer")));
    bar.evaluate("voiceConfirmTimer.stop()");
    QVERIFY(comesToRest(bar));
}

REGISTER_TEST(tst_Idle, QGuiApplication)

#include "tst_Idle.moc"
