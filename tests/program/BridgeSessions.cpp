// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"

#include "Program.h"

namespace
{

const QString s_client = QStringLiteral(R"(
    const WebSocket = require(process.argv[1] + '/node_modules/ws');
    const requests = process.argv.slice(2).map(JSON.parse);
    const socket = new WebSocket('ws://127.0.0.1:8765/ws');
    let last;
    const next = () => {
        const [method, params] = requests.shift();
        const filled = Object.fromEntries(Object.entries(params).map(([k, v]) => [k, v === 'last' ? last : v]));
        socket.send(JSON.stringify({ id: requests.length + 1, method, params: filled }));
    };
    socket.on('message', (data) => {
        const frame = JSON.parse(data);
        if (frame.type === 'event')
            return;
        const { sessionId, sessions, messages } = frame.payload ?? {};
        // "last" in later params: the session that was just created, or the first of a list.
        last = sessionId ?? sessions?.[0]?.id ?? last;
        if (requests.length > 0) {
            next();
            return;
        }
        if (sessions)
            console.log(`[${sessions.map(({ name }) => name)}]`);
        messages?.forEach(({ role, content }) => console.log(`${role}: ${content}`));
        socket.close();
    });
)");

const QString s_list = QStringLiteral(R"(["listSessions", {}])");

QByteArray perform(const QStringList &requests)
{
    return Program::run(QStringList {QStringLiteral("-e"), s_client, BridgeSessions::bundledBridge()} + requests,
                        QProcessEnvironment::systemEnvironment(), QStringLiteral("node"))
        .output.trimmed();
}

} // namespace

namespace BridgeSessions
{

QString bundledBridge()
{
    return qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tools/sdk-bridge");
}

QByteArray names(const QStringList &requests)
{
    return perform(requests + QStringList {s_list});
}

QByteArray lastMessages()
{
    return perform({s_list, QStringLiteral(R"(["loadMessages", {"sessionId": "last"}])")});
}

} // namespace BridgeSessions
