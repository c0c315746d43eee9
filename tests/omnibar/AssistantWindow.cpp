// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AssistantWindow.h"

#include <QJsonDocument>
#include <QTest>

AssistantWindow::AssistantWindow()
    : m_sdk(std::make_unique<ScriptedSdk>(*this))
    , m_config(fake(QStringLiteral("FakeConfig {}")))
{
    m_sdk->setProperty("workspaceIntelAvailable", true);
    m_sdk->setProperty("aiRuntimeAvailable", true);
    provide("configManager", m_config);
}

bool AssistantWindow::begin()
{
    if (!Conversation::begin()) {
        return false;
    }
    setPreferred({});
    invoke("loadWorkspaceTemplateCatalogFromPrefs");
    m_sdk->takeCalls();
    takeStored();
    return true;
}

bool AssistantWindow::openTab(bool isAdvanced)
{
    setProperty("showAdvancedAssistant", isAdvanced);
    return openTab(QStringLiteral("Assistant"));
}

QStringList AssistantWindow::takeStored()
{
    const QStringList stored = m_config->property("calls").toStringList();
    m_config->setProperty("calls", QStringList());
    return stored;
}

void AssistantWindow::setPreferred(const QStringList &slugs)
{
    m_config->property("answers").value<QObject *>()->setProperty("isWorkspaceTemplateSlugEnabled", slugs);
}

QJsonObject AssistantWindow::workspace(int id, const QString &slug, const QString &status)
{
    return {{QStringLiteral("id"), id},
            {QStringLiteral("status"), status},
            {QStringLiteral("behaviorRules"), QJsonObject {{QStringLiteral("slug"), slug}}}};
}

void AssistantWindow::sendWorkspaces(const QJsonArray &workspaces)
{
    m_sdk->emitSignal("workspaceTemplatesListed", workspaces);
}

void AssistantWindow::suggest(const QJsonObject &notification)
{
    m_sdk->emitSignal("workspaceSuggestionShowInAppDialog", json(notification));
}

QString AssistantWindow::json(const QJsonObject &notification)
{
    return QString::fromUtf8(QJsonDocument(notification).toJson(QJsonDocument::Compact));
}

QQuickItem *AssistantWindow::inTemplate(int row, const char *name) const
{
    return itemIn(items(QStringLiteral("templateRow")).value(row), QString::fromLatin1(name));
}

QString AssistantWindow::textOf(const char *name) const
{
    QQuickItem *found = item(QString::fromLatin1(name));
    return isSeen(found) ? found->property("text").toString() : QString();
}
