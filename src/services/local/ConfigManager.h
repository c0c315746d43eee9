// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ToolConfig.h"

#include <KConfigGroup>
#include <KSharedConfig>

#include <QJsonObject>
#include <QObject>
#include <QStringList>

//! The application's own settings, known to QML as configManager: API key, projects, workspace preferences; and the
//! configuration file of the agent tool.
//!
//! The settings are stored in the application's KConfig file, loomra-kderc, which other processes of the application
//! write too. Changes stay in memory until the caller, or the destructor, calls save(). What can't be written is
//! logged, and written by a later save() if there is one. Main thread only.
class ConfigManager : public QObject
{
    Q_OBJECT

    Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY apiKeyChanged)
    //! A directory path, or an incomplete one while the user is typing.
    Q_PROPERTY(QString currentProject READ currentProject WRITE setCurrentProject NOTIFY currentProjectChanged)
    //! Directories that were the current project, most recent first.
    Q_PROPERTY(QStringList recentProjects READ recentProjects NOTIFY recentProjectsChanged)

public:
    //! Loads the file. The about-data must be set before, because it determines the file's name.
    explicit ConfigManager(QObject *parent = nullptr);
    //! Saves.
    ~ConfigManager() override;

    QString apiKey() const { return m_values.apiKey; }
    QString currentProject() const { return m_values.currentProject; }
    QStringList recentProjects() const { return m_values.recentProjects; }

    void setApiKey(const QString &apiKey);
    //! If the directory exists, it is also moved to the front of the recent projects, of which 10 are kept.
    void setCurrentProject(const QString &path);

    //! Restores the values of the file as it was last read; the disk is not read again. Emits no signals, so the caller
    //! must read the properties again.
    Q_INVOKABLE void load();
    //! Writes all values to the disk, except those that another process has changed there and this one has not since it
    //! loaded or saved them. The values in memory stay.
    Q_INVOKABLE void save();

    //! Whether the template is enabled. Slugs are case-sensitive.
    Q_INVOKABLE bool isWorkspaceTemplateSlugEnabled(const QString &slug) const;
    //! Enables or disables a template, without a signal. An empty slug is ignored.
    Q_INVOKABLE void setWorkspaceTemplateSlugEnabled(const QString &slug, bool enabled);

    //! Whether the user is reminded of workspace suggestions, and how often. The setters neither check the range nor
    //! save nor emit a signal; LoomraSDK, which sends the reminders, does. load() limits the value to 1 to 1440
    //! minutes.
    static int boundedReminderMinutes(int minutes);
    bool workspaceSuggestionReminderEnabled() const { return m_values.reminderEnabled; }
    void setWorkspaceSuggestionReminderEnabled(bool enabled) { m_values.reminderEnabled = enabled; }
    int workspaceSuggestionReminderMinutes() const { return m_values.reminderMinutes; }
    void setWorkspaceSuggestionReminderMinutes(int minutes) { m_values.reminderMinutes = minutes; }

    // ---- The agent tool's file, see ToolConfig

    //! Reads the file again; sections that were updated but not saved are lost.
    Q_INVOKABLE QJsonObject getLoomraConfig() { return m_toolConfig.load(); }
    Q_INVOKABLE void setLoomraConfig(const QJsonObject &config) { m_toolConfig.set(config); }
    //! The agents, which older files call modes.
    Q_INVOKABLE QJsonObject getAgents() const;
    Q_INVOKABLE QJsonObject getTools() const;
    Q_INVOKABLE QJsonObject getPermissions() const;
    Q_INVOKABLE QJsonObject getMcp() const;
    Q_INVOKABLE QJsonObject getProviders() const;
    //! These replace a whole section in memory.
    Q_INVOKABLE void updateAgents(const QJsonObject &agents);
    Q_INVOKABLE void updateTools(const QJsonObject &tools);
    Q_INVOKABLE void updatePermissions(const QJsonObject &permissions);
    Q_INVOKABLE void updateMcp(const QJsonObject &mcp);
    Q_INVOKABLE void updateProviders(const QJsonObject &providers);
    //! @return whether the file was written
    Q_INVOKABLE bool saveLoomraConfig() { return m_toolConfig.save(); }
    //! Creates the directory of the file.
    Q_INVOKABLE QString getLoomraConfigPath() const { return ToolConfig::path(); }
    Q_INVOKABLE QString getLoomraConfigAsString() const { return m_toolConfig.asString(); }
    //! The address of the schema of a new file.
    Q_INVOKABLE QString getLoomraConfigSchema() const { return ToolConfig::schema(); }
    //! False if the file could not be read or parsed: the configuration is empty, and saving it replaces the file.
    Q_INVOKABLE bool isLoomraConfigValid() const { return m_toolConfig.isValid(); }
    //! Whether somebody else has written the file since it was read or saved here. Reads the file.
    Q_INVOKABLE bool isLoomraConfigChangedOnDisk() const { return m_toolConfig.isChangedOnDisk(); }

Q_SIGNALS:
    void apiKeyChanged();
    void currentProjectChanged();
    void recentProjectsChanged();
    //! The configuration of the agent tool was changed here, or saved. Connect to it with a queued connection only: it
    //! is emitted with a mutex locked that the functions of the configuration need.
    void loomraConfigChanged();

private:
    struct Values
    {
        QString apiKey;
        QString currentProject;
        QStringList recentProjects;
        bool reminderEnabled = false;
        int reminderMinutes = 5;
        QStringList templateSlugs; // enabled ones, in the order in which they were switched on
    };
    static Values read(const KConfigGroup &general);

    const KSharedConfig::Ptr m_config;
    KConfigGroup m_general;

    Values m_values;
    //! As last loaded or saved. Values that differ from these were changed by this process.
    Values m_savedValues;

    ToolConfig m_toolConfig {[this] { Q_EMIT loomraConfigChanged(); }};
};
