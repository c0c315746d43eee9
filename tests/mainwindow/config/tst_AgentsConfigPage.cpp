// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigWindow.h"
#include "TestRegistry.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QJsonArray>
#include <QTest>

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

//! The page of the agents: forms that save at once, and the JSON editor. One long file, because the tests share the
//! files that they compare with the disk.
class tst_AgentsConfigPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shows();
    void noAgents();
    void edits_data();
    void edits();
    void untouchedFieldsStay();
    void charactersThatControlsReplaceStay();
    void emptiedAgent();
    void options();
    void removes();
    void modesBecomeAgents();
    void functions();
    void failedSave();
    void adds();
    void addsOnlyWhatDiffers();
    void refusedNames_data();
    void refusedNames();
    void dialogStaysIfSavingFails();
    void brokenFileIsReplacedByTheButtonOnly();
    void optionsOfANewAgent();
    void editor();
    void editorErrors();
    void editorReloads();
    void editorShowsAnAddedAgent();
    void documentation();

public Q_SLOTS:
    void open(const QUrl &url) { m_opened = url; }

private:
    QUrl m_opened;
};

void tst_AgentsConfigPage::shows()
{
    ConfigWindow window;
    QVERIFY(
        window.write(R"({"agent":{"build":{"model":"m","temperature":0.25,"top_p":0.5,"prompt":"p","description":"d",
        "mode":"all","maxSteps":7,"color":"#fff","options":{"x":true}},"review":{},"off":{"disable":true},"text":"x"}})"));
    QVERIFY(window.open());
    QCOMPARE(ConfigWindow::texts(window.items("cardTitle")), (QStringList {text("Build Agent"), text("Review Agent")}));
    const auto shown = [&](const char *key, int card) {
        QQuickItem *control = window.control(key, card);
        const char *property =
            control->property("displayText").isValid() && !control->property("cursorPosition").isValid() ? "displayText"
            : control->property("checked").isValid()                                                     ? "checked"
                                                                                                         : "text";
        return control->property(property).toString();
    };
    const QMap<const char *, QStringList> expected {
        {"model", {text("m"), {}}},
        {"temperature", {text("0.25"), text("1.00")}},
        {"top_p", {text("0.50"), text("1.00")}},
        {"prompt", {text("p"), {}}},
        {"description", {text("d"), {}}},
        {"mode", {text("all"), text("primary")}},
        {"steps", {text("7"), text("50")}},
        {"color", {text("#fff"), {}}},
        {"disable", {text("false"), text("false")}},
    };
    for (auto field = expected.cbegin(); field != expected.cend(); ++field) {
        QCOMPARE(shown(field.key(), 0), field.value().at(0));
        QCOMPARE(shown(field.key(), 1), field.value().at(1));
    }
    QCOMPARE(ConfigWindow::texts(window.items("pairText")), QStringList(text("true")));
    QVERIFY(!window.item("noAgents"));
}

void tst_AgentsConfigPage::noAgents()
{
    ConfigWindow window;
    QVERIFY(window.open());
    QCOMPARE(window.item("noAgents")->property("text").toString(),
             text("No enabled agents. Add an agent to get started."));
    QVERIFY(window.content().isEmpty()); // nothing is written unasked
    window.screenshot(text("agents-none"));
}

void tst_AgentsConfigPage::edits_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("agent");

    QTest::newRow("model") << QByteArray("model") << QByteArray("x/y") << QByteArray(R"({"keep":1.0,"model":"x/y"})");
    QTest::newRow("temperature") << QByteArray("temperature") << QByteArray("0.45")
                                 << QByteArray(R"({"keep":1.0,"temperature":0.45})");
    QTest::newRow("temperature 0") << QByteArray("temperature") << QByteArray("0")
                                   << QByteArray(R"({"keep":1.0,"temperature":0})");
    QTest::newRow("too high") << QByteArray("temperature") << QByteArray("9")
                              << QByteArray(R"({"keep":1.0,"temperature":2})");
    QTest::newRow("top p") << QByteArray("top_p") << QByteArray("0.9") << QByteArray(R"({"keep":1.0,"top_p":0.9})");
    QTest::newRow("prompt") << QByteArray("prompt") << QByteArray("You <b>build</b> & \"test\".")
                            << QByteArray(R"({"keep":1.0,"prompt":"You <b>build</b> & \"test\"."})");
    QTest::newRow("description") << QByteArray("description") << QByteArray("d")
                                 << QByteArray(R"({"keep":1.0,"description":"d"})");
    QTest::newRow("steps") << QByteArray("steps") << QByteArray("12") << QByteArray(R"({"keep":1.0,"steps":12})");
    QTest::newRow("no steps") << QByteArray("steps") << QByteArray("0") << QByteArray(R"({"keep":1.0,"steps":1})");
    QTest::newRow("color") << QByteArray("color") << QByteArray("#FF5733")
                           << QByteArray(R"({"keep":1.0,"color":"#FF5733"})");
}

