// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Members.h"

#include <QMetaMethod>
#include <QMetaProperty>

namespace
{

Members::Kind kindOf(const QMetaMethod &method)
{
    if (method.methodType() == QMetaMethod::Signal) {
        return Members::Kind::Signal;
    }
    return method.access() == QMetaMethod::Public ? Members::Kind::Operation : Members::Kind::PrivateSlot;
}

} // namespace

QStringList Members::properties(const QMetaObject &type)
{
    QStringList properties;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        properties.append(QStringLiteral("%1 %2 %3%4")
                              .arg(QString::fromLatin1(property.typeName()), QString::fromLatin1(property.name()),
                                   QString::fromLatin1(property.notifySignal().methodSignature()),
                                   property.isWritable() ? QStringLiteral(" writable") : QString()));
    }
    return properties;
}

QStringList Members::methods(const QMetaObject &type, Kind kind)
{
    QStringList methods;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (kindOf(method) == kind) {
            methods.append(
                QString::fromLatin1(method.methodSignature() + ' ' + method.parameterNames().join(',')).trimmed());
        }
    }
    return methods;
}

QStringList Members::answers(const QMetaObject &type)
{
    QStringList answers;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (kindOf(method) == Kind::Operation && method.returnType() != QMetaType::Void) {
            answers.append(QString::fromLatin1(method.typeName() + QByteArray(" ") + method.methodSignature()));
        }
    }
    return answers;
}
