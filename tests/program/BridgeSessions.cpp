// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"

#include "Program.h"

namespace
{

const QString s_client = QStringLiteral(R"(
    const WebSocket = require(process.argv[1] + '/node_modules/ws');
    const requests = process.argv.slice(2).map(JSON.parse).concat([['listSessions', {}]]);
    const socket = new WebSocket('ws://127.0.0.1:8765/ws');
    let last;
    const next = () => {
        const [method, params] = requests.shift();
        // "last" is the session that was created last.
        const filled = Object.fromEntries(Object.entries(params).map(([k, v]) => [k, v === 'last' ? last : v]));
        socket.send(JSON.stringify({ id: requests.length + 1, method, params: filled }));
    };
    socket.on('message', (data) => {
        const frame = JSON.parse(data);
        if (frame.type === 'event')
            return;
        last = frame.payload?.sessionId ?? last;
        if (frame.payload?.sessions) {
            console.log(`[${frame.payload.sessions.map(({ name }) => name)}]`);
            socket.close();
        } else {
            next();
        }
    });
)");

} // namespace

namespace BridgeSessions
{

QString bundledBridge()
{
    return qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tools/sdk-bridge");
}

QByteArray names(const QStringList &requests)
{
    return Program::run(QStringList {QStringLiteral("-e"), s_client, bundledBridge()} + requests,
                        QProcessEnvironment::systemEnvironment(), QStringLiteral("node"))
        .output.trimmed();
}

} // namespace BridgeSessions