void tst_AgentsConfigPage::edits()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, agent);

    ConfigWindow window;
    QVERIFY(window.write(R"({"theme":"dark","agent":{"build":{"keep":1.0}}})"));
    QVERIFY(window.open());
    window.edit(window.control(key.constData()), QString::fromUtf8(input));
    const QJsonObject expected {{text("theme"), text("dark")},
                                {text("agent"), QJsonObject {{text("build"), window.objectOf(agent)}}}};
    QTRY_COMPARE(window.saved(), expected);
    QVERIFY(window.content().contains("\"keep\": 1.0"));
    QCOMPARE(window.settings()->property("hasUnsavedChanges").toBool(), false);
    QCOMPARE(window.notices(), QStringList()); // only "Save Configuration" reports a success
}

void tst_AgentsConfigPage::untouchedFieldsStay()
{
    ConfigWindow window;
    const QByteArray content =
        R"({"agent":{"build":{"temperature":7,"steps":"many","mode":"odd","model":["m"],"prompt":{}}}})";
    QVERIFY(window.write(content));
    QVERIFY(window.open());
    for (int i = 0; i < 30; ++i) {
        window.key(Qt::Key_Tab);
    }
    QCOMPARE(window.content(), content);
    window.edit(window.control("color"), text("red"));
    QTRY_COMPARE(
        window.saved().value(text("agent")).toObject().value(text("build")).toObject(),
        window.objectOf(R"({"temperature":7,"steps":"many","mode":"odd","model":["m"],"prompt":{},"color":"red"})"));
}

void tst_AgentsConfigPage::charactersThatControlsReplaceStay()
{
    ConfigWindow window;
    const QByteArray content = R"({"agent":{"build":{"model":"a\nb\u2028c","prompt":"a\r\nb\u00a0c\u2028d\ufdd0",
        "description":"a\r\nb\tc\u00a0","options":{"x":"a\nb\u00a0"}}}})";
    QVERIFY(window.write(content));
    QVERIFY(window.open());
    for (int i = 0; i < 30; ++i) {
        window.key(Qt::Key_Tab);
    }
    QCOMPARE(window.content(), content);
    // Typing and taking it back isn't a change of these characters either.
    window.control("prompt")->forceActiveFocus(Qt::TabFocusReason);
    window.key(Qt::Key_X);
    window.key(Qt::Key_Backspace);
    window.key(Qt::Key_Tab);
    QCOMPARE(window.content(), content);
}

void tst_AgentsConfigPage::emptiedAgent()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"build":{"model":"m"},"plan":{"model":"n","mode":"all"}}})"));
    QVERIFY(window.open());
    window.edit(window.control("model", 1), {});
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"build":{"model":"m"},"plan":{"mode":"all"}}})"));
    window.edit(window.control("model", 0), {});
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"plan":{"mode":"all"}}})"));
    QTRY_COMPARE(ConfigWindow::texts(window.items("cardTitle")), QStringList(text("Plan Agent")));
    window.choose(window.control("mode"), text("subagent"));
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"plan":{"mode":"subagent"}}})"));
    window.click(window.control("disable"));
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"plan":{"disable":true,"mode":"subagent"}}})"));
    QTRY_VERIFY(window.item("noAgents"));
    QVERIFY(window.item("addAgent")->hasActiveFocus()); // the box vanished with its form
}

