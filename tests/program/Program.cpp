// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Program.h"
#include "Timeouts.h"

namespace Program
{

QString path()
{
    const QString path = qEnvironmentVariable("TOVICTL_PROGRAM");
    if (path.isEmpty()) {
        qFatal("TOVICTL_PROGRAM does not tell where the program lies");
    }
    return path;
}

QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return environment;
}

Result run(const QStringList &arguments, const QProcessEnvironment &environment, const QString &program)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    Result result;
    result.finished = process.waitForFinished(Timeouts::Program);
    if (!result.finished) {
        process.kill();
        process.waitForFinished();
    }
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.exitCode = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

} // namespace Program
