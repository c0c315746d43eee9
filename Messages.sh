#!/bin/bash
# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# Extracts the translatable texts into the template $podir/loomra-kde.pot with the command $XGETTEXT. KDE's translation
# scripts set both variables, and scripts/update-translations does the same for the template in po.

readonly template=${podir:?}/loomra-kde.pot

# shellcheck disable=SC2046,SC2086 # lists of words
$XGETTEXT $(find src -name '*.cpp' -o -name '*.h' | LC_ALL=C sort) -o "$template"
# tr() looks a text up now, and trn() one with plural forms; mark() is for the tables of script libraries, whose callers
# translate; the panels use qsTr().
# shellcheck disable=SC2046,SC2086
$XGETTEXT --join-existing --language=JavaScript -ktr -ktrn:1,2 -kmark -kqsTr \
    $(find MainWindow.qml components contents -name '*.qml' -o -name '*.js' | LC_ALL=C sort) -o "$template"
# What the desktop shows of the program.
# shellcheck disable=SC2086
$XGETTEXT --join-existing --language=Desktop -k -kName -kGenericName -kComment -kKeywords \
    data/org.kde.loomra-kde.desktop data/loomra-kde.notifyrc -o "$template"
# Without a language, so that the rules for AppStream data are found by the file's name.
# shellcheck disable=SC2086
${XGETTEXT/--language=C++/} --join-existing data/org.kde.loomra-kde.metainfo.xml.in -o "$template"
