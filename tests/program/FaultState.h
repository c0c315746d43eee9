// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <atomic>
#include <cstdint>

//! The faults that FaultInjection sets and the library in a started program reads, in a file that both map. All zero
//! means that there are none.
struct FaultState
{
    enum Disk : std::int32_t
    {
        Works,
        ReadOnly, //!< nothing can be created, changed or removed
        Full, //!< files can be created, but stay empty
    };

    //! The environment variables that name the file, and the folders whose disk is at fault, separated by colons.
    static constexpr const char *FileVariable = "TOVICTL_FAULT_FILE";
    static constexpr const char *FoldersVariable = "TOVICTL_FAULT_FOLDERS";

    std::atomic<std::int64_t> clockOffset; //!< how far the clock is ahead, in seconds
    std::atomic<std::int32_t> disk; //!< a value of Disk
};
