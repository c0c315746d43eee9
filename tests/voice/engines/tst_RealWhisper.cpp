// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TinyModel.h"
#include "WhisperWorker.h"

#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "VoiceFixture.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

//! The real library, with a model that always returns the same words. The library writes about 36 lines to standard
//! error for each load.
class tst_RealWhisper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void saysItsWords_data();
    void saysItsWords();
    void detectsSilence();
    void replacesTheModel();
    void refusesFiles_data();
    void refusesFiles();
    void worksInVoiceBridge();
    void transcribesUtterances();

private:
    QString path(const QString &name) const { return m_directory.filePath(name); }

    const QList<QByteArray> m_words {"open", " the", " dolphine"};
    const QByteArray m_model = TinyModel::saying(m_words);
    const QTemporaryDir m_directory;
    QString m_file;
};

namespace
{

constexpr int s_second = 32000; // bytes

//! Audio that isn't silent.
QByteArray noise(int bytes)
{
    QByteArray pcm(bytes, '\0');
    for (int i = 0; i < bytes; ++i) {
        pcm[i] = static_cast<char>(i * 7919 % 251);
    }
    return pcm;
}

//! The signal of one transcription as in a SignalLog, without the time.
QString outcome(WhisperWorker &worker, const QByteArray &pcm)
{
    SignalLog log(&worker);
    worker.transcribe(pcm);
    const QStringList entries = log.take();
    return entries.size() == 1 ? entries.first().section(QLatin1String("\","), 0, 0) : entries.join(QLatin1Char(' '));
}

const QString s_nothing = QStringLiteral("transcriptionFailed(\"No speech detected in audio\")");
//! Of the default engine.
const QString s_modelName = QStringLiteral("ggml-small.en-q5_1.bin");

} // namespace

void tst_RealWhisper::initTestCase()
{
    QCoreApplication::setOrganizationDomain(QStringLiteral("kde.org"));
    QCoreApplication::setApplicationName(QStringLiteral("loomra-kde"));
    m_file = TinyModel::write(path(QStringLiteral("ggml-tiny.bin")), m_model);
    TinyModel::write(QDir::homePath() + QLatin1String("/.local/share/tovi-forkeldaos/models/") + s_modelName, m_model);
}

void tst_RealWhisper::saysItsWords_data()
{
    QTest::addColumn<QByteArray>("pcm");
    QTest::addColumn<QString>("result");

    const QString once = QStringLiteral("transcriptionReady(\"open the dolphine");
    QTest::newRow("1 s") << noise(s_second) << once;
    QTest::newRow("1 s of silence") << QByteArray(s_second, '\0') << once;
    QTest::newRow("half a sample more") << noise(s_second + 1) << once;
    QTest::newRow("30 s") << noise(30 * s_second) << once;
    // The library returns a segment for every 30 s.
    QTest::newRow("60 s") << noise(60 * s_second)
                          << QStringLiteral("transcriptionReady(\"open the dolphine open the dolphine");
    // Long enough for the worker, but too short for the library.
    QTest::newRow("0.1 s") << noise(s_second / 10) << s_nothing;
    QTest::newRow("less than that") << noise(s_second / 10 - 1)
                                    << QStringLiteral("transcriptionFailed(\"Audio too short\")");
}

void tst_RealWhisper::saysItsWords()
{
    QFETCH(QByteArray, pcm);
    WhisperWorker worker;
    QVERIFY(worker.loadModel(m_file));
    QTEST(outcome(worker, pcm), "result");
    // The model and its words stay the same.
    QTEST(outcome(worker, pcm), "result");
}

void tst_RealWhisper::detectsSilence()
{
    WhisperWorker worker;
    QVERIFY(worker.loadModel(TinyModel::write(path(QStringLiteral("silent.bin")), TinyModel::silent())));
    QCOMPARE(outcome(worker, noise(s_second)), s_nothing);
}

void tst_RealWhisper::replacesTheModel()
{
    WhisperWorker worker;
    QVERIFY(worker.loadModel(m_file));
    // Another path, which must be passed as UTF-8, and other words.
    const QString other = TinyModel::write(path(QStringLiteral("grün/語.bin")), TinyModel::saying({" caf\xc3\xa9"}));
    QVERIFY(worker.loadModel(other));
    QCOMPARE(outcome(worker, noise(s_second)), QStringLiteral("transcriptionReady(\"café"));
}

