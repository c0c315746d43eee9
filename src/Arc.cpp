// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Arc.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double s_circle = 360;

} // namespace

Arc::Arc(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    for (const auto change : {&Arc::radiusChanged, &Arc::colorChanged, &Arc::trackChanged, &Arc::lineChanged,
                              &Arc::fromChanged, &Arc::toChanged}) {
        connect(this, change, this, [this] { update(); });
    }
}

//! In degrees, clockwise, at most a circle.
double Arc::sweep() const
{
    const double degrees = qRadiansToDegrees(m_to - m_from);
    if (degrees >= 0) {
        return std::min(degrees, s_circle);
    }
    const double rest = s_circle + std::fmod(degrees, s_circle);
    return qFuzzyIsNull(rest) ? s_circle : rest;
}

void Arc::paint(QPainter *painter)
{
    const QRectF circle(width() / 2 - m_radius, height() / 2 - m_radius, 2 * m_radius, 2 * m_radius);
    const auto stroke = [&](const QColor &color, double start, double span) {
        QPainterPath path;
        path.arcMoveTo(circle, -start); // the painter's angles are counterclockwise
        path.arcTo(circle, -start, -span);
        painter->strokePath(path, QPen(color, m_line, Qt::SolidLine, Qt::FlatCap));
    };
    if (m_track.alpha() > 0) {
        stroke(m_track, 0, s_circle);
    }
    if (const double span = sweep(); span > 0) {
        stroke(m_color, qRadiansToDegrees(m_from), span);
    }
}
