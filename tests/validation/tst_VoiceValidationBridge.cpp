// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"
#include "OmniBarFixture.h"

#include "TestRegistry.h"
#include "Timeouts.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QAbstractListModel>
#include <QFile>
#include <QGuiApplication>
#include <QSettings>
#include <QTest>

#include <memory>

namespace
{

const QString s_noSpeech = QStringLiteral("No speech detected");
constexpr int s_spokenChunks = 20; // 1 s
//! More than a capture takes before it gives up.
constexpr int s_endlessChunks = 700;

} // namespace

//! The voice validation window with the real voice path, from the microphone to the score, with stand-ins for the
//! microphone and the engine.
class tst_VoiceValidationBridge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void freeMode();
    void modelIsLoadedOnce();
    void withoutAModel();
    void withoutAMicrophone();
    void engineFails();
    void runAll();
    void noSpeechStopsTheRun();
    void cancelEndsTheRun();
    void loudRoomDrawsNothing();
    void closingFreesTheMicrophone();

private:
    //! Opens the window with this microphone.
    bool open(VoiceParts parts);
    bool open(ScriptedMicrophone &microphone);
    QString shown(const char *name) const { return m_window->item(name)->property("text").toString(); }
    //! Rows of a list of the window, as "ROLE, ROLE".
    QStringList rows(const char *list, const QVector<QByteArray> &roles) const;
    void enterSuite();
    //! Speaks an utterance that the engine understands as this text, as soon as the microphone is open.
    void speak(ScriptedMicrophone &microphone, const QByteArray &transcript);

    std::unique_ptr<OmniBarFixture> m_window;
    //! Outlives the window, as in the program.
    std::unique_ptr<VoiceBridge> m_voice;
    std::unique_ptr<WhisperModelFile> m_model;
};

void tst_VoiceValidationBridge::init()
{
    WhisperStandIn::reset();
    m_model = std::make_unique<WhisperModelFile>();
    m_window = std::make_unique<OmniBarFixture>();
    m_window->omit("agentBridge"); // not used by this window
    QSettings().setValue(QStringLiteral("voice/silenceTimeoutMs"), 200);
}

void tst_VoiceValidationBridge::cleanup()
{
    // No test writes to the log of the voice test in the settings.
    const QString log = m_voice->voiceTestLogPath();
    m_window.reset();
    m_voice.reset();
    m_model.reset();
    QVERIFY(!QFile::exists(log));
}

bool tst_VoiceValidationBridge::open(VoiceParts parts)
{
    m_voice = std::make_unique<VoiceBridge>(std::move(parts), nullptr);
    m_window->provide("voiceBridge", m_voice.get());
    return m_window->open(QStringLiteral("VoiceValidation.qml"))
        && QTest::qWaitFor([this] { return m_window->property("contentShown").toBool(); }, Timeouts::Default)
        && m_window->settle();
}

bool tst_VoiceValidationBridge::open(ScriptedMicrophone &microphone)
{
    return open(VoiceFixture::parts(microphone));
}

QStringList tst_VoiceValidationBridge::rows(const char *list, const QVector<QByteArray> &roles) const
{
    const auto *model = m_window->property(list).value<QAbstractListModel *>();
    const QHash<int, QByteArray> names = model->roleNames();
    QStringList all;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList values;
        for (const QByteArray &role : roles) {
            values.append(model->data(model->index(row), names.key(role)).toString());
        }
        all.append(values.join(QStringLiteral(", ")));
    }
    return all;
}

void tst_VoiceValidationBridge::enterSuite()
{
    m_window->click("suiteSwitch");
    QTRY_VERIFY(shown("sentencePosition").startsWith(QLatin1String("Sentence 1 / 18")));
    QVERIFY(m_window->settle());
}

void tst_VoiceValidationBridge::speak(ScriptedMicrophone &microphone, const QByteArray &transcript)
{
    QTRY_VERIFY(m_voice->isListening());
    WhisperStandIn::say({transcript});
    microphone.hear(s_spokenChunks, ScriptedMicrophone::Loud);
}

