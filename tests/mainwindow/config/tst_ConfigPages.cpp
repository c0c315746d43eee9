// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigWindow.h"
#include "Files.h"
#include "TestRegistry.h"
#include "TokenUsageService.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QJsonArray>
#include <QStandardPaths>
#include <QTest>

namespace
{

enum Tab
{
    Tools = 1,
    Permissions,
    Mcp,
    Providers,
    Usage
};

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

//! A service whose answers are known.
class ScriptedUsage : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString storagePath READ storagePath CONSTANT)

public:
    QString storagePath() const { return text("/data/<b>x</b>"); }
    Q_INVOKABLE void refresh() { calls.append(text("refresh")); }
    Q_INVOKABLE QVariantList dailyUsage(int days)
    {
        calls.append(text("dailyUsage %1").arg(days));
        const auto day = [](const char *date, qlonglong input) {
            return QVariantMap {{text("date"), text(date)}, {text("messages"), 2},        {text("input"), input},
                                {text("output"), 10},       {text("reasoning"), 0},       {text("cacheRead"), 5},
                                {text("cacheWrite"), 1500}, {text("total"), input + 1515}};
        };
        return {day("2026-11-22", 998485), day("2026-11-21", 498485)};
    }

    QStringList calls;
};

//! The pages whose changes are saved by the button: what they show, and the file before and after.
class tst_ConfigPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tools();
    void customTools();
    void permissions();
    void paths();
    void servers();
    void localServer();
    void remoteServer();
    void invalidJsonKeepsTheLastValue();
    void newServers();
    void providers();
    void newProviders();
    void emptyNamesAreRefused_data();
    void emptyNamesAreRefused();
    void dialogs_data();
    void dialogs();
    void usage();
    void realUsage();

private:
    //! Saves with the button.
    static void save(ConfigWindow &window)
    {
        window.click("settingsSave");
        QTRY_COMPARE(window.notices().value(window.notices().size() - 1),
                     text("Configuration saved successfully 2000"));
    }
};

void tst_ConfigPages::tools()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"theme":1.0,"tools":{"read":true,"bash":false,"mine":"x"}})"));
    QVERIFY(window.open(Tools));
    QCOMPARE(window.item("tool-read")->property("checked").toBool(), true);
    QCOMPARE(window.item("tool-bash")->property("checked").toBool(), false);
    QCOMPARE(window.item("tool-external_directory")->property("text").toString(), text("External directory"));
    window.click("tool-read");
    window.click("tool-edit");
    QCOMPARE(window.settings()->property("hasUnsavedChanges").toBool(), true);
    QVERIFY(!window.content().contains("edit"));
    save(window);
    QCOMPARE(window.saved(), window.objectOf(R"({"theme":1.0,"tools":{"bash":false,"edit":true,"mine":"x"}})"));
    QVERIFY(window.content().contains("\"theme\": 1.0"));
}

void tst_ConfigPages::customTools()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"tools":{"read":true,"a & <b>b</b>":true,"__proto__":true}})"));
    QVERIFY(window.open(Tools));
    QCOMPARE(window.items("removeTool").size(), 2);
    QCOMPARE(window.items("removeTool").at(0)->property("text").toString(), text("Remove"));
    window.click("addTool");
    QQuickItem *dialog = window.item("addToolDialog");
    QVERIFY(dialog);
    QCOMPARE(window.item("dialogName", dialog)->property("placeholderText").toString(), text("Enter tool name"));
    window.type(window.item("dialogName", dialog), text("toString"));
    window.screenshot(text("tools-add"));
    window.click(window.item("dialogAdd", dialog));
    QVERIFY(!window.item("addToolDialog"));
    QTRY_COMPARE(window.items("removeTool").size(), 3);
    window.click(window.items("removeTool").at(0));
    QTRY_COMPARE(window.items("removeTool").size(), 2);
    QVERIFY(window.item("addTool")->hasActiveFocus());
    save(window);
    QCOMPARE(window.saved(), window.objectOf(R"({"tools":{"read":true,"__proto__":true,"toString":true}})"));
}

