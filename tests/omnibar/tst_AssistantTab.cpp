// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AssistantWindow.h"
#include "Looks.h"
#include "Presses.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QFont>
#include <QGuiApplication>
#include <QTest>

namespace
{

constexpr int s_manySteps = 60;

//! Texts of the tab, in their order.
const QStringList s_tools = {QStringLiteral("Enable desktop tools"),
                             QStringLiteral("Actions like move/close window, change settings are enabled.")};
const QStringList s_templates = {text("Focus — Development"),
                                 text("Editor, terminal, and docs for focused development."),
                                 text("Prepare"),
                                 text("Meeting"),
                                 text("Video or chat with notes for meetings."),
                                 text("Prepare"),
                                 text("Research"),
                                 text("Browser and notes for reading and capture."),
                                 text("Prepare")};
const QString s_heading = QStringLiteral("Workspace templates");
const QString s_available = QStringLiteral("Pre-made desktop setups. Enable a template, then ask Tovi to prepare it. "
                                           "Desktop actions must be on.");
const QString s_preview = QStringLiteral("Preview only until the bridge runs with workspace templates enabled "
                                         "(LOOMRA_WORKSPACE_INTEL=1).");
const QString s_more = QStringLiteral("Advanced options");
const QString s_less = QStringLiteral("Hide advanced");
const QString s_learning = QStringLiteral("Pattern learning (R&D)");
const QString s_noLearning = QStringLiteral("Not available. Start the app with LOOMRA_WORKSPACE_INTEL=1.");
const QStringList s_observation = {QStringLiteral("Observe activity"),
                                   QStringLiteral("Open settings again to load dwell summary.")};
const QStringList s_runtime = {QStringLiteral("AI runtime"), QStringLiteral("AI runtime on"),
                               QStringLiteral("Execution gating"), QStringLiteral("Require approval")};
const QStringList s_reminders = {QStringLiteral("Check workspace suggestion (notify)"),
                                 QStringLiteral("Reset dismissed prompts"), QStringLiteral("Periodic reminder"),
                                 QStringLiteral("min")};

//! The ways in which the parts of this tab could differ. The controls themselves have tests of their own.
void addWaysToPress()
{
    QTest::addColumn<By>("by");
    QTest::newRow("click") << By::Mouse;
    QTest::newRow("keys") << By::Space;
}

//! A text that is markup, has several lines and reverses the text after it.
QString hostileText()
{
    return text("<img src='file:///nowhere/x.png'><b>R&D</b> %1 {name}\n\u202ereversed ") + text("W").repeated(5000);
}

} // namespace

//! The tab for desktop tools, workspace templates and the advanced options. One long file, because each control of the
//! tab has its test here, with the same window.
class tst_AssistantTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void words_data();
    void words();
    void entering();
    void tools_data() { addWaysToPress(); }
    void tools();
    void templateSwitch_data() { addWaysToPress(); }
    void templateSwitch();
    void templatesWithoutTools();
    void templatesWithoutWorkspaces();
    void prepare_data() { addWaysToPress(); }
    void prepare();
    void prepareIsEnabled();
    void bridgeOverridesThePreference();
    void brokenRules();
    void rowsKeepTheFocus();
    void advancedOptions_data() { addWaysToPress(); }
    void advancedOptions();
    void advancedByDefault_data();
    void advancedByDefault();
    void observation_data() { addWaysToPress(); }
    void observation();
    void runtime_data() { addWaysToPress(); }
    void runtime();
    void gatingByKeys();
    void gatingByMouse();
    void controlsShowTheBridgesState();
    void check_data() { addWaysToPress(); }
    void check();
    void reset_data() { addWaysToPress(); }
    void reset();
    void reminder_data() { addWaysToPress(); }
    void reminder();
    void reminderMinutes();
    void reminderMinutesByMouse();
    void refreshWhileOpen_data();
    void refreshWhileOpen();
    void lineBelowTheBar();
    void review();
    void everythingByTab();
    void hostileTexts_data();
    void hostileTexts();
    void looks_data();
    void looks();

private:
    SharedWindow<AssistantWindow> m_window;
};

