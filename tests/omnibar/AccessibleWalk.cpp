// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleWalk.h"

#include "OmniBarFixture.h"

#include <QAccessible>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace
{

constexpr int s_manySteps = 100; // more than any tab order has
//! How far outside its item a focus ring is drawn, in pixels.
constexpr int s_ringMargin = 4;

constexpr std::array s_controlRoles {
    QAccessible::Button,       QAccessible::RadioButton, QAccessible::CheckBox, QAccessible::ButtonMenu,
    QAccessible::EditableText, QAccessible::ComboBox,    QAccessible::SpinBox,  QAccessible::Slider,
    QAccessible::ScrollBar,    QAccessible::PageTab,     QAccessible::List,     QAccessible::ListItem,
    QAccessible::MenuItem,     QAccessible::Link,        QAccessible::Table,    QAccessible::ProgressBar,
};

bool hasControlRole(const QAccessibleInterface *accessible)
{
    return accessible
        && std::find(s_controlRoles.cbegin(), s_controlRoles.cend(), accessible->role()) != s_controlRoles.cend();
}

QString nameOf(QQuickItem *item)
{
    const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
    return accessible ? accessible->text(QAccessible::Name) : QString();
}

QString described(QQuickItem *item)
{
    return QStringLiteral("%1 \"%2\" (%3)")
        .arg(QString::fromLatin1(item->metaObject()->className()), nameOf(item), item->objectName());
}

//! Everything that assistive technology finds from the window down.
void collect(QAccessibleInterface *accessible, QSet<QObject *> *found)
{
    if (!accessible) {
        return;
    }
    found->insert(accessible->object());
    for (int child = 0; child < accessible->childCount(); ++child) {
        collect(accessible->child(child), found);
    }
}

//! Whether an item can be seen in the window: neither hidden, nor faded out, nor clipped away.
bool isSeen(QQuickItem *item)
{
    if (!OmniBarFixture::isSeen(item) || item->width() <= 0 || item->height() <= 0) {
        return false;
    }
    QRectF visible = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))
        & QRectF(QPointF(), QSizeF(item->window()->size()));
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->clip()) {
            visible &= parent->mapRectToScene(QRectF(0, 0, parent->width(), parent->height()));
        }
    }
    return !visible.isEmpty();
}

//! Whether the item belongs to another control, as the input of a spin box does.
bool isPart(const QQuickItem *item)
{
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->inherits("QQuickSpinBox") || parent->inherits("QQuickComboBox")
            || parent->inherits("QQuickAbstractButton")) {
            return true;
        }
    }
    return false;
}

bool isControl(QQuickItem *item)
{
    for (const char *type : {"QQuickAbstractButton", "QQuickTextInput", "QQuickTextEdit", "QQuickComboBox",
                             "QQuickSpinBox", "QQuickSlider"}) {
        if (item->inherits(type)) {
            // A text that can only be selected.
            return !item->property("readOnly").toBool() || item->activeFocusOnTab();
        }
    }
    return item->activeFocusOnTab();
}

//! An area that reacts to clicks without being a control. It may be a part of one, or stop clicks from going through.
bool isBareClickArea(QQuickItem *item)
{
    if (!item->inherits("QQuickMouseArea") || !item->isEnabled()
        || !(item->property("acceptedButtons").toInt() & Qt::LeftButton)) {
        return false;
    }
    // Those that stop clicks have no handler, and the shade behind a dialog has a key instead.
    static const int s_clicked = item->metaObject()->indexOfSignal("clicked(QQuickMouseEvent*)");
    struct Signals : QQuickItem
    {
        static bool isHandled(QQuickItem *area)
        {
            return static_cast<Signals *>(area)->isSignalConnected(area->metaObject()->method(s_clicked));
        }
    };
    if (!Signals::isHandled(item)) {
        return false;
    }
    for (QQuickItem *parent = item; parent; parent = parent->parentItem()) {
        if (parent->objectName().endsWith(QLatin1String("Shade"))
            || hasControlRole(QAccessible::queryAccessibleInterface(parent))) {
            return false;
        }
    }
    return true;
}

