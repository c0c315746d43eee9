// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

//! Statistics of a series of values. Pure; tested by static assertions in Statistics.cpp.
namespace Statistics
{

//! The smallest value that is not less than @p share (0 to 1) of all values. The series must not be empty.
constexpr double percentile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    const double rank = share * static_cast<double>(values.size());
    auto index = static_cast<std::size_t>(rank);
    if (static_cast<double>(index) == rank && index > 0) {
        --index;
    }
    return values[std::min(index, values.size() - 1)];
}

//! The middle value, or the mean of the two middle ones. The series must not be empty.
constexpr double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace Statistics
