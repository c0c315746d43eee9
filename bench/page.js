#!/usr/bin/env node
// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// page.js FACTS FIGURES...: prints a page in Markdown from the output of the benchmarks. FACTS has a line "NAME<tab>VALUE"
// for each fact of the machine; each other file is the output of a benchmark, as Figures::bounded() prints it. A line that
// can't be parsed, or a ratio that isn't in the table below, ends the script with status 1.

'use strict';

const fs = require('fs');
const path = require('path');

// What a ratio divides by what, by its name; a * stands for any text. The first match wins.
const comparisons = [
    ['version.ratio', 'start to end of `tovictl --version`', 'an empty program that links the same libraries'],
    ['startup.warm.ratio', 'first frame of the OmniBar', 'an empty window with the same size, flags and imports'],
    ['startup.empty-qml-cache.ratio', 'the same without compiled QML on the disk', 'the same empty window'],
    ['validation.*.ratio', 'first frame of the voice validation window', 'an empty window of the same size and imports'],
    ['mainwindow.*.ratio', 'first frame of the main window', 'an empty Kirigami window with the same imports'],
    ['sheet.open.ratio', 'opening the settings sheet', 'an empty sheet of the same size'],
    ['sheet.tab.*.ratio', 'changing to this tab', 'an empty tab of the same height'],
    ['requests.ratio', 'answered requests per second through the client', 'the same JSON through a bare socket'],
    ['requests.debug-log.share', 'texts for the debug log while it is off', 'all work for a request'],
    ['files.usage.ratio', 'summing up 100,000 message files', 'only reading them'],
    ['files.model.ratio', 'listing 50,000 entries', 'listing them by QDir'],
    ['rows.*scroll-ratio', 'slowest 1 % of frames while a long conversation is scrolled', 'a short conversation'],
    ['table.ratio', 'showing a table with 5000 rows in its payload', 'one with 50 rows'],
    ['markdown.ratio', 'laying out 100 KiB of Markdown', "Qt's own reader of Markdown"],
    ['markdown.worst-ratio', 'laying out the costliest piece of syntax', 'as much plain text'],
    ['markdown.script-growth', 'renderer time per character', 'a tenth of the text; 1 is linear'],
    ['voice.construction.ratio', 'creating the voice path', 'the parts of it that take time, alone'],
    ['voice.wake-to-first-chunk.ratio', 'the wake word until the first chunk', 'a program that only opens the stream'],
    ['countdown.ratio', 'a tick of the countdown', 'repainting only its ring'],
    ['level.*', 'processor time while listening to noise', 'one processor core'],
    ['voice.listening', 'processor time while listening to a quiet room', 'one processor core'],
    ['whisper.worker-share', 'what the worker adds to a transcription', 'the time of the library'],
    ['idle.memory.more', 'resident memory of the idle OmniBar', 'the bare window (difference)'],
    ['idle.software.memory.more', 'the same with the software renderer', 'the bare window (difference)'],
];

function matches(pattern, name) {
    const parts = pattern.split('*').map(part => part.replace(/[.\\+?^${}()|[\]]/g, '\\$&'));
    return new RegExp('^' + parts.join('.*') + '$').test(name);
}

function fail(message) {
    process.stderr.write('page.js: ' + message + '\n');
    process.exit(1);
}

function isRatio(figure) {
    return figure.unit === 'x' || figure.unit.startsWith('%');
}

// A line: name, value, unit, target ("<= 1.5" or "-"), verdict ("ok", "MISSED" or "-").
function parseFigure(line, file) {
    const found = /^(\S+)\s+(-?\d+(?:\.\d+)?)\s+(\S.*?)\s+(-|[<>]= \S+)\s+(-|ok|MISSED)$/.exec(line.trim());
    if (!found)
        fail(`${file}: not a figure: ${line}`);
    const [, name, value, unit, target, verdict] = found;
    const figure = { name, value: Number(value), unit, target, verdict };
    const row = comparisons.find(([pattern]) => matches(pattern, name));
    if (isRatio(figure) && !row)
        fail(`${file}: the table of comparisons has no row for the ratio ${name}`);
    return Object.assign(figure, { what: row ? row[1] : '', against: row ? row[2] : '' });
}

function readFacts(file) {
    return fs.readFileSync(file, 'utf8').split('\n').filter(line => line !== '').map(line => line.split('\t', 2));
}

function readBenchmark(file) {
    const lines = fs.readFileSync(file, 'utf8').split('\n').filter(line => line.trim() !== '');
    return {
        name: path.basename(file).replace(/^bench-/, '').replace(/\.figures$/, ''),
        measured: fs.statSync(file).mtime.toISOString().slice(0, 16).replace('T', ' '),
        figures: lines.map(line => parseFigure(line, file)),
    };
}

function cell(text) {
    return String(text).replace(/\|/g, '\\|');
}

function table(head, rows) {
    const line = cells => '| ' + cells.map(cell).join(' | ') + ' |';
    return [line(head), line(head.map(() => '---')), ...rows.map(line), ''];
}

// Values above 100 need no decimals, small ones three.
function number(figure) {
    const size = Math.abs(figure.value);
    const decimals = size >= 100 ? 0 : size >= 10 ? 1 : size >= 1 ? 2 : 3;
    return `${figure.value.toFixed(decimals)} ${figure.unit === 'x' ? '' : figure.unit}`.trim();
}

function targetOf(figure) {
    return figure.target === '-' ? '' : figure.target;
}

function verdictOf(figure) {
    return { ok: 'met', MISSED: '**missed**', '-': '' }[figure.verdict];
}

function page(facts, benchmarks) {
    const all = benchmarks.flatMap(benchmark => benchmark.figures);
    const judged = all.filter(figure => figure.verdict !== '-');
    const met = judged.filter(figure => figure.verdict === 'ok');
    const ratios = all.filter(isRatio);
    const judgedOthers = judged.filter(figure => !isRatio(figure));
    const lines = ['# Figures of the benchmarks', '',
        `${met.length} of ${judged.length} targets are met. ` +
        '`bench/run` measures again and explains each figure; times are UTC.', '',
        '## Ratios', '',
        'Both values of a ratio come from the same run, so they are comparable between machines.', '',
        ...table(['Figure', 'Ratio', 'Of', 'To', 'Target', 'Verdict'], ratios.map(figure =>
            [figure.name, number(figure), figure.what, figure.against, targetOf(figure), verdictOf(figure)])),
        '## Other figures with a target', '',
        ...table(['Figure', 'Value', 'Compared with', 'Target', 'Verdict'], judgedOthers.map(figure =>
            [figure.name, number(figure), figure.against, targetOf(figure), verdictOf(figure)])),
        '## Machine', '',
        ...table(['', ''], facts),
        '## All figures', ''];
    for (const benchmark of benchmarks) {
        lines.push(`### ${benchmark.name}`, '', `Measured on ${benchmark.measured}.`, '',
            ...table(['Figure', 'Value', 'Target', 'Verdict'], benchmark.figures.map(figure =>
                [figure.name, number(figure), targetOf(figure), verdictOf(figure)])));
    }
    return lines.join('\n');
}

const [factsFile, ...figureFiles] = process.argv.slice(2);
if (!factsFile || figureFiles.length === 0)
    fail('usage: page.js FACTS FIGURES...');
process.stdout.write(page(readFacts(factsFile), figureFiles.map(readBenchmark)));
