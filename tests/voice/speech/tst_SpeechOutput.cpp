// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "PiperStandIn.h"
#include "SignalLog.h"
#include "SpeechFixture.h"
#include "TestRegistry.h"

#include <QTest>

using namespace SpeechEvents;

namespace
{

const QString s_text = QStringLiteral("Grüße, %1 😀");

} // namespace

//! Speech output from start to end, with stand-ins that work.
class tst_SpeechOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedValues();
    void detects_data();
    void detects();
    void detectsAgain();
    void isSilentBeforeDetection();
    void speaks();
    void keepsNoReports();
    void removesMarkdown();
    void limitsTheLength();
    void ignoresBlankText_data();
    void ignoresBlankText();
    void codeAloneStopsTheCurrentReply();
    void stopsTheCurrentReply();
    void stopsInTheMiddle();
    void stopsBeforeTheFirstEvent();
    void stopsWhatPlaysOn();
    void stopsNothing();
    void endsWithItsOwner();
};

void tst_SpeechOutput::detects_data()
{
    QTest::addColumn<bool>("hasPiper");
    QTest::addColumn<bool>("hasVoice");
    QTest::addColumn<QString>("line");
    QTest::newRow("nothing") << false << false << "VoiceBridge: TTS unavailable — piper binary not found";
    QTest::newRow("voice alone") << false << true << "VoiceBridge: TTS unavailable — piper binary not found";
    QTest::newRow("piper alone") << true << false << "VoiceBridge: TTS unavailable — no voice model found";
    QTest::newRow("both") << true << true << "VoiceBridge: TTS available — piper: \"%1\" voice: \"%2\"";
}

void tst_SpeechOutput::detects()
{
    QFETCH(bool, hasPiper);
    QFETCH(bool, hasVoice);
    QFETCH(QString, line);
    const FakePath path(FakePath::Rest::Hidden);
    const PiperStandIn piper;
    if (!hasPiper) {
        QVERIFY(QFile::remove(piper.program()));
    }
    if (!hasVoice) {
        QVERIFY(QFile::remove(piper.voice()));
    }
    const MessageLog log;
    SpeechOutput speech;
    QVERIFY(!speech.isAvailable());
    int linesAtSignal = -1;
    connect(&speech, &SpeechOutput::availableChanged, &speech, [&] { linesAtSignal = log.lines().size(); });
    speech.detect(isolatedRoots());
    QCOMPARE(speech.isAvailable(), hasPiper && hasVoice);
    QCOMPARE(speech.piperPath(), hasPiper ? piper.program() : QString());
    QCOMPARE(speech.piperVoicePath(), hasVoice ? piper.voice() : QString());
    QCOMPARE(linesAtSignal, hasPiper && hasVoice ? 0 : -1);
    QCOMPARE(log.lines().size(), 1);
    const bool takesPaths = line.contains(QLatin1String("%1"));
    QVERIFY(log.has(QtDebugMsg, takesPaths ? line.arg(piper.program(), piper.voice()) : line));
}

void tst_SpeechOutput::detectsAgain()
{
    const FakePath path(FakePath::Rest::Hidden);
    const PiperStandIn piper;
    const MessageLog log;
    SpeechOutput speech;
    SignalLog emitted(&speech);
    speech.detect(isolatedRoots());
    QCOMPARE(emitted.take(), QStringList {QStringLiteral("availableChanged()")});
    speech.detect(isolatedRoots());
    QCOMPARE(emitted.take(), QStringList());
    QVERIFY(QFile::remove(piper.program()));
    speech.detect(isolatedRoots());
    QVERIFY(!speech.isAvailable());
    QCOMPARE(emitted.take(), QStringList {QStringLiteral("availableChanged()")});
}

void tst_SpeechOutput::isSilentBeforeDetection()
{
    const PiperStandIn piper;
    const MessageLog log;
    SpeechOutput speech;
    SignalLog emitted(&speech);
    speech.speak(s_text);
    QVERIFY(!speech.isSpeaking());
    QCOMPARE(emitted.entries(), QStringList());
    QCOMPARE(log.lines().size(), 0);
    QCOMPARE(speech.children().size(), 0);
}

void tst_SpeechOutput::speaks()
{
    const PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    speech->speak(s_text);
    QVERIFY(speech->isSpeaking());
    QCOMPARE(speech.events(), QStringList {begins});
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, finished}));
    QVERIFY(!speech->isSpeaking());
    QCOMPARE(piper.arguments(),
             (QStringList {QStringLiteral("--model"), piper.voice(), QStringLiteral("--output-raw")}));
    QCOMPARE(paplay.arguments(),
             (QStringList {QStringLiteral("--raw"), QStringLiteral("--rate=22050"), QStringLiteral("--channels=1"),
                           QStringLiteral("--format=s16le")}));
    QCOMPARE(piper.text(), s_text);
    QCOMPARE(paplay.sound(), s_text.toUtf8());
    QCOMPARE(piper.runs(), 1);
    QCOMPARE(paplay.runs(), 1);
    QTRY_COMPARE(speech->children().size(), 0);
    speech->stop();
    speech.destroy();
    QCOMPARE(speech.events(), (QStringList {begins, ends, finished}));
}

