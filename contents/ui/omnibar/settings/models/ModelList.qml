// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import org.kde.loomra.components.controls 1.0

import "../../../../../components/logic/LiteralText.js" as LiteralText
import "../common"

//! The models with a search field. A click makes a model the default.
Column {
    id: list

    required property var bar
    required property var theme

    spacing: 8
    Component.onCompleted: bar.syncSettingsCombos()

    Item {
        width: parent.width
        height: field.height

        SettingsTextField {
            id: field
            objectName: "modelSearchField"

            anchors.fill: parent
            theme: list.theme
            text: list.bar.modelSearchFilter
            leftPadding: clearButton.visible && LayoutMirroring.enabled ? 38 : 10
            rightPadding: clearButton.visible && !LayoutMirroring.enabled ? 38 : 10
            placeholderText: list.bar.tr("Search models...")
            Accessible.name: list.bar.tr("Search models")
            onTextEdited: list.bar.filterModels(text)
        }

        RoundButton {
            id: clearButton
            objectName: "clearModelSearchBtn"

            anchors.right: parent.right
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            implicitWidth: 24
            visible: field.length > 0
            label: list.bar.tr("Clear search")
            glyph: "\u2715"
            glyphSize: 11
            iconColor: list.theme.uiIconMuted
            hoverFill: list.theme.uiWellFillHi
            ring: list.theme.focusRing
            onClicked: {
                list.bar.filterModels("");
                field.forceActiveFocus();
            }
        }
    }

    SettingsList {
        id: rows
        objectName: "modelList"

        count: list.bar.settingsModelsListModel.count
        rowHeight: 34
        minimumHeight: 72
        maximumHeight: 280
        theme: list.theme
        name: list.bar.tr("Models")
        scrollBarName: list.bar.tr("Scroll models")
        model: list.bar.settingsModelsListModel

        delegate: PlainButton {
            id: row
            objectName: "modelRow"

            required property int index
            required property string mid
            required property string mfullId
            required property string mname
            required property bool mfree
            readonly property bool chosen: list.bar.pendingDefaultModelId !== "" && mfullId === list.bar.pendingDefaultModelId
            readonly property bool isDefault: mfullId === list.bar.currentModelId

            x: rows.rowX
            width: rows.rowWidth
            height: rows.rowHeight
            // Only the current row is in the tab order. It must stay there while it has the focus, see MessageRow.
            focusPolicy: ListView.isCurrentItem || activeFocus ? Qt.TabFocus : Qt.NoFocus
            label: LiteralText.oneLine(mfullId)
            Accessible.description: [mfree ? freeBadge.text : "", isDefault ? defaultBadge.text : ""].filter(text => text !== "").join(", ")
            Accessible.selectable: true
            Accessible.selected: chosen
            onClicked: {
                rows.currentIndex = index;
                list.bar.selectSettingsModel({ "id": mid, "fullId": mfullId });
            }

            background: Rectangle {
                radius: 6
                color: row.chosen ? list.theme.chosenRow : row.hovered || row.pressed ? list.theme.uiWellFillHi : "transparent"
            }

            contentItem: Item {
                PlainText {
                    id: idText

                    anchors.left: parent.left
                    anchors.leftMargin: 10
                    anchors.right: badges.left
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.label
                    color: list.theme.uiTextStrong
                    font.family: "monospace"
                    font.pointSize: 9
                    horizontalAlignment: Text.AlignLeft
                    Accessible.ignored: true
                }

                Row {
                    id: badges

                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 6

                    SettingsBadge {
                        id: freeBadge
                        objectName: "freeBadge"

                        visible: row.mfree
                        // i18n: a model that costs nothing
                        text: list.bar.tr("free")
                        textColor: list.theme.positiveText
                    }

                    SettingsBadge {
                        id: defaultBadge
                        objectName: "defaultBadge"

                        visible: row.isDefault
                        // i18n: the model that is used by default
                        text: list.bar.tr("default")
                        textColor: list.theme.accentText
                    }
                }
            }

            FocusRing {
                control: row
                anchors.margins: 0
                radius: 6
                border.color: list.theme.focusRing
            }

            HoverTip {
                control: row
                text: row.label === row.mname ? row.label : row.label + "\n" + LiteralText.oneLine(row.mname)
                enabledHere: idText.truncated
            }
        }

        PlainText {
            objectName: "noModels"

            anchors.fill: parent
            anchors.margins: 10
            visible: rows.count === 0 && !list.bar.modelsLoading
            text: list.bar.modelsList.length > 0 ? list.bar.tr("No model matches.") : list.bar.tr("No models loaded. Tap Refresh models.")
            color: list.theme.uiTextCaption
            font.pointSize: 9
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.Wrap
        }
    }

    Connections {
        target: list.bar

        // Typing breaks the binding.
        function onModelSearchFilterChanged() {
            field.text = list.bar.modelSearchFilter;
        }
        function onModelRowRequested(row) {
            if (row < 0) {
                rows.view.positionViewAtBeginning();
            } else {
                rows.currentIndex = row;
                rows.view.positionViewAtIndex(row, ListView.Contain);
            }
        }
    }
}
