// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"
#include "OmniBarFixture.h"
#include "Presses.h"
#include "ScriptedSdk.h"
#include "ScriptedVoice.h"
#include "SharedWindow.h"
#include "TestRegistry.h"
#include "Timeouts.h"

#include <QAccessible>
#include <QDateTime>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

#include <chrono>
#include <memory>

using namespace std::chrono_literals;

namespace
{

//! An interval that is longer than a test, in ms.
constexpr int s_never = 1000000;
//! Ticks in a minute.
constexpr int s_ticks = 15;
//! Long enough for a frame to be drawn.
constexpr auto s_frameTime = 50ms;
constexpr int s_manySteps = 60;

const QString s_tick = QStringLiteral("getSystemDashboard()");
const QString s_power = QStringLiteral("refreshPowerProfile()");

QJsonObject entry(const QString &level, const QString &message, const QTime &time = QTime())
{
    QJsonObject object {{text("level"), level}, {text("message"), message}};
    if (time.isValid()) {
        object.insert(text("ts"), QDateTime(QDate(2026, 3, 9), time).toMSecsSinceEpoch());
    }
    return object;
}

//! A report with all fields.
QJsonObject fullReport()
{
    return {
        {text("memory"),
         QJsonObject {{text("sessionHeapMb"), 48},
                      {text("sessionHeapTotalMb"), 96},
                      {text("bridgeRssMb"), 131},
                      {text("bridgeExternalMb"), 7},
                      {text("toviServiceMb"), 210}}},
        {text("cpu"), QJsonObject {{text("bridgePercent"), 12.4}}},
        {text("feedback"), QJsonObject {{text("likes"), 12}, {text("dislikes"), 3}, {text("total"), 15}}},
        {text("errors"),
         QJsonObject {{text("total"), 2},
                      {text("direction"), text("up")},
                      {text("lastTs"), QDateTime::currentMSecsSinceEpoch() - 200000}}},
        {text("warnings"), QJsonObject {{text("total"), 5}, {text("direction"), text("down")}}},
        {text("logEntries"),
         QJsonArray {entry(text("warn"), text("A frame was no request"), QTime(9, 5, 7)),
                     entry(text("error"), text("readFile: \"none\" does not exist"), QTime(15, 0, 30))}},
        {text("metrics"),
         QJsonObject {{text("requestCount"), 345}, {text("actionCount"), 67}, {text("uptimeMs"), 7380000}}},
        {text("service"),
         QJsonObject {{text("active"), text("active")},
                      {text("sub"), text("running")},
                      {text("uptimeSec"), 3720},
                      {text("restartCount"), 1}}},
    };
}

QJsonObject withTotals(int errors, int warnings)
{
    return {{text("errors"), QJsonObject {{text("total"), errors}}},
            {text("warnings"), QJsonObject {{text("total"), warnings}}}};
}

QJsonObject withService(const QString &active)
{
    return {{text("service"), QJsonObject {{text("active"), active}, {text("sub"), text("dead")}}}};
}

QJsonObject profiles(const QString &active, const QStringList &available)
{
    return {{text("active"), active}, {text("available"), QJsonArray::fromStringList(available)}};
}

//! Receives the URLs that the window opens.
class UrlHandler : public QObject
{
    Q_OBJECT

public:
    UrlHandler() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~UrlHandler() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    Q_DISABLE_COPY_MOVE(UrlHandler)

    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl &url) { urls.append(url); }
};

//! The window with stand-ins for both clients.
class Sheet : public OmniBarFixture
{
public:
    //! Opens the sheet with the System tab.
    bool begin()
    {
        if (!open()) {
            return false;
        }
        QObject *timer = object(text("dashPollTimer"));
        timer->setProperty("interval", s_never);
        setProperty("settingsPanelOpen", true);
        if (!QTest::qWaitFor([this] { return item("settingsTabs") != nullptr; }, Timeouts::Default)) {
            return false;
        }
        item("settingsTabs")->setProperty("currentIndex", 0);
        item("settingsTabs")->setProperty("currentIndex", tabs().size() - 1);
        return QTest::qWaitFor([this] { return isSeen(item("systemTab")); }, Timeouts::Default) && settle();
    }

