// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "MessageTime.js" as MessageTime
.import "../../../../components/logic/Translatable.js" as Translatable
.import "../../../../components/logic/Untrusted.js" as Untrusted

// The bridge's list of sessions. It is untrusted: any field may be missing or of another type.

const mark = Translatable.mark;

const maxNameLength = 1000;
const shortIdLength = 8;
// Smaller numbers are seconds: this many milliseconds is a date in 2001.
const firstMilliseconds = 1e12;

/** The first field of these names that isn't empty, as text. */
function firstText(session, names) {
    const name = names.find(candidate => Untrusted.textOf(session[candidate]) !== "");
    return name === undefined ? "" : Untrusted.textOf(session[name]);
}

/** A creation time in milliseconds since 1970; 0 if it is missing or invalid. */
function timeOf(value) {
    const number = typeof value === "string" && value.trim() !== "" ? Number(value) : value;
    let time = NaN;
    if (typeof number === "number" && !isNaN(number)) {
        time = number < firstMilliseconds ? number * 1000 : number;
    } else if (typeof value === "string") {
        time = Date.parse(value);
    }
    return time > 0 && !isNaN(new Date(time).getTime()) ? time : 0;
}

/** The bridge's sessions as rows {sid, sname, screatedAt (ms, or 0)}. Entries without an id are dropped. */
function rows(sessions) {
    return Array.from(sessions)
        .filter(session => typeof session === "object" && session !== null)
        .map(session => {
            const id = firstText(session, ["id", "sessionId"]);
            const created = [session.createdAt, session.created].find(value => value !== undefined && value !== null);
            return {
                sid: id,
                sname: firstText(session, ["name", "title"]).substring(0, maxNameLength) || id,
                screatedAt: timeOf(created)
            };
        })
        .filter(row => row.sid !== "");
}

/** The same rows with readable names for sessions that nobody has named. */
function namedRows(list, tr) {
    return list.map((row, index) => ({ sid: row.sid, sname: displayName(row, index + 1, tr), screatedAt: row.screatedAt }));
}

/** @p position in the list, from 1 */
function displayName(row, position, tr) {
    if (row.sname !== row.sid && !row.sname.startsWith("ses_")) {
        return row.sname;
    }
    if (row.screatedAt === 0) {
        return Translatable.filled(Translatable.translated(mark("Chat {number}"), tr), { number: position });
    }
    const date = new Date(row.screatedAt);
    return Translatable.filled(Translatable.translated(mark("Chat · {day}, {time}"), tr),
                               { day: MessageTime.monthAndDay(date), time: MessageTime.timeOfDay(date) });
}

/** A row's time, such as "Today, 3:05 PM" or "Mar 9, 3:05 PM"; "" if it has none. now: a Date, by default the current time. */
function timeText(time, tr, now) {
    if (time === 0) {
        return "";
    }
    const date = new Date(time);
    const today = now === undefined ? new Date() : now;
    // The day of the month may be 0, which is the last one of the month before.
    const yesterday = new Date(today.getFullYear(), today.getMonth(), today.getDate() - 1);
    let text = mark("{day}, {time}");
    if (MessageTime.isSameDay(date, today)) {
        text = mark("Today, {time}");
    } else if (MessageTime.isSameDay(date, yesterday)) {
        text = mark("Yesterday, {time}");
    }
    return Translatable.filled(Translatable.translated(text, tr),
                               { day: MessageTime.monthAndDay(date), time: MessageTime.timeOfDay(date) });
}

/** The beginning of an id, for display. */
function shortId(id) {
    return LiteralText.oneLine(id.substring(0, shortIdLength)) + "…";
}

/**
 * The session that a name or id after "/session" means, undefined if there is none. Intentional: it looks for keys that
 * the rows of our list don't have (those have sid, sname, screatedAt), so it finds none, and the user is always sent to
 * the list.
 */
function find(list, nameOrId) {
    return list.find(row => ["id", "sessionId", "title", "name"].some(key => row[key] === nameOrId));
}
