// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ResourceTree.h"

// As the program's main() does, for every executable that links tovictl_qml_for_tests.
static const bool s_initialized = (ResourceTree::init(), true);
