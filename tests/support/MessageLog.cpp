// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MessageLog.h"

#include <QMutex>
#include <QMutexLocker>
#include <QTest>

#include <algorithm>
#include <cstdio>

namespace
{

QMutex s_mutex;
QList<MessageLog::Line> s_lines;
QtMessageHandler s_before = nullptr;
bool s_installed = false;

constexpr int s_printedLines = 100; // the last ones
constexpr int s_printedLength = 500; // characters of a line

void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg) {
        s_before(type, context, text); // ends the process
    }
    const QMutexLocker locker(&s_mutex);
    s_lines.append({type, text});
}

} // namespace

MessageLog::MessageLog()
{
    Q_ASSERT(!s_installed);
    s_installed = true;
    clear();
    s_before = qInstallMessageHandler(record);
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(s_before);
    s_installed = false;
    if (QTest::currentTestFailed()) {
        for (const Line &line : lines().mid(qMax(0, lines().size() - s_printedLines))) {
            std::fprintf(stderr, "LOG    : %s\n", qUtf8Printable(line.text.left(s_printedLength)));
        }
    }
}

QList<MessageLog::Line> MessageLog::lines() const
{
    const QMutexLocker locker(&s_mutex);
    return s_lines;
}

void MessageLog::clear()
{
    const QMutexLocker locker(&s_mutex);
    s_lines.clear();
}

QStringList MessageLog::texts() const
{
    QStringList texts;
    for (const Line &line : lines()) {
        texts.append(line.text);
    }
    return texts;
}

bool MessageLog::has(QtMsgType type, const QString &text) const
{
    const QList<Line> all = lines();
    return std::any_of(all.cbegin(), all.cend(),
                       [&](const Line &line) { return line.type == type && line.text == text; });
}

int MessageLog::count(const QString &start) const
{
    const QList<Line> all = lines();
    return static_cast<int>(
        std::count_if(all.cbegin(), all.cend(), [&](const Line &line) { return line.text.startsWith(start); }));
}

QStringList MessageLog::warnings() const
{
    QStringList texts;
    for (const Line &line : lines()) {
        if (line.type != QtDebugMsg && line.type != QtInfoMsg) {
            texts.append(line.text);
        }
    }
    return texts;
}

QStringList MessageLog::takeWarnings()
{
    const QStringList texts = warnings();
    const QMutexLocker locker(&s_mutex);
    s_lines.erase(std::remove_if(s_lines.begin(), s_lines.end(),
                                 [](const Line &line) { return line.type != QtDebugMsg && line.type != QtInfoMsg; }),
                  s_lines.end());
    return texts;
}
