# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# cmake -DGO_MD2MAN=… -DSOURCE=… -DMETAINFO=… -DVERSION=… -DPAGE=… -P MakeManPage.cmake

cmake_minimum_required(VERSION 3.25)

file(STRINGS ${METAINFO} release REGEX "<release .*date=")
if(NOT release MATCHES "date=\"([0-9-]+)\"")
    message(FATAL_ERROR "${METAINFO} names no release with a date")
endif()
set(title "% \"TOVICTL\" \"1\" \"${CMAKE_MATCH_1}\" \"tovictl ${VERSION}\" \"User Commands\"")

# The title line of go-md2man, which would be shown elsewhere, replaces the licence and the heading.
file(READ ${SOURCE} text)
if(NOT text MATCHES "^<!--.*-->\n\n# tovictl\n")
    message(FATAL_ERROR "${SOURCE} must begin with a comment and the heading \"tovictl\"")
endif()
string(REGEX REPLACE "^<!--.*-->\n\n# tovictl\n" "" text "${text}")
file(WRITE ${PAGE}.md "${title}\n${text}")
execute_process(COMMAND ${GO_MD2MAN} -in ${PAGE}.md -out ${PAGE}.new COMMAND_ERROR_IS_FATAL ANY)

# Paths and options can't be copied when they are hyphenated. The macro package switches hyphenation on again in .TH.
file(READ ${PAGE}.new text)
string(REGEX REPLACE "(\n\\.TH [^\n]*\n)" "\\1.nh\n.ad l\n" text "${text}")
file(WRITE ${PAGE} "${text}")
