// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleItems.h"
#include "AccessibleWalk.h"
#include "OmniBarFixture.h"

#include <QAccessible>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace AccessibleItems;

namespace
{

constexpr int s_manySteps = 100; // more than any tab order has
//! How far outside its item a focus ring is drawn, in pixels.
constexpr int s_ringMargin = 4;

//! Whether all of the item can be seen, or as much of it as the views around it have room for.
bool isScrolledIntoView(QQuickItem *item)
{
    QSizeF room = item->window()->size();
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->clip()) {
            room = room.boundedTo(parent->size());
        }
    }
    const QSizeF expected = item->size().boundedTo(room) - QSizeF(1, 1);
    const QSizeF visible = visiblePlaceOf(item).size();
    return visible.width() >= expected.width() && visible.height() >= expected.height();
}

//! Also of the input of a spin box, which has the focus instead of the box. Qt hides the name of a password's field.
bool isNamed(QQuickItem *item)
{
    const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
    return accessible && (!accessible->text(QAccessible::Name).trimmed().isEmpty() || accessible->state().passwordEdit);
}

//! Whether a step goes back: up in the same column, or against the reading direction in the same line.
bool goesBack(const QRectF &from, const QRectF &to)
{
    const bool sameColumn = from.left() < to.right() && to.left() < from.right();
    const bool sameLine = std::abs(from.center().y() - to.center().y()) < std::min(from.height(), to.height()) / 2;
    return (sameColumn && to.bottom() <= from.top()) || (sameLine && to.right() <= from.left());
}

//! Whether two pictures of the window differ where the item is.
bool differ(const QImage &one, const QImage &other, const QRectF &place)
{
    const QRect area = place.toAlignedRect().adjusted(-s_ringMargin, -s_ringMargin, s_ringMargin, s_ringMargin)
        & one.rect() & other.rect();
    return one.copy(area) != other.copy(area);
}

struct Stop
{
    QQuickItem *item;
    bool isSeen;
    bool isScrolledIntoView;
    //! Whether assistive technology has a name for what has the focus.
    bool isNamed;
    //! With the focus on the item and on the next one.
    QRectF place;
    QRectF placeInNext;
    QRectF placeOfNext;
    QImage picture;
};

//! Presses Tab, or both Control and Tab in an editor in which Tab is a character.
void leave(QQuickWindow *window, bool forwards)
{
    const QQuickItem *before = window->activeFocusItem();
    const Qt::Key key = forwards ? Qt::Key_Tab : Qt::Key_Backtab;
    const Qt::KeyboardModifiers shift = forwards ? Qt::NoModifier : Qt::ShiftModifier;
    const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(window->activeFocusItem());
    const bool keepsTab = accessible && accessible->text(QAccessible::Description).contains(QStringLiteral("Ctrl+Tab"));
    QTest::keyClick(window, key, keepsTab ? shift | Qt::ControlModifier : shift);
    // Scrolls the new item into view.
    QCoreApplication::processEvents();
    if (window->activeFocusItem() == before) {
        QTest::keyClick(window, key, shift);
    }
}

//! Presses Tab until the focus is back where it was. All stops, beginning with that one.
QList<Stop> walk(QQuickWindow *window, bool forwards, bool takesPictures)
{
    QList<Stop> stops;
    const QQuickItem *start = window->activeFocusItem();
    do {
        QQuickItem *item = window->activeFocusItem();
        Stop stop {item, isSeen(item), isScrolledIntoView(item), isNamed(item), placeOf(item), {}, {}, {}};
        if (takesPictures) {
            stop.picture = window->grabWindow();
        }
        leave(window, forwards);
        if (QQuickItem *next = window->activeFocusItem()) {
            stop.placeInNext = placeOf(item);
            stop.placeOfNext = placeOf(next);
        }
        stops.append(stop);
    } while (window->activeFocusItem() && window->activeFocusItem() != start && stops.size() < s_manySteps);
    return stops;
}

//! What the focus can't leave: an open menu or dialog, or else the window.
QQuickItem *scopeOf(const QList<Stop> &stops)
{
    QQuickItem *scope = stops.constFirst().item;
    while (scope->parentItem()) {
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(scope);
        const bool isDialog =
            scope->inherits("QQuickPopupItem") || (accessible && accessible->role() == QAccessible::Dialog);
        if (isDialog && std::all_of(stops.cbegin(), stops.cend(), [scope](const Stop &stop) {
                return scope->isAncestorOf(stop.item);
            })) {
            return scope;
        }
        scope = scope->parentItem();
    }
    return scope;
}