    QList<QQuickItem *> tabs() const
    {
        return itemsWhere(item("settingsTabs"), [](QQuickItem *item) { return item->inherits("QQuickTabButton"); });
    }
    //! The button of the System tab.
    QQuickItem *tab() const { return tabs().last(); }
    QString textOf(const char *name) const { return item(name)->property("text").toString(); }
    //! The texts of a row of figures.
    QStringList figures(const char *name) const
    {
        QStringList texts;
        const auto items = itemsWhere(item(name), [](QQuickItem *item) { return item->inherits("QQuickText"); });
        for (QQuickItem *item : items) {
            texts.append(item->property("text").toString());
        }
        return texts;
    }
    void tick() { QMetaObject::invokeMethod(object(text("dashPollTimer")), "triggered"); }
    bool isPolling() const { return object(text("dashPollTimer"))->property("running").toBool(); }
};

} // namespace

//! The tab with the dashboard in the window. Tables are loops where a new window state for each row would take longer
//! than the test. One long file, because the tests share the payloads and how they are sent.
class tst_SystemTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init();
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void title();
    void pollingFollowsTheTab_data();
    void pollingFollowsTheTab();
    void pollingFollowsTheSheet();
    void noPollingInTheBubble();
    void leftAndEnteredAtOnce();
    void bridgeGoneAndBack();
    void tickWithNothingNewDrawsNothing();

    void fullReportIsShown();
    void emptyReportIsShown();
    void banner();
    void load();
    void applicationMemory();
    void lights();
    void lastError();
    void service();

    void reconnect();
    void refreshRuntime();
    void openLogs();
    void powerProfile();
    void chipsStay();
    void noPowerProfiles();

    void logByKeys();
    void longLog();
    void hostileTexts();
    void longTextsStayInside();
    void longTranslationsStayInside();
    void everythingIsReachedByTab();
    void pictures();

private:
    void sendReport(const QJsonObject &report) { m_sdk->emitSignal("systemDashboardReceived", report); }
    void setStatus(const QString &status) { m_bridge->setProperty("status", status); }
    QStringList ticks();

    std::unique_ptr<ScriptedSdk> m_sdk;
    QObject *m_bridge = nullptr;
    SharedWindow<Sheet> m_window {[this](Sheet &bar) {
        m_sdk = std::make_unique<ScriptedSdk>(bar);
        const ScriptedVoice voice(bar); // the Voice tab looks for a model
        m_bridge = bar.fake("FakeBridge {}");
        bar.provide("agentBridge", m_bridge);
    }};
    Sheet *m_bar = nullptr;
};

void tst_SystemTab::init()
{
    m_bar = &m_window.take();
    QVERIFY(m_bar->begin());
    m_sdk->takeCalls();
    m_bridge->setProperty("calls", QStringList());
}

//! The calls of the dashboard since the last time. When the sheet opens, others are called too.
QStringList tst_SystemTab::ticks()
{
    return m_sdk->takeCalls().filter(s_tick);
}

void tst_SystemTab::title()
{
    const struct
    {
        const char *status;
        int errors;
        int warnings;
        const char *title;
    } rows[] = {
        {"idle", 0, 0, "System"},   {"thinking", 0, 0, "System"},       {"idle", 1, 0, "System ●"},
        {"idle", 0, 1, "System ●"}, {"disconnected", 0, 0, "System ●"}, {"error", 0, 0, "System ●"},
        {"idle", 0, 0, "System"},
    };
    for (const auto &row : rows) {
        setStatus(text(row.status));
        sendReport(withTotals(row.errors, row.warnings));
        QCOMPARE(m_bar->tab()->property("label").toString(), text(row.title));
    }
}

void tst_SystemTab::pollingFollowsTheTab_data()
{
    QTest::addColumn<bool>("byKeys");
    QTest::newRow("click") << false;
    QTest::newRow("keys") << true;
}

void tst_SystemTab::pollingFollowsTheTab()
{
    QFETCH(bool, byKeys);

    QQuickItem *other = m_bar->tabs().at(m_bar->tabs().size() - 2);
    if (byKeys) {
        m_bar->focus(m_bar->tab());
        m_bar->key(Qt::Key_Left);
    } else {
        m_bar->click(other);
    }
    QVERIFY(!m_bar->isPolling());
    QTRY_VERIFY(!m_bar->item("systemTab"));
    m_sdk->takeCalls();
    m_bar->tick();
    if (byKeys) {
        m_bar->key(Qt::Key_Right);
    } else {
        m_bar->click(m_bar->tab());
    }
    QVERIFY(m_bar->isPolling());
    QCOMPARE(m_bar->property("systemReportLoading").toBool(), true);
    // One by the timer above, and two by page and tab.
    QCOMPARE(m_sdk->takeCalls(), QStringList({s_tick, s_tick, s_tick, s_power}));
    for (int i = 0; i < s_ticks; ++i) {
        m_bar->tick();
    }
    QCOMPARE(m_sdk->takeCalls().count(s_tick), s_ticks);
}

