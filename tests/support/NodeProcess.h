// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QProcess>

//! A program of node that runs until it is killed, at the latest with this object.
class NodeProcess : public QProcess
{
public:
    //! @param name as the kernel is to tell it. It is set, for some versions of node name their thread otherwise.
    //! @param work a script that prints something once it is ready
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

    //! Waits for the first thing that it prints.
    bool isReady() { return bytesAvailable() > 0 || waitForReadyRead(); }
};
