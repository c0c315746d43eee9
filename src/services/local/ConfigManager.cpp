// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigManager.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

namespace
{

constexpr int s_maximumRecentProjects = 10;

constexpr int s_minimumMinutes = 1;
constexpr int s_maximumMinutes = 1440; // a day

constexpr char s_general[] = "General";
constexpr char s_apiKey[] = "ApiKey";
constexpr char s_currentProject[] = "CurrentProject";
constexpr char s_recentProjects[] = "RecentProjects";
constexpr char s_reminderEnabled[] = "WorkspaceSuggestionReminderEnabled";
constexpr char s_reminderMinutes[] = "WorkspaceSuggestionReminderMinutes";
constexpr char s_templateSlugs[] = "EnabledWorkspaceTemplateSlugs";

// Sections of the agent tool's file.
const QString s_agents = QStringLiteral("agent");
const QString s_modes = QStringLiteral("mode");
const QString s_tools = QStringLiteral("tools");
const QString s_permissions = QStringLiteral("permission");
const QString s_mcp = QStringLiteral("mcp");
const QString s_providers = QStringLiteral("provider");

//! Whether KConfig can lock a file that it writes. If it can't, because the directory is read-only or the disk is full,
//! KConfig::sync() leaves a mutex locked, and the next call never returns.
bool canBeLocked(const QString &file)
{
    QDir().mkpath(QFileInfo(file).path());
    QLockFile lock(file + QLatin1String(".lock"));
    // KConfig waits for a lock that another process holds.
    return lock.tryLock(0) || lock.error() == QLockFile::LockFailedError;
}

} // namespace

ConfigManager::ConfigManager(QObject *parent)
    : QObject(parent)
    , m_config(KSharedConfig::openConfig())
    , m_general(m_config, s_general)
{
    load();
}

ConfigManager::~ConfigManager()
{
    save();
}

void ConfigManager::setApiKey(const QString &apiKey)
{
    if (apiKey != m_values.apiKey) {
        m_values.apiKey = apiKey;
        Q_EMIT apiKeyChanged();
    }
}

void ConfigManager::setCurrentProject(const QString &path)
{
    if (path == m_values.currentProject) {
        return;
    }
    m_values.currentProject = path;
    // While the user types a path, most of its prefixes don't exist. Only existing directories count as recent.
    if (!path.isEmpty() && QDir(path).exists()) {
        m_values.recentProjects.removeAll(path);
        m_values.recentProjects.prepend(path);
        m_values.recentProjects = m_values.recentProjects.mid(0, s_maximumRecentProjects);
        Q_EMIT recentProjectsChanged();
    }
    Q_EMIT currentProjectChanged();
}

int ConfigManager::boundedReminderMinutes(int minutes)
{
    return qBound(s_minimumMinutes, minutes, s_maximumMinutes);
}

ConfigManager::Values ConfigManager::read(const KConfigGroup &general)
{
    Values values;
    values.apiKey = general.readEntry(s_apiKey, values.apiKey);
    values.currentProject = general.readEntry(s_currentProject, values.currentProject);
    values.recentProjects = general.readEntry(s_recentProjects, values.recentProjects);
    values.reminderEnabled = general.readEntry(s_reminderEnabled, values.reminderEnabled);
    // With a text as default KConfig returns the raw entry. Intentional: an entry that is no number counts as 0 and not
    // as the default.
    const QVariant defaultMinutes(QString::number(values.reminderMinutes));
    values.reminderMinutes = boundedReminderMinutes(general.readEntry(s_reminderMinutes, defaultMinutes).toInt());
    values.templateSlugs = general.readEntry(s_templateSlugs, values.templateSlugs);
    return values;
}

void ConfigManager::load()
{
    m_values = read(m_general);
    m_savedValues = m_values;
}

void ConfigManager::save()
{
    const QString path =
        QStandardPaths::writableLocation(m_config->locationType()) + QLatin1Char('/') + m_config->name();
    if (!canBeLocked(path)) {
        qWarning(
            "ConfigManager: the settings can't be saved, because the directory is read-only or the disk is full: %s",
            qUtf8Printable(path));
        return;
    }
    // m_config has the file as it was read last, and knows nothing of the keys that the file didn't have then.
    const KConfig file(m_config->name(), m_config->openFlags(), m_config->locationType());
    const Values onDisk = read(KConfigGroup(&file, s_general));
    const auto write = [&](const char *key, auto Values::*value) {
        const bool isChangedHere = m_values.*value != m_savedValues.*value;
        const bool isChangedOnDisk = onDisk.*value != m_savedValues.*value;
        if (isChangedHere || !isChangedOnDisk) {
            m_general.writeEntry(key, m_values.*value);
        }
    };
    write(s_apiKey, &Values::apiKey);
    write(s_currentProject, &Values::currentProject);
    write(s_recentProjects, &Values::recentProjects);
    write(s_reminderEnabled, &Values::reminderEnabled);
    write(s_reminderMinutes, &Values::reminderMinutes);
    write(s_templateSlugs, &Values::templateSlugs);
    m_config->sync();
    m_savedValues = m_values;
}

bool ConfigManager::isWorkspaceTemplateSlugEnabled(const QString &slug) const
{
    return m_values.templateSlugs.contains(slug);
}

void ConfigManager::setWorkspaceTemplateSlugEnabled(const QString &slug, bool enabled)
{
    if (slug.isEmpty()) {
        return;
    }
    if (!enabled) {
        m_values.templateSlugs.removeAll(slug);
    } else if (!m_values.templateSlugs.contains(slug)) {
        m_values.templateSlugs.append(slug);
    }
}

QJsonObject ConfigManager::getAgents() const
{
    const QJsonObject agents = m_toolConfig.section(s_agents);
    return agents.isEmpty() ? m_toolConfig.section(s_modes) : agents;
}

QJsonObject ConfigManager::getTools() const
{
    return m_toolConfig.section(s_tools);
}

QJsonObject ConfigManager::getPermissions() const
{
    return m_toolConfig.section(s_permissions);
}

QJsonObject ConfigManager::getMcp() const
{
    return m_toolConfig.section(s_mcp);
}

QJsonObject ConfigManager::getProviders() const
{
    return m_toolConfig.section(s_providers);
}

void ConfigManager::updateAgents(const QJsonObject &agents)
{
    m_toolConfig.setSection(s_agents, agents);
}

void ConfigManager::updateTools(const QJsonObject &tools)
{
    m_toolConfig.setSection(s_tools, tools);
}

void ConfigManager::updatePermissions(const QJsonObject &permissions)
{
    m_toolConfig.setSection(s_permissions, permissions);
}

void ConfigManager::updateMcp(const QJsonObject &mcp)
{
    m_toolConfig.setSection(s_mcp, mcp);
}

void ConfigManager::updateProviders(const QJsonObject &providers)
{
    m_toolConfig.setSection(s_providers, providers);
}
