// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QMutex>
#include <QObject>
#include <QString>

class QWebSocket;
class QWebSocketServer;

//! The part of a Peer that lives in its thread.
class PeerServer : public QObject
{
    Q_OBJECT

public:
    //! Called in the server's own thread, as all but the questions. @return false when the port is taken
    bool listen();
    void close();
    void answer(const QString &text);

    int heard() const;
    QString lastHeard() const;
    qint64 lastHeardAt() const;

private:
    void accept();

    QWebSocketServer *m_server = nullptr;
    QWebSocket *m_lastSpeaker = nullptr;
    mutable QMutex m_mutex;
    QString m_lastHeard;
    qint64 m_lastHeardAt = 0;
    int m_heard = 0;
};
