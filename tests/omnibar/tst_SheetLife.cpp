// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "TestRegistry.h"
#include "Timeouts.h"

#include "ConfigManager.h"
#include "LoomraSDK.h"

#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace
{

constexpr int s_sessions = 40;

} // namespace

//! The settings sheet with data of the bundled bridge: the real window and the real clients.
class tst_SheetLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyTabHasData();
    void twoWindowsManageSessions();
    void bridgeGoesAndComesBack();

private:
    bool begin();
    void startBridge();
    static void connectToBridge(LoomraSDK &sdk);
    QString textIn(const char *name) const;
    //! A control in the row of a session; null if there is none.
    QQuickItem *inSession(const QString &name, const char *control) const;
    void press(QQuickItem *button);

    std::unique_ptr<Conversation> m_bar;
    std::unique_ptr<QTemporaryDir> m_state;
    std::unique_ptr<QProcess> m_demo;
    LoomraSDK *m_sdk = nullptr;
};

void tst_SheetLife::init()
{
    m_bar = std::make_unique<Conversation>();
    m_bar->expectWarning("[AgentBridge] WebSocket error:");
    m_bar->expectWarning("WebSocket error:");
    m_bar->bridge.close();
    m_state = std::make_unique<QTemporaryDir>();
    startBridge();
}

void tst_SheetLife::cleanup()
{
    m_bar.reset();
    m_demo.reset();
}

void tst_SheetLife::startBridge()
{
    m_demo = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(text("LOOMRA_DEMO_DELAY_MS"), text("5"));
    environment.insert(text("LOOMRA_DEMO_SESSIONS"), QString::number(s_sessions));
    // No sessions of the test before.
    environment.insert(text("XDG_STATE_HOME"), m_state->path());
    environment.insert(text("LOOMRA_WORKSPACE_INTEL"), text("1"));
    environment.insert(text("LOOMRA_AI_RUNTIME"), text("1"));
    m_demo->setProcessEnvironment(environment);
    m_demo->start(text("node"), {qEnvironmentVariable("TOVICTL_SOURCE_DIR") + text("/tools/sdk-bridge/bridge.js")});
    QVERIFY(m_demo->waitForReadyRead(Timeouts::Program));
}

void tst_SheetLife::connectToBridge(LoomraSDK &sdk)
{
    sdk.setConnectOnly(true);
    sdk.initialize();
    QTRY_VERIFY_WITH_TIMEOUT(sdk.isReady(), Timeouts::Program);
}

bool tst_SheetLife::begin()
{
    if (!m_bar->begin()) {
        return false;
    }
    m_sdk = qobject_cast<LoomraSDK *>(m_bar->property("sdk").value<QObject *>());
    if (!m_sdk) {
        return false;
    }
    connectToBridge(*m_sdk);
    return m_sdk->isReady();
}

QString tst_SheetLife::textIn(const char *name) const
{
    QQuickItem *item = m_bar->item(name);
    return item ? item->property("text").toString() : QString();
}

QQuickItem *tst_SheetLife::inSession(const QString &name, const char *control) const
{
    const QList<QQuickItem *> rows = m_bar->items("managedSession");
    const auto found =
        std::find_if(rows.cbegin(), rows.cend(), [&](QQuickItem *row) { return row->property("sname") == name; });
    return found == rows.cend() ? nullptr : m_bar->itemIn(*found, text(control));
}

void tst_SheetLife::press(QQuickItem *button)
{
    QVERIFY(button);
    m_bar->focus(button);
    m_bar->key(Qt::Key_Return);
}

void tst_SheetLife::everyTabHasData()
{
    QVERIFY(begin());
    m_bar->click("settingsBtn");
    QVERIFY(m_bar->openTab(text("Models")));
    QTRY_COMPARE(m_bar->property("modelsList").toList().size(), 300);
    QTRY_COMPARE(textIn("modelsStatus"), QString());
    m_bar->screenshot("demo-models");

    m_bar->setProperty("showAdvancedAssistant", true);
    QVERIFY(m_bar->openTab(text("Assistant")));
    QTRY_VERIFY(!m_bar->property("wiDwellSummaryText").toString().isEmpty());
    QTRY_VERIFY(m_bar->property("aiRuntimeStatusLine").toString().startsWith(text("State: ")));
    m_bar->screenshot("demo-assistant");

    QVERIFY(m_bar->openTab(text("Sessions")));
    QTRY_COMPARE(textIn("sessionsStatus"), text("40 session(s)"));
    m_bar->screenshot("demo-sessions");

    QVERIFY(m_bar->openTab(text("System")));
    QTRY_VERIFY(m_bar->property("dashBridgeRssMb").toReal() > 0);
    QTRY_VERIFY(!m_bar->property("powerProfileActive").toString().isEmpty());
    QTRY_VERIFY(m_bar->property("runtimeConnected").toBool());
    // The environment of tests has no user services.
    QTRY_COMPARE(textIn("serviceLabel"), text("running (standalone)"));
    QVERIFY(m_bar->settle());
    m_bar->screenshot("demo-system");
}