void tst_SystemTab::pollingFollowsTheSheet()
{
    m_bar->key(Qt::Key_Escape);
    QVERIFY(!m_bar->property("settingsPanelOpen").toBool());
    QVERIFY(!m_bar->isPolling());
    QTRY_VERIFY(!m_bar->item("systemTab"));
    ticks();
    m_bar->click("settingsBtn");
    QVERIFY(m_bar->isPolling());
    QVERIFY(m_bar->item("systemTab"));
    QCOMPARE(ticks(), QStringList({s_tick}));
}

void tst_SystemTab::noPollingInTheBubble()
{
    m_bar->setProperty("compactMode", true);
    QVERIFY(!m_bar->isPolling());
    ticks();
    m_bar->setProperty("compactMode", false);
    QVERIFY(m_bar->isPolling());
    QCOMPARE(ticks(), QStringList({s_tick}));
    // A page that is created while the window is a bubble waits too.
    m_bar->setProperty("settingsPanelOpen", false);
    m_bar->setProperty("compactMode", true);
    m_bar->setProperty("settingsPanelOpen", true);
    QVERIFY(!m_bar->isPolling());
    QCOMPARE(ticks(), QStringList());
    m_bar->setProperty("compactMode", false);
    QVERIFY(m_bar->isPolling());
    // A closed sheet stays without polling.
    m_bar->setProperty("settingsPanelOpen", false);
    m_bar->setProperty("compactMode", true);
    m_bar->setProperty("compactMode", false);
    QVERIFY(!m_bar->isPolling());
}

void tst_SystemTab::leftAndEnteredAtOnce()
{
    // Leaving stops the polling at once, and nothing that is deleted later does.
    m_bar->item("settingsTabs")->setProperty("currentIndex", 0);
    QVERIFY(!m_bar->isPolling());
    m_bar->item("settingsTabs")->setProperty("currentIndex", m_bar->tabs().size() - 1);
    QVERIFY(m_bar->isPolling());
    QVERIFY(m_bar->settle());
    QVERIFY(m_bar->isPolling());
    m_bar->setProperty("settingsPanelOpen", false);
    m_bar->setProperty("settingsPanelOpen", true);
    QVERIFY(m_bar->isPolling());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(m_bar->settle());
    QCOMPARE(m_bar->items("systemTab").size(), 1);
    QVERIFY(m_bar->isPolling());
}

void tst_SystemTab::bridgeGoneAndBack()
{
    sendReport(fullReport());
    m_sdk->setProperty("ready", false);
    setStatus(text("disconnected"));
    QCOMPARE(m_bar->textOf("healthText"), text("Bridge disconnected"));
    QVERIFY(m_bar->isPolling());
    m_sdk->takeCalls();
    m_bar->tick();
    QCOMPARE(m_sdk->takeCalls(), QStringList());
    setStatus(text("idle"));
    m_sdk->setProperty("ready", true);
    QVERIFY(ticks().size() <= 1);
    m_bar->tick();
    QCOMPARE(ticks(), QStringList({s_tick}));
    QCOMPARE(m_bar->textOf("healthText"), text("2 error(s)"));
}

void tst_SystemTab::tickWithNothingNewDrawsNothing()
{
    const QJsonObject report = fullReport();
    sendReport(report);
    m_sdk->emitSignal("powerProfileReceived", profiles(text("balanced"), {text("balanced"), text("performance")}));
    QVERIFY(m_bar->settle());
    m_bar->item("inputField")->setProperty("cursorVisible", false);
    QTest::qWait(static_cast<int>(s_frameTime.count()));
    QSignalSpy frames(m_bar->window(), &QQuickWindow::frameSwapped);
    for (int i = 0; i < 4; ++i) {
        m_bar->tick();
        sendReport(report);
        m_sdk->emitSignal("powerProfileReceived", profiles(text("balanced"), {text("balanced"), text("performance")}));
        QTest::qWait(static_cast<int>(s_frameTime.count()));
    }
    QCOMPARE(frames.size(), 0);
    sendReport({});
    QTRY_VERIFY(!frames.isEmpty());
}

