// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestedSherpa.h"

#include "MoonshineWorker.h"
#include "NemotronWorker.h"

#include <QTest>

const TestedSherpa &TestedSherpa::moonshine()
{
    static const TestedSherpa s_moonshine {SherpaStandIn::Engine::Moonshine, QStringLiteral("Moonshine"),
                                           QStringLiteral("sherpa-onnx-offline")};
    return s_moonshine;
}

const TestedSherpa &TestedSherpa::nemotron()
{
    static const TestedSherpa s_nemotron {SherpaStandIn::Engine::Nemotron, QStringLiteral("Nemotron"),
                                          QStringLiteral("sherpa-onnx")};
    return s_nemotron;
}

std::unique_ptr<SherpaWorker> TestedSherpa::worker() const
{
    if (engine == SherpaStandIn::Engine::Moonshine) {
        return std::make_unique<MoonshineWorker>();
    }
    return std::make_unique<NemotronWorker>();
}

std::unique_ptr<SherpaWorker> TestedSherpa::worker(int runTimeout) const
{
    const SearchRoots roots = SearchRoots::ofThisProcess();
    if (engine == SherpaStandIn::Engine::Moonshine) {
        return std::make_unique<MoonshineWorker>(roots, runTimeout);
    }
    return std::make_unique<NemotronWorker>(roots, runTimeout);
}

void TestedSherpa::addRows()
{
    QTest::addColumn<const TestedSherpa *>("tested");
    for (const TestedSherpa *tested : both()) {
        QTest::newRow(qPrintable(tested->name)) << tested;
    }
}

QStringList outcomesOf(SherpaWorker &worker, const QByteArray &pcm16Data)
{
    QStringList outcomes;
    QObject context;
    QObject::connect(&worker, &SherpaWorker::transcriptionReady, &context,
                     [&](const QString &text) { outcomes.append(QStringLiteral("ready: ") + text); });
    QObject::connect(&worker, &SherpaWorker::transcriptionFailed, &context,
                     [&](const QString &error) { outcomes.append(QStringLiteral("failed: ") + error); });
    worker.transcribe(pcm16Data);
    return outcomes;
}

ChangedVariable::ChangedVariable(const char *name, const QByteArray &value)
    : m_name(name)
    , m_before(qgetenv(name))
{
    set(name, value);
}

ChangedVariable::~ChangedVariable()
{
    set(m_name, m_before);
}

void ChangedVariable::set(const char *name, const QByteArray &value)
{
    if (value.isNull()) {
        qunsetenv(name);
    } else {
        qputenv(name, value);
    }
}
