// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DebugEventLog.h"

#include "PrivateFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <sys/stat.h>

namespace DebugEventLog
{

namespace
{

QString withEscapedQuotes(QString text)
{
    return text.replace(QLatin1Char('"'), QLatin1String("\\\""));
}

//! Creates the directory if it is missing: readable by the user only, unlike the directories above it.
void createPrivateDirectory(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    ::mkdir(QFile::encodeName(path).constData(), S_IRWXU);
}

} // namespace

bool isOn()
{
    return !qEnvironmentVariableIsEmpty("LOOMRA_DEBUG");
}

QByteArray line(const QString &location, const QString &message, const QString &data, qint64 timestamp)
{
    const QString text = QLatin1String(R"({"location":")") + withEscapedQuotes(location)
        + QLatin1String(R"(","message":")") + withEscapedQuotes(message) + QLatin1String(R"(","data":)") + data
        + QLatin1String(R"(,"timestamp":)") + QString::number(timestamp) + QLatin1String("}\n");
    return text.toUtf8();
}

void write(const QString &location, const QString &message, const QString &data)
{
    if (!isOn()) {
        return;
    }
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (directory.isEmpty()) {
        return;
    }
    createPrivateDirectory(directory);
    QFile file(QDir(directory).filePath(QStringLiteral("loomra-debug.log")));
    // Opened for each line, so that none is lost if the program crashes.
    if (PrivateFile::open(file, QIODevice::Append | QIODevice::Text, PrivateFile::Existing::BecomesPrivate)) {
        file.write(line(location, message, data, QDateTime::currentMSecsSinceEpoch()));
    }
}

QString escaped(const QString &text)
{
    // Backslashes first, or those that escape quotes would be escaped again.
    QString result = text;
    return withEscapedQuotes(result.replace(QLatin1Char('\\'), QLatin1String("\\\\")));
}

QString escapedLines(const QString &text)
{
    return escaped(text).replace(QLatin1Char('\n'), QLatin1String("\\n"));
}

} // namespace DebugEventLog
