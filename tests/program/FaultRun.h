// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "DesktopRun.h"
#include "FaultInjection.h"
#include "ScreenReader.h"

#include "ScriptedBridge.h"

#include <QTemporaryDir>

#include <memory>

//! The OmniBar or the main window as a user sees it, with a home of its own that has settings, and with a scripted
//! bridge. Reports what a fault has left of them. Needs a display, a session bus and a private network.
//!
//! Errors in its set-up fail the running test.
class FaultRun
{
public:
    enum class Window
    {
        OmniBar,
        Main, //!< the bridge that it starts is a process that does nothing
    };

    explicit FaultRun(Window window);
    Q_DISABLE_COPY_MOVE(FaultRun)

    //! Starts the program with #environment, and waits for its window, for both clients and for the keyboard focus.
    bool start();
    DesktopRun &program() { return *m_program; }

    //! Types a prompt and presses the key that sends it.
    void ask(const QByteArray &prompt);
    //! Types a prompt, answers it and waits for the reply in the window. @return false on timeout
    bool converse(const QByteArray &prompt, const QString &reply = QStringLiteral("It works"));
    //! Waits until the clients are connected to the bridge again, and sends "ready".
    //! @param connections bridge.connectionCount() before the connection was lost
    //! @param clients how many have lost it. The main window has both, but uses only one.
    bool waitForReconnection(int connections, int clients = 2);

    //! The last message in the window, with its author and its time.
    QString lastMessage() const;
    //! Waits until the last message ends with these words. @return false on timeout
    bool waitForMessage(const QString &words) const;
    //! Whether the window has a message with these words.
    bool shows(const QString &words) const;

    //! Closes the window. @return an error if the program doesn't end in the regular way, or has lost a setting
    QString end();
    //! The lines of the log that neither each run has nor a lost bridge brings, without those that match the pattern.
    QString unexpectedWords(const char *pattern = "^$");
    //! The settings that were stored at the start and aren't any more.
    QString lostSettings() const;
    QString inHome(const char *path) const { return m_home.filePath(QString::fromLatin1(path)); }

    //! With the private home, and with #faults for everything in it.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    //! False if the program finds no bus for the screen reader: nothing is known of its messages then, and converse()
    //! doesn't wait for them.
    bool isReadable = true;
    FaultInjection faults;
    ScriptedBridge bridge;
    ScreenReader reader {ScreenReader::Events::None};

private:
    const Window m_window;
    const QTemporaryDir m_home;
    const QTemporaryDir m_bridge;
    std::unique_ptr<DesktopRun> m_program;
};
