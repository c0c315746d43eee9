# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# Makes the target tovictl_whisper: libwhisper and the definition HAVE_WHISPER where the library is to be used, nothing
# elsewhere. WHISPER_USED tells which.
set(WHISPER AUTO CACHE STRING "Speech recognition through libwhisper: AUTO (where it is found), REQUIRED or OFF")
set_property(CACHE WHISPER PROPERTY STRINGS AUTO REQUIRED OFF)
if(NOT WHISPER MATCHES "^(AUTO|REQUIRED|OFF)$")
    message(FATAL_ERROR "WHISPER is \"${WHISPER}\", but must be AUTO, REQUIRED or OFF")
endif()

add_library(tovictl_whisper INTERFACE)
set(WHISPER_USED OFF)
if(WHISPER STREQUAL "OFF")
    message(STATUS "libwhisper: not used, as WHISPER is OFF")
    return()
endif()

find_package(whisper CONFIG QUIET)
if(TARGET whisper)
    target_link_libraries(tovictl_whisper INTERFACE whisper)
    set(WHISPER_USED ON)
else()
    pkg_check_modules(WhisperPackage QUIET IMPORTED_TARGET whisper)
    if(WhisperPackage_FOUND)
        target_link_libraries(tovictl_whisper INTERFACE PkgConfig::WhisperPackage)
        set(WHISPER_USED ON)
    endif()
endif()

if(WHISPER_USED)
    target_compile_definitions(tovictl_whisper INTERFACE HAVE_WHISPER)
    message(STATUS "libwhisper: found")
elseif(WHISPER STREQUAL "REQUIRED")
    message(FATAL_ERROR "libwhisper is required, but neither its CMake package nor pkg-config's \"whisper\" was found")
else()
    message(STATUS "libwhisper: not found; the whisper models can't be used by what is built")
endif()
