// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QMetaObject>
#include <QObject>
#include <QThread>

#include <semaphore>
#include <type_traits>
#include <utility>

#if defined(__SANITIZE_THREAD__)
#define TOVICTL_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TOVICTL_THREAD_SANITIZER
#endif
#endif

#ifdef TOVICTL_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>

// Exported by the sanitizer's runtime library, but not declared in any header.
extern "C" void AnnotateIgnoreWritesBegin(const char *file, int line);
extern "C" void AnnotateIgnoreWritesEnd(const char *file, int line);
#endif

//! Threads, and calls from one to another. The voice path makes all of them through these functions.
//!
//! They do what Qt's threads and queued calls do, and annotate each call for ThreadSanitizer. Distributions build Qt
//! without the sanitizer, so that it doesn't see the locks of Qt's event queues and reports every queued call as a data
//! race. The annotations say that what the caller wrote before the call is visible to the receiver's thread. Without
//! the sanitizer they compile to nothing.
namespace ThreadHandover
{

//! Publishes everything that this thread has written so far to the thread that calls acquire() with the same
//! @p address afterwards. The address is only a key.
inline void release([[maybe_unused]] const void *address)
{
#ifdef TOVICTL_THREAD_SANITIZER
    __tsan_release(const_cast<void *>(address));
#endif
}

//! Makes visible to this thread what was written before release() was called with the same @p address.
inline void acquire([[maybe_unused]] const void *address)
{
#ifdef TOVICTL_THREAD_SANITIZER
    __tsan_acquire(const_cast<void *>(address));
#endif
}

//! While it lives, the sanitizer ignores what this thread writes.
//!
//! Needed while Qt allocates the event of a queued call. That happens after release(), and the receiver's thread reads
//! the event before acquire(), as the address to acquire is stored in it.
class IgnoredWrites
{
public:
    IgnoredWrites()
    {
#ifdef TOVICTL_THREAD_SANITIZER
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
#endif
    }
    ~IgnoredWrites()
    {
#ifdef TOVICTL_THREAD_SANITIZER
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
#endif
    }
    Q_DISABLE_COPY_MOVE(IgnoredWrites)
};

//! Creates a thread that runs @p work once it is started, as QThread::create() does.
//!
//! QThread::create() runs it within std::call_once(), and the sanitizer ignores what happens in a call from Qt: it
//! would not check that thread at all.
template<typename Work>
QThread *createThread(Work &&work)
{
#ifdef TOVICTL_THREAD_SANITIZER
    class Thread : public QThread
    {
    public:
        explicit Thread(Work &&work)
            : m_work(std::forward<Work>(work))
        {
        }

    protected:
        void run() override { m_work(); }

    private:
        std::decay_t<Work> m_work;
    };
    return new Thread(std::forward<Work>(work));
#else
    return QThread::create(std::forward<Work>(work));
#endif
}

//! Queues @p work for the thread of @p receiver and returns at once. Calls run in the order in which they were posted;
//! those that are pending when the receiver is deleted are dropped. The receiver must be alive during this call. May be
//! called on any thread.
template<typename Work>
void post(QObject *receiver, Work &&work)
{
    release(receiver);
    const IgnoredWrites ignoredWrites;
    QMetaObject::invokeMethod(
        receiver,
        [receiver, work = std::forward<Work>(work)]() mutable {
            acquire(receiver);
            work();
        },
        Qt::QueuedConnection);
}

//! Runs @p work on the thread of @p receiver and waits for it. That must be another thread, with an event loop.
//!
//! Used instead of Qt::BlockingQueuedConnection, which the sanitizer reports: the other thread still reads from the
//! stack of the caller after it has woken it.
//! @return the result of the work
template<typename Work>
auto call(QObject *receiver, Work &&work)
{
    using Result = std::invoke_result_t<Work>;
    std::binary_semaphore done(0);
    if constexpr (std::is_void_v<Result>) {
        post(receiver, [&work, &done] {
            work();
            done.release();
        });
        done.acquire();
    } else {
        Result result {};
        post(receiver, [&work, &result, &done] {
            result = work();
            done.release();
        });
        done.acquire();
        return result;
    }
}

//! Connects a signal to a slot of an object that lives on another thread, like a queued connection.
template<typename Sender, typename Base, typename Receiver, typename... Args>
QMetaObject::Connection connect(const Sender *sender, void (Base::*signal)(Args...), Receiver *receiver,
                                void (Receiver::*slot)(Args...))
{
    return QObject::connect(
        sender, signal, receiver,
        [receiver, slot](Args... args) { post(receiver, [receiver, slot, args...] { (receiver->*slot)(args...); }); },
        Qt::DirectConnection);
}

} // namespace ThreadHandover
