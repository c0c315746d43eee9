// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"
#include "Presses.h"
#include "ScriptedVoice.h"

#include "OmniBarFixture.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QDateTime>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTest>
#include <QtMath>

#include <cmath>
#include <memory>

namespace
{

const QString s_click = QStringLiteral("Voice input (click to speak)");
const QString s_red = rgba(0.92, 0.15, 0.15, 0.85);
constexpr qint64 s_day = 24 * 60 * 60 * 1000; // in ms

//! The state of the voice path.
struct State
{
    bool isListening;
    bool isTranscribing;
    bool isSpeaking;
};

//! The places on the button's ring that have the level's colour, in degrees clockwise from the top: one in the middle
//! of each 30 degrees.
QList<int> litOn(OmniBarFixture &bar, QQuickItem *button)
{
    const QImage picture = bar.window()->grabWindow();
    QList<int> degrees;
    for (int angle = 15; angle < 360; angle += 30) {
        const double radians = qDegreesToRadians(angle - 90.0);
        const QPointF spot =
            bar.place(button).center() + (36 - 3) / 2.0 * QPointF(std::cos(radians), std::sin(radians));
        const QColor pixel = picture.pixelColor(qFloor(spot.x()), qFloor(spot.y()));
        // The button's red has hardly any blue.
        if (pixel.red() > 200 && pixel.green() < 90 && pixel.blue() > 180) {
            degrees.append(angle);
        }
    }
    return degrees;
}

} // namespace

Q_DECLARE_METATYPE(State)

//! The microphone button: what it shows and does while the voice path listens, transcribes, speaks or rests.
class tst_OmniBarMicrophone : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void looks_data();
    void looks();
    void clicks_data();
    void clicks();
    void hold_data();
    void hold();
    void heldKeyCountsOnce_data();
    void heldKeyCountsOnce();
    void repeatThatLooksLikeAPress();
    void comesToRest();
    void levelRing_data();
    void levelRing();
    void levelRingIsPaintedForTheLevelAlone();
    void withoutAVoice();

private:
    void set(const State &state);
    QQuickItem *button() const { return m_bar->item("micBtn"); }

    //! One window for all tests, because most of them only press its button.
    std::unique_ptr<OmniBarFixture> m_bar;
    std::unique_ptr<ScriptedVoice> m_voice;
};

void tst_OmniBarMicrophone::set(const State &state)
{
    m_voice->set("isListening", state.isListening);
    m_voice->set("isTranscribing", state.isTranscribing);
    m_voice->set("isSpeaking", state.isSpeaking);
}

void tst_OmniBarMicrophone::initTestCase()
{
    QAccessible::setActive(true);
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    m_bar = std::make_unique<OmniBarFixture>();
    m_voice = std::make_unique<ScriptedVoice>(*m_bar);
    QVERIFY(m_bar->open());
    QVERIFY(m_bar->settle());
}

void tst_OmniBarMicrophone::init()
{
    if (!m_bar) {
        return;
    }
    set({false, false, false});
    m_voice->set("inputLevel", 0.0);
    m_voice->takeCalls();
    m_bar->hover(m_bar->item("scrim"));
    m_bar->item("inputField")->forceActiveFocus();
    QTRY_COMPARE(tipsOf(*m_bar), QStringList());
}

void tst_OmniBarMicrophone::cleanupTestCase()
{
    m_bar.reset();
}

void tst_OmniBarMicrophone::looks_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<bool>("active");
    QTest::addColumn<QString>("tip");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QStringList>("animations");

    const QString stop = text("Listening... (click to stop)");
    const QString cancel = text("Transcribing... (click to cancel)");
    const QString microphone = text("audio-input-microphone");
    const QString refresh = text("view-refresh");
    const QStringList pulse {text("1 to 0.55, 600 InOutSine"), text("0.55 to 1, 600 InOutSine")};
    const QStringList turn {text("0 to 360, 1000 Linear")};
    const QStringList still;
    QTest::newRow("idle") << State {false, false, false} << false << s_click << microphone << still;
    QTest::newRow("speaking") << State {false, false, true} << false << s_click << microphone << still;
    QTest::newRow("listening") << State {true, false, false} << true << stop << microphone << pulse;
    QTest::newRow("transcribing") << State {false, true, false} << true << cancel << refresh << turn;
    QTest::newRow("both") << State {true, true, false} << true << stop << refresh << pulse + turn;
}

