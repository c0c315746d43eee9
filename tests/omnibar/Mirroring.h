// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

class OmniBarFixture;

//! Windows in a language that is written from right to left: a pseudo-translation in Arabic letters, 1.4 times as long
//! as English.
namespace Mirroring
{

//! Makes that language the user's, and the layout direction its own. Call it in initTestCase().
//! @return whether the build has its catalogue
bool use();

//! Lays the window out from left to right for a moment, and compares the places of all visible items. One line for each
//! item that isn't at the mirrored place; empty if all is well. Of texts that aren't translated, such as numbers and
//! paths, the place of the glyphs is compared.
//! @param exceptions names of items whose content follows the direction of its own text; nothing below them is compared
QString faults(OmniBarFixture &window, const QStringList &exceptions = {});

} // namespace Mirroring