void tst_AgentsConfigPage::options()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"build":{"mode":"all","options":{"a":1,"deep":{"x":[1]}}}}})"));
    QVERIFY(window.open());
    const auto saved = [&] {
        return window.saved().value(text("agent")).toObject().value(text("build")).toObject().value(text("options"));
    };
    window.edit(window.items("pairText").at(0), text("true"));
    QTRY_COMPARE(saved().toObject(), window.objectOf(R"({"a":true,"deep":{"x":[1]}})"));
    QCOMPARE(window.items("pairText").at(1)->property("readOnly").toBool(), true);

    window.click("addOption");
    QQuickItem *dialog = window.item("optionDialog");
    QVERIFY(dialog);
    QCOMPARE(dialog->z(), 1001.0);
    window.type(window.item("dialogName", dialog), text("__proto__"));
    window.type(window.item("optionValue", dialog), text("2.5"));
    window.click(window.item("dialogAdd", dialog));
    QTRY_COMPARE(saved().toObject(), window.objectOf(R"({"a":true,"deep":{"x":[1]},"__proto__":2.5})"));
    QVERIFY(!window.item("optionDialog"));

    for (int count = 3; count > 0; --count) {
        QTRY_COMPARE(window.items("removePair").size(), count);
        window.click(window.items("removePair").at(0));
        QTRY_VERIFY(window.item("addOption")->hasActiveFocus());
    }
    QTRY_COMPARE(saved(), QJsonValue(QJsonValue::Undefined));
}

void tst_AgentsConfigPage::removes()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{},"b":{"mode":"all"},"off":{"disable":true}}})"));
    QVERIFY(window.open());
    window.click(window.items("removeCard").at(0));
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"b":{"mode":"all"},"off":{"disable":true}}})"));
    QTRY_VERIFY(window.item("addAgent")->hasActiveFocus());
}

void tst_AgentsConfigPage::modesBecomeAgents()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"mode":{"build":{"model":"m"}}})"));
    QVERIFY(window.open());
    QCOMPARE(ConfigWindow::texts(window.items("cardTitle")), QStringList(text("Build Agent")));
    window.edit(window.control("model"), text("n"));
    QTRY_COMPARE(window.saved(),
                 window.objectOf(R"({"mode":{"build":{"model":"m"}},"agent":{"build":{"model":"n"}}})"));
}

void tst_AgentsConfigPage::functions()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{}}})"));
    QVERIFY(window.open());
    QVariant result;
    QVERIFY(QMetaObject::invokeMethod(window.page(), "updateAgentConfig", Q_RETURN_ARG(QVariant, result),
                                      Q_ARG(QVariant, text("a")), Q_ARG(QVariant, text("model")),
                                      Q_ARG(QVariant, text("m"))));
    QCOMPARE(result.toBool(), true);
    QVERIFY(QMetaObject::invokeMethod(window.page(), "updateAgentOption", Q_RETURN_ARG(QVariant, result),
                                      Q_ARG(QVariant, text("a")), Q_ARG(QVariant, text("k")),
                                      Q_ARG(QVariant, text("5"))));
    QCOMPARE(window.saved(), window.objectOf(R"({"agent":{"a":{"model":"m","options":{"k":5}}}})"));
    QVERIFY(QMetaObject::invokeMethod(window.page(), "getEnabledAgents", Q_RETURN_ARG(QVariant, result)));
    QCOMPARE(result.value<QJSValue>().toVariant().toMap().keys(), QStringList(text("a")));
}

void tst_AgentsConfigPage::failedSave()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{"mode":"all"}}})"));
    QVERIFY(window.open());
    QVERIFY(QFile::remove(window.path()));
    QVERIFY(QDir().mkpath(window.path())); // can't be written
    window.takeWarnings();
    window.edit(window.control("model"), text("m"));
    // The file has changed on disk.
    QTRY_COMPARE(window.settings()->property("hasUnsavedChanges").toBool(), true);
    QVERIFY(window.item("settingsProblem"));
    window.click("settingsSave");
    QTRY_COMPARE(window.notices(), QStringList(text("Failed to save configuration 3000")));
    QCOMPARE(window.settings()->property("hasUnsavedChanges").toBool(), true);
    QCOMPARE(window.control("model")->property("text").toString(), text("m"));
    QCOMPARE(window.takeWarnings().size(), 2);
    QVERIFY(QDir(window.path()).removeRecursively());
    window.click("settingsSave");
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"a":{"model":"m","mode":"all"}}})"));
}

