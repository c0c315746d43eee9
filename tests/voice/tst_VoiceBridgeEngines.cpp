// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "MessageLog.h"
#include "PiperStandIn.h"
#include "SherpaStandIn.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(SherpaStandIn::Engine)

namespace
{

const QString s_whisperNotFound =
    QStringLiteral("Whisper model not found. Download ggml-base.en.bin to ~/.local/share/tovi-forkeldaos/models/");
const QString s_baseModel = QStringLiteral("ggml-base.en.bin");
const QString s_smallModel = QStringLiteral("ggml-small.en.bin");

QString storedBackend()
{
    return QSettings().value(QStringLiteral("voice/sttBackend")).toString();
}

void storeBackend(const char *backend)
{
    QSettings().setValue(QStringLiteral("voice/sttBackend"), QString::fromLatin1(backend));
}

//! Half a second of sound.
QByteArray utterance()
{
    return QByteArray(16000, 1);
}

QString error(const QString &text)
{
    return QStringLiteral("errorOccurred(\"%1\")").arg(text);
}

} // namespace

//! The choice of an engine, and loading its model.
class tst_VoiceBridgeEngines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void reportsAvailability();
    void searchesEverythingBelowItsRoots();
    void refusesWhatIsNotAvailable_data();
    void refusesWhatIsNotAvailable();
    void chooses_data();
    void chooses();
    void choosingLoadsAndStores();
    void choosingThePresentOneDoesNotReload();
    void choosingCancels();
    void reportsAFailureToLoad();

    void unknownBackendIsWhisperBase();
    void noOtherWhisperModelIsTaken();
    void whisperModelByPath();
    void brokenWhisperModel();
    void reloadingFreesTheModelBefore();
    void lostSherpaModel_data();
    void lostSherpaModel();
    void incompleteSherpaModel_data();
    void incompleteSherpaModel();
    void sherpaModelByPath();
    void sherpaIsUnavailable_data();
    void sherpaIsUnavailable();
};

void tst_VoiceBridgeEngines::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeEngines::init()
{
    TestSetup::clearSettings();
    WhisperStandIn::reset();
}

void tst_VoiceBridgeEngines::reportsAvailability()
{
    const WhisperModelFile small(s_smallModel);
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    MessageLog messages;
    const VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(voice.whisperSmallAvailable());
    QVERIFY(!voice.whisperSmallQ5Available());
    QVERIFY(voice.moonshineAvailable());
    QVERIFY(!voice.nemotronAvailable());
    QVERIFY(messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: whisper-small: true q5_1: false")));
    QVERIFY(messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: moonshine available: true bin: true model: true")));
    QVERIFY(messages.has(QtDebugMsg, QStringLiteral("VoiceBridge: nemotron available: false bin: false model: false")));
}

void tst_VoiceBridgeEngines::searchesEverythingBelowItsRoots()
{
    const QTemporaryDir home(QDir::homePath() + QStringLiteral("/XXXXXX"));
    SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine, home.path());
    const SherpaStandIn nemotron(SherpaStandIn::Engine::Nemotron, home.path());
    const PiperStandIn piper(home.path());
    VoiceParts parts = VoiceFixture::parts();
    parts.roots.home = home.path();
    QVERIFY(writeFile(parts.roots.userModels() + QLatin1Char('/') + s_smallModel));
    moonshine.says(QStringLiteral("from that home"));

    MessageLog messages;
    VoiceBridge voice(std::move(parts));
    QVERIFY(voice.whisperSmallAvailable());
    QVERIFY(voice.moonshineAvailable());
    QVERIFY(voice.nemotronAvailable());
    QVERIFY(voice.ttsAvailable());
    voice.setSttBackend(QStringLiteral("moonshine"));
    Q_EMIT voice.requestTranscription(utterance());
    QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("from that home"));

    const VoiceBridge other(VoiceFixture::parts());
    QVERIFY(!other.whisperSmallAvailable());
    QVERIFY(!other.moonshineAvailable());
    QVERIFY(!other.nemotronAvailable());
    QVERIFY(!other.ttsAvailable());
}

