// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "Presses.h"
#include "ScriptedSdk.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QFont>
#include <QGuiApplication>
#include <QQmlProperty>
#include <QTest>

#include <memory>

namespace
{

constexpr int s_manySteps = 20000;
constexpr int s_kilobyte = 1024;
constexpr int s_megabyte = 1024 * 1024;
//! An interval that is longer than a test, in ms.
constexpr int s_never = 1000000;

QJsonArray threeSteps()
{
    return {ScriptedSdk::step(text("audio.volume.set"), {{text("level"), 30}}), ScriptedSdk::step(text("window.list")),
            ScriptedSdk::step(text("theme.apply"), {{text("name"), text("Breeze Dark")}})};
}

//! Size and width of a text's font, as "9 pt", with "bold" if it is.
QString fontOf(QQuickItem *item)
{
    const auto font = item->property("font").value<QFont>();
    return QStringLiteral("%1 pt%2").arg(font.pointSize()).arg(font.bold() ? QStringLiteral(" bold") : QString());
}

//! Whether an item is inside another one, with a margin.
bool isInside(QQuickItem *inner, QQuickItem *outer, qreal margin = 0)
{
    return OmniBarFixture::place(outer)
        .adjusted(margin, margin, -margin, -margin)
        .contains(OmniBarFixture::place(inner));
}

void addWaysToPress()
{
    QTest::addColumn<By>("by");
    for (const auto &way : waysToPress) {
        QTest::newRow(way.name) << way.by;
    }
}

void addThemes()
{
    QTest::addColumn<bool>("light");
    QTest::newRow("dark") << false;
    QTest::newRow("light") << true;
}

} // namespace

//! Plan card, progress bar and undo bar in the window. One long file, because the three share the window and the
//! stand-in for the client.
class tst_Plans : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void requestOnTheWindow();
    void card_data() { addThemes(); }
    void card();
    void cardWithoutRisk();
    void run_data() { addWaysToPress(); }
    void run();
    void cancel_data() { addWaysToPress(); }
    void cancel();
    void planWithoutApproval();
    void refusedPlan();
    void longSummary();
    void stepsByWheelAndKeys();
    void progress_data();
    void progress();
    void progressLook_data() { addThemes(); }
    void progressLook();
    void progressLingers();
    void escapeStopsARun();
    void undo_data() { addWaysToPress(); }
    void undo();
    void dismissUndo_data() { addWaysToPress(); }
    void dismissUndo();
    void undoLook_data() { addThemes(); }
    void undoLook();
    void countdown();
    void everythingAtOnce();
    void manySteps();
    void hugeFields();
    void wrongTypes_data();
    void wrongTypes();
    void textsStayInside_data();
    void textsStayInside();

private:
    //! A conversation of one row, with a plan that waits for approval.
    bool offer(Conversation &bar, const QString &summary = text("Volume 30, windows and a dark theme"),
               const QJsonArray &steps = threeSteps());
    //! Runs the plan, which then takes as long as the test wants.
    void start(Conversation &bar);
    //! Sends a step and waits until the client has it.
    bool reportStep(Conversation &bar, int index, int total, const QString &capability, const QString &phase);
    //! The client would keep its step for the next test.
    bool forgetStep(Conversation &bar) { return reportStep(bar, -1, 0, QString(), QString()); }

    std::unique_ptr<ScriptedSdk> m_sdk;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_sdk = std::make_unique<ScriptedSdk>(bar); }};
};

bool tst_Plans::offer(Conversation &bar, const QString &summary, const QJsonArray &steps)
{
    bar.invoke("appendUserMessage", {summary});
    m_sdk->takeCalls();
    m_sdk->sendPlan(ScriptedSdk::plan(summary, steps));
    return bar.settle() && bar.isSeen(bar.item("planCard"));
}

void tst_Plans::start(Conversation &bar)
{
    // An earlier result would hide the progress later.
    QVERIFY(QMetaObject::invokeMethod(bar.object(text("planBarLingerTimer")), "stop"));
    bar.setProperty("planExecuting", true);
    bar.setProperty("planExecutingVisible", true);
}

bool tst_Plans::reportStep(Conversation &bar, int index, int total, const QString &capability, const QString &phase)
{
    bar.bridge.event(
        text("plan.step"),
        {{text("index"), index}, {text("total"), total}, {text("capabilityId"), capability}, {text("phase"), phase}});
    return QTest::qWaitFor([&] {
        return bar.property("bridge.planStepIndex").toInt() == index
            && bar.property("bridge.planStepCapability").toString() == capability;
    });
}

