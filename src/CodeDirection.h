// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QQuickTextDocument>

//! Lays out code from left to right, known to QML as the type CodeDirection. Stateless. By default the first letter of
//! a text decides, so that a comment in Arabic at the start of a file would turn all of its code around.
class CodeDirection : public QObject
{
    Q_OBJECT

public:
    //! Call it in onTextChanged of the text area, which has just set the direction of its text.
    Q_INVOKABLE void apply(QQuickTextDocument *document) const;
};
