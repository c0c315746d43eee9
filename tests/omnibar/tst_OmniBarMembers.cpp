// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "OmniBarFixture.h"
#include "TestRegistry.h"

#include <QColor>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QTest>

namespace
{

enum Access
{
    ReadOnly,
    Writable,
};

//! A property, its type as QML sees it, and its initial value as JavaScript.
struct Property
{
    const char *name;
    const char *type;
    const char *first;
    Access access;
};

// clang-format off
const char *const s_templates = R"([
    { 'id': 'focus-dev', 'name': 'Focus — Development', 'description': 'Editor, terminal, and docs for focused development.', 'enabled': false, 'workspaceId': 0 },
    { 'id': 'meeting', 'name': 'Meeting', 'description': 'Video or chat with notes for meetings.', 'enabled': false, 'workspaceId': 0 },
    { 'id': 'research', 'name': 'Research', 'description': 'Browser and notes for reading and capture.', 'enabled': false, 'workspaceId': 0 }
])";

const Property s_window[] = {
    // the window
    {"toviMagenta", "QColor", "'#fb21fd'", ReadOnly},
    {"toviBlue", "QColor", "'#2756fb'", ReadOnly},
    {"toviAccent", "QColor", "Qt.rgba(0.60, 0.20, 0.98, 1.0)", ReadOnly},
    {"toviAccentDim", "QColor", "Qt.rgba(0.60, 0.20, 0.98, 0.22)", ReadOnly},
    {"toviAccentBorder", "QColor", "Qt.rgba(0.60, 0.20, 0.98, 0.35)", ReadOnly},
    {"systemName", "QString", "'KeldaOS'", Writable},
    {"bridge", "QVariant", "agentBridge", Writable},
    {"sdk", "QVariant", "loomraSDK", Writable},
    {"barWidth", "int", "720", Writable},
    {"barHeight", "int", "56", Writable},
    {"barRadius", "int", "18", Writable},
    {"bubbleSize", "int", "56", Writable},
    {"bubbleMargin", "int", "20", Writable},
    {"chatMinHeight", "int", "260", Writable},
    {"chatPanelBottomMargin", "int", "10", Writable},
    {"chatTopSafePadding", "int", "24", Writable},
    {"screenWidth", "double", "1280", ReadOnly},
    {"screenHeight", "double", "800", ReadOnly},
    {"shortcutHintHeight", "int", "20", ReadOnly},
    {"chatHeightBudget", "int", "690", ReadOnly},
    {"chatMaxHeight", "int", "544", ReadOnly},
    {"compactMode", "bool", "false", Writable},
    {"chatExpanded", "bool", "false", Writable},
    {"userExpanded", "bool", "false", Writable},
    {"settingsPanelOpen", "bool", "false", Writable},
    {"windowFade", "double", "1", Writable},
    {"windowEffects", "QVariant", "undefined", Writable},
    // the conversation
    {"contextWindowSize", "int", "8", ReadOnly},
    {"lastInputMode", "QString", "'text'", Writable},
    {"pendingUiJson", "QString", "''", Writable},
    {"stickyPhaseLabel", "QString", "''", Writable},
    {"activePhaseLabel", "QString", "''", ReadOnly},
    {"sessionUsageInput", "int", "0", Writable},
    {"sessionUsageOutput", "int", "0", Writable},
    {"sessionUsageTotal", "int", "0", ReadOnly},
    {"usageMax", "int", "50000", ReadOnly},
    {"usageProgress", "double", "0", ReadOnly},
    {"availableAgents", "QVariant", "[{ 'id': 'auto', 'name': 'Assistant' }]", Writable},
    {"currentAgentId", "QString", "'auto'", Writable},
    {"currentModelId", "QString", "''", Writable},
    {"welcomeTitle", "QString", "'Welcome!'", Writable},
    {"welcomeSubtitle", "QString", "'Ask anything — I’ll help you with actions, settings, logs, and guidance.'", Writable},
    // plans
    {"pendingPlan", "QVariant", "null", Writable},
    {"planExecuting", "bool", "false", Writable},
    {"planExecutingVisible", "bool", "false", Writable},
    {"planDoneLabel", "QString", "''", Writable},
    {"lastActionId", "QString", "''", Writable},
    {"pendingPlanMessage", "QString", "''", Writable},
    {"planCardShown", "bool", "false", ReadOnly},
    {"undoShown", "bool", "false", ReadOnly},
    {"undoSeconds", "int", "10", ReadOnly},
    {"undoSecondsLeft", "int", "10", Writable},
    {"pendingChatAfterPlan", "QString", "''", Writable},
    {"planRequestInFlight", "bool", "false", Writable},
    // voice
    {"voiceConfirmPending", "bool", "false", Writable},
    {"voiceConfirmText", "QString", "''", Writable},
    {"voiceConfirmTotal", "int", "4", ReadOnly},
    {"voiceConfirmCountdown", "int", "4", Writable},
    {"voiceRephrasing", "bool", "false", Writable},
    {"voiceComposeBase", "QString", "''", Writable},
    {"voiceManualSubmit", "bool", "false", ReadOnly},
    // models
    {"modelsList", "QVariant", "[]", Writable},
    {"freeModelsList", "QVariant", "[]", Writable},
    {"modelsLoading", "bool", "false", Writable},
    {"modelsStatusMessage", "QString", "''", Writable},
    {"pendingDefaultModelId", "QString", "''", Writable},
    {"modelSearchFilter", "QString", "''", Writable},
    {"modelsRetryAttempts", "int", "0", Writable},
    {"freeCheckRunning", "bool", "false", Writable},
    {"freeCheckResults", "QVariant", "[]", Writable},
    {"freeCheckRecommended", "QVariant", "null", Writable},
    {"freeCheckStatus", "QString", "''", Writable},
    {"tokenProvider", "QString", "''", Writable},
    {"tokenInput", "QString", "''", Writable},
    // slash commands and files
    {"slashMenuVisible", "bool", "false", Writable},
    {"slashFilter", "QString", "''", Writable},
    {"slashSessionListPending", "bool", "false", Writable},
    {"slashSessionPopupVisible", "bool", "false", Writable},
    {"slashAttachedFiles", "QVariant", "[]", Writable},
    {"maxAttachedFiles", "int", "2", ReadOnly},
    {"maxFileChars", "int", "2000", ReadOnly},
    {"sessionsList", "QVariant", "[]", Writable},
    {"sessionsLoading", "bool", "false", Writable},
    {"sessionsStatusMessage", "QString", "''", Writable},
    {"renamingSessionId", "QString", "''", Writable},
    {"renamingSessionName", "QString", "''", Writable},
    {"deletingAllSessions", "bool", "false", Writable},
    {"pendingSessionDeletes", "QVariant", "[]", Writable},
    {"sessionDeleteStatusMessage", "QString", "''", Writable},
    // workspaces
    {"toolsEnabled", "bool", "true", ReadOnly},
    {"workspaceTemplateCatalogBase", "QVariant", s_templates, ReadOnly},
    {"workspaceTemplateCatalog", "QVariant", s_templates, Writable},
    {"showAdvancedAssistant", "bool", "false", Writable},
    {"workspaceTemplateStatusMessage", "QString", "''", Writable},
    {"wiObservationEnabled", "bool", "true", Writable},
    {"wiDwellSummaryText", "QString", "''", Writable},
    {"wiSuggestionNotifyStatus", "QString", "''", Writable},
    {"workspaceSuggestionDialogJson", "QString", "''", Writable},
    {"workspaceSuggestionDialogData", "QVariant", "({})", Writable},
    {"workspaceSuggestionDialogOpen", "bool", "false", Writable},
    {"aiRuntimeEnabledUi", "bool", "true", Writable},
    {"aiRuntimeGatingIndex", "int", "0", Writable},
    {"aiRuntimeStatusLine", "QString", "''", Writable},
    {"wiNotifyBarLine", "QString", "''", Writable},
    // the dashboard
    {"dashSessionHeapMb", "double", "0", Writable},
    {"dashSessionHeapTotalMb", "double", "0", Writable},
    {"dashBridgeRssMb", "double", "0", Writable},
    {"dashBridgeExternalMb", "double", "0", Writable},
    {"dashToviServiceMb", "double", "0", Writable},
    {"dashCpuPercent", "double", "0", Writable},
    {"dashFeedbackLikes", "double", "0", Writable},
    {"dashFeedbackDislikes", "double", "0", Writable},
    {"dashFeedbackTotal", "double", "0", Writable},
    {"dashErrorTotal", "double", "0", Writable},
    {"dashWarnTotal", "double", "0", Writable},
    {"dashReqCount", "double", "0", Writable},
    {"dashActionCount", "double", "0", Writable},
    {"dashUptimeMs", "double", "0", Writable},
    {"appLogErrors", "double", "0", Writable},
    {"appLogWarnings", "double", "0", Writable},
    {"appLastErrorTs", "double", "0", Writable},
    {"dashErrorDir", "QString", "'stable'", Writable},
    {"dashWarnDir", "QString", "'stable'", Writable},
    {"dashLogEntries", "QVariant", "[]", Writable},
    {"appLogEntries", "QVariant", "[]", Writable},
    {"serviceActive", "QString", "'unknown'", Writable},
    {"serviceSub", "QString", "'unknown'", Writable},
    {"serviceEnabled", "QString", "'unknown'", Writable},
    {"serviceUptimeSec", "double", "0", Writable},
    {"serviceRestarts", "double", "0", Writable},
    {"serviceMemoryMB", "double", "0", Writable},
    {"powerProfileActive", "QString", "''", Writable},
    {"powerProfileAvailable", "QVariant", "[]", Writable},
    {"systemReportData", "QVariant", "({})", Writable},
    {"systemReportLoading", "bool", "false", Writable},
    {"dashboardPolling", "bool", "false", Writable},
    {"runtimeMode", "QString", "'embedded'", Writable},
    {"runtimePid", "double", "0", Writable},
    {"runtimeConnected", "bool", "false", Writable},
    {"runtimeHealthLine", "QString", "''", Writable},
    {"remindersStatus", "QString", "''", Writable},
};

