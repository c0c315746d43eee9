// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ResourceTree.h"

#include <QtGlobal>

// Q_INIT_RESOURCE declares a function, which must not end up in a namespace.
static void initResources()
{
    Q_INIT_RESOURCE(tovictl);
}

void ResourceTree::init()
{
    initResources();
}
