// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PiperPaths.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

namespace
{

QStringList programs(const SearchRoots &roots)
{
    return {
        roots.system + QLatin1String("/usr/bin/piper"),
        roots.system + QLatin1String("/usr/local/bin/piper"),
        roots.home + QLatin1String("/.local/bin/piper"),
        roots.home + QLatin1String("/piper/piper"),
        // Logged with the dots in it.
        roots.packagedModels() + QLatin1String("/../bin/piper"),
    };
}

QStringList voiceDirectories(const SearchRoots &roots)
{
    return {
        roots.packagedModels(),
        roots.userModels(),
        roots.home + QLatin1String("/.local/share/piper/voices"),
        roots.system + QLatin1String("/usr/share/piper-voices"),
        roots.home + QLatin1String("/piper/voices"),
    };
}

QStringList preferredVoices()
{
    return {
        QStringLiteral("en_US-lessac-medium.onnx"),
        QStringLiteral("en_US-amy-medium.onnx"),
        QStringLiteral("en_US-ryan-medium.onnx"),
    };
}

} // namespace

QString PiperPaths::findPiper(const SearchRoots &roots)
{
    for (const QString &program : programs(roots)) {
        const QFileInfo file(program);
        // A directory counts as executable too.
        if (file.isFile() && file.isExecutable()) {
            return program;
        }
    }
    return QStandardPaths::findExecutable(QStringLiteral("piper"));
}

QString PiperPaths::findVoice(const SearchRoots &roots)
{
    for (const QString &directory : voiceDirectories(roots)) {
        const QDir folder(directory);
        for (const QString &name : preferredVoices()) {
            if (QFileInfo(folder, name).isFile()) {
                return folder.filePath(name);
            }
        }
        const QStringList others = folder.entryList({QStringLiteral("en_*.onnx")}, QDir::Files, QDir::Unsorted);
        if (!others.isEmpty()) {
            return folder.filePath(others.constFirst());
        }
    }
    return QString();
}