void tst_AssistantTab::words_data()
{
    QTest::addColumn<bool>("intel");
    QTest::addColumn<bool>("runtime");
    QTest::addColumn<bool>("advanced");
    QTest::addColumn<QStringList>("words");

    const QStringList top = s_tools + QStringList {s_heading, s_available} + s_templates;
    const QStringList preview = s_tools + QStringList {s_heading, s_preview} + s_templates;
    QTest::newRow("closed") << true << true << false << top + QStringList {s_more};
    QTest::newRow("closed, nothing available") << false << false << false << preview + QStringList {s_more};
    QTest::newRow("all") << true << true << true
                         << top + QStringList {s_less, s_learning} + s_observation + s_runtime + s_reminders;
    QTest::newRow("no workspaces") << false << true << true
                                   << preview + QStringList {s_less, s_learning, s_noLearning} + s_runtime;
    QTest::newRow("no runtime") << true << false << true << top + QStringList {s_less, s_learning} + s_observation;
    QTest::newRow("nothing available") << false << false << true
                                       << preview + QStringList {s_less, s_learning, s_noLearning};
}

void tst_AssistantTab::words()
{
    QFETCH(bool, intel);
    QFETCH(bool, runtime);
    QFETCH(bool, advanced);
    QFETCH(QStringList, words);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sdk().setProperty("workspaceIntelAvailable", intel);
    bar.sdk().setProperty("aiRuntimeAvailable", runtime);
    QVERIFY(bar.openTab(advanced));
    QStringList found = AssistantWindow::textsIn(bar.item("assistantTab"));
    // The signs of the combo box and the spin box, and the number in it.
    for (const char *sign : {"▾", "−", "+"}) {
        found.removeAll(text(sign));
    }
    QCOMPARE(found, words);
}

void tst_AssistantTab::entering()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(text("Look")));
    bar.sdk().takeCalls();
    QVERIFY(bar.openTab(text("Assistant")));
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("refreshPowerProfile()")));
    // What is drawn comes from the controllers, and nothing is asked for again.
    QVERIFY(bar.openTab(text("Look")));
    QVERIFY(!bar.item("assistantTab"));
    QCOMPARE(bar.sdk().takeCalls(), QStringList());
    // A request without a bridge would only fail, and the error would be taken for another request's.
    bar.evaluate(text("sdk.ready = false"));
    bar.sdk().takeCalls();
    QVERIFY(bar.openTab(text("Assistant")));
    QCOMPARE(bar.sdk().takeCalls(), QStringList());
}

void tst_AssistantTab::tools()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab());
    QQuickItem *control = bar.item("toolsSwitch");
    QCOMPARE(bar.isOn(control), true);
    press(bar, control, by);
    QCOMPARE(bar.sdk().property("executorPathEnabled"), QVariant(false));
    QCOMPARE(bar.isOn(control), false);
    QVERIFY(bar.textItem(text("Enable to allow the assistant to execute desktop actions.")));
    press(bar, control, by);
    QCOMPARE(bar.sdk().property("executorPathEnabled"), QVariant(true));
    // The bridge may change it too.
    bar.sdk().setProperty("executorPathEnabled", false);
    QCOMPARE(bar.isOn(control), false);
    QCOMPARE(bar.property("toolsEnabled").toBool(), false);
}

void tst_AssistantTab::templateSwitch()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sendWorkspaces({AssistantWindow::workspace(7, text("meeting"), text("paused"))});
    QVERIFY(bar.openTab());
    bar.sdk().takeCalls();
    QQuickItem *control = bar.inTemplate(1, "templateSwitch");
    QCOMPARE(bar.isOn(control), false);
    press(bar, control, by);
    QCOMPARE(bar.isOn(control), true);
    QCOMPARE(bar.takeStored(), QStringList({text("setWorkspaceTemplateSlugEnabled(meeting, true)"), text("save()")}));
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("setWorkspaceTemplateEnabled(meeting, true, 7)")));
    QCOMPARE(bar.property("modelsStatusMessage").toString(), QString());
    press(bar, control, by);
    QCOMPARE(bar.isOn(control), false);
    QCOMPARE(bar.takeStored(), QStringList({text("setWorkspaceTemplateSlugEnabled(meeting, false)"), text("save()")}));
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("setWorkspaceTemplateEnabled(meeting, false, 7)")));
}

