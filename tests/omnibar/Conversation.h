// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "OmniBarFixture.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonObject>

//! The OmniBar with a user who types and a bridge that replies.
class Conversation : public OmniBarFixture
{
public:
    //! Opens the window and waits for the chat panel, which is built after the first frame.
    bool begin();

    //! Types a prompt, presses Enter and takes the request from the bridge.
    ScriptedBridge::Request ask(const QString &prompt = QStringLiteral("hello"));
    //! Replies to a request and waits until the reply is a row. @param more further keys of the result
    bool answer(const ScriptedBridge::Request &request, const QString &reply, QJsonObject more = {});
    //! Sends a prompt and replies to it.
    bool exchange(const QString &prompt, const QString &reply, const QJsonObject &more = {});
    //! Emits a reply of the client without a request: many rows at little cost.
    void emitReply(const QString &reply);

    //! The bridge reports the phase of what it is doing.
    void reportPhase(const QString &phase);
    //! Chooses the light or the dark theme, as the settings do.
    void setLight(bool isLight);

    //! Shows a tab of the settings sheet, which is opened if it isn't yet.
    bool openTab(const QString &title);

    //! Number of rows.
    int count() const { return property("chatModel.count").toInt(); }
    //! All rows as "role: text".
    QStringList rows() const;
    //! A field of a row.
    QVariant field(int row, const char *name) const;
    //! The item that shows a row; null if the list has not built it, e.g. because it is out of sight.
    QQuickItem *rowItem(int row) const;
    //! An item by name below the one that shows a row.
    QQuickItem *inRow(int row, const char *objectName) const;

    //! The texts of all visible text items below an item, in drawing order.
    static QStringList textsIn(QQuickItem *root);
    //! The texts below an item that might be interpreted as markup, or are drawn outside of the item.
    static QStringList looseTexts(QQuickItem *root);
    //! The visible text item with this text; null if none.
    QQuickItem *textItem(const QString &text) const;

    //! Titles of the suggestion cards that can be seen.
    QStringList suggestions() const;
    //! The suggestion card with this title; null if none.
    QQuickItem *suggestion(const QString &title) const;

    //! A colour property of an item as #aarrggbb, or a nested one: "border.color".
    static QString color(QQuickItem *item, const char *path = "color");
    //! The same form of a colour that is given in parts from 0 to 1.
    static QString color(qreal red, qreal green, qreal blue, qreal alpha);
};
