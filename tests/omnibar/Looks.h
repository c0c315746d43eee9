// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class OmniBarFixture;
class QObject;
class QQuickItem;

// How the window looks, in words that can be compared.

//! A colour by its parts from 0 to 1, as colourOf() tells it.
QString rgba(double red, double green, double blue, double alpha);
//! The same by its name.
QString rgb(const QString &name);
//! A colour property of an item, rounded as it is drawn.
QString colourOf(QObject *item, const char *path = "color");
QString text(const char *utf8);
//! The tooltips in sight.
QStringList tipsOf(OmniBarFixture &bar);
//! The names of the icons that are drawn in an item.
QStringList iconsIn(QQuickItem *root);
//! What a button is drawn on.
QQuickItem *backgroundOf(QQuickItem *button);
//! Width and colour of a button's border, as "1 #80ff0000"; empty where there is none.
QString borderOf(QQuickItem *button);
//! The animations in an item that run, as "1 to 0.55, 600 InOutSine".
QStringList runningIn(const QObject *item);
//! Halts the pulses of an item in full sight, so that its picture can be compared.
void haltPulses(QQuickItem *item);
