// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The bridge as a child process, or as a user service.

#include "LoomraSDK.h"

#include "BridgeEnvironment.h"
#include "BridgeProcessTimes.h"
#include "DebugEventLog.h"
#include "Environment.h"
#include "StaleBridges.h"
#include "UserUnit.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QThread>
#include <QTimer>
#include <QWebSocket>

namespace
{

QString startLocation()
{
    return QStringLiteral("LoomraSDK:startBridgeProcess");
}

} // namespace

void LoomraSDK::setConnectOnly(bool connectOnly)
{
    m_connectOnly = connectOnly;
}

void LoomraSDK::initialize()
{
    qDebug() << "LoomraSDK::initialize() called, connectOnly:" << m_connectOnly;
    DebugEventLog::write(QStringLiteral("LoomraSDK:initialize"), QStringLiteral("initialize called"),
                         QStringLiteral("{}"));
    if (!m_connectOnly) {
        startBridgeProcess();
        return;
    }
    qDebug() << "Connect-only mode: connecting to existing bridge on port" << BridgeConnection::Port;
    ensureBridgeUserServiceStarted();
    QTimer::singleShot(BridgeProcessTimes::ConnectAfterService, this, &LoomraSDK::connectWebSocket);
}

void LoomraSDK::startBridgeProcess()
{
    qDebug() << "LoomraSDK::startBridgeProcess() called, state:" << m_bridgeProcess->state() << "path:" << m_bridgePath;
    DebugEventLog::write(startLocation(), QStringLiteral("startBridgeProcess entry"), [&] {
        return QStringLiteral("{\"state\":%1,\"bridgePath\":\"%2\"}")
            .arg(QString::number(m_bridgeProcess->state()), DebugEventLog::escaped(m_bridgePath));
    });
    if (m_bridgeProcess->state() != QProcess::NotRunning) {
        qDebug() << "Bridge process already running, skipping start";
        return;
    }
    StaleBridges::purge(BridgeConnection::Port);

    const QString script = QDir(m_bridgePath).absoluteFilePath(QStringLiteral("bridge.js"));
    if (!QFile::exists(script)) {
        Q_EMIT error(QStringLiteral("Bridge script not found: %1").arg(script));
        DebugEventLog::write(startLocation(), QStringLiteral("Bridge script not found"), [&] {
            return QStringLiteral("{\"scriptPath\":\"%1\"}").arg(DebugEventLog::escaped(script));
        });
        return;
    }

    const BridgeEnvironment::ForChild forChild = BridgeEnvironment::forChild(BridgeConnection::Port);
    if (m_executorPathEnabled != forChild.executorPathEnabled) {
        m_executorPathEnabled = forChild.executorPathEnabled;
        Q_EMIT executorPathEnabledChanged();
    }
    m_bridgeProcess->setProcessEnvironment(forChild.environment);
    m_bridgeProcess->setWorkingDirectory(m_bridgePath);
    m_bridgeProcess->setProcessChannelMode(QProcess::MergedChannels);
    // Intentional: connected again at each start and never disconnected. The first slot reads everything, and each
    // other one logs an empty line.
    connect(m_bridgeProcess, &QProcess::readyReadStandardOutput, this, &LoomraSDK::readBridgeOutput);

    const QString node = QStringLiteral("node");
    DebugEventLog::write(startLocation(), QStringLiteral("Starting bridge process"), [&] {
        return QStringLiteral("{\"nodePath\":\"%1\",\"scriptPath\":\"%2\",\"workingDir\":\"%3\"}")
            .arg(node, DebugEventLog::escaped(script), DebugEventLog::escaped(m_bridgePath));
    });
    m_bridgeProcess->start(node, {script});
    if (!m_bridgeProcess->waitForStarted(BridgeProcessTimes::StartTimeout.count())) {
        const QString reason = m_bridgeProcess->errorString();
        qDebug() << "Bridge process failed to start:" << reason;
        Q_EMIT error(QStringLiteral("Failed to start bridge process"));
        DebugEventLog::write(startLocation(), QStringLiteral("Bridge process failed to start"), [&] {
            return QStringLiteral("{\"errorString\":\"%1\"}").arg(DebugEventLog::escaped(reason));
        });
        return;
    }
    qDebug() << "Bridge process started successfully, PID:" << m_bridgeProcess->processId();
    DebugEventLog::write(startLocation(), QStringLiteral("Bridge process started"), [&] {
        return QStringLiteral("{\"port\":%1,\"pid\":%2}").arg(BridgeConnection::Port).arg(m_bridgeProcess->processId());
    });
    qDebug() << "Scheduling WebSocket connection in 1 second";
    QTimer::singleShot(BridgeProcessTimes::ConnectAfterStart, this, &LoomraSDK::connectWebSocket);
}

