// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "FaultInjection.h"
#include "VoiceRun.h"

#include <QTemporaryDir>

//! A VoiceRun on a machine at fault. The disk that #faults changes is that of the settings, of the user's data and of
//! temporary files. The stand-ins note their runs elsewhere.
//!
//! Errors in its set-up fail the running test.
class FaultyVoiceRun : public VoiceRun
{
public:
    //! @param confirmDelay see VoiceRun
    explicit FaultyVoiceRun(std::chrono::seconds confirmDelay, const QString &words = QStringLiteral("Yes"));

    //! Starts the program with #environment.
    bool start(const QStringList &arguments = {}) { return VoiceRun::start(arguments, environment); }

    //! The temporary files of the program.
    QStringList tempFiles() const;
    //! Whether the stored settings of the voice path are those of the start.
    bool areSettingsKept() const;

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    FaultInjection faults;

private:
    const QTemporaryDir m_temp;
    const QByteArray m_settings;
};
