// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Files that go along with the next prompt.
Controller {
    //! Entries: name, path, content, chars.
    property var slashAttachedFiles: []

    //! The attached files, which are then attached no longer: they serve one question.
    function takeAttachedFiles() {
        const files = slashAttachedFiles;
        if (files.length > 0)
            slashAttachedFiles = [];
        return files;
    }
}
