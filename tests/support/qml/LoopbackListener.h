// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QTcpServer>

//! A server on a free port of the loopback device, which has nothing. It tells whether words that were only to be shown
//! made the program fetch something.
class LoopbackListener : public QObject
{
    Q_OBJECT
    //! "http://127.0.0.1:PORT"; "" when it doesn't listen.
    Q_PROPERTY(QString address READ address CONSTANT)
    //! How many connections came so far.
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
