// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Figures.h"

#include "Allocations.h"
#include "Census.h"
#include "Soak.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QQmlEngine>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>

using namespace std::chrono_literals;

namespace
{

constexpr int s_tenths = 10;
//! The tenth that the last one is compared with.
constexpr int s_base = 1;
constexpr double s_kibibyte = 1024;

//! Qt's threads that look up host names end 30 s after the last connection. Each has a descriptor.
constexpr int s_lookupThreads = 2;
//! QML objects that are still to be collected, e.g. because a register of the processor seems to refer to them.
constexpr int s_objectTolerance = 15;

//! The program rests if its objects and timers stay the same so often.
constexpr auto s_restTime = 100ms;
constexpr int s_equalRests = 3;
constexpr int s_maxRests = 300;

//! Caches of Qt fill slowly and are emptied at times, such as those of glyphs, of gradients (12 KiB each, up to 60 of
//! them) and of compiled expressions: the figures of a run without a leak go up and down by this much. In the full run
//! of the OmniBar, a leak of one block in seven replies exceeds it.
constexpr double s_blockTolerance = 12000;
constexpr double s_heapTolerance = 2 * 1024; // KiB
//! The resident memory also has the garbage of the script engine and the buffers of the renderer.
constexpr double s_residentTolerance = 4 * 1024; // KiB

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int entries(const QString &path)
{
    return QDir(path).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot).size();
}

int filesBelow(const QString &directory)
{
    int count = 0;
    QDirIterator files(directory, QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        ++count;
    }
    return count;
}

//! Anonymous and shared memory, in bytes.
qint64 residentMemory()
{
    qint64 sum = 0;
    const QList<QByteArray> lines = contents(QStringLiteral("/proc/self/status")).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("RssAnon:") || line.startsWith("RssShmem:")) {
            sum += line.simplified().split(' ').value(1).toLongLong() * 1024;
        }
    }
    return sum;
}

int childProcesses()
{
    int count = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    const QStringList ids = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &id : ids) {
        const QByteArray children = contents(tasks.filePath(id + QStringLiteral("/children"))).trimmed();
        count += children.isEmpty() ? 0 : children.split(' ').size();
    }
    return count;
}

int total(const QMap<QByteArray, int> &counts)
{
    int sum = 0;
    for (const int count : counts) {
        sum += count;
    }
    return sum;
}

} // namespace

Record::Record(QByteArray name, int total, QQmlEngine *engine, std::function<void()> rest)
    : m_name(std::move(name))
    , m_total(total)
    , m_engine(engine)
    , m_rest(std::move(rest))
{
    std::printf("%-6s %8s %8s %8s %9s %9s %7s %7s %8s %8s %7s %7s\n", m_name.constData(), "done", "seconds", "blocks",
                "heap/KiB", "mem./KiB", "descr.", "threads", "children", "files", "objects", "timers");
    m_clock.start();
}

void Record::step()
{
    ++m_done;
    const auto due = static_cast<qint64>(m_total) * (m_tenths.size() + 1) / s_tenths;
    if (m_done >= due && m_tenths.size() < s_tenths) {
        m_rest();
        m_tenths.append(take());
        print(m_tenths.last());
    }
}

Figures Record::take()
{
    Figures figures;
    int still = 0;
    for (int i = 0; i < s_maxRests && still < s_equalRests; ++i) {
        Soak::runEvents(s_restTime);
        m_engine->collectGarbage();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const auto objects = Census::byClass();
        const auto timers = Census::runningTimers();
        still = objects == figures.objects && timers == figures.timers ? still + 1 : 0;
        figures.objects = objects;
        figures.timers = timers;
    }
    figures.done = m_done;
    figures.seconds = static_cast<double>(m_clock.elapsed()) / 1000;
    malloc_trim(0); // the free memory would count as resident
    // These lists are kept until the end of the run, and are no part of the program.
    figures.objects.clear();
    figures.timers.clear();
    const qint64 blocks = Allocations::blocks();
    const qint64 bytes = Allocations::bytes();
    figures.objects = Census::byClass();
    figures.timers = Census::runningTimers();
    m_ownBlocks += Allocations::blocks() - blocks;
    m_ownBytes += Allocations::bytes() - bytes;
    figures.blocks = Allocations::blocks() - m_ownBlocks;
    figures.heap = Allocations::bytes() - m_ownBytes;
    figures.resident = residentMemory();
    figures.descriptors = entries(QStringLiteral("/proc/self/fd"));
    figures.threads = entries(QStringLiteral("/proc/self/task"));
    figures.children = childProcesses();
    figures.files = filesBelow(QDir::homePath()) + filesBelow(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    return figures;
}

void Record::print(const Figures &figures) const
{
    std::printf("%-6s %8d %8.0f %8lld %9.0f %9.0f %7d %7d %8d %8d %7d %7d\n", m_name.constData(), figures.done,
                figures.seconds, figures.blocks, static_cast<double>(figures.heap) / s_kibibyte,
                static_cast<double>(figures.resident) / s_kibibyte, figures.descriptors, figures.threads,
                figures.children, figures.files, total(figures.objects), total(figures.timers));
    std::fflush(stdout);
}

int Record::finish() const
{
    if (m_tenths.size() != s_tenths) {
        Soak::fail("the run has no ten tenths");
    }
    const Figures &base = m_tenths.at(s_base);
    const Figures &last = m_tenths.last();
    QList<QByteArray> grown;
    const auto compare = [&grown](const QByteArray &what, double before, double after, double tolerance) {
        if (after > before + tolerance) {
            grown.append(what + ": " + QByteArray::number(before, 'f', 0) + " -> " + QByteArray::number(after, 'f', 0));
        }
    };
    compare("blocks", static_cast<double>(base.blocks), static_cast<double>(last.blocks), s_blockTolerance);
    compare("heap/KiB", static_cast<double>(base.heap) / s_kibibyte, static_cast<double>(last.heap) / s_kibibyte,
            s_heapTolerance);
    if (Allocations::areCounted()) { // a sanitizer keeps what was freed
        compare("memory/KiB", static_cast<double>(base.resident) / s_kibibyte,
                static_cast<double>(last.resident) / s_kibibyte, s_residentTolerance);
    }
    compare("descriptors", base.descriptors, last.descriptors, s_lookupThreads);
    compare("threads", base.threads, last.threads, s_lookupThreads);
    compare("children", base.children, last.children, 0);
    compare("files", base.files, last.files, 0);
    compare("timers", total(base.timers), total(last.timers), 0);
    compare("objects", total(base.objects), total(last.objects), s_objectTolerance);
    const auto compareClasses = [&compare](const char *what, const auto &before, const auto &after, int tolerance) {
        for (auto of = after.begin(); of != after.end(); ++of) {
            compare(QByteArray(what) + of.key(), before.value(of.key()), of.value(), tolerance);
        }
    };
    compareClasses("timers of ", base.timers, last.timers, 0);
    compareClasses("objects of ", base.objects, last.objects, s_objectTolerance);
    if (grown.isEmpty()) {
        std::printf("%-6s flat\n", m_name.constData());
        return EXIT_SUCCESS;
    }
    for (const QByteArray &line : qAsConst(grown)) {
        std::printf("%-6s GROWN %s\n", m_name.constData(), line.constData());
    }
    return EXIT_FAILURE;
}
