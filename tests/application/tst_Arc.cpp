// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Arc.h"
#include "TestRegistry.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QTest>

#include <cmath>

namespace
{

constexpr int s_size = 40;
constexpr double s_radius = 15;

//! Counts how often it is painted.
class CountedArc : public Arc
{
public:
    void paint(QPainter *painter) override
    {
        ++paints;
        Arc::paint(painter);
    }

    int paints = 0;
};

//! The places on the circle that have a color, in degrees clockwise from the right: one in the middle of each 30.
QList<int> places(const QImage &picture, const QColor &color)
{
    QList<int> degrees;
    for (int angle = 15; angle < 360; angle += 30) {
        const double radians = qDegreesToRadians(static_cast<double>(angle));
        const int x = qFloor(s_size / 2.0 + s_radius * std::cos(radians));
        const int y = qFloor(s_size / 2.0 + s_radius * std::sin(radians));
        if (picture.pixelColor(x, y) == color) {
            degrees.append(angle);
        }
    }
    return degrees;
}

} // namespace

//! Which part of the circle an arc is, and when it is painted.
class tst_Arc : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parts_data();
    void parts();
    void isPaintedForChangesOnly();
};

void tst_Arc::parts_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<QList<int>>("expected");

    const QList<int> all {15, 45, 75, 105, 135, 165, 195, 225, 255, 285, 315, 345};
    const double turn = 2 * M_PI;
    QTest::newRow("nothing") << 0.0 << 0.0 << QList<int>();
    QTest::newRow("a quarter") << 0.0 << turn / 4 << all.mid(0, 3);
    QTest::newRow("from the top") << -turn / 4 << turn / 4 << QList<int> {15, 45, 75, 285, 315, 345};
    QTest::newRow("full") << 0.0 << turn << all;
    QTest::newRow("more than full") << 0.0 << 1.5 * turn << all;
    QTest::newRow("the rest of the circle") << turn / 4 << turn / 4 - turn * 3 / 4 << all.mid(3, 3);
    QTest::newRow("the rest of nothing") << turn / 4 << turn / 4 - turn << all;
    QTest::newRow("the rest after more than a turn") << 0.0 << -1.75 * turn << all.mid(0, 3);
}

void tst_Arc::parts()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(QList<int>, expected);

    Arc arc;
    arc.setSize(QSizeF(s_size, s_size));
    arc.setProperty("radius", s_radius);
    arc.setProperty("color", QColor(Qt::red));
    arc.setProperty("track", QColor(Qt::blue));
    arc.setProperty("from", from);
    arc.setProperty("to", to);
    QImage picture(s_size, s_size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    arc.paint(&painter);
    QCOMPARE(places(picture, Qt::red), expected);
    QCOMPARE(places(picture, Qt::blue).size(), 12 - expected.size());
}

void tst_Arc::isPaintedForChangesOnly()
{
    QQuickWindow window;
    window.resize(s_size, s_size);
    auto *arc = new CountedArc;
    arc->setParentItem(window.contentItem());
    arc->setSize(QSizeF(s_size, s_size));
    window.show();
    QTRY_COMPARE(arc->paints, 1);

    const QVector<QPair<const char *, QVariant>> changes {
        {"radius", s_radius}, {"color", QColor(Qt::red)}, {"track", QColor(Qt::blue)}, {"line", 2.0}, {"from", 0.0},
        {"to", 1.0},
    };
    for (int i = 0; i < changes.size(); ++i) {
        arc->setProperty(changes[i].first, changes[i].second);
        QTRY_COMPARE(arc->paints, i + 2);
        // The same value, in a frame that is drawn for another reason.
        arc->setProperty(changes[i].first, changes[i].second);
        arc->setOpacity(1 - 0.1 * i);
        window.grabWindow();
        QCOMPARE(arc->paints, i + 2);
    }
}

REGISTER_TEST(tst_Arc, QGuiApplication)

#include "tst_Arc.moc"
