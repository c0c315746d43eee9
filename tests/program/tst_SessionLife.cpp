// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DesktopRun.h"
#include "Files.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace
{

//! A client that performs the requests of its arguments, each a JSON array of method and params, and prints the names
//! of all sessions, the one that was used last first.
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

QString demoBridge()
{
    return qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tools/demo-bridge");
}

//! The names of the bridge's sessions.
QByteArray sessions(const QStringList &requests = {})
{
    return Program::run(QStringList {QStringLiteral("-e"), s_client, demoBridge()} + requests,
                        QProcessEnvironment::systemEnvironment(), QStringLiteral("node"))
        .output.trimmed();
}

QStringList creation(const char *name)
{
    return {QStringLiteral(R"(["createSession", {}])"),
            QStringLiteral(R"(["renameSession", {"sessionId": "last", "newName": "%1"}])").arg(QLatin1String(name))};
}

} // namespace

//! The sessions of a real bridge, from the keyboard of the started program.
class tst_SessionLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void createsSwitchesAndDeletes();

private:
    static void command(const DesktopRun &run, const QByteArray &keys)
    {
        for (const QByteArray &key : keys.split(' ')) {
            run.press(key);
        }
    }
};

void tst_SessionLife::createsSwitchesAndDeletes()
{
    const QTemporaryDir home;
    QProcess bridge;
    bridge.start(QStringLiteral("node"), {demoBridge() + QStringLiteral("/bridge.js")});
    QTRY_COMPARE_WITH_TIMEOUT(sessions(), QByteArray("[]"), Timeouts::Program);
    QCOMPARE(sessions(creation("Garden") + creation("Kitchen") + creation("Attic")),
             QByteArray("[Attic,Kitchen,Garden]"));

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("LOOMRA_DEBUG"), QStringLiteral("1"));
    const auto listings = [&home] {
        return contentOf(home.filePath(QStringLiteral(".local/share/loomra-kde/loomra-debug.log")))
            .count("listSessions response");
    };
    DesktopRun run({}, environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);
    QVERIFY(run.takeKeyboard());

    // The menu completes the command. In the popup, the last stop is the button of the first row.
    command(run, "slash s e Return");
    QTRY_COMPARE_WITH_TIMEOUT(listings(), 1, Timeouts::Program);
    command(run, "shift+Tab Return");
    QTRY_COMPARE_WITH_TIMEOUT(sessions(), QByteArray("[Kitchen,Garden]"), Timeouts::Program);
    command(run, "Escape");

    // The second row.
    command(run, "slash s e s s i o n Return");
    QTRY_COMPARE_WITH_TIMEOUT(listings(), 2, Timeouts::Program);
    command(run, "shift+Tab Down Return");
    QTRY_COMPARE_WITH_TIMEOUT(sessions(), QByteArray("[Garden,Kitchen]"), Timeouts::Program);

    command(run, "slash n e w Return");
    QTRY_COMPARE_WITH_TIMEOUT(sessions(), QByteArray("[New session,Garden,Kitchen]"), Timeouts::Program);

    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
    bridge.terminate();
    QVERIFY(bridge.waitForFinished());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_SessionLife, QCoreApplication)

#include "tst_SessionLife.moc"
