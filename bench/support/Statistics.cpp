// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Statistics.h"

namespace Statistics
{

static_assert(median({7}) == 7);
static_assert(median({3, 1, 2}) == 2);
static_assert(median({4, 1, 3, 2}) == 2.5);
static_assert(median({1, 1, 1, 1000}) == 1);

static_assert(percentile({7}, 0.99) == 7);
static_assert(percentile({4, 3, 2, 1}, 0.5) == 2);
static_assert(percentile({4, 3, 2, 1}, 0.75) == 3);
static_assert(percentile({4, 3, 2, 1}, 0.76) == 4);
static_assert(percentile({4, 3, 2, 1}, 1.0) == 4);
static_assert(percentile({4, 3, 2, 1}, 0.0) == 1);

} // namespace Statistics
