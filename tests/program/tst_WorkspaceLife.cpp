// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DesktopRun.h"
#include "Files.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QTemporaryDir>
#include <QTest>

namespace
{

//! Prints the slugs of the active workspaces and the kinds of the jobs that are done.
const QString s_client = QStringLiteral(R"(
    const WebSocket = require(process.argv[1] + '/node_modules/ws');
    const socket = new WebSocket('ws://127.0.0.1:8765/ws');
    const methods = ['workspaceIntelListApproved', 'workspaceRuntimeListJobs'];
    const rules = (row) => row.behaviorRules ?? JSON.parse(row.behavior_rules);
    socket.on('open', () => methods.forEach((method, n) => socket.send(JSON.stringify({ id: n + 1, method, params: {} }))));
    socket.on('message', (data) => {
        const { id, payload } = JSON.parse(data);
        if (id === 1)
            console.log(payload.workspaces.filter(({ status }) => status === 'active').map((row) => rules(row).slug).join());
        if (id === 2) {
            console.log(payload.jobs.filter(({ state }) => state === 'done').map(({ kind }) => kind).join());
            socket.close();
        }
    });
)");

QString bundledBridge()
{
    return qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tools/sdk-bridge");
}

//! What the client prints; empty if there is no bridge.
QByteArray workspaces()
{
    return Program::run({QStringLiteral("-e"), s_client, bundledBridge()}, QProcessEnvironment::systemEnvironment(),
                        QStringLiteral("node"))
        .output;
}

} // namespace

//! Workspaces of a real bridge in the started program.
class tst_WorkspaceLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void preferenceAndSuggestion();
};

void tst_WorkspaceLife::preferenceAndSuggestion()
{
    const QTemporaryDir home;
    QVERIFY(writeFile(home.filePath(QStringLiteral(".config/loomra-kderc")),
                      "[General]\nEnabledWorkspaceTemplateSlugs=focus-dev,research\n"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.remove(QStringLiteral("XDG_CONFIG_HOME"));
    environment.insert(QStringLiteral("LOOMRA_WORKSPACE_INTEL"), QStringLiteral("1"));
    environment.insert(QStringLiteral("LOOMRA_AI_RUNTIME"), QStringLiteral("1"));
    environment.insert(QStringLiteral("LOOMRA_WORKSPACE_NOTIFY_INAPP"), QStringLiteral("1"));
    environment.insert(QStringLiteral("LOOMRA_DEMO_DELAY_MS"), QStringLiteral("0"));
    QProcess bridge;
    bridge.setProcessEnvironment(environment);
    bridge.start(QStringLiteral("node"), {bundledBridge() + QStringLiteral("/bridge.js")});
    QTRY_COMPARE_WITH_TIMEOUT(workspaces(), QByteArray("\n\n"), Timeouts::Program);

    // What the user wants on is turned on.
    DesktopRun run({}, environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_COMPARE_WITH_TIMEOUT(workspaces(), QByteArray("focus-dev,research\n\n"), Timeouts::Program);

    // The dialog opens in its own time, so its first button is pressed until that has an effect.
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("[AgentBridge] Connected to Loomra bridge"), Timeouts::Program);
    QVERIFY(run.takeKeyboard());
    for (const char *key : {"s", "u", "g", "g", "e", "s", "t", "i", "o", "n", "Return"}) {
        run.press(key);
    }
    const auto isPrepared = [&run] {
        run.press("Tab");
        run.press("Return");
        return workspaces() == QByteArray("focus-dev,research\nworkspace.prepare\n");
    };
    QTRY_VERIFY_WITH_TIMEOUT(isPrepared(), Timeouts::Program);

    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
    bridge.terminate();
    QVERIFY(bridge.waitForFinished());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_WorkspaceLife, QCoreApplication)

#include "tst_WorkspaceLife.moc"
