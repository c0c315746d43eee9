// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
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
    void answerAll(const QJsonObject &payload) { m_payload = payload; }

    int heard() const;
    QString lastHeard() const;
    qint64 lastHeardAt() const;

private:
    void accept();
    static void reply(QWebSocket *client, const QString &text, const QJsonObject &payload);

    QWebSocketServer *m_server = nullptr;
    QWebSocket *m_lastSpeaker = nullptr;
    //! Of the reply to every request; empty while they are only written down.
    QJsonObject m_payload;
    mutable QMutex m_mutex;
    QString m_lastHeard;
    qint64 m_lastHeardAt = 0;
    int m_heard = 0;
};
