// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SttBackends.h"
#include "VoiceBridge.h"
#include "VoiceSettings.h"

#include <algorithm>
#include <tuple>
#include <type_traits>

//! One row of the table of voice settings.
template<typename T>
struct VoiceSetting
{
    using Default = std::conditional_t<std::is_same_v<T, QString>, QLatin1String, T>;

    T VoiceSettings::*member;
    //! In the group "voice" of the store; also the name in the log.
    const char *key;
    //! For a store without the key.
    Default defaultValue {};
    //! What the setter makes of a value. Keeps it by default.
    T (*normalized)(const T &value) = [](const T &value) { return value; };
    //! The stored value is normalized when it is read. Otherwise it is taken as it is.
    bool normalizesStored = false;
    void (VoiceBridge::*changed)();
    //! A change is written to the debug log.
    bool debugLine = false;
    //! A change is written to the voice log; %1 is the value.
    const char *voiceLogEntry = nullptr;
};

//! The table. A new setting needs a row, also in forEach(), a member of VoiceSettings, and a property of VoiceBridge.
namespace VoiceSettingsTable
{

template<int minimum, int maximum>
int clamped(const int &value)
{
    return std::clamp(value, minimum, maximum);
}

//! The first of the two words if @p text is that word, the second one for any other text. Ignores case and surrounding
//! whitespace.
template<const QLatin1String &word, const QLatin1String &otherwise>
QString wordOr(const QString &text)
{
    return text.trimmed().toLower() == word ? word : otherwise;
}

inline const VoiceSetting<bool> ttsEnabled {
    .member = &VoiceSettings::ttsEnabled,
    .key = "ttsEnabled",
    .changed = &VoiceBridge::ttsEnabledChanged,
};
inline const VoiceSetting<bool> wakeWordEnabled {
    .member = &VoiceSettings::wakeWordEnabled,
    .key = "wakeWordEnabled",
    .changed = &VoiceBridge::wakeWordEnabledChanged,
};
inline const VoiceSetting<QString> sttBackend {
    .member = &VoiceSettings::sttBackend,
    .key = "sttBackend",
    .defaultValue = SttBackends::Default,
    .normalized = SttBackends::normalized,
    .changed = &VoiceBridge::sttBackendChanged,
};
inline const VoiceSetting<bool> liveSttEnabled {
    .member = &VoiceSettings::liveSttEnabled,
    .key = "liveSttEnabled",
    .defaultValue = true,
    .changed = &VoiceBridge::liveSttEnabledChanged,
};
// Without a stored mode liveSttEnabled decides, see VoiceSettings::read().
inline const VoiceSetting<QString> sttInputMode {
    .member = &VoiceSettings::sttInputMode,
    .key = "sttInputMode",
    .normalized = wordOr<SttInputMode::Live, SttInputMode::Batch>,
    .changed = &VoiceBridge::sttInputModeChanged,
    .debugLine = true,
    .voiceLogEntry = "STT mode = %1",
};
inline const VoiceSetting<QString> voiceSubmitMode {
    .member = &VoiceSettings::voiceSubmitMode,
    .key = "voiceSubmitMode",
    .defaultValue = VoiceSubmitMode::Auto,
    .normalized = wordOr<VoiceSubmitMode::Manual, VoiceSubmitMode::Auto>,
    .normalizesStored = true,
    .changed = &VoiceBridge::voiceSubmitModeChanged,
    .debugLine = true,
    .voiceLogEntry = "submit mode = %1",
};
inline const VoiceSetting<int> silenceTimeoutMs {
    .member = &VoiceSettings::silenceTimeoutMs,
    .key = "silenceTimeoutMs",
    .defaultValue = 700,
    .normalized = clamped<200, 5000>,
    .changed = &VoiceBridge::silenceTimeoutMsChanged,
    .debugLine = true,
    .voiceLogEntry = "silence timeout = %1 ms",
};
inline const VoiceSetting<int> voiceConfirmDelaySec {
    .member = &VoiceSettings::voiceConfirmDelaySec,
    .key = "voiceConfirmDelaySec",
    .defaultValue = 4,
    .normalized = clamped<0, 15>,
    .changed = &VoiceBridge::voiceConfirmDelaySecChanged,
    .debugLine = true,
    .voiceLogEntry = "confirm delay = %1 s",
};
// Not in the voice log, which would begin with this line each time that it is switched on.
inline const VoiceSetting<bool> voiceLogEnabled {
    .member = &VoiceSettings::voiceLogEnabled,
    .key = "voiceLogEnabled",
    .changed = &VoiceBridge::voiceLogEnabledChanged,
    .debugLine = true,
};

//! Calls @p visit with each row.
template<typename Visit>
void forEach(Visit visit)
{
    std::apply([&visit](const auto &...setting) { (visit(setting), ...); },
               std::tie(ttsEnabled, wakeWordEnabled, sttBackend, liveSttEnabled, sttInputMode, voiceSubmitMode,
                        silenceTimeoutMs, voiceConfirmDelaySec, voiceLogEnabled));
}

} // namespace VoiceSettingsTable
