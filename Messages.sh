#!/bin/bash
# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# Extracts the translatable texts into the template $podir/loomra-kde.pot with the command $XGETTEXT. KDE's translation
# scripts set both variables, and scripts/update-translations does the same for the template in po.

readonly template=${podir:?}/loomra-kde.pot

# shellcheck disable=SC2046,SC2086 # lists of words
$XGETTEXT $(find src -name '*.cpp' -o -name '*.h' | LC_ALL=C sort) -o "$template"
# tr() looks a text up now; mark() is for the tables of script libraries, whose callers translate; the panels use qsTr().
# shellcheck disable=SC2046,SC2086
$XGETTEXT --join-existing --language=JavaScript -ktr -kmark -kqsTr \
    $(find MainWindow.qml components contents -name '*.qml' -o -name '*.js' | LC_ALL=C sort) -o "$template"