void tst_SystemTab::fullReportIsShown()
{
    sendReport(fullReport());
    m_sdk->emitSignal("powerProfileReceived", profiles(text("balanced"), {text("power-saver"), text("balanced")}));
    m_bar->setProperty("dashNow", QDateTime::currentMSecsSinceEpoch());
    QVERIFY(m_bar->settle());
    QCOMPARE(m_bar->textOf("healthText"), text("2 error(s)"));
    QCOMPARE(m_bar->figures("cpuFigures"), QStringList({text("CPU"), text("12%"), text("Uptime 2h 3m")}));
    QCOMPARE(m_bar->figures("heapFigures"),
             QStringList({text("Session heap"), text("48 / 96 MB"), text("Requests 345")}));
    QCOMPARE(m_bar->figures("rssFigures"), QStringList({text("Bridge RSS"), text("131 MB"), text("Actions 67")}));
    QCOMPARE(m_bar->figures("appFigures"), QStringList({text("Tovi app"), text("210 MB"), text("External 7 MB")}));
    QCOMPARE(m_bar->figures("feedbackRow"), QStringList({text("👍 12"), text("👎 3"), text("15 total")}));
    QCOMPARE(m_bar->textOf("errorCount"), text("2 errors \u2191"));
    QCOMPARE(m_bar->textOf("warningCount"), text("5 warnings \u2193"));
    QCOMPARE(m_bar->textOf("lastError"), text("Last error: 3 min ago"));
    QCOMPARE(m_bar->figures("logList"),
             QStringList({text("\u26a0 [09:05:07] A frame was no request"),
                          text("\u2715 [15:00:30] readFile: \"none\" does not exist")}));
    QCOMPARE(m_bar->figures("serviceRow"),
             QStringList({text("active (running)"), text("Uptime 1h 2m · Restarts 1 · Mem 210 MB")}));

    // From top to bottom.
    qreal bottom = 0;
    for (const char *name : {"healthBanner", "memoryGrid", "feedbackRow", "logCounts", "logList", "serviceRow",
                             "powerProfiles", "openLogsBtn"}) {
        QVERIFY2(m_bar->isSeen(m_bar->item(name)), name);
        QVERIFY2(m_bar->place(m_bar->item(name)).top() >= bottom + 10, name);
        bottom = m_bar->place(m_bar->item(name)).bottom();
    }
    QCOMPARE(m_bar->item("systemTab")->property("spacing").toInt(), 10);
    QStringList headings;
    const auto items = m_bar->itemsWhere(m_bar->item("systemTab"), [](QQuickItem *item) {
        return QByteArray(item->metaObject()->className()).startsWith("SettingsHeading");
    });
    for (QQuickItem *item : items) {
        headings.append(item->property("text").toString());
    }
    QCOMPARE(headings,
             QStringList(
                 {text("Process & Memory"), text("Feedback"), text("Background Errors & Warnings"), text("Service")}));
}

void tst_SystemTab::emptyReportIsShown()
{
    sendReport({});
    QVERIFY(m_bar->settle());
    QCOMPARE(m_bar->textOf("healthText"), text("Healthy"));
    QCOMPARE(m_bar->figures("cpuFigures"), QStringList({text("CPU"), text("0%"), text("Uptime 0h 0m")}));
    QCOMPARE(m_bar->figures("heapFigures"), QStringList({text("Session heap"), text("0 / 0 MB"), text("Requests 0")}));
    QCOMPARE(m_bar->textOf("errorCount"), text("0 errors \u2192"));
    QCOMPARE(m_bar->textOf("warningCount"), text("0 warnings \u2192"));
    QVERIFY(!m_bar->isSeen(m_bar->item("lastError")));
    QVERIFY(!m_bar->isSeen(m_bar->item("logList")));
}

void tst_SystemTab::banner()
{
    const QString bad = rgba(0.9, 0.22, 0.21, 0.18);
    const QString warned = rgba(0.98, 0.55, 0, 0.15);
    const QString healthy = rgba(0.26, 0.63, 0.28, 0.1);
    const struct
    {
        const char *status;
        int errors;
        int warnings;
        const char *words;
        QString fill;
        const char *dot;
    } rows[] = {
        {"idle", 0, 0, "Healthy", healthy, "#4ade80"},
        {"idle", 3, 0, "3 error(s)", bad, "#ef4444"},
        {"idle", 3, 2, "3 error(s)", bad, "#ef4444"},
        {"idle", 0, 2, "2 warning(s)", warned, "#FFD700"},
        {"disconnected", 0, 0, "Bridge disconnected", bad, "#ef4444"},
        {"disconnected", 3, 2, "Bridge disconnected", bad, "#ef4444"},
        {"error", 3, 2, "Bridge disconnected", bad, "#ef4444"},
    };
    QQuickItem *item = m_bar->item("healthBanner");
    for (const auto &row : rows) {
        setStatus(text(row.status));
        sendReport(withTotals(row.errors, row.warnings));
        QCOMPARE(m_bar->textOf("healthText"), text(row.words));
        QCOMPARE(colourOf(item), row.fill);
        QCOMPARE(colourOf(m_bar->item("healthDot")), rgb(text(row.dot)));
    }
    QCOMPARE(item->height(), 38.0);
    QCOMPARE(item->property("radius").toInt(), 8);
}