void tst_AssistantTab::templatesWithoutTools()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sdk().setProperty("executorPathEnabled", false);
    QVERIFY(bar.openTab());
    bar.click(bar.inTemplate(2, "templateSwitch"));
    QCOMPARE(bar.isOn(bar.inTemplate(2, "templateSwitch")), true);
    QCOMPARE(bar.property("modelsStatusMessage").toString(), text("Turn on desktop actions to apply templates."));
    QCOMPARE(bar.takeStored().value(0), text("setWorkspaceTemplateSlugEnabled(research, true)"));
}

void tst_AssistantTab::templatesWithoutWorkspaces()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setPreferred({text("meeting")});
    bar.invoke("loadWorkspaceTemplateCatalogFromPrefs");
    bar.sdk().setProperty("workspaceIntelAvailable", false);
    QVERIFY(bar.openTab());
    QCOMPARE(bar.isOn(bar.inTemplate(1, "templateSwitch")), true);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(bar.inTemplate(row, "templateSwitch")->isEnabled(), false);
        QCOMPARE(bar.inTemplate(row, "templatePrepareBtn")->isEnabled(), false);
    }
}

void tst_AssistantTab::prepare()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sendWorkspaces({AssistantWindow::workspace(7, text("focus-dev"), text("active"))});
    QVERIFY(bar.openTab());
    bar.sdk().takeCalls();
    press(bar, bar.inTemplate(0, "templatePrepareBtn"), by);
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("prepareWorkspaceTemplate(7, prepare focus-dev)")));
    QCOMPARE(bar.textOf("templateStatus"), text("Preparing Focus — Development…"));
    bar.sdk().emitSignal(
        "workspaceTemplatePrepareFinished",
        QJsonObject {{text("ok"), true}, {text("workspace"), QJsonObject {{text("name"), text("Focus")}}}});
    QCOMPARE(bar.textOf("templateStatus"), text("Prepared Focus."));
    bar.sdk().emitSignal("workspaceTemplatePrepareFinished",
                         QJsonObject {{text("ok"), false}, {text("error"), text("no app")}});
    QCOMPARE(bar.textOf("templateStatus"), text("no app"));
}

void tst_AssistantTab::prepareIsEnabled()
{
    const struct
    {
        const char *name;
        const char *status;
        int id;
        bool intel;
        bool tools;
        bool isEnabled;
    } rows[] = {
        {"all", "active", 7, true, true, true},           {"off", "paused", 7, true, true, false},
        {"no workspace", "active", 0, true, true, false}, {"not available", "active", 7, false, true, false},
        {"no tools", "active", 7, true, false, false},    {"all again", "active", 7, true, true, true},
    };

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab());
    for (const auto &row : rows) {
        bar.sendWorkspaces({AssistantWindow::workspace(row.id, text("research"), text(row.status))});
        bar.sdk().setProperty("workspaceIntelAvailable", row.intel);
        bar.sdk().setProperty("executorPathEnabled", row.tools);
        QVERIFY2(bar.inTemplate(2, "templatePrepareBtn")->isEnabled() == row.isEnabled, row.name);
    }
}

void tst_AssistantTab::bridgeOverridesThePreference()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setPreferred({text("meeting")});
    bar.invoke("loadWorkspaceTemplateCatalogFromPrefs");
    QVERIFY(bar.openTab());
    QCOMPARE(bar.isOn(bar.inTemplate(1, "templateSwitch")), true);
    bar.sdk().takeCalls();
    bar.sendWorkspaces({AssistantWindow::workspace(7, text("meeting"), text("paused"))});
    QCOMPARE(bar.isOn(bar.inTemplate(1, "templateSwitch")), false);
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("setWorkspaceTemplateEnabled(meeting, true, 7)")));
    bar.sendWorkspaces({AssistantWindow::workspace(7, text("meeting"), text("active"))});
    QCOMPARE(bar.isOn(bar.inTemplate(1, "templateSwitch")), true);
    QCOMPARE(bar.sdk().takeCalls(), QStringList());
    QCOMPARE(bar.takeStored(), QStringList());
}

void tst_AssistantTab::brokenRules()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab());
    QJsonObject workspace = AssistantWindow::workspace(7, text("meeting"), text("active"));
    workspace.insert(text("behaviorRules"), text("{\"slug\":\"meeting\""));
    bar.sendWorkspaces({workspace});
    QCOMPARE(bar.isOn(bar.inTemplate(1, "templateSwitch")), false);
    workspace.insert(text("behaviorRules"), text("{\"slug\":\"meeting\"}"));
    bar.sendWorkspaces({workspace});
    QCOMPARE(bar.isOn(bar.inTemplate(1, "templateSwitch")), true);
}

