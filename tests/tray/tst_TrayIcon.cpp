// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleWalk.h"
#include "Contrast.h"
#include "OmniBarFixture.h"
#include "SignalLog.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QColor>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlContext>
#include <QScopeGuard>
#include <QTest>
#include <QWheelEvent>

#include <memory>
#include <vector>

namespace
{

//! The processes that this one has started and that are still running.
QByteArray childProcesses()
{
    QByteArray children;
    const QStringList threads = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        QFile file(QStringLiteral("/proc/self/task/%1/children").arg(thread));
        if (file.open(QIODevice::ReadOnly)) {
            children += file.readAll();
        }
    }
    return children;
}

//! Receives the addresses that the window opens.
class AddressHandler : public QObject
{
    Q_OBJECT

public:
    AddressHandler()
    {
        for (const QString &scheme : m_schemes) {
            QDesktopServices::setUrlHandler(scheme, this, "open");
        }
    }
    ~AddressHandler() override
    {
        for (const QString &scheme : m_schemes) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }
    Q_DISABLE_COPY_MOVE(AddressHandler)

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &address) { opened.append(address); }

private:
    const QStringList m_schemes {QStringLiteral("file"), QStringLiteral("http"), QStringLiteral("https")};
};

} // namespace

//! The tray view in its window: the state of the agent, and actions that only log.
class tst_TrayIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void states_data();
    void states();
    void withoutAgent();
    void followsTheAgent();
    void formsBySize();
    void actionsOnlyLog();
    void actionsStartNothing();
    void keyboard();
    void accessible_data();
    void accessible();
    void reachableAtEverySize_data();
    void reachableAtEverySize();
    void focusStaysVisible();
    void colorsOfTheSystem();
    void tooltip();

private:
    //! Opens the view with an agent of this status; without an agent if it is null.
    bool open(OmniBarFixture &tray, const char *status);
    //! Resizes the window. The window manager may take its time.
    bool resize(OmniBarFixture &tray, const QSize &size);
    //! Whether nothing of the item is cut off by the window or covered by the scroll bar.
    bool isWhole(OmniBarFixture &tray, QQuickItem *item);
    //! Turns the wheel over the middle of the window, towards the end of the list.
    void scrollDown(OmniBarFixture &tray);
};

bool tst_TrayIcon::open(OmniBarFixture &tray, const char *status)
{
    if (status) {
        tray.provide(
            "agentBridge",
            tray.fake(QStringLiteral("QtObject { property string status: \"%1\" }").arg(QLatin1String(status))));
    } else {
        tray.omit("agentBridge");
    }
    return tray.open(QStringLiteral("TrayIcon.qml"));
}

bool tst_TrayIcon::resize(OmniBarFixture &tray, const QSize &size)
{
    tray.window()->resize(size);
    return QTest::qWaitFor([&] { return tray.item("fullForm") && tray.item("fullForm")->size() == QSizeF(size); });
}

bool tst_TrayIcon::isWhole(OmniBarFixture &tray, QQuickItem *item)
{
    const QQuickItem *scrollBar = tray.item("paneScrollBar");
    const qreal right = scrollBar && scrollBar->isVisible() ? scrollBar->width() : 0;
    const QRectF visible = QRectF(QPointF(), QSizeF(tray.window()->size())).adjusted(0, 0, -right, 0);
    return visible.contains(tray.place(item));
}

void tst_TrayIcon::scrollDown(OmniBarFixture &tray)
{
    const QPointF place = QPointF(tray.window()->width(), tray.window()->height()) / 2;
    QWheelEvent event(place, tray.window()->mapToGlobal(place.toPoint()), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(tray.window(), &event);
}

void tst_TrayIcon::states_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("color");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *status, const char *color, const char *words) {
        QTest::newRow(status) << QByteArray(status) << QString::fromLatin1(color) << QString::fromLatin1(words);
    };
    row("disconnected", "#FF0000", "Not connected");
    row("thinking", "#FFD700", "Processing...");
    row("running", "#FFD700", "Processing...");
    row("error", "#FF0000", "Error");
    row("idle", "#098909", "Connected");
    row("connecting", "#098909", "Connected");
    row("", "#098909", "Connected");
    row("toString", "#098909", "Connected");
}

void tst_TrayIcon::states()
{
    QFETCH(QByteArray, status);
    QFETCH(QString, color);
    QFETCH(QString, words);
    OmniBarFixture tray;
    QVERIFY(open(tray, status.constData()));
    QCOMPARE(tray.item("statusDot")->property("color").value<QColor>(), QColor(color));
    QCOMPARE(tray.item("statusDot")->size(), QSizeF(8, 8));
    QCOMPARE(tray.item("statusText")->property("text").toString(),
             QString(QStringLiteral("Warden Desk\nStatus: ") + QString::fromLatin1(status)));
    QCOMPARE(tray.property("toolTipMainText").toString(), QStringLiteral("Warden Desk"));
    QCOMPARE(tray.property("toolTipSubText").toString(), words);
    QCOMPARE(tray.window()->size(), QSize(200, 200));
    tray.screenshot(QStringLiteral("tray-") + QString::fromLatin1(status));
}

