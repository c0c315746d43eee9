// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Random input for each reader of untrusted data, apart from replies, which documentHostile.test.js has.

const assert = require('assert/strict');

const { isObject, readRequest } = require('../lib/frames');
const { parseAddress } = require('../lib/model/address');
const { chooseModel, listed, readModels } = require('../lib/model/catalog');
const { ENDINGS, fromStatus, reported } = require('../lib/model/failures');
const { CompletionStream } = require('../lib/model/stream');
const { parseKConfig } = require('../lib/reports/kconfig');
const { parseStat } = require('../lib/reports/load');
const { logReport } = require('../lib/reports/logs');
const { panelsOf, themeOf } = require('../lib/reports/plasma');
const { parseProfiles } = require('../lib/reports/power');
const { parseProcess, parseStatus } = require('../lib/reports/processes');
const { serviceReport } = require('../lib/reports/service');
const { parseIds, parseWindow } = require('../lib/reports/windows');
const { parseLines } = require('../lib/storage/lines');
const { isId, mergeIndex, readIndexRow, readLine } = require('../lib/storage/rows');
const { changedJson, changedText, forRandom, pickFrom } = require('./support/random');
const { OPENING, ending, usage, words } = require('./support/modelServer');
const { test } = require('./support/timed');

const COUNT = 1500;

//! Calls `check(text)` with random changes of the examples, which are texts or JSON values. Fails if `check` returns the
//! same truth for nearly all of them, because then it would test only one of the ways.
function checkRandom(seed, examples, check) {
    let accepted = 0;
    forRandom({ seed, count: COUNT }, (random) => {
        const example = pickFrom(random)(examples);
        return typeof example === 'string' ? changedText(example, random) : changedJson(example, random);
    }, (text) => { accepted += Boolean(check(text)); });
    assert.ok(accepted > COUNT * 0.05 && accepted < COUNT * 0.99, `${accepted} of ${COUNT}`);
}

const isPlain = (text) => typeof text === 'string' && !/[\u0000-\u001f\u007f-\u009f]/.test(text);
const isCount = (value) => Number.isSafeInteger(value) && value >= 0;

