// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QTcpServer>

//! An HTTP server on a free loopback port that answers "404 Not Found". It counts connections, so that a test can check
//! that displaying a text fetches nothing.
class LoopbackListener : public QObject
{
    Q_OBJECT
    //! "http://127.0.0.1:PORT", "" if not listening.
    Q_PROPERTY(QString address READ address CONSTANT)
    //! Number of connections so far.
    Q_PROPERTY(int connections READ connections NOTIFY connectionsChanged)

public:
    bool listen();
    QString address() const;
    int connections() const { return m_connections; }

Q_SIGNALS:
    void connectionsChanged();

private:
    QTcpServer m_server;
    int m_connections = 0;
};