void tst_VoiceBridgeEngines::refusesWhatIsNotAvailable_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("reason");

    QTest::newRow("small") << "whisper-small"
                           << "Whisper small.en model not found. Download ggml-small.en.bin";
    QTest::newRow("small q5") << " Whisper-Small-Q5 "
                              << "Whisper small.en Q5 model not found. Run whisper-quantize";
    QTest::newRow("moonshine") << "moonshine"
                               << "Moonshine backend not available on this system";
    QTest::newRow("nemotron") << "nemotron"
                              << "Nemotron backend not available on this system";
}

void tst_VoiceBridgeEngines::refusesWhatIsNotAvailable()
{
    QFETCH(QString, backend);
    QFETCH(QString, reason);
    storeBackend("whisper");
    const WhisperModelFile base(s_baseModel);
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(voice.loadModel());
    SignalLog emitted(&voice);
    voice.setSttBackend(backend);
    QCOMPARE(emitted.entries(), QStringList {error(reason)});
    QCOMPARE(voice.sttBackend(), QStringLiteral("whisper"));
    QCOMPARE(storedBackend(), QStringLiteral("whisper"));
    QCOMPARE(voice.lastError(), QString());
    QVERIFY(voice.isModelLoaded());
    QCOMPARE(voice.modelName(), s_baseModel);
}

void tst_VoiceBridgeEngines::chooses_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("backend");

    QTest::newRow("whisper") << " Whisper "
                             << "whisper";
    QTest::newRow("no engine") << "foo"
                               << "whisper";
    QTest::newRow("nothing") << ""
                             << "whisper";
    QTest::newRow("small") << "WHISPER-SMALL"
                           << "whisper-small";
    QTest::newRow("moonshine") << "\tmoonshine\n"
                               << "moonshine";
    QTest::newRow("nemotron") << "Nemotron"
                              << "nemotron";
}

void tst_VoiceBridgeEngines::chooses()
{
    QFETCH(QString, words);
    const WhisperModelFile base(s_baseModel);
    const WhisperModelFile small(s_smallModel);
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    const SherpaStandIn nemotron(SherpaStandIn::Engine::Nemotron);
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setSttBackend(words);
    QTEST(voice.sttBackend(), "backend");
    QTEST(storedBackend(), "backend");
    QVERIFY(voice.isModelLoaded());
}

void tst_VoiceBridgeEngines::choosingLoadsAndStores()
{
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    const WhisperModelFile q5;
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(voice.loadModel());
    SignalLog emitted(&voice);
    QStringList names;
    connect(&voice, &VoiceBridge::modelLoadedChanged, this,
            [&] { names.append(voice.isModelLoaded() ? voice.modelName() : QStringLiteral("none")); });
    voice.setSttBackend(QStringLiteral("moonshine"));
    QCOMPARE(emitted.entries(),
             (QStringList {
                 QStringLiteral("inputLevelChanged()"), // from cancelListening()
                 QStringLiteral("sttBackendChanged()"),
                 QStringLiteral("modelLoadedChanged()"),
                 QStringLiteral("modelLoadedChanged()"), // load begins
                 QStringLiteral("modelLoadedChanged()"),
             }));
    const QString model = QDir(moonshine.modelDir()).dirName();
    QCOMPARE(names, (QStringList {QStringLiteral("none"), QStringLiteral("none"), model}));
    QCOMPARE(voice.modelName(), model);
    QVERIFY(messages.has(QtDebugMsg,
                         QStringLiteral("VoiceBridge: loading moonshine model \"%1\"").arg(moonshine.modelDir())));
}

void tst_VoiceBridgeEngines::choosingThePresentOneDoesNotReload()
{
    const WhisperModelFile q5;
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(voice.loadModel());
    SignalLog emitted(&voice);
    const QStringList calls = WhisperStandIn::calls();
    voice.setSttBackend(QStringLiteral("whisper-small-q5"));
    QCOMPARE(emitted.entries(), QStringList());
    QCOMPARE(WhisperStandIn::calls(), calls);
}

