// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Process.h"

#include "Figures.h"

#include <QDir>
#include <QFile>

#include <malloc.h>
#include <unistd.h>

#include <algorithm>

namespace
{

QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        notMeasured("/proc can't be read");
    }
    return file.readAll();
}

} // namespace

namespace Process
{

double residentMemory()
{
    const QList<QByteArray> pages = contents(QStringLiteral("/proc/self/statm")).split(' ');
    return pages.at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
}

QMap<QByteArray, double> residentMappings()
{
    QMap<QByteArray, double> mappings;
    QByteArray name;
    const QList<QByteArray> lines = contents(QStringLiteral("/proc/self/smaps")).split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.first() == "Rss:") {
            mappings[name] += words.at(1).toDouble() * 1024;
        } else if (!words.first().endsWith(':')) { // the head of a mapping
            name = words.size() > 5 ? words.mid(5).join(' ') : QByteArray("anonymous");
        }
    }
    return mappings;
}

void giveBackMemory()
{
    malloc_trim(0);
}

qint64 rendererWork()
{
    qint64 work = 0;
    const QDir threads(QStringLiteral("/proc/self/task"));
    const QStringList ids = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &id : ids) {
        if (contents(threads.filePath(id + QStringLiteral("/comm"))).startsWith("llvmpipe-")) {
            work += contents(threads.filePath(id + QStringLiteral("/schedstat"))).split(' ').first().toLongLong();
        }
    }
    return work;
}

QList<QByteArray> qmlPlugins()
{
    QList<QByteArray> plugins;
    const QList<QByteArray> mappings = contents(QStringLiteral("/proc/self/maps")).split('\n');
    for (const QByteArray &mapping : mappings) {
        const QByteArray path = mapping.mid(mapping.indexOf('/'));
        if (path.contains("/qml/") && path.endsWith(".so") && !plugins.contains(path)) {
            plugins.append(path);
        }
    }
    std::sort(plugins.begin(), plugins.end());
    return plugins;
}

} // namespace Process