void tst_Plans::requestOnTheWindow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.invoke("requestPlan", {text(" volume 30 ")});
    QCOMPARE(m_sdk->takeCalls(), QStringList {text("getPlan( volume 30 )")});
    QVERIFY(bar.invoke("isQueryProcessing").toBool());
    bar.invoke("stopActiveQuery");
    QVERIFY(!bar.invoke("isQueryProcessing").toBool());

    // Without desktop tools it is a prompt.
    bar.evaluate("sdk.executorPathEnabled = false");
    bar.invoke("requestPlan", {text("volume 30")});
    QCOMPARE(bar.bridge.takeRequest(text("chat")).params.value(text("message")).toString(), text("volume 30"));
    QCOMPARE(m_sdk->takeCalls(), QStringList());
}

void tst_Plans::card()
{
    QFETCH(bool, light);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setLight(light);
    QVERIFY(offer(bar));
    QQuickItem *card = bar.item("planCard");
    QCOMPARE(bar.textsIn(card),
             (QStringList {text("Plan"), text("Volume 30, windows and a dark theme"), text("Risk: medium"),
                           text("audio.volume.set {\"level\":30}"), text("window.list"),
                           text("theme.apply {\"name\":\"Breeze Dark\"}"), text("Run"), text("Cancel")}));
    QCOMPARE(card->property("radius").toReal(), 12.0);
    QCOMPARE(colourOf(card), light ? rgba(0.82, 0.90, 0.98, 0.55) : rgba(0.15, 0.35, 0.55, 0.25));
    QCOMPARE(colourOf(card, "border.color"), light ? rgba(0.50, 0.30, 0.85, 0.40) : rgba(0.60, 0.20, 0.98, 0.35));
    QCOMPARE(QQmlProperty::read(card, text("border.width")).toInt(), 1);
    QCOMPARE(fontOf(bar.textItem(text("Plan"))), text("11 pt bold"));
    QCOMPARE(fontOf(bar.item("planSummary")), text("10 pt"));
    QCOMPARE(fontOf(bar.item("planRisk")), text("9 pt"));
    QCOMPARE(fontOf(bar.item("planStepText")), text("9 pt"));
    QCOMPARE(bar.item("planStepText")->property("font").value<QFont>().family(), text("monospace"));

    QQuickItem *run = bar.item("planRunBtn");
    QCOMPARE(QSizeF(run->width(), run->height()), QSizeF(80, 28));
    QCOMPARE(backgroundOf(run)->property("radius").toReal(), 6.0);
    QCOMPARE(colourOf(backgroundOf(run)), rgba(0.60, 0.20, 0.98, 0.3));
    QCOMPARE(colourOf(bar.textItem(text("Run"))), rgb(text("white")));
    bar.hover(run);
    QTRY_COMPARE(colourOf(backgroundOf(run)), rgba(0.60, 0.20, 0.98, 0.5));
    QQuickItem *cancel = bar.item("planCancelBtn");
    QCOMPARE(QSizeF(cancel->width(), cancel->height()), QSizeF(70, 28));

    // First in the panel, margins of 12 and a spacing of 8.
    const QRectF place = bar.place(card);
    QQuickItem *header = bar.item("chatHeader");
    QVERIFY(!header || place.top() >= bar.place(header).bottom());
    QCOMPARE(bar.place(bar.item("chatArea")).top(), place.bottom() + 10);
    QCOMPARE(bar.place(run).topLeft().x(), place.left() + 12);
    QCOMPARE(bar.place(run).bottom(), place.bottom() - 12);
    QCOMPARE(bar.place(cancel).left(), bar.place(run).right() + 8);
    QCOMPARE(bar.place(bar.item("planSteps")).top(), bar.place(bar.item("planRisk")).bottom() + 8);
    QCOMPARE(bar.place(run).top(), bar.place(bar.item("planSteps")).bottom() + 8);
    QVERIFY(!bar.invoke("isQueryProcessing").toBool());
}