void tst_ConfigPages::permissions()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"permission":{"edit":"deny","webfetch":"odd","custom":"allow","doom_loop":"allow",
        "task":null,"lsp":[1]}})"));
    QVERIFY(window.open(Permissions));
    const auto shown = [&](const char *key) { return window.control(key)->property("displayText").toString(); };
    QCOMPARE(shown("read"), text("ask"));
    QCOMPARE(shown("edit"), text("deny"));
    QCOMPARE(shown("webfetch"), QString());
    QCOMPARE(shown("doom_loop"), text("allow"));
    // Values of the wrong type can be replaced.
    QCOMPARE(window.control("lsp")->isEnabled(), true);
    window.choose(window.control("task"), text("deny"));
    window.choose(window.control("read"), text("allow"));
    window.choose(window.control("edit"), text("ask"));
    save(window);
    QCOMPARE(window.saved(),
             window.objectOf(R"({"permission":{"read":"allow","webfetch":"odd","custom":"allow","doom_loop":"allow",
        "task":"deny","lsp":[1]}})"));
}

void tst_ConfigPages::paths()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"permission":{"bash":{"git *":"allow","rm *":"deny"},"edit":"deny"}})"));
    QVERIFY(window.open(Permissions));
    QCOMPARE(window.control("bash")->isEnabled(), false);
    QCOMPARE(window.items("pathPermission").size(), 2);
    window.choose(window.items("pathPermission").at(0), text("deny"));
    window.choose(window.items("pathPermission").at(1), text("ask"));
    QTRY_COMPARE(window.items("pathPermission").size(), 1);
    QVERIFY(window.item("addPath")->hasActiveFocus());
    window.click("addPath");
    QQuickItem *dialog = window.item("addPathDialog");
    QVERIFY(dialog);
    window.screenshot(text("permissions-add"));
    window.type(window.item("dialogName", dialog), text("src/a"));
    window.choose(window.item("pathAction", dialog), text("edit"));
    window.choose(window.item("newPermission", dialog), text("allow"));
    window.click(window.item("dialogAdd", dialog));
    save(window);
    QCOMPARE(window.saved(),
             window.objectOf(R"({"permission":{"bash":{"git *":"deny"},"edit":{"*":"deny","src/a":"allow"}}})"));
    for (int count = 3; count > 0; --count) {
        QTRY_COMPARE(window.items("pathPermission").size(), count);
        window.choose(window.items("pathPermission").at(0), text("ask"));
    }
    save(window);
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"permission":{}})"));
}

void tst_ConfigPages::servers()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"mcp":{"files":{"type":"local","command":["npx","-y","s"],"environment":{"A":"1"},"x":1},
        "web":{"type":"remote","url":"u","headers":{"H":"2"},"enabled":false,"timeout":7000},"text":"x"}})"));
    QVERIFY(window.open(Mcp));
    QCOMPARE(ConfigWindow::texts(window.items("cardTitle")), (QStringList {text("files"), text("web")}));
    QCOMPARE(window.control("command", 0)->property("text").toString(), text("npx -y s"));
    QCOMPARE(window.control("environment", 0)->property("text").toString(), text("{\n  \"A\": \"1\"\n}"));
    QVERIFY(!window.control("url", 0));
    QCOMPARE(window.control("enabled", 0)->property("checked").toBool(), true);
    QCOMPARE(window.control("timeout", 0)->property("value").toInt(), 5000);
    QCOMPARE(window.control("url", 1)->property("text").toString(), text("u"));
    QVERIFY(!window.control("command", 1));
    QCOMPARE(window.control("enabled", 1)->property("checked").toBool(), false);
    QCOMPARE(window.control("timeout", 1)->property("value").toInt(), 7000);
    window.click(window.items("removeCard").at(0));
    QTRY_VERIFY(window.item("addServer")->hasActiveFocus());
    save(window);
    QCOMPARE(window.saved(), window.objectOf(R"({"mcp":{"web":{"type":"remote","url":"u","headers":{"H":"2"},
        "enabled":false,"timeout":7000},"text":"x"}})"));
}

