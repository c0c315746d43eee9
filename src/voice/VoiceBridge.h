// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SttPostProcessor.h"
#include "VoiceLog.h"
#include "VoiceParts.h"
#include "VoiceSettings.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

class Capture;
class CaptureLink;
class SherpaWorker;
class SpeechOutput;

//! The voice path for QML, which knows it as voiceBridge: from the microphone to a corrected transcript, spoken
//! replies, the wake word, and the user's voice settings.
//!
//! One utterance at a time: it is captured (isListening), transcribed by an engine (isTranscribing), and reported by
//! transcriptReady(). Failures are reported by errorOccurred(). This class calls neither client of the bridge: QML
//! submits the transcripts.
//!
//! Used on the main thread. The engines share a worker thread, and each capture has its own.
class VoiceBridge : public QObject
{
    Q_OBJECT

    //! A capture is running. Stays true if the microphone can't be opened, until cancelListening().
    Q_PROPERTY(bool isListening READ isListening NOTIFY listeningChanged)
    //! An engine is transcribing.
    Q_PROPERTY(bool isTranscribing READ isTranscribing NOTIFY transcribingChanged)
    Q_PROPERTY(bool isModelLoaded READ isModelLoaded NOTIFY modelLoadedChanged)
    //! The last final transcript, corrected.
    Q_PROPERTY(QString lastTranscript READ lastTranscript NOTIFY transcriptReady)
    //! Engine time of the last transcript in milliseconds.
    Q_PROPERTY(double lastTranscriptionMs READ lastTranscriptionMs NOTIFY transcriptReady)
    //! The last error of an engine; other errors aren't kept.
    Q_PROPERTY(QString lastError READ lastError NOTIFY errorOccurred)
    //! Root mean square of a chunk, 0 to 1, unscaled. Updated four times a second.
    Q_PROPERTY(double inputLevel READ inputLevel NOTIFY inputLevelChanged)
    //! The file or directory name of the loaded model.
    Q_PROPERTY(QString modelName READ modelName NOTIFY modelLoadedChanged)
    Q_PROPERTY(bool isSpeaking READ isSpeaking NOTIFY speakingChanged)
    //! Whether replies are read aloud.
    Q_PROPERTY(bool ttsEnabled READ ttsEnabled WRITE setTtsEnabled NOTIFY ttsEnabledChanged)
    //! Whether piper and a voice were found.
    Q_PROPERTY(bool ttsAvailable READ ttsAvailable NOTIFY ttsAvailableChanged)
    Q_PROPERTY(bool wakeWordEnabled READ wakeWordEnabled WRITE setWakeWordEnabled NOTIFY wakeWordEnabledChanged)
    //! The id of the engine. The setter refuses engines that aren't available, and loads the new engine's model at
    //! once.
    Q_PROPERTY(QString sttBackend READ sttBackend WRITE setSttBackend NOTIFY sttBackendChanged)
    Q_PROPERTY(bool whisperSmallAvailable READ whisperSmallAvailable NOTIFY whisperSmallAvailableChanged)
    Q_PROPERTY(bool whisperSmallQ5Available READ whisperSmallQ5Available NOTIFY whisperSmallQ5AvailableChanged)
    Q_PROPERTY(bool moonshineAvailable READ moonshineAvailable NOTIFY moonshineAvailableChanged)
    Q_PROPERTY(bool nemotronAvailable READ nemotronAvailable NOTIFY nemotronAvailableChanged)
    //! The transcript so far, while the user speaks.
    Q_PROPERTY(QString partialTranscript READ partialTranscript NOTIFY partialTranscriptChanged)
    Q_PROPERTY(bool liveSttAvailable READ liveSttAvailable NOTIFY liveSttAvailableChanged)
    //! Whether the user wants live transcription.
    Q_PROPERTY(bool liveSttEnabled READ liveSttEnabled WRITE setLiveSttEnabled NOTIFY liveSttEnabledChanged)
    //! The same as a mode, "live" or "batch". Has no effect without a live engine.
    Q_PROPERTY(QString sttInputMode READ sttInputMode WRITE setSttInputMode NOTIFY sttInputModeChanged)
    //! "auto" or "manual". Only stored here: QML acts on it.
    Q_PROPERTY(QString voiceSubmitMode READ voiceSubmitMode WRITE setVoiceSubmitMode NOTIFY voiceSubmitModeChanged)
    //! The voice test of the settings is open and takes the transcripts. Not stored.
    Q_PROPERTY(bool voiceTestActive READ voiceTestActive WRITE setVoiceTestActive NOTIFY voiceTestActiveChanged)
    //! Disables live transcription regardless of the settings. Not stored.
    Q_PROPERTY(bool batchSttMode READ batchSttMode WRITE setBatchSttMode NOTIFY batchSttModeChanged)
    //! Silence that ends an utterance, 200 to 5000 ms.
    Q_PROPERTY(int silenceTimeoutMs READ silenceTimeoutMs WRITE setSilenceTimeoutMs NOTIFY silenceTimeoutMsChanged)
    //! Seconds until a transcript is sent, 0 to 15. Only stored here: QML acts on it.
    Q_PROPERTY(int voiceConfirmDelaySec READ voiceConfirmDelaySec WRITE setVoiceConfirmDelaySec NOTIFY
                   voiceConfirmDelaySecChanged)
    Q_PROPERTY(bool voiceLogEnabled READ voiceLogEnabled WRITE setVoiceLogEnabled NOTIFY voiceLogEnabledChanged)
    //! Newest first.
    Q_PROPERTY(QStringList voiceLog READ voiceLog NOTIFY voiceLogChanged)

public:
    //! Reads the settings, searches engines and voices, and connects to the wake word's signal. Loads no model. The
    //! about-data must have been set because it determines the settings store.
    explicit VoiceBridge(QObject *parent = nullptr);
    //! The same with other parts.
    explicit VoiceBridge(VoiceParts parts, QObject *parent = nullptr);
    //! Ends capture and speech, and waits without a timeout for a running transcription.
    ~VoiceBridge() override;