test('frames', () => {
    checkRandom(1, [{ id: 1, method: 'chat', params: { message: 'a', context: { files: [] } } },
        { type: 'response', id: 1, payload: {} }], (text) => {
        const { request, fault, id } = readRequest(Buffer.from(text), false);
        assert.equal(request === undefined, typeof fault === 'string');
        if (request) {
            assert.deepEqual(Object.keys(request), ['id', 'method', 'params']);
            assert.ok(isCount(request.id) && request.id > 0 && request.method !== '' && isObject(request.params));
        } else {
            assert.ok(id === undefined || isCount(id));
            assert.doesNotMatch(fault, /[{"\u001b]/); // quotes nothing of the frame
        }
        return request;
    });
});

const SESSION = 'ses_0123456789abcdef';

test('stored lines of the index', () => {
    const rows = [{ id: SESSION, name: 'One', createdAt: 1, usedAt: 2 }, { id: SESSION, deleted: true },
        { id: 'ses_fedcba9876543210', name: 'Two', createdAt: 3, usedAt: 4 }];
    checkRandom(2, [rows.map((row) => JSON.stringify(row)).join('\n'), ...rows], (text) => {
        const { rows: found, damaged } = parseLines(Buffer.from(text), readIndexRow);
        assert.equal(found.length + damaged, text.split('\n').filter((line) => line !== '').length);
        for (const row of found) {
            assert.ok(isId(row.id));
            if (!row.deleted) {
                assert.ok(row.name.trim() !== '' && row.name.length <= 201 && !/[\n\r]/.test(row.name));
                assert.ok(isCount(row.createdAt) && isCount(row.usedAt));
                assert.doesNotThrow(() => new Date(row.usedAt).toISOString());
            }
        }
        const merged = mergeIndex(found);
        assert.ok([...merged.deleted].every((id) => !merged.rows.has(id)));
        return damaged === 0;
    });
});

test('stored lines of a conversation', () => {
    const rows = [{ format: 1, id: SESSION, createdAt: 1 }, { role: 'user', content: 'a', sent: 'File\na', at: 5 },
        { role: 'assistant', content: 'Grüße 👩‍👩‍👧' }];
    checkRandom(3, [rows.map((row) => JSON.stringify(row)).join('\n'), ...rows], (text) => {
        const { rows: found, damaged } = parseLines(Buffer.from(text), readLine);
        for (const { head, message, bytes } of found) {
            assert.equal(head === undefined, message !== undefined);
            if (message) {
                assert.ok(['user', 'assistant'].includes(message.role) && typeof message.content === 'string' && bytes > 0);
                assert.ok(message.sent === undefined || typeof message.sent === 'string');
            }
        }
        return damaged === 0;
    });
});

const EVENTS = [OPENING, words('<think>hm</think>Grüße '), words('an 👩‍👩‍👧, '),
    { prompt_progress: { processed: 1, total: 2 } }, ending(), usage(7, 5)];
const STREAM = `${EVENTS.map((data) => `data: ${JSON.stringify(data)}\n\n`).join('')}data: [DONE]\n\n`;

function checkStream(stream) {
    const { text, usage: used, readShare, finishReason } = stream;
    assert.equal(stream.hasText, text !== '');
    // Only tabs and newlines are left, and every surrogate has a partner.
    assert.doesNotMatch(text, /[\u0000-\u0008\u000b-\u001f\u007f]/);
    assert.equal(Buffer.from(text).toString(), text);
    assert.ok(used === undefined || (isCount(used.inputTokens) && isCount(used.outputTokens)));
    assert.ok(readShare === undefined || (readShare >= 0 && readShare <= 1));
    assert.equal(typeof finishReason, 'string');
    if (stream.error !== undefined)
        assert.equal(reported({ shown: 'x', key: '' }, stream.error).form, 'response');
}

test('streams of model servers', () => {
    let size = 0;
    checkRandom(4, [STREAM, ...EVENTS], (text) => {
        const bytes = Buffer.from(text.startsWith('data') ? text : `data: ${text}\n\n`);
        size = (size % 40) + 1;
        const [whole, pieces] = [new CompletionStream(), new CompletionStream()];
        whole.feed(bytes);
        for (let at = 0; at < bytes.length; at += size)
            pieces.feed(bytes.subarray(at, at + size));
        for (const stream of [whole, pieces]) {
            stream.end();
            checkStream(stream);
        }
        assert.deepEqual([pieces.text, pieces.usage, pieces.isComplete], [whole.text, whole.usage, whole.isComplete]);
        return whole.isComplete;
    });
});

test('replies of model servers that are not streamed, and their errors', () => {
    const server = { shown: '127.0.0.1:8080', key: 'SECRET' };
    const reply = { choices: [{ message: { role: 'assistant', content: 'Grüße' }, finish_reason: 'stop' }],
        usage: { prompt_tokens: 7, completion_tokens: 5 } };
    const error = { error: { message: 'The key SECRET is wrong\nfor it', code: 401, type: 'auth' } };
    checkRandom(5, [reply, error, '<html>no</html>', 'busy'], (text) => {
        const stream = new CompletionStream();
        stream.readWhole(text);
        checkStream(stream);
        const failure = fromStatus(server, 500, text);
        assert.ok(isPlain(failure.message) && failure.message.length < 500 && !failure.message.includes('SECRET'));
        assert.match(failure.code, /^MODEL_[A-Z_]+$/);
        assert.ok(!Object.values(ENDINGS).includes(failure.message));
        return stream.hasText;
    });
});

test('lists of models', () => {
    const pages = {
        models: { data: [{ id: '/m/a.gguf', meta: { n_params: 7e9, size: 4e9, n_ctx: 4096 } }, { id: 'b' }, { id: 'embed' }] },
        props: { default_generation_settings: { n_ctx: 8192 } },
        tags: { models: [{ name: 'b', size: 5e9, details: { parameter_size: '3B', families: ['bert'] } }] },
        running: { models: [{ name: 'b', context_length: 2048 }] },
    };
    checkRandom(6, [pages], (text) => {
        let changed;
        try {
            changed = JSON.parse(text);
        } catch {
            return false;
        }
        const models = isObject(changed) ? readModels(changed) : undefined;
        for (const row of listed(models ?? [])) {
            assert.ok([row.id, row.name, row.fullId, row.displayName].every((field) => typeof field === 'string' && field));
            assert.ok(row.fullId.startsWith('local/') && Number.isFinite(row.sizeBytes) && row.sizeBytes >= 0);
            assert.ok(isObject(chooseModel(models, row.fullId)));
        }
        assert.ok((models ?? []).every(({ contextTokens }) => isCount(contextTokens) && contextTokens >= 256));
        return models;
    });
});

test('addresses of model servers', () => {
    const examples = ['http://127.0.0.1:8080/v1', 'localhost:11434', 'https://example.org/api', '[::1]:80', '0.0.0.0:9931'];
    const loopback = /^(?:localhost|127\.\d+\.\d+\.\d+|\[::1\]|\[::ffff:7f[\da-f]{2}:[\da-f]+\])$/;
    checkRandom(7, examples, (text) => {
        let address;
        try {
            address = parseAddress(text);
        } catch (error) {
            assert.match(error.message, /^must /);
            return false;
        }
        assert.match(address.base, /^https?:\/\/[^?#@]+$/);
        // Where a request goes is where the check has looked.
        const { hostname } = new URL(`${address.base}/v1/models`);
        assert.equal(address.isLoopback, loopback.test(hostname));
        return true;
    });
});

test('files of the desktop', () => {
    const layout = '[Containments][1]\nplugin=org.kde.panel\nlocation=4\n\n[Containments][1][Applets][2]\nplugin[$i]=clock\n';
    const globals = '[KDE]\nLookAndFeelPackage=org.kde.breeze\n[General]\nColorScheme=Breeze\n';
    checkRandom(8, [layout, globals], (text) => {
        assert.ok(parseKConfig(text).every(({ path, entries }) => Array.isArray(path) && entries instanceof Map));
        const panels = panelsOf(text);
        for (const { id, location, applets } of panels)
            assert.ok([id, location, ...applets].every(isPlain));
        const theme = themeOf([text, null]);
        assert.ok(isPlain(theme) && theme !== '' && theme.length <= 101);
        return panels.length || theme !== 'unavailable';
    });
});

test('the journal', () => {
    const entry = { __REALTIME_TIMESTAMP: '1700000000000000', MESSAGE: 'a', PRIORITY: '3', SYSLOG_IDENTIFIER: 'x', _COMM: 'y' };
    const bytes = { ...entry, MESSAGE: [71, 114, 255, 27] };
    checkRandom(9, [`${JSON.stringify(entry)}\n${JSON.stringify(bytes)}\n`, entry, bytes], (text) => {
        const { entries } = logReport(text);
        for (const { timestamp, unit, level, message } of entries) {
            assert.ok(isCount(timestamp) && isPlain(unit) && isPlain(message) && message !== '');
            assert.ok(['error', 'warn', 'info'].includes(level));
        }
        return entries.length;
    });
});

test('power profiles', () => {
    const profiles = ['balanced', 'performance'].map((data) => ({ Profile: { type: 's', data } }));
    const list = JSON.stringify({ type: 'aa{sv}', data: profiles });
    checkRandom(10, [`{"type":"s","data":"balanced"}\n${list}\n`], (text) => {
        const found = parseProfiles(text);
        assert.ok(found === null || [found.active, ...found.available].every(isPlain));
        return found;
    });
});

test('the service manager', () => {
    const text = ['LoadState=loaded', 'ActiveState=active', 'SubState=running', 'UnitFileState=enabled',
        'ActiveEnterTimestampMonotonic=5000000', 'NRestarts=2', 'MemoryCurrent=1000', ''].join('\n');
    checkRandom(11, [text], (output) => {
        const report = serviceReport(output, { uptimeSec: 1, memoryBytes: 2 }, 100);
        assert.ok([report.active, report.sub, report.enabled].every((word) => isPlain(word) && word !== ''));
        const { restartCount, uptimeSec, memoryBytes } = report;
        assert.ok([restartCount, uptimeSec, memoryBytes].every((value) => Number.isFinite(value) && value >= 0));
        return report.active === 'active';
    });
});

test('windows', () => {
    const ids = '_NET_CLIENT_LIST(WINDOW): window id # 0x1a00003, 0x2000004';
    const shown = '_NET_WM_NAME(UTF8_STRING) = "Gr\\303\\274\\303\\237e \\"x\\""\nWM_CLASS(STRING) = "konsole", "konsole"\n' +
        '_NET_WM_STATE(ATOM) = _NET_WM_STATE_HIDDEN\n';
    checkRandom(12, [ids, shown], (text) => {
        const found = parseIds(text);
        assert.ok(found === null || found.every((id) => /^0x[0-9a-f]+$/.test(id)));
        const window = parseWindow('0x1', text);
        if (window)
            assert.ok(isPlain(window.title) && isPlain(window.class) && typeof window.minimized === 'boolean');
        return found?.length || window?.title;
    });
});

test('the processes of the machine', () => {
    const stat = 'cpu  10 0 20 300 5 0 0 0 0 0\ncpu0 10 0 20 300 5 0 0 0 0 0\nintr 5\n';
    const line = `7 (a) b) S ${Array.from({ length: 30 }, (_, n) => n).join(' ')}`;
    const status = 'Name:\ta\nUid:\t1000\t1000\nVmRSS:\t  2048 kB\n';
    checkRandom(13, [stat, line, status], (text) => {
        const all = parseStat(text);
        assert.ok(all === null || ([all.busy, all.total].every(Number.isFinite) && all.processors >= 1));
        const found = parseProcess(text);
        assert.ok(found === null || (isCount(found.pid) && isPlain(found.name) && Number.isFinite(found.ticks)));
        const { memoryMb } = parseStatus(text);
        assert.ok(Number.isFinite(memoryMb) && memoryMb >= 0);
        return all ?? found ?? memoryMb;
    });
});