void tst_AssistantTab::rowsKeepTheFocus()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab());
    QQuickItem *control = bar.inTemplate(1, "templateSwitch");
    bar.focus(control);
    for (const char *status : {"active", "paused"}) {
        QJsonObject workspace = AssistantWindow::workspace(7, text("meeting"), text(status));
        workspace.insert(text("name"), text(status));
        bar.sendWorkspaces({workspace});
        QCOMPARE(control->property("label").toString(), text(status));
        QVERIFY(control->hasActiveFocus());
    }
}

void tst_AssistantTab::advancedOptions()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab());
    QQuickItem *button = bar.item("advancedBtn");
    QVERIFY(!bar.item("advancedOptions"));
    press(bar, button, by);
    QCOMPARE(bar.property("showAdvancedAssistant").toBool(), true);
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("advancedOptions")));
    press(bar, button, by);
    QVERIFY(bar.settle());
    QVERIFY(!bar.item("advancedOptions"));
}

void tst_AssistantTab::advancedByDefault_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isOpen");

    QTest::newRow("on") << QVariant(true) << true;
    QTest::newRow("off") << QVariant(false) << false;
    QTest::newRow("missing") << QVariant() << false;
}

void tst_AssistantTab::advancedByDefault()
{
    QFETCH(QVariant, value);
    QFETCH(bool, isOpen);

    AssistantWindow &bar = m_window.renew();
    if (value.isValid()) {
        bar.provide("toviWiAdvancedUiDefault", value);
    } else {
        bar.omit("toviWiAdvancedUiDefault");
    }
    QVERIFY(bar.begin());
    QCOMPARE(bar.property("showAdvancedAssistant").toBool(), isOpen);
}

void tst_AssistantTab::observation()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.sdk().takeCalls();
    QQuickItem *control = bar.item("observationSwitch");
    QCOMPARE(bar.isOn(control), true);
    press(bar, control, by);
    QCOMPARE(bar.isOn(control), false);
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("setWorkspaceIntelObservationEnabled(false)")));
    bar.sdk().emitSignal("workspaceIntelPanelUpdated",
                         QJsonObject {{text("observationEnabled"), text("true")},
                                      {text("dwellSummary"),
                                       QJsonObject {{text("topApp"), text("Editor")}, {text("topAppHours"), 4.5}}}});
    QCOMPARE(bar.isOn(control), true);
    QCOMPARE(bar.textOf("dwellSummary"), text("Top app: Editor (4.5h tracked). ? apps in window."));
}

void tst_AssistantTab::runtime()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.sdk().takeCalls();
    QQuickItem *control = bar.item("aiRuntimeSwitch");
    bar.focus(control); // scrolls it into view
    QVERIFY(bar.settle());
    QCOMPARE(bar.isOn(control), true);
    press(bar, control, by);
    QCOMPARE(bar.isOn(control), false);
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("setAiRuntimeEnabled(false)")));
    bar.sdk().emitSignal(
        "aiRuntimePanelUpdated",
        QJsonObject {{text("state"), text("idle")},
                     {text("settings"), QJsonObject {{text("runtimeEnabled"), true}}},
                     {text("gateStatus"), QJsonObject {{text("executionsThisHour"), 3}, {text("maxPerHour"), 20}}}});
    QCOMPARE(bar.isOn(control), true);
    QCOMPARE(bar.textOf("aiRuntimeStatus"), text("State: idle · executions this hour: 3/20"));
}

void tst_AssistantTab::gatingByKeys()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.sdk().takeCalls();
    QQuickItem *combo = bar.item("gatingCombo");
    bar.focus(combo);
    const QStringList shown = {text("Auto-safe (low risk)"), text("Gating off")};
    const QStringList calls = {text("setAiRuntimeExecutionGating(auto_safe)"),
                               text("setAiRuntimeExecutionGating(off)")};
    for (int i = 0; i < shown.size(); ++i) {
        bar.key(Qt::Key_Down);
        QCOMPARE(combo->property("displayText").toString(), shown.at(i));
        QCOMPARE(bar.sdk().takeCalls(), QStringList(calls.at(i)));
        QCOMPARE(bar.property("aiRuntimeGatingIndex").toInt(), i + 1);
    }
    bar.key(Qt::Key_Down);
    QCOMPARE(bar.sdk().takeCalls(), QStringList());
}

