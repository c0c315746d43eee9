// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NemotronWorker.h"

NemotronWorker::NemotronWorker(std::chrono::milliseconds runTimeout)
    : SherpaWorker(SherpaEngine::nemotron(), runTimeout)
{
}