void tst_OmniBarMicrophone::looks()
{
    QFETCH(State, state);
    QFETCH(bool, active);
    QFETCH(QString, tip);
    QFETCH(QString, icon);
    QFETCH(QStringList, animations);

    set(state);
    QTRY_COMPARE(colourOf(backgroundOf(button())), active ? s_red : rgba(1, 1, 1, 0.06));
    QCOMPARE(borderOf(button()), active ? text("1 ") + rgba(1, 0.3, 0.3, 0.6) : QString());
    QCOMPARE(button()->size(), QSizeF(36, 36));
    QCOMPARE(backgroundOf(button())->property("radius").toInt(), 18);
    QCOMPARE(iconsIn(button()), QStringList(icon));
    QCOMPARE(colourOf(button(), "iconColor"), rgba(1, 1, 1, 1));
    QTRY_COMPARE(runningIn(button()), animations);
    QCOMPARE(m_bar->item("levelRing") != nullptr, state.isListening);

    // Assistive technology always gets the text; the tooltip appears only while the button is inactive.
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button());
    QCOMPARE(accessible->role(), QAccessible::Button);
    QCOMPARE(accessible->text(QAccessible::Name), text("Voice input"));
    QCOMPARE(accessible->text(QAccessible::Description), tip);
    m_bar->hover(button());
    QTRY_COMPARE(colourOf(backgroundOf(button())), active ? s_red : rgba(1, 1, 1, 0.15));
    QCOMPARE(m_bar->behaviour(backgroundOf(button()), "color"), text("150 Linear"));
    if (!active) {
        QTRY_COMPARE(tipsOf(*m_bar), QStringList(tip));
        m_voice->set("isListening", true);
        QTRY_COMPARE(tipsOf(*m_bar), QStringList());
        return;
    }
    const auto wanted = m_bar->itemsWhere(button(), [](QQuickItem *item) {
        return item->property("enabledHere").isValid() && item->property("wanted").toBool();
    });
    QVERIFY(wanted.isEmpty());
}

void tst_OmniBarMicrophone::clicks_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<By>("by");
    QTest::addColumn<QStringList>("calls");

    const struct
    {
        const char *name;
        State state;
        QStringList calls;
    } states[] = {
        {"idle", {false, false, false}, {text("startListening()")}},
        {"speaking", {false, false, true}, {text("stopSpeaking()"), text("startListening()")}},
        {"listening", {true, false, false}, {text("stopListening()")}},
        {"listening and speaking", {true, false, true}, {text("stopListening()")}},
        {"transcribing", {false, true, false}, {text("cancelListening()")}},
        {"transcribing and speaking", {false, true, true}, {text("cancelListening()")}},
        {"listening and transcribing", {true, true, false}, {text("stopListening()")}},
    };
    for (const auto &way : waysToPress) {
        for (const auto &[name, state, calls] : states) {
            const QString row = QStringLiteral("%1, %2").arg(QLatin1String(way.name), QLatin1String(name));
            QTest::newRow(qPrintable(row)) << state << way.by << calls;
        }
    }
}

void tst_OmniBarMicrophone::clicks()
{
    QFETCH(State, state);
    QFETCH(By, by);
    QFETCH(QStringList, calls);

    set(state);
    press(*m_bar, button(), by);
    QCOMPARE(m_voice->takeCalls(), calls);
}