void tst_Plans::cardWithoutRisk()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QJsonObject plan = ScriptedSdk::plan(text("volume"), threeSteps());
    plan.remove(text("riskLevel"));
    bar.invoke("appendUserMessage", {text("volume")});
    m_sdk->sendPlan(plan);
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("planRisk")));
    QCOMPARE(bar.place(bar.item("planRunBtn")).bottom(), bar.place(bar.item("planCard")).bottom() - 12);
}

void tst_Plans::run()
{
    QFETCH(By, by);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(offer(bar));
    press(bar, bar.item("planRunBtn"), by);
    QCOMPARE(m_sdk->takeCalls(),
             QStringList {text("executePlan([{\"capabilityId\":\"audio.volume.set\",\"params\":{\"level\":30}},"
                               "{\"capabilityId\":\"window.list\",\"params\":{}},"
                               "{\"capabilityId\":\"theme.apply\",\"params\":{\"name\":\"Breeze Dark\"}}])")});
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("planCard")));
    QVERIFY(bar.isSeen(bar.item("planProgressBar")));
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());

    m_sdk->sendResult(ScriptedSdk::success());
    QCOMPARE(bar.rows().last(), text("assistant: Window closed. (Undo available)"));
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("undoBar")));
}

void tst_Plans::cancel()
{
    QFETCH(By, by);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(offer(bar));
    const QStringList rows = bar.rows();
    press(bar, bar.item("planCancelBtn"), by);
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("planCard")));
    QVERIFY(bar.property("pendingPlan").isNull());
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    QCOMPARE(bar.rows(), rows);
    QCOMPARE(m_sdk->takeCalls(), QStringList());
}

void tst_Plans::planWithoutApproval()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.invoke("appendUserMessage", {text("list my windows")});
    QJsonObject plan = ScriptedSdk::plan(text("windows"), {ScriptedSdk::step(text("window.list"))});
    plan.remove(text("requiresApproval"));
    m_sdk->sendPlan(plan);
    QCOMPARE(m_sdk->takeCalls(), QStringList {text("executePlan([{\"capabilityId\":\"window.list\",\"params\":{}}])")});
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("planCard")));

    // It only reads: the undo bar appears, the row doesn't mention it.
    const QJsonObject listed {{text("ok"), true},
                              {text("capabilityId"), text("window.list")},
                              {text("result"), QJsonObject {{text("windows"), QJsonArray {1, 2}}}}};
    QJsonObject result = ScriptedSdk::success();
    result.insert(text("results"), QJsonArray {listed});
    m_sdk->sendResult(result);
    QVERIFY(bar.settle());
    QCOMPARE(bar.rows().last(), text("assistant: 2 windows open."));
    QVERIFY(bar.isSeen(bar.item("undoBar")));
}

void tst_Plans::refusedPlan()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.invoke("appendUserMessage", {text("shut down")});
    QJsonObject plan = ScriptedSdk::plan(text("shut down"), threeSteps());
    plan.insert(text("allowed"), false);
    m_sdk->sendPlan(plan);
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("planCard")));
    QCOMPARE(bar.count(), 1);
    QCOMPARE(m_sdk->takeCalls(), QStringList());
}

void tst_Plans::longSummary()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QString summary = text("word ").repeated(30).trimmed();
    const QString name = text("x").repeated(250);
    QVERIFY(offer(bar, summary, {ScriptedSdk::step(text("app.launch"), {{text("name"), name}})}));
    QQuickItem *shown = bar.item("planSummary");
    QCOMPARE(shown->property("text").toString(), summary.left(60) + text("…"));
    QCOMPARE(QAccessible::queryAccessibleInterface(shown)->text(QAccessible::Name), summary);
    bar.hover(shown);
    QTRY_COMPARE(tipsOf(bar), QStringList {summary});
    // For the keyboard, Run shows it.
    bar.hover(bar.item("inputField"));
    QTRY_COMPARE(tipsOf(bar), QStringList());
    bar.focus(bar.item("planRunBtn"));
    QTRY_COMPARE(tipsOf(bar), QStringList {summary});
    QCOMPARE(QAccessible::queryAccessibleInterface(bar.item("planRunBtn"))->text(QAccessible::Description), summary);
    bar.focus(bar.item("inputField"));
    QTRY_COMPARE(tipsOf(bar), QStringList());

    QQuickItem *step = bar.item("planStepText");
    QVERIFY(step->property("truncated").toBool());
    QVERIFY(isInside(step, bar.item("planCard"), 12));
    bar.hover(step);
    QTRY_COMPARE(tipsOf(bar), QStringList {text("app.launch {\"name\":\"%1\"}").arg(name)});
    bar.hover(bar.item("inputField"));
    QTRY_COMPARE(tipsOf(bar), QStringList());
}

