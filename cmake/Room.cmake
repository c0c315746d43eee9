# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# tovictl_add_room(NAME SOURCES ... [PUBLIC ...] [PRIVATE ...])
#
# A room is a folder with one subject: a static library tovictl_NAME whose include path is that folder alone. It links
# the rooms and libraries that its own headers need as PUBLIC, all others as PRIVATE, and can include nothing else.
function(tovictl_add_room name)
    cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(tovictl_${name} STATIC ${arg_SOURCES})
    target_include_directories(tovictl_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(tovictl_${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
    set_property(GLOBAL APPEND PROPERTY TOVICTL_ROOMS ${name})
endfunction()

# Writes "ROOM: ROOM ROOM ..." for each room with the rooms that it links, for the test that compares the drawing in
# ARCHITECTURE.md with the build.
function(tovictl_write_rooms file)
    get_property(rooms GLOBAL PROPERTY TOVICTL_ROOMS)
    set(lines "")
    foreach(room ${rooms})
        get_target_property(links tovictl_${room} LINK_LIBRARIES)
        list(FILTER links INCLUDE REGEX "^tovictl_")
        list(TRANSFORM links REPLACE "^tovictl_" "")
        list(FILTER links EXCLUDE REGEX "^whisper$") # a library of others
        list(SORT links)
        list(JOIN links " " links)
        string(APPEND lines "${room}: ${links}\n")
    endforeach()
    file(WRITE ${file} "${lines}")
endfunction()
