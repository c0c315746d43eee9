// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SherpaStandIn.h"
#include "SherpaWorker.h"

#include <QMetaType>

#include <chrono>
#include <memory>

//! One of the two sherpa-onnx engines: the names in its texts, and its worker.
struct EngineUnderTest
{
    SherpaStandIn::Engine engine;
    QString name; //!< in texts for the user
    QString program; //!< file name

    std::unique_ptr<SherpaWorker> worker() const;
    std::unique_ptr<SherpaWorker> worker(std::chrono::milliseconds runTimeout) const;

    static const EngineUnderTest &moonshine();
    static const EngineUnderTest &nemotron();
    static QList<const EngineUnderTest *> both() { return {&moonshine(), &nemotron()}; }
    //! The data of a test function without other columns: the column "tested", and a row for each engine.
    static void addRows();
};
Q_DECLARE_METATYPE(const EngineUnderTest *)

//! Transcribes on this thread. The result has an entry for each signal: "ready: " or "failed: ", followed by its text.
QStringList outcomesOf(SherpaWorker &worker, const QByteArray &pcm16Data);