void tst_TrayIcon::withoutAgent()
{
    OmniBarFixture tray;
    tray.omit("i18n");
    QVERIFY(open(tray, nullptr));
    QCOMPARE(tray.item("statusDot")->property("color").value<QColor>(), QColor(Qt::red));
    QCOMPARE(tray.property("toolTipSubText").toString(), QStringLiteral("Not connected"));
    QCOMPARE(tray.item("statusText")->property("text").toString(), QStringLiteral("Warden Desk\nStatus: disconnected"));
}

void tst_TrayIcon::followsTheAgent()
{
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    tray.property("bridge").value<QObject *>()->setProperty("status", QStringLiteral("thinking"));
    QCOMPARE(tray.item("statusDot")->property("color").value<QColor>(), QColor("#FFD700"));
    QVERIFY(tray.item("statusText")->property("text").toString().endsWith(QLatin1String("thinking")));
}

void tst_TrayIcon::formsBySize()
{
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    QVERIFY(tray.item("fullForm"));
    QVERIFY(!tray.item("compactForm"));
    tray.window()->resize(48, 48);
    QTRY_VERIFY(tray.item("compactForm"));
    QVERIFY(!tray.item("fullForm"));
    QTRY_COMPARE(tray.place(tray.item("statusDot")),
                 QRectF(tray.window()->width() - 8, tray.window()->height() - 8, 8, 8));
    tray.screenshot("tray-compact");
    tray.window()->resize(200, 200);
    QTRY_VERIFY(tray.item("fullForm"));
}

void tst_TrayIcon::actionsOnlyLog()
{
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    const QList<QQuickItem *> actions = tray.items("trayAction");
    QCOMPARE(actions.size(), 4);
    const char *const names[] = {"Open Omni-Bar", "Restart Agent", "View Logs", "Settings"};
    for (int i = 0; i < 4; ++i) {
        const QRectF place = tray.place(actions.at(i));
        QVERIFY2(QRectF(0, 0, 200, 200).contains(place), names[i]);
        QCOMPARE(actions.at(i)->property("label").toString(), QString::fromLatin1(names[i]));
        tray.click(actions.at(i));
        QVERIFY(tray.log.has(QtDebugMsg, QStringLiteral("[TrayIcon] ") + QLatin1String(names[i])));
    }
    tray.click("trayButton");
    QVERIFY(tray.log.has(QtDebugMsg, QStringLiteral("[TrayIcon] clicked")));
}

//! With the real native objects: their signals, requests, processes and log lines would show that something happens.
void tst_TrayIcon::actionsStartNothing()
{
    OmniBarFixture tray;
    QVERIFY(tray.open(QStringLiteral("TrayIcon.qml")));
    QTRY_COMPARE(tray.property("status").toString(), QStringLiteral("idle"));
    const AddressHandler addresses;
    std::vector<std::unique_ptr<SignalLog>> natives;
    const QStringList names = OmniBarFixture::contextNames();
    for (const QString &name : names) {
        QObject *native = tray.engine()->rootContext()->contextProperty(name).value<QObject *>();
        if (native) {
            natives.push_back(std::make_unique<SignalLog>(native));
        }
    }
    QCOMPARE(natives.size(), size_t(7));
    const QByteArray systemctl = qgetenv("TOVICTL_SYSTEMCTL_LOG");
    const QByteArray processes = childProcesses();

    QList<QQuickItem *> buttons = tray.items("trayAction");
    buttons.append(tray.item("trayButton"));
    for (QQuickItem *button : qAsConst(buttons)) {
        tray.log.clear();
        tray.click(button);
        QVERIFY(tray.settle());
        QCOMPARE(tray.log.texts().size(), 1);
        QVERIFY2(tray.log.texts().first().startsWith(QLatin1String("[TrayIcon] ")),
                 qPrintable(tray.log.texts().first()));
        for (const auto &native : natives) {
            QCOMPARE(native->take(), QStringList());
        }
        QVERIFY(tray.bridge.isAllTaken());
        QCOMPARE(addresses.opened, QList<QUrl>());
        QCOMPARE(childProcesses(), processes);
        QVERIFY(!QFile::exists(QFile::decodeName(systemctl)));
        QVERIFY(tray.window()->isVisible());
        QCOMPARE(QGuiApplication::topLevelWindows().size(), 1);
    }
}

void tst_TrayIcon::keyboard()
{
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    QStringList reached;
    for (int i = 0; i < 5; ++i) {
        tray.key(Qt::Key_Tab);
        QQuickItem *focused = tray.window()->activeFocusItem();
        reached.append(focused->property("label").toString());
        QVERIFY(focused->property("visualFocus").toBool());
    }
    QCOMPARE(reached,
             QStringList({QStringLiteral("Warden Desk"), QStringLiteral("Open Omni-Bar"),
                          QStringLiteral("Restart Agent"), QStringLiteral("View Logs"), QStringLiteral("Settings")}));
    tray.screenshot("tray-focus");
    tray.key(Qt::Key_Return);
    QVERIFY(tray.log.has(QtDebugMsg, QStringLiteral("[TrayIcon] Settings")));
}

