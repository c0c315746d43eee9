// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DebugEventLog.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <fcntl.h>
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

//! Opens the file for appending, and makes it readable by the user only: it contains parts of conversations. Not by
//! QFile::setPermissions() alone, which would leave a moment in which others can open a new file.
bool openPrivately(QFile &file)
{
    constexpr mode_t mode = S_IRUSR | S_IWUSR;
    const int descriptor =
        ::open(QFile::encodeName(file.fileName()).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, mode);
    if (descriptor < 0) {
        return false;
    }
    ::fchmod(descriptor, mode); // of a file that exists already
    return file.open(descriptor, QIODevice::Append | QIODevice::Text, QFile::AutoCloseHandle);
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
    if (openPrivately(file)) {
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