void tst_AgentsConfigPage::adds()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{},"text":"x"}})"));
    QVERIFY(window.open());
    window.click("addAgent");
    QQuickItem *dialog = window.item("addAgentDialog");
    QVERIFY(dialog);
    QVERIFY(window.item("dialogName", dialog)->hasActiveFocus());
    window.screenshot(text("agents-new"));
    window.type(window.item("dialogName", dialog), text("review"));
    window.type(window.item("control-model", dialog), text("x/y"));
    window.edit(window.item("control-temperature", dialog), text("0.5"));
    window.edit(window.item("control-top_p", dialog), text("0"));
    window.type(window.item("control-prompt", dialog), text("p"));
    window.type(window.item("control-description", dialog), text("d"));
    window.click(window.item("radio-all", dialog));
    window.edit(window.item("control-steps", dialog), text("7"));
    window.type(window.item("control-color", dialog), text("#fff"));
    window.click(window.item("control-disable", dialog));
    window.click(window.item("dialogAdd", dialog));
    // Entries that are no agents are removed.
    QTRY_COMPARE(window.saved(),
                 window.objectOf(R"({"agent":{"a":{},"review":{"model":"x/y","temperature":0.5,"top_p":0,
        "prompt":"p","description":"d","mode":"all","steps":7,"color":"#fff","disable":true}}})"));
    QVERIFY(!window.item("addAgentDialog"));
}

void tst_AgentsConfigPage::addsOnlyWhatDiffers()
{
    ConfigWindow window;
    QVERIFY(window.open());
    for (const char *name : {"first", "second"}) {
        window.click("addAgent");
        QQuickItem *dialog = window.item("addAgentDialog");
        // What was typed for the first one is forgotten.
        QCOMPARE(window.item("dialogName", dialog)->property("text").toString(), QString());
        QCOMPARE(window.item("control-model", dialog)->property("text").toString(), QString());
        window.type(window.item("control-model", dialog), text("m"));
        window.type(window.item("control-model", dialog), qstrcmp(name, "first") == 0 ? text("m") : QString());
        window.type(window.item("dialogName", dialog), QString::fromUtf8(name));
        window.click(window.item("dialogAdd", dialog));
    }
    QTRY_COMPARE(window.saved().value(text("agent")).toObject(),
                 window.objectOf(R"({"first":{"model":"m"},"second":{}})"));
}

void tst_AgentsConfigPage::refusedNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("whitespace") << text("  ");
    QTest::newRow("known") << text("a");
    QTest::newRow("disabled") << text("off");
    QTest::newRow("a field") << text("model");
}

void tst_AgentsConfigPage::refusedNames()
{
    QFETCH(QString, name);
    ConfigWindow window;
    const QByteArray content = R"({"agent":{"a":{},"off":{"disable":true}}})";
    QVERIFY(window.write(content));
    QVERIFY(window.open());
    window.click("addAgent");
    QQuickItem *dialog = window.item("addAgentDialog");
    window.type(window.item("dialogName", dialog), name);
    window.click(window.item("dialogAdd", dialog));
    QTRY_VERIFY(window.item("dialogName", dialog)->hasActiveFocus());
    QVERIFY(window.item("addAgentDialog"));
    QCOMPARE(window.content(), content);
    QCOMPARE(window.notices(), QStringList());
    QCOMPARE(window.log.count(text("AgentsConfigPage: an agent needs a new name")), 1);
    window.key(Qt::Key_Escape);
    QVERIFY(!window.item("addAgentDialog"));
}

void tst_AgentsConfigPage::dialogStaysIfSavingFails()
{
    ConfigWindow window;
    QVERIFY(window.open());
    QVERIFY(QDir().mkpath(window.path())); // can't be written
    window.click("addAgent");
    window.type(window.item("dialogName"), text("new"));
    window.click("dialogAdd");
    QTRY_COMPARE(window.notices(), QStringList(text("Failed to save configuration 3000")));
    QVERIFY(window.item("addAgentDialog"));
    QCOMPARE(window.takeWarnings().size(), 2);
    // The user can try again.
    QVERIFY(QDir(window.path()).removeRecursively());
    window.click("dialogAdd");
    QTRY_VERIFY(!window.item("addAgentDialog"));
    QCOMPARE(window.saved().value(text("agent")).toObject(), window.objectOf(R"({"new":{}})"));
}

