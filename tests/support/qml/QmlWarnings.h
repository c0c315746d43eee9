// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QStringList>

class QQmlEngine;

//! Turns the warnings of a QML engine into failures of the running test.
class QmlWarnings : public QObject
{
    Q_OBJECT

public:
    void watch(QQmlEngine *engine);

    //! Expects a warning that starts with this text: it is not a failure, but its absence is.
    Q_INVOKABLE void expect(const QString &start) { m_expected.append(start); }

    //! Fails for each expected warning that did not occur.
    void reportMissing();

private:
    void judge(const QString &description, const QString &whole);

    QStringList m_expected;
};
