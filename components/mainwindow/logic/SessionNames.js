// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../contents/ui/omnibar/logic/Sessions.js" as Sessions
.import "../../logic/Translatable.js" as Translatable
.import "../../logic/Untrusted.js" as Untrusted
.import "TextSet.js" as TextSet

// The rows of the list of sessions, which is untrusted.

const shortIdLength = 8;

/**
 * A name for a session without one.
 * @param session {id, title, createdAt (ms since 1970, seconds, or an ISO date)}
 */
function generated(session, tr) {
    const title = Untrusted.textOf(session.title).trim();
    if (title !== "") {
        return title;
    }
    const time = Sessions.timeOf(session.createdAt);
    if (time > 0) {
        return Translatable.filled(Translatable.translated(Translatable.mark("Session - {date}"), tr),
                                   { date: Qt.formatDate(new Date(time), Qt.DefaultLocaleShortDate) });
    }
    return Untrusted.textOf(session.id).substring(0, shortIdLength) + "...";
}

/** Rows {id, name, title, createdAt (ms, 0 if unknown)}. Entries without an id and repeated ones are left out. */
function rows(sessions, tr) {
    const ids = {};
    return Array.from(sessions)
        .filter(Untrusted.isObject)
        .map(session => {
            const title = Untrusted.textOf(session.title);
            return {
                id: Untrusted.textOf(session.id) || Untrusted.textOf(session.sessionId),
                name: title.trim() !== "" ? title : generated(session, tr),
                title: title,
                createdAt: Sessions.timeOf(session.createdAt)
            };
        })
        .filter(row => row.id !== "" && TextSet.add(ids, row.id));
}

/** The rows with another name for one session. */
function renamed(list, id, name) {
    return list.map(row => row.id === id ? Object.assign({}, row, { name: name, title: name }) : row);
}
