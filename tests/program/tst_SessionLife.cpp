// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"
#include "DesktopRun.h"
#include "Files.h"
#include "ScreenReader.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace
{

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
    bridge.start(QStringLiteral("node"), {BridgeSessions::bundledBridge() + QStringLiteral("/bridge.js")});
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[]"), Timeouts::Program);
    QCOMPARE(BridgeSessions::names(creation("Garden") + creation("Kitchen") + creation("Attic")),
             QByteArray("[Attic,Kitchen,Garden]"));

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("LOOMRA_DEBUG"), QStringLiteral("1"));
    const auto listings = [&home] {
        return contentOf(home.filePath(QStringLiteral(".local/share/loomra-kde/loomra-debug.log")))
            .count("listSessions response");
    };
    const ScreenReader reader(ScreenReader::Events::None);
    // The popup has its rows some time after the reply.
    const auto isListed = [&reader](const char *name) {
        return !reader.shown(QStringLiteral("push button")).filter(QLatin1String(name)).isEmpty();
    };
    DesktopRun run({}, environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);
    QVERIFY(run.takeKeyboard());

    // The menu completes the command. In the popup, the last stop is the button of the first row.
    command(run, "slash s e Return");
    QTRY_COMPARE_WITH_TIMEOUT(listings(), 1, Timeouts::Program);
    QTRY_VERIFY_WITH_TIMEOUT(isListed("Attic"), Timeouts::Program);
    command(run, "shift+Tab Return");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[Kitchen,Garden]"), Timeouts::Program);
    command(run, "Escape");

    // The second row.
    command(run, "slash s e s s i o n Return");
    QTRY_COMPARE_WITH_TIMEOUT(listings(), 2, Timeouts::Program);
    QTRY_VERIFY_WITH_TIMEOUT(isListed("Kitchen"), Timeouts::Program);
    command(run, "shift+Tab Down Return");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[Garden,Kitchen]"), Timeouts::Program);

    command(run, "slash n e w Return");
    QTRY_COMPARE_WITH_TIMEOUT(BridgeSessions::names(), QByteArray("[New session,Garden,Kitchen]"), Timeouts::Program);

    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
    bridge.terminate();
    QVERIFY(bridge.waitForFinished());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_SessionLife, QCoreApplication)

#include "tst_SessionLife.moc"
