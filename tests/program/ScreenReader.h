// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

//! A stand-in for the accessibility bus and a screen reader on it. It uses the session bus and the display of the test:
//! programs that start while it lives turn their accessibility on. It records the notifications that become visible,
//! which a screen reader speaks, and reads and operates the program that was started last.
//!
//! Programs call it while they start, so wait for them with the event loop running.
class ScreenReader : public QDBusVirtualObject
{
    Q_OBJECT

public:
    enum class Events
    {
        Notifications,
        //! It only reads. Needed to type: of a reader that wants events, the program asks permission for each key.
        None,
    };
    //! Where programs find the address of the bus.
    enum class Address
    {
        //! In a property of the display, as in a normal X11 session.
        Display,
        //! Only through the service org.a11y.Bus, as in a Wayland session.
        Service,
    };

    //! Errors fail the running test.
    explicit ScreenReader(Events events = Events::Notifications, Address address = Address::Display);
    //! Makes the display forget the accessibility bus.
    ~ScreenReader() override;
    Q_DISABLE_COPY_MOVE(ScreenReader)

    //! The names of the notifications so far.
    QStringList spoken() const { return m_spoken; }
    //! The names of all objects with this role that the program shows now, in their order: "push button", or "list
    //! item", which each message of a conversation is, named by its author and its text.
    QStringList shown(const QString &role) const;
    //! The names of the children of the list with this name, each fetched by its index. Empty if there is no such list
    //! or a child doesn't know its place in it.
    QStringList rows(const QString &list) const;
    //! How far down on the screen each of them is, in pixels.
    QList<int> rowTops(const QString &list) const;
    //! Performs the first action of the object with this role and name, such as to press a button.
    //! @return whether there is such an object and it has an action
    bool press(const QString &role, const QString &name) const;
    //! Moves the keyboard focus to an object. @return whether the program agreed
    bool focus(const QString &role, const QString &name) const;
    //! What the text field of this name contains.
    QString textOf(const QString &field) const;
    //! Role and name of the object with the keyboard focus, as "role: name"; empty if there is none.
    QString focused() const;

    //! The property of the display that names the accessibility bus; empty if it isn't set.
    static QByteArray addressOnDisplay();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private Q_SLOTS:
    void onStateChanged(const QDBusMessage &signal);

private:
    const Events m_events;
    const Address m_address;
    QStringList m_spoken;
    QList<QDBusMessage> m_shown; //!< signals of objects that became visible, of which the first is being looked at
    //! The program that was started last, on the bus.
    QString m_program;
};
