// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NemotronWorker.h"

NemotronWorker::NemotronWorker(const SearchRoots &roots, int runTimeout)
    : SherpaWorker(SherpaEngine::nemotron(), roots, runTimeout)
{
}
