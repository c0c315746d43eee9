// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DrawnValues.h"

#include <QColor>
#include <QEasingCurve>
#include <QMetaEnum>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlListReference>
#include <QQmlProperty>
#include <QQuickItem>
#include <QRegularExpression>
#include <QSet>

Q_DECLARE_METATYPE(QQmlProperty)

namespace
{

const QLatin1String s_behaviorPrefix("Behavior on ");
const QLatin1String s_gradientPrefix("gradient.");

void collect(QObject *object, QSet<QObject *> &seen, QObjectList &found)
{
    if (!object || seen.contains(object)) {
        return;
    }
    seen.insert(object);
    found.append(object);
    if (const auto *item = qobject_cast<QQuickItem *>(object)) {
        const auto items = item->childItems();
        for (QQuickItem *child : items) {
            collect(child, seen, found);
        }
    }
    if (object->inherits("QQuickWindow") || object->inherits("QQuickPopup")) {
        collect(object->property("contentItem").value<QObject *>(), seen, found);
    }
    const auto children = object->children();
    for (QObject *child : children) {
        collect(child, seen, found);
    }
}

//! The object and everything in it, in drawing order.
QObjectList partsOf(QObject *root)
{
    QSet<QObject *> seen;
    QObjectList found;
    collect(root, seen, found);
    return found;
}

//! "Rectangle", "PromptBar", ...
QString typeOf(const QObject *object)
{
    static const QRegularExpression s_decoration(QStringLiteral("^QQuick|_QML.*$"));
    return QString::fromLatin1(object->metaObject()->className()).remove(s_decoration);
}

bool isNamed(QObject *object, const QString &name)
{
    if (object->objectName() == name || typeOf(object) == name) {
        return true;
    }
    const QQmlContext *context = qmlContext(object);
    return context && context->isValid() && context->nameForObject(object) == name;
}

//! The parts with this name, or the one that its index selects.
QObjectList partsNamed(const QObjectList &roots, const QString &name)
{
    static const QRegularExpression s_indexed(QStringLiteral("^(.*)\\[(\\d+)\\]$"));
    const auto match = s_indexed.match(name);
    const QString plain = match.hasMatch() ? match.captured(1) : name;
    QObjectList found;
    for (QObject *root : roots) {
        const auto parts = partsOf(root);
        for (QObject *part : parts) {
            if (part != root && isNamed(part, plain) && !found.contains(part)) {
                found.append(part);
            }
        }
    }
    return match.hasMatch() ? found.mid(match.captured(2).toInt(), 1) : found;
}

QObjectList partsAt(QObject *root, const QString &path)
{
    QObjectList found = {root};
    const auto steps = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &step : steps) {
        const QString name = step.section(QLatin1Char('.'), 0, 0);
        if (!name.isEmpty()) {
            found = partsNamed(found, name);
        }
        const auto properties = step.split(QLatin1Char('.')).mid(1);
        for (const QString &property : properties) {
            QObjectList held;
            for (const QObject *part : qAsConst(found)) {
                held.append(part->property(property.toLatin1().constData()).value<QObject *>());
            }
            held.removeAll(nullptr);
            found = held;
        }
    }
    return found;
}

QString textOf(const QColor &color)
{
    return color.name(QColor::HexArgb);
}

QString animationText(const QObject *animation)
{
    if (!animation) {
        return {};
    }
    const auto easing = animation->property("easing").toEasingCurve().type();
    return QString::number(animation->property("duration").toInt()) + QLatin1Char(' ')
        + QLatin1String(QMetaEnum::fromType<QEasingCurve::Type>().valueToKey(easing));
}

QString behaviorText(const QObject *object, const QString &property)
{
    // That of "border.color" is a child of the border.
    const int dot = property.indexOf(QLatin1Char('.'));
    if (dot >= 0) {
        const auto *group = object->property(property.left(dot).toLatin1().constData()).value<QObject *>();
        return group ? behaviorText(group, property.mid(dot + 1)) : QStringLiteral("none");
    }
    const auto children = object->children();
    for (QObject *child : children) {
        if (child->inherits("QQuickBehavior")
            && child->property("targetProperty").value<QQmlProperty>().name().section(QLatin1Char('.'), -1)
                == property) {
            qmlExecuteDeferred(child); // otherwise the animation is created by the first change
            return animationText(child->children().value(0)); // the animation that was written into it
        }
    }
    return QStringLiteral("none");
}

