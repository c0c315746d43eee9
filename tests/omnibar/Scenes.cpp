// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Scenes.h"

#include "AgentBridge.h"
#include "Timeouts.h"

#include <QQmlProperty>
#include <QTest>

using Scenes::Scene;

namespace
{

constexpr int s_never = 1000000; // an interval longer than a test, in ms

bool idle(Conversation &bar)
{
    return bar.isSeen(bar.item(QStringLiteral("idleCards")));
}

bool typing(Conversation &bar)
{
    bar.type(QStringLiteral("half a sentence"));
    return true;
}

bool thinking(Conversation &bar)
{
    bar.ask();
    bar.bridge.event(QStringLiteral("plan.phase"), {{QStringLiteral("phase"), QStringLiteral("executing")}});
    bar.bridge.event(QStringLiteral("plan.step"),
                     {{QStringLiteral("index"), 1},
                      {QStringLiteral("total"), 3},
                      {QStringLiteral("capabilityId"), QStringLiteral("theme.apply")}});
    return QTest::qWaitFor([&] { return bar.isSeen(bar.item(QStringLiteral("stepBadge"))); }, Timeouts::Default);
}

bool plan(Conversation &bar)
{
    bar.invoke("appendUserMessage", {QStringLiteral("a plan")});
    bar.setProperty("lastActionId", QStringLiteral("act_1"));
    bar.object(QStringLiteral("undoTimer"))->setProperty("interval", s_never);
    bar.setProperty("planExecutingVisible", true);
    bar.evaluate(QStringLiteral(
        "omniBar.pendingPlan = { 'plan': [{ 'capabilityId': 'window.list' }, { 'capabilityId': 'trash.empty',"
        " 'params': { 'all': true } }], 'summary': 'List and empty', 'riskLevel': 'high' }"));
    return QTest::qWaitFor([&] { return bar.isSeen(bar.item(QStringLiteral("planCard"))); }, Timeouts::Default);
}

bool modelsTab(Conversation &bar)
{
    bar.evaluate(QStringLiteral("sdk.modelsListed([1, 2, 3].map(n => ({ fullId: 'demo/model-' + n })))"));
    bar.evaluate(
        QStringLiteral("sdk.freeProvidersChecked({ results: [{ model: 'demo/model-1' }, { model: 'demo/model-2' }],"
                       " recommended: { model: 'demo/model-1', ok: true } })"));
    return bar.openTab(QStringLiteral("Models"))
        && QTest::qWaitFor([&] { return bar.items(QStringLiteral("modelRow")).size() == 3; }, Timeouts::Default);
}

bool assistantTab(Conversation &bar)
{
    bar.setProperty("showAdvancedAssistant", true);
    bar.setProperty("workspaceTemplateStatusMessage", QStringLiteral("Prepared Meeting."));
    return bar.openTab(QStringLiteral("Assistant"));
}

bool systemTab(Conversation &bar)
{
    if (!bar.openTab(QStringLiteral("System"))) {
        return false;
    }
    bar.evaluate(QStringLiteral(
        "sdk.systemDashboardReceived({ errors: { total: 2 }, logEntries: [1, 2, 3].map(n => ({ level: 'error',"
        " message: 'Fault ' + n })) })"));
    bar.evaluate(
        QStringLiteral("sdk.powerProfileReceived({ active: 'balanced', available: ['balanced', 'performance'] })"));
    return bar.settle();
}

bool voiceTab(Conversation &bar)
{
    bar.evaluate(QStringLiteral("voiceBridge.isModelLoaded = true"));
    bar.evaluate(QStringLiteral("voiceBridge.voiceLogEnabled = true"));
    bar.evaluate(QStringLiteral("voiceBridge.voiceLog = ['ERROR 1', 'CORRECTED 2', 'TRANSCRIPT 3']"));
    if (!bar.openTab(QStringLiteral("Voice"))) {
        return false;
    }
    QQuickItem *panel = bar.item(QStringLiteral("voiceTestPanel"));
    if (!QTest::qWaitFor([&] { return panel->property("suiteLoaded").toBool(); }, Timeouts::Default)) {
        return false;
    }
    // Two results and a transcript that is to be submitted.
    for (int i = 0; i < 3; ++i) {
        bar.evaluate(QStringLiteral("voiceBridge.transcriptReady('go back')"));
        if (i < 2) {
            QMetaObject::invokeMethod(panel, "submit");
        }
    }
    return bar.settle();
}

bool sessionsTab(Conversation &bar)
{
    if (!bar.openTab(QStringLiteral("Sessions"))) {
        return false;
    }
    bar.evaluate(QStringLiteral("sdk.sessionsListed([1, 2, 3].map(n => ({ id: 'ses_' + n, name: 'Session ' + n })))"));
    bar.invoke("startRenaming", {QStringLiteral("ses_2"), QStringLiteral("Session 2")});
    return QTest::qWaitFor([&] { return bar.items(QStringLiteral("managedSession")).size() == 3; }, Timeouts::Default);
}

bool attaching(Conversation &bar)
{
    const QVariantMap file {{QStringLiteral("name"), QStringLiteral("notes.txt")},
                            {QStringLiteral("path"), QStringLiteral("/home/me/notes.txt")}};
    bar.setProperty("slashAttachedFiles", QVariantList {file, file});
    return QTest::qWaitFor([&] { return bar.items(QStringLiteral("fileChip")).size() == 2; }, Timeouts::Default);
}

bool compact(Conversation &bar)
{
    bar.key(Qt::Key_Escape);
    return bar.property("compactMode").toBool();
}

bool listening(Conversation &bar)
{
    bar.evaluate(QStringLiteral("voiceBridge.isListening = true"));
    bar.evaluate(QStringLiteral("voiceBridge.partialTranscript = 'open the'"));
    return true;
}

bool confirming(Conversation &bar)
{
    bar.evaluate(QStringLiteral("voiceBridge.transcriptReady('open the browser')"));
    bar.evaluate(QStringLiteral("voiceConfirmTimer.stop()"));
    return bar.settle() && bar.isSeen(bar.item(QStringLiteral("voiceConfirmBar")));
}

bool transcribing(Conversation &bar)
{
    bar.evaluate(QStringLiteral("voiceBridge.isTranscribing = true"));
    return true;
}

bool speaking(Conversation &bar)
{
    bar.evaluate(QStringLiteral("voiceBridge.isSpeaking = true"));
    return bar.isSeen(bar.item(QStringLiteral("speakerBtn")));
}

bool widgets(Conversation &bar)
{
    Q_EMIT bar.agent()->structuredReplyReceived(QStringLiteral(
        R"({"blocks":[{"type":"list","title":"Shopping","items":["milk"]},{"type":"slider"},)"
        R"({"type":"table","columns":["Name","Used"],"rows":[["Home","18%"]]},)"
        R"({"type":"options","prompt":"Which?","choices":[{"label":"This one"},{"label":"That one"}]}]})"));
    bar.emitReply(QStringLiteral("in widgets"));
    return QTest::qWaitFor([&] { return bar.rowItem(3) != nullptr; }, Timeouts::Default);
}

bool choosingACommand(Conversation &bar)
{
    bar.type(QStringLiteral("/"));
    return bar.isSeen(bar.item(QStringLiteral("slashMenu")));
}

//! In a box of the settings.
bool choosingInABox(Conversation &bar)
{
    if (!voiceTab(bar)) {
        return false;
    }
    QQuickItem *box = bar.item(QStringLiteral("methodCombo"));
    bar.focus(box);
    bar.key(Qt::Key_Space);
    return bar.settle() && QQmlProperty::read(box, QStringLiteral("popup.opened")).toBool();
}

bool suggestion(Conversation &bar)
{
    bar.evaluate(QStringLiteral("sdk.workspaceSuggestionShowInAppDialog(JSON.stringify({ title: 'Prepare “Focus”?',"
                                " body: 'You often open the text editor at this time.', suggestionId: 'sug_1', actions:"
                                " [{ id: 'prepare', label: 'Prepare now' }, { id: 'dismiss', label: 'Not now' }] }))"));
    return bar.settle() && bar.isSeen(bar.item(QStringLiteral("suggestionTitle")));
}

} // namespace

