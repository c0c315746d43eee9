// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestRegistry.h"

#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

namespace
{

//! Whether this process has loaded a driver of Mesa's.
bool hasOpenGlDriver()
{
    QFile mappings(QStringLiteral("/proc/self/maps"));
    return mappings.open(QIODevice::ReadOnly) && mappings.readAll().contains("_dri.so");
}

} // namespace

//! The panels' shadow in a window that the software renderer draws.
class tst_PanelShadow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void needsNoDriverWithoutShaders();
};

void tst_PanelShadow::initTestCase()
{
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
}

void tst_PanelShadow::needsNoDriverWithoutShaders()
{
    QQuickView view;
    QSignalSpy frames(&view, &QQuickWindow::frameSwapped);
    view.setSource(QUrl(QStringLiteral("qrc:/org/kde/loomra/contents/ui/omnibar/common/PanelShadow.qml")));
    QCOMPARE(view.status(), QQuickView::Ready);
    view.resize(200, 100);
    view.show();
    QTRY_VERIFY(!frames.isEmpty());
    QCOMPARE(view.rendererInterface()->graphicsApi(), QSGRendererInterface::Software);
    // Without its effect the caster would be a black rectangle.
    QVERIFY(!view.rootObject()->isVisible());
    QVERIFY(!hasOpenGlDriver());
}

REGISTER_TEST(tst_PanelShadow, QGuiApplication)
#include "tst_PanelShadow.moc"
