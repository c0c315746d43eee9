// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class OmniBarFixture;
class QObject;
class QQuickItem;

// How the window looks, in a form that can be compared.

//! A colour by its parts from 0 to 1, in the form of colourOf().
QString rgba(double red, double green, double blue, double alpha);
//! A colour by its name, in the same form.
QString rgb(const QString &name);
//! A colour property of an item, rounded as it is drawn.
QString colourOf(QObject *item, const char *path = "color");
//! Short for QString::fromUtf8().
QString text(const char *utf8);
//! The texts of the visible tooltips.
QStringList tipsOf(OmniBarFixture &bar);
//! The names of the icons that are drawn in an item.
QStringList iconsIn(QQuickItem *root);
//! The background item of a button.
QQuickItem *backgroundOf(QQuickItem *button);
//! Width and colour of a button's border, as "1 #80ff0000"; empty if there is none.
QString borderOf(QQuickItem *button);
//! The running animations of an item, as "1 to 0.55, 600 InOutSine".
QStringList runningIn(const QObject *item);
//! Stops the pulses of an item at full opacity, so that pictures of it can be compared.
void haltPulses(QQuickItem *item);
