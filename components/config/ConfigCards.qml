// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "../logic/Translatable.js" as Translatable
import "ConfigObject.js" as ConfigObject

//! A card for each entry of a section, with its name, a form and a button that removes it.
KeyRows {
    id: cards

    //! The values of each entry.
    property var entries: ({})
    //! See FormFields.
    property var fields: []
    property int revision: 0
    property bool immediate: false
    property var askPair: null
    //! The heading for a name.
    property var titleOf: name => name

    signal edited(string name, string key, var value)
    signal pairEdited(string name, string entry, var text)
    signal removed(string name)

    keys: Object.keys(entries)
    Layout.fillWidth: true

    delegate: Rectangle {
        id: card

        required property string key
        readonly property string title: cards.titleOf(ConfigObject.shortened(key))

        objectName: "card"
        Layout.fillWidth: true
        implicitHeight: column.implicitHeight + 2 * column.anchors.margins
        radius: Kirigami.Units.smallSpacing
        color: Kirigami.Theme.backgroundColor
        border.width: 1
        border.color: Qt.rgba(Kirigami.Theme.textColor.r, Kirigami.Theme.textColor.g, Kirigami.Theme.textColor.b, 0.2)
        Kirigami.Theme.inherit: false
        Kirigami.Theme.colorSet: Kirigami.Theme.View
        Accessible.role: Accessible.Grouping
        Accessible.name: title

        ColumnLayout {
            id: column

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: Kirigami.Units.largeSpacing
            spacing: Kirigami.Units.smallSpacing

            RowLayout {
                ConfigText {
                    objectName: "cardTitle"

                    text: card.title
                    font.bold: true
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    Accessible.role: Accessible.Heading
                }
                ConfigButton {
                    objectName: "removeCard"

                    text: Translation.tr("Remove")
                    icon.name: "edit-delete"
                    onClicked: cards.removed(card.key)
                    Accessible.name: Translatable.filled(Translation.tr("Remove {name}"), { name: card.title })
                }
            }
            FormFields {
                fields: cards.fields
                values: ConfigObject.section(cards.entries, card.key)
                revision: cards.revision
                immediate: cards.immediate
                subject: card.title
                askPair: cards.askPair
                onEdited: cards.edited(card.key, key, value)
                onPairEdited: cards.pairEdited(card.key, entry, text)
                Layout.fillWidth: true
            }
        }
    }
}
