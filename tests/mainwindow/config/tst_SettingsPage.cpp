// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigWindow.h"
#include "TestRegistry.h"

#include "OmniBarFixture.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QJsonArray>
#include <QQmlProperty>
#include <QSet>
#include <QTest>

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

//! The page around the tabs: header, messages, saving and reloading. One long file, because the tests share the hostile
//! files and the walks through the page.
class tst_SettingsPage : public QObject
{
    Q_OBJECT

    //! A configuration as a user may have it. Defined at the end, because moc stops at such a text.
    static const QByteArray s_realFile;

private Q_SLOTS:
    void header();
    void savesAndReloads();
    void failedSaveKeepsChanges();
    void changedOnDisk();
    void changedInAnotherWindow();
    void changedOnDiskBeforeAnAgent();
    void invalidFile_data();
    void invalidFile();
    void cleansInvalidNames();
    void unknownPartsStay();
    void hostileFiles();
    void manyAgents();
    void hugeTexts();
    void withoutNativeObjects();
    void keyboard_data();
    void keyboard();
    void tabsByKey();
    void focusStaysWhileTyping();
    void fitsTheWindow_data();
    void fitsTheWindow();

private:
    static QByteArrayList hostileContents();
    static bool hasUnsavedChanges(ConfigWindow &window)
    {
        return window.settings()->property("hasUnsavedChanges").toBool();
    }
    static QString problem(ConfigWindow &window)
    {
        QQuickItem *message = window.item("settingsProblem");
        return message ? message->property("text").toString() : QString();
    }
};

void tst_SettingsPage::header()
{
    ConfigWindow window;
    QVERIFY(window.open());
    QCOMPARE(window.settings()->property("title").toString(), text("Loomra Settings"));
    const QList<QPair<const char *, const char *>> buttons {
        {"settingsBack", "Back"}, {"settingsReload", "Reload"}, {"settingsSave", "Save Configuration"}};
    for (const auto &[name, label] : buttons) {
        QCOMPARE(window.item(name)->property("text").toString(), text(label));
    }
    QCOMPARE(window.item("settingsSave")->isEnabled(), false);
    QCOMPARE(window.item("settingsPath")->property("text").toString(), text("Configuration file: ") + window.path());
    QStringList tabs;
    const QList<QQuickItem *> items = OmniBarFixture::itemsWhere(
        window.item("settingsTabs"), [](QQuickItem *item) { return item->inherits("QQuickTabButton"); });
    for (const QQuickItem *tab : items) {
        tabs.append(tab->property("text").toString());
        QVERIFY(!QQmlProperty::read(tab, text("icon.name")).toString().isEmpty());
    }
    QCOMPARE(tabs.join(QLatin1Char(' ')), text("Agents Tools Permissions MCP Providers Usage"));
    QCOMPARE(window.window()->property("depth").toInt(), 2);
    window.click("settingsBack");
    QTRY_COMPARE(window.window()->property("depth").toInt(), 1);
}

void tst_SettingsPage::savesAndReloads()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"tools":{"read":true}})"));
    QVERIFY(window.open(1));
    window.click("tool-bash");
    QVERIFY(hasUnsavedChanges(window));
    window.click("settingsReload");
    QVERIFY(!hasUnsavedChanges(window));
    QCOMPARE(window.item("tool-bash")->property("checked").toBool(), false);
    window.click("tool-bash");
    window.click("settingsSave");
    QCOMPARE(window.notices(), QStringList(text("Configuration saved successfully 2000")));
    QVERIFY(!hasUnsavedChanges(window));
    QCOMPARE(window.saved(), window.objectOf(R"({"tools":{"read":true,"bash":true}})"));
}

void tst_SettingsPage::failedSaveKeepsChanges()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"tools":{"read":true}})"));
    QVERIFY(window.open(1));
    window.click("tool-bash");
    QVERIFY(QFile::remove(window.path()));
    QVERIFY(QDir().mkpath(window.path())); // can't be written
    window.click("settingsSave"); // the file has changed
    window.click("settingsSave");
    QCOMPARE(window.notices(), QStringList(text("Failed to save configuration 3000")));
    QVERIFY(hasUnsavedChanges(window));
    QCOMPARE(window.item("tool-bash")->property("checked").toBool(), true);
    QCOMPARE(window.takeWarnings().size(), 2);
}

