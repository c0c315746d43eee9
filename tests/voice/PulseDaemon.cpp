// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PulseDaemon.h"

#include "Files.h"

#include <QTest>

#include <csignal>

namespace
{

bool answers()
{
    QProcess question;
    question.start(QStringLiteral("pactl"), {QStringLiteral("get-default-source")});
    return question.waitForFinished() && question.exitCode() == 0;
}

} // namespace

PulseDaemon::PulseDaemon()
    : m_serverBefore(qgetenv("PULSE_SERVER"))
{
    const QString socket = m_directory.filePath(QStringLiteral("native"));
    const QString configuration = m_directory.filePath(QStringLiteral("daemon.pa"));
    QVERIFY(writeFile(configuration,
                      "load-module module-null-sink sink_name=spk norewinds=1\n"
                      "set-default-sink spk\n"
                      "load-module module-null-sink sink_name=mic norewinds=1 rate=16000 channels=1\n"
                      "set-default-source mic.monitor\n"
                      "load-module module-native-protocol-unix auth-anonymous=1 socket="
                          + socket.toUtf8() + '\n'));

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PULSE_RUNTIME_PATH"), m_directory.filePath(QStringLiteral("run")));
    environment.remove(QStringLiteral("PULSE_SERVER"));
    // The daemon of the environment already has the name on the session bus.
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_directory.path());
    m_process.setProcessEnvironment(environment);
    m_process.setProgram(QStringLiteral("pulseaudio"));
    m_process.setArguments({QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                            QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--use-pid-file=no"),
                            QStringLiteral("--log-target=stderr"), QStringLiteral("--log-level=error"),
                            QStringLiteral("-F"), configuration});
    qputenv("PULSE_SERVER", "unix:" + socket.toUtf8());
    start();
}

PulseDaemon::~PulseDaemon()
{
    kill();
    qputenv("PULSE_SERVER", m_serverBefore);
}

void PulseDaemon::start()
{
    m_process.start();
    QVERIFY(m_process.waitForStarted());
    QTRY_VERIFY(answers());
}

void PulseDaemon::freeze()
{
    ::kill(pid_t(m_process.processId()), SIGSTOP);
}

void PulseDaemon::thaw()
{
    ::kill(pid_t(m_process.processId()), SIGCONT);
}

void PulseDaemon::kill()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}
