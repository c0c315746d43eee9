# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# tovictl_add_room(NAME [SOURCES ...] [PUBLIC ...] [PRIVATE ...])
#
# Adds a room, which is a folder with one subject, as the static library tovictl_NAME (an interface library if it has
# headers only). It links PUBLIC the rooms and libraries that its own headers include, and PRIVATE those that only its
# .cpp files include. The include path has nothing else, so the compiler refuses an include of any other room.
function(tovictl_add_room name)
    cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    if(arg_SOURCES)
        add_library(tovictl_${name} STATIC ${arg_SOURCES})
        target_include_directories(tovictl_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
        target_link_libraries(tovictl_${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
    else()
        add_library(tovictl_${name} INTERFACE)
        target_include_directories(tovictl_${name} INTERFACE ${CMAKE_CURRENT_SOURCE_DIR})
        target_link_libraries(tovictl_${name} INTERFACE ${arg_PUBLIC})
    endif()
    set_property(GLOBAL APPEND PROPERTY TOVICTL_ROOMS ${name})
endfunction()

# tovictl_write_rooms(FILE): writes a line "ROOM: ROOM ROOM ..." for each room and for the program ("main"), with the
# rooms that it links. The test "rooms" compares this with ARCHITECTURE.md.
function(tovictl_write_rooms file)
    get_property(rooms GLOBAL PROPERTY TOVICTL_ROOMS)
    set(targets ${rooms})
    list(TRANSFORM targets PREPEND tovictl_)
    if(TARGET tovictl)
        list(APPEND targets tovictl)
    endif()
    set(lines "")
    foreach(target ${targets})
        get_target_property(private_links ${target} LINK_LIBRARIES)
        get_target_property(public_links ${target} INTERFACE_LINK_LIBRARIES)
        set(links ${private_links} ${public_links})
        list(TRANSFORM links REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1")
        list(FILTER links INCLUDE REGEX "^tovictl_")
        list(REMOVE_ITEM links tovictl_whisper) # an external library
        list(REMOVE_DUPLICATES links)
        list(SORT links)
        list(PREPEND links ${target}:)
        list(TRANSFORM links REPLACE "^tovictl_" "")
        list(TRANSFORM links REPLACE "^tovictl:" "main:")
        list(JOIN links " " line)
        string(APPEND lines "${line}\n")
    endforeach()
    file(WRITE ${file} "${lines}")
endfunction()
