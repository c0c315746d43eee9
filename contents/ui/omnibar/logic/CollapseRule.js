// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Actions that change the desktop behind the window, which collapses so that the user sees the effect.
const collapsingPrefixes = [
    "kde_launch",
    "kde_daemon_",
    "kde_set_brightness",
    "kde_set_volume",
    "kde_lock_screen",
    "kde_set_wallpaper"
];
const longestPrefix = Math.max.apply(null, collapsingPrefixes.map(prefix => prefix.length));

/** Whether the start of this action collapses the window. Ignores case; hyphens count as underscores. */
function collapsesWindow(actionName) {
    const name = String(actionName || "").substring(0, longestPrefix).toLowerCase().replace(/-/g, "_");
    return collapsingPrefixes.some(prefix => name.startsWith(prefix));
}