const Property s_agent[] = {
    {"isThinking", "bool", "false", ReadOnly},
    {"status", "QString", "'idle'", ReadOnly},
    {"currentAgent", "QString", "'auto'", Writable},
    {"currentModel", "QString", "''", Writable},
    {"activePhase", "QString", "''", ReadOnly},
    {"routedAgent", "QString", "''", ReadOnly},
    {"planStepIndex", "int", "-1", ReadOnly},
    {"planStepTotal", "int", "0", ReadOnly},
    {"planStepCapability", "QString", "''", ReadOnly},
    {"planStepPhase", "QString", "''", ReadOnly},
    {"inputMode", "QString", "'text'", Writable},
};
// clang-format on

//! Functions with their number of parameters.
struct Function
{
    const char *name;
    int parameters;
};

const Function s_functions[] = {
    // the window
    {"centerOnScreen", 0},
    {"positionBubble", 0},
    {"shrinkToCompactBubble", 0},
    {"handleEscapeKey", 0},
    {"applyWindowBlurBehind", 0},
    // the conversation
    {"appendUserMessage", 1},
    {"appendAgentMessage", 1},
    {"appendSystemMessage", 1},
    {"sendToBridge", 1},
    {"scrollToBottom", 0},
    {"buildChatContext", 0},
    {"refreshResponseSuggestions", 1},
    {"initResponseSuggestions", 0},
    {"activateResponseSuggestion", 1},
    {"sendChatFeedback", 3},
    {"loadAvailableAgents", 0},
    {"updateCurrentAgent", 0},
    // plans
    {"requestPlan", 1},
    {"runPlan", 0},
    {"cancelPlan", 0},
    {"undoLastAction", 0},
    {"dismissUndo", 0},
    {"isReadOnlyPlan", 1},
    {"isQueryProcessing", 0},
    {"stopActiveQuery", 0},
    // voice
    {"voiceConfirmSend", 0},
    {"voiceConfirmCancel", 0},
    {"voiceRephrase", 0},
    {"voiceJoinText", 2},
    {"voiceApplyComposeField", 1},
    {"announce", 1},
    // models, slash commands
    {"refreshModels", 0},
    {"syncSettingsCombos", 0},
    {"rebuildSettingsModelsListModel", 0},
    {"selectSettingsModel", 1},
    {"applyPendingDefaultModel", 0},
    {"checkFreeProviders", 0},
    {"applyRecommendedModel", 0},
    {"refreshTokenStatus", 0},
    {"saveProviderToken", 0},
    {"tryHandleSlashCommand", 1},
    {"filteredSlashCommands", 0},
    {"buildFileContextPrefix", 0},
    {"sessionSwitchTo", 1},
    {"sessionDelete", 1},
    {"refreshSessionsList", 0},
    {"sessionCreate", 0},
    {"deleteAllSessions", 0},
    // workspaces
    {"refreshRuntimePanels", 0},
    {"mapGatingToIndex", 1},
    {"loadWorkspaceTemplateCatalogFromPrefs", 0},
    {"mergeWorkspaceTemplatesFromBridge", 1},
    {"syncWorkspaceTemplatePrefsToBridge", 0},
    {"setWorkspaceTemplateEnabled", 2},
    {"prepareWorkspaceTemplate", 1},
};

