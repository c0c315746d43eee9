// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import org.kde.kirigami 2.20 as Kirigami
import org.kde.loomra.components.controls 1.0

import "logic/Translatable.js" as Translatable
import "config"
import "config/UsageNumbers.js" as UsageNumbers

//! The tokens that the agent tool used, per day.
ConfigPage {
    id: page

    property var service: typeof tokenUsageService === "undefined" ? null : tokenUsageService
    property int days: UsageNumbers.defaultWindow
    property var rows: []
    readonly property real peak: UsageNumbers.peak(rows)
    readonly property string storagePath: service && service.storagePath ? service.storagePath : ""

    //! Counts again, which blocks until all files are read.
    function refresh() {
        if (!service || typeof service.refresh !== "function" || typeof service.dailyUsage !== "function")
            return;
        service.refresh();
        rows = service.dailyUsage(days);
    }

    Component.onCompleted: refresh()

    RowLayout {
        spacing: Kirigami.Units.smallSpacing

        ConfigText {
            text: Translation.tr("Token Usage")
            font.pointSize: Kirigami.Theme.defaultFont.pointSize * 1.3
            Accessible.role: Accessible.Heading
        }
        WordBox {
            objectName: "usageDays"

            words: UsageNumbers.windows.map(days => Translatable.filled(Translation.tr("{count} days"), { count: days }))
            word: words[UsageNumbers.windows.indexOf(page.days)]
            onActivated: {
                page.days = UsageNumbers.windows[index];
                page.refresh();
            }
            Accessible.name: Translation.tr("Days")
        }
        ConfigButton {
            objectName: "refreshUsage"

            text: Translation.tr("Refresh")
            icon.name: "view-refresh"
            onClicked: page.refresh()
        }
    }
    ConfigText {
        objectName: "usageNote"

        text: Translatable.filled(Translation.tr("Aggregated from Loomra session messages at {path}"), { path: page.storagePath })
        wrapMode: Text.Wrap
        opacity: 0.8
    }
    UsageRow {
        objectName: "usageHeader"

        cells: UsageNumbers.columns.map(column => Translatable.translated(column.title, Translation.tr))
        isHeader: true
    }
    Repeater {
        model: page.rows

        UsageRow {
            required property var modelData

            objectName: "usageRow"
            cells: UsageNumbers.cells(modelData)
            share: page.peak > 0 ? modelData.total / page.peak : 0
        }
    }
    ConfigText {
        objectName: "usageTotals"

        text: Translatable.filled(Translation.tr("Totals (last {count} days): {tokens} tokens"),
                                  { count: page.days, tokens: UsageNumbers.short(UsageNumbers.sum(page.rows)) })
        font.bold: true
    }
}
