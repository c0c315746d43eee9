// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { parseJson, plain } = require('./untrusted');

const FETCHED = 200;
const MAX_ENTRIES = 50;
const MAX_MESSAGE = 500;
const MAX_UNIT = 100;
const FIELDS = 'MESSAGE,PRIORITY,_SYSTEMD_USER_UNIT,SYSLOG_IDENTIFIER,_COMM';
const ARGUMENTS = ['--user', '--output=json', `--output-fields=${FIELDS}`, '--priority=0..6', '--since=-6h', '--reverse',
    `--lines=${FETCHED}`, '--no-pager', '--quiet'];

const INFO = 6;
const MICROSECONDS = 1000; // per millisecond

//! The level of a syslog priority.
function levelOf(priority) {
    if (priority <= 3)
        return 'error';
    return priority === 4 ? 'warn' : 'info';
}

//! A message is a list of bytes if it isn't valid UTF-8.
const messageOf = (value) =>
    (Array.isArray(value) ? Buffer.from(value.slice(0, MAX_MESSAGE).filter(Number.isInteger)).toString('utf8') : value);

//! The number in a field, or NaN. A field may be a list.
const numberOf = (value) => (typeof value === 'object' ? NaN : Number(value));

//! The entry of a line of the journal, or null.
function parseEntry(line) {
    const fields = parseJson(line);
    const timestamp = Math.floor(numberOf(fields?.__REALTIME_TIMESTAMP) / MICROSECONDS);
    const message = plain(messageOf(fields?.MESSAGE), MAX_MESSAGE);
    if (!Number.isSafeInteger(timestamp) || timestamp <= 0 || !message)
        return null;
    const unit = [fields._SYSTEMD_USER_UNIT, fields.SYSLOG_IDENTIFIER, fields._COMM]
        .map((name) => plain(name, MAX_UNIT)).find(Boolean) ?? '';
    return { timestamp, unit, level: levelOf(numberOf(fields.PRIORITY ?? INFO)), message };
}

//! The report from the output of journalctl, newest entry first: the errors and warnings in it, then others while there is
//! room. Its entries are oldest first.
function logReport(text) {
    if (text === null)
        return { available: false, entries: [] };
    const found = text.split('\n').map(parseEntry).filter(Boolean);
    const isUrgent = ({ level }) => level !== 'info';
    const chosen = [...found.filter(isUrgent), ...found.filter((entry) => !isUrgent(entry))].slice(0, MAX_ENTRIES);
    return { available: true, entries: chosen.sort((a, b) => a.timestamp - b.timestamp) };
}

//! Reads the latest log entries of the user's session.
const readLogs = async (programs) => logReport(await programs.run('journalctl', ARGUMENTS));

module.exports = { logReport, readLogs };
