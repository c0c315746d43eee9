// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SttPostProcessor.h"
#include "VoiceLog.h"
#include "VoiceParts.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QThread>

#include <cstdint>
#include <memory>
#include <vector>

class Capture;
class CaptureLink;
class SherpaWorker;
class SpeechOutput;

//! The voice path as QML sees it, under the name voiceBridge: microphone to corrected transcript, spoken replies, the
//! wake word, and the user's voice settings.
//!
//! An utterance is listened to (isListening), then with an engine (isTranscribing), and comes as transcriptReady(). One
//! utterance at a time. What fails comes as errorOccurred(). It calls neither client of the bridge: QML takes its
//! transcripts and submits them.
//!
//! Used on the main thread. Engines work on a thread of their own, each capture on another one.
class VoiceBridge : public QObject
{
    Q_OBJECT

    //! A capture is on. Stays set when the microphone can't be opened, until cancelListening().
    Q_PROPERTY(bool isListening READ isListening NOTIFY listeningChanged)
    //! Audio is with an engine.
    Q_PROPERTY(bool isTranscribing READ isTranscribing NOTIFY transcribingChanged)
    Q_PROPERTY(bool isModelLoaded READ isModelLoaded NOTIFY modelLoadedChanged)
    //! The last final text, corrected.
    Q_PROPERTY(QString lastTranscript READ lastTranscript NOTIFY transcriptReady)
    //! Milliseconds that its engine took.
    Q_PROPERTY(double lastTranscriptionMs READ lastTranscriptionMs NOTIFY transcriptReady)
    //! The last failure of an engine; other errors aren't kept.
    Q_PROPERTY(QString lastError READ lastError NOTIFY errorOccurred)
    //! Root mean square of a chunk, 0 to 1, four times a second. Whoever shows it scales it.
    Q_PROPERTY(double inputLevel READ inputLevel NOTIFY inputLevelChanged)
    //! File or directory name of the loaded model.
    Q_PROPERTY(QString modelName READ modelName NOTIFY modelLoadedChanged)
    Q_PROPERTY(bool isSpeaking READ isSpeaking NOTIFY speakingChanged)
    //! Replies are to be read aloud.
    Q_PROPERTY(bool ttsEnabled READ ttsEnabled WRITE setTtsEnabled NOTIFY ttsEnabledChanged)
    //! A program and a voice that can read aloud were found.
    Q_PROPERTY(bool ttsAvailable READ ttsAvailable NOTIFY ttsAvailableChanged)
    Q_PROPERTY(bool wakeWordEnabled READ wakeWordEnabled WRITE setWakeWordEnabled NOTIFY wakeWordEnabledChanged)
    //! Id of the engine. Refuses those that aren't available; another engine's model is loaded at once.
    Q_PROPERTY(QString sttBackend READ sttBackend WRITE setSttBackend NOTIFY sttBackendChanged)
    Q_PROPERTY(bool whisperSmallAvailable READ whisperSmallAvailable NOTIFY whisperSmallAvailableChanged)
    Q_PROPERTY(bool whisperSmallQ5Available READ whisperSmallQ5Available NOTIFY whisperSmallQ5AvailableChanged)
    Q_PROPERTY(bool moonshineAvailable READ moonshineAvailable NOTIFY moonshineAvailableChanged)
    Q_PROPERTY(bool nemotronAvailable READ nemotronAvailable NOTIFY nemotronAvailableChanged)
    //! What was understood so far, while it is spoken.
    Q_PROPERTY(QString partialTranscript READ partialTranscript NOTIFY partialTranscriptChanged)
    Q_PROPERTY(bool liveSttAvailable READ liveSttAvailable NOTIFY liveSttAvailableChanged)
    //! The wish for live transcription, as a switch.
    Q_PROPERTY(bool liveSttEnabled READ liveSttEnabled WRITE setLiveSttEnabled NOTIFY liveSttEnabledChanged)
    //! "live" or "batch": the same wish in words. Without a live engine it has no effect.
    Q_PROPERTY(QString sttInputMode READ sttInputMode WRITE setSttInputMode NOTIFY sttInputModeChanged)
    //! "auto" or "manual". Kept here; QML acts on it.
    Q_PROPERTY(QString voiceSubmitMode READ voiceSubmitMode WRITE setVoiceSubmitMode NOTIFY voiceSubmitModeChanged)
    //! The voice test of the settings is open: transcripts belong to it. Not stored.
    Q_PROPERTY(bool voiceTestActive READ voiceTestActive WRITE setVoiceTestActive NOTIFY voiceTestActiveChanged)
    //! No live transcription, whatever the settings say. Not stored.
    Q_PROPERTY(bool batchSttMode READ batchSttMode WRITE setBatchSttMode NOTIFY batchSttModeChanged)
    //! Silence that ends an utterance, 200 to 5000 ms.
    Q_PROPERTY(int silenceTimeoutMs READ silenceTimeoutMs WRITE setSilenceTimeoutMs NOTIFY silenceTimeoutMsChanged)
    //! Seconds until a transcript is sent, 0 to 15. Kept here; QML acts on it.
    Q_PROPERTY(int voiceConfirmDelaySec READ voiceConfirmDelaySec WRITE setVoiceConfirmDelaySec NOTIFY
                   voiceConfirmDelaySecChanged)
    Q_PROPERTY(bool voiceLogEnabled READ voiceLogEnabled WRITE setVoiceLogEnabled NOTIFY voiceLogEnabledChanged)
    //! Newest first.
    Q_PROPERTY(QStringList voiceLog READ voiceLog NOTIFY voiceLogChanged)

public:
    //! Reads the settings, looks for engines and voices, and listens for the wake word. No model is loaded. The
    //! about-data must be set before, as it names the settings store.
    explicit VoiceBridge(QObject *parent = nullptr);
    //! The same with other parts.
    VoiceBridge(VoiceParts parts, QObject *parent);
    //! Ends capture and speech, and waits for the engine's work, however long it takes.
    ~VoiceBridge() override;