void tst_Plans::stepsByWheelAndKeys()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QJsonArray steps;
    for (int i = 0; i < 30; ++i) {
        steps.append(ScriptedSdk::step(text("app.launch"), {{text("name"), text("x").repeated(200)}, {text("no"), i}}));
    }
    QVERIFY(offer(bar, text("thirty"), steps));
    QQuickItem *list = bar.item("planSteps");
    QVERIFY(list->property("contentHeight").toReal() > list->height());
    // By mouse the steps move too, and not the conversation below them.
    turnWheel(bar, list, -2);
    QTRY_VERIFY(list->property("contentY").toReal() > 0);
    QVERIFY(isInside(bar.item("planRunBtn"), bar.item("chatPanel")));
    while (bar.window()->activeFocusItem()->objectName() != text("planStep")) {
        bar.key(Qt::Key_Tab);
    }
    for (int i = 0; i < 29; ++i) {
        bar.key(Qt::Key_Down);
    }
    QQuickItem *last = bar.window()->activeFocusItem();
    QCOMPARE(last->property("index").toInt(), 29);
    QVERIFY(bar.settle());
    QVERIFY(isInside(last, list));
    QTRY_VERIFY(tipsOf(bar).value(0).endsWith(text("\"no\":29}")));
    QVERIFY(QAccessible::queryAccessibleInterface(last)->text(QAccessible::Name).endsWith(text("\"no\":29}")));
    bar.screenshot("plan-steps-by-keys");
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.item("planRunBtn")->hasActiveFocus());
}

void tst_Plans::progress_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("total");
    QTest::addColumn<QString>("capability");
    QTest::addColumn<QString>("phase");
    QTest::addColumn<QString>("label");
    QTest::addColumn<double>("part");

    QTest::newRow("no step") << -1 << 0 << QString() << QString() << text("Applying…") << -1.0;
    QTest::newRow("start") << 0 << 4 << text("theme.apply") << text("start") << text("Step 1/4: theme apply…") << 0.25;
    QTest::newRow("done") << 1 << 4 << text("a.b_c.d") << text("done") << text("Step 2/4: a b_c d ✓") << 0.5;
    QTest::newRow("failed") << 3 << 4 << text("trash.empty") << text("failed") << text("Step 4/4: trash empty ✗")
                            << 1.0;
    QTest::newRow("other phase") << 0 << 2 << text("x") << text("verifying") << text("Step 1/2: x") << 0.5;
    QTest::newRow("beyond the end") << 8 << 2 << text("x") << text("start") << text("Step 9/2: x…") << 1.0;
    QTest::newRow("long word") << 0 << 2 << text("w").repeated(500) << text("done")
                               << text("Step 1/2: ") + text("w").repeated(200) + text("… ✓") << 0.5;
}

void tst_Plans::progress()
{
    QFETCH(int, index);
    QFETCH(int, total);
    QFETCH(QString, capability);
    QFETCH(QString, phase);
    QFETCH(QString, label);
    QFETCH(double, part);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.invoke("appendUserMessage", {text("go")});
    start(bar);
    QVERIFY(bar.invoke("isQueryProcessing").toBool());
    QVERIFY(reportStep(bar, index, total, capability, phase));
    QVERIFY(bar.settle());
    QQuickItem *progress = bar.item("planProgressBar");
    QQuickItem *words = bar.item("planProgressText");
    QCOMPARE(words->property("text").toString(), label);
    QCOMPARE(words->property("truncated").toBool(), capability.size() > 100);
    QVERIFY(isInside(words, progress));
    QVERIFY(words->property("contentWidth").toReal() <= words->width());
    QCOMPARE(QAccessible::queryAccessibleInterface(progress)->role(), QAccessible::ProgressBar);
    QQuickItem *track = bar.item("planProgressTrack");
    QCOMPARE(bar.isSeen(track), part >= 0);
    if (part >= 0) {
        QCOMPARE(track->width(), progress->width() - 32);
        QCOMPARE(track->height(), 3.0);
        QTRY_COMPARE(bar.item("planProgressFill")->width(), track->width() * part);
        QVERIFY(isInside(track, progress));
        QVERIFY(bar.place(words).bottom() <= bar.place(track).top());
    }
    bar.screenshot(QStringLiteral("progress-%1").arg(index));
    QVERIFY(forgetStep(bar));
}