void tst_VoiceBridgeEngines::choosingCancels()
{
    const WhisperModelFile q5;
    const SherpaStandIn moonshine(SherpaStandIn::Engine::Moonshine);
    MessageLog messages;
    ScriptedMicrophone microphone;
    VoiceBridge voice(VoiceFixture::parts(microphone));
    voice.startListening();
    QVERIFY(voice.isListening());
    voice.setSttBackend(QStringLiteral("moonshine"));
    QVERIFY(!voice.isListening());
    QCOMPARE(microphone.openStreams(), 0);
}

void tst_VoiceBridgeEngines::reportsAFailureToLoad()
{
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    SignalLog emitted(&voice);
    voice.setSttBackend(QStringLiteral("whisper")); // never refused, even without its model
    QCOMPARE(voice.sttBackend(), QStringLiteral("whisper"));
    QCOMPARE(storedBackend(), QStringLiteral("whisper"));
    QCOMPARE(emitted.entries().constLast(), error(s_whisperNotFound));
    QVERIFY(!voice.isModelLoaded());
}

void tst_VoiceBridgeEngines::unknownBackendIsWhisperBase()
{
    storeBackend("some-engine");
    const WhisperModelFile base(s_baseModel);
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QCOMPARE(voice.sttBackend(), QStringLiteral("some-engine"));
    QVERIFY(voice.loadModel());
    QCOMPARE(voice.modelName(), s_baseModel);
    Q_EMIT voice.requestTranscription(utterance());
    QTRY_COMPARE(voice.lastTranscript(), QStringLiteral("stand-in"));
}

void tst_VoiceBridgeEngines::noOtherWhisperModelIsTaken()
{
    const WhisperModelFile base(s_baseModel);
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QCOMPARE(voice.sttBackend(), QStringLiteral("whisper-small-q5"));
    SignalLog emitted(&voice);
    QVERIFY(!voice.loadModel());
    QCOMPARE(emitted.entries(), (QStringList {QStringLiteral("modelLoadedChanged()"), error(s_whisperNotFound)}));
    QCOMPARE(voice.lastError(), QString());
}

void tst_VoiceBridgeEngines::whisperModelByPath()
{
    const WhisperModelFile own(QStringLiteral("my %1 model.bin"));
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    SignalLog emitted(&voice);
    QVERIFY(voice.loadModel(own.path()));
    QCOMPARE(voice.modelName(), QStringLiteral("my %1 model.bin"));
    QCOMPARE(emitted.entries(),
             (QStringList {QStringLiteral("modelLoadedChanged()"), QStringLiteral("modelLoadedChanged()")}));
    QVERIFY(messages.has(QtDebugMsg,
                         QStringLiteral("VoiceBridge: loading whisper model \"") + own.path() + QLatin1Char('"')));
}

void tst_VoiceBridgeEngines::brokenWhisperModel()
{
    const WhisperModelFile q5;
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QVERIFY(voice.loadModel());
    SignalLog emitted(&voice);
    const QString path = QStringLiteral("/no/such/%1.bin");
    QVERIFY(!voice.loadModel(path));
    QVERIFY(!voice.isModelLoaded());
    QCOMPARE(emitted.entries(),
             (QStringList {QStringLiteral("modelLoadedChanged()"),
                           QStringLiteral("errorOccurred(\"Failed to load whisper model: /no/such/%1.bin\")")}));
    QCOMPARE(WhisperStandIn::livingContexts(), 0); // the old model is freed

    // The next attempt finds the installed model.
    QVERIFY(voice.loadModel());
    QVERIFY(voice.isModelLoaded());
}

void tst_VoiceBridgeEngines::reloadingFreesTheModelBefore()
{
    const WhisperModelFile q5;
    MessageLog messages;
    {
        VoiceBridge voice(VoiceFixture::parts());
        QVERIFY(voice.loadModel());
        QVERIFY(voice.loadModel());
        QCOMPARE(WhisperStandIn::livingContexts(), 1);
    }
    QCOMPARE(WhisperStandIn::livingContexts(), 0);
}

namespace
{

void addSherpaEngines()
{
    QTest::addColumn<SherpaStandIn::Engine>("engine");
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("name");
    QTest::newRow("moonshine") << SherpaStandIn::Engine::Moonshine << "moonshine"
                               << "Moonshine";
    QTest::newRow("nemotron") << SherpaStandIn::Engine::Nemotron << "nemotron"
                              << "Nemotron";
}

} // namespace

