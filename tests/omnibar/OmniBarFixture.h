// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "MessageLog.h"
#include "ScriptedBridge.h"

#include <QList>
#include <QPoint>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class AgentBridge;

//! The OmniBar as a user has it: the real window on a real display, the real native objects, and a scripted bridge at
//! the other end. One test makes one, says what is different from a normal run, calls open() and then presses keys:
//!
//!     OmniBarFixture bar;
//!     QVERIFY(bar.open());
//!     bar.type("hello");
//!     bar.key(Qt::Key_Return);
//!     bar.bridge.reply(bar.bridge.takeRequest(QStringLiteral("chat")), answer);
//!     QTRY_COMPARE(bar.property("chatModel.count").toInt(), 2);
//!
//! Any warning in the log that wasn't announced by expectWarning() fails the test. The test process needs home, bus,
//! display and net. Texts may be given as UTF-8 literals.
class OmniBarFixture
{
public:
    //! Empties the settings store and lets the scripted bridge listen.
    OmniBarFixture();
    //! Closes the window and reports warnings that nobody expected.
    ~OmniBarFixture();
    Q_DISABLE_COPY_MOVE(OmniBarFixture)

    //! The context properties that the program sets, as far as they exist yet.
    static QStringList contextNames();

    // ---- Before open(): what differs from a normal run

    //! Leaves out a context property. All of them with an empty name.
    void omit(const QString &name = QString());
    void omit(const char *name) { omit(QString::fromUtf8(name)); }
    //! Sets a context property, in place of the real one or beside it.
    void provide(const QString &name, const QVariant &value);
    void provide(const char *name, const QVariant &value) { provide(QString::fromUtf8(name), value); }
    void provide(const char *name, QObject *object) { provide(name, QVariant::fromValue(object)); }
    //! An object made from QML, with QtQuick and Controls imported, for provide() or for what the window asks for. It
    //! lives as long as the fixture. Null, and a failed test, when the text is wrong.
    QObject *fake(const QString &qml);
    QObject *fake(const char *qml) { return fake(QString::fromUtf8(qml)); }
    //! Writes into the settings group of the window's appearance before it is read.
    void store(const QString &key, const QVariant &value);
    void store(const char *key, const QVariant &value) { store(QString::fromUtf8(key), value); }
    //! Draws the panels' shadows too. They are left out otherwise, as without a graphics card they would take most of
    //! the time that the tests need.
    void drawShadows();
    //! Warnings that begin so don't fail the test.
    void expectWarning(const QString &start);
    void expectWarning(const char *start) { expectWarning(QString::fromUtf8(start)); }

    // ---- For several tests, see SharedWindow

    //! The window is going to be brought back to the state in which it opens. Call before open().
    void keepForOthers() { m_isKept = true; }
    //! Undoes what a test did, as far as a user could too, and compares the window with how it opened. False if a
    //! difference remains.
    bool bringBack();
    //! What was done can't be undone.
    void spoil() { m_isSpoiled = true; }

    // ---- The window

    //! Loads the window and waits until it is active, has shown a frame and, unless the bridge was closed or the client
    //! left out, is connected. @param file another window of the program, which says nothing of its first frame
    bool open(const QString &file = QStringLiteral("OmniBar.qml"));
    //! Loads another file of contents/ui, without waiting for anything. Null when that fails.
    QObject *load(const QString &file);

    QQuickWindow *window() const { return m_window; }
    //! The real chat client. Null when it was left out or replaced.
    AgentBridge *agent() const { return m_agent; }
    QQmlEngine *engine() const { return m_engine.get(); }