void tst_AssistantTab::gatingByMouse()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.sdk().takeCalls();
    QQuickItem *combo = bar.item("gatingCombo");
    bar.focus(combo); // scrolls it into view
    QVERIFY(bar.settle());
    bar.click(combo);
    QTRY_VERIFY(bar.textItem(text("Gating off")));
    QVERIFY(bar.settle());
    bar.click(bar.textItem(text("Gating off")));
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("setAiRuntimeExecutionGating(off)")));
    QTRY_COMPARE(combo->property("displayText").toString(), text("Gating off"));
}

//! Without a bridge nothing changes, and a control shows that.
void tst_AssistantTab::controlsShowTheBridgesState()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.sdk().setProperty("ready", false);
    QVERIFY(bar.settle());
    bar.sdk().takeCalls();
    for (const char *name : {"observationSwitch", "aiRuntimeSwitch"}) {
        bar.focus(bar.item(name));
        bar.key(Qt::Key_Space);
        QVERIFY2(bar.isOn(bar.item(name)), name);
    }
    bar.focus(bar.item("gatingCombo"));
    bar.key(Qt::Key_Down);
    QCOMPARE(bar.item("gatingCombo")->property("currentIndex").toInt(), 0);
    QCOMPARE(bar.sdk().takeCalls(), QStringList());
    // They still follow the bridge.
    bar.sdk().emitSignal("aiRuntimePanelUpdated",
                         QJsonObject {{text("settings"), QJsonObject {{text("executionGating"), text("off")}}}});
    QCOMPARE(bar.isOn(bar.item("aiRuntimeSwitch")), false);
    QCOMPARE(bar.item("gatingCombo")->property("currentIndex").toInt(), 2);
    bar.sdk().emitSignal("workspaceIntelPanelUpdated", QJsonObject());
    QCOMPARE(bar.isOn(bar.item("observationSwitch")), false);
}

void tst_AssistantTab::check()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.focus(bar.item("checkSuggestionBtn"));
    QVERIFY(bar.settle());
    bar.sdk().takeCalls();
    press(bar, bar.item("checkSuggestionBtn"), by);
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("checkWorkspaceSuggestionNotify()")));
    QCOMPARE(bar.textOf("suggestionStatus"), text("Running analysis…"));
    bar.sdk().emitSignal("workspaceSuggestionNotifyResult", QJsonObject {{text("reason"), text("dnd")}});
    QCOMPARE(bar.textOf("suggestionStatus"), text("Do Not Disturb is on; notification skipped."));
}

void tst_AssistantTab::reset()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.focus(bar.item("resetDismissedBtn"));
    QVERIFY(bar.settle());
    bar.sdk().takeCalls();
    press(bar, bar.item("resetDismissedBtn"), by);
    QCOMPARE(bar.sdk().takeCalls(), QStringList(text("clearAiRuntimeDismissedSuggestions()")));
    QCOMPARE(bar.textOf("suggestionStatus"), text("Dismissed prompts cleared — try Check workspace suggestion again."));
}

void tst_AssistantTab::reminder()
{
    QFETCH(By, by);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    QQuickItem *control = bar.item("reminderSwitch");
    bar.focus(control);
    QVERIFY(bar.settle());
    QCOMPARE(bar.isOn(control), false);
    QCOMPARE(bar.item("reminderMinutes")->isEnabled(), false);
    press(bar, control, by);
    QCOMPARE(bar.sdk().property("workspaceSuggestionReminderEnabled"), QVariant(true));
    QCOMPARE(bar.item("reminderMinutes")->isEnabled(), true);
    bar.sdk().setProperty("workspaceSuggestionReminderEnabled", false);
    QCOMPARE(bar.isOn(control), false);
    QCOMPARE(bar.item("reminderMinutes")->isEnabled(), false);
}

