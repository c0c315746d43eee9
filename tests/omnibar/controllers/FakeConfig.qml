// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! The stored settings as a controller sees them. It records what is written and saved.
CallRecorder {
    //! What the functions of these names return.
    readonly property QtObject answers: QtObject {
        property var isWorkspaceTemplateSlugEnabled: []
    }

    function isWorkspaceTemplateSlugEnabled(slug) { return answers.isWorkspaceTemplateSlugEnabled.includes(slug); }
    function setWorkspaceTemplateSlugEnabled(slug, enabled) {
        note("setWorkspaceTemplateSlugEnabled", [slug, enabled]);
        const others = answers.isWorkspaceTemplateSlugEnabled.filter(each => each !== slug);
        answers.isWorkspaceTemplateSlugEnabled = enabled ? others.concat(slug) : others;
    }
    function save() { note("save", []); }
}
