// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QMetaObject>
#include <QObject>

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

// Of the sanitizer's library, which has no header for these.
extern "C" void AnnotateIgnoreWritesBegin(const char *file, int line);
extern "C" void AnnotateIgnoreWritesEnd(const char *file, int line);
#endif

//! Every crossing from one thread to another goes through here. ThreadSanitizer doesn't see the locks of Qt's event
//! queues, as distributions build Qt without it, and would report each queued call as a race: it is told of the
//! hand-over by the receiver's address. In other builds nothing is told, and nothing is paid.
namespace ThreadHandover
{

//! What this thread wrote so far is there for whoever acquires the same @p subject afterwards.
inline void release([[maybe_unused]] const void *subject)
{
#ifdef TOVICTL_THREAD_SANITIZER
    __tsan_release(const_cast<void *>(subject));
#endif
}

//! What was written before the release of @p subject is there for this thread.
inline void acquire([[maybe_unused]] const void *subject)
{
#ifdef TOVICTL_THREAD_SANITIZER
    __tsan_acquire(const_cast<void *>(subject));
#endif
}

//! What this thread does while it lives isn't looked at: Qt makes the object that carries the work when the release has
//! been told, and the other thread finds the receiver, which it needs for the acquire, in just that object.
class Unseen
{
public:
    Unseen()
    {
#ifdef TOVICTL_THREAD_SANITIZER
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
#endif
    }
    ~Unseen()
    {
#ifdef TOVICTL_THREAD_SANITIZER
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
#endif
    }
    Q_DISABLE_COPY_MOVE(Unseen)
};

//! Runs @p work on the thread of @p receiver, later and in the order of the calls; never, where the receiver is gone by
//! then. The receiver must live while this runs. Any thread.
template<typename Work>
void post(QObject *receiver, Work &&work)
{
    release(receiver);
    const Unseen unseen;
    QMetaObject::invokeMethod(
        receiver,
        [receiver, work = std::forward<Work>(work)]() mutable {
            acquire(receiver);
            work();
        },
        Qt::QueuedConnection);
}

//! Runs @p work on the thread of @p receiver, which must be another one and have an event loop, and waits for it. What
//! a blocking queued call does, but with a semaphore that the sanitizer sees: Qt's own call goes on to read the
//! caller's stack when its work is done.
//! @return what the work returned
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

//! Connects a signal to a slot of an object on another thread; what an automatic connection does, told to the
//! sanitizer.
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