void tst_ConfigPages::localServer()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"mcp":{"files":{"x":1}}})"));
    QVERIFY(window.open(Mcp));
    window.type(window.control("command"), text(" npx  -y server "));
    window.type(window.control("environment"), text("{\"A\":\"1\"}"));
    window.click(window.control("enabled"));
    window.control("timeout")->forceActiveFocus(Qt::TabFocusReason);
    window.key(Qt::Key_Up);
    save(window);
    QCOMPARE(window.saved(), window.objectOf(R"({"mcp":{"files":{"x":1,"command":["npx","-y","server"],
        "environment":{"A":"1"},"enabled":false,"timeout":6000}}})"));
    window.click(window.control("enabled"));
    window.type(window.control("command"), {});
    window.type(window.control("environment"), {});
    save(window);
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"mcp":{"files":{"x":1,"enabled":true,"timeout":6000}}})"));
}

void tst_ConfigPages::remoteServer()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"mcp":{"web":{"type":"local","command":["c"]}}})"));
    QVERIFY(window.open(Mcp));
    window.choose(window.control("type"), text("remote"));
    QVERIFY(window.control("type")->hasActiveFocus()); // the form is the same
    window.type(window.control("url"), text("u"));
    window.type(window.control("headers"), text("{\"H\":2}"));
    save(window);
    QCOMPARE(window.saved(),
             window.objectOf(R"({"mcp":{"web":{"type":"remote","command":["c"],"url":"u","headers":{"H":2}}}})"));
}

void tst_ConfigPages::invalidJsonKeepsTheLastValue()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"mcp":{"files":{"environment":{"A":"1"}}}})"));
    QVERIFY(window.open(Mcp));
    QVERIFY(!window.item("invalidText"));
    window.type(window.control("environment"), text("{\"A\":\"2\"}"));
    QVERIFY(!window.item("invalidText"));
    window.key(Qt::Key_Backspace);
    QVERIFY(window.item("invalidText"));
    QTRY_COMPARE(window.announcements(), QStringList(window.item("invalidText")->property("text").toString()));
    window.key(Qt::Key_Tab);
    // The text stays for the user to mend.
    QCOMPARE(window.control("environment")->property("text").toString(), text("{\"A\":\"2\""));
    save(window);
    QCOMPARE(window.saved(), window.objectOf(R"({"mcp":{"files":{"environment":{"A":"2"}}}})"));
    window.click("settingsReload");
    QTRY_COMPARE(window.control("environment")->property("text").toString(), text("{\n  \"A\": \"2\"\n}"));
    QVERIFY(!window.item("invalidText"));
}

void tst_ConfigPages::newServers()
{
    ConfigWindow window;
    QVERIFY(window.open(Mcp));
    for (const char *type : {"local", "remote"}) {
        window.click("addServer");
        QQuickItem *dialog = window.item("addServerDialog");
        window.type(window.item("dialogName", dialog), QString::fromUtf8(type));
        window.choose(window.item("newType", dialog), QString::fromUtf8(type));
        window.click(window.item("dialogAdd", dialog));
    }
    save(window);
    QCOMPARE(window.saved().value(text("mcp")).toObject(),
             window.objectOf(R"({"local":{"type":"local","enabled":true},"remote":{"type":"remote","enabled":true}})"));
}

