// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Program.h"

#include <QRect>

//! A running program with a window, examined and operated from outside, like by a user and a window manager. Needs a
//! display with a window manager. The destructor kills the program.
class DesktopRun
{
public:
    explicit DesktopRun(const QStringList &arguments = {},
                        const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
                        const QString &program = Program::path());
    ~DesktopRun();
    Q_DISABLE_COPY_MOVE(DesktopRun)

    //! Waits until a window of this process is on the screen. @return false on timeout, or if the process ends before
    bool waitForWindow();
    //! The number of windows of this process that are on the screen.
    int windowCount() const;

    //! An X11 property of the window as text; empty if it isn't set.
    QByteArray property(const QByteArray &name) const;
    //! Position and size of the window on the screen.
    QRect geometry() const;

    //! Gives the window the keyboard focus. @return whether it has the focus
    bool takeKeyboard();
    //! Presses a key or a combination joined by "+", with the key names of xdotool.
    void press(const QByteArray &keys) const;
    //! Types a text of ASCII characters.
    void type(const QByteArray &text) const;
    //! Holds a key down, which then repeats as on a real keyboard, until it is let go.
    void pressDown(const QByteArray &key) const;
    void letGo(const QByteArray &key) const;
    //! Moves the pointer to a position in screen pixels and clicks.
    void click(const QPoint &position) const;

    //! Closes the window through the window manager and waits for the end of the program.
    //! @return whether it exited normally with 0 before the timeout
    bool closeWindow();

    //! Ends the program's connection to the display, as when the display server ends.
    void loseDisplay() const;

    bool isRunning();
    qint64 processId() const { return m_process.processId(); }
    void send(int signal) const;
    //! Waits for the end. @return false on timeout
    bool waitForEnd();
    bool crashed() const { return m_process.exitStatus() == QProcess::CrashExit; }
    int exitCode() const { return m_process.exitCode(); }

    //! Standard output and standard error so far.
    QByteArray output();
    QByteArray errors();
    //! The lines on standard error that are not expected of a run without errors. Call it after the end.
    QString unexpectedWords();

private:
    QList<QByteArray> windows() const;
    QByteArray window() const;

    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};