void tst_AssistantTab::reminderMinutes()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sdk().setProperty("workspaceSuggestionReminderEnabled", true);
    QVERIFY(bar.openTab(true));
    QQuickItem *box = bar.item("reminderMinutes");
    const auto stored = [&] { return bar.sdk().property("workspaceSuggestionReminderMinutes").toInt(); };
    QCOMPARE(box->property("from").toInt(), 1);
    QCOMPARE(box->property("to").toInt(), 1440);
    QCOMPARE(box->property("editable").toBool(), true);
    QCOMPARE(box->property("value").toInt(), 5);
    auto *field = box->property("contentItem").value<QQuickItem *>();
    bar.focus(field);
    bar.key(Qt::Key_Up);
    QCOMPARE(stored(), 6);
    bar.key(Qt::Key_Down);
    bar.key(Qt::Key_Down);
    QCOMPARE(stored(), 4);
    bar.key(Qt::Key_A, Qt::ControlModifier);
    bar.type("1440");
    bar.key(Qt::Key_Return);
    QCOMPARE(stored(), 1440);
    bar.key(Qt::Key_Up);
    QCOMPARE(stored(), 1440);
    bar.key(Qt::Key_A, Qt::ControlModifier);
    bar.type("9999");
    bar.key(Qt::Key_Return);
    QVERIFY(stored() <= 1440);
    bar.sdk().setProperty("workspaceSuggestionReminderMinutes", 30);
    QCOMPARE(box->property("value").toInt(), 30);
    // The fallback.
    bar.sdk().setProperty("workspaceSuggestionReminderMinutes", 0);
    QCOMPARE(box->property("value").toInt(), 5);
}

void tst_AssistantTab::reminderMinutesByMouse()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sdk().setProperty("workspaceSuggestionReminderEnabled", true);
    QVERIFY(bar.openTab(true));
    QQuickItem *box = bar.item("reminderMinutes");
    bar.focus(box->property("contentItem").value<QQuickItem *>());
    QVERIFY(bar.settle());
    const QRectF place = bar.place(box);
    bar.clickAt(QPointF(place.right() - 10, place.center().y()).toPoint());
    QCOMPARE(bar.sdk().property("workspaceSuggestionReminderMinutes"), QVariant(6));
    bar.clickAt(QPointF(place.left() + 10, place.center().y()).toPoint());
    bar.clickAt(QPointF(place.left() + 10, place.center().y()).toPoint());
    QCOMPARE(bar.sdk().property("workspaceSuggestionReminderMinutes"), QVariant(4));
}

void tst_AssistantTab::refreshWhileOpen_data()
{
    QTest::addColumn<QByteArray>("property");

    for (const char *name : {"ready", "workspaceIntelAvailable", "aiRuntimeAvailable"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void tst_AssistantTab::refreshWhileOpen()
{
    QFETCH(QByteArray, property);

    const QString refresh = text("reminderList()"); // the last of the calls
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sdk().setProperty(property.constData(), false);
    bar.sdk().setProperty(property.constData(), true);
    QVERIFY(bar.settle());
    QVERIFY(!bar.sdk().takeCalls().contains(refresh));
    QVERIFY(bar.openTab());
    bar.sdk().takeCalls();
    bar.sdk().setProperty(property.constData(), false);
    bar.sdk().setProperty(property.constData(), true);
    QTRY_COMPARE(bar.sdk().property("calls").toStringList().count(refresh), 1);
    QVERIFY(bar.settle());
    QCOMPARE(bar.sdk().takeCalls().count(refresh), 1);
}

void tst_AssistantTab::lineBelowTheBar()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab());
    QCOMPARE(bar.property("shortcutHintHeight").toInt(), 20);
    const QString title = text("x").repeated(131);
    bar.sdk().emitSignal("workspaceSuggestionNotifyResult",
                         QJsonObject {{text("topSuggestion"), QJsonObject {{text("title"), title}}}});
    const QString line = title.left(127) + text("…");
    QCOMPARE(bar.property("wiNotifyBarLine").toString(), line);
    QVERIFY(bar.settle());
    QCOMPARE(bar.textOf("notifyLine"), line);
    QCOMPARE(bar.property("shortcutHintHeight").toInt(), 36);
    // A second message starts the time anew, see the controller's test.
    auto *timer = bar.property("wiNotifyBarClearTimer").value<QObject *>();
    QCOMPARE(timer->property("interval").toInt(), 15000);
    QCOMPARE(timer->property("running").toBool(), true);
    timer->setProperty("interval", 1);
    QTRY_COMPARE(bar.property("wiNotifyBarLine").toString(), QString());
    QCOMPARE(bar.property("shortcutHintHeight").toInt(), 20);
    timer->setProperty("interval", 15000);
}

void tst_AssistantTab::review()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    bar.setProperty("settingsPanelOpen", false);
    bar.sdk().takeCalls();
    bar.sdk().emitSignal("workspaceSuggestionUserChoice", QJsonObject {{text("action"), text("review")}});
    QCOMPARE(bar.property("settingsPanelOpen").toBool(), true);
    QTRY_COMPARE(bar.sdk().property("calls").toStringList().count(text("reminderList()")), 1);
    QVERIFY(bar.settle());
    QCOMPARE(bar.textOf("suggestionStatus"), text("Review this suggestion in Settings → Workspace learning."));
}