void tst_OmniBarMicrophone::hold_data()
{
    QTest::addColumn<State>("state");

    QTest::newRow("idle") << State {false, false, false};
    QTest::newRow("speaking") << State {false, false, true};
    QTest::newRow("listening") << State {true, false, false};
    QTest::newRow("transcribing") << State {false, true, false};
}

void tst_OmniBarMicrophone::hold()
{
    QFETCH(State, state);

    set(state);
    const QStringList cancel {text("cancelListening()")};
    const QPoint middle = m_bar->place(button()).center().toPoint();
    QTest::mousePress(m_bar->window(), Qt::LeftButton, {}, middle);
    QCOMPARE(m_voice->calls(), QStringList());
    QTRY_COMPARE(m_voice->calls(), cancel);
    // The state changes before the button is released.
    set({false, false, state.isSpeaking});
    QTest::mouseRelease(m_bar->window(), Qt::LeftButton, {}, middle);
    QCOMPARE(m_voice->takeCalls(), cancel);
    // The next press is a click again.
    m_bar->click(button());
    QCOMPARE(m_voice->takeCalls().value(state.isSpeaking ? 1 : 0), text("startListening()"));
}

void tst_OmniBarMicrophone::heldKeyCountsOnce_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("call");

    QTest::newRow("Return") << Qt::Key_Return << text("startListening()");
    QTest::newRow("Enter") << Qt::Key_Enter << text("startListening()");
    // Like a held mouse button: the only way for the keyboard to cancel when the microphone can't be opened.
    QTest::newRow("Space") << Qt::Key_Space << text("cancelListening()");
}

void tst_OmniBarMicrophone::heldKeyCountsOnce()
{
    QFETCH(Qt::Key, key);

    m_bar->focus(button());
    QTest::keyPress(m_bar->window(), key);
    for (int repeat = 0; repeat < 3; ++repeat) {
        // The events of key repeat under X11.
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(), true);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(m_bar->window(), &release);
        QCoreApplication::sendEvent(m_bar->window(), &press);
    }
    QTest::keyRelease(m_bar->window(), key);
    QTEST(m_voice->takeCalls().join(QLatin1Char(' ')), "call");
    // The next press is a click again, with any key, even if the clock was set back meanwhile.
    for (const qint64 ended : {qint64(0), QDateTime::currentMSecsSinceEpoch() + s_day}) {
        button()->setProperty("holdEnded", ended);
        for (const Qt::Key next : {Qt::Key_Return, key}) {
            QTest::keyClick(m_bar->window(), next);
            QCOMPARE(m_voice->takeCalls(), QStringList(text("startListening()")));
        }
    }
}

void tst_OmniBarMicrophone::repeatThatLooksLikeAPress()
{
    m_bar->focus(button());
    QTest::keyPress(m_bar->window(), Qt::Key_Space);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(m_bar->window(), &repeat);
    QCOMPARE(m_voice->takeCalls(), QStringList(text("cancelListening()")));
    // Qt didn't recognise this repeat.
    QTest::keyRelease(m_bar->window(), Qt::Key_Space);
    QTest::keyPress(m_bar->window(), Qt::Key_Space);
    QCoreApplication::sendEvent(m_bar->window(), &repeat);
    QTest::keyRelease(m_bar->window(), Qt::Key_Space);
    QCOMPARE(m_voice->takeCalls(), QStringList());
}

void tst_OmniBarMicrophone::comesToRest()
{
    auto *icon = button()->property("contentItem").value<QQuickItem *>();
    for (int round = 0; round < 2; ++round) {
        set({true, false, false});
        QTRY_VERIFY(button()->opacity() < 0.9);
        QCOMPARE(icon->rotation(), 0.0);
        set({false, true, false});
        QCOMPARE(button()->opacity(), 1.0);
        QTRY_VERIFY(icon->rotation() > 10 && icon->rotation() < 350);
        QCOMPARE(button()->opacity(), 1.0);
        set({false, false, false});
        QCOMPARE(icon->rotation(), 0.0);
        QTRY_COMPARE(runningIn(button()), QStringList());
        QTRY_VERIFY(!m_bar->item("levelRing"));
    }
}