//! The user may have a comma too many in a long file.
void tst_AgentsConfigPage::brokenFileIsReplacedByTheButtonOnly()
{
    ConfigWindow window;
    const QByteArray broken = R"({"agent":{"a":{}},})";
    QVERIFY(window.write(broken));
    QVERIFY(window.open());
    window.takeWarnings();
    window.click("addAgent");
    window.type(window.item("dialogName"), text("new"));
    window.click("dialogAdd");
    QTRY_VERIFY(!window.item("addAgentDialog"));
    QTRY_COMPARE(ConfigWindow::texts(window.items("cardTitle")), QStringList(text("New Agent")));
    window.edit(window.control("model"), text("m"));
    QTRY_COMPARE(QJsonValue(window.manager()->getAgents()), QJsonValue(window.objectOf(R"({"new":{"model":"m"}})")));
    QCOMPARE(window.content(), broken);
    QVERIFY(window.item("settingsProblem"));
    QCOMPARE(window.announcements(), QStringList(window.item("settingsProblem")->property("text").toString()));
    QCOMPARE(window.settings()->property("hasUnsavedChanges").toBool(), true);
    window.click("settingsSave");
    QTRY_COMPARE(window.saved(), window.objectOf(R"({"agent":{"new":{"model":"m"}}})"));
    QVERIFY(!window.item("settingsProblem"));
}

void tst_AgentsConfigPage::optionsOfANewAgent()
{
    ConfigWindow window;
    QVERIFY(window.open());
    window.click("addAgent");
    QQuickItem *dialog = window.item("addAgentDialog");
    window.type(window.item("dialogName", dialog), text("new"));
    window.click(window.item("addOption", dialog));
    QQuickItem *option = window.item("optionDialog");
    QVERIFY(option);
    window.type(window.item("dialogName", option), text("key"));
    window.type(window.item("optionValue", option), text("false"));
    window.key(Qt::Key_Escape); // only the upper one
    QVERIFY(!window.item("optionDialog"));
    QVERIFY(window.item("addAgentDialog"));
    window.click(window.item("addOption", dialog));
    window.type(window.item("dialogName", option), text("key"));
    window.type(window.item("optionValue", option), text("false"));
    window.click(window.item("dialogAdd", option));
    QTRY_COMPARE(window.items("pairText", dialog).size(), 1);
    window.click(window.item("dialogAdd", dialog));
    QTRY_COMPARE(window.saved().value(text("agent")).toObject(),
                 window.objectOf(R"({"new":{"options":{"key":false}}})"));
}

void tst_AgentsConfigPage::editor()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"theme":"dark","agent":{"a":{}},"tools":{"bash":true}})"));
    QVERIFY(window.open());
    window.click("jsonEditor");
    QTRY_VERIFY(window.item("agentsJson"));
    QVERIFY(!window.item("cards"));
    QJsonObject expected = window.objectOf(R"({"agent":{"a":{}},"tools":{"bash":true}})");
    expected.insert(text("$schema"), window.manager()->getLoomraConfigSchema());
    QCOMPARE(window.objectOf(window.item("agentsJson")->property("text").toString().toUtf8()), expected);
    window.screenshot(text("agents-json"));
    window.type(window.item("agentsJson"), text(R"({"agent":{"b":{"model":"m"}},"tools":{}})"));
    QCOMPARE(QJsonValue(window.manager()->getAgents()), QJsonValue(window.objectOf(R"({"b":{"model":"m"}})")));
    // Applied, but not saved. Only the agents are.
    QCOMPARE(window.saved().value(text("agent")).toObject(), window.objectOf(R"({"a":{}})"));
    QCOMPARE(window.settings()->property("hasUnsavedChanges").toBool(), true);
    window.click("settingsSave");
    QTRY_COMPARE(window.saved(),
                 window.objectOf(R"({"theme":"dark","agent":{"b":{"model":"m"}},"tools":{"bash":true}})"));
    QCOMPARE(window.notices(), QStringList(text("Configuration saved successfully 2000")));
    for (int time = 0; time < 2; ++time) {
        window.click("formEditor");
        QCOMPARE(window.item("formEditor")->property("checked").toBool(), true);
        QCOMPARE(window.item("jsonEditor")->property("checked").toBool(), false);
    }
    QTRY_COMPARE(ConfigWindow::texts(window.items("cardTitle")), QStringList(text("B Agent")));
}

