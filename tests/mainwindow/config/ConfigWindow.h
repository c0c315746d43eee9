// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "ConfigManager.h"
#include "MessageLog.h"

#include <QByteArray>
#include <QJsonObject>
#include <QPoint>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

//! The settings in a window, with the real ConfigManager and the agent tool's file in the test's home. Unexpected
//! warnings fail the test.
class ConfigWindow
{
public:
    //! Removes the file and sets the environment and about-data of the program.
    ConfigWindow();
    ~ConfigWindow();
    Q_DISABLE_COPY_MOVE(ConfigWindow)

    //! The path of the agent tool's file, determined without the program.
    static QString path();
    //! Writes the file like another program.
    static bool write(const QByteArray &content);
    static QByteArray content();
    //! The file as an object.
    static QJsonObject saved();
    static QJsonObject objectOf(const QByteArray &json);

    //! Instead of the real one; null for none. Call it before open().
    void provide(const QString &name, QObject *object);

    //! Opens the window and shows a tab.
    bool open(int tab = 0, const QSize &size = {1280, 720});
    bool showTab(int tab);

    QQuickWindow *window() const { return m_window; }
    ConfigManager *manager() const { return m_manager.get(); }
    //! The page with the header and the tabs.
    QQuickItem *settings() const { return item("settingsPage"); }
    //! The page of the current tab.
    QQuickItem *page() const;
    QStringList notices() const;
    //! What screen readers speak without a change of the focus.
    QStringList announcements() const;

    //! The items of this name, only visible ones, in drawing order.
    QList<QQuickItem *> items(const char *objectName, QQuickItem *root = nullptr) const;
    QQuickItem *item(const char *objectName, QQuickItem *root = nullptr) const;
    //! The texts of items.
    static QStringList texts(const QList<QQuickItem *> &items);
    //! The control of a field in a card, or in the page if there are no cards.
    QQuickItem *control(const char *key, int card = 0) const;

    void click(QQuickItem *item);
    void click(const char *objectName) { click(item(objectName)); }
    //! Replaces the text of a field by keys, and leaves it.
    void edit(QQuickItem *field, const QString &text);
    //! The same without leaving the field.
    void type(QQuickItem *field, const QString &text);
    //! Chooses the word of a combo box by keys.
    void choose(QQuickItem *box, const QString &word);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;

    //! The unexpected warnings so far. They don't fail the test any more.
    QStringList takeWarnings();
    //! Writes the window's picture to NAME.png in the directory that TOVICTL_SCREENSHOTS names, if there is one.
    void screenshot(const QString &name) const;

    MessageLog log; // the first member with a destructor that matters, so that it misses nothing

private:
    std::unique_ptr<ConfigManager> m_manager;
    QList<QPair<QString, QObject *>> m_provided;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QObject> m_root;
    QQuickWindow *m_window = nullptr;
};