void tst_OmniBarMicrophone::levelRing_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("degrees");

    QTest::newRow("silence") << 0.0 << 0;
    QTest::newRow("a quarter") << 0.0125 << 90;
    QTest::newRow("half") << 0.025 << 180;
    QTest::newRow("three quarters") << 0.0375 << 270;
    QTest::newRow("just full") << 0.05 << 360;
    QTest::newRow("louder") << 0.2 << 360;
    QTest::newRow("as loud as can be") << 1.0 << 360;
}

void tst_OmniBarMicrophone::levelRing()
{
    QFETCH(double, level);
    QFETCH(int, degrees);

    QList<int> expected;
    for (int angle = 15; angle < degrees; angle += 30) {
        expected.append(angle);
    }
    set({true, false, false});
    haltPulses(button());
    QTRY_COMPARE(colourOf(backgroundOf(button())), s_red);
    m_voice->set("inputLevel", level);
    QTRY_COMPARE(litOn(*m_bar, button()), expected);
    m_voice->set("inputLevel", 0.0);
    QTRY_COMPARE(litOn(*m_bar, button()), QList<int>());

    // A level that was set before.
    set({false, false, false});
    m_voice->set("inputLevel", level);
    QTRY_COMPARE(litOn(*m_bar, button()), QList<int>());
    set({true, false, false});
    haltPulses(button());
    QTRY_COMPARE(litOn(*m_bar, button()), expected);
    m_bar->screenshot(QStringLiteral("level-%1").arg(level));
}

void tst_OmniBarMicrophone::levelRingIsPaintedForTheLevelAlone()
{
    set({true, false, false});
    haltPulses(button());
    QQuickItem *ring = m_bar->item("levelRing");
    QVERIFY(ring);
    QCOMPARE(m_bar->place(ring), m_bar->place(button()));
    QCOMPARE(colourOf(ring), rgb(text("#FB21FD")));
    QCOMPARE(ring->property("radius").toDouble(), (36 - 3) / 2.0);
    QCOMPARE(ring->property("line").toDouble(), 2.5);
    m_voice->set("inputLevel", 0.04);
    QTRY_COMPARE(litOn(*m_bar, button()).size(), 10);

    // The ring is painted for changes of its properties only.
    QSignalSpy changed(ring, SIGNAL(toChanged()));
    m_voice->set("partialTranscript", text("open the"));
    m_voice->set("isSpeaking", true);
    m_bar->hover(button());
    QVERIFY(m_bar->settle());
    QCOMPARE(changed.count(), 0);
    m_voice->set("inputLevel", 0.02);
    QCOMPARE(changed.count(), 1);
    m_voice->set("partialTranscript", QString());
}

void tst_OmniBarMicrophone::withoutAVoice()
{
    m_bar.reset();
    OmniBarFixture bar;
    bar.omit("voiceBridge");
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    QQuickItem *microphone = bar.item("micBtn");
    QTRY_COMPARE(colourOf(backgroundOf(microphone)), rgba(1, 1, 1, 0.06));
    QCOMPARE(borderOf(microphone), QString());
    QCOMPARE(iconsIn(microphone), QStringList(text("audio-input-microphone")));
    QCOMPARE(runningIn(microphone), QStringList());
    bar.hover(microphone);
    QTRY_COMPARE(tipsOf(bar), QStringList(text("Voice input unavailable")));
    // None of this logs a warning.
    for (const auto &way : waysToPress) {
        press(bar, microphone, way.by);
    }
    QVERIFY(QMetaObject::invokeMethod(microphone, "pressAndHold"));
    QVERIFY(!bar.isSeen(bar.item("speakerBtn")));
    bar.invoke("speakReply", {text("nobody hears")});
}

REGISTER_TEST(tst_OmniBarMicrophone, QGuiApplication)

#include "tst_OmniBarMicrophone.moc"
