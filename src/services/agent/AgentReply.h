// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

//! The result object of a reply, as AgentBridge reads it. A key that is missing or of another type reads as its
//! default. Pure, as is everything in this file.
struct AgentReply
{
    static AgentReply read(const QJsonObject &result);

    QString response;
    //! Empty when the reply names no session.
    QString sessionId;
    //! Tokens used for this reply, truncated to whole numbers; 0 when not told.
    int inputTokens = 0;
    int outputTokens = 0;
    //! Compact JSON with the widgets and the follow-ups that come with the text, empty when there are none.
    QString uiJson;
    //! Whether uiJson was made from a "ui" object, not from follow-ups alone.
    bool hasUi = false;
};

//! Where a plan stands that the bridge carries out.
struct PlanStep
{
    static PlanStep read(const QJsonObject &eventPayload);

    bool isRunning() const { return index >= 0; }

    //! From 0; -1 means none.
    int index = -1;
    int total = 0;
    //! Id of the capability that the step uses.
    QString capability;
    QString phase;
};

//! The id of the request that a message belongs to: the number truncated, or 0, which no request ever has. What isn't
//! a number is 0, and so is one that no request id can be (negative, or beyond 64 bits).
quint64 requestIdOf(const QJsonValue &id);

//! A rephrased transcript as it is shown: trimmed, then without the one pair of quotation marks around it, if both
//! ends have the same kind. Not trimmed again.
QString withoutQuotationMarks(const QString &response);