//! Each control has a name and a role, is reached by Tab in the order of the tab, shows its focus and is in view.
void tst_AssistantTab::everythingByTab()
{
    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.sendWorkspaces({AssistantWindow::workspace(7, text("meeting"), text("active"))});
    bar.sdk().setProperty("workspaceSuggestionReminderEnabled", true);
    QVERIFY(bar.openTab(true));
    QQuickItem *tab = bar.item("assistantTab");
    QQuickItem *pane = bar.item("settingsScrollPane");
    bar.focus(bar.item("toolsSwitch"));
    QStringList order;
    for (int step = 0; step < s_manySteps && tab->isAncestorOf(bar.window()->activeFocusItem()); ++step) {
        QQuickItem *focused = bar.window()->activeFocusItem();
        // The spin box is entered at its text.
        QQuickItem *control = focused->objectName().isEmpty() ? focused->parentItem() : focused;
        order.append(control->objectName());
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(control);
        QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(), qPrintable(control->objectName()));
        QVERIFY2(accessible->role() != QAccessible::NoRole && accessible->role() != QAccessible::Client,
                 qPrintable(control->objectName()));
        const auto rings = bar.itemsWhere(control, [](QQuickItem *ring) {
            return QString::fromLatin1(ring->metaObject()->className()).startsWith(QLatin1String("FocusRing"))
                && OmniBarFixture::isSeen(ring);
        });
        QVERIFY2(!rings.isEmpty(), qPrintable(control->objectName()));
        QTRY_VERIFY2(bar.place(pane).contains(bar.place(control)), qPrintable(control->objectName()));
        bar.key(Qt::Key_Tab);
    }
    QCOMPARE(
        order,
        QStringList({text("toolsSwitch"), text("templateSwitch"), text("templateSwitch"), text("templatePrepareBtn"),
                     text("templateSwitch"), text("advancedBtn"), text("observationSwitch"), text("aiRuntimeSwitch"),
                     text("gatingCombo"), text("checkSuggestionBtn"), text("resetDismissedBtn"), text("reminderSwitch"),
                     text("reminderMinutes")}));
}

void tst_AssistantTab::hostileTexts_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QVariant>("argument");

    const QString words = hostileText();
    QJsonObject workspace = AssistantWindow::workspace(7, text("meeting"), text("active"));
    workspace.insert(text("name"), words);
    workspace.insert(text("goal"), words);
    QTest::newRow("name and goal") << QByteArray("workspaceTemplatesListed") << QVariant(QJsonArray {workspace});
    QTest::newRow("prepared name") << QByteArray("workspaceTemplatePrepareFinished")
                                   << QVariant(QJsonObject {{text("ok"), true},
                                                            {text("workspace"), QJsonObject {{text("name"), words}}}});
    QTest::newRow("error") << QByteArray("workspaceTemplatePrepareFinished")
                           << QVariant(QJsonObject {{text("error"), words}});
    QTest::newRow("app") << QByteArray("workspaceIntelPanelUpdated")
                         << QVariant(QJsonObject {{text("dwellSummary"),
                                                   QJsonObject {{text("topApp"), words},
                                                                {text("topAppHours"), words},
                                                                {text("uniqueApps"), words}}}});
    QTest::newRow("state") << QByteArray("aiRuntimePanelUpdated")
                           << QVariant(QJsonObject {
                                  {text("state"), words},
                                  {text("settings"), words},
                                  {text("gateStatus"),
                                   QJsonObject {{text("executionsThisHour"), words}, {text("maxPerHour"), words}}}});
    QTest::newRow("notice") << QByteArray("workspaceSuggestionNotifyResult")
                            << QVariant(
                                   QJsonObject {{text("reason"), text("notification_failed")},
                                                {text("notificationError"), words},
                                                {text("topSuggestion"), QJsonObject {{text("title"), words}}},
                                                {text("analysis"), QJsonObject {{text("clustersCreated"), words}}}});
}

