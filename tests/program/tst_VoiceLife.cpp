// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScreenReader.h"
#include "VoiceRun.h"

#include "TestRegistry.h"
#include "Timeouts.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using VoiceUser::readers;
using VoiceUser::wake;

//! When the built program opens the microphone and frees it again, and why it can't.
class tst_VoiceLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void hearsASentenceInTheValidationWindow();
    void announcesToScreenReaders();
    void microphoneIsFreeWhenIdle();
    void endsWhileListening_data();
    void endsWhileListening();
    void endsWhileTranscribing();
    void tellsWhyThereIsNoMicrophone_data();
    void tellsWhyThereIsNoMicrophone();

private:
    const QTemporaryDir m_brokenLibraries;
};

void tst_VoiceLife::init()
{
    VoiceUser::chooseEngine("silenceTimeoutMs=500\n");
}

void tst_VoiceLife::hearsASentenceInTheValidationWindow()
{
    SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    moonshine.says(QStringLiteral("Open the dolphine."));
    Sentence sentence(QStringLiteral("Open the dolphin"));
    QVERIFY(sentence.isMade());
    DesktopRun run({QStringLiteral("--voice-test")});
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("MoonshineWorker: loaded"), Timeouts::Program);
    QCOMPARE(readers(), 0);
    // From the box of engines to the button that starts.
    QVERIFY(run.takeKeyboard());
    for (const char *key : {"Tab", "Tab", "space"}) {
        run.press(key);
    }
    QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
    sentence.speak();
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("ms: \"Open the Dolphin\"\n"), Timeouts::Program);
    QTRY_COMPARE(readers(), 0);
    // It is closed while it listens again.
    run.press("space");
    QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
    run.press("Escape");
    QVERIFY(run.waitForEnd());
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 0);
    QTRY_COMPARE(readers(), 0);
    QCOMPARE(moonshine.runs(), 1);
}

void tst_VoiceLife::announcesToScreenReaders()
{
    const ScreenReader reader;
    SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    moonshine.says(QStringLiteral("Open the dolphine."));
    Sentence sentence(QStringLiteral("Open the dolphin"));
    QVERIFY(sentence.isMade());
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(wake());
    QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
    sentence.speak();
    const QStringList expected {QStringLiteral("Listening..."), QStringLiteral("Listening ended"),
                                QStringLiteral("Understood: Open the Dolphin")};
    QTRY_COMPARE_WITH_TIMEOUT(reader.spoken(), expected, Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_VoiceLife::microphoneIsFreeWhenIdle()
{
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("VoiceBridge: listening for wake word D-Bus signal\n"),
                             Timeouts::Program);
    QCOMPARE(readers(), 0);
    QVERIFY(!run.errors().contains("MoonshineWorker: loaded")); // nor is the model loaded
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_VoiceLife::endsWhileListening_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("closed by the user") << 0;
    QTest::newRow("end of the session") << SIGTERM;
}

void tst_VoiceLife::endsWhileListening()
{
    QFETCH(int, signal);
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(wake());
    QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
    if (signal == 0) {
        QVERIFY2(run.closeWindow(), run.errors().constData());
    } else {
        run.send(signal);
        QVERIFY(run.waitForEnd());
    }
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 0);
    QCOMPARE(run.unexpectedWords(), QString());
    QTRY_COMPARE(readers(), 0);
    QCOMPARE(moonshine.runs(), 0);
}

void tst_VoiceLife::endsWhileTranscribing()
{
    SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    moonshine.says(QStringLiteral("too late"));
    moonshine.hold();
    Sentence sentence(QStringLiteral("Open the dolphin"));
    QVERIFY(sentence.isMade());
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(wake());
    QTRY_COMPARE_WITH_TIMEOUT(readers(), 1, Timeouts::Program);
    sentence.speak();
    QTRY_COMPARE_WITH_TIMEOUT(moonshine.runs(), 1, Timeouts::Program);
    run.send(SIGTERM);
    // It doesn't wait for the engine, which may hang for minutes, and doesn't leave it behind.
    QVERIFY(run.waitForEnd());
    QVERIFY(!VoiceUser::isAnyAlive(moonshine.processIds()));
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 0);
}

void tst_VoiceLife::tellsWhyThereIsNoMicrophone_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("no daemon") << QByteArray("PULSE_SERVER") << "unix:/nonexistent/native"
                               << QByteArray("Cannot open microphone: Connection refused");
    QTest::newRow("broken library") << QByteArray("LD_LIBRARY_PATH") << m_brokenLibraries.path()
                                    << QByteArray("Cannot open microphone: Cannot load library ");
}

void tst_VoiceLife::tellsWhyThereIsNoMicrophone()
{
    QFETCH(QByteArray, variable);
    QFETCH(QString, value);
    QFETCH(QByteArray, reason);
    QFile library(m_brokenLibraries.filePath(QStringLiteral("libpulse-simple.so.0")));
    QVERIFY(library.open(QIODevice::WriteOnly));
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(variable), value);
    DesktopRun run({}, environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(wake());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains(reason), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

REGISTER_TEST(tst_VoiceLife, QCoreApplication)

#include "tst_VoiceLife.moc"