void tst_TrayIcon::accessible_data()
{
    QTest::addColumn<QSize>("size");

    QTest::newRow("icon") << QSize(48, 48);
    QTest::newRow("with scroll bar") << QSize(120, 120);
    QTest::newRow("the initial size") << QSize(200, 200);
}

void tst_TrayIcon::accessible()
{
    QFETCH(QSize, size);
    QAccessible::setActive(true);
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    tray.window()->resize(size);
    const char *form = size.width() < 96 ? "compactForm" : "fullForm";
    QTRY_VERIFY(tray.item(form) && tray.item(form)->size() == QSizeF(tray.window()->size()));
    QVERIFY(tray.settle());
    tray.key(Qt::Key_Tab);
    const QStringList wrong = AccessibleWalk::faults(tray.window());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

void tst_TrayIcon::reachableAtEverySize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("scrolls");

    QTest::newRow("the smallest full form") << QSize(96, 96) << true;
    QTest::newRow("small") << QSize(120, 120) << true;
    QTest::newRow("low") << QSize(300, 120) << true;
    QTest::newRow("almost high enough") << QSize(150, 180) << true;
    QTest::newRow("the initial size") << QSize(200, 200) << false;
    QTest::newRow("narrow and high") << QSize(96, 400) << false;
}

void tst_TrayIcon::reachableAtEverySize()
{
    QFETCH(QSize, size);
    QFETCH(bool, scrolls);
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    QVERIFY(resize(tray, size));
    QTRY_VERIFY(tray.item("paneScrollBar") && tray.item("paneScrollBar")->isVisible() == scrolls);
    const QString name = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
    tray.screenshot(QStringLiteral("tray-") + name);

    // By keyboard, forwards and backwards.
    const auto visitAll = [&tray, this](Qt::KeyboardModifiers modifiers) {
        for (int i = 0; i < 5; ++i) {
            tray.key(Qt::Key_Tab, modifiers);
            QQuickItem *focused = tray.window()->activeFocusItem();
            QVERIFY(focused->property("visualFocus").toBool());
            QTRY_VERIFY2(isWhole(tray, focused), qPrintable(focused->property("label").toString()));
        }
    };
    visitAll(Qt::NoModifier);
    tray.screenshot(QStringLiteral("tray-focus-") + name);
    visitAll(Qt::ShiftModifier);

    // By mouse.
    QQuickItem *last = tray.items("trayAction").constLast();
    for (int i = 0; i < 20 && !isWhole(tray, last); ++i) {
        scrollDown(tray);
    }
    QTRY_VERIFY(isWhole(tray, last));
    tray.click(last);
    QVERIFY(tray.log.has(QtDebugMsg, QStringLiteral("[TrayIcon] Settings")));
}

void tst_TrayIcon::focusStaysVisible()
{
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    QQuickItem *last = tray.items("trayAction").constLast();
    tray.focus(last);
    QVERIFY(resize(tray, QSize(110, 110)));
    QTRY_VERIFY(isWhole(tray, last));
}

void tst_TrayIcon::colorsOfTheSystem()
{
    const auto restore = qScopeGuard([before = QGuiApplication::palette()] { QGuiApplication::setPalette(before); });
    const QPalette dark(QColor("#31363b"), QColor("#2a2e32"));
    QGuiApplication::setPalette(dark);
    OmniBarFixture tray;
    QVERIFY(open(tray, "idle"));
    QCOMPARE(tray.window()->color(), dark.color(QPalette::Window));
    tray.hover(tray.item("statusText")); // a hovered action has another colour
    const QQuickItem *action = tray.items("trayAction").constLast();
    const auto colorOf = [action](const char *part) {
        return action->property(part).value<QObject *>()->property("color").value<QColor>();
    };
    QCOMPARE(colorOf("background"), dark.color(QPalette::Button));
    QCOMPARE(colorOf("contentItem"), dark.color(QPalette::ButtonText));
    QVERIFY(tray.settle());
    QCOMPARE(Contrast::faintTexts(tray.window()), QStringList());
}

void tst_TrayIcon::tooltip()
{
    OmniBarFixture tray;
    QVERIFY(open(tray, "error"));
    tray.hover(tray.item("statusText")); // from another place, or there is no event
    tray.hover(tray.item("trayButton"));
    QTRY_VERIFY(tray.isSeen(tray.item("toolTipText")));
    QCOMPARE(tray.item("toolTipText")->property("text").toString(), QStringLiteral("Warden Desk\nError"));
}

REGISTER_TEST(tst_TrayIcon, QGuiApplication)

#include "tst_TrayIcon.moc"
