# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# Records the installed files as libexec/tovi-forkeldaos/install_manifest.txt, from which `tovictl uninstall` removes
# them. Include this after everything that installs files. Packages are staged with DESTDIR and have no such record,
# because the package manager keeps one.
install(CODE [[
    if("$ENV{DESTDIR}" STREQUAL "")
        set(record "${CMAKE_INSTALL_PREFIX}/libexec/tovi-forkeldaos/install_manifest.txt")
        set(files ${CMAKE_INSTALL_MANIFEST_FILES} "${record}")
        # An installation of a single component must not forget the files of the others.
        if(EXISTS "${record}")
            file(STRINGS "${record}" earlier)
            list(APPEND files ${earlier})
        endif()
        list(REMOVE_DUPLICATES files)
        list(JOIN files "\n" text)
        file(WRITE "${record}" "${text}\n")
        list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${record}")
    endif()
]] ALL_COMPONENTS)
