// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class OmniBarFixture;
class QObject;

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
