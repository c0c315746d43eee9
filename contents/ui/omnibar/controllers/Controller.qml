// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The base of the OmniBar's logic parts. A controller keeps the state of one subject, owns the timers and connections
//! that go with it, and speaks to the other controllers only through the bar.
QtObject {
    //! The window's root object, or what stands for it in a test.
    required property var bar
    default property list<QtObject> parts
}