void tst_Plans::progressLook()
{
    QFETCH(bool, light);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setLight(light);
    bar.invoke("appendUserMessage", {text("go")});
    start(bar);
    QVERIFY(bar.settle());
    QQuickItem *progress = bar.item("planProgressBar");
    QCOMPARE(progress->height(), 48.0);
    QCOMPARE(progress->property("radius").toReal(), 8.0);
    QCOMPARE(colourOf(bar.item("planProgressTrack")), rgba(1, 1, 1, 0.15));
    QTRY_COMPARE(colourOf(progress), light ? rgba(0.75, 0.92, 0.82, 0.55) : rgba(0.2, 0.5, 0.3, 0.3));
    QTRY_COMPARE(colourOf(progress, "border.color"), light ? rgba(0.2, 0.65, 0.45, 0.45) : rgba(0.4, 0.8, 0.5, 0.4));

    QJsonObject result = ScriptedSdk::success();
    result.remove(text("actionId"));
    m_sdk->sendResult(result);
    QTRY_COMPARE(colourOf(progress), rgba(0.2, 0.8, 0.4, 0.18));
    QTRY_COMPARE(colourOf(progress, "border.color"), rgba(0.2, 0.8, 0.4, 0.35));
    QCOMPARE(bar.item("planProgressText")->property("text").toString(), text("✓ Window closed."));
    QTRY_COMPARE(bar.item("planProgressFill")->width(), progress->width() - 32);
    QCOMPARE(bar.behaviour(progress, "color"), text("300 Linear"));
    QCOMPARE(bar.behaviour(bar.item("planProgressFill"), "width"), text("250 OutCubic"));
}

void tst_Plans::progressLingers()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.invoke("appendUserMessage", {text("go")});
    start(bar);
    QVERIFY(bar.settle());
    m_sdk->sendResult({{text("success"), true}});
    QCOMPARE(bar.rows().last(), text("assistant: Failed: Execution failed"));
    QCOMPARE(bar.item("planProgressText")->property("text").toString(), text("✓ Done"));
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("planProgressBar")));
    QObject *linger = bar.object(text("planBarLingerTimer"));
    QCOMPARE(linger->property("interval").toInt(), 1800);
    QVERIFY(linger->property("running").toBool());
    QTRY_VERIFY(!bar.isSeen(bar.item("planProgressBar")));
    QCOMPARE(bar.property("planDoneLabel").toString(), QString());

    // The next run begins at the beginning.
    start(bar);
    QCOMPARE(bar.item("planProgressText")->property("text").toString(), text("Applying…"));
    QCOMPARE(bar.item("planProgressFill")->width(), 0.0);
}

void tst_Plans::escapeStopsARun()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(offer(bar));
    bar.click("planRunBtn");
    QVERIFY(bar.settle());
    bar.key(Qt::Key_Escape);
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("planProgressBar")));
    QVERIFY(!bar.property("planExecuting").toBool());
    QVERIFY(!bar.property("compactMode").toBool());
}

void tst_Plans::undo()
{
    QFETCH(By, by);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    m_sdk->sendResult(ScriptedSdk::success());
    QVERIFY(bar.settle());
    press(bar, bar.item("undoBtn"), by);
    QCOMPARE(m_sdk->takeCalls(), QStringList {text("auditRevert(act_1)")});
    QCOMPARE(bar.rows().last(), text("assistant: Undo requested. Changes reverted if possible."));
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("undoBar")));
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
}

void tst_Plans::dismissUndo()
{
    QFETCH(By, by);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    m_sdk->sendResult(ScriptedSdk::success());
    QVERIFY(bar.settle());
    press(bar, bar.item("undoDismissBtn"), by);
    QCOMPARE(bar.property("lastActionId").toString(), QString());
    QCOMPARE(bar.count(), 1);
    QVERIFY(bar.settle());
    QVERIFY(!bar.isSeen(bar.item("undoBar")));
    QTRY_VERIFY(bar.item("inputField")->hasActiveFocus());
    QCOMPARE(m_sdk->takeCalls(), QStringList());
}

