// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtMath>

//! An arc around the centre of the item, a type of org.kde.loomra.components.controls. It is repainted only when one of
//! its properties changes. A Canvas would look the same, but needs two frames of the whole window for each change: with
//! a software renderer, frames are what a level that changes 20 times a second costs.
class Arc : public QQuickPaintedItem
{
    Q_OBJECT

    //! Of the middle of the line, in logical pixels.
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY radiusChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged)
    //! Colour of the full circle below the arc.
    Q_PROPERTY(QColor track MEMBER m_track NOTIFY trackChanged)
    //! Width of the line in logical pixels.
    Q_PROPERTY(double line MEMBER m_line NOTIFY lineChanged)
    //! Angles in radians, clockwise, 0 is right. By default the arc begins at the top. With an end before its start it
    //! is the rest of the circle.
    Q_PROPERTY(double from MEMBER m_from NOTIFY fromChanged)
    Q_PROPERTY(double to MEMBER m_to NOTIFY toChanged)

public:
    explicit Arc(QQuickItem *parent = nullptr);

    //! Runs on the renderer's thread while the main thread waits.
    void paint(QPainter *painter) override;

Q_SIGNALS:
    void radiusChanged();
    void colorChanged();
    void trackChanged();
    void lineChanged();
    void fromChanged();
    void toChanged();

private:
    double sweep() const;

    double m_radius = 0;
    QColor m_color;
    QColor m_track = Qt::transparent;
    double m_line = 2.5;
    double m_from = -M_PI_2;
    double m_to = -M_PI_2;
};