void tst_AgentsConfigPage::editorErrors()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{}}})"));
    QVERIFY(window.open());
    window.click("jsonEditor");
    QTRY_VERIFY(window.item("agentsJson"));
    QVERIFY(!window.item("jsonError"));
    window.type(window.item("agentsJson"), text("{\"agent\":{\"b\":{}}"));
    QVERIFY(window.item("jsonError")->property("text").toString().startsWith(text("JSON Error: ")));
    QTRY_COMPARE(window.announcements(), QStringList(window.item("jsonError")->property("text").toString()));
    QCOMPARE(QJsonValue(window.manager()->getAgents()), QJsonValue(window.objectOf(R"({"a":{}})")));
    window.type(window.item("agentsJson"), text("{\"agent\":{\"b\":{}}}"));
    QVERIFY(!window.item("jsonError"));
    QCOMPARE(QJsonValue(window.manager()->getAgents()), QJsonValue(window.objectOf(R"({"b":{}})")));
    window.type(window.item("agentsJson"), text("{"));
    window.click("formEditor");
    QTRY_VERIFY(!window.item("agentsJson"));
}

void tst_AgentsConfigPage::editorReloads()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{}}})"));
    QVERIFY(window.open());
    window.click("jsonEditor");
    QTRY_VERIFY(window.item("agentsJson"));
    const QString before = window.item("agentsJson")->property("text").toString();
    window.type(window.item("agentsJson"), text("nonsense"));
    window.click("reloadFromConfig");
    QCOMPARE(window.item("agentsJson")->property("text").toString(), before);
    QVERIFY(!window.item("jsonError"));
    // Tab leaves the editor.
    window.item("agentsJson")->forceActiveFocus(Qt::TabFocusReason);
    window.key(Qt::Key_Tab);
    QVERIFY(!window.item("agentsJson")->hasActiveFocus());
    QCOMPARE(window.item("agentsJson")->property("text").toString(), before);
}

//! Otherwise the next edit of the older text would remove the agent again.
void tst_AgentsConfigPage::editorShowsAnAddedAgent()
{
    ConfigWindow window;
    QVERIFY(window.write(R"({"agent":{"a":{}}})"));
    QVERIFY(window.open());
    window.click("jsonEditor");
    QTRY_VERIFY(window.item("agentsJson"));
    window.click("addAgent");
    window.type(window.item("dialogName"), text("b"));
    window.click("dialogAdd");
    QTRY_VERIFY(!window.item("addAgentDialog"));
    QQuickItem *editor = window.item("agentsJson");
    QVERIFY(editor->property("text").toString().contains(text("\"b\": {}")));
    editor->forceActiveFocus(Qt::TabFocusReason);
    window.key(Qt::Key_End, Qt::ControlModifier);
    window.key(Qt::Key_Space);
    QCOMPARE(QJsonValue(window.manager()->getAgents()), QJsonValue(window.objectOf(R"({"a":{},"b":{}})")));
}

void tst_AgentsConfigPage::documentation()
{
    QDesktopServices::setUrlHandler(text("https"), this, "open");
    ConfigWindow window;
    QVERIFY(window.open());
    QQuickItem *link = window.item("documentationLink");
    QCOMPARE(link->property("text").toString(), text("Loomra documentation"));
    window.click(link);
    QCOMPARE(m_opened, QUrl(text("https://loomra.example/docs")));
    m_opened.clear();
    link->forceActiveFocus(Qt::TabFocusReason);
    window.key(Qt::Key_Return);
    QCOMPARE(m_opened.isEmpty(), false);
    QDesktopServices::unsetUrlHandler(text("https"));
}

REGISTER_TEST(tst_AgentsConfigPage, QGuiApplication)

#include "tst_AgentsConfigPage.moc"
