// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

const monthNames = ["Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"];

/** The time of day of a Date as "h:mm AM" or "h:mm PM"; hour 0 is 12. */
function timeOfDay(date) {
    const minutes = date.getMinutes();
    return (date.getHours() % 12 || 12) + ":" + (minutes < 10 ? "0" : "") + minutes
        + (date.getHours() < 12 ? " AM" : " PM");
}

/** The day of a Date as "Mon D". */
function monthAndDay(date) {
    return monthNames[date.getMonth()] + " " + date.getDate();
}

/** Whether two Dates are on the same day in local time. */
function isSameDay(a, b) {
    return a.getFullYear() === b.getFullYear() && a.getMonth() === b.getMonth() && a.getDate() === b.getDate();
}

/**
 * The time of a message in local time: "h:mm PM", or "Mon D, h:mm PM" if it is not from today.
 * ts is in milliseconds since the epoch; the result is "" if it is invalid. now (a Date or milliseconds) defaults to
 * the current time.
 */
function formatMessageTime(ts, now) {
    const date = ts ? new Date(ts) : null;
    if (!date || isNaN(date.getTime())) {
        return "";
    }
    const today = now === undefined ? new Date() : new Date(now);
    return (isSameDay(date, today) ? "" : monthAndDay(date) + ", ") + timeOfDay(date);
}
