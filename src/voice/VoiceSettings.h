// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

template<typename T>
struct VoiceSetting;

//! The user's voice settings. They are stored in the application's default QSettings store, beside those of the
//! conversation, and not in the KConfig file. The table with their keys, defaults and ranges is VoiceSettingsTable.h.
struct VoiceSettings
{
    bool ttsEnabled = false;
    bool wakeWordEnabled = false;
    QString sttBackend;
    bool liveSttEnabled = false;
    QString sttInputMode;
    QString voiceSubmitMode;
    int silenceTimeoutMs = 0;
    int voiceConfirmDelaySec = 0;
    bool voiceLogEnabled = false;

    //! The stored settings, with the default for each one that is absent. Numbers and the backend are taken unchecked:
    //! only a hand-edited file has values out of range, and they do no harm. Invalid modes are replaced.
    static VoiceSettings read();

    //! Writes the current value of one setting to the store.
    template<typename T>
    void write(const VoiceSetting<T> &setting) const;
};

//! The values of sttInputMode.
namespace SttInputMode
{
inline const QLatin1String Live("live");
inline const QLatin1String Batch("batch");
} // namespace SttInputMode

//! The values of voiceSubmitMode.
namespace VoiceSubmitMode
{
inline const QLatin1String Auto("auto");
inline const QLatin1String Manual("manual");
} // namespace VoiceSubmitMode
