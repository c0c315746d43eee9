# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

set(SANITIZERS "" CACHE STRING "Values for -fsanitize as a list, such as \"address;undefined\" or \"thread\"")
if(SANITIZERS)
    list(JOIN SANITIZERS "," sanitizers_joined)
    # UBSan ends the program at its first finding, or a test could pass in spite of it.
    add_compile_options(-fsanitize=${sanitizers_joined} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${sanitizers_joined})
endif()