void tst_Plans::undoLook()
{
    QFETCH(bool, light);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setLight(light);
    m_sdk->sendResult(ScriptedSdk::success());
    QVERIFY(bar.settle());
    QQuickItem *undoBar = bar.item("undoBar");
    QCOMPARE(undoBar->height(), 36.0);
    QCOMPARE(undoBar->property("radius").toReal(), 8.0);
    QCOMPARE(colourOf(undoBar), light ? rgba(0, 0, 0, 0.05) : rgba(1, 1, 1, 0.06));
    QCOMPARE(colourOf(undoBar, "border.color"), light ? rgba(0, 0, 0, 0.10) : rgba(1, 1, 1, 0.1));
    QVERIFY(bar.textItem(text("Action applied successfully.")));
    QQuickItem *undo = bar.item("undoBtn");
    QCOMPARE(QSizeF(undo->width(), undo->height()), QSizeF(64, 26));
    QQuickItem *dismiss = bar.item("undoDismissBtn");
    QCOMPARE(QSizeF(dismiss->width(), dismiss->height()), QSizeF(22, 22));
    QCOMPARE(backgroundOf(dismiss)->property("radius").toReal(), 11.0);
    QCOMPARE(bar.textsIn(dismiss).value(0), text("\u2715"));
    QQuickItem *strip = bar.item("undoStrip");
    QCOMPARE(strip->height(), 2.0);
    QCOMPARE(colourOf(strip), rgba(0.9, 0.5, 0.2, 0.7));
    QCOMPARE(bar.place(strip).bottom(), bar.place(undoBar).bottom());
}

void tst_Plans::countdown()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QObject *timer = bar.object(text("undoTimer"));
    QCOMPARE(timer->property("interval").toInt(), 1000);
    timer->setProperty("interval", s_never); // it is turned by hand
    m_sdk->sendResult(ScriptedSdk::success());
    QVERIFY(timer->property("running").toBool());
    QVERIFY(bar.settle());
    QQuickItem *undo = bar.item("undoBtn");
    QQuickItem *strip = bar.item("undoStrip");
    QCOMPARE(undo->property("label").toString(), text("Undo 10s"));
    // Full at once.
    const qreal full = strip->width();
    QVERIFY(full > 600);

    QVERIFY(QMetaObject::invokeMethod(timer, "triggered"));
    QCOMPARE(undo->property("label").toString(), text("Undo 9s"));
    QVERIFY(strip->width() > full * 0.95);
    QTRY_COMPARE(strip->width(), full * 0.9);
    QCOMPARE(bar.behaviour(strip, "drawnPart"), text("900 Linear"));
    // Another run keeps the count.
    QJsonObject second = ScriptedSdk::success();
    second.insert(text("actionId"), text("act_2"));
    m_sdk->sendResult(second);
    QCOMPARE(bar.property("lastActionId").toString(), text("act_2"));
    QCOMPARE(undo->property("label").toString(), text("Undo 9s"));
    for (int i = 0; i < 9; ++i) {
        QVERIFY(bar.isSeen(bar.item("undoBar")));
        QVERIFY(QMetaObject::invokeMethod(timer, "triggered"));
    }
    QCOMPARE(bar.property("lastActionId").toString(), QString());
    QVERIFY(!bar.isSeen(bar.item("undoBar")));
    QVERIFY(!timer->property("running").toBool());

    m_sdk->sendResult(ScriptedSdk::success());
    QCOMPARE(undo->property("label").toString(), text("Undo 10s"));
    QCOMPARE(strip->width(), full);
    timer->setProperty("interval", 1000);
}

