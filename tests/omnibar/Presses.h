// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QMetaType>

class OmniBarFixture;
class QQuickItem;

//! The ways to press a button. All but the mouse and assistive technology move the focus to it.
enum class By
{
    Mouse,
    Return,
    Enter,
    Space,
    Assistance,
};

Q_DECLARE_METATYPE(By)

constexpr struct
{
    const char *name;
    By by;
} waysToPress[] = {
    {"click", By::Mouse},
    {"Return", By::Return},
    {"Enter", By::Enter},
    {"Space", By::Space},
    {"assistive technology", By::Assistance},
};

//! By::Assistance needs active accessibility.
void press(OmniBarFixture &bar, QQuickItem *button, By by);

//! Turns the wheel above the middle of an item. Positive steps scroll up.
void turnWheel(OmniBarFixture &bar, QQuickItem *item, int steps);
