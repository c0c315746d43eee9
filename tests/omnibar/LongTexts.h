// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QQuickWindow>
#include <QStringList>

//! Windows in the pseudo-translation, which is 1.4 times as long as English: whether there is room for all texts.
namespace LongTexts
{

//! Makes a pseudo-translation the user's language. Call it in initTestCase().
//! @param language see tests/translations
//! @return whether the build has its catalogue
bool use(const QString &language = QStringLiteral("en_XA"));

//! The translation of a text in the user's language, for tests that look for it.
QString translated(const QString &text);

//! The translated texts that can't be read whole: elided, wider or higher than their item, outside of the frame around
//! them or of the window, or under another text. One in each line; empty
//! if all is well.
//! @param elided texts, in English, that may be elided
QString faults(QQuickWindow *window, const QStringList &elided = {});

//! The part of a text item that its glyphs take up, in its coordinates.
QRectF glyphsOf(QQuickItem *text);

} // namespace LongTexts
