// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Dialogs 1.3
import org.kde.loomra 1.0 as Loomra

import "../logic/Attachments.js" as Attachments

//! The dialog in which the user chooses a file to attach.
Item {
    id: picker

    required property var bar

    Accessible.ignored: true
    Component.onCompleted: dialog.open()

    Loomra.FileCheck {
        id: check
    }

    // A child of an item, from which it gets the window that it belongs to.
    FileDialog {
        id: dialog
        objectName: "fileDialog"

        title: picker.bar.tr("Select a file to attach")
        folder: shortcuts.home
        nameFilters: Attachments.nameFilters(picker.bar.tr)
        // Without a platform theme the dialog would be tiny.
        width: 760
        height: 480
        onAccepted: picker.bar.attachFile(fileUrl.toString(), check)
        onVisibilityChanged: {
            if (!visible)
                picker.bar.fileDialogOpen = false;
        }
    }

    // Not a binding, because the dialog hides itself.
    Connections {
        target: picker.bar

        function onFileDialogOpenChanged() {
            if (picker.bar.fileDialogOpen)
                dialog.open();
        }
    }
}
