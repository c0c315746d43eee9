// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// What OmniBarFixture finds in the window, and what its user does there.

#include "OmniBarFixture.h"

#include <QEasingCurve>
#include <QMetaEnum>
#include <QQmlContext>
#include <QQmlExpression>
#include <QQmlProperty>
#include <QTest>

Q_DECLARE_METATYPE(QQmlProperty)

QQuickItem *OmniBarFixture::itemIn(QQuickItem *root, const QString &objectName)
{
    return itemsWhere(root, [&](QQuickItem *item) { return item->objectName() == objectName; }).value(0);
}

QList<QQuickItem *> OmniBarFixture::itemsWhere(QQuickItem *root, const std::function<bool(QQuickItem *)> &condition)
{
    QList<QQuickItem *> found;
    if (!root) {
        return found;
    }
    if (condition(root)) {
        found.append(root);
    }
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children) {
        found += itemsWhere(child, condition);
    }
    return found;
}

QQuickItem *OmniBarFixture::item(const QString &objectName) const
{
    return items(objectName).value(0);
}

QList<QQuickItem *> OmniBarFixture::items(const QString &objectName) const
{
    if (!m_window) {
        return {};
    }
    return itemsWhere(m_window->contentItem(), [&](QQuickItem *item) { return item->objectName() == objectName; });
}

QObject *OmniBarFixture::object(const QString &objectName) const
{
    return m_root ? m_root->findChild<QObject *>(objectName) : nullptr;
}

QVariant OmniBarFixture::property(const char *path) const
{
    QObject *holder = m_root.get();
    const QList<QByteArray> names = QByteArray(path).split('.');
    for (int i = 0; i + 1 < names.size() && holder; ++i) {
        holder = holder->property(names.at(i).constData()).value<QObject *>();
    }
    return holder ? holder->property(names.last().constData()) : QVariant();
}

void OmniBarFixture::setProperty(const char *name, const QVariant &value)
{
    if (!m_root || !m_root->setProperty(name, value)) {
        failTest(QStringLiteral("the window has no property ") + QLatin1String(name), __LINE__);
    }
}

QVariant OmniBarFixture::invoke(const char *function, const QVariantList &arguments)
{
    QVariant result;
    QGenericArgument packed[4];
    Q_ASSERT(arguments.size() <= 4);
    for (int i = 0; i < arguments.size(); ++i) {
        packed[i] = Q_ARG(QVariant, arguments.at(i));
    }
    if (!QMetaObject::invokeMethod(m_root.get(), function, Qt::DirectConnection, Q_RETURN_ARG(QVariant, result),
                                   packed[0], packed[1], packed[2], packed[3])) {
        failTest(QStringLiteral("the window has no function ") + QLatin1String(function), __LINE__);
    }
    return result;
}

QVariant OmniBarFixture::evaluate(const QString &expression) const
{
    // The window belongs to the context that it was created in, which has no ids; its children see them.
    QQuickItem *inside = item(QStringLiteral("rootContainer"));
    if (!inside) {
        failTest(QStringLiteral("there is no window to ask"), __LINE__);
        return {};
    }
    QQmlExpression question(qmlContext(inside), inside, expression);
    bool isUndefined = false;
    const QVariant answer = question.evaluate(&isUndefined);
    if (question.hasError()) {
        failTest(question.error().toString(), __LINE__);
    }
    return isUndefined ? QVariant() : answer;
}

void OmniBarFixture::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window, key, modifiers);
}

void OmniBarFixture::type(const QString &text)
{
    for (const QChar letter : text) {
        if (letter.unicode() < 128) {
            QTest::keyClick(m_window, letter.toLatin1());
        } else {
            QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, letter, Qt::NoModifier);
        }
    }
}

void OmniBarFixture::click(QQuickItem *item, Qt::MouseButton button)
{
    if (!isSeen(item)) {
        failTest(QStringLiteral("what should be clicked can't be seen"), __LINE__);
        return;
    }
    QTest::mouseClick(m_window, button, {}, place(item).center().toPoint());
}

void OmniBarFixture::clickAt(const QPoint &place)
{
    QTest::mouseClick(m_window, Qt::LeftButton, {}, place);
}

void OmniBarFixture::hover(QQuickItem *item)
{
    if (!isSeen(item)) {
        failTest(QStringLiteral("what should be hovered can't be seen"), __LINE__);
        return;
    }
    // From beside the place, because a pointer that is there already sends no event.
    const QPoint middle = place(item).center().toPoint();
    QTest::mouseMove(m_window, middle - QPoint(0, 1));
    QTest::mouseMove(m_window, middle);
}

bool OmniBarFixture::isSeen(QQuickItem *item)
{
    if (!item || !item->isVisible() || item->width() <= 0 || item->height() <= 0) {
        return false;
    }
    for (QQuickItem *step = item; step; step = step->parentItem()) {
        if (step->opacity() <= 0 || step->scale() <= 0) {
            return false;
        }
    }
    return true;
}

QRectF OmniBarFixture::place(QQuickItem *item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

QString OmniBarFixture::behaviour(QObject *object, const char *property)
{
    const QObjectList parts = object ? object->children() : QObjectList();
    for (QObject *part : parts) {
        if (part->inherits("QQuickBehavior")
            && part->property("targetProperty").value<QQmlProperty>().name() == QLatin1String(property)) {
            return animationSpec(part->children().value(0)); // the animation that was written into it
        }
    }
    return {};
}

QString OmniBarFixture::animationSpec(const QObject *animation)
{
    if (!animation) {
        return {};
    }
    const auto easing = animation->property("easing").toEasingCurve().type();
    return QString::number(animation->property("duration").toInt()) + QLatin1Char(' ')
        + QLatin1String(QMetaEnum::fromType<QEasingCurve::Type>().valueToKey(easing));
}
