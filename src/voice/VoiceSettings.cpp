// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceSettings.h"

#include "VoiceSettingsTable.h"

#include <QSettings>
#include <QVariant>

namespace
{

template<typename T>
QString storeKey(const VoiceSetting<T> &setting)
{
    return QStringLiteral("voice/") + QLatin1String(setting.key);
}

template<typename T>
T storedValue(const QSettings &store, const VoiceSetting<T> &setting)
{
    const T value = store.value(storeKey(setting), setting.defaultValue).template value<T>();
    return setting.normalizesStored ? setting.normalized(value) : value;
}

} // namespace

VoiceSettings VoiceSettings::read()
{
    const QSettings store;
    VoiceSettings settings;
    VoiceSettingsTable::forEach([&](const auto &setting) { settings.*setting.member = storedValue(store, setting); });

    QString &mode = settings.sttInputMode;
    mode = mode.trimmed().toLower();
    if (mode != SttInputMode::Live && mode != SttInputMode::Batch) {
        mode = settings.liveSttEnabled ? SttInputMode::Live : SttInputMode::Batch;
    }
    return settings;
}

template<typename T>
void VoiceSettings::write(const VoiceSetting<T> &setting) const
{
    QSettings().setValue(storeKey(setting), this->*setting.member);
}

template void VoiceSettings::write(const VoiceSetting<bool> &setting) const;
template void VoiceSettings::write(const VoiceSetting<int> &setting) const;
template void VoiceSettings::write(const VoiceSetting<QString> &setting) const;