void tst_SystemTab::load()
{
    const QString strong = m_bar->evaluate("omniTheme.uiTextStrong").value<QColor>().name(QColor::HexArgb);
    const struct
    {
        double percent;
        const char *words;
        QString color;
    } rows[] = {
        {50, "50%", strong},
        {51, "51%", rgb(text("#FFD700"))},
        {80, "80%", rgb(text("#FFD700"))},
        {81, "81%", rgb(text("#ef4444"))},
    };
    QQuickItem *value = m_bar->itemIn(m_bar->item("cpuFigures"), text("value"));
    for (const auto &row : rows) {
        sendReport({{text("cpu"), QJsonObject {{text("bridgePercent"), row.percent}}}});
        QCOMPARE(value->property("text").toString(), text(row.words));
        QCOMPARE(colourOf(value), row.color);
    }
}

void tst_SystemTab::applicationMemory()
{
    sendReport({{text("memory"), QJsonObject {{text("bridgeRssMb"), 90}}}});
    QCOMPARE(m_bar->figures("appFigures").at(1), text("90 MB"));
    sendReport({{text("memory"), QJsonObject {{text("bridgeRssMb"), 90}, {text("toviServiceMb"), 120}}}});
    QCOMPARE(m_bar->figures("appFigures").at(1), text("120 MB"));
    QCOMPARE(m_bar->property("serviceMemoryMB").toInt(), 120);
}

void tst_SystemTab::lights()
{
    const auto state = [this](const char *name) {
        return QAccessible::queryAccessibleInterface(m_bar->item(name))->text(QAccessible::Description);
    };
    QCOMPARE(m_bar->figures("bridgeLight"), QStringList({text("Bridge")}));
    QCOMPARE(m_bar->figures("runtimeLight"), QStringList({text("Runtime")}));
    QCOMPARE(state("bridgeLight"), text("Connected"));
    QCOMPARE(state("runtimeLight"), text("Disconnected"));
    m_sdk->setProperty("ready", false);
    m_sdk->emitSignal("runtimeHealthUpdated", QJsonObject {{text("connected"), true}});
    QCOMPARE(state("bridgeLight"), text("Disconnected"));
    QCOMPARE(state("runtimeLight"), text("Connected"));
}

void tst_SystemTab::lastError()
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    sendReport({{text("errors"), QJsonObject {{text("total"), 1}, {text("lastTs"), now}}}});
    QCOMPARE(m_bar->textOf("lastError"), text("Last error: just now"));
    // The clock goes on without a report.
    m_bar->setProperty("appLastErrorTs", now - 130000);
    m_bar->tick();
    QCOMPARE(m_bar->textOf("lastError"), text("Last error: 2 min ago"));
    m_bar->setProperty("appLastErrorTs", now + 3600000);
    QCOMPARE(m_bar->textOf("lastError"), text("Last error: just now"));
}

void tst_SystemTab::service()
{
    const struct
    {
        const char *active;
        bool ready;
        const char *label;
        const char *dot;
    } rows[] = {
        {"active", true, "active (dead)", "#4ade80"},
        {"active", false, "active (dead)", "#4ade80"},
        {"inactive", true, "running (standalone)", "#4ade80"},
        {"failed", true, "running (standalone)", "#4ade80"},
        {"failed", false, "failed", "#ef4444"},
        {"inactive", false, "inactive", "#FFD700"},
        {"", false, "unknown", "#FFD700"},
    };
    for (const auto &row : rows) {
        m_sdk->setProperty("ready", row.ready);
        sendReport(withService(text(row.active)));
        QCOMPARE(m_bar->textOf("serviceLabel"), text(row.label));
        QCOMPARE(colourOf(m_bar->item("serviceDot")), rgb(text(row.dot)));
    }
}

void tst_SystemTab::reconnect()
{
    for (const auto &way : waysToPress) {
        press(*m_bar, m_bar->item("reconnectBtn"), way.by);
        QCOMPARE(m_sdk->takeCalls(), QStringList({text("reconnectBridge()")}));
    }
}

void tst_SystemTab::refreshRuntime()
{
    for (const auto &way : waysToPress) {
        press(*m_bar, m_bar->item("refreshRuntimeBtn"), way.by);
        const QStringList calls = m_sdk->takeCalls();
        QCOMPARE(calls.count(s_power), 1);
        QCOMPARE(calls.count(text("reminderList()")), 1);
    }
}

