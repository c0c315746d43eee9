// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigWindow.h"

#include "Application.h"
#include "Files.h"
#include "OmniBarFixture.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QStandardPaths>
#include <QStyleHints>
#include <QTest>

namespace
{

void fail(const QString &what)
{
    QTest::qFail(qUtf8Printable(what), __FILE__, __LINE__);
}

void describeOnce()
{
    static const bool s_done = [] {
        Application::prepareEnvironment();
        Application::describe();
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QGuiApplication::styleHints()->setCursorFlashTime(0);
        return true;
    }();
    Q_UNUSED(s_done)
}

} // namespace

ConfigWindow::ConfigWindow()
{
    describeOnce();
    QDir(QFileInfo(path()).path()).removeRecursively();
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addImportPath(QStringLiteral("qrc:/"));
}

ConfigWindow::~ConfigWindow()
{
    m_root.reset();
    m_engine.reset();
    m_manager.reset();
    const QStringList warnings = takeWarnings();
    if (!warnings.isEmpty()) {
        fail(QStringLiteral("unexpected warning: ") + warnings.join(QStringLiteral(" | ")));
    }
}

QStringList ConfigWindow::takeWarnings()
{
    QStringList warnings = log.takeWarnings();
    // No desktop's style is installed with the tests.
    warnings.removeAll(QStringLiteral("Failed to find a Kirigami platform plugin"));
    return warnings;
}

QString ConfigWindow::path()
{
    return QDir::homePath() + QStringLiteral("/.config/loomra/loomra.json");
}

bool ConfigWindow::write(const QByteArray &content)
{
    return writeFile(path(), content);
}

QByteArray ConfigWindow::content()
{
    return contentOf(path());
}

QJsonObject ConfigWindow::objectOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

QJsonObject ConfigWindow::saved()
{
    return objectOf(content());
}

void ConfigWindow::provide(const QString &name, QObject *object)
{
    m_provided.append({name, object});
}

bool ConfigWindow::open(int tab, const QSize &size)
{
    m_manager = std::make_unique<ConfigManager>();
    m_engine->rootContext()->setContextProperty(QStringLiteral("configManager"), m_manager.get());
    for (const auto &[name, object] : qAsConst(m_provided)) {
        m_engine->rootContext()->setContextProperty(name, object);
    }
    const QString directory = qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tests/mainwindow/config/");
    QQmlComponent component(m_engine.get(), QUrl::fromLocalFile(directory + QStringLiteral("SettingsWindow.qml")));
    m_root.reset(component.createWithInitialProperties(
        {{QStringLiteral("width"), size.width()}, {QStringLiteral("height"), size.height()}}));
    m_window = qobject_cast<QQuickWindow *>(m_root.get());
    if (!m_window) {
        fail(component.errorString());
        return false;
    }
    return QTest::qWaitForWindowActive(m_window) && QTest::qWaitFor([&] { return settings() != nullptr; })
        && showTab(tab);
}

bool ConfigWindow::showTab(int tab)
{
    item("settingsTabs")->setProperty("currentIndex", tab);
    return QTest::qWaitFor([&] { return page() && page()->width() > 0 && page()->height() > 0; });
}

QQuickItem *ConfigWindow::page() const
{
    QQuickItem *pane = item("configPane");
    return pane ? pane->parentItem() : nullptr;
}

QStringList ConfigWindow::notices() const
{
    return m_root->property("notices").toStringList();
}

QStringList ConfigWindow::announcements() const
{
    QStringList texts;
    const QList<QQuickItem *> announced = items("announcement");
    for (QQuickItem *item : announced) {
        texts.append(QAccessible::queryAccessibleInterface(item)->text(QAccessible::Name));
    }
    return texts;
}

QList<QQuickItem *> ConfigWindow::items(const char *objectName, QQuickItem *root) const
{
    return OmniBarFixture::itemsWhere(root ? root : m_window->contentItem(), [&](QQuickItem *item) {
        return item->isVisible() && item->objectName() == QLatin1String(objectName);
    });
}

QQuickItem *ConfigWindow::item(const char *objectName, QQuickItem *root) const
{
    return items(objectName, root).value(0);
}

QStringList ConfigWindow::texts(const QList<QQuickItem *> &items)
{
    QStringList result;
    for (const QQuickItem *item : items) {
        result.append(item->property("text").toString());
    }
    return result;
}

QQuickItem *ConfigWindow::control(const char *key, int card) const
{
    const QList<QQuickItem *> cards = items("card");
    return item(QByteArray("control-").append(key).constData(), cards.isEmpty() ? page() : cards.value(card));
}

void ConfigWindow::click(QQuickItem *item)
{
    if (!item) {
        fail(QStringLiteral("there is nothing to click"));
        return;
    }
    // Into view first, as a user would do it.
    item->forceActiveFocus(Qt::TabFocusReason);
    const auto place = [&] { return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint(); };
    const QRect whole(QPoint(), m_window->size());
    if (!QTest::qWaitFor([&] { return whole.contains(place()); })) {
        fail(item->objectName() + QStringLiteral(" is outside of the window"));
    }
    // Layouts are completed before the next frame.
    QTest::qWait(0);
    QCoreApplication::processEvents();
    QTest::mouseClick(m_window, Qt::LeftButton, {}, place());
}

void ConfigWindow::type(QQuickItem *field, const QString &text)
{
    if (!field) {
        fail(QStringLiteral("there is no field"));
        return;
    }
    field->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(m_window, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_window, Qt::Key_Delete);
    for (const QChar letter : text) {
        QTest::sendKeyEvent(QTest::Click, m_window, Qt::Key_unknown, letter, Qt::NoModifier);
    }
}

void ConfigWindow::edit(QQuickItem *field, const QString &text)
{
    type(field, text);
    QTest::keyClick(m_window, Qt::Key_Tab);
}

void ConfigWindow::choose(QQuickItem *box, const QString &word)
{
    if (!box) {
        fail(QStringLiteral("there is no box"));
        return;
    }
    box->forceActiveFocus(Qt::TabFocusReason);
    // A choice may remove the box.
    const QPointer<QQuickItem> chosen(box);
    const auto isChosen = [&] { return !chosen || chosen->property("displayText").toString() == word; };
    const int count = box->property("count").toInt();
    for (const Qt::Key step : {Qt::Key_Down, Qt::Key_Up}) {
        for (int i = 0; i < count && !isChosen(); ++i) {
            QTest::keyClick(m_window, step);
        }
    }
    if (!isChosen()) {
        fail(QStringLiteral("there is no choice ") + word);
    }
}

void ConfigWindow::key(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(m_window, key, modifiers);
}

void ConfigWindow::screenshot(const QString &name) const
{
    const QString directory = qEnvironmentVariable("TOVICTL_SCREENSHOTS");
    if (!directory.isEmpty()) {
        QTest::qWait(500); // until animations have ended
        QDir().mkpath(directory);
        m_window->grabWindow().save(directory + QLatin1Char('/') + name + QStringLiteral(".png"));
    }
}
