// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15 as QQC2
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import ".."

//! The sheet about the program.
SimpleDialog {
    id: sheet
    objectName: "aboutSheet"

    title: Translation.tr("About Loomra KDE")

    PlainText {
        text: "Loomra KDE"
        color: Kirigami.Theme.textColor
        font.pointSize: Kirigami.Theme.defaultFont.pointSize * 1.5
        Accessible.role: Accessible.Heading
    }
    PlainText {
        objectName: "aboutVersion"
        // Intentional: the version of this window, not the program's.
        text: Translation.tr("Version 0.2.0")
        color: Kirigami.Theme.textColor
    }
    PlainText {
        text: Translation.tr("KDE GUI for Loomra")
        color: Kirigami.Theme.textColor
    }

    buttons: QQC2.Button {
        objectName: "closeAboutButton"
        text: Translation.tr("Close")
        Accessible.name: text
        onClicked: sheet.close()
    }
}