void tst_ConfigPages::providers()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"provider":{"p":{"models":{"m":{}},"api":"a","name":"n","id":"i","npm":"x",
        "env":["A","B"],"options":{"k":1},"whitelist":["w"],"blacklist":["v"]}}})"));
    QVERIFY(window.open(Providers));
    const QList<QPair<const char *, const char *>> shown {{"api", "a"},      {"name", "n"},   {"id", "i"},
                                                          {"npm", "x"},      {"env", "A, B"}, {"whitelist", "w"},
                                                          {"blacklist", "v"}};
    for (const auto &[key, value] : shown) {
        QCOMPARE(window.control(key)->property("text").toString(), text(value));
    }
    window.type(window.control("api"), text("b"));
    window.type(window.control("name"), {});
    window.type(window.control("env"), text("C , D,,"));
    window.type(window.control("options"), text("{\"k\":2}"));
    window.type(window.control("whitelist"), text(" "));
    save(window);
    QCOMPARE(window.saved(), window.objectOf(R"({"provider":{"p":{"models":{"m":{}},"api":"b","id":"i","npm":"x",
        "env":["C","D"],"options":{"k":2},"blacklist":["v"]}}})"));
    window.click("removeCard");
    QTRY_VERIFY(window.item("addProvider")->hasActiveFocus());
    save(window);
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"provider":{}})"));
}

void tst_ConfigPages::newProviders()
{
    ConfigWindow window;
    QVERIFY(window.open(Providers));
    window.click("addProvider");
    window.type(window.item("dialogName"), text("constructor"));
    window.key(Qt::Key_Return);
    QVERIFY(!window.item("addProviderDialog"));
    QTRY_COMPARE(ConfigWindow::texts(window.items("cardTitle")), QStringList(text("constructor")));
    window.type(window.control("api"), text("a"));
    save(window);
    QCOMPARE(window.saved().value(text("provider")).toObject(), window.objectOf(R"({"constructor":{"api":"a"}})"));
    // Intentional: no dialog but that for agents checks whether the name is new.
    window.click("addProvider");
    window.type(window.item("dialogName"), text("constructor"));
    window.key(Qt::Key_Return);
    save(window);
    QTRY_COMPARE(window.saved().value(text("provider")).toObject(), window.objectOf(R"({"constructor":{}})"));
}

void tst_ConfigPages::emptyNamesAreRefused_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QByteArray>("button");
    QTest::newRow("tool") << int(Tools) << QByteArray("addTool");
    QTest::newRow("path") << int(Permissions) << QByteArray("addPath");
    QTest::newRow("server") << int(Mcp) << QByteArray("addServer");
    QTest::newRow("provider") << int(Providers) << QByteArray("addProvider");
}

void tst_ConfigPages::emptyNamesAreRefused()
{
    QFETCH(int, tab);
    QFETCH(QByteArray, button);
    ConfigWindow window;
    QVERIFY(window.open(tab));
    window.click(button.constData());
    window.type(window.item("dialogName"), text(" "));
    window.click("dialogAdd");
    QTRY_VERIFY(window.item("dialogName")->hasActiveFocus());
    QCOMPARE(window.settings()->property("hasUnsavedChanges").toBool(), false);
    window.key(Qt::Key_Escape);
    QVERIFY(!window.item("dialogName"));
}

void tst_ConfigPages::dialogs_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<double>("share");
    QTest::newRow("agent") << 0 << QByteArray("addAgent") << text("Add New Agent") << 600 << 0.9;
    QTest::newRow("tool") << int(Tools) << QByteArray("addTool") << text("Add Custom Tool") << 400 << 0.8;
    QTest::newRow("path") << int(Permissions) << QByteArray("addPath") << text("Add Path Permission") << 450 << 0.8;
    QTest::newRow("server") << int(Mcp) << QByteArray("addServer") << text("Add MCP Server") << 400 << 0.8;
    QTest::newRow("provider") << int(Providers) << QByteArray("addProvider") << text("Add Provider") << 400 << 0.8;
    QTest::newRow("option") << 0 << QByteArray("addOption") << text("Add Option") << 500 << 0.8;
}

