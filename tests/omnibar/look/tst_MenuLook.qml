// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! What the menus above the prompt bar and the suggestion dialog draw.
OmniBarCase {
    name: "MenuLook"

    //! Menus are placed this far above it.
    function barY() {
        return part("barCard").y;
    }

    function test_slashMenu() {
        bar.slashFilter = "";
        bar.slashMenuVisible = true;
        look("SlashMenu", {
            "": {
                "width": 640, "radius": 14, "color": Qt.rgba(0.12, 0.06, 0.20, 0.95), "border.width": 1,
                "border.color": Qt.rgba(1, 1, 1, 0.10)
            },
            "heading": {
                "x": 18, "y": 8, "width": 604, "height": 26, "color": Qt.rgba(1, 1, 1, 0.55), "font.pixelSize": 11,
                "font.weight": Font.DemiBold, "verticalAlignment": Text.AlignVCenter, "text": "Commands"
            },
            "slashMenuList": { "x": 8, "y": 34, "width": 624, "anchors.bottomMargin": 8, "clip": true },
            "slashMenuRow": { "height": 38 },
            "slashMenuRow.background": { "radius": 8 },
            "slashMenuRow[0].background": { "color": Qt.rgba(1, 0.6, 0.3, 0.18) },
            "slashMenuRow[1].background": { "color": "transparent" },
            "slashMenuRow/icon": { "x": 12, "size": 18, "color": Qt.rgba(1, 1, 1, 0.80) },
            "slashMenuRow/name": {
                "x": 42, "width": 70, "color": Qt.rgba(1, 1, 1, 0.95), "font.pixelSize": 14, "font.weight": Font.Medium,
                "horizontalAlignment": Text.AlignLeft
            },
            "slashMenuRow/summary": { "x": 124, "anchors.rightMargin": 12, "color": Qt.rgba(1, 1, 1, 0.60), "font.pixelSize": 13 },
            "slashMenuScrollBar": { "thumbColor": Qt.rgba(1, 1, 1, 0.3) }
        });
        const menu = part("SlashMenu");
        compare(menu.parent.y + menu.height, barY() - 8);
        compare(menu.parent.z, 12);
        compare(menu.height, Math.min(menu.contentHeight + 26 + 16, 320, barY() - 16));
        bar.slashMenuVisible = false;
    }

    function test_sessionPopup_data() {
        return [{ tag: "few", rows: 2, scrolls: false }, { tag: "many", rows: 20, scrolls: true }];
    }
    function test_sessionPopup(data) {
        for (let i = 0; i < data.rows; ++i)
            bar.sessionPopupModel.append({ "sid": "0123456789" + i, "sname": "Name", "screatedAt": 0 });
        bar.slashSessionPopupVisible = true;
        tryVerify(() => part("sessionRow").width > 0);
        look("SessionPopup", {
            "": {
                "width": 660, "radius": 14, "color": Qt.rgba(0.10, 0.06, 0.18, 0.95), "border.width": 1,
                "border.color": Qt.rgba(1, 1, 1, 0.10), "scrolls": data.scrolls
            },
            "header": { "x": 18, "y": 8, "width": 630, "height": 36 },
            "heading": {
                "anchors.rightMargin": 12, "color": Qt.rgba(1, 1, 1, 0.95), "font.pixelSize": 14, "font.weight": Font.DemiBold
            },
            "deleteAllSessionsBtn": { "label": "Delete All", "anchors.rightMargin": 8, "height": 28, "width": part("deleteAllText").implicitWidth + 24 },
            "deleteAllSessionsBtn.background": { "radius": 8, "color": Qt.rgba(0.90, 0.22, 0.21, 0.18) },
            "deleteAllText": { "color": "#ff8a80", "font.pixelSize": 12 },
            "deleteAllSessionsBtn/FocusRing": { "radius": 10, "border.color": "#e9d5ff" },
            "closeSessionsBtn": { "width": 28, "glyph": "\u2715", "glyphSize": 12, "hoverFill": Qt.rgba(1, 1, 1, 0.15),
                                  "fill": "transparent" },
            "sessionList": { "x": 8, "y": 50, "width": 644, "anchors.bottomMargin": 8, "clip": true },
            "sessionRow": { "height": 52, "width": data.scrolls ? 644 - 6 - 4 : 644 },
            "sessionRow.background": { "radius": 8, "color": "transparent", "border.width": 0, "border.color": "#e9d5ff" },
            "sessionRow/icon": { "x": 12, "name": "view-history", "size": 18, "color": Qt.rgba(1, 1, 1, 0.70) },
            "sessionRow/Column": { "x": 42, "anchors.rightMargin": 12, "spacing": 3 },
            "sessionRow/nameText": { "color": Qt.rgba(1, 1, 1, 0.92), "font.pixelSize": 13, "horizontalAlignment": Text.AlignLeft },
            "sessionRow/details": { "color": Qt.rgba(1, 1, 1, 0.55), "font.pixelSize": 11, "horizontalAlignment": Text.AlignLeft },
            "deleteSessionBtn": {
                "anchors.rightMargin": 10, "width": 28, "iconName": "edit-delete", "iconSize": 14, "iconMask": true,
                "iconColor": Qt.rgba(1, 1, 1, 0.70), "hoverFill": Qt.rgba(0.90, 0.22, 0.21, 0.25)
            },
            "sessionScrollBar": { "thumbColor": Qt.rgba(1, 1, 1, 0.3) }
        });
        const popup = part("SessionPopup");
        compare(popup.parent.y + popup.height, barY() - 8);
        compare(popup.parent.z, 11);
        compare(popup.height, Math.min(data.rows * 52 + 36 + 6 + 16, 400, barY() - 16));

        lookHovered(part("deleteAllSessionsBtn"), "deleteAllSessionsBtn", { ".background": { "color": Qt.rgba(0.90, 0.22, 0.21, 0.35) } });
        lookHovered(part("deleteSessionBtn"), "deleteSessionBtn", { "": { "iconColor": "#ff8a80" } });
        const row = part("sessionRow");
        row.forceActiveFocus(Qt.TabFocusReason);
        lookHovered(row, row, { ".background": { "color": Qt.rgba(1, 1, 1, 0.08), "border.width": row.current ? 2 : 0 } });
        bar.slashSessionPopupVisible = false;
        bar.sessionPopupModel.clear();
    }

    function test_suggestionDialog() {
        bar.workspaceSuggestionDialogData = ({
            "title": "Title", "body": "Body", "actions": [{ "id": "open", "label": "Open" }, { "id": "dismiss" }]
        });
        bar.workspaceSuggestionDialogOpen = true;
        const dialog = part("suggestionDialog");
        tryCompare(dialog, "opened", true);
        lookInBoth(dialog, () => ({
            "": { "width": 440, "padding": 16, "spacing": 12, "screenMargin": 48, "maximumButtonsHeight": 160, "modal": true },
            ".background": { "radius": 14, "color": theme.uiPanelBase, "border.width": 1, "border.color": theme.uiPanelBorder },
            ".contentItem": { "spacing": 12, "width": 408 },
            "suggestionTitle": {
                "text": "Title", "width": 408, "color": theme.uiTextStrong, "font.pointSize": 12, "font.bold": true,
                "wrapMode": Text.Wrap, "maximumLineCount": 3
            },
            "suggestionBodyPane": { "width": 408, "thumbColor": theme.uiScrollThumb },
            "suggestionBody": {
                "text": "Body", "width": 396, "color": theme.uiTextMed, "font.pointSize": 10, "wrapMode": Text.Wrap,
                "elide": Text.ElideNone
            },
            "FocusRing[0]": { "radius": 6, "border.color": theme.focusRing },
            "buttonsPane": { "width": 408, "ringGap": 3, "thumbColor": theme.uiScrollThumb },
            "buttons": { "x": 0, "y": 3, "width": 408, "spacing": 8 },
            "suggestionAction[0]": { "label": "Open" },
            "suggestionAction[1]": { "label": "dismiss" }
        }));
        compare(dialog.height, dialog.contentItem.implicitHeight + 32);
        compare(dialog.x + dialog.width / 2, bar.width / 2);
        // What dims the rest of the window.
        const dimmer = Array.from(dialog.background.parent.parent.children).find(child => Qt.colorEqual(child.color || "red", Qt.rgba(0, 0, 0, 0.6)));
        verify(dimmer);
        bar.workspaceSuggestionDialogOpen = false;
        tryCompare(dialog, "visible", false);
    }
}
