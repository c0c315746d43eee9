// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Child.h"

#include "Clock.h"
#include "Figures.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace
{

QByteArray readAll(int descriptor)
{
    QByteArray all;
    char part[4096];
    ssize_t size = 0;
    while ((size = read(descriptor, part, sizeof part)) > 0) {
        all.append(part, static_cast<int>(size));
    }
    return all;
}

pid_t spawn(const QList<QByteArray> &arguments, int output)
{
    std::vector<char *> words;
    for (const QByteArray &argument : arguments) {
        words.push_back(const_cast<char *>(argument.constData()));
    }
    words.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t pid = -1;
    const int failure = posix_spawn(&pid, words.front(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return failure == 0 ? pid : -1;
}

} // namespace

namespace Child
{

Result run(const QList<QByteArray> &arguments)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        notMeasured("no pipe for the output of a program");
    }
    const qint64 started = Clock::now();
    qputenv("BENCH_STARTED", QByteArray::number(started));
    const pid_t pid = spawn(arguments, ends[1]);
    close(ends[1]);
    if (pid < 0) {
        notMeasured(arguments.first() + " can't be started");
    }

    Result result;
    result.output = readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) { }
    result.duration = Clock::now() - started;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        notMeasured(arguments.join(' ') + " failed");
    }
    return result;
}

QList<QByteArray> librariesOf(const QByteArray &program)
{
    // Makes the loader list what it would map, and exit.
    qputenv("LD_TRACE_LOADED_OBJECTS", "1");
    const QList<QByteArray> lines = run({program}).output.split('\n');
    qunsetenv("LD_TRACE_LOADED_OBJECTS");
    QList<QByteArray> libraries;
    for (const QByteArray &line : lines) {
        libraries.append(line.simplified().split(' ').first());
    }
    std::sort(libraries.begin(), libraries.end());
    return libraries;
}

QMap<QByteArray, QList<QByteArray>> valuesOf(const Result &result)
{
    QMap<QByteArray, QList<QByteArray>> values;
    const QList<QByteArray> lines = result.output.split('\n');
    for (const QByteArray &line : lines) {
        const int space = line.indexOf(' ');
        if (space > 0) {
            values[line.left(space)].append(line.mid(space + 1));
        }
    }
    return values;
}

QByteArray beside(const char *name)
{
    const QString self = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return QFile::encodeName(QFileInfo(self).path()) + '/' + name;
}

} // namespace Child
