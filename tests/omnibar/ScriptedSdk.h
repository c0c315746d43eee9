// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>

class OmniBarFixture;
class QObject;

//! An SDK client that does what a test says: the stand-in that the tests of the controllers use.
class ScriptedSdk
{
public:
    //! Call before the window opens.
    explicit ScriptedSdk(OmniBarFixture &bar);

    //! The bridge sends a plan, or the result of a run.
    void sendPlan(const QJsonObject &payload) { emitSignal("planReceived", payload); }
    void sendResult(const QJsonObject &payload) { emitSignal("planExecuted", payload); }
    //! Emits a signal with one argument: an object, a list or a text.
    void emitSignal(const char *signal, const QVariant &argument);
    //! A property of the client.
    QVariant property(const char *name) const;
    void setProperty(const char *name, const QVariant &value);
    //! Where the bridge's logs are.
    void setEventLogDir(const QString &path);
    //! What the window called since takeCalls(), in order.
    QStringList takeCalls();

    //! A plan that waits for approval.
    static QJsonObject plan(const QString &summary, const QJsonArray &steps);
    static QJsonObject step(const QString &capability, const QJsonObject &params = {});
    //! The result of a run with one step that closed a window, and can be undone.
    static QJsonObject success();

private:
    QObject *m_object;
};
