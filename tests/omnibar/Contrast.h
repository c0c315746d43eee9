// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QColor>
#include <QList>
#include <QStringList>

class QQuickWindow;

//! The contrast of texts as the Web Content Accessibility Guidelines define it.
namespace Contrast
{

//! From 1 to 21. Both colours are opaque.
double ratio(const QColor &one, const QColor &other);

//! The visible texts with too little contrast to what is drawn behind them: less than 4.5, or 3 for large text.
//! Disabled controls, symbols and what is behind an open dialog are left out. Each as "ratio: text, colour on colour".
//! The window must be at rest.
//! @param fixed colours of texts that are left out
QStringList faintTexts(QQuickWindow *window, const QList<QColor> &fixed = {});

} // namespace Contrast