    bool isListening() const { return m_isListening; }
    bool isTranscribing() const { return m_isTranscribing; }
    bool isModelLoaded() const { return m_isModelLoaded; }
    QString lastTranscript() const { return m_lastTranscript; }
    double lastTranscriptionMs() const { return m_lastTranscriptionMs; }
    QString lastError() const { return m_lastError; }
    double inputLevel() const { return m_inputLevel.load(std::memory_order_relaxed); }
    QString modelName() const { return m_modelName; }
    bool isSpeaking() const;
    bool ttsEnabled() const { return m_settings.ttsEnabled; }
    bool ttsAvailable() const;
    bool wakeWordEnabled() const { return m_settings.wakeWordEnabled; }
    QString sttBackend() const { return m_settings.sttBackend; }
    bool whisperSmallAvailable() const { return m_whisperSmallAvailable; }
    bool whisperSmallQ5Available() const { return m_whisperSmallQ5Available; }
    bool moonshineAvailable() const { return m_moonshineAvailable; }
    bool nemotronAvailable() const { return m_nemotronAvailable; }
    QString partialTranscript() const { return m_partialTranscript; }
    bool liveSttAvailable() const { return m_liveSttAvailable; }
    bool liveSttEnabled() const { return m_settings.liveSttEnabled; }
    QString sttInputMode() const { return m_settings.sttInputMode; }
    QString voiceSubmitMode() const { return m_settings.voiceSubmitMode; }
    bool voiceTestActive() const { return m_voiceTestActive; }
    bool batchSttMode() const { return m_batchSttMode; }
    int silenceTimeoutMs() const { return m_settings.silenceTimeoutMs; }
    int voiceConfirmDelaySec() const { return m_settings.voiceConfirmDelaySec; }
    bool voiceLogEnabled() const { return m_settings.voiceLogEnabled; }
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

    //! Captures an utterance, until silence, the limit of 30 seconds or stopListening(). Does nothing while another
    //! utterance is captured or transcribed. Loads the engine's model first if needed, and opens the microphone; both
    //! block.
    Q_INVOKABLE void startListening();
    //! Ends the capture, which is then transcribed.
    Q_INVOKABLE void stopListening();
    //! Discards the capture. A running transcription isn't stopped: its transcript may still be reported.
    Q_INVOKABLE void cancelListening();

    //! Replaces the loaded model by the one of the chosen engine. Blocks until a running transcription has ended and
    //! the model is loaded. @return false after errorOccurred()
    //! @param path of the model; empty to search the default places
    Q_INVOKABLE bool loadModel(const QString &path);
    Q_INVOKABLE bool loadModel() { return loadModel(QString()); }

