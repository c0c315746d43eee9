// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MainWindowFixture.h"

#include "Timeouts.h"

#include <QQmlContext>
#include <QQmlExpression>
#include <QTest>

MainWindowFixture::MainWindowFixture()
{
    sdk.setConnectOnly(true);
    omit("agentBridge"); // the window has no use for it
    provide("loomraSDK", &sdk);
    // The desktop's integration isn't installed where tests run.
    expectWarning("Failed to find a Kirigami platform plugin");
}

bool MainWindowFixture::openWindow()
{
    return open(QStringLiteral("../../MainWindow.qml"))
        && QTest::qWaitFor([this] { return sdk.isConnected() && property("codeEditor").value<QObject *>(); },
                           Timeouts::Default);
}

bool MainWindowFixture::openReady(const QJsonArray &sessions)
{
    if (!openWindow()) {
        return false;
    }
    bridge.ready();
    answer("listModels",
           {{QStringLiteral("models"),
             QJsonArray {QJsonObject {{QStringLiteral("fullId"), QStringLiteral("demo/one")},
                                      {QStringLiteral("displayName"), QStringLiteral("One & <b>only</b>")}},
                         QJsonObject {{QStringLiteral("fullId"), QStringLiteral("demo/two")}}}}});
    answer("listAgents",
           {{QStringLiteral("agents"),
             QJsonArray {QJsonObject {{QStringLiteral("id"), QStringLiteral("build")},
                                      {QStringLiteral("name"), QStringLiteral("Build & <i>run</i>")}},
                         QJsonObject {{QStringLiteral("id"), QStringLiteral("plan")},
                                      {QStringLiteral("name"), QStringLiteral("Planner")}}}}});
    answer("listSessions", {{QStringLiteral("sessions"), sessions}});
    return QTest::qWaitFor([this, &sessions] {
        return of("modelButton", "enabled").toBool() && of("agentButton", "enabled").toBool()
            && texts("sessionName").size() == sessions.size();
    });
}

void MainWindowFixture::answer(const char *method, const QJsonObject &payload)
{
    bridge.reply(bridge.takeRequest(QLatin1String(method)), payload);
}

void MainWindowFixture::answerSwitch(const QString &id, const QJsonArray &messages)
{
    answer("switchSession", {{QStringLiteral("sessionId"), id}});
    answer("loadMessages", {{QStringLiteral("messages"), messages}});
}

QVariant MainWindowFixture::of(const char *itemName, const char *property) const
{
    const QQuickItem *found = item(itemName);
    return found ? found->property(property) : QVariant();
}

QVariant MainWindowFixture::evaluateInWindow(const QString &expression) const
{
    QQuickItem *page = item("mainPage");
    QQmlExpression question(qmlContext(page), page, expression);
    const QVariant answer = question.evaluate();
    if (question.hasError()) {
        QTest::qFail(qPrintable(question.error().toString()), __FILE__, __LINE__);
    }
    return answer;
}

QStringList MainWindowFixture::texts(const char *itemName) const
{
    QStringList texts;
    const QList<QQuickItem *> found = items(itemName);
    for (const QQuickItem *item : found) {
        texts.append(item->property("text").toString());
    }
    return texts;
}

QJsonObject MainWindowFixture::session(const char *id, const char *title)
{
    return {{QStringLiteral("id"), QLatin1String(id)}, {QStringLiteral("title"), QString::fromUtf8(title)}};
}

QJsonObject MainWindowFixture::message(const char *role, const QString &content)
{
    return {{QStringLiteral("role"), QLatin1String(role)}, {QStringLiteral("content"), content}};
}