QRectF placeOf(QQuickItem *item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
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
    bool seen;
    //! With the focus on the item and on the next one, without what has scrolled since.
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
QList<Stop> walk(QQuickWindow *window, bool forwards)
{
    QList<Stop> stops;
    const QQuickItem *start = window->activeFocusItem();
    do {
        QQuickItem *item = window->activeFocusItem();
        Stop stop {item, isSeen(item), placeOf(item), {}, {}, forwards ? window->grabWindow() : QImage()};
        leave(window, forwards);
        if (QQuickItem *next = window->activeFocusItem()) {
            stop.placeInNext = placeOf(item);
            stop.placeOfNext = placeOf(next);
        }
        stops.append(stop);
    } while (window->activeFocusItem() && window->activeFocusItem() != start && stops.size() < s_manySteps);
    return stops;
}

//! What the focus can't leave: an open menu or dialog, otherwise the window.
QQuickItem *scopeOf(QQuickItem *item)
{
    QQuickItem *scope = item;
    while (scope->parentItem()) {
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(scope);
        if (scope->inherits("QQuickPopupItem") || (accessible && accessible->role() == QAccessible::Dialog)) {
            return scope;
        }
        scope = scope->parentItem();
    }
    return scope;
}

QStringList listed(const QList<Stop> &stops)
{
    QStringList names;
    std::transform(stops.cbegin(), stops.cend(), std::back_inserter(names),
                   [](const Stop &stop) { return described(stop.item); });
    return names;
}

} // namespace

namespace AccessibleWalk
{

QStringList controlFaults(QQuickWindow *window, const QStringList &toolkit)
{
    // The types of Qt Quick Controls have a name and a role only then.
    QAccessible::setActive(true);
    QStringList wrong;
    QSet<QObject *> reachable;
    collect(QAccessible::queryAccessibleInterface(window), &reachable);
    const QList<QQuickItem *> controls = OmniBarFixture::itemsWhere(window->contentItem(), [](QQuickItem *item) {
        return isSeen(item) && !isPart(item) && (isControl(item) || isBareClickArea(item));
    });
    for (QQuickItem *item : controls) {
        const QString type = QString::fromLatin1(item->metaObject()->className()).section(QLatin1Char('_'), 0, 0);
        if (toolkit.contains(type)) {
            continue;
        }
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        if (!accessible) {
            wrong.append(described(item) + QStringLiteral(" is unknown"));
            continue;
        }
        // Qt hides the name of a password's field along with its text.
        if (accessible->text(QAccessible::Name).trimmed().isEmpty() && !accessible->state().passwordEdit) {
            wrong.append(described(item) + QStringLiteral(" has no name"));
        }
        if (!hasControlRole(accessible)) {
            wrong.append(described(item) + QStringLiteral(" has the role %1").arg(accessible->role()));
        }
        if (!reachable.contains(item)) {
            wrong.append(described(item) + QStringLiteral(" is out of reach"));
        }
    }
    if (controls.isEmpty()) {
        wrong.append(QStringLiteral("there are no controls"));
    }
    return wrong;
}

QStringList tabFaults(QQuickWindow *window, const QStringList &toolkit)
{
    if (!window->activeFocusItem()) {
        return {QStringLiteral("nothing has the focus")};
    }
    // The first stop may be an item that only code focuses.
    leave(window, true);
    if (!window->activeFocusItem()) {
        return {QStringLiteral("the focus is lost")};
    }
    const QList<Stop> stops = walk(window, true);
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
        if (!stop.seen) {
            wrong.append(described(stop.item) + QStringLiteral(" can't be seen"));
        }
        // If it has scrolled since, the pictures differ anyway.
        if (stops.size() > 1 && !toolkit.contains(nameOf(stop.item))
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

    const QQuickItem *scope = scopeOf(window->activeFocusItem());
    const QList<QQuickItem *> missed = OmniBarFixture::itemsWhere(window->contentItem(), [&](QQuickItem *item) {
        return isSeen(item) && item->isEnabled() && item->activeFocusOnTab() && !visited.contains(item)
            && (scope == item || scope->isAncestorOf(item))
            // A list gives the focus to its current row.
            && std::none_of(visited.cbegin(), visited.cend(),
                            [item](const QQuickItem *stop) { return item->isAncestorOf(stop); });
    });
    for (QQuickItem *item : missed) {
        wrong.append(described(item) + QStringLiteral(" is not in the tab order"));
    }

    QList<Stop> back = walk(window, false);
    std::reverse(back.begin() + 1, back.end());
    if (listed(back) != listed(stops)) {
        wrong.append(QStringLiteral("the reverse order differs: ") + listed(back).join(QStringLiteral(", ")));
    }
    return wrong;
}

} // namespace AccessibleWalk
