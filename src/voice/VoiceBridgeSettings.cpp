// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The settings of VoiceBridge. The choice of an engine, which has side effects, is in VoiceBridgeEngines.cpp.
#include "VoiceBridge.h"

#include "VoiceSettingsTable.h"
#include "WakeWord.h"

#include <QDebug>
#include <QVariant>

namespace Table = VoiceSettingsTable;

void VoiceBridge::readSettings()
{
    m_settings = VoiceSettings::read();
    qDebug().noquote().nospace() << "[VoiceBridge] init  sttBackend=" << m_settings.sttBackend
                                 << " sttInputMode=" << m_settings.sttInputMode
                                 << " voiceSubmitMode=" << m_settings.voiceSubmitMode
                                 << " silenceTimeout=" << m_settings.silenceTimeoutMs
                                 << "ms confirmDelay=" << m_settings.voiceConfirmDelaySec
                                 << "s logEnabled=" << m_settings.voiceLogEnabled;
}

template<typename T>
bool VoiceBridge::assign(const VoiceSetting<T> &setting, const T &value)
{
    T &member = m_settings.*setting.member;
    // A value out of range may be the current one once it is clamped.
    const T normalized = setting.normalized(value);
    if (member == normalized) {
        return false;
    }
    member = normalized;
    return true;
}

template<typename T>
void VoiceBridge::publish(const VoiceSetting<T> &setting)
{
    m_settings.write(setting);
    const QString value = QVariant(m_settings.*setting.member).toString();
    if (setting.debugLine) {
        qDebug().noquote().nospace() << "[VoiceBridge] " << setting.key << " -> " << value;
    }
    if (setting.voiceLogEntry) {
        appendVoiceLog(QStringLiteral("Setting changed: ") + QString::fromLatin1(setting.voiceLogEntry).arg(value));
    }
    Q_EMIT(this->*setting.changed)();
}

template<typename T>
bool VoiceBridge::change(const VoiceSetting<T> &setting, const T &value)
{
    const bool isChanged = assign(setting, value);
    if (isChanged) {
        publish(setting);
    }
    return isChanged;
}

void VoiceBridge::setTtsEnabled(bool enabled)
{
    change(Table::ttsEnabled, enabled);
}

void VoiceBridge::setWakeWordEnabled(bool enabled)
{
    if (change(Table::wakeWordEnabled, enabled)) {
        enabled ? WakeWord::startService() : WakeWord::stopService();
    }
}

void VoiceBridge::setLiveSttEnabled(bool enabled)
{
    setSttInputMode(enabled ? SttInputMode::Live : SttInputMode::Batch);
}

void VoiceBridge::setSttInputMode(const QString &mode)
{
    if (assign(Table::sttInputMode, mode)) {
        // The switch follows the mode, and is complete before the mode's change is announced.
        change(Table::liveSttEnabled, m_settings.sttInputMode == SttInputMode::Live);
        publish(Table::sttInputMode);
    }
}

void VoiceBridge::setVoiceSubmitMode(const QString &mode)
{
    change(Table::voiceSubmitMode, mode);
}

void VoiceBridge::setSilenceTimeoutMs(int timeoutMs)
{
    change(Table::silenceTimeoutMs, timeoutMs);
}

void VoiceBridge::setVoiceConfirmDelaySec(int delaySec)
{
    change(Table::voiceConfirmDelaySec, delaySec);
}

void VoiceBridge::setVoiceLogEnabled(bool enabled)
{
    change(Table::voiceLogEnabled, enabled);
}

void VoiceBridge::setVoiceTestActive(bool active)
{
    if (m_voiceTestActive != active) {
        m_voiceTestActive = active;
        Q_EMIT voiceTestActiveChanged();
    }
}

void VoiceBridge::setBatchSttMode(bool batch)
{
    if (m_batchSttMode != batch) {
        m_batchSttMode = batch;
        Q_EMIT batchSttModeChanged();
    }
}
