// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QThread>

#include <memory>

class PeerServer;

//! A bridge in a separate thread, so that its work isn't measured with the program's. It sends "ready" to each client,
//! and replies to requests on demand or to all of them.
class Peer
{
public:
    //! Listens at once. Ends the benchmark if the port is in use.
    Peer();
    ~Peer();

    //! The number of frames received from all clients. Any thread.
    int received() const;
    //! The last frame. Any thread.
    QString lastReceived() const;
    //! The time when it was received, by Clock. Any thread.
    qint64 lastReceivedAt() const;

    //! Sends a reply with this text to the client of the last frame. Returns at once. Any thread.
    void answer(const QString &text);
    //! From now on replies to every request at once, and doesn't count it in received(). An empty payload ends this.
    void answerAll(const QJsonObject &payload);

private:
    QThread m_thread;
    std::unique_ptr<PeerServer> m_server;
};