void tst_VoiceValidationBridge::freeMode()
{
    ScriptedMicrophone microphone;
    QVERIFY(open(microphone));
    QCOMPARE(shown("stateWord"), text("Ready"));
    m_window->click("listenBtn");
    QCOMPARE(shown("stateWord"), text("Listening"));
    {
        const WhisperStandIn::Held held;
        speak(microphone, " Open the dolphine. ");
        QTRY_COMPARE(shown("stateWord"), text("Transcribing"));
    }
    // Corrected, as in the OmniBar.
    QTRY_COMPARE(rows("history", {"backend", "text"}), QStringList(text("whisper-small-q5, Open the Dolphin")));
    QCOMPARE(shown("stateWord"), text("Ready"));
    QVERIFY(m_voice->batchSttMode());
    QCOMPARE(microphone.openStreams(), 0);
}

void tst_VoiceValidationBridge::modelIsLoadedOnce()
{
    ScriptedMicrophone microphone;
    QVERIFY(open(microphone));
    const QString load = text("init ") + m_model->path();
    QCOMPARE(WhisperStandIn::calls().count(load), 1);
    m_window->click("listenBtn");
    QCOMPARE(WhisperStandIn::calls().count(load), 1);
    m_window->click("cancelBtn");
    m_window->click("reloadBtn");
    QCOMPARE(WhisperStandIn::calls().count(load), 2);
}

void tst_VoiceValidationBridge::withoutAModel()
{
    m_model.reset();
    ScriptedMicrophone microphone;
    QVERIFY(open(microphone));
    const QString message =
        text("Whisper model not found. Download ggml-base.en.bin to ~/.local/share/tovi-forkeldaos/models/");
    QCOMPARE(shown("stateWord"), text("No model"));
    QCOMPARE(shown("notice"), message);
    m_window->click("listenBtn");
    QVERIFY(!m_voice->isListening());
    QCOMPARE(shown("notice"), message);
    QVERIFY(!m_window->isSeen(m_window->item("errorBanner")));
}

void tst_VoiceValidationBridge::withoutAMicrophone()
{
    VoiceParts parts = VoiceFixture::parts();
    parts.openMicrophone = [](QString *reason) {
        *reason = text("No such %1 entity");
        return std::unique_ptr<Microphone>();
    };
    QVERIFY(open(std::move(parts)));
    m_window->click("listenBtn");
    QCOMPARE(shown("notice"), text("Cannot open microphone: No such %1 entity"));
    // It listens until the user cancels.
    QCOMPARE(shown("stateWord"), text("Listening"));
    m_window->click("listenBtn");
    QCOMPARE(shown("stateWord"), text("Listening"));
    m_window->click("cancelBtn");
    QCOMPARE(shown("stateWord"), text("Ready"));
}

void tst_VoiceValidationBridge::engineFails()
{
    ScriptedMicrophone microphone;
    QVERIFY(open(microphone));
    enterSuite();
    WhisperStandIn::failWith(1);
    m_window->click("listenBtn");
    speak(microphone, "unheard");
    QTRY_COMPARE(shown("stateWord"), text("Error"));
    QVERIFY(m_window->isSeen(m_window->item("errorBanner")));
    QCOMPARE(shown("errorText"), m_voice->lastError());
    QVERIFY(!m_window->isSeen(m_window->item("notice")));
    QVERIFY(shown("sentencePosition").startsWith(QLatin1String("Sentence 1 ")));
    WhisperStandIn::failWith(0);
    m_window->click("reloadBtn");
    QCOMPARE(shown("stateWord"), text("Ready"));
    QVERIFY(!m_window->isSeen(m_window->item("errorBanner")));
}

