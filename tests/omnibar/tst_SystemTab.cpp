// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"
#include "OmniBarFixture.h"
#include "Presses.h"
#include "ScriptedSdk.h"
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

void addWaysToPress()
{
    QTest::addColumn<By>("by");
    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by;
    }
}

} // namespace

//! The tab with the dashboard in the window.
class tst_SystemTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init();
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void title_data();
    void title();
    void pollingFollowsTheTab_data();
    void pollingFollowsTheTab();
    void pollingFollowsTheSheet();
    void leftAndEnteredAtOnce();
    void bridgeGoneAndBack();
    void tickWithNothingNewDrawsNothing();

    void fullReportIsShown();
    void emptyReportIsShown();
    void banner_data();
    void banner();
    void load_data();
    void load();
    void applicationMemory();
    void lights();
    void lastError();
    void service_data();
    void service();

    void reconnect_data() { addWaysToPress(); }
    void reconnect();
    void refreshRuntime_data() { addWaysToPress(); }
    void refreshRuntime();
    void openLogs_data();
    void openLogs();
    void powerProfile_data() { addWaysToPress(); }
    void powerProfile();
    void chipsStay();
    void noPowerProfiles();

    void logByKeys();
    void longLog();
    void hostileTexts();
    void longTextsStayInside();
    void everythingIsReachedByTab();
    void pictures_data();
    void pictures();