void tst_SystemTab::openLogs()
{
    UrlHandler handler;
    for (const auto &way : waysToPress) {
        m_sdk->setEventLogDir(text("/home/me/my #1 logs %20?"));
        press(*m_bar, m_bar->item("openLogsBtn"), way.by);
        QCOMPARE(handler.urls.size(), 1);
        QVERIFY(handler.urls.first().isLocalFile());
        QCOMPARE(handler.urls.takeFirst().toLocalFile(), text("/home/me/my #1 logs %20?"));
    }
    m_sdk->setEventLogDir(QString());
    m_bar->click("openLogsBtn");
    QCOMPARE(handler.urls.value(0).toLocalFile(), text("/tmp/loomra-bridge/logs"));
}

void tst_SystemTab::powerProfile()
{
    m_sdk->emitSignal("powerProfileReceived", profiles(text("balanced"), {text("power-saver"), text("balanced")}));
    QVERIFY(m_bar->settle());
    const QList<QQuickItem *> chips = m_bar->items("powerChip");
    QCOMPARE(chips.size(), 2);
    QVERIFY(QAccessible::queryAccessibleInterface(chips.at(1))->state().checked);
    QVERIFY(!QAccessible::queryAccessibleInterface(chips.at(0))->state().checked);
    const auto prompts = [this] { return m_bridge->property("calls").toStringList().filter(text("sendIntent(")); };
    for (const auto &way : waysToPress) {
        m_bridge->setProperty("calls", QStringList());
        press(*m_bar, chips.at(1), way.by);
        QCOMPARE(prompts(), QStringList());
        press(*m_bar, chips.at(0), way.by);
        QCOMPARE(prompts(), QStringList({text("sendIntent(switch to power-saver power profile)")}));
    }
    QCOMPARE(m_bar->property("chatModel.count").toInt(), 0);
    QVERIFY(m_bar->property("settingsPanelOpen").toBool());
}

void tst_SystemTab::chipsStay()
{
    const QStringList names = {text("power-saver"), text("balanced")};
    m_sdk->emitSignal("powerProfileReceived", profiles(text("balanced"), names));
    QVERIFY(m_bar->settle());
    QQuickItem *chip = m_bar->items("powerChip").first();
    m_bar->focus(chip);
    m_sdk->emitSignal("powerProfileReceived", profiles(text("power-saver"), names));
    QCOMPARE(m_bar->items("powerChip").first(), chip);
    QVERIFY(chip->hasActiveFocus());
    QVERIFY(chip->property("chosen").toBool());
}

void tst_SystemTab::noPowerProfiles()
{
    m_sdk->emitSignal("powerProfileReceived", {});
    QVERIFY(!m_bar->isSeen(m_bar->item("powerProfiles")));
}

void tst_SystemTab::logByKeys()
{
    sendReport(fullReport());
    QVERIFY(m_bar->settle());
    const QList<QQuickItem *> rows = m_bar->items("logRow");
    QCOMPARE(rows.size(), 2);
    m_bar->focus(m_bar->item("reconnectBtn"));
    m_bar->key(Qt::Key_Tab);
    QVERIFY(rows.at(0)->hasActiveFocus());
    m_bar->key(Qt::Key_Down);
    QVERIFY(rows.at(1)->hasActiveFocus());
    // A new entry leaves the focus where it is.
    QJsonObject report = fullReport();
    QJsonArray entries = report.value(text("logEntries")).toArray();
    entries.append(entry(text("warn"), text("new")));
    report.insert(text("logEntries"), entries);
    sendReport(report);
    QVERIFY(m_bar->settle());
    QCOMPARE(m_bar->items("logRow").size(), 3);
    QVERIFY(rows.at(1)->hasActiveFocus());
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(rows.at(1));
    QCOMPARE(accessible->role(), QAccessible::ListItem);
    QCOMPARE(accessible->text(QAccessible::Name), text("\u2715 [15:00:30] readFile: \"none\" does not exist"));
}

void tst_SystemTab::longLog()
{
    QJsonArray entries;
    for (int i = 0; i < 5000; ++i) {
        entries.append(entry(i % 2 ? text("warn") : text("error"), QStringLiteral("entry %1").arg(i)));
    }
    sendReport({{text("logEntries"), entries}});
    QVERIFY(m_bar->settle());
    QQuickItem *list = m_bar->item("logList");
    QVERIFY(list->height() <= 8 * 22 + 4);
    QVERIFY(m_bar->items("logRow").size() < 40);
    QCOMPARE(m_bar->property("dashLogRows.count").toInt(), 100);
}

