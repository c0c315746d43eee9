# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# Defines the target tovictl_whisper. It links libwhisper and defines HAVE_WHISPER if the library is used, and is empty
# otherwise. WHISPER_USED says which.
set(WHISPER AUTO CACHE STRING "Speech recognition with libwhisper: AUTO (if it is found), REQUIRED or OFF")
set_property(CACHE WHISPER PROPERTY STRINGS AUTO REQUIRED OFF)
if(NOT WHISPER MATCHES "^(AUTO|REQUIRED|OFF)$")
    message(FATAL_ERROR "WHISPER is \"${WHISPER}\", but must be AUTO, REQUIRED or OFF")
endif()

add_library(tovictl_whisper INTERFACE)
set(WHISPER_USED OFF)
if(WHISPER STREQUAL "OFF")
    return()
endif()

find_package(whisper CONFIG QUIET)
set_package_properties(whisper PROPERTIES
    TYPE RECOMMENDED
    URL "https://github.com/ggml-org/whisper.cpp"
    DESCRIPTION "Speech recognition"
    PURPOSE "The whisper models (pkg-config's \"whisper\" will do as well)"
)
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
elseif(WHISPER STREQUAL "REQUIRED")
    message(FATAL_ERROR "libwhisper is required, but neither its CMake package nor pkg-config's \"whisper\" was found")
endif()