void tst_VoiceBridgeEngines::lostSherpaModel_data()
{
    addSherpaEngines();
}

void tst_VoiceBridgeEngines::lostSherpaModel()
{
    QFETCH(SherpaStandIn::Engine, engine);
    QFETCH(QString, backend);
    QFETCH(QString, name);
    const SherpaStandIn standIn(engine);
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setSttBackend(backend);
    QVERIFY(voice.isModelLoaded());
    QVERIFY(QDir(standIn.modelDir()).removeRecursively());
    SignalLog emitted(&voice);
    QVERIFY(!voice.loadModel());
    QCOMPARE(
        emitted.entries(),
        (QStringList {QStringLiteral("modelLoadedChanged()"), error(name + QStringLiteral(" model dir not found"))}));
}

void tst_VoiceBridgeEngines::incompleteSherpaModel_data()
{
    addSherpaEngines();
}

void tst_VoiceBridgeEngines::incompleteSherpaModel()
{
    QFETCH(SherpaStandIn::Engine, engine);
    QFETCH(QString, backend);
    QFETCH(QString, name);
    const SherpaStandIn standIn(engine);
    for (const QString &fileName : standIn.modelFiles()) {
        const QString file = standIn.modelDir() + QLatin1Char('/') + fileName;
        MessageLog messages;
        VoiceBridge voice(VoiceFixture::parts());
        const QString aside = file + QStringLiteral(".aside");
        QVERIFY(QFile::rename(file, aside));
        SignalLog emitted(&voice);
        voice.setSttBackend(backend);
        QVERIFY(QFile::rename(aside, file));
        QCOMPARE(voice.isModelLoaded(), false);
        QCOMPARE(emitted.entries().constLast(),
                 error(QStringLiteral("Failed to load %1 model: %2").arg(name, standIn.modelDir())));
        QCOMPARE(messages.warnings(),
                 QStringList {QStringLiteral("%1Worker: incomplete model in \"%2\"").arg(name, standIn.modelDir())});
        QSettings().remove(QStringLiteral("voice/sttBackend"));
    }
}

void tst_VoiceBridgeEngines::sherpaModelByPath()
{
    const SherpaStandIn standIn(SherpaStandIn::Engine::Moonshine);
    const QTemporaryDir other;
    for (const QString &name : standIn.modelFiles()) {
        QVERIFY(QFile::copy(standIn.modelDir() + QLatin1Char('/') + name, other.filePath(name)));
    }
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setSttBackend(QStringLiteral("moonshine"));
    QVERIFY(voice.loadModel(other.path()));
    QCOMPARE(voice.modelName(), QFileInfo(other.path()).fileName());
    // Without that directory, the installed model is loaded.
    QVERIFY(voice.loadModel(QStringLiteral("/no/such/place")));
    QCOMPARE(voice.modelName(), QDir(standIn.modelDir()).dirName());
}

void tst_VoiceBridgeEngines::sherpaIsUnavailable_data()
{
    QTest::addColumn<QByteArray>("backend");
    QTest::addColumn<QString>("reason");
    QTest::newRow("moonshine")
        << QByteArray("moonshine")
        << "Moonshine unavailable. Install sherpa-onnx-offline and download the tiny-en model (see "
           "~/experiments/whisper-voice-test/setup-moonshine.sh)";
    QTest::newRow("nemotron") << QByteArray("nemotron")
                              << "Nemotron unavailable. Install sherpa-onnx and download the 560ms INT8 model (see "
                                 "~/experiments/whisper-voice-test/setup-nemotron.sh)";
}

void tst_VoiceBridgeEngines::sherpaIsUnavailable()
{
    QFETCH(QByteArray, backend);
    QFETCH(QString, reason);
    storeBackend(backend.constData()); // chosen while it was installed
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    SignalLog emitted(&voice);
    QVERIFY(!voice.loadModel());
    QCOMPARE(emitted.entries(), (QStringList {QStringLiteral("modelLoadedChanged()"), error(reason)}));
}

REGISTER_TEST(tst_VoiceBridgeEngines, QCoreApplication)

#include "tst_VoiceBridgeEngines.moc"