void tst_Plans::everythingAtOnce()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    for (int i = 0; i < 6; ++i) {
        bar.invoke("appendUserMessage", {QStringLiteral("Prompt %1").arg(i)});
        bar.emitReply(QStringLiteral("Reply %1, of some length, so that there is something to scroll.").arg(i));
    }
    m_sdk->sendResult(ScriptedSdk::success()); // the undo bar
    QVERIFY(offer(bar));
    bar.setProperty("planExecutingVisible", true); // the last run's bar is still there
    QVERIFY(bar.settle());

    QQuickItem *panel = bar.item("chatPanel");
    QQuickItem *pane = bar.item("chatScrollPane");
    QQuickItem *area = bar.item("chatArea");
    const QList<QQuickItem *> column = {bar.item("planCard"), bar.item("planProgressBar"), bar.item("undoBar"), area,
                                        bar.item("suggestionCards")};
    qreal bottom = bar.place(column.first()).top() - 10;
    for (QQuickItem *part : column) {
        QVERIFY(bar.isSeen(part));
        QCOMPARE(bar.place(part).top(), bottom + 10);
        bottom = bar.place(part).bottom();
    }
    // One sum: whatever the parts leave, and never less than 140.
    QVERIFY(area->height() >= 140);
    QVERIFY(isInside(column.first(), pane));
    QVERIFY(isInside(bar.item("planRunBtn"), panel));
    bar.screenshot(QStringLiteral("plan-everything-%1").arg(bar.window()->height()));

    // All controls are reached by keyboard.
    for (const char *name : {"planRunBtn", "planCancelBtn", "undoBtn", "undoDismissBtn", "suggestionCard"}) {
        bar.focus(bar.item(name));
        QTRY_VERIFY2(isInside(bar.item(name), pane), name);
    }
    bar.screenshot(QStringLiteral("plan-everything-scrolled-%1").arg(bar.window()->height()));

    // The next plan is in view again.
    bar.item("inputField")->forceActiveFocus();
    bar.invoke("cancelPlan");
    QVERIFY(bar.settle());
    m_sdk->sendPlan(ScriptedSdk::plan(text("next"), threeSteps()));
    QVERIFY(bar.settle());
    QVERIFY(isInside(bar.item("planCard"), pane));
    // With the card alone, the conversation keeps most of its place.
    bar.setProperty("planExecutingVisible", false);
    bar.invoke("dismissUndo");
    bar.evaluate("responseSuggestionsModel.clear()");
    QVERIFY(bar.settle());
    QVERIFY(isInside(area, pane));
    QVERIFY(isInside(column.first(), pane));
}

void tst_Plans::manySteps()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QJsonArray steps;
    for (int i = 0; i < s_manySteps; ++i) {
        steps.append(ScriptedSdk::step(text("window.close"), {{text("title"), i}}));
    }
    QVERIFY(offer(bar, text("many"), steps));
    QVERIFY(bar.items("planStep").size() < 60);
    QVERIFY(bar.item("planCard")->height() <= bar.item("chatPanel")->height() / 2);
    QVERIFY(isInside(bar.item("planRunBtn"), bar.item("chatPanel")));
    bar.screenshot("plan-many-steps");
}

void tst_Plans::hugeFields()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    for (const QString &words : {text("x").repeated(s_megabyte), text("word ").repeated(s_megabyte / 5)}) {
        QJsonObject plan = ScriptedSdk::plan(words, {ScriptedSdk::step(words, {{text("a"), words}}), QJsonValue(), 5});
        plan.insert(text("riskLevel"), words);
        bar.invoke("appendUserMessage", {text("huge")});
        m_sdk->sendPlan(plan);
        QVERIFY(bar.settle());
        for (const char *name : {"planSummary", "planRisk", "planStepText"}) {
            QVERIFY2(isInside(bar.item(name), bar.item("planCard"), 12), name);
            QVERIFY(bar.item(name)->property("contentWidth").toReal() <= bar.item(name)->width());
        }
        bar.hover(bar.item("inputField"));
        bar.hover(bar.item("planStepText"));
        QTRY_VERIFY(!tipsOf(bar).isEmpty());
        const QRectF window(0, 0, bar.window()->width(), bar.window()->height());
        QVERIFY(window.contains(bar.place(bar.item("toolTipText"))));
        bar.hover(bar.item("inputField"));
        bar.invoke("cancelPlan");

        start(bar);
        QVERIFY(reportStep(bar, 0, 1, words, text("start")));
        // The row is a huge reply like others, so its text is shorter here.
        m_sdk->sendResult(
            {{text("success"), false},
             {text("actionId"), words},
             {text("verificationSummary"), QJsonObject {{text("details"), QJsonArray {words.left(s_kilobyte)}}}}});
        QVERIFY(bar.settle());
        QQuickItem *label = bar.item("planProgressText");
        QVERIFY(label->property("contentWidth").toReal() <= label->width());
        bar.invoke("dismissUndo");
        bar.invoke("clearConversation");
    }
    QVERIFY(forgetStep(bar));
}

