// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NativeObjects.h"

#include "AgentBridge.h"
#include "Arc.h"
#include "ChatModel.h"
#include "CodeDirection.h"
#include "ConfigManager.h"
#include "FileCheck.h"
#include "FileService.h"
#include "I18nHelper.h"
#include "LoomraSDK.h"
#include "Motion.h"
#include "ProjectModel.h"
#include "TokenUsageService.h"
#include "VoiceBridge.h"

#include <QQmlContext>
#include <QQmlEngine>

namespace
{

//! The types of the modules that are written in C++.
void registerTypes()
{
    qmlRegisterType<Arc>("org.kde.loomra.components.controls", 1, 0, "Arc");
    qmlRegisterType<ChatModel>("org.kde.loomra", 1, 0, "ChatModel");
    qmlRegisterType<CodeDirection>("org.kde.loomra", 1, 0, "CodeDirection");
    qmlRegisterType<FileCheck>("org.kde.loomra", 1, 0, "FileCheck");
    qmlRegisterType<ProjectModel>("org.kde.loomra", 1, 0, "ProjectModel");
    Motion::registerSingleton();
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

    // The order of creation and of the context properties is fixed, because it is that of the parent's children, in
    // which they are destroyed.
    context->setContextProperty(QStringLiteral("i18n"), new I18nHelper(parent));
    auto *configManager = new ConfigManager(parent);
    auto *loomraSDK = new LoomraSDK(configManager, parent);
    auto *fileService = new FileService(parent);
    auto *agentBridge = new AgentBridge(parent);
    auto *tokenUsageService = new TokenUsageService(parent);
    auto *voiceBridge = new VoiceBridge(parent);

    context->setContextProperty(QStringLiteral("toviWiAdvancedUiDefault"), advancedWorkspaceInterface());
    context->setContextProperty(QStringLiteral("configManager"), configManager);
    context->setContextProperty(QStringLiteral("loomraSDK"), loomraSDK);
    context->setContextProperty(QStringLiteral("fileService"), fileService);
    context->setContextProperty(QStringLiteral("agentBridge"), agentBridge);
    context->setContextProperty(QStringLiteral("tokenUsageService"), tokenUsageService);
    context->setContextProperty(QStringLiteral("voiceBridge"), voiceBridge);
    return loomraSDK;
}

} // namespace NativeObjects
