# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# A second preset, or a clean clone on the same machine, then costs seconds instead of minutes.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
