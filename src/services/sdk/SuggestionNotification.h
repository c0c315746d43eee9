// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

#include <functional>

class QJsonObject;
class QObject;

//! A workspace suggestion of the bridge on the user's desktop. Main thread only.
namespace SuggestionNotification
{

//! Shows a desktop notification with a button for each action that it names, and one for what the suggestion is about.
//! Without a title nothing is shown. Where no notification service runs nothing is shown either, without a word.
//! @param notification as the bridge sends it: title, body, suggestionType, and actions with id and label each
//! @param parent lives longer than whatever chosen uses; the notification ends with it
//! @param chosen called with the id of the action that the user picks: the first or the second one of the list, or
//! "review" or "prepare" for the suggestion itself
//! @return false without a title
bool show(const QJsonObject &notification, QObject *parent, const std::function<void(const QString &actionId)> &chosen);

//! Whether the user wants a dialog of the program as well: LOOMRA_WORKSPACE_NOTIFY_INAPP is "1" or, in any case,
//! "true". Read at each call.
bool wantsInAppDialog();

} // namespace SuggestionNotification
