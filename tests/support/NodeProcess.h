// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QProcess>

//! A node script that runs until it is killed, at the latest by the destructor.
class NodeProcess : public QProcess
{
public:
    //! @param name the process name. It is set explicitly, because some versions of node rename their main thread.
    //! @param work a script that prints something when it is ready
    NodeProcess(const QString &name, const QString &work)
    {
        start(QStringLiteral("node"),
              {QStringLiteral("-e"), QStringLiteral("process.title = '%1'; %2").arg(name, work)});
    }
    ~NodeProcess() override
    {
        kill();
        waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(NodeProcess)

    //! Waits for the first output.
    bool isReady() { return bytesAvailable() > 0 || waitForReadyRead(); }
};
