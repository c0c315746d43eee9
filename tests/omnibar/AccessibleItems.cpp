// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleItems.h"

#include "OmniBarFixture.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace
{

//! Types of controls and the roles that fit them. Derived types come first. Qt 5.15 ignores a role that is declared for
//! a control, so that several may fit: choices among which one is chosen are buttons there that are checked or not.
const struct
{
    const char *type;
    QList<QAccessible::Role> roles;
} s_types[] = {
    {"QQuickTabButton", {QAccessible::PageTab}},
    {"QQuickSwitch", {QAccessible::CheckBox}},
    {"QQuickCheckBox", {QAccessible::CheckBox}},
    {"QQuickRadioButton", {QAccessible::RadioButton}},
    {"QQuickMenuItem", {QAccessible::MenuItem}},
    {"QQuickAbstractButton", {QAccessible::Button, QAccessible::ButtonMenu, QAccessible::RadioButton}},
    {"QQuickTextInput", {QAccessible::EditableText}},
    {"QQuickTextEdit", {QAccessible::EditableText}},
    {"QQuickComboBox", {QAccessible::ComboBox}},
    {"QQuickSpinBox", {QAccessible::SpinBox}},
    {"QQuickSlider", {QAccessible::Slider}},
    {"QQuickScrollBar", {QAccessible::ScrollBar}},
    {"QQuickTabBar", {QAccessible::PageTabList}},
};

//! The same for items whose type says nothing about their use, or not enough.
const struct
{
    const char *objectName;
    QAccessible::Role role;
} s_items[] = {
    {"messageList", QAccessible::List},        {"sessionList", QAccessible::List},
    {"usageRing", QAccessible::ProgressBar},   {"submittedBar", QAccessible::ProgressBar},
    {"connectionDot", QAccessible::Indicator},
};

//! The objectNames of an item and of those around it.
QString pathOf(const QQuickItem *item)
{
    QStringList path;
    for (; item; item = item->parentItem()) {
        if (!item->objectName().isEmpty()) {
            path.prepend(item->objectName());
        }
    }
    return path.join(QLatin1Char('/'));
}

//! The list of which an item is a row; null if it isn't one.
QQuickItem *viewOf(const QQuickItem *row)
{
    QQuickItem *content = row->parentItem();
    QQuickItem *view = content ? content->parentItem() : nullptr;
    if (!view || !view->inherits("QQuickItemView") || view->property("contentItem").value<QQuickItem *>() != content) {
        return nullptr;
    }
    for (const char *other : {"highlightItem", "headerItem", "footerItem"}) {
        if (view->property(other).value<QQuickItem *>() == row) {
            return nullptr;
        }
    }
    return view;
}

//! Whether the item is what the user sees as a row: a delegate of a list, or what it loads.
bool isRowContent(const QQuickItem *item)
{
    const QQuickItem *parent = item->parentItem();
    return !item->inherits("QQuickLoader")
        && (viewOf(item) || (parent && parent->inherits("QQuickLoader") && viewOf(parent)));
}

bool hasParentOf(const QQuickItem *item, std::initializer_list<const char *> types)
{
    for (const QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (std::any_of(types.begin(), types.end(), [parent](const char *type) { return parent->inherits(type); })) {
            return true;
        }
    }
    return false;
}

} // namespace

namespace AccessibleItems
{

QString typeOf(const QQuickItem *item)
{
    return QString::fromLatin1(item->metaObject()->className()).section(QLatin1Char('_'), 0, 0);
}

QString nameOf(QQuickItem *item)
{
    const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
    return accessible ? accessible->text(QAccessible::Name) : QString();
}

QString described(QQuickItem *item)
{
    return item ? QStringLiteral("%1 \"%2\" (%3)")
                      .arg(QString::fromLatin1(item->metaObject()->className()), nameOf(item), pathOf(item))
                : QStringLiteral("nothing");
}

QRectF placeOf(QQuickItem *item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

QRectF visiblePlaceOf(QQuickItem *item)
{
    QRectF visible = placeOf(item) & QRectF(QPointF(), QSizeF(item->window()->size()));
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->clip()) {
            visible &= placeOf(parent);
        }
    }
    return visible;
}

bool isSeen(QQuickItem *item)
{
    return OmniBarFixture::isSeen(item) && item->width() > 0 && item->height() > 0 && !visiblePlaceOf(item).isEmpty();
}

bool isControl(QQuickItem *item)
{
    // A text that can only be selected.
    const bool isReadOnly = item->property("readOnly").toBool();
    return item->activeFocusOnTab() || (!rolesOf(item).isEmpty() && !isReadOnly);
}

bool isPart(const QQuickItem *item)
{
    // The style adds scroll bars to a scroll view, which need no name: its keys scroll.
    if (item->inherits("QQuickScrollBar") && hasParentOf(item, {"QQuickScrollView"})) {
        return true;
    }
    return hasParentOf(item, {"QQuickSpinBox", "QQuickComboBox", "QQuickAbstractButton"});
}

bool isBareClickArea(QQuickItem *item)
{
    if (!item->inherits("QQuickMouseArea") || !item->isEnabled()
        || !(item->property("acceptedButtons").toInt() & Qt::LeftButton)) {
        return false;
    }
    // Those that stop clicks have no handler.
    static const int s_clicked = item->metaObject()->indexOfSignal("clicked(QQuickMouseEvent*)");
    // The function is protected, a pointer to it need not be.
    struct Signals : QQuickItem
    {
        using QQuickItem::isSignalConnected;
    };
    if (!(item->*&Signals::isSignalConnected)(item->metaObject()->method(s_clicked))) {
        return false;
    }
    for (QQuickItem *parent = item; parent; parent = parent->parentItem()) {
        // The shade behind a dialog or the settings: Escape does the same.
        if (parent->objectName().endsWith(QLatin1String("Shade")) || parent->objectName() == QLatin1String("scrim")
            || (parent != item && isControl(parent))) {
            return false;
        }
    }
    return true;
}

QQuickItem *rowOf(QQuickItem *item)
{
    while (item && !viewOf(item)) {
        item = item->parentItem();
    }
    return item;
}

bool isCurrentRow(QQuickItem *row)
{
    const QQuickItem *view = viewOf(row);
    return view && view->property("currentItem").value<QQuickItem *>() == row;
}

QList<QAccessible::Role> rolesOf(QQuickItem *item)
{
    for (const auto &each : s_items) {
        if (item->objectName() == QLatin1String(each.objectName)) {
            return {each.role};
        }
    }
    QList<QAccessible::Role> roles;
    for (const auto &each : s_types) {
        if (item->inherits(each.type)) {
            roles = each.roles;
            if (item->property("checkable").toBool()) {
                roles.append(QAccessible::CheckBox);
            }
            break;
        }
    }
    if (isRowContent(item)) {
        return roles + QList<QAccessible::Role> {QAccessible::ListItem, QAccessible::MenuItem};
    }
    if (roles.isEmpty() && item->inherits("QQuickItemView") && item->activeFocusOnTab()) {
        roles.append(QAccessible::List);
    }
    return roles;
}

} // namespace AccessibleItems