void tst_SheetLife::twoWindowsManageSessions()
{
    QVERIFY(begin());
    ConfigManager config;
    LoomraSDK other(&config);
    connectToBridge(other);
    QSignalSpy created(&other, &LoomraSDK::sessionCreated);
    other.createSession();
    QTRY_COMPARE_WITH_TIMEOUT(created.count(), 1, Timeouts::Program);
    const QString id = created.first().first().toString();
    QSignalSpy renamed(&other, &LoomraSDK::sessionRenamed);
    other.renameSession(id, text("Garden"));
    QTRY_COMPARE(renamed.count(), 1);

    QVERIFY(m_bar->openTab(text("Sessions")));
    QTRY_VERIFY(inSession(text("Garden"), "renameSessionBtn"));
    QVERIFY(m_bar->settle());

    // The other window renames the session while it is being renamed here. The last one to save wins.
    press(inSession(text("Garden"), "renameSessionBtn"));
    m_bar->type("Flowers");
    other.renameSession(id, text("Kitchen"));
    QTRY_COMPARE(renamed.count(), 2);
    m_bar->invoke("refreshSessionsList");
    QTRY_VERIFY(inSession(text("Kitchen"), "renameSessionBtn"));
    QCOMPARE(m_bar->item("sessionNameField")->property("text").toString(), text("Flowers"));
    m_bar->key(Qt::Key_Return);
    QTRY_VERIFY(inSession(text("Flowers"), "removeSessionBtn"));

    // It deletes the session, which is still listed here.
    QSignalSpy deleted(&other, &LoomraSDK::sessionDeleted);
    other.deleteSession(id);
    QTRY_COMPARE(deleted.count(), 1);
    QVERIFY(inSession(text("Flowers"), "switchSessionBtn"));
    press(inSession(text("Flowers"), "removeSessionBtn"));
    QTRY_VERIFY2(textIn("sessionsStatus").contains(id), qPrintable(textIn("sessionsStatus")));
    press(m_bar->item("refreshSessionsBtn"));
    QTRY_VERIFY(!inSession(text("Flowers"), "removeSessionBtn"));

    // All sessions go from here, while the other window creates one.
    press(m_bar->item("deleteEverySessionBtn"));
    QTRY_COMPARE_WITH_TIMEOUT(textIn("sessionDeleteStatus"), text("All sessions deleted."), Timeouts::Program);
    QTRY_COMPARE(textIn("sessionsStatus"), text("No sessions found."));
    other.createSession();
    QTRY_COMPARE(created.count(), 2);
    press(m_bar->item("refreshSessionsBtn"));
    QTRY_COMPARE(textIn("sessionsStatus"), text("1 session(s)"));
}

void tst_SheetLife::bridgeGoesAndComesBack()
{
    QVERIFY(begin());
    QVERIFY(m_bar->openTab(text("System")));
    QTRY_VERIFY(m_bar->property("dashBridgeRssMb").toReal() > 0);
    m_demo->kill();
    m_demo->waitForFinished();
    QTRY_COMPARE(m_bar->property("bridgeStatus").toString(), text("disconnected"));
    QTRY_VERIFY(!m_sdk->isReady());
    QVERIFY(m_bar->openTab(text("Models")));
    QTRY_COMPARE(textIn("modelsStatus"), text("SDK is connecting..."));
    QVERIFY(m_bar->openTab(text("Sessions")));
    QTRY_COMPARE(textIn("sessionsStatus"), text("SDK is connecting..."));
    m_bar->screenshot("demo-gone");
    startBridge();
    QTRY_VERIFY_WITH_TIMEOUT(m_sdk->isReady(), OmniBarFixture::ReconnectTimeout);
    press(m_bar->item("refreshSessionsBtn"));
    QTRY_COMPARE(textIn("sessionsStatus"), text("40 session(s)"));
    QTRY_COMPARE(m_bar->property("modelsList").toList().size(), 300);
}

REGISTER_TEST(tst_SheetLife, QGuiApplication)

#include "tst_SheetLife.moc"
