// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SuggestionNotification.h"

#include <KNotification>

#include <QJsonArray>
#include <QJsonObject>

namespace SuggestionNotification
{

namespace
{

//! What the suggestion itself stands for: the label and the id of the default action.
struct DefaultAction
{
    QString label;
    QString id;
};

DefaultAction defaultActionOf(const QJsonObject &notification)
{
    if (notification.value(QLatin1String("suggestionType")).toString() == QLatin1String("candidate_review")) {
        return {QStringLiteral("Review"), QStringLiteral("review")};
    }
    return {QStringLiteral("Prepare now"), QStringLiteral("prepare")};
}

} // namespace

bool show(const QJsonObject &notification, QObject *parent, const std::function<void(const QString &actionId)> &chosen)
{
    const QString title = notification.value(QLatin1String("title")).toString();
    if (title.isEmpty()) {
        return false;
    }
    QStringList ids;
    QStringList labels;
    for (const QJsonValue action : notification.value(QLatin1String("actions")).toArray()) {
        const QString id = action.toObject().value(QLatin1String("id")).toString();
        const QString label = action.toObject().value(QLatin1String("label")).toString();
        if (!id.isEmpty() && !label.isEmpty()) {
            ids.append(id);
            labels.append(label);
        }
    }

    // Deletes itself when it is closed. The names are those of the file that declares the event.
    auto *shown = new KNotification(QStringLiteral("workspaceSuggestion"), KNotification::NotificationFlags(), parent);
    shown->setTitle(title);
    // Notification services take a body for markup, and could fetch what it names: the bridge's words are words.
    shown->setText(notification.value(QLatin1String("body")).toString().toHtmlEscaped());
    shown->setIconName(QStringLiteral("dialog-information"));
    shown->setComponentName(QStringLiteral("loomra-kde"));
    if (!labels.isEmpty()) {
        shown->setActions(labels);
    }
    const DefaultAction defaultAction = defaultActionOf(notification);
    shown->setDefaultAction(defaultAction.label);

    const auto choose = [shown, chosen](auto signal, const QString &id) {
        QObject::connect(shown, signal, shown, [chosen, id] { chosen(id); });
    };
    // Two actions are all that the bridge sends: a third one shows, and does nothing.
    if (!ids.isEmpty()) {
        choose(&KNotification::action1Activated, ids.at(0));
    }
    if (ids.size() >= 2) {
        choose(&KNotification::action2Activated, ids.at(1));
    }
    choose(&KNotification::defaultActivated, defaultAction.id);
    shown->sendEvent();
    return true;
}

bool wantsInAppDialog()
{
    const QString value = qEnvironmentVariable("LOOMRA_WORKSPACE_NOTIFY_INAPP");
    return value == QLatin1String("1") || value.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
}

} // namespace SuggestionNotification
