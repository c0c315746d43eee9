// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "QmlWarnings.h"

#include <QQmlEngine>
#include <QQmlError>
#include <QTest>

#include <algorithm>

void QmlWarnings::watch(QQmlEngine *engine)
{
    connect(engine, &QQmlEngine::warnings, this, [this](const QList<QQmlError> &warnings) {
        for (const QQmlError &warning : warnings) {
            judge(warning.description(), warning.toString());
        }
    });
}

void QmlWarnings::judge(const QString &description, const QString &whole)
{
    const auto expected = std::find_if(m_expected.begin(), m_expected.end(),
                                       [&](const QString &start) { return description.startsWith(start); });
    if (expected != m_expected.end()) {
        m_expected.erase(expected);
        return;
    }
    QTest::qFail(qPrintable(QStringLiteral("unexpected warning: ") + whole), __FILE__, __LINE__);
}

void QmlWarnings::reportMissing()
{
    for (const QString &start : qAsConst(m_expected)) {
        QTest::qFail(qPrintable(QStringLiteral("missing warning: ") + start), __FILE__, __LINE__);
    }
}
