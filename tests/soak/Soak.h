// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QQuickItem>
#include <QVariant>

#include <chrono>
#include <functional>

class QQuickWindow;

//! How much a run does; each run uses some of these.
struct Amounts
{
    int replies = 0;
    int losses = 0;
    int utterances = 0;
};

namespace Soak
{

constexpr std::chrono::seconds Timeout {60};

//! Names what is being done, for the report of a failure.
void setTask(const char *name);

//! fail() calls it to print more.
extern void (*reportState)();

//! Ends the process with exit status 1 and the reason on standard error.
[[noreturn]] void fail(const QByteArray &why);

//! Runs the event loop until the condition holds, which must depend on events of this process. Calls fail() on timeout.
void waitFor(const char *what, const std::function<bool()> &condition, std::chrono::milliseconds timeout = Timeout);

//! Runs the event loop for this time.
void runEvents(std::chrono::milliseconds duration);

//! Makes both clients retry at once instead of after 3 seconds, which other tests check.
void hurryReconnects();

//! A native object of the program.
template<typename Object>
Object *native()
{
    auto *object = QCoreApplication::instance()->findChild<Object *>();
    if (!object) {
        fail("the program has no such native object");
    }
    return object;
}

// Each runs the program in this process and returns the exit status.
int runBar(char *program, const Amounts &amounts);
int runMain(char *program, const Amounts &amounts);
int runVoice(char *program, const Amounts &amounts);

} // namespace Soak

//! The window of the program in this process.
class SoakWindow
{
public:
    //! Waits until the window is active.
    SoakWindow();

    QQuickWindow *window() const { return m_window; }
    //! The item of this objectName; null if there is none.
    QQuickItem *find(const char *name) const;
    //! The same, but ends the process if there is none.
    QQuickItem *item(const char *name) const;
    QVariant get(const char *property) const;
    //! An object that a property of the window holds.
    QObject *object(const char *property) const;
    void set(const char *property, const QVariant &value);
    //! Calls a function of the window. Invalid arguments are not passed.
    void call(const char *function, const QVariant &first = {}, const QVariant &second = {},
              const QVariant &third = {});
    int rows() const { return object("chatModel")->property("count").toInt(); }

private:
    QQuickWindow *m_window = nullptr;
};