void tst_RealWhisper::refusesFiles_data()
{
    QTest::addColumn<QString>("file");

    const auto row = [this](const char *name, const QByteArray &contents) {
        QTest::newRow(name) << TinyModel::write(path(QLatin1String(name)), contents);
    };
    QTest::newRow("missing") << path(QStringLiteral("nowhere.bin"));
    QTest::newRow("no path") << QString();
    QTest::newRow("directory") << m_directory.path();
    row("empty", {});
    row("text", "this is no model\n");
    // Incomplete downloads. The library doesn't detect a file without any tensor, or one in which only the last tensor
    // is incomplete.
    row("cut within the first tensor", m_model.left(TinyModel::headSize(m_words) + 1000));
    row("cut half way", m_model.left(m_model.size() / 2));
}

void tst_RealWhisper::refusesFiles()
{
    QFETCH(QString, file);
    WhisperWorker worker;
    QVERIFY(worker.loadModel(m_file));
    QVERIFY(!worker.loadModel(file));
    QCOMPARE(outcome(worker, noise(s_second)), QStringLiteral("transcriptionFailed(\"Model not loaded\")"));
    QVERIFY(worker.loadModel(m_file));
}

void tst_RealWhisper::worksInVoiceBridge()
{
    const MessageLog log;
    VoiceBridge bridge(VoiceFixture::parts());
    QVERIFY(bridge.whisperSmallQ5Available());
    bridge.setSttBackend(QStringLiteral("whisper-small-q5"));
    QVERIFY(bridge.loadModel());
    QVERIFY(bridge.isModelLoaded());
    QCOMPARE(bridge.modelName(), s_modelName);

    QSignalSpy ready(&bridge, &VoiceBridge::transcriptReady);
    QSignalSpy failed(&bridge, &VoiceBridge::errorOccurred);
    Q_EMIT bridge.requestTranscription(noise(s_second));
    QTRY_COMPARE(ready.size() + failed.size(), 1);
    QCOMPARE(ready.value(0), QVariantList {QStringLiteral("open the Dolphin")});
    QCOMPARE(bridge.lastTranscript(), QStringLiteral("open the Dolphin"));
    QVERIFY(bridge.lastTranscriptionMs() > 0);

    Q_EMIT bridge.requestTranscription(noise(s_second / 10));
    QTRY_COMPARE(failed.size(), 1);
    QCOMPARE(failed.first(), QVariantList {QStringLiteral("No speech detected in audio")});

    const QString missing = path(QStringLiteral("nowhere.bin"));
    QVERIFY(!bridge.loadModel(missing));
    QVERIFY(!bridge.isModelLoaded());
    const QString error = QLatin1String("Failed to load whisper model: ") + missing;
    QCOMPARE(failed.last(), QVariantList {error});
    // This test has no session bus.
    QCOMPARE(log.warnings(),
             QStringList {QStringLiteral("VoiceBridge: cannot connect to D-Bus session bus for wake word")});
}

void tst_RealWhisper::transcribesUtterances()
{
    ScriptedMicrophone microphone;
    VoiceBridge bridge(VoiceFixture::parts(microphone));
    bridge.setSilenceTimeoutMs(200);
    QSignalSpy ready(&bridge, &VoiceBridge::transcriptReady);
    QSignalSpy failed(&bridge, &VoiceBridge::errorOccurred);
    for (int utterance = 1; utterance <= 2; ++utterance) {
        microphone.hear(20, ScriptedMicrophone::Loud);
        microphone.hear(4, ScriptedMicrophone::Quiet);
        bridge.startListening(); // loads the model the first time
        QVERIFY(bridge.isListening());
        QTRY_COMPARE(ready.size() + failed.size(), utterance);
        QCOMPARE(ready.size(), utterance);
        QCOMPARE(ready.last(), QVariantList {QStringLiteral("open the Dolphin")});
        QVERIFY(!bridge.isListening());
        QVERIFY(!bridge.isTranscribing());
        QCOMPARE(microphone.openStreams(), 0);
    }
}

REGISTER_TEST(tst_RealWhisper, QCoreApplication)
#include "tst_RealWhisper.moc"
