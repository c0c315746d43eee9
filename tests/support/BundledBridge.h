// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Timeouts.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <QtGlobal>

//! The bridge of this project, as a child process on port 8765: without a model server, with both optional features,
//! without pauses, and with a private home. It needs NEEDS net and tool:node. The destructor ends it.
class BundledBridge : public QProcess
{
public:
    BundledBridge()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("LOOMRA_MODEL_URL"), QStringLiteral("none"));
        environment.insert(QStringLiteral("LOOMRA_WORKSPACE_INTEL"), QStringLiteral("1"));
        environment.insert(QStringLiteral("LOOMRA_AI_RUNTIME"), QStringLiteral("1"));
        environment.insert(QStringLiteral("LOOMRA_DEMO_DELAY_MS"), QStringLiteral("0"));
        setProcessEnvironment(environment);
        start(QStringLiteral("node"), {directory() + QStringLiteral("/bridge.js")});
    }
    ~BundledBridge() override
    {
        terminate();
        if (!waitForFinished(Timeouts::Default)) {
            kill();
            waitForFinished();
        }
    }
    Q_DISABLE_COPY_MOVE(BundledBridge)

    static QString directory()
    {
        return qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tools/sdk-bridge");
    }

    //! Waits for the line that it prints when it listens.
    bool isListening() { return canReadLine() || waitForReadyRead(Timeouts::Program); }

private:
    const QTemporaryDir m_home;
};