const char *const s_agentFunctions[] = {
    "isServiceAvailable", "sendIntent",          "cancelRequest",   "rephraseText",
    "handleUiAction",     "sendMessageFeedback", "copyToClipboard",
};

const char *const s_agentSignals[] = {
    "agentReplied(QString)",          "structuredReplyReceived(QString)",
    "uiActionResult(QString)",        "usageReported(int,int)",
    "toolExecuted(QString,QString)",  "thinkingChanged(bool)",
    "statusChanged(QString)",         "errorOccurred(QString)",
    "rephraseReady(QString,QString)", "actionStarted(QString)",
    "actionFinished(QString)",        "currentAgentChanged(QString)",
    "currentModelChanged(QString)",   "activePhaseChanged(QString)",
    "routedAgentChanged(QString)",    "planStepChanged()",
    "inputModeChanged(QString)",
};

QByteArray typeOf(const QMetaProperty &property)
{
    return property.userType() == qMetaTypeId<QVariant>() ? QByteArrayLiteral("QVariant") : property.typeName();
}

} // namespace

//! The members that everything else builds on. A change of name or type breaks other parts, even ones that are still to
//! be written.
class tst_OmniBarMembers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void windowProperties_data();
    void windowProperties();
    void agentProperties_data();
    void agentProperties();
    void functions_data();
    void functions();
    void agentFunctions();
    void agentSignals();
    void models();
    void agentMenuNeverOpens();
    void badgeIsHidden();
    void welcomeIsShownNowhere();

