// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperStandIn.h"
#include "SpeechFixture.h"
#include "TestRegistry.h"

#include <QTest>

using namespace SpeechEvents;

//! Slots that call speak() and stop() while the signals of speech output are emitted.
class tst_SpeechReentry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void speaksAgainWhenFinished();
    void speaksAgainWhenStopped();
    void speaksAgainWhenSilent();
    void speaksAgainWhenPiperIsKilled();
    void theLastReplyIsSpoken();
    void stoppedAtItsBeginning();
    void overtakenAtItsBeginning();
    void stoppedInItsError();
    void speaksAgainWhenPiperDoesNotStart();
};

namespace
{

//! Runs @p work when the signal is emitted for the first time without speech.
template<typename Signal, typename Work>
void once(const SpeechFixture &speech, Signal signal, Work work)
{
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(speech.get(), signal, speech.get(), [&speech, connection, work] {
        if (!speech->isSpeaking()) {
            QObject::disconnect(*connection);
            work();
        }
    });
}

} // namespace

void tst_SpeechReentry::speaksAgainWhenFinished()
{
    const PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    once(speech, &SpeechOutput::speakingFinished, [&] { speech->speak(QStringLiteral("second")); });
    speech->speak(QStringLiteral("first"));
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, finished, begins, ends, finished}));
    QCOMPARE(paplay.sound(), QByteArrayLiteral("second"));
    QCOMPARE(paplay.runs(), 2);
    QTRY_COMPARE(speech->children().size(), 0);
}

void tst_SpeechReentry::speaksAgainWhenStopped()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.hangs();
    paplay.playsOn();
    SpeechFixture speech;
    once(speech, &SpeechOutput::speakingFinished, [&] { speech->speak(QStringLiteral("second")); });
    speech->speak(QStringLiteral("first"));
    speech->stop();
    QCOMPARE(speech.take(), (QStringList {begins, ends, crashed, ends, finished, begins}));
    // Only the first reply was stopped.
    QVERIFY(speech->isSpeaking());
    QTRY_COMPARE(speech->children().size(), 2);
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {ends, crashed, ends, finished}));
}

void tst_SpeechReentry::speaksAgainWhenSilent()
{
    const PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    // Before all signals about the end of the first reply were emitted.
    once(speech, &SpeechOutput::speakingChanged, [&] { speech->speak(QStringLiteral("second")); });
    speech->speak(QStringLiteral("first"));
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, begins, finished, ends, finished}));
    QCOMPARE(paplay.sound(), QByteArrayLiteral("second"));
    QTRY_COMPARE(speech->children().size(), 0);
}

void tst_SpeechReentry::speaksAgainWhenPiperIsKilled()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.hangs();
    paplay.playsOn();
    SpeechFixture speech;
    // The first paplay is still running then. It is killed before the second reply starts.
    once(speech, &SpeechOutput::speakingChanged, [&] { speech->speak(QStringLiteral("second")); });
    speech->speak(QStringLiteral("first"));
    speech->stop();
    QCOMPARE(speech.take(), (QStringList {begins, ends, ends, finished, begins, crashed}));
    QVERIFY(speech->isSpeaking());
    QTRY_COMPARE(speech->children().size(), 2);
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {ends, crashed, ends, finished}));
}

void tst_SpeechReentry::theLastReplyIsSpoken()
{
    const PiperStandIn piper;
    PaplayStandIn paplay;
    paplay.playsOn();
    SpeechFixture speech;
    once(speech, &SpeechOutput::speakingFinished, [&] { speech->speak(QStringLiteral("third")); });
    speech->speak(QStringLiteral("first"));
    QTRY_COMPARE(piper.text(), QStringLiteral("first"));
    QTRY_VERIFY(isGone(piper.processIds().constFirst()));
    // The third reply is requested while the second one stops the first.
    speech->speak(QStringLiteral("second"));
    QCOMPARE(speech.events(), (QStringList {begins, ends, finished, begins}));
    QVERIFY(speech->isSpeaking());
    QTRY_COMPARE(piper.text(), QStringLiteral("third"));
    QCOMPARE(piper.runs(), 2);
    QTRY_COMPARE(speech->children().size(), 2);
}

void tst_SpeechReentry::stoppedAtItsBeginning()
{
    const PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    connect(speech.get(), &SpeechOutput::speakingChanged, speech.get(), [&] {
        if (speech->isSpeaking()) {
            speech->stop();
        }
    });
    speech->speak(QStringLiteral("first"));
    QCOMPARE(speech.events(), (QStringList {begins, ends}));
    QVERIFY(!speech->isSpeaking());
    QCOMPARE(speech->children().size(), 0);
}

void tst_SpeechReentry::overtakenAtItsBeginning()
{
    const PiperStandIn piper;
    const PaplayStandIn paplay;
    SpeechFixture speech;
    bool isFirst = true;
    connect(speech.get(), &SpeechOutput::speakingChanged, speech.get(), [&] {
        if (std::exchange(isFirst, false)) {
            speech->speak(QStringLiteral("second"));
        }
    });
    speech->speak(QStringLiteral("first"));
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, begins, ends, finished}));
    QCOMPARE(paplay.sound(), QByteArrayLiteral("second"));
    QCOMPARE(piper.runs(), 1);
}

void tst_SpeechReentry::stoppedInItsError()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    piper.crashes();
    paplay.playsOn();
    SpeechFixture speech;
    once(speech, &SpeechOutput::speakingChanged, [&] { speech->stop(); });
    speech->speak(QStringLiteral("first"));
    QTRY_COMPARE(speech.events(), (QStringList {begins, ends, ends, finished, crashed}));
    QTRY_COMPARE(speech->children().size(), 0);
}

void tst_SpeechReentry::speaksAgainWhenPiperDoesNotStart()
{
    PiperStandIn piper;
    PaplayStandIn paplay;
    paplay.playsOn();
    SpeechFixture speech;
    piper.cannotStart();
    once(speech, &SpeechOutput::speakingChanged, [&] {
        piper.hangs();
        speech->speak(QStringLiteral("second"));
    });
    speech->speak(QStringLiteral("first"));
    // All signals about its failure are emitted, but don't affect the second reply.
    const QStringList events = speech.take();
    QCOMPARE(events.mid(0, 5), (QStringList {begins, ends, ends, finished, begins}));
    QCOMPARE(events.size(), 7);
    QCOMPARE(events.constLast(), notStarted);
    QVERIFY(speech->isSpeaking());
    QTRY_COMPARE(piper.runs(), 1);
    QTRY_COMPARE(speech->children().size(), 2);
    speech->stop();
    QCOMPARE(speech.events(), (QStringList {ends, crashed, ends, finished}));
}

REGISTER_TEST(tst_SpeechReentry, QCoreApplication)
#include "tst_SpeechReentry.moc"