//! Whether Tab must visit the item.
bool belongsInTabOrder(QQuickItem *item)
{
    return isSeen(item) && item->isEnabled() && isControl(item)
        && !isPart(item)
        // Its area has the keys.
        && !item->inherits("QQuickScrollBar")
        // Its buttons are visited.
        && !item->inherits("QQuickTabBar")
        // An empty list.
        && item->property("count") != QVariant(0)
        // They only show something.
        && item->objectName() != QLatin1String("connectionDot")
        && item->objectName() != QLatin1String("submittedBar")
        // The input has the keys of the menu.
        && item->objectName() != QLatin1String("slashMenuRow");
}

//! Whether the user reaches the item otherwise: a row and what is in it with the arrow keys of the list, a list as its
//! current row, and a spin box as its input.
bool isReachedOtherwise(QQuickItem *item, const QSet<QQuickItem *> &visited)
{
    QQuickItem *row = rowOf(item);
    const bool isContent = row && item->parentItem() == row && row->inherits("QQuickLoader");
    return (row && (!isCurrentRow(row) || (isContent && visited.contains(row))))
        || std::any_of(visited.cbegin(), visited.cend(),
                       [item](QQuickItem *stop) { return (rowOf(stop) || isPart(stop)) && item->isAncestorOf(stop); });
}

QStringList listed(const QList<Stop> &stops)
{
    QStringList names;
    std::transform(stops.cbegin(), stops.cend(), std::back_inserter(names),
                   [](const Stop &stop) { return described(stop.item); });
    return names;
}

QList<QQuickItem *> itemsOf(const QList<Stop> &stops)
{
    QList<QQuickItem *> items;
    std::transform(stops.cbegin(), stops.cend(), std::back_inserter(items), [](const Stop &stop) { return stop.item; });
    return items;
}

} // namespace

namespace AccessibleWalk
{

QStringList tabFaults(QQuickWindow *window, const Toolkit &toolkit)
{
    if (!window->activeFocusItem()) {
        return {QStringLiteral("nothing has the focus")};
    }
    // The first stop may be an item that only code focuses.
    leave(window, true);
    if (!window->activeFocusItem()) {
        return {QStringLiteral("the focus is lost")};
    }
    const QList<Stop> stops = walk(window, true, true);
    if (!window->activeFocusItem()) {
        return {QStringLiteral("the focus is lost after ") + described(stops.constLast().item)};
    }
    if (stops.size() >= s_manySteps) {
        return QStringList {QStringLiteral("the focus never comes back: ")} + listed(stops.mid(0, 10));
    }

    QStringList wrong;
    QStringList backwards;
    QSet<QQuickItem *> visited;
    for (int i = 0; i < stops.size(); ++i) {
        const Stop &stop = stops.at(i);
        const Stop &next = stops.at((i + 1) % stops.size());
        if (visited.contains(stop.item)) {
            wrong.append(described(stop.item) + QStringLiteral(" is visited twice"));
        }
        visited.insert(stop.item);
        if (!stop.isSeen) {
            wrong.append(described(stop.item) + QStringLiteral(" can't be seen"));
        } else if (!stop.isScrolledIntoView) {
            wrong.append(described(stop.item) + QStringLiteral(" isn't scrolled into view"));
        }
        if (!stop.isNamed && !toolkit.types.contains(typeOf(stop.item))) {
            wrong.append(described(stop.item) + QStringLiteral(" has the focus but no name"));
        }
        // If it has scrolled since, something else is in its place.
        if (stops.size() > 1 && stop.place == stop.placeInNext && !toolkit.looks.contains(nameOf(stop.item))
            && !differ(stop.picture, next.picture, stop.place)) {
            wrong.append(described(stop.item) + QStringLiteral(" doesn't show its focus"));
        }
        if (goesBack(stop.placeInNext, stop.placeOfNext)) {
            backwards.append(described(stop.item) + QStringLiteral(" is before ") + described(next.item));
        }
    }
    // One step leads from the end to the beginning.
    if (backwards.size() > 1) {
        wrong.append(backwards);
    }

    QQuickItem *scope = scopeOf(stops);
    const QList<QQuickItem *> missed = OmniBarFixture::itemsWhere(scope, [&](QQuickItem *item) {
        return belongsInTabOrder(item) && !visited.contains(item) && !isReachedOtherwise(item, visited);
    });
    for (QQuickItem *item : missed) {
        wrong.append(described(item) + QStringLiteral(" is not in the tab order"));
    }

    QList<Stop> back = walk(window, false, false);
    std::reverse(back.begin() + 1, back.end());
    if (itemsOf(back) != itemsOf(stops)) {
        wrong.append(QStringLiteral("the reverse order differs: ") + listed(back).join(QStringLiteral(", ")));
    }
    return wrong;
}

QList<QQuickItem *> stops(QQuickWindow *window)
{
    return itemsOf(walk(window, true, false));
}

} // namespace AccessibleWalk
