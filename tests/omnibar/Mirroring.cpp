// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Mirroring.h"

#include "CatalogueTranslator.h"
#include "LongTexts.h"
#include "OmniBarFixture.h"

#include <QGuiApplication>
#include <QMap>
#include <QTest>

#include <algorithm>
#include <tuple>

namespace
{

const QString s_language = QStringLiteral("ar");
// What rounding to whole pixels may take, in pixels.
constexpr qreal s_tolerance = 1.5;
constexpr int s_timeout = 3000; // in ms

//! Where an item is, in the window.
struct Place
{
    QString item;
    QRectF edges;
};

//! The names around an item, and what it is.
QString described(QQuickItem *item)
{
    QStringList names;
    for (QQuickItem *parent = item; parent && names.size() < 2; parent = parent->parentItem()) {
        if (!parent->objectName().isEmpty()) {
            names.prepend(parent->objectName());
        }
    }
    const QString type = QString::fromLatin1(item->metaObject()->className()).section(QLatin1Char('_'), 0, 0);
    const QString text = item->property("text").toString().left(40);
    // Rich text is rendered anew for the other layout.
    return QStringLiteral("%1 \"%2\" in %3")
        .arg(type, text.startsWith(QLatin1Char('<')) ? QString() : text, names.join(QLatin1Char('.')));
}

//! The edges of an item, or of its glyphs if it is a text that isn't translated: a translated one is aligned on the
//! right in both layouts.
QRectF edgesOf(QQuickItem *item)
{
    const bool isText = item->inherits("QQuickText") && !item->property("text").toString().isRightToLeft();
    return item->mapRectToScene(isText ? LongTexts::glyphsOf(item) : QRectF(QPointF(), item->size()));
}

//! @param view what can be seen of the window there: lists create rows outside of it later
void collect(QQuickItem *item, const QStringList &exceptions, QRectF view, QList<Place> &places)
{
    if (!item->isVisible() || qFuzzyIsNull(item->opacity()) || !qFuzzyIsNull(item->rotation())
        || exceptions.contains(item->objectName())) {
        return;
    }
    // The content of a view is as wide as its rows or pages, wherever they are.
    const bool isContent = item->parentItem() && item->parentItem()->inherits("QQuickFlickable");
    const QRectF edges = edgesOf(item);
    if (!edges.isEmpty() && !isContent && !edges.intersects(view)) {
        return;
    }
    if (item->clip()) {
        view &= edges;
    }
    // Such as the highlight of a list.
    const bool isNothing = qstrcmp(item->metaObject()->className(), "QQuickItem") == 0 && item->childItems().isEmpty();
    // A style need not pad its text fields alike on both sides.
    const bool isStyle = item->inherits("QQuickPlaceholderText");
    if (!edges.isEmpty() && !isContent && !isNothing && !isStyle && edges.width() <= item->window()->width()) {
        places.append({described(item), edges});
    }
    const auto children = item->childItems();
    for (QQuickItem *child : children) {
        collect(child, exceptions, view, places);
    }
}

using Kinds = QMap<QString, QList<QRectF>>;

//! The places of each kind of item in reading order. Lists create their rows again when the layout is mirrored, so the
//! items themselves can't be compared.
//! @param mirrorWidth the width of the window, to mirror the places; else 0
Kinds sorted(const QList<Place> &places, qreal mirrorWidth)
{
    Kinds kinds;
    for (const Place &place : places) {
        QRectF edges = place.edges;
        if (mirrorWidth > 0) {
            edges.moveLeft(mirrorWidth - edges.right());
        }
        kinds[place.item].append(edges);
    }
    for (QList<QRectF> &kind : kinds) {
        std::sort(kind.begin(), kind.end(), [](const QRectF &a, const QRectF &b) {
            const auto order = [](const QRectF &edges) {
                return std::make_tuple(qRound(edges.top()), qRound(edges.left()), qRound(edges.right()));
            };
            return order(a) < order(b);
        });
    }
    return kinds;
}

bool isSame(const QRectF &a, const QRectF &b)
{
    return qAbs(a.left() - b.left()) < s_tolerance && qAbs(a.right() - b.right()) < s_tolerance;
}

QStringList differences(const Kinds &mirrored, const Kinds &expected)
{
    QStringList found;
    for (auto kind = expected.begin(); kind != expected.end(); ++kind) {
        if (!mirrored.contains(kind.key())) {
            found.append(kind.key() + QStringLiteral(": missing in the mirrored layout"));
        }
    }
    for (auto kind = mirrored.begin(); kind != mirrored.end(); ++kind) {
        const QList<QRectF> others = expected.value(kind.key());
        if (others.size() != kind->size()) {
            found.append(QStringLiteral("%1: %2 instead of %3").arg(kind.key()).arg(kind->size()).arg(others.size()));
            continue;
        }
        for (int i = 0; i < kind->size(); ++i) {
            if (!isSame(kind->at(i), others.at(i))) {
                found.append(QStringLiteral("%1 is at %2 to %3 instead of %4 to %5")
                                 .arg(kind.key())
                                 .arg(kind->at(i).left())
                                 .arg(kind->at(i).right())
                                 .arg(others.at(i).left())
                                 .arg(others.at(i).right()));
            }
        }
    }
    return found;
}

} // namespace

bool Mirroring::use()
{
    // Qt asks it for the direction whenever a translation is loaded.
    auto *translator = new CatalogueTranslator;
    translator->setParent(QCoreApplication::instance());
    return LongTexts::use(s_language) && QCoreApplication::installTranslator(translator)
        && QGuiApplication::layoutDirection() == Qt::RightToLeft;
}

QString Mirroring::faults(OmniBarFixture &window, const QStringList &exceptions)
{
    QQuickItem *content = window.window()->contentItem();
    const auto places = [&] {
        QList<Place> places;
        collect(content, exceptions, QRectF(QPointF(), content->size()), places);
        return places;
    };
    const auto mirrored = sorted(places(), 0);
    if (mirrored.isEmpty()) {
        return QStringLiteral("nothing can be seen");
    }
    QStringList found;
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    const auto isMirrored = [&] {
        found = differences(mirrored, sorted(places(), content->width()));
        return found.isEmpty();
    };
    // Lists create their rows again, and knobs of switches move.
    const bool isWhole = QTest::qWaitFor(isMirrored, s_timeout);
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    return isWhole ? QString() : found.join(QLatin1Char('\n'));
}