bool Scenes::conversation(Conversation &bar)
{
    bar.setProperty("wiNotifyBarLine", QStringLiteral("A template is ready."));
    bar.invoke("appendSystemMessage", {QStringLiteral("a note")});
    return bar.exchange(QStringLiteral("a question"), QStringLiteral("an answer"),
                        {{QStringLiteral("usage"), QJsonObject {{QStringLiteral("inputTokens"), 7}}}})
        && QTest::qWaitFor([&] { return bar.suggestions().size() == 4 && bar.rowItem(2); }, Timeouts::Default);
}

bool Scenes::settings(Conversation &bar)
{
    // The bar's buttons may still be moving.
    if (!bar.settle()) {
        return false;
    }
    bar.click(QStringLiteral("settingsBtn"));
    return bar.openTab(QStringLiteral("Look"));
}

bool Scenes::sessions(Conversation &bar)
{
    bar.setProperty("slashSessionListPending", true);
    bar.evaluate(QStringLiteral("sdk.sessionsListed([1, 2, 3].map(n => ({ id: 'ses_' + n, name: 'Session ' + n,"
                                " createdAt: 1700000000 })))"));
    return bar.isSeen(bar.item(QStringLiteral("sessionPopup")));
}

void Scenes::add()
{
    QTest::addColumn<Scene>("scene");

    QTest::newRow("idle") << Scene(idle);
    QTest::newRow("typing") << Scene(typing);
    QTest::newRow("thinking") << Scene(thinking);
    QTest::newRow("conversation") << Scene(Scenes::conversation);
    QTest::newRow("widgets") << Scene(widgets);
    QTest::newRow("plan") << Scene(plan);
    QTest::newRow("settings") << Scene(Scenes::settings);
    QTest::newRow("models") << Scene(modelsTab);
    QTest::newRow("assistant") << Scene(assistantTab);
    QTest::newRow("voice") << Scene(voiceTab);
    QTest::newRow("system") << Scene(systemTab);
    QTest::newRow("managed sessions") << Scene(sessionsTab);
    QTest::newRow("attached files") << Scene(attaching);
    QTest::newRow("sessions") << Scene(Scenes::sessions);
    QTest::newRow("suggestion") << Scene(suggestion);
    QTest::newRow("compact") << Scene(compact);
    QTest::newRow("listening") << Scene(listening);
    QTest::newRow("transcribing") << Scene(transcribing);
    QTest::newRow("speaking") << Scene(speaking);
    QTest::newRow("confirming a transcript") << Scene(confirming);
}

void Scenes::addMenus()
{
    QTest::newRow("menu of commands") << Scene(choosingACommand);
    QTest::newRow("box of choices") << Scene(choosingInABox);
}
