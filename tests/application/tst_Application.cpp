// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Application.h"
#include "IconTheme.h"
#include "TestRegistry.h"

#include <QDir>
#include <QIcon>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

namespace
{

QQuickWindow *window()
{
    return qobject_cast<QQuickWindow *>(QGuiApplication::topLevelWindows().value(0));
}

bool has(const char *objectName)
{
    return window()->findChild<QQuickItem *>(QLatin1String(objectName));
}

bool isBuilt(const QStringList &parts)
{
    return std::all_of(parts.begin(), parts.end(), [](const QString &part) { return has(qPrintable(part)); });
}

} // namespace

//! The application as main() makes it: what the first frame doesn't need is built after it.
class tst_Application : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buildsTheRestAfterTheFirstFrame();
    void followsTheAnimationSpeed();
    void hasADesktopFile();
};

void tst_Application::buildsTheRestAfterTheFirstFrame()
{
    const QStringList late = {
        QStringLiteral("connectionDot"), QStringLiteral("settingsBtn"),   QStringLiteral("micBtn"),
        QStringLiteral("barCloseBtn"),   QStringLiteral("compactBubble"), QStringLiteral("idleCards"),
    };

    // run() made it, and no event was processed yet: there was no frame.
    QVERIFY(window());
    QVERIFY(has("inputField"));
    for (const QString &part : late) {
        QVERIFY2(!has(qPrintable(part)), qPrintable(part));
    }
    QCOMPARE(QGuiApplication::windowIcon().name(), QString());
    QCOMPARE(qgetenv("QSG_ATLAS_WIDTH"), QByteArray("512"));
    QCOMPARE(qgetenv("QSG_ATLAS_HEIGHT"), QByteArray("256")); // a value that is set already is kept

    QTRY_VERIFY(isBuilt(late));
    QTRY_COMPARE(QGuiApplication::windowIcon().name(), QStringLiteral("loomra-kde"));
    QVERIFY(!qEnvironmentVariableIsSet("QSG_ATLAS_WIDTH")); // child processes must not inherit it
    QCOMPARE(qgetenv("QSG_ATLAS_HEIGHT"), QByteArray("256"));
    QCOMPARE(window()->icon().name(), QStringLiteral("loomra-kde"));
}

//! The desktop animates nothing, see run(). Durations that the design fixes stay.
void tst_Application::followsTheAnimationSpeed()
{
    const auto hoverDuration = [](const char *button) {
        const auto *item = window()->findChild<QQuickItem *>(QLatin1String(button));
        return item ? item->property("hoverDuration") : QVariant();
    };
    QTRY_COMPARE(hoverDuration("barCloseBtn"), 0);
    QCOMPARE(hoverDuration("settingsBtn"), 120);
    QCOMPARE(hoverDuration("micBtn"), 150);

    const auto *cards = window()->findChild<QQuickItem *>(QStringLiteral("idleCards"));
    QVERIFY(cards);
    const auto *card = cards->childItems().value(0);
    QTRY_VERIFY(cards->isVisible() && card->width() > 0);
    QTest::mouseMove(window(), card->mapToScene(card->boundingRect().center()).toPoint());
    QVERIFY(card->property("hovered").toBool());
    QCOMPARE(card->scale(), 1.03); // at once

    const auto *bar = window()->findChild<QQuickItem *>(QStringLiteral("barCard"));
    QVERIFY(bar);
    // The sheet appears in its place. Again, because the first time it is created.
    for (int opening = 0; opening < 2; ++opening) {
        window()->setProperty("settingsPanelOpen", true);
        QTRY_VERIFY(has("settingsPanel"));
        const auto *sheet = window()->findChild<QQuickItem *>(QStringLiteral("settingsPanel"));
        QTRY_COMPARE(sheet->opacity(), 1.0);
        QCOMPARE(sheet->scale(), 1.0);
        const double place = sheet->mapToScene({}).y();
        QTRY_COMPARE(bar->property("y"), bar->property("targetY")); // its animation stays
        QCOMPARE(sheet->mapToScene({}).y(), place);
        window()->setProperty("settingsPanelOpen", false);
        QTRY_COMPARE(bar->property("y"), bar->property("targetY"));
    }
}

//! Desktops find the name and the icon of a window by the base name of a desktop file.
void tst_Application::hasADesktopFile()
{
    const QDir data(qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QLatin1String("/data"));
    QCOMPARE(QGuiApplication::desktopFileName(), QStringLiteral("org.kde.loomra-kde"));
    QVERIFY(data.exists(QGuiApplication::desktopFileName() + QLatin1String(".desktop")));
}

static int run(int argc, char **argv)
{
    // From the start there is an icon to be found.
    const QTemporaryDir themes;
    if (!IconTheme::write(themes.path(), QStringLiteral("test"), {QStringLiteral("loomra-kde")})) {
        qFatal("the icon theme can't be written");
    }
    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName(QStringLiteral("test"));

    QSettings globals(QDir::homePath() + QStringLiteral("/.config/kdeglobals"), QSettings::IniFormat);
    globals.setValue(QStringLiteral("KDE/AnimationDurationFactor"), 0);
    globals.sync();

    qputenv("QSG_ATLAS_HEIGHT", "256");
    Application::prepareEnvironment();
    const Application application(argc, argv);
    tst_Application test;
    return QTest::qExec(&test, argc, argv);
}

REGISTER_TEST_MAIN(tst_Application, run)

#include "tst_Application.moc"
