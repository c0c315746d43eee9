// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "EngineUnderTest.h"

#include "MoonshineWorker.h"
#include "NemotronWorker.h"

#include <QTest>

const EngineUnderTest &EngineUnderTest::moonshine()
{
    static const EngineUnderTest s_moonshine {SherpaStandIn::Engine::Moonshine, QStringLiteral("Moonshine"),
                                              QStringLiteral("sherpa-onnx-offline")};
    return s_moonshine;
}

const EngineUnderTest &EngineUnderTest::nemotron()
{
    static const EngineUnderTest s_nemotron {SherpaStandIn::Engine::Nemotron, QStringLiteral("Nemotron"),
                                             QStringLiteral("sherpa-onnx")};
    return s_nemotron;
}

std::unique_ptr<SherpaWorker> EngineUnderTest::worker() const
{
    if (engine == SherpaStandIn::Engine::Moonshine) {
        return std::make_unique<MoonshineWorker>();
    }
    return std::make_unique<NemotronWorker>();
}

std::unique_ptr<SherpaWorker> EngineUnderTest::worker(std::chrono::milliseconds runTimeout) const
{
    if (engine == SherpaStandIn::Engine::Moonshine) {
        return std::make_unique<MoonshineWorker>(runTimeout);
    }
    return std::make_unique<NemotronWorker>(runTimeout);
}

void EngineUnderTest::addRows()
{
    QTest::addColumn<const EngineUnderTest *>("tested");
    for (const EngineUnderTest *tested : both()) {
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