void tst_SettingsPage::changedOnDisk()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"tools":{"read":true}})"));
    QVERIFY(window.open(1));
    QCOMPARE(problem(window), QString());
    window.click("tool-bash");
    const QByteArray other = R"({"tools":{"edit":true}})";
    QVERIFY(window.write(other));
    window.click("settingsSave");
    QVERIFY2(problem(window).startsWith(text("Another program has changed")), qPrintable(problem(window)));
    QCOMPARE(window.content(), other);
    QVERIFY(hasUnsavedChanges(window));
    window.screenshot(text("changed-on-disk"));
    // Either the user takes the other changes ...
    window.click("settingsReload");
    QCOMPARE(problem(window), QString());
    QCOMPARE(window.item("tool-edit")->property("checked").toBool(), true);
    // ... or they insist.
    window.click("tool-bash");
    QVERIFY(window.write(other + ' '));
    window.click("settingsSave");
    QVERIFY(!problem(window).isEmpty());
    window.click("settingsSave");
    QCOMPARE(problem(window), QString());
    QCOMPARE(window.saved(), window.objectOf(R"({"tools":{"edit":true,"bash":true}})"));
}

//! The user learns it when they return, and before they change anything.
void tst_SettingsPage::changedInAnotherWindow()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"tools":{"read":true}})"));
    QVERIFY(window.open(1));
    QQuickWindow editor;
    editor.resize(100, 100);
    editor.show();
    editor.requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(&editor));
    QVERIFY(window.write(R"({"tools":{}})"));
    window.window()->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(window.window()));
    QTRY_VERIFY(!problem(window).isEmpty());
    window.click("settingsReload");
    QCOMPARE(problem(window), QString());
}

void tst_SettingsPage::changedOnDiskBeforeAnAgent()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{"mode":"all"}}})"));
    QVERIFY(window.open());
    const QByteArray other = R"({"agent":{"a":{"mode":"all"}},"theme":"dark"})";
    QVERIFY(window.write(other));
    // Nothing but the button replaces the changes of others, however often the agent is edited.
    for (const char *model : {"m", "n"}) {
        window.edit(window.control("model"), text(model));
        QTRY_VERIFY(!problem(window).isEmpty());
        QCOMPARE(window.content(), other);
    }
    QVERIFY(hasUnsavedChanges(window));
    window.click("settingsSave");
    QCOMPARE(window.saved(), window.objectOf(R"({"agent":{"a":{"mode":"all","model":"n"}}})"));
    // From then on agents are saved at once again.
    window.edit(window.control("model"), text("o"));
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"a":{"mode":"all","model":"o"}}})"));
}

void tst_SettingsPage::invalidFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("cut") << QByteArray(R"({"agent":{"a":{}})");
    QTest::newRow("binary") << QByteArray("\0\1\xff", 3);
    QTest::newRow("empty") << QByteArray(" ");
    QTest::newRow("a list") << QByteArray("[1]");
}

void tst_SettingsPage::invalidFile()
{
    QFETCH(QByteArray, content);
    ConfigWindow window;
    QVERIFY(window.write(content));
    QVERIFY(window.open(1));
    QVERIFY2(problem(window).startsWith(text("The configuration file can't be read")), qPrintable(problem(window)));
    QCOMPARE(window.content(), content);
    window.click("tool-bash");
    QCOMPARE(window.content(), content);
    window.click("settingsSave"); // the user knows that it replaces the file
    QCOMPARE(window.saved(), window.objectOf(R"({"tools":{"bash":true}})"));
    QCOMPARE(problem(window), QString());
    window.takeWarnings();
}

void tst_SettingsPage::cleansInvalidNames()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"theme":1.0,"agent":{"build":{"mode":"all"},"model":"m","prompt":{},"list":[1]}})"));
    QVERIFY(window.open());
    QCOMPARE(window.saved(), window.objectOf(R"({"theme":1.0,"agent":{"build":{"mode":"all"}}})"));
    QVERIFY(!hasUnsavedChanges(window));
    // Without a field among the agents nothing is written.
    const QByteArray fine = R"({"agent":{"build":{},"model":{},"list":[1]}})";
    QVERIFY(window.write(fine));
    window.click("settingsReload");
    QCOMPARE(window.content(), fine);
}

void tst_SettingsPage::unknownPartsStay()
{
    ConfigWindow window;
    QVERIFY(window.write(s_realFile));
    QVERIFY(window.open(1));
    window.click("tool-edit");
    window.click("settingsSave");
    QJsonObject expected = window.objectOf(s_realFile);
    QJsonObject tools = expected.value(text("tools")).toObject();
    tools.insert(text("edit"), true);
    expected.insert(text("tools"), tools);
    QCOMPARE(window.saved(), expected);
    QVERIFY(window.content().indexOf("theme") < window.content().indexOf("agent"));
}

