# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# Finds go-md2man, which makes man pages of Markdown. Sets GoMd2Man_FOUND and GoMd2Man_EXECUTABLE.

find_program(GoMd2Man_EXECUTABLE go-md2man)
mark_as_advanced(GoMd2Man_EXECUTABLE)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GoMd2Man REQUIRED_VARS GoMd2Man_EXECUTABLE)