void tst_Plans::wrongTypes_data()
{
    QTest::addColumn<QJsonObject>("plan");
    QTest::addColumn<QStringList>("steps");

    const auto with = [](const char *key, const QJsonValue &value) {
        QJsonObject plan = ScriptedSdk::plan(text("s"), {ScriptedSdk::step(text("window.list"))});
        plan.insert(text(key), value);
        return plan;
    };
    const QStringList one = {text("window.list")};
    QTest::newRow("null steps") << with("plan", QJsonArray {QJsonValue(), QJsonValue()})
                                << QStringList {text("step"), text("step")};
    QTest::newRow("numbers") << with("plan", QJsonArray {1, true, text("x")})
                             << QStringList {text("step"), text("step"), text("step")};
    QTest::newRow("lists") << with("plan", QJsonArray {QJsonArray {1}}) << QStringList {text("step")};
    QTest::newRow("params") << with("plan", QJsonArray {QJsonObject {{text("params"), text("x")}}})
                            << QStringList {text("step")};
    QTest::newRow("list of params") << with("plan", QJsonArray {QJsonObject {{text("params"), QJsonArray {1}}}})
                                    << QStringList {text("step [1]")};
    QTest::newRow("no list") << with("plan", text("window.list")) << QStringList();
    QTest::newRow("summary") << with("summary", QJsonArray {1}) << one;
    QTest::newRow("risk") << with("riskLevel", QJsonObject {{text("a"), 1}}) << one;
}

void tst_Plans::wrongTypes()
{
    QFETCH(QJsonObject, plan);
    QFETCH(QStringList, steps);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.invoke("appendUserMessage", {text("go")});
    m_sdk->sendPlan(plan);
    QVERIFY(bar.settle());
    QCOMPARE(bar.isSeen(bar.item("planCard")), !steps.isEmpty());
    if (!steps.isEmpty()) {
        QCOMPARE(bar.textsIn(bar.item("planSteps")), steps);
    }
}

void tst_Plans::textsStayInside_data()
{
    QTest::addColumn<bool>("light");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<QJsonArray>("steps");

    const QJsonArray emoji = {ScriptedSdk::step(text("kde.notify"), {{text("text"), text("🎉 party 🎉 文字 مرحبا")}})};
    const QJsonArray words = {ScriptedSdk::step(text("w").repeated(200), {{text("a"), text("b").repeated(200)}})};
    for (const bool light : {false, true}) {
        const char *theme = light ? "light" : "dark";
        QTest::addRow("plan-%s", theme) << light << text("Volume 30, windows and a dark theme") << threeSteps();
        QTest::addRow("plan-words-%s", theme) << light << text("w").repeated(200) << words;
        QTest::addRow("plan-right-to-left-%s", theme)
            << light << text("اضبط مستوى الصوت على ثلاثين ثم اعرض النوافذ المفتوحة كلها الآن من فضلك") << emoji;
        QTest::addRow("plan-emoji-%s", theme) << light << text("🎉").repeated(29) + text("x🎉🎉") << emoji;
    }
}

void tst_Plans::textsStayInside()
{
    QFETCH(bool, light);
    QFETCH(QString, summary);
    QFETCH(QJsonArray, steps);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setLight(light);
    m_sdk->sendResult(ScriptedSdk::success());
    QVERIFY(offer(bar, summary, steps));
    bar.focus(bar.item("planRunBtn"));
    QVERIFY(bar.settle());
    bar.screenshot(QLatin1String(QTest::currentDataTag()));
    const auto isText = [](QQuickItem *item) { return item->inherits("QQuickText") && item->isVisible(); };
    const QList<QQuickItem *> texts = bar.itemsWhere(bar.item("planCard"), isText);
    for (QQuickItem *item : texts) {
        QVERIFY2(isInside(item, bar.item("planCard"), 8), qPrintable(item->property("text").toString()));
        QVERIFY(item->property("contentWidth").toReal() <= item->width());
    }

    start(bar);
    QVERIFY(reportStep(bar, 1, 3, text("theme.apply"), text("done")));
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item("planProgressBar")));
    QVERIFY(!bar.isSeen(bar.item("planCard")));
    bar.screenshot(QStringLiteral("%1-running").arg(QLatin1String(QTest::currentDataTag())));
    QVERIFY(forgetStep(bar));
}

REGISTER_TEST(tst_Plans, QGuiApplication)

#include "tst_Plans.moc"
