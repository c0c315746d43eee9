// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceSettings.h"

#include "SttBackends.h"

#include <QSettings>

namespace
{

QString key(const char *name)
{
    return QStringLiteral("voice/") + QLatin1String(name);
}

QString word(const QString &words)
{
    return words.trimmed().toLower();
}

} // namespace

VoiceSettings VoiceSettings::read()
{
    const QSettings store;
    const VoiceSettings usual;
    VoiceSettings stored;
    stored.ttsEnabled = store.value(key(VoiceKeys::ttsEnabled), usual.ttsEnabled).toBool();
    stored.wakeWordEnabled = store.value(key(VoiceKeys::wakeWordEnabled), usual.wakeWordEnabled).toBool();
    stored.sttBackend = store.value(key(VoiceKeys::sttBackend), SttBackends::usual()).toString();
    stored.liveSttEnabled = store.value(key(VoiceKeys::liveSttEnabled), usual.liveSttEnabled).toBool();
    stored.sttInputMode = word(store.value(key(VoiceKeys::sttInputMode)).toString());
    if (stored.sttInputMode != VoiceWords::live() && stored.sttInputMode != VoiceWords::batch()) {
        stored.sttInputMode = stored.liveSttEnabled ? VoiceWords::live() : VoiceWords::batch();
    }
    stored.voiceSubmitMode = submitMode(store.value(key(VoiceKeys::voiceSubmitMode)).toString());
    stored.silenceTimeoutMs = store.value(key(VoiceKeys::silenceTimeoutMs), usual.silenceTimeoutMs).toInt();
    stored.voiceConfirmDelaySec = store.value(key(VoiceKeys::voiceConfirmDelaySec), usual.voiceConfirmDelaySec).toInt();
    stored.voiceLogEnabled = store.value(key(VoiceKeys::voiceLogEnabled), usual.voiceLogEnabled).toBool();
    return stored;
}

void VoiceSettings::write(const char *name, const QVariant &value)
{
    QSettings().setValue(key(name), value);
}

QString VoiceSettings::inputMode(const QString &words)
{
    return word(words) == VoiceWords::live() ? VoiceWords::live() : VoiceWords::batch();
}

QString VoiceSettings::submitMode(const QString &words)
{
    const QString manual = QStringLiteral("manual");
    return word(words) == manual ? manual : QStringLiteral("auto");
}
