// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "MessageLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

// The only part of AgentBridge that needs a QGuiApplication.
class tst_AgentBridgeClipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void copies_data();
    void copies();
};

void tst_AgentBridgeClipboard::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_AgentBridgeClipboard::copies_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("words") << "copy me";
    QTest::newRow("lines and whitespace") << " a\n\tb ";
    QTest::newRow("other alphabets") << "日本 ü";
    QTest::newRow("empty") << "";
}

void tst_AgentBridgeClipboard::copies()
{
    QFETCH(QString, text);
    MessageLog log;
    AgentBridge agent;
    QGuiApplication::clipboard()->setText(QStringLiteral("old"));
    log.clear();
    agent.copyToClipboard(text);
    QCOMPARE(QGuiApplication::clipboard()->text(QClipboard::Clipboard), text);
    QVERIFY(log.has(QtDebugMsg, QStringLiteral("[AgentBridge] Copied %1 chars to clipboard").arg(text.length())));
    QCOMPARE(log.lines().size(), 1);
}

static int run(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "minimal"); // its clipboard is private to this process
    QGuiApplication application(argc, argv);
    tst_AgentBridgeClipboard test;
    return QTest::qExec(&test, argc, argv);
}

REGISTER_TEST_MAIN(tst_AgentBridgeClipboard, run)

#include "tst_AgentBridgeClipboard.moc"