void tst_ConfigPages::dialogs()
{
    QFETCH(int, tab);
    QFETCH(QByteArray, button);
    QFETCH(int, maximum);
    QFETCH(double, share);
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{}}})"));
    QVERIFY(window.open(tab, {1280, 900}));
    window.click(button.constData());
    QTEST(window.item("dialogTitle")->property("text").toString(), "title");
    QQuickItem *shade = window.item("dialogShade");
    QCOMPARE(shade->size(), window.page()->size());
    QCOMPARE(shade->property("color").value<QColor>(), QColor::fromRgbF(0, 0, 0, 0.5));
    QCOMPARE(window.item("dialogBox")->width(), double(maximum));
    QVERIFY(window.item("dialogBox")->height() <= qMin(700.0, 0.9 * window.page()->height()));
    window.window()->resize(420, 900);
    QTRY_COMPARE(qRound(window.item("dialogBox")->width()),
                 qRound(qMin(double(maximum), share * window.page()->width())));
    // A click outside closes.
    QTest::mouseClick(window.window(), Qt::LeftButton, {}, shade->mapToScene({3, 3}).toPoint());
    QVERIFY(!window.item("dialogBox"));
}

void tst_ConfigPages::usage()
{
    ScriptedUsage service;
    ConfigWindow window;
    window.provide(text("tokenUsageService"), &service);
    QVERIFY(window.open());
    QCOMPARE(service.calls, QStringList()); // nothing is counted before the tab is opened
    QVERIFY(window.showTab(Usage));
    QCOMPARE(service.calls, (QStringList {text("refresh"), text("dailyUsage 30")}));
    QCOMPARE(window.item("usageNote")->property("text").toString(),
             text("Aggregated from Loomra session messages at /data/<b>x</b>"));
    QTRY_COMPARE(window.items("usageRow").size(), 2);
    QCOMPARE(window.item("usageHeader")->property("cells").toStringList().join(QLatin1Char('|')),
             text("Date|Messages|Input|Output|Reasoning|Cache R/W|Total"));
    QCOMPARE(window.item("usageRow")->property("cells").toStringList().join(QLatin1Char('|')),
             text("2026-11-22|2|998.5k|10|0|5 / 1.5k|1.00M"));
    const QList<QQuickItem *> bars = window.items("usageBar");
    QTRY_VERIFY(bars.at(1)->width() > 50);
    QCOMPARE(bars.at(2)->width(), bars.at(1)->width() / 2);
    QCOMPARE(window.item("usageTotals")->property("text").toString(), text("Totals (last 30 days): 1.50M tokens"));
    window.screenshot(text("usage"));
    service.calls.clear();
    window.choose(window.item("usageDays"), text("90 days"));
    QCOMPARE(service.calls.mid(service.calls.size() - 2), (QStringList {text("refresh"), text("dailyUsage 90")}));
    QVERIFY(window.item("usageTotals")->property("text").toString().startsWith(text("Totals (last 90 days):")));
    service.calls.clear();
    window.click("refreshUsage");
    QCOMPARE(service.calls, (QStringList {text("refresh"), text("dailyUsage 90")}));
}

void tst_ConfigPages::realUsage()
{
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + text("/loomra/storage/message/session/");
    const QString now = QString::number(QDateTime::currentMSecsSinceEpoch());
    const auto message = [&](int number) {
        return text(R"({"role":"assistant","time":{"completed":%1},"tokens":{"input":%2}})")
            .arg(now)
            .arg(number)
            .toUtf8();
    };
    QVERIFY(writeFile(directory + text("msg_1.json"), message(1000)));
    TokenUsageService service;
    ConfigWindow window;
    window.provide(text("tokenUsageService"), &service);
    QVERIFY(window.open(Usage));
    QCOMPARE(window.item("usageTotals")->property("text").toString(), text("Totals (last 30 days): 1.0k tokens"));
    QTRY_COMPARE(window.items("usageRow").size(), 30);
    // Refreshing counts again at once.
    QVERIFY(writeFile(directory + text("msg_2.json"), message(500)));
    window.click("refreshUsage");
    QCOMPARE(window.item("usageTotals")->property("text").toString(), text("Totals (last 30 days): 1.5k tokens"));
    QVERIFY(QDir(directory).removeRecursively());
}

REGISTER_TEST(tst_ConfigPages, QGuiApplication)

#include "tst_ConfigPages.moc"