private:
    void compare(const QObject *object, const Property &property, const QString &owner);

    std::unique_ptr<OmniBarFixture> m_bar;
};

void tst_OmniBarMembers::initTestCase()
{
    m_bar = std::make_unique<OmniBarFixture>();
    QVERIFY(m_bar->open());
    QVERIFY(m_bar->settle());
    QTRY_VERIFY(m_bar->item("chatPanel"));
}

void tst_OmniBarMembers::cleanupTestCase()
{
    m_bar.reset();
}

void tst_OmniBarMembers::compare(const QObject *object, const Property &expected, const QString &owner)
{
    const QMetaObject *type = object->metaObject();
    const QMetaProperty property = type->property(type->indexOfProperty(expected.name));
    QVERIFY(property.isValid());
    QCOMPARE(typeOf(property), QByteArray(expected.type));
    QCOMPARE(property.isWritable(), expected.access == Writable);
    // Objects are compared by identity, lists by their items.
    const QString name = owner + QLatin1Char('.') + QLatin1String(expected.name);
    const QString question = QStringLiteral("(function(a, b) { return a === b || (Array.isArray(a) ? JSON.stringify(a) "
                                            "=== JSON.stringify(b) : typeof a === 'object' && a !== null && b !== null "
                                            "&& String(a) === String(b)) || String(a) === b; })(%1, %2)")
                                 .arg(name, QString::fromUtf8(expected.first));
    const QString value = m_bar->evaluate(QStringLiteral("String(") + name + QLatin1Char(')')).toString();
    QVERIFY2(m_bar->evaluate(question).toBool(), qPrintable(value));
}

void tst_OmniBarMembers::windowProperties_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < int(std::size(s_window)); ++i) {
        QTest::newRow(s_window[i].name) << i;
    }
}

void tst_OmniBarMembers::windowProperties()
{
    QFETCH(int, index);

    compare(m_bar->window(), s_window[index], QStringLiteral("omniBar"));
}

void tst_OmniBarMembers::agentProperties_data()
{
    QTest::addColumn<int>("index");

    for (int i = 0; i < int(std::size(s_agent)); ++i) {
        QTest::newRow(s_agent[i].name) << i;
    }
}

void tst_OmniBarMembers::agentProperties()
{
    QFETCH(int, index);

    QObject *agent = m_bar->property("bridge").value<QObject *>();
    QVERIFY(agent);
    compare(agent, s_agent[index], QStringLiteral("agentBridge"));
    const QMetaObject *type = agent->metaObject();
    QVERIFY(type->property(type->indexOfProperty(s_agent[index].name)).hasNotifySignal());
}

