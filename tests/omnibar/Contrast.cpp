// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Contrast.h"

#include "OmniBarFixture.h"

#include <QFont>
#include <QFontInfo>
#include <QHash>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double s_minimum = 4.5;
constexpr double s_minimumOfLarge = 3;
//! In pixels at 96 dots per inch: 18 points, or 14 points in bold.
constexpr int s_large = 24;
constexpr int s_largeBold = 19;
//! In pixels, with the padding next to it.
constexpr int s_border = 3;

double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

//! The background of a text: the most frequent colour on the edge of its area. Only the upper four bits of each channel
//! are compared, because a background may be a gradient.
QColor backgroundAround(const QImage &picture, const QRect &area)
{
    QHash<QRgb, QList<QRgb>> shades;
    const auto count = [&](int x, int y) {
        const QRgb pixel = picture.pixel(x, y);
        shades[pixel & 0xf0f0f0].append(pixel);
    };
    for (int x = area.left(); x <= area.right(); ++x) {
        count(x, area.top());
        count(x, area.bottom());
    }
    for (int y = area.top(); y <= area.bottom(); ++y) {
        count(area.left(), y);
        count(area.right(), y);
    }
    QList<QRgb> pixels;
    for (const QList<QRgb> &shade : qAsConst(shades)) {
        pixels = shade.size() > pixels.size() ? shade : pixels;
    }
    std::sort(pixels.begin(), pixels.end());
    return QColor(pixels.value(pixels.size() / 2));
}

QColor over(const QColor &color, double opacity, const QColor &background)
{
    const double alpha = color.alphaF() * opacity;
    const auto mix = [alpha](double front, double back) { return front * alpha + back * (1 - alpha); };
    return QColor::fromRgbF(mix(color.redF(), background.redF()), mix(color.greenF(), background.greenF()),
                            mix(color.blueF(), background.blueF()));
}

double opacityOf(const QQuickItem *item)
{
    double opacity = 1;
    for (; item; item = item->parentItem()) {
        opacity *= item->opacity();
    }
    return opacity;
}

//! The part of the window in which the text is drawn. Without the edge of an item that is larger than its text, because
//! that may be the border of a button.
QRect placeOf(QQuickItem *item)
{
    const bool isLarger = item->height() > item->implicitHeight() + 2 * s_border;
    const double edge = isLarger ? s_border : 0;
    QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()).adjusted(edge, edge, -edge, -edge))
        & QRectF(QPointF(), QSizeF(item->window()->size()));
    for (QQuickItem *parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (parent->clip()) {
            place &= parent->mapRectToScene(QRectF(0, 0, parent->width(), parent->height()));
        }
    }
    return place.toAlignedRect();
}

bool hasWords(const QString &text)
{
    return std::count_if(text.cbegin(), text.cend(), [](QChar character) { return character.isLetterOrNumber(); }) > 1;
}

//! The open dialog, whose shade makes all other texts faint; the window if there is none.
QQuickItem *inFront(QQuickWindow *window)
{
    const QList<QQuickItem *> shades = OmniBarFixture::itemsWhere(window->contentItem(), [](QQuickItem *item) {
        return item->objectName() == QLatin1String("dialogShade") && OmniBarFixture::isSeen(item);
    });
    return shades.isEmpty() ? window->contentItem() : shades.constLast()->parentItem();
}

} // namespace

namespace Contrast
{

double ratio(const QColor &one, const QColor &other)
{
    const double lighter = std::max(luminance(one), luminance(other));
    const double darker = std::min(luminance(one), luminance(other));
    return (lighter + 0.05) / (darker + 0.05);
}

QStringList faintTexts(QQuickWindow *window, const QList<QColor> &fixed)
{
    const QImage picture = window->grabWindow().convertToFormat(QImage::Format_ARGB32);
    const QList<QQuickItem *> texts = OmniBarFixture::itemsWhere(inFront(window), [&fixed](QQuickItem *item) {
        const QRgb color = item->property("color").value<QColor>().rgba();
        const bool isFixed =
            std::any_of(fixed.cbegin(), fixed.cend(), [color](const QColor &each) { return each.rgba() == color; });
        return !isFixed
            && (item->inherits("QQuickText") || item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit"))
            && OmniBarFixture::isSeen(item) && item->isEnabled() && hasWords(item->property("text").toString())
            && placeOf(item).width() > 4 && placeOf(item).height() > 4;
    });
    QStringList faint;
    for (QQuickItem *item : texts) {
        const QColor background = backgroundAround(picture, placeOf(item) & picture.rect());
        const QColor color = over(item->property("color").value<QColor>(), opacityOf(item), background);
        const QFontInfo font(item->property("font").value<QFont>());
        const bool large = font.pixelSize() >= (font.bold() ? s_largeBold : s_large);
        const double value = ratio(color, background);
        if (value < (large ? s_minimumOfLarge : s_minimum)) {
            faint.append(QStringLiteral("%1: %2, %3 on %4")
                             .arg(QString::number(value, 'f', 2), item->property("text").toString().left(40),
                                  item->property("color").value<QColor>().name(QColor::HexArgb), background.name()));
        }
    }
    return faint;
}

} // namespace Contrast