QByteArrayList tst_SettingsPage::hostileContents()
{
    const auto sections = [](const QByteArrayList &names, const QByteArray &value) {
        QByteArrayList members;
        for (const QByteArray &name : names) {
            members.append('"' + name + "\":" + value);
        }
        return QByteArray('{' + members.join(',') + '}');
    };
    QByteArrayList contents;
    for (const QByteArray value :
         {"\"text\"", "5", "null", "true", "[1,{}]", "{\"x\":5}", "{\"x\":[1]}", "{\"x\":{\"y\":{\"z\":[]}}}"}) {
        contents.append(sections({"agent", "tools", "permission", "mcp", "provider", "mode", "$schema"}, value));
    }
    const QByteArray fields = R"({"model":{},"temperature":"hot","top_p":null,"prompt":[],"description":5,"mode":{},
        "steps":1e300,"color":true,"disable":0,"options":"text","type":5,"command":{},"environment":"x","url":[],
        "headers":5,"enabled":"no","timeout":-1,"api":{},"env":{},"whitelist":5,"read":{"x":{}}})";
    for (const QByteArray name : {"x", "__proto__", "constructor", "toString", "hasOwnProperty", "", "<img src=x>&a"}) {
        contents.append(
            sections({"agent", "tools", "permission", "mcp", "provider"}, "{\"" + name + "\":" + fields + '}'));
    }
    contents.append(R"({"__proto__":5,"constructor":{},"toString":[1]})");
    return contents;
}

//! Nothing is lost, and no warning: other values than expected are shown as they are, or not at all.
void tst_SettingsPage::hostileFiles()
{
    ConfigWindow window;
    QVERIFY(window.open());
    const QByteArrayList contents = hostileContents();
    for (const QByteArray &content : contents) {
        QVERIFY(window.write(content));
        window.click("settingsReload");
        for (int tab = 0; tab < 6; ++tab) {
            QVERIFY(window.showTab(tab));
            for (int i = 0; i < 15; ++i) {
                window.key(Qt::Key_Tab);
            }
        }
        QCOMPARE(window.content(), content);
        QVERIFY(window.showTab(1));
        window.click("tool-lsp");
        window.click("settingsSave");
        QJsonObject expected = window.objectOf(content);
        QJsonObject tools = expected.value(text("tools")).toObject();
        tools.insert(text("lsp"), true);
        expected.insert(text("tools"), tools);
        QCOMPARE(window.saved(), expected);
        QCOMPARE(window.takeWarnings(), QStringList());
    }
}

void tst_SettingsPage::manyAgents()
{
    QByteArray agents;
    for (int i = 0; i < 5000; ++i) {
        agents += (i == 0 ? "\"a" : ",\"a") + QByteArray::number(i) + "\":{\"mode\":\"all\"}";
    }
    ConfigWindow window;
    QVERIFY(window.write("{\"agent\":{" + agents + "}}"));
    QVERIFY(window.open());
    // Only as many forms as are near the view.
    QTRY_VERIFY(window.items("card").size() >= 5);
    QVERIFY(window.items("card").size() < 30);
    QQuickItem *pane = window.item("configPane");
    const int before = window.items("card").size();
    pane->setProperty("contentY", pane->property("contentHeight").toReal() - pane->height());
    QTRY_VERIFY(window.items("card").size() > before);
    window.edit(window.control("model"), text("m"));
    QTRY_COMPARE(window.saved().value(text("agent")).toObject().value(text("a0")).toObject(),
                 window.objectOf(R"({"mode":"all","model":"m"})"));
    QCOMPARE(window.saved().value(text("agent")).toObject().size(), 5000);
}

void tst_SettingsPage::hugeTexts()
{
    const QByteArray huge(5000000, 'x');
    const QByteArray content = "{\"agent\":{\"" + huge + "\":{\"model\":\"" + huge
        + "\",\"prompt\":\"y\"}},\"tools\":{\"" + huge + "\":true}}";
    ConfigWindow window;
    QVERIFY(window.write(content));
    QVERIFY(window.open());
    QVERIFY(window.showTab(1));
    QVERIFY(window.item("removeTool"));
    QVERIFY(window.showTab(0));
    QCOMPARE(window.control("model")->property("readOnly").toBool(), true);
    window.edit(window.control("prompt"), text("z"));
    QTRY_VERIFY(window.content().contains("\"prompt\": \"z\""));
    QVERIFY(window.content().size() > 3 * huge.size());
    window.click("jsonEditor");
    QTRY_VERIFY(window.item("agentsJson"));
    QCOMPARE(window.item("agentsJson")->property("readOnly").toBool(), true);
}

