// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QMap>

#include <functional>

class QQmlEngine;

//! What the program holds at one moment, while it rests.
struct Figures
{
    int done = 0;
    double seconds = 0; //!< since the start
    qint64 blocks = 0; //!< of the C allocator
    qint64 heap = 0; //!< bytes in these blocks
    qint64 resident = 0; //!< bytes, without pages of files
    int descriptors = 0;
    int threads = 0;
    int children = 0; //!< processes
    int files = 0; //!< in the home, the runtime directory and the directory for temporary files
    QMap<QByteArray, int> timers; //!< by class
    QMap<QByteArray, int> objects; //!< by class
};

//! Takes figures after each tenth of a run, prints them as a table, and compares the last with the second. The first
//! tenth fills caches: fonts, icons, the engine's compiled code.
class Record
{
public:
    //! @param total how often step() will be called
    //! @param rest brings the program back to the state in which figures are comparable
    Record(QByteArray name, int total, QQmlEngine *engine, std::function<void()> rest);

    //! Something was done once more.
    void step();

    //! Prints the verdict. @return the exit status: whether nothing has grown
    int finish() const;

private:
    Figures take();
    void print(const Figures &figures) const;

    const QByteArray m_name;
    const int m_total;
    QQmlEngine *const m_engine;
    const std::function<void()> m_rest;
    QElapsedTimer m_clock;
    int m_done = 0;
    //! Taken by m_tenths.
    qint64 m_ownBlocks = 0;
    qint64 m_ownBytes = 0;
    QList<Figures> m_tenths;
};
