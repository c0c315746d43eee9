// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QList>

//! The time from the start of the process to the first swapped frame: a window of the program (bench_bar) against an
//! empty one (bench_bare). Needs an application object.
class Starts
{
public:
    //! Starts both windows a few times, to fill the caches as they are for a user.
    //! @param figure  the beginning of the figures' names
    //! @param window  what the program's window is called in them
    //! @param bareFile  the file of the empty window, for messages
    //! @param mode  arguments with which both programs open this kind of window
    //! @param target  maximum ratio of the two times
    Starts(QByteArray figure, QByteArray window, QByteArray bareFile, QList<QByteArray> mode, double target);

    //! Compiled QML on the disk, which exists only for modules that are written in QML.
    enum class Caches
    {
        Warm, //!< as earlier starts left it
        Empty,
    };
    void measure(Caches caches);
    //! The same, but prints the median time of each stage of the start.
    void printStages(Caches caches);

    //! Measures until the whole window is on the screen: the rest of it is built after the first frame.
    void measureWhole();

private:
    struct Series;

    QList<QByteArray> command(const char *program, const char *task) const;

    void compare(Caches caches, bool wantsStages);

    QByteArray m_figure;
    QByteArray m_window;
    QByteArray m_bareFile;
    QList<QByteArray> m_mode;
    double m_target;
};
