// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigManager.h"

#include <QDir>

namespace
{

constexpr int s_maximumRecentProjects = 10;

constexpr int s_minimumMinutes = 1;
constexpr int s_maximumMinutes = 1440; // a day

constexpr char s_apiKey[] = "ApiKey";
constexpr char s_currentProject[] = "CurrentProject";
constexpr char s_recentProjectsKey[] = "RecentProjects";
constexpr char s_reminderEnabled[] = "WorkspaceSuggestionReminderEnabled";
constexpr char s_reminderMinutes[] = "WorkspaceSuggestionReminderMinutes";
constexpr char s_templateSlugs[] = "EnabledWorkspaceTemplateSlugs";

} // namespace

ConfigManager::ConfigManager(QObject *parent)
    : QObject(parent)
    , m_config(KSharedConfig::openConfig())
    , m_general(m_config, "General")
{
    load();
}

ConfigManager::~ConfigManager()
{
    save();
}

void ConfigManager::setApiKey(const QString &apiKey)
{
    if (apiKey != m_apiKey) {
        m_apiKey = apiKey;
        Q_EMIT apiKeyChanged();
    }
}

void ConfigManager::setCurrentProject(const QString &path)
{
    if (path == m_currentProject) {
        return;
    }
    m_currentProject = path;
    // While the user types a path, most of its prefixes don't exist. Only existing directories count as recent.
    if (!path.isEmpty() && QDir(path).exists()) {
        m_recentProjects.removeAll(path);
        m_recentProjects.prepend(path);
        m_recentProjects = m_recentProjects.mid(0, s_maximumRecentProjects);
        Q_EMIT recentProjectsChanged();
    }
    Q_EMIT currentProjectChanged();
}

int ConfigManager::boundedReminderMinutes(int minutes)
{
    return qBound(s_minimumMinutes, minutes, s_maximumMinutes);
}

void ConfigManager::load()
{
    m_apiKey = m_general.readEntry(s_apiKey, QString());
    m_currentProject = m_general.readEntry(s_currentProject, QString());
    m_recentProjects = m_general.readEntry(s_recentProjectsKey, QStringList());
    m_workspaceSuggestionReminderEnabled = m_general.readEntry(s_reminderEnabled, false);
    // With a text as default KConfig returns the raw entry. Intentional: an entry that is no number counts as 0 and not
    // as the default.
    const int minutes = m_general.readEntry(s_reminderMinutes, QVariant(QString::number(s_defaultMinutes))).toInt();
    m_workspaceSuggestionReminderMinutes = boundedReminderMinutes(minutes);
    m_enabledWorkspaceTemplateSlugs = m_general.readEntry(s_templateSlugs, QStringList());
}

void ConfigManager::save()
{
    m_general.writeEntry(s_apiKey, m_apiKey);
    m_general.writeEntry(s_currentProject, m_currentProject);
    m_general.writeEntry(s_recentProjectsKey, m_recentProjects);
    m_general.writeEntry(s_reminderEnabled, m_workspaceSuggestionReminderEnabled);
    m_general.writeEntry(s_reminderMinutes, m_workspaceSuggestionReminderMinutes);
    m_general.writeEntry(s_templateSlugs, m_enabledWorkspaceTemplateSlugs);
    m_config->sync();
}

bool ConfigManager::isWorkspaceTemplateSlugEnabled(const QString &slug) const
{
    return m_enabledWorkspaceTemplateSlugs.contains(slug);
}

void ConfigManager::setWorkspaceTemplateSlugEnabled(const QString &slug, bool enabled)
{
    if (slug.isEmpty()) {
        return;
    }
    if (!enabled) {
        m_enabledWorkspaceTemplateSlugs.removeAll(slug);
    } else if (!m_enabledWorkspaceTemplateSlugs.contains(slug)) {
        m_enabledWorkspaceTemplateSlugs.append(slug);
    }
}
