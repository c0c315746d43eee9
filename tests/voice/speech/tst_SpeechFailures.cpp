// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperStandIn.h"
#include "SpeechFixture.h"
#include "TestRegistry.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace SpeechEvents;

namespace
{

const QString s_text = QStringLiteral("hello");

//! The log line about a program that can't be started, with Qt's error text.
QString startErrorOf(const QString &program)
{
    QProcess process;
    process.start(program, QStringList());
    process.waitForStarted();
    return QStringLiteral("VoiceBridge: piper process error: \"%1\"").arg(process.errorString());
}

} // namespace

//! Failures of piper and paplay.
class tst_SpeechFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void piperDoesNotStart_data();
    void piperDoesNotStart();
    void piperFails_data();
    void piperFails();
    void piperCrashes();
    void piperDoesNotRead();
    void paplayFails_data();
    void paplayFails();
    void paplayEndsFirst();
    void paplayIsMissing();
    void paplayIsMissingAndPiperGoesOn();
};

void tst_SpeechFailures::piperDoesNotStart_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("gone") << false;
    QTest::newRow("not runnable") << true;
}

void tst_SpeechFailures::piperDoesNotStart()
{
    QFETCH(bool, isThere);
    PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    isThere ? piper.cannotStart() : piper.vanishes();
    speech->speak(s_text);
    QVERIFY(!speech->isSpeaking());
    QCOMPARE(speech.take(), (QStringList {begins, ends, startErrorOf(piper.program()), notStarted, ends}));
    // paplay was started anyway, and exits because it gets no input.
    QTRY_COMPARE(speech.events(), (QStringList {ends, finished}));
    speech.take();
    QTRY_COMPARE(speech->children().size(), 0);
    speech->stop();
    QCOMPARE(speech.events(), QStringList());
    QCOMPARE(paplay.sound(), QByteArray());
}

void tst_SpeechFailures::piperFails_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("silent") << 0;
    QTest::newRow("failed") << 3;
}

void tst_SpeechFailures::piperFails()
{
    QFETCH(int, code);
    PiperStandIn piper;
    const PaplayStandIn paplay;
    piper.exits(code);
    SpeechFixture speech;
    speech->speak(s_text);
    // An exit code isn't a process error.
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, finished}));
    QCOMPARE(paplay.sound(), QByteArray());
}

void tst_SpeechFailures::piperCrashes()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.crashes();
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, crashed}));
    speech.take();
    QVERIFY(!speech->isSpeaking());
    // paplay runs until stop().
    QCOMPARE(speech->children().size(), 2);
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {ends, finished}));
    QTRY_COMPARE(speech->children().size(), 0);
}

void tst_SpeechFailures::piperDoesNotRead()
{
    PiperStandIn piper;
    const PaplayStandIn paplay;
    piper.behaves(QByteArrayLiteral("exec sleep 1000"));
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(piper.runs(), 1);
    QVERIFY(speech->isSpeaking());
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {begins, ends, crashed, ends, finished}));
}

void tst_SpeechFailures::paplayFails_data()
{
    QTest::addColumn<bool>("isCrash");
    QTest::newRow("exit code") << false;
    QTest::newRow("crash") << true;
}

void tst_SpeechFailures::paplayFails()
{
    QFETCH(bool, isCrash);
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.exits(0);
    isCrash ? paplay.crashes() : paplay.exits(1);
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, finished}));
    QTRY_COMPARE(speech->children().size(), 0);
}

void tst_SpeechFailures::paplayEndsFirst()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.hangs();
    paplay.exits(0);
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, finished}));
    // piper is killed without a signal, and deleted when it has ended.
    QTRY_COMPARE(speech->children().size(), 0);
    speech->stop();
    speech.destroy();
    QCOMPARE(speech.events(), (QStringList {begins, ends, finished}));
}

void tst_SpeechFailures::paplayIsMissing()
{
    PiperStandIn piper;
    const FakePath nothing(FakePath::Rest::Hidden);
    piper.behaves(QByteArrayLiteral("read -r _; while :; do echo sound; done"));
    SpeechFixture speech;
    speech->speak(s_text);
    // piper is killed because nobody reads its output. Nothing was played, so that speakingFinished() isn't emitted.
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, crashed}));
    QVERIFY(!speech->isSpeaking());
    speech->stop();
    QTRY_COMPARE(speech->children().size(), 0);
    QCOMPARE(speech.events(), (QStringList {begins, ends, crashed}));
}

void tst_SpeechFailures::paplayIsMissingAndPiperGoesOn()
{
    PiperStandIn piper;
    const FakePath nothing(FakePath::Rest::Hidden);
    piper.behaves(QByteArrayLiteral("trap '' PIPE; read -r _\n"
                                    "while echo sound; do :; done 2> /dev/null\n"
                                    ": > \"$notes/refused\"\n"
                                    "exec /bin/sleep 1000"));
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_VERIFY(QFile::exists(piper.note(QStringLiteral("refused"))));
    QVERIFY(speech->isSpeaking());
    QCOMPARE(speech.take(), QStringList {begins});
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {ends, crashed}));
    QVERIFY(!speech->isSpeaking());
    QTRY_COMPARE(speech->children().size(), 0);
}

REGISTER_TEST(tst_SpeechFailures, QCoreApplication)
#include "tst_SpeechFailures.moc"
