// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QQuickTextDocument>

//! Lays out code from left to right. A QML type without state. By default the first letter of a text decides its
//! direction, so a comment in Arabic at the start of a file would align all of its code on the right.
class CodeDirection : public QObject
{
    Q_OBJECT

public:
    //! Call it in onTextChanged of the text area, which has just set the direction of its text.
    Q_INVOKABLE void apply(QQuickTextDocument *document) const;
};