void tst_SystemTab::hostileTexts()
{
    const QString hostile = text("<img src=\"http://127.0.0.1:9/x.png\"> <b>bold</b>\nnext line\u202ereversed ")
        + QString(3000, QLatin1Char('W'));
    sendReport({{text("logEntries"), QJsonArray {entry(text("error"), hostile), entry(hostile, text("level"))}},
                {text("errors"), QJsonObject {{text("total"), 1}, {text("direction"), hostile}}},
                {text("service"), QJsonObject {{text("active"), text("active")}, {text("sub"), hostile}}}});
    m_sdk->emitSignal("powerProfileReceived", profiles(hostile, {hostile, text("<b>a</b>"), text("R&D")}));
    QVERIFY(m_bar->settle());
    const QRectF page = m_bar->place(m_bar->item("systemTab"));
    const auto texts = m_bar->itemsWhere(m_bar->item("systemTab"), [](QQuickItem *item) {
        return item->inherits("QQuickText") && OmniBarFixture::isSeen(item);
    });
    for (QQuickItem *item : texts) {
        const QString words = item->property("text").toString();
        QVERIFY2(page.contains(m_bar->place(item)), qPrintable(words));
        QCOMPARE(item->property("lineCount").toInt(), 1);
        QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
        QVERIFY2(!words.contains(QLatin1Char('\n')) && !words.contains(QChar(0x202e)), qPrintable(words));
    }
    QCOMPARE(m_bar->textOf("errorCount"), text("1 errors \u2192"));
    QCOMPARE(m_bar->items("powerChip").size(), 2); // the long one is dropped
    QCOMPARE(m_bar->item("settingsPanel")->width(), 704.0);

    // The whole text is in the tooltip.
    QQuickItem *line = m_bar->item("logLine");
    QVERIFY(line->property("truncated").toBool());
    m_bar->hover(m_bar->item("logRow"));
    QTRY_VERIFY(!tipsOf(*m_bar).isEmpty());
    QVERIFY(tipsOf(*m_bar).first().startsWith(text("\u2715 <img src=")));
    QVERIFY(tipsOf(*m_bar).first().size() >= 600);
}

void tst_SystemTab::longTextsStayInside()
{
    const double huge = 1e300;
    const double wide = 9e20; // not in the short form with an exponent
    sendReport(
        {{text("memory"),
          QJsonObject {{text("sessionHeapMb"), wide}, {text("sessionHeapTotalMb"), wide}, {text("bridgeRssMb"), huge}}},
         {text("cpu"), QJsonObject {{text("bridgePercent"), huge}}},
         {text("feedback"), QJsonObject {{text("likes"), huge}, {text("total"), -huge}}},
         {text("errors"), QJsonObject {{text("total"), huge}, {text("lastTs"), huge}}},
         {text("metrics"), QJsonObject {{text("uptimeMs"), huge}, {text("requestCount"), huge}}},
         {text("service"), QJsonObject {{text("uptimeSec"), huge}, {text("restartCount"), huge}}}});
    QVERIFY(m_bar->settle());
    const QRectF page = m_bar->place(m_bar->item("systemTab"));
    const auto texts = m_bar->itemsWhere(m_bar->item("systemTab"), [](QQuickItem *item) {
        return item->inherits("QQuickText") && OmniBarFixture::isSeen(item);
    });
    for (QQuickItem *item : texts) {
        QVERIFY2(page.contains(m_bar->place(item)), qPrintable(item->property("text").toString()));
        QVERIFY2(!item->property("text").toString().contains(text("NaN")),
                 qPrintable(item->property("text").toString()));
    }
    QQuickItem *heap = m_bar->item("heapFigures");
    QVERIFY(m_bar->itemIn(heap, text("value"))->property("truncated").toBool());
    QVERIFY(m_bar->place(m_bar->itemIn(heap, text("value"))).right()
            < m_bar->place(m_bar->itemIn(heap, text("detail"))).left());
}

