// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

//! Compares what a component draws with a table: sizes, colours, fonts, gradients, animations. In a test:
//!
//!     compare(drawn.differences(card, {
//!         "": { "height": 80, "radius": 10 },
//!         "title": { "color": Qt.rgba(1, 1, 1, 0.9), "font.pixelSize": 12 }
//!     }), []);
//!
//! The keys of the table are objectNames, ids or types of parts. "" is the component. If several parts have the name,
//! all are compared; "title[2]" is the third one. "dialog/title" is a title in the dialog, "stopBtn.background" what
//! that property holds. The name of a value may be a path, such as "border.color". Two aren't properties of QML:
//!
//!     "stops"          the stops of the gradient, as [[0, "red"], [1, "blue"]]
//!     "Behavior on x"  the animation of changes of x, as "250 OutCubic": ms and easing
//!
//! Colours are equal if they are drawn equally, in 8 bits.
class DrawnValues : public QObject
{
    Q_OBJECT

public:
    //! One text per difference; empty if there is none. A part or property that doesn't exist is a difference.
    Q_INVOKABLE QStringList differences(QObject *root, const QVariantMap &table) const;
    //! The first part of this name below an object, for a test that changes it. Null if there is none.
    Q_INVOKABLE QObject *part(QObject *root, const QString &name) const;
};
