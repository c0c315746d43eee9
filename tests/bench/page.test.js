// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The page of the benchmarks, from made-up figures.

'use strict';

const assert = require('assert');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');
const test = require('node:test');

const script = path.join(__dirname, '../../bench/page.js');

const startup = `\
startup.warm.bar                      176.365 ms      -         -
startup.warm.bare                     128.151 ms      -         -
startup.warm.ratio                      1.376 x       <= 1.3    MISSED
`;
const requests = `\
requests.per-second                 31234.500 /s      -         -
requests.ratio                          0.812 x       >= 0.8    ok
requests.debug-log.share               12.345 %       -         -
`;
const idle = `\
idle.frames-in-10s                      0.000 frames  <= 0      ok
idle.memory.more                       58.816 MiB     <= 30     MISSED
`;

// Runs the script in a folder of its own. @return { status, page, errors }
function run(figures, facts = 'Processor\tMade-up | 2000, 2 threads\nQt\t5.15.99\n') {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'bench-page-'));
    try {
        const write = (name, text) => {
            const file = path.join(folder, name);
            fs.writeFileSync(file, text);
            fs.utimesSync(file, 0, Date.UTC(2026, 0, 2, 3, 4) / 1000);
            return file;
        };
        const files = Object.keys(figures).map(name => write(`bench-${name}.figures`, figures[name]));
        const result = spawnSync(process.execPath, [script, write('facts', facts), ...files], { encoding: 'utf8' });
        return { status: result.status, page: result.stdout, errors: result.stderr };
    } finally {
        fs.rmSync(folder, { recursive: true });
    }
}

// The lines below a heading, up to the next one.
function section(page, heading) {
    const lines = page.split('\n');
    const begin = lines.indexOf(heading) + 1;
    assert.ok(begin > 0, `no heading "${heading}" in:\n${page}`);
    const end = lines.findIndex((line, index) => index >= begin && line.startsWith('#'));
    return lines.slice(begin, end < 0 ? undefined : end).filter(line => line !== '');
}

test('ratios come first, each with what it compares', () => {
    const { status, page, errors } = run({ startup, requests, idle });
    assert.strictEqual(status, 0, errors);
    const headings = page.split('\n').filter(line => line.startsWith('## '));
    assert.deepStrictEqual(headings,
        ['## Ratios', '## Other figures with a target', '## Machine', '## All figures']);
    const rows = section(page, '## Ratios').filter(line => line.startsWith('|')).slice(2);
    assert.deepStrictEqual(rows, [
        '| startup.warm.ratio | 1.38 | first frame of the OmniBar | an empty window with the same size, flags and imports | <= 1.3 | **missed** |',
        '| requests.ratio | 0.812 | answered requests per second through the client | the same JSON through a bare socket | >= 0.8 | met |',
        '| requests.debug-log.share | 12.3 % | texts for the debug log while it is off | all work for a request |  |  |',
    ]);
});

test('a unit may have several words', () => {
    const { page, errors } = run({ level: 'level.ring.own  11.700 % of a core <= 3     MISSED\n' });
    assert.deepStrictEqual(section(page, '## Ratios').slice(3),
        ['| level.ring.own | 11.7 % of a core | processor time while listening to noise | one processor core | <= 3 | **missed** |'],
        errors);
});

test('targets that are no ratios follow, and the summary counts both', () => {
    const { page } = run({ startup, requests, idle });
    assert.match(page, /^2 of 4 targets are met\./m);
    const rows = section(page, '## Other figures with a target').slice(2);
    assert.deepStrictEqual(rows, [
        '| idle.frames-in-10s | 0.000 frames |  | <= 0 | met |',
        '| idle.memory.more | 58.8 MiB | the bare window (difference) | <= 30 | **missed** |',
    ]);
});

test('the facts of the machine can hold any character', () => {
    const { page } = run({ idle });
    assert.deepStrictEqual(section(page, '## Machine').slice(2),
        ['| Processor | Made-up \\| 2000, 2 threads |', '| Qt | 5.15.99 |']);
});

test('each benchmark has its date and all of its figures', () => {
    const { page } = run({ startup });
    assert.deepStrictEqual(section(page, '### startup'), [
        'Measured on 2026-01-02 03:04.',
        '| Figure | Value | Target | Verdict |',
        '| --- | --- | --- | --- |',
        '| startup.warm.bar | 176 ms |  |  |',
        '| startup.warm.bare | 128 ms |  |  |',
        '| startup.warm.ratio | 1.38 | <= 1.3 | **missed** |',
    ]);
});

for (const [name, line, message] of [
    ['a ratio without a row in the table', 'new.ratio 1.2 x <= 1 MISSED\n', /no row for the ratio new\.ratio/],
    ['a line that is no figure', 'not measured: no display\n', /not a figure: not measured/],
    ['a verdict that is unknown', 'idle.running 1 objects <= 0 maybe\n', /not a figure/],
]) {
    test(`${name} is an error`, () => {
        const { status, page, errors } = run({ idle: line });
        assert.strictEqual(status, 1);
        assert.strictEqual(page, '');
        assert.match(errors, message);
    });
}
