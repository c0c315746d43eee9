// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "LoomraSDK.h"

#include <QJsonValue>
#include <QLatin1String>

#include <functional>

// Shared by the files of LoomraSDK; not for others.

//! A successful reply: its result unchanged, and as an object, which is empty if the result is something else.
struct LoomraSDK::Reply
{
    int id;
    QString label;
    QJsonValue result;
    QJsonObject object;

    QString text(QLatin1String key) const { return object.value(key).toString(); }
    QJsonArray array(QLatin1String key) const { return object.value(key).toArray(); }
};

//! The handler of the replies to requests with this label.
struct LoomraSDK::Route
{
    QLatin1String label;
    std::function<void(LoomraSDK &, const Reply &)> handle;
};

//! Label and method of the suggestion check, and the method of the one unsolicited reply that is handled.
inline const QLatin1String SuggestionCheck("aiRuntimeCheckWorkspaceNotification");

inline QString notReadyText()
{
    return QStringLiteral("SDK not ready. Please wait for initialization.");
}
