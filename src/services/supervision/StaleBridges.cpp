// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "StaleBridges.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QProcess>
#include <QThread>

namespace
{

using StaleBridges::Verdict;

//! What lsof prints about the users of a port; none if it can't be run.
std::optional<QString> usersOf(int port)
{
    QProcess lsof;
    lsof.start(QStringLiteral("lsof"), {QStringLiteral("-ti"), QStringLiteral(":%1").arg(port)});
    // The exit code doesn't matter: it is 1 if nothing uses the port.
    if (!lsof.waitForFinished(StaleBridges::LsofTimeout.count()) || lsof.exitStatus() != QProcess::NormalExit) {
        qDebug() << "lsof command timed out or failed";
        lsof.kill();
        lsof.waitForFinished(StaleBridges::EndTimeout.count());
        return std::nullopt;
    }
    const QString output = QString::fromLocal8Bit(lsof.readAllStandardOutput());
    const QString error = QString::fromLocal8Bit(lsof.readAllStandardError()).trimmed();
    // This message is caused by sockets that are being closed, and is harmless.
    if (!error.isEmpty() && !error.contains(QLatin1String("can't identify protocol"))) {
        qDebug() << "lsof error:" << error;
    }
    return output.trimmed();
}

std::optional<QString> commOf(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/comm").arg(pid));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return QString::fromLocal8Bit(file.readAll()).trimmed();
}

void end(qint64 pid)
{
    qDebug() << "Killing stale bridge process PID:" << pid;
    QProcess kill;
    kill.start(QStringLiteral("kill"), {QStringLiteral("-9"), QString::number(pid)});
    // The exit status alone isn't enough: a process that never ran has the exit code 0 too.
    const bool finished =
        kill.waitForFinished(StaleBridges::KillTimeout.count()) && kill.exitStatus() == QProcess::NormalExit;
    if (finished && kill.exitCode() == 0) {
        qDebug() << "Successfully killed process" << pid;
        return;
    }
    qWarning() << "Failed to kill process" << pid << ":" << kill.errorString();
    kill.kill();
    kill.waitForFinished(StaleBridges::EndTimeout.count());
}

} // namespace

QVector<qint64> StaleBridges::pidsIn(const QString &lsofOutput)
{
    QVector<qint64> pids;
    const QVector<QStringRef> lines = lsofOutput.splitRef(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QStringRef &line : lines) {
        bool isNumber = false;
        const qint64 pid = line.toLongLong(&isNumber);
        if (isNumber && pid > 0) {
            pids.append(pid);
        }
    }
    return pids;
}

Verdict StaleBridges::verdictOn(qint64 pid, qint64 ownPid, const std::optional<QString> &comm)
{
    if (pid == ownPid) {
        return Verdict::SkipOwn;
    }
    return comm.value_or(QStringLiteral("node")) == QLatin1String("node") ? Verdict::Kill : Verdict::SkipOther;
}

void StaleBridges::purge(int port)
{
    qDebug() << "Checking for stale processes on port" << port;
    const std::optional<QString> users = usersOf(port);
    if (!users) {
        return;
    }
    if (users->isEmpty()) {
        qDebug() << "No stale processes found on port";
        return;
    }
    for (const qint64 pid : pidsIn(*users)) {
        const std::optional<QString> comm = commOf(pid);
        switch (verdictOn(pid, QCoreApplication::applicationPid(), comm)) {
        case Verdict::SkipOwn:
            qDebug() << "Skipping own PID" << pid;
            break;
        case Verdict::SkipOther:
            qDebug() << "Skipping non-node process PID" << pid << "comm:" << *comm;
            break;
        case Verdict::Kill:
            end(pid);
            break;
        }
    }
    qDebug() << "Waiting for port to be released...";
    QThread::msleep(StaleBridges::PortReleaseDelay.count());
}
