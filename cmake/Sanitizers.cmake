# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# SANITIZERS is a list for -fsanitize, such as "address;undefined" or "thread". Empty means none.
set(SANITIZERS "" CACHE STRING "Sanitizers to build with, as a list")
if(SANITIZERS)
    list(JOIN SANITIZERS "," sanitizers_joined)
    # A finding of UBSan ends the program, so that no test can pass over it.
    add_compile_options(-fsanitize=${sanitizers_joined} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # Without --no-undefined's check, as the sanitizers' symbols come from the executable.
    add_link_options(-fsanitize=${sanitizers_joined})
endif()
