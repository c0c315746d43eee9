// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "Conversation.h"
#include "ScriptedSdk.h"

#include <QJsonArray>
#include <QJsonObject>

#include <memory>

//! The window with a scripted SDK client that offers workspaces and the AI runtime, and with settings in memory.
class AssistantWindow : public Conversation
{
public:
    AssistantWindow();

    //! Opens the window, and brings client and settings to their initial state.
    bool begin();
    //! Opens the Assistant tab. @param isAdvanced with the advanced options
    bool openTab(bool isAdvanced = false);
    using Conversation::openTab;

    ScriptedSdk &sdk() { return *m_sdk; }
    //! What was stored and saved since the last call, in order.
    QStringList takeStored();
    //! The templates that the user wants on.
    void setPreferred(const QStringList &slugs);

    //! A workspace of the bridge.
    static QJsonObject workspace(int id, const QString &slug, const QString &status);
    void sendWorkspaces(const QJsonArray &workspaces);
    //! The client passes a suggestion on to the window.
    void suggest(const QJsonObject &notification);
    //! As JSON, in the form that the window gets.
    static QString json(const QJsonObject &notification);

    //! An item of the row of a template.
    QQuickItem *inTemplate(int row, const char *name) const;
    bool isOn(QQuickItem *control) const { return control->property("checked").toBool(); }
    QString textOf(const char *name) const;

private:
    std::unique_ptr<ScriptedSdk> m_sdk;
    QObject *m_config;
};