//! What the programs write for nobody must not fill the memory.
void tst_SpeechOutput::keepsNoReports()
{
    PiperStandIn piper;
    const PaplayStandIn paplay;
    piper.behaves("readlink \"/proc/$$/fd/2\" > \"$notes/errors\"; exec cat");
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(paplay.sound(), s_text.toUtf8());
    QCOMPARE(contentOf(piper.note(QStringLiteral("errors"))), QByteArray("/dev/null\n"));
}

void tst_SpeechOutput::removesMarkdown()
{
    const PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    speech->speak(QStringLiteral("# Title\n\n\n\nSee **bold** [label](target), `code`\n```\nx\n```\n## Part "));
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, finished}));
    QCOMPARE(piper.text(), QStringLiteral("Title\n\nSee bold label, \n\n## Part"));
}

void tst_SpeechOutput::limitsTheLength()
{
    const PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    speech->speak(QString(1001, QLatin1Char('x')));
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, finished}));
    QCOMPARE(piper.text(), QString(QString(1000, QLatin1Char('x')) + QLatin1String("...")));
}

void tst_SpeechOutput::ignoresBlankText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("whitespace") << " \n\t";
}

void tst_SpeechOutput::ignoresBlankText()
{
    QFETCH(QString, text);
    const PiperStandIn piper;
    PaplayStandIn paplay;
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(s_text);
    speech.take();
    // The current reply continues.
    speech->speak(text);
    QCOMPARE(speech.events(), QStringList());
    QVERIFY(speech->isSpeaking());
}

void tst_SpeechOutput::codeAloneStopsTheCurrentReply()
{
    const PiperStandIn piper;
    PaplayStandIn paplay;
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(piper.text(), s_text);
    QTRY_VERIFY(isGone(piper.processIds().constFirst()));
    speech.take();
    speech->speak(QStringLiteral("```\ncode\n```"));
    QCOMPARE(speech.events(), (QStringList {ends, finished}));
    QVERIFY(!speech->isSpeaking());
    QCOMPARE(piper.runs(), 1);
    QTRY_COMPARE(speech->children().size(), 0);
}

void tst_SpeechOutput::stopsTheCurrentReply()
{
    const PiperStandIn piper;
    PaplayStandIn paplay;
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(QStringLiteral("first"));
    QTRY_COMPARE(piper.text(), QStringLiteral("first"));
    QTRY_VERIFY(isGone(piper.processIds().constFirst()));
    QTRY_COMPARE(paplay.runs(), 1);
    speech->speak(QStringLiteral("second"));
    QVERIFY(isGone(paplay.processIds().constFirst()));
    QTRY_COMPARE(piper.text(), QStringLiteral("second"));
    QCOMPARE(speech.events(), (QStringList {begins, ends, finished, begins}));
    QVERIFY(speech->isSpeaking());
}

void tst_SpeechOutput::stopsInTheMiddle()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.hangs();
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(piper.runs(), 1);
    QTRY_COMPARE(paplay.runs(), 1);
    speech.take();
    speech->stop();
    QVERIFY(isGone(piper.processIds().constFirst()));
    QVERIFY(isGone(paplay.processIds().constFirst()));
    // The killed piper counts as crashed, so that the change is reported twice.
    QCOMPARE(speech.take(), (QStringList {ends, crashed, ends, finished}));
    QTRY_COMPARE(speech->children().size(), 0);
    speech.destroy();
    QCOMPARE(speech.events(), QStringList());
}

void tst_SpeechOutput::stopsBeforeTheFirstEvent()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.hangs();
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(s_text);
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {begins, ends, crashed, ends, finished}));
    QTRY_COMPARE(speech->children().size(), 0);
}

void tst_SpeechOutput::stopsWhatPlaysOn()
{
    const PiperStandIn piper;
    PaplayStandIn paplay;
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(piper.text(), s_text);
    QTRY_VERIFY(isGone(piper.processIds().constFirst()));
    speech.take();
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {ends, finished}));
}

void tst_SpeechOutput::stopsNothing()
{
    const PiperStandIn piper;
    const SpeechFixture speech;
    speech->stop();
    QCOMPARE(speech.events(), QStringList());
}

void tst_SpeechOutput::endsWithItsOwner()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.hangs();
    paplay.playsOn();
    SpeechFixture speech;
    speech->speak(s_text);
    QTRY_COMPARE(piper.runs(), 1);
    QTRY_COMPARE(paplay.runs(), 1);
    speech.take();
    speech.destroy();
    QVERIFY(isGone(piper.processIds().constFirst()));
    QVERIFY(isGone(paplay.processIds().constFirst()));
    QCOMPARE(speech.events(), QStringList());
}

void tst_SpeechOutput::fixedValues()
{
    QCOMPARE(SpeechOutput::StartTimeout, std::chrono::milliseconds(3000));
    QCOMPARE(SpeechOutput::KillTimeout, std::chrono::milliseconds(1000));
}

REGISTER_TEST(tst_SpeechOutput, QCoreApplication)
#include "tst_SpeechOutput.moc"
