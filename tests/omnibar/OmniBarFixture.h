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
//! the other end. A test sets up what differs from a normal run, calls open() and then acts as the user:
//!
//!     OmniBarFixture bar;
//!     QVERIFY(bar.open());
//!     bar.type("hello");
//!     bar.key(Qt::Key_Return);
//!     bar.bridge.reply(bar.bridge.takeRequest(QStringLiteral("chat")), answer);
//!     QTRY_COMPARE(bar.property("chatModel.count").toInt(), 2);
//!
//! Any warning in the log that expectWarning() didn't announce fails the test. The test process needs home, bus,
//! display and net. Texts may be given as UTF-8 literals.
class OmniBarFixture
{
public:
    //! Clears the settings store and lets the scripted bridge listen.
    OmniBarFixture();
    //! Closes the window and fails the test if there were unexpected warnings.
    ~OmniBarFixture();
    Q_DISABLE_COPY_MOVE(OmniBarFixture)

    //! The names of the context properties that the program sets.
    static QStringList contextNames();

    // ---- Before open(): what differs from a normal run

    //! Leaves out a context property; all of them if the name is empty.
    void omit(const QString &name = QString());
    void omit(const char *name) { omit(QString::fromUtf8(name)); }
    //! Sets a context property, instead of the real one or in addition.
    void provide(const QString &name, const QVariant &value);
    void provide(const char *name, const QVariant &value) { provide(QString::fromUtf8(name), value); }
    void provide(const char *name, QObject *object) { provide(name, QVariant::fromValue(object)); }
    //! An object made from QML, with QtQuick and Controls imported, e.g. for provide(). It
    //! lives as long as the fixture. Fails the test and returns null if the text is wrong.
    QObject *fake(const QString &qml);
    QObject *fake(const char *qml) { return fake(QString::fromUtf8(qml)); }
    //! Stores a setting of the window's appearance.
    void store(const QString &key, const QVariant &value);
    void store(const char *key, const QVariant &value) { store(QString::fromUtf8(key), value); }
    //! Draws the panels' shadows too. By default they are left out: software rendering would spend most of its time on
    //! them.
    void drawShadows();
    //! Warnings that start like this don't fail the test.
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
    //! left out, is connected. @param file another window of the program
    bool open(const QString &file = QStringLiteral("OmniBar.qml"));
    //! Loads a file of contents/ui and waits for nothing. Fails the test and returns null if that fails.
    QObject *load(const QString &file);

    //! For a client that connects again, which it tries every 3 seconds. In ms.
    static constexpr int ReconnectTimeout = 15000;

    QQuickWindow *window() const { return m_window; }
    //! The real chat client; null if it was left out or replaced.
    AgentBridge *agent() const { return m_agent; }
    QQmlEngine *engine() const { return m_engine.get(); }

    //! The first item of this objectName in drawing order, including those that loaders and lists made; null if none.
    QQuickItem *item(const QString &objectName) const;
    QQuickItem *item(const char *objectName) const { return item(QString::fromUtf8(objectName)); }
    //! All of them.
    QList<QQuickItem *> items(const QString &objectName) const;
    QList<QQuickItem *> items(const char *objectName) const { return items(QString::fromUtf8(objectName)); }
    //! An object of this name below the window that need not be an item, e.g. a timer or a controller; null if none.
    QObject *object(const QString &objectName) const;
    //! As item(), below another item.
    static QQuickItem *itemIn(QQuickItem *root, const QString &objectName);
    //! All items from this one down for which the condition holds.
    static QList<QQuickItem *> itemsWhere(QQuickItem *root, const std::function<bool(QQuickItem *)> &condition);

    //! A property of the window, or of an object that a property holds: "chatModel.count".
    QVariant property(const char *path) const;
    void setProperty(const char *name, const QVariant &value);
    //! Calls a function of the window.
    QVariant invoke(const char *function, const QVariantList &arguments = {});
    //! The value of a JavaScript expression that can use the ids of OmniBar.qml: "omniTheme.uiPanelBase".
    //! A failure fails the test.
    QVariant evaluate(const QString &expression) const;
    QVariant evaluate(const char *expression) const { return evaluate(QString::fromUtf8(expression)); }

    // ---- What a user does

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    //! Types a text, including letters that no key has.
    void type(const QString &text);
    void type(const char *text) { type(QString::fromUtf8(text)); }
    //! Clicks the centre of an item. Fails the test if there is none or it can't be seen.
    void click(QQuickItem *item, Qt::MouseButton button = Qt::LeftButton);
    void click(const QString &objectName) { click(item(objectName)); }
    void click(const char *objectName) { click(item(objectName)); }
    void clickAt(const QPoint &place);
    //! Moves the pointer onto an item.
    void hover(QQuickItem *item);
    //! Gives an item the keyboard focus, as Tab would.
    static void focus(QQuickItem *item) { item->forceActiveFocus(Qt::TabFocusReason); }
    //! Whether the item can be seen: visible, and neither opacity nor scale is 0.
    static bool isSeen(QQuickItem *item);
    //! The item's rectangle in the window.
    static QRectF place(QQuickItem *item);

    //! How a change of a property is animated, as "350 OutCubic": ms and easing. Empty if it isn't. The speed itself
    //! can't be measured, because a busy machine draws few frames.
    static QString behaviour(QObject *object, const char *property);
    //! The same for one animation.
    static QString animationSpec(const QObject *animation);
    //! Ends all transitions: puts the clock forward until nothing has moved over some frames.
    bool settle();
    //! Writes the window's picture to NAME.png in the directory that TOVICTL_SCREENSHOTS names, if there is one.
    void screenshot(const QString &name);
    void screenshot(const char *name) { screenshot(QString::fromUtf8(name)); }

    // ---- The log

    //! The unexpected warnings so far. They are forgotten and don't fail the test any more.
    QStringList takeWarnings();
    //! Fails the test if there are any.
    void verifyNoWarnings();

    MessageLog log; // the first member, so that it misses nothing
    ScriptedBridge bridge;

private:
    //! @param line of the call
    static void failTest(const QString &what, int line);
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
    bool m_isOpen = false;
    bool m_isKept = false;
    bool m_isSpoiled = false;
    QVariantMap m_initialState;
    QObjectList m_fakes;
};