    //! The first item of this objectName in drawing order, also of those that loaders and lists made; null if none.
    QQuickItem *item(const QString &objectName) const;
    QQuickItem *item(const char *objectName) const { return item(QString::fromUtf8(objectName)); }
    //! All of them.
    QList<QQuickItem *> items(const QString &objectName) const;
    QList<QQuickItem *> items(const char *objectName) const { return items(QString::fromUtf8(objectName)); }
    //! Any object of this name below the window that is no item, such as a timer or a controller; null if none.
    QObject *object(const QString &objectName) const;
    //! As item(), below another item.
    static QQuickItem *itemIn(QQuickItem *root, const QString &objectName);
    //! All items below one, itself included, for which the condition holds.
    static QList<QQuickItem *> itemsWhere(QQuickItem *root, const std::function<bool(QQuickItem *)> &condition);

    //! A property of the window, or of what it holds: "chatModel.count".
    QVariant property(const char *path) const;
    void setProperty(const char *name, const QVariant &value);
    //! Calls a function of the window.
    QVariant invoke(const char *function, const QVariantList &arguments = {});
    //! The value of a JavaScript expression among the ids of OmniBar.qml: "omniTheme.uiPanelBase".
    //! A failure fails the test.
    QVariant evaluate(const QString &expression) const;
    QVariant evaluate(const char *expression) const { return evaluate(QString::fromUtf8(expression)); }

    // ---- What a user does

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    //! Types letters, also those that no key of the keyboard has.
    void type(const QString &text);
    void type(const char *text) { type(QString::fromUtf8(text)); }
    //! Clicks the middle of an item. Fails the test when there is none or it can't be seen.
    void click(QQuickItem *item, Qt::MouseButton button = Qt::LeftButton);
    void click(const QString &objectName) { click(item(objectName)); }
    void click(const char *objectName) { click(item(objectName)); }
    void clickAt(const QPoint &place);
    //! Moves the pointer onto an item.
    void hover(QQuickItem *item);
    //! Gives an item the keyboard focus, as Tab would.
    static void focus(QQuickItem *item) { item->forceActiveFocus(Qt::TabFocusReason); }
    //! Whether the item is in the window's picture: visible, not faded out and not scaled away.
    static bool isSeen(QQuickItem *item);
    //! The item's rectangle in the window.
    static QRectF place(QQuickItem *item);

    //! How a change of a property is animated, as "350 OutCubic": ms and easing. Empty when it jumps. Speed itself
    //! can't be measured, as a busy machine draws few frames.
    static QString behaviour(QObject *object, const char *property);
    //! The same of one animation.
    static QString pace(const QObject *animation);
    //! Waits until nothing moves any more: no property of the window's surface has changed over some frames.
    bool settle();
    //! Writes the window's picture to NAME.png in the directory that TOVICTL_SCREENSHOTS names, if there is one.
    void screenshot(const QString &name);
    void screenshot(const char *name) { screenshot(QString::fromUtf8(name)); }

    // ---- What is heard

    //! The warnings so far that weren't expected; forgets them, so that they don't fail the test.
    QStringList takeWarnings();
    //! Fails the test if there are any.
    void verifyNoWarnings();

    MessageLog log; // first of the members, to see everything
    ScriptedBridge bridge;

private:
    void prepareContext();
    void requireNoWindow() const;
    bool drawFrame();
    //! Whether the window is on its way between the bubble and the screen.
    bool isResizing() const;
    //! Waits until both ends of the connection have received what the other one sent.
    bool flushConnection();
    //! Everything that a test may change and the next one would notice, in a form that can be compared.
    QVariantMap state() const;
    //! Place and fade of the window and of everything in it that moves.
    QVariantList movingParts() const;

    QStringList m_omitted;
    bool m_omitsAll = false;
    QList<QPair<QString, QVariant>> m_provided;
    QStringList m_expected;
    //! The native objects, which outlive the engine as they do in the program.
    std::unique_ptr<QObject> m_natives;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QObject> m_root;
    QQuickWindow *m_window = nullptr;
    AgentBridge *m_agent = nullptr;
    bool m_isKept = false;
    bool m_isSpoiled = false;
    QVariantMap m_initialState;
    QObjectList m_fakes;
};
