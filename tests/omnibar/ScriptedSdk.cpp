// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScriptedSdk.h"

#include "OmniBarFixture.h"

#include <QTest>

ScriptedSdk::ScriptedSdk(OmniBarFixture &bar)
    // The list of models that the window requests at startup is not recorded.
    : m_object(bar.fake(QStringLiteral("FakeSdk { function listModels() {} }")))
{
    bar.provide("loomraSDK", m_object);
}

void ScriptedSdk::emitSignal(const char *signal, const QVariant &argument)
{
    const bool isEmitted = argument.userType() == QMetaType::QString
        ? QMetaObject::invokeMethod(m_object, signal, Q_ARG(QString, argument.toString()))
        : QMetaObject::invokeMethod(m_object, signal, Q_ARG(QVariant, argument));
    if (!isEmitted) {
        QTest::qFail(signal, __FILE__, __LINE__);
    }
}

QVariant ScriptedSdk::property(const char *name) const
{
    return m_object->property(name);
}

void ScriptedSdk::setProperty(const char *name, const QVariant &value)
{
    if (!m_object->setProperty(name, value)) {
        QTest::qFail(name, __FILE__, __LINE__);
    }
}

void ScriptedSdk::setEventLogDir(const QString &path)
{
    m_object->property("answers").value<QObject *>()->setProperty("eventLogDir", path);
}

QStringList ScriptedSdk::takeCalls()
{
    const QStringList taken = m_object->property("calls").toStringList();
    m_object->setProperty("calls", QStringList());
    return taken;
}

QJsonObject ScriptedSdk::plan(const QString &summary, const QJsonArray &steps)
{
    return {{QStringLiteral("allowed"), true},
            {QStringLiteral("requiresApproval"), true},
            {QStringLiteral("plan"), steps},
            {QStringLiteral("summary"), summary},
            {QStringLiteral("riskLevel"), QStringLiteral("medium")}};
}

QJsonObject ScriptedSdk::step(const QString &capability, const QJsonObject &params)
{
    return {{QStringLiteral("capabilityId"), capability}, {QStringLiteral("params"), params}};
}

QJsonObject ScriptedSdk::success()
{
    const QJsonObject closed {{QStringLiteral("ok"), true},
                              {QStringLiteral("capabilityId"), QStringLiteral("window.close")},
                              {QStringLiteral("result"), QJsonObject()}};
    return {
        {QStringLiteral("success"), true},
        {QStringLiteral("actionId"), QStringLiteral("act_1")},
        {QStringLiteral("results"), QJsonArray {closed}},
        {QStringLiteral("verificationSummary"), QJsonObject {{QStringLiteral("state"), QStringLiteral("verified")}}}};
}
