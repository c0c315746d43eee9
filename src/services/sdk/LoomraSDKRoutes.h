// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "LoomraSDK.h"

#include <QJsonValue>
#include <QLatin1String>

#include <functional>

// What the files of LoomraSDK share among themselves, and nobody else includes.

//! A good reply: its result as it came, and as an object, which is empty where it is none.
struct LoomraSDK::Reply
{
    int id;
    QString label;
    QJsonValue result;
    QJsonObject object;

    QString text(QLatin1String key) const { return object.value(key).toString(); }
    QJsonArray array(QLatin1String key) const { return object.value(key).toArray(); }
};

//! What a reply leads to, by the label that its request left.
struct LoomraSDK::Route
{
    QLatin1String label;
    std::function<void(LoomraSDK &, const Reply &)> handle;
};

//! Its label in the table, its method on the wire, and the mark of the one unsolicited reply that is acted on.
inline const QLatin1String suggestionCheck("aiRuntimeCheckWorkspaceNotification");

inline QString notReadyText()
{
    return QStringLiteral("SDK not ready. Please wait for initialization.");
}
