// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The services that read many files of the user: the sums of the agent tool's message files, and the model of a large
// directory.

#include "ProjectModel.h"
#include "TokenUsageService.h"
#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Process.h"
#include "support/Statistics.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace
{

constexpr int s_sessions = 1000;
constexpr int s_fewMessages = 10; // per session
constexpr int s_manyMessages = 100;
constexpr int s_entries = 50000;
constexpr int s_runs = 9;
constexpr int s_visibleRows = 50;

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        notMeasured("cannot write " + path.toUtf8());
    }
}

//! A message as the agent tool stores it, about 700 bytes.
QByteArray message(int number)
{
    return R"({
  "id": "msg_)"
        + QByteArray::number(number) + R"(",
  "sessionID": "ses_7d9a2b3c4d5e",
  "role": "assistant",
  "time": { "created": 1762500000000, "completed": )"
        + QByteArray::number(Q_INT64_C(1762500000000) + number * 60000) + R"( },
  "parentID": "msg_7d9a2b3c4d5e",
  "modelID": "large",
  "providerID": "demo",
  "mode": "build",
  "path": { "cwd": "/home/user/Projects/something", "root": "/home/user/Projects" },
  "cost": 0.0123,
  "tokens": { "input": 1234, "output": 567, "reasoning": 89, "cache": { "read": 10111, "write": 213 } },
  "finish": "stop",
  "system": [ "You are an assistant that works on the desktop of its user, who expects short replies." ]
}
)";
}

void writeMessages(const QString &storage, int first, int end)
{
    for (int session = 0; session < s_sessions; ++session) {
        const QString folder = QStringLiteral("%1/ses_%2").arg(storage).arg(session);
        QDir().mkpath(folder);
        for (int number = first; number < end; ++number) {
            write(QStringLiteral("%1/msg_%2.json").arg(folder).arg(number), message(session * s_manyMessages + number));
        }
    }
}

//! The same walk and nothing but reading the files.
qint64 readAll(const QString &storage)
{
    qint64 bytes = 0;
    QDirIterator walk(storage, {QStringLiteral("msg_*.json")}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        if (file.open(QIODevice::ReadOnly)) {
            bytes += file.readAll().size();
        }
    }
    return bytes;
}

double msFor(const std::function<void()> &work)
{
    const qint64 begun = Clock::now();
    work();
    return Clock::milliseconds(Clock::now() - begun);
}

//! The maximum of resident memory since the last reset, in bytes.
double peakMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    notMeasured("the kernel reports no maximum of memory");
}

//! How much more memory a scan takes while it runs, in bytes.
double memoryOfScan(TokenUsageService &service)
{
    Process::giveBackMemory();
    const double before = Process::residentMemory();
    std::ofstream("/proc/self/clear_refs") << '5';
    service.refresh();
    service.dailyUsage();
    return peakMemory() - before;
}

void measureUsage()
{
    TokenUsageService service;
    const QString storage = service.storagePath();
    writeMessages(storage, 0, s_fewMessages);
    service.dailyUsage(); // once for what is allocated only once
    const double few = memoryOfScan(service);
    writeMessages(storage, s_fewMessages, s_manyMessages);

    std::vector<double> scans;
    std::vector<double> reads;
    readAll(storage); // fills the cache
    for (int run = 0; run < s_runs; ++run) {
        reads.push_back(msFor([&] { readAll(storage); }));
        service.refresh();
        scans.push_back(msFor([&] { service.dailyUsage(); }));
    }
    const double read = Statistics::median(reads);
    const double scan = Statistics::median(scans);
    Figures::plain("files.usage.scan", scan, "ms");
    Figures::plain("files.usage.reading", read, "ms");
    Figures::bounded("files.usage.ratio", scan / read, "x", 2.0);
    const double many = memoryOfScan(service);
    Figures::plain("files.usage.memory-10000", few / 1024, "KiB");
    Figures::plain("files.usage.memory-100000", many / 1024, "KiB");
    // Flat, but for the noise of the allocator.
    Figures::bounded("files.usage.memory-growth", (many - few) / 1024, "KiB", 1024);
}

void measureModel()
{
    const QTemporaryDir directory;
    for (int number = 0; number < s_entries; ++number) {
        const char *suffix = number % 3 == 0 ? "cpp" : number % 3 == 1 ? "txt" : "png";
        write(directory.filePath(QStringLiteral("file_%1.%2").arg(number).arg(QLatin1String(suffix))), {});
    }
    ProjectModel model;
    model.setRootPath(directory.path());
    std::vector<double> lists;
    std::vector<double> refreshes;
    for (int run = 0; run < s_runs; ++run) {
        int count = 0;
        lists.push_back(msFor([&] {
            count = QDir(directory.path())
                        .entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::DirsFirst | QDir::Name)
                        .size();
        }));
        refreshes.push_back(msFor([&] { model.refresh(); }));
        if (count != s_entries || model.rowCount() != s_entries) {
            notMeasured("an entry is missing");
        }
    }
    const double list = Statistics::median(lists);
    const double refresh = Statistics::median(refreshes);
    Figures::plain("files.model.refresh", refresh, "ms");
    Figures::plain("files.model.listing", list, "ms");
    Figures::bounded("files.model.ratio", refresh / list, "x", 1.3);

    std::vector<double> screens;
    for (int first = 0; first + s_visibleRows <= s_entries; first += s_entries / 100) {
        const qint64 before = Clock::work();
        for (int row = first; row < first + s_visibleRows; ++row) {
            for (int role = ProjectModel::NameRole; role <= ProjectModel::IconRole; ++role) {
                model.data(model.index(row), role);
            }
        }
        screens.push_back(Clock::milliseconds(Clock::work() - before));
    }
    // A share of a frame's 16 ms that leaves time to draw it.
    Figures::bounded("files.model.rows.p99", Statistics::percentile(screens, 0.99), "ms", 4);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    measureUsage();
    measureModel();
    return 0;
}