//! The object that a property holds, also in a JavaScript value.
QObject *objectIn(const QVariant &value)
{
    return value.userType() == qMetaTypeId<QJSValue>() ? value.value<QJSValue>().toQObject() : value.value<QObject *>();
}

QString stopsText(const QObject *object)
{
    QObject *gradient = objectIn(object->property("gradient"));
    if (!gradient) {
        return QStringLiteral("none");
    }
    QStringList stops;
    const QQmlListReference list(gradient, "stops");
    for (int i = 0; i < list.count(); ++i) {
        const QObject *stop = list.at(i);
        stops.append(QString::number(stop->property("position").toDouble()) + QLatin1Char(' ')
                     + textOf(stop->property("color").value<QColor>()));
    }
    return stops.join(QLatin1String(", "));
}

QString expectedStopsText(const QVariant &value)
{
    QStringList stops;
    const auto list = value.toList();
    for (const QVariant &stop : list) {
        stops.append(QString::number(stop.toList().value(0).toDouble()) + QLatin1Char(' ')
                     + textOf(stop.toList().value(1).value<QColor>()));
    }
    return stops.join(QLatin1String(", "));
}

//! Numbers rounded to what can be seen; colours as they are drawn.
QString valueText(const QVariant &value)
{
    if (value.userType() == QMetaType::QColor) {
        return textOf(value.value<QColor>());
    }
    if (value.userType() == QMetaType::Nullptr) {
        return QStringLiteral("null");
    }
    if (QMetaType::typeFlags(value.userType()) & QMetaType::PointerToQObject) {
        const auto *object = value.value<QObject *>();
        return object ? QStringLiteral("object 0x%1").arg(reinterpret_cast<quintptr>(object), 0, 16)
                      : QStringLiteral("null");
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? QString::number(number, 'g', 6) : value.toString();
}

struct Comparison
{
    QString actual;
    QString expected;
};

Comparison comparison(QObject *part, const QString &name, const QVariant &expected)
{
    if (name.startsWith(s_behaviorPrefix)) {
        return {behaviorText(part, name.mid(s_behaviorPrefix.size())), expected.toString()};
    }
    if (name.startsWith(s_gradientPrefix)) {
        QObject *gradient = objectIn(part->property("gradient"));
        return {gradient
                    ? valueText(gradient->property(name.mid(s_gradientPrefix.size()).toLatin1().constData()).toInt())
                    : QStringLiteral("no gradient"),
                valueText(expected)};
    }
    if (name == QLatin1String("stops")) {
        return {stopsText(part), expectedStopsText(expected)};
    }
    const QQmlProperty property(part, name, qmlContext(part));
    if (!property.isProperty()) {
        return {QStringLiteral("no property"), valueText(expected)};
    }
    QVariant actual = property.read();
    if (actual.userType() == qMetaTypeId<QJSValue>()) {
        actual = actual.value<QJSValue>().toVariant();
    }
    if (actual.userType() == QMetaType::QColor || expected.userType() == QMetaType::QColor) {
        return {textOf(actual.value<QColor>()), textOf(expected.value<QColor>())};
    }
    // Enumerations, which QML has as numbers.
    if (actual.canConvert<int>() && property.property().isEnumType()) {
        actual = actual.toInt();
    }
    return {valueText(actual), valueText(expected)};
}

} // namespace

QStringList DrawnValues::differences(QObject *root, const QVariantMap &table) const
{
    QStringList found;
    for (auto row = table.cbegin(); row != table.cend(); ++row) {
        const QObjectList parts = partsAt(root, row.key());
        if (parts.isEmpty()) {
            found.append(row.key() + QStringLiteral(": no such part"));
        }
        const QVariantMap values = row.value().toMap();
        for (QObject *part : parts) {
            for (auto value = values.cbegin(); value != values.cend(); ++value) {
                const auto [actual, expected] = comparison(part, value.key(), value.value());
                if (actual != expected) {
                    found.append(
                        QStringLiteral("%1: %2 is %3 instead of %4").arg(row.key(), value.key(), actual, expected));
                }
            }
        }
    }
    return found;
}

QObject *DrawnValues::part(QObject *root, const QString &name) const
{
    return partsAt(root, name).value(0);
}
