// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Program.h"

#include <QRect>

//! A running program with a window, looked at and worked with from outside, as a user and a window manager do. Needs a
//! display with a window manager. Ends the program when it goes.
class DesktopRun
{
public:
    explicit DesktopRun(const QStringList &arguments = {},
                        const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
                        const QString &program = Program::path());
    ~DesktopRun();
    Q_DISABLE_COPY_MOVE(DesktopRun)

    //! Waits until a window of this process is on the screen; false if that takes longer than 20 s or it ends before.
    bool waitForWindow();
    //! Number of windows of this process that are on the screen now.
    int windowCount() const;

    //! What the X server keeps of the window under a name, as text; empty if it keeps nothing.
    QByteArray property(const QByteArray &name) const;
    //! Place and size of the window on the screen.
    QRect geometry() const;

    //! Gives the window the keyboard. @return whether it has it
    bool takeKeyboard();
    //! Presses a key, or keys joined by "+", as xdotool names them.
    void press(const QByteArray &keys) const;
    //! Moves the pointer there, in pixels of the screen, and clicks.
    void click(const QPoint &position) const;

    //! Closes the window as a user does who asks the window manager, and waits for the program's end.
    //! @return whether it ended within 20 s, by itself and with 0
    bool closeWindow();

    bool isRunning();
    qint64 processId() const { return m_process.processId(); }
    void send(int signal) const;
    //! Waits for the end; false if it takes longer than 20 s.
    bool waitForEnd();
    bool crashed() const { return m_process.exitStatus() == QProcess::CrashExit; }
    int exitCode() const { return m_process.exitCode(); }

    //! What it has written so far to its standard output and to its standard error.
    QByteArray output();
    QByteArray errors();
    //! Lines on standard error that the log of a run without faults doesn't hold. To be asked for when it has ended.
    QString unexpectedWords();

private:
    QList<QByteArray> windows() const;
    QByteArray window() const;

    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};
