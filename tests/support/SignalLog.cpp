// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SignalLog.h"

#include "Json.h"

#include <QMetaMethod>
#include <QVariant>

namespace
{

QString shown(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::QString:
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    case QMetaType::QStringList:
        return compactJson(QJsonArray::fromStringList(value.toStringList()));
    case QMetaType::QJsonObject:
        return compactJson(value.toJsonObject());
    case QMetaType::QJsonArray:
        return compactJson(value.toJsonArray());
    default:
        return value.toString();
    }
}

} // namespace

SignalLog::SignalLog(QObject *sender, QObject *parent)
    : QObject(parent)
    , m_senderType(sender->metaObject())
{
    // Skip the signals of QObject (destroyed, objectNameChanged).
    for (int index = QObject::staticMetaObject.methodCount(); index < m_senderType->methodCount(); ++index) {
        const QMetaMethod method = m_senderType->method(index);
        if (method.methodType() == QMetaMethod::Signal) {
            const int slot = QObject::staticMetaObject.methodCount() + m_signals.size();
            QMetaObject::connect(sender, index, this, slot, Qt::DirectConnection);
            m_signals.append(index);
        }
    }
}

QStringList SignalLog::take()
{
    return std::exchange(m_entries, QStringList());
}

int SignalLog::qt_metacall(QMetaObject::Call call, int slot, void **arguments)
{
    slot = QObject::qt_metacall(call, slot, arguments);
    if (slot < 0 || call != QMetaObject::InvokeMetaMethod) {
        return slot;
    }
    const QMetaMethod signal = m_senderType->method(m_signals.at(slot));
    QStringList texts;
    for (int i = 0; i < signal.parameterCount(); ++i) {
        texts.append(shown(QVariant(signal.parameterType(i), arguments[i + 1])));
    }
    m_entries.append(QString::fromLatin1(signal.name()) + QLatin1Char('(') + texts.join(QStringLiteral(", "))
                     + QLatin1Char(')'));
    return -1;
}
