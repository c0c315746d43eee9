// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QMutex>
#include <QObject>
#include <QString>

class QWebSocket;
class QWebSocketServer;

//! The part of Peer that lives in its thread.
class PeerServer : public QObject
{
    Q_OBJECT

public:
    //! All functions but the getters are called in the server's thread. @return false if the port is in use
    bool listen();
    void close();
    void answer(const QString &text);
    void answerAll(const QJsonObject &payload) { m_payload = payload; }

    int received() const;
    QString lastReceived() const;
    qint64 lastReceivedAt() const;

private:
    void accept();
    static void reply(QWebSocket *client, const QString &text, const QJsonObject &payload);

    QWebSocketServer *m_server = nullptr;
    QWebSocket *m_lastSender = nullptr;
    //! Of the reply to every request; empty while requests are only recorded.
    QJsonObject m_payload;
    mutable QMutex m_mutex;
    QString m_lastReceived;
    qint64 m_lastReceivedAt = 0;
    int m_received = 0;
};
