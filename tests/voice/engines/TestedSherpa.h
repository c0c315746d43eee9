// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SherpaStandIn.h"
#include "SherpaWorker.h"

#include <QMetaType>

#include <memory>

//! One of the two engines as its tests see it: what its texts are made of, and the real worker.
struct TestedSherpa
{
    SherpaStandIn::Engine engine;
    QString name; //!< as in texts for the user
    QString program; //!< without its directory

    //! The worker of this engine, which looks for its parts in HOME.
    std::unique_ptr<SherpaWorker> worker() const;
    //! The same with another time-out of the run, in ms.
    std::unique_ptr<SherpaWorker> worker(int runTimeout) const;

    static const TestedSherpa &moonshine();
    static const TestedSherpa &nemotron();
    static QList<const TestedSherpa *> both() { return {&moonshine(), &nemotron()}; }
    //! For a function that has no other data: the column "tested", and a row for each engine.
    static void addRows();
};
Q_DECLARE_METATYPE(const TestedSherpa *)

//! What came of one transcription in this thread: "ready: " or "failed: " with the text, one for each signal.
QStringList outcomesOf(SherpaWorker &worker, const QByteArray &pcm16Data);

//! While it lives a variable of the environment has another value, or none.
class ChangedVariable
{
public:
    //! @param value null takes the variable away
    ChangedVariable(const char *name, const QByteArray &value);
    ~ChangedVariable();
    Q_DISABLE_COPY_MOVE(ChangedVariable)

private:
    static void set(const char *name, const QByteArray &value);

    const char *const m_name;
    const QByteArray m_before;
};
