// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SuggestionNotification.h"

#include <KLocalizedString>
#include <KNotification>

#include <QJsonArray>
#include <QJsonObject>

namespace SuggestionNotification
{

namespace
{

//! The default action.
struct DefaultAction
{
    QString label;
    QString id;
};

DefaultAction defaultActionOf(const QJsonObject &notification)
{
    if (notification.value(QLatin1String("suggestionType")).toString() == QLatin1String("candidate_review")) {
        return {i18n("Review"), QStringLiteral("review")};
    }
    return {i18n("Prepare now"), QStringLiteral("prepare")};
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

    // Deletes itself when it is closed. Event and component are declared in data/loomra-kde.notifyrc.
    auto *shown = new KNotification(QStringLiteral("workspaceSuggestion"), KNotification::NotificationFlags(), parent);
    shown->setTitle(title);
    // Notification services interpret the body as markup and may load images that it names, so untrusted text is
    // escaped.
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
    // The bridge sends two actions at most. A third one would be shown without effect.
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
