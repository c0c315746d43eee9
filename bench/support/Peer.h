// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QThread>

#include <memory>

class PeerServer;

//! A bridge that lives in a thread of its own, so that its work doesn't count as the program's. It greets each client,
//! and answers a request when it is told to, or all of them.
class Peer
{
public:
    //! Listens at once. Ends the benchmark when the port is taken.
    Peer();
    ~Peer();

    //! The frames heard so far, from all clients. Any thread.
    int heard() const;
    //! The last one.
    QString lastHeard() const;
    //! When that came, by Clock.
    qint64 lastHeardAt() const;

    //! Sends a good reply with this text to the last frame, where that came from. Returns at once. Any thread.
    void answer(const QString &text);
    //! From now on every request gets a good reply at once, and isn't heard(). An empty payload ends that.
    void answerAll(const QJsonObject &payload);

private:
    QThread m_thread;
    std::unique_ptr<PeerServer> m_server;
};