    bool isListening() const { return m_isListening; }
    bool isTranscribing() const { return m_isTranscribing; }
    bool isModelLoaded() const { return m_isModelLoaded; }
    QString lastTranscript() const { return m_lastTranscript; }
    double lastTranscriptionMs() const { return m_lastTranscriptionMs; }
    QString lastError() const { return m_lastError; }
    double inputLevel() const;
    QString modelName() const { return m_modelName; }
    bool isSpeaking() const;
    bool ttsEnabled() const { return m_ttsEnabled; }
    bool ttsAvailable() const;
    bool wakeWordEnabled() const { return m_wakeWordEnabled; }
    QString sttBackend() const { return m_sttBackend; }
    bool whisperSmallAvailable() const { return m_whisperSmallAvailable; }
    bool whisperSmallQ5Available() const { return m_whisperSmallQ5Available; }
    bool moonshineAvailable() const { return m_moonshineAvailable; }
    bool nemotronAvailable() const { return m_nemotronAvailable; }
    QString partialTranscript() const { return m_partialTranscript; }
    bool liveSttAvailable() const { return m_liveSttAvailable; }
    bool liveSttEnabled() const { return m_liveSttEnabled; }
    QString sttInputMode() const { return m_sttInputMode; }
    QString voiceSubmitMode() const { return m_voiceSubmitMode; }
    bool voiceTestActive() const { return m_voiceTestActive; }
    bool batchSttMode() const { return m_batchSttMode; }
    int silenceTimeoutMs() const { return m_silenceTimeoutMs; }
    int voiceConfirmDelaySec() const { return m_voiceConfirmDelaySec; }
    bool voiceLogEnabled() const { return m_voiceLogEnabled; }
    QStringList voiceLog() const { return m_voiceLog.lines(); }

    void setTtsEnabled(bool enabled);
    void setWakeWordEnabled(bool enabled);
    void setSttBackend(const QString &backend);
    void setLiveSttEnabled(bool enabled);
    void setSttInputMode(const QString &mode);
    void setVoiceSubmitMode(const QString &mode);
    void setVoiceTestActive(bool active);
    void setBatchSttMode(bool batch);
    void setSilenceTimeoutMs(int timeoutMs);
    void setVoiceConfirmDelaySec(int delaySec);
    void setVoiceLogEnabled(bool enabled);

    //! Listens until a silence, the limit of 30 seconds or stopListening(). Does nothing while an utterance is under
    //! way. Loads the engine's model if there is none yet, and opens the microphone; both block.
    Q_INVOKABLE void startListening();
    //! Ends the capture; what was said is transcribed.
    Q_INVOKABLE void stopListening();
    //! Throws the capture away. A transcription that runs isn't stopped: its text may still come.
    Q_INVOKABLE void cancelListening();

    //! Loads the model of the chosen engine, in place of the one before. Blocks as long as it takes, and longer while
    //! an engine works. @return false after errorOccurred()
    //! @param path of the model; empty for a search at the usual places
    Q_INVOKABLE bool loadModel(const QString &path);
    Q_INVOKABLE bool loadModel() { return loadModel(QString()); }

    //! Reads @p text, which may be markdown, aloud, in place of what is read now. Silent where that is off or can't be.
    Q_INVOKABLE void speak(const QString &text);
    Q_INVOKABLE void stopSpeaking();

    Q_INVOKABLE void clearVoiceLog();
    //! Adds a line while the log is on.
    Q_INVOKABLE void appendVoiceLog(const QString &entry);