private:
    void sendReport(const QJsonObject &report) { m_sdk->emitSignal("systemDashboardReceived", report); }
    void setStatus(const QString &status) { m_bridge->setProperty("status", status); }
    QStringList ticks();

    std::unique_ptr<ScriptedSdk> m_sdk;
    QObject *m_bridge = nullptr;
    SharedWindow<Sheet> m_window {[this](Sheet &bar) {
        m_sdk = std::make_unique<ScriptedSdk>(bar);
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

void tst_SystemTab::title_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<int>("errors");
    QTest::addColumn<int>("warnings");
    QTest::addColumn<QString>("title");

    QTest::newRow("healthy") << text("idle") << 0 << 0 << text("System");
    QTest::newRow("busy") << text("thinking") << 0 << 0 << text("System");
    QTest::newRow("errors") << text("idle") << 1 << 0 << text("System ●");
    QTest::newRow("warnings") << text("idle") << 0 << 1 << text("System ●");
    QTest::newRow("disconnected") << text("disconnected") << 0 << 0 << text("System ●");
    QTest::newRow("error") << text("error") << 0 << 0 << text("System ●");
}

void tst_SystemTab::title()
{
    QFETCH(QString, status);
    QFETCH(int, errors);
    QFETCH(int, warnings);
    QFETCH(QString, title);

    setStatus(status);
    sendReport(withTotals(errors, warnings));
    QCOMPARE(m_bar->tab()->property("label").toString(), title);
    setStatus(text("idle"));
    sendReport({});
    QCOMPARE(m_bar->tab()->property("label").toString(), text("System"));
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
    QTRY_VERIFY(!m_bar->isPolling());
    QVERIFY(!m_bar->item("systemTab"));
    ticks();
    m_bar->click("settingsBtn");
    QVERIFY(m_bar->isPolling());
    QVERIFY(m_bar->item("systemTab"));
    QCOMPARE(ticks(), QStringList({s_tick}));
}

void tst_SystemTab::leftAndEnteredAtOnce()
{
    m_bar->setProperty("settingsPanelOpen", false);
    m_bar->setProperty("settingsPanelOpen", true);
    // The first page is deleted now.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(m_bar->settle());
    QCOMPARE(m_bar->items("systemTab").size(), 1);
    QVERIFY(m_bar->isPolling());
}

void tst_SystemTab::bridgeGoneAndBack()
{
    sendReport(fullReport());
    m_sdk->setReady(false);
    setStatus(text("disconnected"));
    QCOMPARE(m_bar->textOf("healthText"), text("Bridge disconnected"));
    QVERIFY(m_bar->isPolling());
    m_sdk->takeCalls();
    m_bar->tick();
    QCOMPARE(m_sdk->takeCalls(), QStringList());
    setStatus(text("idle"));
    m_sdk->setReady(true);
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
    QCOMPARE(m_bar->figures("heapFigures"), QStringList({text("Session heap"), text("48 / 96 MB"), text("Requests 345")}));
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
    QCOMPARE(headings, QStringList({text("Process & Memory"), text("Feedback"), text("Background Errors & Warnings"),
                                    text("Service")}));
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

void tst_SystemTab::banner_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<int>("errors");
    QTest::addColumn<int>("warnings");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<QString>("dot");

    const QString bad = rgba(0.9, 0.22, 0.21, 0.18);
    const QString warned = rgba(0.98, 0.55, 0, 0.15);
    const QString healthy = rgba(0.26, 0.63, 0.28, 0.1);
    QTest::newRow("healthy") << text("idle") << 0 << 0 << text("Healthy") << healthy << rgb(text("#4ade80"));
    QTest::newRow("errors") << text("idle") << 3 << 0 << text("3 error(s)") << bad << rgb(text("#ef4444"));
    QTest::newRow("both") << text("idle") << 3 << 2 << text("3 error(s)") << bad << rgb(text("#ef4444"));
    QTest::newRow("warnings") << text("idle") << 0 << 2 << text("2 warning(s)") << warned << rgb(text("#FFD700"));
    QTest::newRow("disconnected") << text("disconnected") << 0 << 0 << text("Bridge disconnected") << bad
                                  << rgb(text("#ef4444"));
    QTest::newRow("dead bridge with errors")
        << text("error") << 3 << 2 << text("Bridge disconnected") << bad << rgb(text("#ef4444"));
}

void tst_SystemTab::banner()
{
    QFETCH(QString, status);
    QFETCH(int, errors);
    QFETCH(int, warnings);
    QFETCH(QString, words);
    QFETCH(QString, fill);
    QFETCH(QString, dot);

    setStatus(status);
    sendReport(withTotals(errors, warnings));
    QQuickItem *item = m_bar->item("healthBanner");
    QCOMPARE(m_bar->textOf("healthText"), words);
    QCOMPARE(colourOf(item), fill);
    QCOMPARE(colourOf(m_bar->item("healthDot")), dot);
    QCOMPARE(item->height(), 38.0);
    QCOMPARE(item->property("radius").toInt(), 8);
}

void tst_SystemTab::load_data()
{
    QTest::addColumn<double>("percent");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("color"); // empty for the theme's

    QTest::newRow("low") << 50.0 << text("50%") << QString();
    QTest::newRow("high") << 51.0 << text("51%") << rgb(text("#FFD700"));
    QTest::newRow("still high") << 80.0 << text("80%") << rgb(text("#FFD700"));
    QTest::newRow("full") << 81.0 << text("81%") << rgb(text("#ef4444"));
}

void tst_SystemTab::load()
{
    QFETCH(double, percent);
    QFETCH(QString, words);
    QFETCH(QString, color);

    sendReport({{text("cpu"), QJsonObject {{text("bridgePercent"), percent}}}});
    QQuickItem *value = m_bar->itemIn(m_bar->item("cpuFigures"), text("value"));
    QCOMPARE(value->property("text").toString(), words);
    const QString fallback = m_bar->evaluate("omniTheme.uiTextStrong").value<QColor>().name(QColor::HexArgb);
    QCOMPARE(colourOf(value), color.isEmpty() ? fallback : color);
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
    m_sdk->setReady(false);
    m_sdk->emitSignal("runtimeHealthUpdated", {{text("connected"), true}});
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

void tst_SystemTab::service_data()
{
    QTest::addColumn<QString>("active");
    QTest::addColumn<bool>("ready");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("dot");

    QTest::newRow("unit") << text("active") << true << text("active (dead)") << rgb(text("#4ade80"));
    QTest::newRow("no unit, but an answer")
        << text("inactive") << true << text("running (standalone)") << rgb(text("#4ade80"));
    QTest::newRow("failed, but an answer")
        << text("failed") << true << text("running (standalone)") << rgb(text("#4ade80"));
    QTest::newRow("failed") << text("failed") << false << text("failed") << rgb(text("#ef4444"));
    QTest::newRow("inactive") << text("inactive") << false << text("inactive") << rgb(text("#FFD700"));
    QTest::newRow("no report") << QString() << false << text("unknown") << rgb(text("#FFD700"));
}

void tst_SystemTab::service()
{
    QFETCH(QString, active);
    QFETCH(bool, ready);
    QFETCH(QString, label);
    QFETCH(QString, dot);

    m_sdk->setReady(ready);
    sendReport(withService(active));
    QCOMPARE(m_bar->textOf("serviceLabel"), label);
    QCOMPARE(colourOf(m_bar->item("serviceDot")), dot);
}

void tst_SystemTab::reconnect()
{
    QFETCH(By, by);

    press(*m_bar, m_bar->item("reconnectBtn"), by);
    QCOMPARE(m_sdk->takeCalls(), QStringList({text("reconnectBridge()")}));
}

void tst_SystemTab::refreshRuntime()
{
    QFETCH(By, by);

    press(*m_bar, m_bar->item("refreshRuntimeBtn"), by);
    const QStringList calls = m_sdk->takeCalls();
    QVERIFY(calls.contains(s_power));
    QVERIFY(calls.contains(text("reminderList()")));
}

void tst_SystemTab::openLogs_data()
{
    QTest::addColumn<By>("by");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("opened");

    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by << text("/var/log/tovi") << text("/var/log/tovi");
    }
    QTest::newRow("odd name") << By::Mouse << text("/home/me/my #1 logs %20?") << text("/home/me/my #1 logs %20?");
    QTest::newRow("no directory") << By::Mouse << QString() << text("/tmp/loomra-bridge/logs");
}

void tst_SystemTab::openLogs()
{
    QFETCH(By, by);
    QFETCH(QString, directory);
    QFETCH(QString, opened);

    UrlHandler handler;
    m_sdk->setEventLogDir(directory);
    press(*m_bar, m_bar->item("openLogsBtn"), by);
    QCOMPARE(handler.urls.size(), 1);
    QCOMPARE(handler.urls.first().toLocalFile(), opened);
    QVERIFY(handler.urls.first().isLocalFile());
    m_sdk->setEventLogDir(QString());
}

void tst_SystemTab::powerProfile()
{
    QFETCH(By, by);

    m_sdk->emitSignal("powerProfileReceived", profiles(text("balanced"), {text("power-saver"), text("balanced")}));
    QVERIFY(m_bar->settle());
    const QList<QQuickItem *> chips = m_bar->items("powerChip");
    QCOMPARE(chips.size(), 2);
    QVERIFY(QAccessible::queryAccessibleInterface(chips.at(1))->state().checked);
    QVERIFY(!QAccessible::queryAccessibleInterface(chips.at(0))->state().checked);
    const auto prompts = [this] { return m_bridge->property("calls").toStringList().filter(text("sendIntent(")); };
    press(*m_bar, chips.at(1), by);
    QCOMPARE(prompts(), QStringList());
    press(*m_bar, chips.at(0), by);
    QCOMPARE(prompts(), QStringList({text("sendIntent(switch to power-saver power profile)")}));
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
    QVERIFY(tipsOf(*m_bar).first().size() >= 1000);
}

void tst_SystemTab::longTextsStayInside()
{
    const double huge = 1e300;
    sendReport({{text("memory"),
                 QJsonObject {{text("sessionHeapMb"), huge}, {text("sessionHeapTotalMb"), huge}, {text("bridgeRssMb"), huge}}},
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
        QVERIFY2(!item->property("text").toString().contains(text("NaN")), qPrintable(item->property("text").toString()));
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

void tst_SystemTab::pictures_data()
{
    QTest::addColumn<bool>("light");
    QTest::addColumn<QString>("data");

    for (const bool isLight : {false, true}) {
        for (const char *data : {"empty", "full", "warnings", "disconnected"}) {
            QTest::addRow("%s-%s", data, isLight ? "light" : "dark") << isLight << text(data);
        }
    }
}

void tst_SystemTab::pictures()
{
    QFETCH(bool, light);
    QFETCH(QString, data);

    m_bar->evaluate(light ? "appearanceStore.lightChrome = true" : "appearanceStore.lightChrome = false");
    if (data == text("full")) {
        QJsonObject report = fullReport();
        report.insert(text("cpu"), QJsonObject {{text("bridgePercent"), 64}});
        sendReport(report);
        m_sdk->emitSignal("powerProfileReceived",
                          profiles(text("balanced"), {text("power-saver"), text("balanced"), text("performance")}));
        m_sdk->emitSignal("runtimeHealthUpdated", {{text("connected"), true}});
    } else if (data == text("warnings")) {
        QJsonArray entries;
        for (int i = 0; i < 12; ++i) {
            entries.append(entry(text("warn"), QStringLiteral("A long warning, which is repeated. ").repeated(i + 1),
                                 QTime(12, 0, i)));
        }
        QJsonObject report = withTotals(0, 12);
        report.insert(text("logEntries"), entries);
        report.insert(text("cpu"), QJsonObject {{text("bridgePercent"), 97}});
        sendReport(report);
    } else {
        sendReport({});
        if (data == text("disconnected")) {
            m_sdk->setReady(false);
            setStatus(text("disconnected"));
        }
    }
    QVERIFY(m_bar->settle());
    m_bar->screenshot(QStringLiteral("system-") + QString::fromUtf8(QTest::currentDataTag()));
    QVERIFY(m_bar->item("settingsPanel")->height() <= m_bar->property("screenHeight").toInt() * 0.78 + 24);
}

REGISTER_TEST(tst_SystemTab, QGuiApplication)

#include "tst_SystemTab.moc"