void tst_OmniBarMembers::functions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("parameters");

    for (const Function &function : s_functions) {
        QTest::newRow(function.name) << QString::fromLatin1(function.name) << function.parameters;
    }
}

void tst_OmniBarMembers::functions()
{
    QFETCH(QString, name);
    QFETCH(int, parameters);

    const QString function = QStringLiteral("omniBar.") + name;
    QCOMPARE(m_bar->evaluate(QStringLiteral("typeof ") + function).toString(), QStringLiteral("function"));
    const QMetaObject *type = m_bar->window()->metaObject();
    bool isFound = false;
    for (int i = 0; i < type->methodCount(); ++i) {
        isFound =
            isFound || (type->method(i).name() == name.toLatin1() && type->method(i).parameterCount() == parameters);
    }
    QVERIFY(isFound);
}

void tst_OmniBarMembers::agentFunctions()
{
    for (const char *name : s_agentFunctions) {
        const QString question = QStringLiteral("typeof agentBridge.%1").arg(QLatin1String(name));
        QVERIFY2(m_bar->evaluate(question).toString() == QStringLiteral("function"), name);
    }
    // The window probes for these and must not find them.
    for (const char *name : {"setCurrentAgent", "sendIntentWithContext"}) {
        const QString question = QStringLiteral("typeof agentBridge.%1").arg(QLatin1String(name));
        QVERIFY2(m_bar->evaluate(question).toString() == QStringLiteral("undefined"), name);
    }
}

void tst_OmniBarMembers::agentSignals()
{
    const QMetaObject *type = m_bar->property("bridge").value<QObject *>()->metaObject();
    for (const char *signature : s_agentSignals) {
        const int index = type->indexOfSignal(signature);
        QVERIFY2(index >= 0, signature);
    }
}

void tst_OmniBarMembers::models()
{
    QCOMPARE(m_bar->evaluate("chatModel.count").toInt(), 0);
    QVERIFY(m_bar->property("chatModel").value<QObject *>()->inherits("QQmlListModel"));
    QCOMPARE(m_bar->evaluate("responseSuggestionsModel.count").toInt(), 4);
    QVERIFY(m_bar->property("responseSuggestionsModel").value<QObject *>()->inherits("QQmlListModel"));
    QObject *const listed = m_bar->property("settingsModelsListModel").value<QObject *>();
    QVERIFY(listed && listed->inherits("QQmlListModel"));
    QCOMPARE(m_bar->property("settingsModelsListRef").value<QObject *>(), listed);
    QVERIFY(m_bar->property("appearanceStore").value<QObject *>());
    QVERIFY(m_bar->property("voiceConfirmTimer").value<QObject *>()->inherits("QQmlTimer"));
    const QMetaObject *type = m_bar->window()->metaObject();
    QVERIFY(!type->property(type->indexOfProperty("appearanceStore")).isWritable());
}

void tst_OmniBarMembers::agentMenuNeverOpens()
{
    QTRY_VERIFY(m_bar->property("agentMenu").value<QObject *>());
    QObject *menu = m_bar->property("agentMenu").value<QObject *>();
    QCOMPARE(menu->property("title").toString(), QStringLiteral("Select Agent"));
    QCOMPARE(menu->property("enabled").toBool(), false);
    QCOMPARE(menu->property("opened").toBool(), false);
    QCOMPARE(menu->property("visible").toBool(), false);
}

void tst_OmniBarMembers::badgeIsHidden()
{
    QQuickItem *badge = m_bar->item("unreadBadge");
    QVERIFY(badge);
    QCOMPARE(badge->property("color").value<QColor>(), QColor(QStringLiteral("#FF3D3D")));
    QCOMPARE(badge->size(), QSizeF(8, 8));
    QCOMPARE(badge->position(), QPointF(badge->parentItem()->width() - 12, 4));
    QVERIFY(!badge->isVisible());
}

void tst_OmniBarMembers::welcomeIsShownNowhere()
{
    const QString title = m_bar->property("welcomeTitle").toString();
    const QString subtitle = m_bar->property("welcomeSubtitle").toString();
    const auto shown = m_bar->itemsWhere(m_bar->window()->contentItem(), [&](QQuickItem *item) {
        const QString text = item->property("text").toString();
        return text == title || text == subtitle;
    });
    QVERIFY(shown.isEmpty());
}

REGISTER_TEST(tst_OmniBarMembers, QGuiApplication)

#include "tst_OmniBarMembers.moc"
