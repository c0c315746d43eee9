// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

//! The result object of a reply as AgentBridge parses it. A key that is missing or has another type gets its default.
//! Everything in this file is pure.
struct AgentReply
{
    static AgentReply read(const QJsonObject &result);

    QString response;
    //! Empty when the reply names no session.
    QString sessionId;
    //! Tokens used for this reply, truncated to integers; 0 if missing.
    int inputTokens = 0;
    int outputTokens = 0;
    //! Widgets and follow-ups that accompany the text, as compact JSON; empty if there are none.
    QString uiJson;
    //! Whether uiJson was made from a "ui" object, not from follow-ups alone.
    bool hasUi = false;
};

//! Progress of a plan that the bridge is executing.
struct PlanStep
{
    static PlanStep read(const QJsonObject &eventPayload);

    bool isRunning() const { return index >= 0; }

    //! Zero-based; -1 when no plan is running.
    int index = -1;
    int total = 0;
    //! Id of the capability used by the step.
    QString capability;
    QString phase;
};

//! The request id in a message, truncated to an integer. 0, which no request uses, for anything that can't be an id:
//! not a number, negative, or beyond 64 bits.
quint64 requestIdOf(const QJsonValue &id);

//! Prepares a rephrased transcript for display: trims it, then removes one pair of matching quotation marks around it.
//! What was inside the quotation marks is not trimmed.
QString withoutQuotationMarks(const QString &response);
