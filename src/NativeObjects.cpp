// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NativeObjects.h"

#include "AgentBridge.h"
#include "ConfigManager.h"
#include "FileCheck.h"
#include "I18nHelper.h"
#include "LoomraSDK.h"
#include "VoiceBridge.h"

#include <QQmlContext>
#include <QQmlEngine>

namespace
{

//! The types of the module that are written in C++. ChatModel and ProjectModel join here.
void registerTypes()
{
    qmlRegisterType<FileCheck>("org.kde.loomra", 1, 0, "FileCheck");
}

} // namespace

namespace NativeObjects
{

bool advancedWorkspaceInterface()
{
    return qEnvironmentVariableIntValue("LOOMRA_WI_ADVANCED_UI") != 0;
}

LoomraSDK *create(QObject *parent, QQmlEngine *engine)
{
    registerTypes();
    QQmlContext *context = engine->rootContext();

    // The whole order is I18nHelper, ConfigManager, LoomraSDK, FileService, AgentBridge, TokenUsageService,
    // VoiceBridge. Keep this order, here and for the context properties below, when an object is added.
    context->setContextProperty(QStringLiteral("i18n"), new I18nHelper(parent));
    auto *configManager = new ConfigManager(parent);
    auto *loomraSDK = new LoomraSDK(configManager, parent);
    auto *agentBridge = new AgentBridge(parent);
    auto *voiceBridge = new VoiceBridge(parent);

    context->setContextProperty(QStringLiteral("toviWiAdvancedUiDefault"), advancedWorkspaceInterface());
    context->setContextProperty(QStringLiteral("configManager"), configManager);
    context->setContextProperty(QStringLiteral("loomraSDK"), loomraSDK);
    context->setContextProperty(QStringLiteral("agentBridge"), agentBridge);
    context->setContextProperty(QStringLiteral("voiceBridge"), voiceBridge);
    return loomraSDK;
}

} // namespace NativeObjects
