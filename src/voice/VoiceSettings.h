// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QVariant>

//! The user's voice settings, in the application's default QSettings store. They lie beside those of the conversation,
//! not in the KConfig file.
struct VoiceSettings
{
    bool ttsEnabled = false;
    bool wakeWordEnabled = false;
    QString sttBackend;
    bool liveSttEnabled = true;
    QString sttInputMode;
    QString voiceSubmitMode;
    int silenceTimeoutMs = 700;
    int voiceConfirmDelaySec = 4;
    bool voiceLogEnabled = false;

    //! What the store holds, in the order of the members, with a default for each that is absent. Numbers and the
    //! backend are taken as they stand: only a hand-edited file holds odd ones, and their effects are harmless. Words
    //! that name no mode are repaired.
    static VoiceSettings read();
    //! @param name without the group that all have in common
    static void write(const char *name, const QVariant &value);

    //! "live", or "batch" for all other words. Case and blanks around it don't count.
    static QString inputMode(const QString &words);
    //! "manual", or "auto" for all other words. Case and blanks around it don't count.
    static QString submitMode(const QString &words);
};

//! Names of the settings in the store.
namespace VoiceKeys
{
constexpr char ttsEnabled[] = "ttsEnabled";
constexpr char wakeWordEnabled[] = "wakeWordEnabled";
constexpr char sttBackend[] = "sttBackend";
constexpr char liveSttEnabled[] = "liveSttEnabled";
constexpr char sttInputMode[] = "sttInputMode";
constexpr char voiceSubmitMode[] = "voiceSubmitMode";
constexpr char silenceTimeoutMs[] = "silenceTimeoutMs";
constexpr char voiceConfirmDelaySec[] = "voiceConfirmDelaySec";
constexpr char voiceLogEnabled[] = "voiceLogEnabled";
} // namespace VoiceKeys

//! Words that several settings and signals share.
namespace VoiceWords
{
inline QString live()
{
    return QStringLiteral("live");
}
inline QString batch()
{
    return QStringLiteral("batch");
}
} // namespace VoiceWords