    //! Stops the current reply and reads @p text aloud, which may be markdown. Does nothing if speech is switched off
    //! or not available.
    Q_INVOKABLE void speak(const QString &text);
    Q_INVOKABLE void stopSpeaking();

    Q_INVOKABLE void clearVoiceLog();
    //! Adds a line if the log is enabled.
    Q_INVOKABLE void appendVoiceLog(const QString &entry);

    //! The path of the log of submitted voice tests. Creates its directory.
    Q_INVOKABLE QString voiceTestLogPath() const;
    //! Appends a record to it, unless id, reference or hypothesis is blank.
    //! @param accuracy 0 to 1
    //! @param latencyMs engine time in milliseconds
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
    //! An utterance for the chosen engine: 16 kHz, mono, signed 16 bit, little-endian.
    void requestTranscription(const QByteArray &pcm16Data);

private Q_SLOTS:
    void onTranscriptionReady(const QString &text, double elapsedMs);
    void onTranscriptionFailed(const QString &error);
    void onPartialTranscript(const QString &text);
    void onWakeWordActivated(const QString &phrase);
    void dispatchTranscription(const QByteArray &pcm16Data);

private:
    // Construction
    template<typename Worker>
    void adoptWorker(Worker *worker);
    void readSettings();
    void detectEngines();

    // Listening
    bool wantsLive() const;
    bool prepareLiveSession();
    void startCapture(std::uint64_t number, std::unique_ptr<Microphone> microphone, bool liveMode);
    void finishCapture(std::uint64_t number, bool speechSeen, bool liveMode, int chunks);
    void reportNoSpeech(std::chrono::milliseconds audio);
    void joinCaptureThread();

    // Engines
    SherpaWorker *sherpaWorker(const QString &backend) const;
    QString refusal(const QString &backend) const;
    bool loadWhisperModel(const QString &path);
    bool loadSherpaModel(SherpaWorker *worker, bool available, const QString &path);
    void setModelLoaded(const QString &name);

    // These emit the change signal
    void setListening(bool listening);
    void setTranscribing(bool transcribing);
    void setAvailable(bool &flag, bool available, void (VoiceBridge::*changed)());

    // Settings, see VoiceSettingsTable.h
    //! Stores a value that passes the setting's normalization. Returns false if the setting has it already.
    template<typename T>
    bool change(const VoiceSetting<T> &setting, const T &value);
    //! The first half of change(): sets the member.
    template<typename T>
    bool assign(const VoiceSetting<T> &setting, const T &value);
    //! The second half: writes the setting to the store and the logs, and emits its signal.
    template<typename T>
    void publish(const VoiceSetting<T> &setting);

    bool m_isListening = false;
    bool m_isTranscribing = false;
    bool m_isModelLoaded = false;
    QString m_lastTranscript;
    double m_lastTranscriptionMs = 0;
    QString m_lastError;
    //! Written by capture threads. Relaxed: an outdated level does no harm, and it orders nothing else.
    std::atomic<double> m_inputLevel = 0;
    QString m_modelName;
    VoiceSettings m_settings;
    bool m_whisperSmallAvailable = false;
    bool m_whisperSmallQ5Available = false;
    bool m_moonshineAvailable = false;
    bool m_nemotronAvailable = false;
    QString m_partialTranscript;
    bool m_liveSttAvailable = false;
    bool m_voiceTestActive = false;
    bool m_batchSttMode = false;
    VoiceLog m_voiceLog;

    const SearchRoots m_roots;
    const OpenMicrophone m_openMicrophone;
    SttPostProcessor m_postProcessor;
    SpeechOutput *const m_speechOutput;

    QThread m_workerThread;
    // They live on that thread and are deleted when it ends.
    WhisperWorker *const m_whisperWorker;
    MoonshineWorker *const m_moonshineWorker;
    NemotronWorker *const m_nemotronWorker;
    NemotronStreamingWorker *const m_streamingWorker;

    const std::shared_ptr<CaptureLink> m_captureLink;
    std::unique_ptr<Capture> m_capture;
    //! Number of the last capture that was started, even if its microphone couldn't be opened. The end of an earlier
    //! one, which was cancelled, may be delivered later.
    std::uint64_t m_captureNumber = 0;
    //! The samples of the last utterance. Its memory is reused by the next capture.
    std::vector<qint16> m_captureBuffer;
    bool m_liveSessionActive = false;
};