void LoomraSDK::readBridgeOutput()
{
    const QByteArray output = m_bridgeProcess->readAllStandardOutput();
    qDebug() << "Bridge output:" << output;
    if (output.isNull()) {
        return;
    }
    // Intentional: from a C string, so that it ends at a zero byte.
    const QString text = QString::fromUtf8(output.constData());
    DebugEventLog::write(startLocation(), QStringLiteral("Bridge stdout"),
                         [&] { return QStringLiteral("{\"output\":\"%1\"}").arg(DebugEventLog::escapedLines(text)); });
}

void LoomraSDK::onBridgeProcessFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    qWarning() << "Bridge process finished with exit code:" << exitCode;
    DebugEventLog::write(
        QStringLiteral("LoomraSDK:onBridgeProcessFinished"), QStringLiteral("Bridge process finished"),
        [&] { return QStringLiteral("{\"exitCode\":%1,\"exitStatus\":%2}").arg(exitCode).arg(int(exitStatus)); });
    fallToDisconnected();
    if (m_shuttingDown) {
        return;
    }
    if (exitCode == 0) {
        // The disconnect of an open socket follows and leads to a restart all the same.
        qWarning() << "Bridge exited gracefully (port may be in use). Not restarting.";
        return;
    }
    QMetaObject::invokeMethod(this, &LoomraSDK::scheduleReconnect, Qt::QueuedConnection);
}

void LoomraSDK::onBridgeProcessError(QProcess::ProcessError processError)
{
    qWarning() << "Bridge process error:" << processError;
    DebugEventLog::write(QStringLiteral("LoomraSDK:onBridgeProcessError"), QStringLiteral("Bridge process error"),
                         [&] { return QStringLiteral("{\"error\":%1}").arg(int(processError)); });
    Q_EMIT error(QStringLiteral("Bridge process error: %1").arg(int(processError)));
}

void LoomraSDK::ensureBridgeUserServiceStarted()
{
    if (!m_connectOnly || m_bridgeServiceStartRequested) {
        return;
    }
    m_bridgeServiceStartRequested = true; // once per process, whatever the result
    const auto location = QStringLiteral("LoomraSDK:ensureBridgeUserServiceStarted");
    const UserUnit::Outcome outcome = UserUnit::start(QStringLiteral("tovi-bridge.service"));
    if (outcome == UserUnit::Outcome::NoSystemctl) {
        DebugEventLog::write(location, QStringLiteral("systemctl not found"), QStringLiteral("{}"));
        return;
    }
    DebugEventLog::write(location, QStringLiteral("requested tovi-bridge.service start"), [&] {
        return QStringLiteral("{\"started\":%1}").arg(int(outcome == UserUnit::Outcome::Started));
    });
}

void LoomraSDK::stopBridgeProcess(bool shuttingDown)
{
    if (shuttingDown) {
        m_shuttingDown = true;
    }
    m_reminderTimer->stop();
    m_connection.retryTimer()->stop();
    // Qt warns if it has to abort a host lookup after the application object is gone.
    if (m_shuttingDown && m_connection.isConnecting()) {
        m_connection.socket()->abort();
    }
    if (m_bridgeProcess->state() == QProcess::NotRunning) {
        return;
    }
    if (m_connection.isOpen()) {
        m_connection.close(QStringLiteral("app shutdown"));
        QThread::msleep(BridgeProcessTimes::CloseDelay.count());
    }
    m_bridgeProcess->terminate();
    if (m_bridgeProcess->waitForFinished(BridgeProcessTimes::TerminateTimeout.count())) {
        return;
    }
    qWarning() << "Bridge did not exit after SIGTERM within 10s; sending SIGKILL";
    m_bridgeProcess->kill();
    m_bridgeProcess->waitForFinished(BridgeProcessTimes::KillTimeout.count());
}

void LoomraSDK::setExecutorPathEnabled(bool enabled)
{
    if (m_executorPathEnabled == enabled) {
        return;
    }
    m_executorPathEnabled = enabled;
    Environment::set(BridgeEnvironment::ExecutorPathVariable, BridgeEnvironment::envValue(enabled).toLatin1());
    Q_EMIT executorPathEnabledChanged();
    if (m_bridgeProcess->state() != QProcess::Running) {
        return;
    }
    qDebug() << "Executor path toggled to" << enabled << "— restarting bridge";
    stopBridgeProcess(false);
    QTimer::singleShot(BridgeProcessTimes::RestartAfterToggle, this, &LoomraSDK::startBridgeProcess);
}
