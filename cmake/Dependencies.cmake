# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# All libraries that the program, its tests and its benchmarks link.

set(qt_components Core DBus)
if(NOT VOICE_ONLY)
    list(APPEND qt_components Gui Network WebSockets Qml Quick QuickCompiler)
endif()
if(BUILD_TESTING OR BUILD_BENCHMARKS)
    list(APPEND qt_components Test)
endif()
find_package(Qt5 ${QT_MIN_VERSION} REQUIRED COMPONENTS ${qt_components})
set_package_properties(Qt5 PROPERTIES URL "https://www.qt.io")
set_package_properties(Qt5DBus PROPERTIES PURPOSE "The wake word's signal, the accessibility bus")
set_package_properties(Qt5QuickCompiler PROPERTIES PURPOSE "QML that is compiled ahead of time")
set_package_properties(Qt5WebSockets PROPERTIES PURPOSE "The connection to the bridge")
if(TARGET Qt5::Test)
    # Without QT_TESTCASE_BUILDDIR: an absolute path in each command keeps ccache from serving another clone.
    set_property(TARGET Qt5::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
    set_package_properties(Qt5Test PROPERTIES PURPOSE "Tests and benchmarks")
endif()

if(NOT VOICE_ONLY)
    find_package(KF5 ${KF5_MIN_VERSION} REQUIRED COMPONENTS Config CoreAddons I18n Notifications)
    set_package_properties(KF5 PROPERTIES URL "https://develop.kde.org/products/frameworks")
    set_package_properties(KF5Config PROPERTIES PURPOSE "The application's own settings")
    set_package_properties(KF5CoreAddons PROPERTIES PURPOSE "The about-data")
    set_package_properties(KF5I18n PROPERTIES PURPOSE "Translations")
    set_package_properties(KF5Notifications PROPERTIES PURPOSE "Workspace suggestions on the desktop")
    find_package(XCB REQUIRED COMPONENTS XCB)
    set_package_properties(XCB PROPERTIES PURPOSE "The accessibility bus, which Qt finds by a property of the display")
    find_package(GoMd2Man REQUIRED)
    set_package_properties(GoMd2Man PROPERTIES
        URL "https://github.com/cpuguy83/go-md2man" PURPOSE "The man page, from doc/tovictl.1.md")
endif()

find_package(PkgConfig REQUIRED)
set_package_properties(PkgConfig PROPERTIES PURPOSE "Finds PulseAudio and libwhisper")
# Only the headers: the libraries are loaded at run time.
pkg_check_modules(PulseSimple REQUIRED libpulse-simple)

include(WhisperLibrary)