    //! The file that takes what the voice test of the settings submits. Makes its directory.
    Q_INVOKABLE QString voiceTestLogPath() const;
    //! Adds one record, unless it says nothing: id, reference and hypothesis must have words.
    //! @param accuracy 0 to 1
    //! @param latencyMs of the engine
    Q_INVOKABLE void appendVoiceTestFeedback(const QString &sentenceId, const QString &category,
                                             const QString &reference, const QString &hypothesis, double accuracy,
                                             int latencyMs);

Q_SIGNALS:
    void listeningChanged();
    void transcribingChanged();
    void modelLoadedChanged();
    void transcriptReady(const QString &text);
    void inputLevelChanged();
    void errorOccurred(const QString &error);
    void speakingChanged();
    void ttsEnabledChanged();
    void ttsAvailableChanged();
    void speakingFinished();
    void wakeWordEnabledChanged();
    void wakeWordActivated(const QString &phrase);
    void sttBackendChanged();
    void partialTranscriptChanged();
    void liveSttAvailableChanged();
    void liveSttEnabledChanged();
    void sttInputModeChanged();
    void voiceSubmitModeChanged();
    void voiceTestActiveChanged();
    void batchSttModeChanged();
    void whisperSmallAvailableChanged();
    void whisperSmallQ5AvailableChanged();
    void moonshineAvailableChanged();
    void nemotronAvailableChanged();
    void silenceTimeoutMsChanged();
    void voiceConfirmDelaySecChanged();
    void voiceLogEnabledChanged();
    void voiceLogChanged();
    //! Audio for the chosen engine, 16 kHz, mono, signed 16 bit, little-endian.
    void requestTranscription(const QByteArray &pcm16Data);

private Q_SLOTS:
    void onTranscriptionReady(const QString &text, double elapsedMs);
    void onTranscriptionFailed(const QString &error);
    void onPartialTranscript(const QString &text);
    void onWakeWordActivated(const QString &phrase);
    void dispatchTranscription(const QByteArray &pcm16Data);

private:
    // Making
    template<typename Worker>
    void adoptWorker(Worker *worker);
    void readSettings();
    void detectEngines();

    // Listening
    bool wantsLive() const;
    bool prepareLiveSession();
    void startCapture(std::unique_ptr<Microphone> microphone, bool liveMode);
    void finishCapture(std::uint64_t number, bool speechSeen, bool liveMode, int chunks);
    void tellOfNoSpeech(int audioMs);
    void joinCaptureThread();
    void storeInputLevel(double rms);

    // Engines
    SherpaWorker *sherpaWorker(const QString &backend) const;
    QString refusal(const QString &backend) const;
    bool loadWhisperModel(const QString &path);
    bool loadSherpaModel(SherpaWorker *worker, bool available, const QString &path);
    void setModelLoaded(const QString &name);

    // Every change of these is told
    void setListening(bool listening);
    void setTranscribing(bool transcribing);
    void setAvailable(bool &flag, bool available, void (VoiceBridge::*changed)());
    void tellOfSetting(const char *name, const QString &value, const QString &logEntry);

    bool m_isListening = false;
    bool m_isTranscribing = false;
    bool m_isModelLoaded = false;
    QString m_lastTranscript;
    double m_lastTranscriptionMs = 0;
    QString m_lastError;
    //! Written by capture threads and read on the main thread without a lock: a stale level does no harm.
    double m_inputLevel = 0;
    QString m_modelName;
    bool m_ttsEnabled = false;
    bool m_wakeWordEnabled = false;
    QString m_sttBackend;
    bool m_whisperSmallAvailable = false;
    bool m_whisperSmallQ5Available = false;
    bool m_moonshineAvailable = false;
    bool m_nemotronAvailable = false;
    QString m_partialTranscript;
    bool m_liveSttAvailable = false;
    bool m_liveSttEnabled = true;
    QString m_sttInputMode;
    QString m_voiceSubmitMode;
    bool m_voiceTestActive = false;
    bool m_batchSttMode = false;
    int m_silenceTimeoutMs = 0;
    int m_voiceConfirmDelaySec = 0;
    bool m_voiceLogEnabled = false;
    VoiceLog m_voiceLog;

    const SearchRoots m_roots;
    const OpenMicrophone m_openMicrophone;
    SttPostProcessor m_postProcessor;
    SpeechOutput *const m_speechOutput;

    QThread m_workerThread;
    // They live on that thread, which deletes them at its end.
    WhisperWorker *const m_whisperWorker;
    MoonshineWorker *const m_moonshineWorker;
    NemotronWorker *const m_nemotronWorker;
    NemotronStreamingWorker *const m_streamingWorker;

    const std::shared_ptr<CaptureLink> m_captureLink;
    std::unique_ptr<Capture> m_capture;
    //! Counts the captures, so that the end of an older one is known as such.
    std::uint64_t m_captureNumber = 0;
    //! The last utterance's samples; its memory goes from capture to capture.
    std::vector<qint16> m_captureBuffer;
    bool m_liveSessionActive = false;
};
