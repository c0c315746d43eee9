// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAccessible>
#include <QObject>

class QQuickItem;
class QQuickWindow;

//! Keeps the rows of all lists in the order in which assistive technology should read them, from top to bottom.
//!
//! A list creates its rows as they come into view, and Qt reports them in the order of their creation: after scrolling
//! up, from bottom to top.
//!
//! Works while accessibility is active, after each frame of each window. Main thread.
class AccessibleRowOrder : public QObject, private QAccessible::ActivationObserver
{
    Q_OBJECT

public:
    //! Create it before the first window is shown.
    AccessibleRowOrder();
    ~AccessibleRowOrder() override;

    //! Puts the rows of the visible lists below an item in order.
    static void sort(QQuickItem *root);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void accessibilityActiveChanged(bool active) override;
    void watch(QQuickWindow *window);

    bool m_isActive = false;
};