// Many languages need more room than English. All tabs.
void tst_SystemTab::longTranslationsStayInside()
{
    m_window.close();
    Sheet bar;
    const ScriptedSdk sdk(bar);
    const ScriptedVoice voice(bar);
    bar.provide("i18n", bar.fake("QtObject { function tr(text) { return text + ' ' + text; } }"));
    QVERIFY(bar.begin());
    bar.evaluate(
        text("sdk.workspaceIntelAvailable = true; sdk.aiRuntimeAvailable = true; showAdvancedAssistant = true"));
    bar.evaluate(text("sdk.modelsListed([{ id: 'a-free' }]); sdk.sessionsListed([{ id: 'ses_a' }, { id: 'ses_b' }])"));
    bar.evaluate(text("sdk.freeProvidersChecked({ results: [{ model: 'a-free', ok: true }], recommended: { model: "
                      "'a-free', ok: true } })"));
    const QRectF page = bar.place(bar.item("settingsPages"));
    for (int i = 0; i < bar.tabs().size(); ++i) {
        bar.item("settingsTabs")->setProperty("currentIndex", i);
        QVERIFY(bar.settle());
        bar.screenshot(text("sheet-long-%1").arg(i));
        const auto shown = bar.itemsWhere(bar.item("settingsPages"), [&](QQuickItem *item) {
            return bar.isSeen(item) && (item->inherits("QQuickText") || item->inherits("QQuickControl"));
        });
        QVERIFY(shown.size() > 5);
        for (QQuickItem *item : shown) {
            const QRectF place = bar.place(item);
            QVERIFY2(place.width() > 0 && place.left() >= page.left() && place.right() <= page.right() + 0.5,
                     qPrintable(item->objectName() + item->property("text").toString()));
        }
    }
}

void tst_SystemTab::everythingIsReachedByTab()
{
    sendReport(fullReport());
    m_sdk->emitSignal("powerProfileReceived", profiles(text("balanced"), {text("power-saver"), text("balanced")}));
    m_bar->evaluate("surface.screens = [{ 'width': 1280, 'height': 300 }]");
    QVERIFY(m_bar->settle());
    QQuickItem *pane = m_bar->item("settingsScrollPane");
    QQuickItem *page = m_bar->item("systemTab");
    QStringList order;
    m_bar->focus(m_bar->tab());
    for (int i = 0; i < s_manySteps; ++i) {
        m_bar->key(Qt::Key_Tab);
        QQuickItem *focused = m_bar->window()->activeFocusItem();
        if (!focused || !page->isAncestorOf(focused)) {
            break;
        }
        order.append(focused->objectName());
        QTRY_VERIFY2(m_bar->place(pane).contains(m_bar->place(focused)), qPrintable(focused->objectName()));
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(focused);
        QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(), qPrintable(focused->objectName()));
        QVERIFY(accessible->state().focusable);
        const auto rings = m_bar->itemsWhere(focused, [](QQuickItem *item) {
            return QByteArray(item->metaObject()->className()).startsWith("FocusRing") && OmniBarFixture::isSeen(item);
        });
        QCOMPARE(rings.size(), 1);
    }
    QCOMPARE(order,
             QStringList({text("reconnectBtn"), text("logRow"), text("powerChip"), text("powerChip"),
                          text("refreshRuntimeBtn"), text("openLogsBtn")}));
    m_bar->evaluate("surface.screens = Qt.binding(() => Qt.application.screens)");
}

void tst_SystemTab::pictures()
{
    QJsonArray entries;
    for (int i = 0; i < 12; ++i) {
        entries.append(entry(text("warn"), QStringLiteral("A long warning, which is repeated. ").repeated(i + 1),
                             QTime(12, 0, i)));
    }
    QJsonObject warnings = withTotals(0, 12);
    warnings.insert(text("logEntries"), entries);
    warnings.insert(text("cpu"), QJsonObject {{text("bridgePercent"), 97}});
    QJsonObject full = fullReport();
    full.insert(text("cpu"), QJsonObject {{text("bridgePercent"), 64}});
    const QJsonObject power = profiles(text("balanced"), {text("power-saver"), text("balanced"), text("performance")});
    const struct
    {
        const char *name;
        QJsonObject report;
        QJsonObject power;
        bool isReady;
    } scenes[] = {
        {"disconnected", {}, {}, false},
        {"empty", {}, {}, true},
        {"warnings", warnings, {}, true},
        {"full", full, power, true},
    };
    for (const bool isLight : {false, true}) {
        m_bar->property("appearanceStore").value<QObject *>()->setProperty("lightChrome", isLight);
        for (const auto &scene : scenes) {
            setStatus(scene.isReady ? text("idle") : text("disconnected"));
            m_sdk->setProperty("ready", scene.isReady);
            sendReport(scene.report);
            m_sdk->emitSignal("powerProfileReceived", scene.power);
            QVERIFY(m_bar->settle());
            m_bar->screenshot(QStringLiteral("system-%1-%2").arg(text(scene.name), text(isLight ? "light" : "dark")));
            QVERIFY(m_bar->item("settingsPanel")->height() <= m_bar->property("screenHeight").toInt() * 0.78 + 25);
        }
    }
}

REGISTER_TEST(tst_SystemTab, QGuiApplication)

#include "tst_SystemTab.moc"
