// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeSessions.h"
#include "DesktopRun.h"
#include "ScreenReader.h"

#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

namespace
{

const QString s_button = QStringLiteral("push button");
const QString s_messages = QStringLiteral("Messages");

} // namespace

Q_DECLARE_METATYPE(ScreenReader::Address)

//! The started program, operated through the accessibility bus alone.
class tst_AssistiveTechnology : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isOnTheBus_data();
    void isOnTheBus();
    void operatesTheOmniBar();
    void operatesTheMainWindow();
    void readsAListThatScrolls();

private:
    std::unique_ptr<QTemporaryDir> m_home;
    QProcessEnvironment m_environment;
    std::unique_ptr<QProcess> m_bridge;
};

void tst_AssistiveTechnology::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("HOME"), m_home->path());
    m_environment.insert(QStringLiteral("LOOMRA_BRIDGE_PATH"), BridgeSessions::bundledBridge());
    m_environment.insert(QStringLiteral("LOOMRA_DEMO_DELAY_MS"), QStringLiteral("0"));
    m_environment.insert(QStringLiteral("LOOMRA_DEMO_SESSIONS"), QStringLiteral("0"));
}

void tst_AssistiveTechnology::cleanup()
{
    if (m_bridge) {
        m_bridge->terminate();
        m_bridge->waitForFinished();
    }
    m_bridge.reset();
}

void tst_AssistiveTechnology::isOnTheBus_data()
{
    QTest::addColumn<ScreenReader::Address>("address");

    QTest::newRow("address on the display") << ScreenReader::Address::Display;
    QTest::newRow("address from the service") << ScreenReader::Address::Service;
}

void tst_AssistiveTechnology::isOnTheBus()
{
    QFETCH(ScreenReader::Address, address);

    const ScreenReader reader(ScreenReader::Events::None, address);
    const QByteArray before = ScreenReader::addressOnDisplay();
    QCOMPARE(before.isEmpty(), address == ScreenReader::Address::Service);
    DesktopRun run({}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(reader.shown(s_button).contains(QStringLiteral("Settings")), Timeouts::Program);
    // Other programs find the display as it was.
    QCOMPARE(ScreenReader::addressOnDisplay(), before);
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

void tst_AssistiveTechnology::operatesTheOmniBar()
{
    m_bridge = std::make_unique<QProcess>();
    m_bridge->setProcessEnvironment(m_environment);
    m_bridge->start(QStringLiteral("node"), {BridgeSessions::bundledBridge() + QStringLiteral("/bridge.js")});
    const ScreenReader reader(ScreenReader::Events::None);
    DesktopRun run({}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);

    // Each QTRY evaluates its condition several times, so nothing is pressed in one.
    QTRY_VERIFY_WITH_TIMEOUT(reader.shown(s_button).contains(QStringLiteral("Open Windows")), Timeouts::Program);
    QVERIFY(reader.press(s_button, QStringLiteral("Open Windows")));
    QTRY_COMPARE_WITH_TIMEOUT(reader.rows(s_messages).size(), 2, Timeouts::Program);
    const QStringList rows = reader.rows(s_messages);
    QVERIFY2(rows.at(0).startsWith(QLatin1String("You, ")), qPrintable(rows.at(0)));
    QVERIFY2(rows.at(1).startsWith(QLatin1String("Tovi, ")), qPrintable(rows.at(1)));

    QVERIFY(reader.press(s_button, QStringLiteral("Settings")));
    QTRY_VERIFY_WITH_TIMEOUT(reader.shown(QStringLiteral("page tab")).contains(QStringLiteral("Models")),
                             Timeouts::Program);
    QVERIFY(reader.press(QStringLiteral("page tab"), QStringLiteral("Models")));
    QVERIFY(run.takeKeyboard());
    QVERIFY(reader.focus(s_button, QStringLiteral("Settings")));
    QTRY_COMPARE_WITH_TIMEOUT(reader.focused(), QStringLiteral("push button: Settings"), Timeouts::Program);
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_AssistiveTechnology::operatesTheMainWindow()
{
    const ScreenReader reader(ScreenReader::Events::None);
    DesktopRun run({QStringLiteral("--main")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("Bridge is ready, sdkInitialized: true\n"), Timeouts::Program);
    QVERIFY(run.takeKeyboard());

    QTRY_VERIFY_WITH_TIMEOUT(reader.shown(s_button).contains(QStringLiteral("New session")), Timeouts::Program);
    QVERIFY(reader.press(s_button, QStringLiteral("New session")));
    QTRY_COMPARE_WITH_TIMEOUT(reader.rows(QStringLiteral("Sessions")).size(), 1, Timeouts::Program);
    QVERIFY(reader.focus(QStringLiteral("text"), QStringLiteral("Message")));
    QTRY_COMPARE_WITH_TIMEOUT(reader.focused(), QStringLiteral("text: Message"), Timeouts::Program);
    run.type("hello");
    QTRY_COMPARE_WITH_TIMEOUT(reader.textOf(QStringLiteral("Message")), QStringLiteral("hello"), Timeouts::Program);
    QVERIFY(reader.press(s_button, QStringLiteral("Send")));
    QTRY_COMPARE_WITH_TIMEOUT(reader.rows(s_messages).size(), 2, Timeouts::Program);
    QVERIFY(reader.rows(s_messages).constFirst().endsWith(QLatin1String("hello")));
    QVERIFY2(run.closeWindow(), run.errors().constData());
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_AssistiveTechnology::readsAListThatScrolls()
{
    m_environment.insert(QStringLiteral("LOOMRA_DEMO_SESSIONS"), QStringLiteral("60"));
    const ScreenReader reader(ScreenReader::Events::None);
    DesktopRun run({QStringLiteral("--main")}, m_environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(run.takeKeyboard());
    const QString list = QStringLiteral("Sessions");
    QTRY_VERIFY_WITH_TIMEOUT(reader.rows(list).size() > 1, Timeouts::Program);
    const QString first = reader.rows(list).constFirst();
    QVERIFY(reader.focus(QStringLiteral("list item"), first));
    QTRY_COMPARE_WITH_TIMEOUT(reader.focused(), QStringLiteral("list item: ") + first, Timeouts::Program);

    // From row to row beyond the end of the view and back. Each row is created when it comes into view.
    for (const char *key : {"Down", "Up"}) {
        for (int i = 0; i < 40; ++i) {
            run.press(key);
        }
        const bool isBack = qstrcmp(key, "Up") == 0;
        QTRY_VERIFY_WITH_TIMEOUT(reader.rows(list).contains(first) == isBack, Timeouts::Program);
        QTRY_VERIFY_WITH_TIMEOUT((reader.focused() == QStringLiteral("list item: ") + first) == isBack,
                                 Timeouts::Program);
        const QList<int> tops = reader.rowTops(list);
        QVERIFY(tops.size() > 1);
        QVERIFY(std::is_sorted(tops.cbegin(), tops.cend()));
    }
    QVERIFY2(run.closeWindow(), run.errors().constData());
}

REGISTER_PRIVATE_NETWORK_TEST(tst_AssistiveTechnology, QCoreApplication)

#include "tst_AssistiveTechnology.moc"