void tst_AssistantTab::hostileTexts()
{
    QFETCH(QByteArray, signal);
    QFETCH(QVariant, argument);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(true));
    QQuickItem *tab = bar.item("assistantTab");
    const qreal width = tab->width();
    const qreal height = tab->height();
    bar.sdk().emitSignal(signal.constData(), argument);
    QVERIFY(bar.settle());
    QCOMPARE(tab->width(), width);
    // A few lines more.
    QVERIFY2(tab->height() < height + 100, qPrintable(QString::number(tab->height() - height)));
    int shown = 0;
    const auto texts = bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) {
        return item->inherits("QQuickText") && OmniBarFixture::isSeen(item)
            && item->objectName() != QLatin1String("keyHint");
    });
    for (QQuickItem *item : texts) {
        const QString words = item->property("text").toString();
        QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
        QVERIFY2(!words.contains(QChar(0x202e)) && !words.contains(QLatin1Char('\n')), qPrintable(words));
        QVERIFY2(words.size() <= 601, qPrintable(words));
        if (words.contains(QStringLiteral("<b>R&D</b> %1 {name}"))) {
            ++shown;
            const QRectF place = bar.place(item);
            QVERIFY(place.left() >= 0 && place.right() <= bar.window()->width());
        }
    }
    QVERIFY(shown > 0);
    bar.screenshot(QStringLiteral("assistant-hostile-") + QString::fromLatin1(QTest::currentDataTag()));
}

void tst_AssistantTab::looks_data()
{
    QTest::addColumn<bool>("light");
    QTest::addColumn<bool>("opaque");

    QTest::newRow("dark") << false << false;
    QTest::newRow("light") << true << false;
    QTest::newRow("dark-opaque") << false << true;
    QTest::newRow("light-opaque") << true << true;
}

//! For the eye.
void tst_AssistantTab::looks()
{
    QFETCH(bool, light);
    QFETCH(bool, opaque);

    AssistantWindow &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setLight(light);
    bar.property("appearanceStore").value<QObject *>()->setProperty("translucentBackground", !opaque);
    bar.sendWorkspaces({AssistantWindow::workspace(7, text("meeting"), text("active"))});
    bar.sdk().emitSignal(
        "aiRuntimePanelUpdated",
        QJsonObject {{text("state"), text("idle")},
                     {text("gateStatus"), QJsonObject {{text("executionsThisHour"), 3}, {text("maxPerHour"), 20}}}});
    bar.sdk().emitSignal("workspaceIntelPanelUpdated",
                         QJsonObject {{text("observationEnabled"), true},
                                      {text("dwellSummary"),
                                       QJsonObject {{text("topApp"), text("Text editor")},
                                                    {text("topAppHours"), 44.8},
                                                    {text("uniqueApps"), 4}}}});
    bar.sdk().emitSignal("workspaceSuggestionNotifyResult", QJsonObject {{text("notified"), true}});
    QVERIFY(bar.openTab());
    const QString name = text("assistant-") + QString::fromLatin1(QTest::currentDataTag());
    bar.screenshot(name);
    bar.setProperty("showAdvancedAssistant", true);
    QVERIFY(bar.settle());
    bar.focus(bar.item("reminderSwitch"));
    QVERIFY(bar.settle());
    bar.screenshot(name + text("-advanced"));
    for (const char *heading : {"Workspace templates", "Pattern learning (R&D)", "AI runtime"}) {
        QCOMPARE(colourOf(bar.textItem(text(heading))), light ? rgba(0.06, 0.07, 0.10, 0.95) : rgba(1, 1, 1, 0.9));
    }
}

REGISTER_TEST(tst_AssistantTab, QGuiApplication)

#include "tst_AssistantTab.moc"
