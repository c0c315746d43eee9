// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "IconTheme.h"
#include "MessageLog.h"
#include "TestRegistry.h"

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace
{

//! More than an icon has names to try.
constexpr int s_stillFrames = 6;

//! What a window shows whose icon is tinted, in its own colours, or not there.
const QSet<QRgb> s_tinted = {qRgb(0, 0, 0), qRgb(0, 255, 0)};
const QSet<QRgb> s_own = {qRgb(255, 0, 0), qRgb(0, 0, 255)};
const QSet<QRgb> s_none = {qRgb(0, 0, 0)};

//! A frame of one dark colour.
QImage outline()
{
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(QPen(QColor("#232629"), 2));
    painter.drawRect(3, 3, 10, 10);
    return image;
}

//! The frame with a red line across, like the icon of a muted speaker. Most of it is red.
QImage outlineInTwoColors()
{
    QImage image = outline();
    QPainter painter(&image);
    painter.fillRect(4, 5, 8, 6, Qt::red);
    return image;
}

//! An icon that fills its square, in two colours. As a mask it would be a green square.
QImage coloredIcon()
{
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.fillRect(8, 0, 8, 16, Qt::blue);
    return image;
}

} // namespace

//! How an icon is drawn that the theme has in colours, as an outline or not at all.
class tst_FallbackIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void look_data();
    void look();
    void anotherName();

private:
    //! A window with an icon. Null if the properties are wrong.
    std::unique_ptr<QQuickWindow> show(const QString &properties);
    //! Waits until the window shows exactly these colours and keeps them.
    static bool waitForColors(QQuickWindow *window, const QSet<QRgb> &colors);

    QTemporaryDir m_themes;
    QQmlEngine m_engine;
};

void tst_FallbackIcon::initTestCase()
{
    QVERIFY(m_themes.isValid());
    // "unknown" is what Kirigami shows instead of an icon that is missing.
    QVERIFY(IconTheme::write(m_themes.path(), QStringLiteral("test"),
                             {{QStringLiteral("outline"), outline()},
                              {QStringLiteral("both"), coloredIcon()},
                              {QStringLiteral("both-symbolic"), outline()},
                              {QStringLiteral("only-symbolic"), outline()},
                              {QStringLiteral("colored"), coloredIcon()},
                              {QStringLiteral("two"), outlineInTwoColors()},
                              {QStringLiteral("unknown"), coloredIcon()}}));
    // An icon outside of all themes.
    const QString pixmaps = m_themes.filePath(QStringLiteral("pixmaps"));
    QVERIFY(QDir().mkpath(pixmaps));
    QVERIFY(outline().save(pixmaps + QStringLiteral("/old-program.png")));
    QIcon::setThemeSearchPaths({m_themes.path()});
    QIcon::setFallbackSearchPaths({pixmaps});
    QIcon::setThemeName(QStringLiteral("test"));
    m_engine.addImportPath(QStringLiteral("qrc:/"));
}

std::unique_ptr<QQuickWindow> tst_FallbackIcon::show(const QString &properties)
{
    QQmlComponent component(&m_engine);
    component.setData("import QtQuick 2.15\nimport QtQuick.Window 2.15\n"
                      "import org.kde.loomra.components.controls 1.0\n"
                      "Window { visible: true; width: 16; height: 16; color: 'black'\n"
                      "flags: Qt.FramelessWindowHint | Qt.BypassWindowManagerHint\n"
                      "property alias name: icon.name\n"
                      "FallbackIcon { id: icon; color: '#00ff00'; "
                          + properties.toUtf8() + "} }",
                      QUrl());
    return std::unique_ptr<QQuickWindow>(qobject_cast<QQuickWindow *>(component.create()));
}

bool tst_FallbackIcon::waitForColors(QQuickWindow *window, const QSet<QRgb> &colors)
{
    int matches = 0;
    QSet<QRgb> seen;
    const bool isAsExpected = QTest::qWaitFor([&] {
        // Draws a frame, in which the icon may try its next name.
        const QImage image = window->grabWindow().convertToFormat(QImage::Format_RGB32);
        seen.clear();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                seen.insert(image.pixel(x, y));
            }
        }
        matches = seen == colors ? matches + 1 : 0;
        return matches == s_stillFrames;
    });
    if (!isAsExpected) {
        for (const QRgb color : qAsConst(seen)) {
            qInfo() << "drawn:" << QColor(color);
        }
    }
    return isAsExpected;
}

void tst_FallbackIcon::look_data()
{
    QTest::addColumn<QString>("properties");
    QTest::addColumn<QSet<QRgb>>("colors");

    const auto row = [](const char *name, const char *properties, const QSet<QRgb> &colors) {
        QTest::newRow(name) << QString::fromUtf8(properties) << colors;
    };
    row("an outline", "name: 'outline'", s_tinted);
    row("in colours and as an outline", "name: 'both'", s_tinted);
    row("the outline by its name", "name: 'both-symbolic'", s_tinted);
    row("only as an outline", "name: 'only'", s_tinted);
    row("only in colours", "name: 'colored'", s_own);
    row("no outline, but asked for", "name: 'colored-symbolic'", s_own);
    row("an outline in two colours, as a mask", "name: 'two'; mask: true", s_tinted);
    row("outside of all themes", "name: 'old-program'", s_tinted);
    row("a more general name", "name: 'outline-of-something'", s_tinted);
    row("the fallback", "name: 'missing'; fallback: 'outline'", s_tinted);
    row("the fallback as an outline", "name: 'missing'; fallback: 'both'", s_tinted);
    row("the fallback in colours", "name: 'missing'; fallback: 'colored'", s_own);
    row("no fallback needed", "name: 'colored'; fallback: 'outline'", s_own);
    row("neither", "name: 'missing'; fallback: 'absent'", s_none);
    row("no fallback", "name: 'missing'", s_none);
    row("no name", "", s_none);
}

void tst_FallbackIcon::look()
{
    QFETCH(QString, properties);
    QFETCH(QSet<QRgb>, colors);
    MessageLog log;
    const auto window = show(properties);
    QVERIFY(window);
    QVERIFY(waitForColors(window.get(), colors));
    QCOMPARE(log.takeWarnings(), QStringList());
}

void tst_FallbackIcon::anotherName()
{
    const auto window = show(QStringLiteral("name: 'missing'; fallback: 'colored'"));
    QVERIFY(window);
    QVERIFY(waitForColors(window.get(), s_own));
    window->setProperty("name", QStringLiteral("outline"));
    QVERIFY(waitForColors(window.get(), s_tinted));
    window->setProperty("name", QStringLiteral("colored"));
    QVERIFY(waitForColors(window.get(), s_own));
    window->setProperty("name", QStringLiteral("both"));
    QVERIFY(waitForColors(window.get(), s_tinted));
    window->setProperty("name", QStringLiteral("absent"));
    QVERIFY(waitForColors(window.get(), s_own));
}

REGISTER_TEST(tst_FallbackIcon, QGuiApplication)

#include "tst_FallbackIcon.moc"