void tst_VoiceValidationBridge::runAll()
{
    ScriptedMicrophone microphone;
    QVERIFY(open(microphone));
    enterSuite();
    m_window->click("runAllBtn");
    int index = 0;
    for (const char *heard : {"Open the browser.", "set brightness", "turn on dark mode"}) {
        QTRY_COMPARE(m_window->property("suiteIndex").toInt(), index);
        speak(microphone, heard);
        ++index;
        QTRY_COMPARE(rows("suiteResults", {"sentenceId"}).size(), index);
    }
    QCOMPARE(rows("suiteResults", {"sentenceId", "accuracy", "hypothesis", "backend"}),
             QStringList({text("s03, 1, turn on dark mode, whisper-small-q5"),
                          text("s02, 0.4, set brightness, whisper-small-q5"),
                          text("s01, 1, Open the browser, whisper-small-q5")}));
    QVERIFY(rows("history", {"text"}).isEmpty());

    // A product name is corrected before it is compared.
    m_window->setProperty("suiteIndex", 8);
    speak(microphone, "ask lumra to fix this bug");
    QTRY_COMPARE(rows("suiteResults", {"sentenceId", "accuracy"}).constFirst(), text("s09, 1"));
    // The last sentence ends it.
    m_window->setProperty("suiteIndex", 17);
    speak(microphone, "open files dot org");
    QTRY_COMPARE(rows("suiteResults", {"sentenceId"}).constFirst(), text("s18"));
    QVERIFY(!m_window->property("suiteRunAll").toBool());
    QVERIFY(!m_voice->isListening());
    QCOMPARE(microphone.openStreams(), 0);
}

void tst_VoiceValidationBridge::noSpeechStopsTheRun()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Blocks);
    microphone.hear(s_endlessChunks, ScriptedMicrophone::Quiet);
    QVERIFY(open(microphone));
    enterSuite();
    m_window->click("runAllBtn");
    QTRY_COMPARE(shown("notice"), s_noSpeech);
    QCOMPARE(m_window->property("suiteIndex").toInt(), 0);
    QVERIFY(!m_voice->isListening());
    QVERIFY(rows("suiteResults", {"sentenceId"}).isEmpty());
    QVERIFY(m_window->isSeen(m_window->item("runLine")));
    QCOMPARE(microphone.openStreams(), 0);
}

void tst_VoiceValidationBridge::cancelEndsTheRun()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Talks);
    QVERIFY(open(microphone));
    enterSuite();
    m_window->click("runAllBtn");
    QTRY_VERIFY(microphone.chunksRead() > 3);
    m_window->click("cancelBtn");
    QVERIFY(!m_voice->isListening());
    QCOMPARE(microphone.openStreams(), 0);
    // The end of the cancelled capture is reported later.
    QTRY_COMPARE(shown("notice"), s_noSpeech);
    QVERIFY(!m_window->isSeen(m_window->item("runLine")));
    QVERIFY(!m_voice->isListening());
    QVERIFY(rows("suiteResults", {"sentenceId"}).isEmpty());
}

//! Each chunk reports its level, but the bar is full.
void tst_VoiceValidationBridge::loudRoomDrawsNothing()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Talks);
    QVERIFY(open(microphone));
    m_window->click("listenBtn");
    const QQuickItem *bar = m_window->item("levelBar");
    QTRY_COMPARE(bar->width(), m_window->item("levelTrack")->width());
    QVERIFY(m_window->settle());
    int frames = 0;
    connect(m_window->window(), &QQuickWindow::frameSwapped, this, [&frames] { ++frames; });
    const int before = microphone.chunksRead();
    QTRY_VERIFY(microphone.chunksRead() > before + 20);
    QCOMPARE(frames, 0);
    m_window->click("cancelBtn");
    QTRY_VERIFY(frames > 0);
    QCOMPARE(bar->width(), 0.0);
}

void tst_VoiceValidationBridge::closingFreesTheMicrophone()
{
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Talks);
    QVERIFY(open(microphone));
    enterSuite();
    m_window->click("runAllBtn");
    QTRY_COMPARE(microphone.openStreams(), 1);
    m_window->key(Qt::Key_Escape);
    QTRY_VERIFY(!m_window->window()->isVisible());
    QCOMPARE(microphone.openStreams(), 0);
    QVERIFY(!m_voice->isListening());
    QVERIFY(m_voice->batchSttMode());
}

REGISTER_TEST(tst_VoiceValidationBridge, QGuiApplication)

#include "tst_VoiceValidationBridge.moc"
