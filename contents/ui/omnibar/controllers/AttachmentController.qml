// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

//! Files that are attached to the next prompt.
Controller {
    //! Objects with name, path, content, chars.
    property var slashAttachedFiles: []

    //! Returns the attached files and clears the list: files go with one prompt only.
    function takeAttachedFiles() {
        const files = slashAttachedFiles;
        if (files.length > 0)
            slashAttachedFiles = [];
        return files;
    }
}
