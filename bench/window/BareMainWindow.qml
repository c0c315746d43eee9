// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import QtQuick.Layouts 1.15
import QtQuick.Templates 2.15
import QtQuick.Window 2.15
import org.kde.kirigami 2.20 as Kirigami

//! An empty window like the main window, with the imports that it needs for the first frame.
Kirigami.ApplicationWindow {
    width: Kirigami.Units.gridUnit * 60
    height: Kirigami.Units.gridUnit * 40
    visible: true
    pageStack.initialPage: Kirigami.Page {
        title: "Loomra KDE"
    }
    globalDrawer: Kirigami.GlobalDrawer {
        title: "Loomra KDE"
    }
}
