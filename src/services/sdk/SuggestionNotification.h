// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <functional>

class QJsonObject;
class QObject;

//! Workspace suggestions as desktop notifications. Main thread only.
namespace SuggestionNotification
{

//! Shows a notification with a button for each of its actions and a default action. Shows nothing if it has no title or
//! if there is no notification service.
//! @param notification from the bridge: title, body, suggestionType, and actions with id and label each
//! @param parent must not outlive what @p chosen uses; the notification is destroyed with it
//! @param chosen called with the id of the action that the user chooses: the first or second of the list, or "review"
//! or "prepare" for the default action
//! @return false without a title
bool show(const QJsonObject &notification, QObject *parent, const std::function<void(const QString &actionId)> &chosen);

//! Whether to show an in-app dialog as well: LOOMRA_WORKSPACE_NOTIFY_INAPP is "1" or, case-insensitively, "true". Read
//! at each call.
bool wantsInAppDialog();

} // namespace SuggestionNotification