void tst_SettingsPage::withoutNativeObjects()
{
    ConfigWindow window;
    window.provide(text("configManager"), nullptr);
    window.provide(text("tokenUsageService"), nullptr);
    QVERIFY(window.open());
    for (int tab = 0; tab < 6; ++tab) {
        QVERIFY(window.showTab(tab));
    }
    QVERIFY(window.showTab(1));
    window.click("tool-bash");
    window.click("settingsSave");
    QCOMPARE(window.notices(), QStringList(text("Failed to save configuration 3000")));
    window.click("settingsReload");
    QVERIFY(!QFile::exists(window.path()));
}

void tst_SettingsPage::keyboard_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("agents") << 0
                            << QStringList {text("Loomra documentation"),
                                            text("Form Editor"),
                                            text("JSON Editor"),
                                            text("Add Agent"),
                                            text("Remove Build Agent"),
                                            text("Build Agent Model:"),
                                            text("Build Agent Temperature:"),
                                            text("Build Agent System Prompt:"),
                                            text("Build Agent Mode:"),
                                            text("Build Agent Disabled:"),
                                            text("Build Agent Options (key-value pairs): budget"),
                                            text("Remove budget"),
                                            text("Add Option"),
                                            text("Review Agent Color (Hex):")};
    QTest::newRow("tools") << 1
                           << QStringList {text("Read"), text("Lsp"), text("Remove my_tool"), text("Add Custom Tool")};
    QTest::newRow("permissions") << 2
                                 << QStringList {text("Read Files"), text("Doom Loop"), text("bash: git *"),
                                                 text("bash: rm *"), text("Add Path Permission")};
    QTest::newRow("mcp") << 3 << QStringList {text("files Type:"),
                                              text("files Command:"),
                                              text("files Environment Variables (JSON):"),
                                              text("search URL:"),
                                              text("search Timeout (ms):"),
                                              text("Remove search"),
                                              text("Add MCP Server")};
    QTest::newRow("providers") << 4
                               << QStringList {text("Remove local"), text("local API Endpoint:"),
                                               text("local Options (JSON):"),
                                               text("local Model Blacklist (comma-separated):"), text("Add Provider")};
    QTest::newRow("usage") << 5 << QStringList {text("Days"), text("Refresh")};
}

//! Tab reaches every control; each has a name and a role and is scrolled into view.
void tst_SettingsPage::keyboard()
{
    QFETCH(int, tab);
    QFETCH(QStringList, names);
    ConfigWindow window;
    QVERIFY(window.write(s_realFile));
    QVERIFY(window.open(tab, {1024, 600}));
    QTRY_VERIFY(window.items("card").size() != 1 || tab == 4); // forms come one after the other
    window.item("settingsBack")->forceActiveFocus(Qt::TabFocusReason);
    QQuickItem *first = window.window()->activeFocusItem();
    QSet<QString> reached;
    const auto owner = [](QQuickItem *item) {
        // The text inside of an editable spin box has the focus.
        QQuickItem *parent = item->parentItem();
        return parent && parent->inherits("QQuickSpinBox") ? parent : item;
    };
    for (int i = 0; i < 200; ++i) {
        window.key(Qt::Key_Tab);
        QQuickItem *focused = window.window()->activeFocusItem();
        QVERIFY(focused);
        if (focused == first) {
            break;
        }
        QQuickItem *control = owner(focused);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(control);
        QVERIFY2(accessible && accessible->role() != QAccessible::NoRole, control->metaObject()->className());
        const QString name = accessible->text(QAccessible::Name);
        QVERIFY2(!name.isEmpty(), qPrintable(text(control->metaObject()->className()) + control->objectName()));
        reached.insert(name);
        const auto isInView = [&] {
            const qreal top = focused->mapToScene({}).y();
            return top >= 0 && top + qMin(focused->height(), 100.0) <= window.window()->height() + 1;
        };
        QVERIFY2(QTest::qWaitFor(isInView, 1000), qPrintable(name));
    }
    names += {text("Reload"), text("Agents"), text("Usage")};
    for (const QString &name : qAsConst(names)) {
        QVERIFY2(reached.contains(name),
                 qPrintable(name + text(" in ") + QStringList(reached.values()).join(text(", "))));
    }
    QCOMPARE(window.content(), s_realFile);
}

