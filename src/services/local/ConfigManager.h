// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <KConfigGroup>
#include <KSharedConfig>

#include <QObject>
#include <QStringList>

//! The application's own settings, known to QML as configManager: API key, projects, workspace preferences.
//!
//! They lie in the application's KConfig file, loomra-kderc. A change stays in memory until save(), which whoever
//! changes something calls, and which the destructor calls as well. No operation reports a failure: what can't be
//! written is lost. Main thread only.
class ConfigManager : public QObject
{
    Q_OBJECT

    Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY apiKeyChanged)
    //! A directory path, or whatever was typed so far.
    Q_PROPERTY(QString currentProject READ currentProject WRITE setCurrentProject NOTIFY currentProjectChanged)
    //! Directories that were the current project, newest first.
    Q_PROPERTY(QStringList recentProjects READ recentProjects NOTIFY recentProjectsChanged)

public:
    //! Opens the file and loads what it holds. The about-data must be set before, as it names the file.
    explicit ConfigManager(QObject *parent = nullptr);
    //! Saves.
    ~ConfigManager() override;

    QString apiKey() const { return m_apiKey; }
    QString currentProject() const { return m_currentProject; }
    QStringList recentProjects() const { return m_recentProjects; }

    void setApiKey(const QString &apiKey);
    //! A path of an existing directory also goes to the front of the recent projects, of which 10 are kept.
    void setCurrentProject(const QString &path);

    //! Takes the values that the opened file had when it was last read from the disk. No signal tells what changed:
    //! the caller reads the properties again.
    Q_INVOKABLE void load();
    //! Writes all values to the disk.
    Q_INVOKABLE void save();

    //! Whether the template was switched on. Slugs are compared by case.
    Q_INVOKABLE bool isWorkspaceTemplateSlugEnabled(const QString &slug) const;
    //! Switches a template on or off, without a signal. An empty slug is ignored.
    Q_INVOKABLE void setWorkspaceTemplateSlugEnabled(const QString &slug, bool enabled);

    //! Whether the user is reminded of workspace suggestions, and how often. They are kept for whoever reminds, who
    //! also sees to limits, signals and saving. What load() reads is within 1 to 1440 minutes.
    static int boundedReminderMinutes(int minutes);
    bool workspaceSuggestionReminderEnabled() const { return m_workspaceSuggestionReminderEnabled; }
    void setWorkspaceSuggestionReminderEnabled(bool enabled) { m_workspaceSuggestionReminderEnabled = enabled; }
    int workspaceSuggestionReminderMinutes() const { return m_workspaceSuggestionReminderMinutes; }
    void setWorkspaceSuggestionReminderMinutes(int minutes) { m_workspaceSuggestionReminderMinutes = minutes; }

Q_SIGNALS:
    void apiKeyChanged();
    void currentProjectChanged();
    void recentProjectsChanged();
    //! The configuration of the agent tool has changed.
    void loomraConfigChanged();

private:
    static constexpr int s_usualMinutes = 5;

    const KSharedConfig::Ptr m_config;
    KConfigGroup m_general;

    QString m_apiKey;
    QString m_currentProject;
    QStringList m_recentProjects;
    bool m_workspaceSuggestionReminderEnabled = false;
    int m_workspaceSuggestionReminderMinutes = s_usualMinutes;
    QStringList m_enabledWorkspaceTemplateSlugs; // in the order in which they were switched on
};
