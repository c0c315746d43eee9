// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ConfigManager.h"
#include "LoomraSDK.h"
#include "OmniBarFixture.h"

#include <QJsonArray>

//! The client outlives the window, as in the program.
struct MainWindowClient
{
    ConfigManager config {nullptr};
    LoomraSDK sdk {&config};
};

//! The main window on a real display, with the real client and a scripted bridge. The client only connects and starts
//! no bridge.
class MainWindowFixture : private MainWindowClient, public OmniBarFixture
{
public:
    MainWindowFixture();
    using MainWindowClient::sdk;

    //! Opens the window; the bridge isn't ready yet.
    bool openWindow();
    //! Opens the window, reports readiness and answers its first requests.
    bool openReady(const QJsonArray &sessions = {});

    //! Answers the next request of this method.
    void answer(const char *method, const QJsonObject &payload);
    //! Answers the requests of a switch to a session.
    void answerSwitch(const QString &id, const QJsonArray &messages);

    //! A property of an item; invalid if there is no such item.
    QVariant of(const char *item, const char *property) const;
    //! The value of an expression that can use the ids of MainWindow.qml.
    QVariant evaluateInWindow(const QString &expression) const;
    //! The texts of all items of this name, in drawing order.
    QStringList texts(const char *itemName) const;
    int rowCount() const { return property("chatModel.count").toInt(); }

    static QJsonObject session(const char *id, const char *title);
    static QJsonObject message(const char *role, const QString &content);
};