void tst_SettingsPage::tabsByKey()
{
    ConfigWindow window;
    QVERIFY(window.open());
    const QList<QQuickItem *> tabs = OmniBarFixture::itemsWhere(
        window.item("settingsTabs"), [](QQuickItem *item) { return item->inherits("QQuickTabButton"); });
    tabs.at(1)->forceActiveFocus(Qt::TabFocusReason);
    window.key(Qt::Key_Space);
    QTRY_VERIFY(window.item("tool-read"));
    QVERIFY(!window.item("addAgent"));
}

//! A change doesn't rebuild the form in which the user works.
void tst_SettingsPage::focusStaysWhileTyping()
{
    ConfigWindow window;
    QVERIFY(window.write(s_realFile));
    QVERIFY(window.open(4));
    window.type(window.control("whitelist"), text("a, b, "));
    QVERIFY(window.control("whitelist")->hasActiveFocus());
    QCOMPARE(window.control("whitelist")->property("text").toString(), text("a, b, "));
    QVERIFY(window.showTab(0));
    window.type(window.control("model"), text("m"));
    window.key(Qt::Key_Return);
    QTRY_VERIFY(window.content().contains("\"model\": \"m\""));
    QVERIFY(window.control("model")->hasActiveFocus());
}

void tst_SettingsPage::fitsTheWindow_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QSize>("size");
    QByteArray longNames = s_realFile;
    const QByteArray longName = QByteArray("a_name_without_spaces_").repeated(12);
    for (const char *name : {"build", "my_tool", "git *", "files", "local\": {", "reasoning"}) {
        const QByteArray key = QByteArray(name).split('"').first();
        longNames.replace('"' + key + "\":", '"' + longName + key + "\":");
    }
    QTest::newRow("real") << s_realFile << QSize(1024, 600);
    QTest::newRow("long names") << longNames << QSize(1024, 600);
    QTest::newRow("narrow") << s_realFile << QSize(640, 480);
}

//! Nothing is cut off at the right.
void tst_SettingsPage::fitsTheWindow()
{
    QFETCH(QByteArray, content);
    QFETCH(QSize, size);
    QVERIFY(!ConfigWindow::objectOf(content).isEmpty());
    ConfigWindow window;
    QVERIFY(window.write(content));
    QVERIFY(window.open(0, size));
    for (int tab = 0; tab < 6; ++tab) {
        QVERIFY(window.showTab(tab));
        window.screenshot(
            text("%1-%2").arg(text(QTest::currentDataTag()).replace(QLatin1Char(' '), QLatin1Char('-'))).arg(tab));
        const auto overflowing = [&] {
            return OmniBarFixture::itemsWhere(window.page(), [&](QQuickItem *item) {
                return item->isVisible() && (item->isFocusScope() || item->activeFocusOnTab())
                    && item->mapToScene({item->width(), 0}).x() > window.window()->width() + 1;
            });
        };
        if (!QTest::qWaitFor([&] { return overflowing().isEmpty(); }, 1000)) {
            QFAIL(qPrintable(text("tab %1: %2").arg(tab).arg(overflowing().first()->objectName())));
        }
    }
}

const QByteArray tst_SettingsPage::s_realFile = R"({
    "$schema": "https://loomra.example/config.schema.json",
    "theme": "dark",
    "agent": {
        "build": {"model": "anthropic/claude-3-opus", "temperature": 0.3, "mode": "primary", "prompt": "You build.",
                  "options": {"reasoning": true, "budget": 2000}},
        "review": {"description": "Reads changes before they are merged", "mode": "subagent", "steps": 20},
        "off": {"disable": true}
    },
    "tools": {"bash": true, "read": true, "my_tool": true},
    "permission": {"edit": "ask", "bash": {"git *": "allow", "rm *": "deny"}, "webfetch": "deny"},
    "mcp": {"files": {"type": "local", "command": ["npx", "-y", "files-server"], "enabled": true},
            "search": {"type": "remote", "url": "https://search.example/mcp", "headers": {"X": "1"}, "enabled": false}},
    "provider": {"local": {"api": "http://localhost:8080/v1", "name": "Local", "npm": "@x/y", "whitelist": ["a", "b"],
                           "models": {"a": {}}}}
})";

REGISTER_TEST(tst_SettingsPage, QGuiApplication)

#include "tst_SettingsPage.moc"
