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

    //! The next warning whose description begins so is no failure; if none comes until the end, that is one.
    Q_INVOKABLE void expect(const QString &start) { m_expected.append(start); }

    //! Fails for every expected warning that didn't come.
    void reportMissing();

private:
    void judge(const QString &description, const QString &whole);

    QStringList m_expected;
};
