// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// diagnose.js PROGRAM [OPTIONS]: checks what the program needs. Called by the wrapper as `tovictl test`.
// No check changes anything or waits without a limit.

const os = require('os');

const bridgeChecks = require('./checks/bridge');
const desktopChecks = require('./checks/desktop');
const soundChecks = require('./checks/sound');
const { BridgeClient } = require('./bridgeClient');
const { problem } = require('./checks/outcomes');
const { run } = require('./programs');
const { asLine } = require('./text');

const EXIT = { ok: 0, missing: 1, usage: 2 };
const STATE_WIDTH = 9;
const TITLE_WIDTH = 17;

const USAGE = `Usage: tovictl test [OPTIONS]

Checks what tovictl needs, and says what is missing and how to get it. It
changes nothing and starts nothing.

Options:
  --chat      Also send a real prompt. Its conversation is deleted afterwards.
  --json      Print one JSON object instead of lines: "ok", and "checks" with
              "id", "title", "state", "essential", "detail" and "help" of each.
  -h, --help  Show this message and exit.

Each line begins with "ok", "missing" or "problem". Essential are the program,
the display and the bridge, with --chat also the reply.

Exit status:
  0    nothing essential is missing
  1    something essential is missing or does not work
  2    wrong arguments
  127  node is missing
`;

//! Runs a check. Resolves to its row, or null if it doesn't apply here.
async function perform({ id, title, isEssential = false, run: check }, context) {
    let outcome;
    try {
        outcome = await check(context);
    } catch (error) {
        outcome = problem(`the check failed: ${error.message}`, 'Please report this');
    }
    if (!outcome)
        return null;
    const { state, detail, help } = outcome;
    return { id, title, state, essential: isEssential, detail: asLine(detail), help: asLine(help) };
}

function print(text) {
    return new Promise((resolve) => {
        process.stdout.once('error', resolve); // nobody reads it any more
        process.stdout.write(text, resolve);
    });
}

function lines(rows) {
    const indent = ' '.repeat(STATE_WIDTH + TITLE_WIDTH);
    return rows.map(({ state, title, detail, help }) =>
        `${state.padEnd(STATE_WIDTH)}${title.padEnd(TITLE_WIDTH)}${detail}\n` + (help ? `${indent}-> ${help}\n` : '')).join('');
}

function conclusion(faults) {
    if (!faults.length)
        return 'Nothing essential is missing.\n';
    return `Essential, and not working: ${faults.map(({ title }) => title).join(', ')}.\n`;
}

async function main([program, ...options]) {
    const unknown = options.find((each) => !['--chat', '--json', '--help', '-h'].includes(each));
    if (unknown !== undefined) {
        process.stderr.write(`tovictl: unexpected argument "${asLine(unknown)}": see \`tovictl test --help\`\n`);
        return EXIT.usage;
    }
    if (options.includes('--help') || options.includes('-h')) {
        await print(USAGE);
        return EXIT.ok;
    }

    const context = {
        env: process.env,
        home: os.homedir(),
        system: '/',
        program,
        run,
        bridge: BridgeClient.open().then((client) => ({ client }), (error) => ({ error })),
    };
    const checks = [...desktopChecks.checks, ...bridgeChecks.checks, ...soundChecks.checks];
    const results = await Promise.all(checks.map((check) => perform(check, context)));
    // After the others, which a busy model could delay.
    if (options.includes('--chat'))
        results.push(await perform(bridgeChecks.chatCheck, context));

    const rows = results.filter(Boolean);
    const faults = rows.filter(({ essential, state }) => essential && state !== 'ok');
    await print(options.includes('--json')
        ? `${JSON.stringify({ ok: faults.length === 0, checks: rows }, null, 2)}\n`
        : `${lines(rows)}\n${conclusion(faults)}`);
    return faults.length ? EXIT.missing : EXIT.ok;
}

main(process.argv.slice(2)).then((status) => process.exit(status));
