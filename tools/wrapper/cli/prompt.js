// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// prompt.js --prompt [TEXT] [OPTIONS]: sends one prompt to the bridge and prints the reply. Called by the wrapper.

const { BridgeClient, chat, waysToStart } = require('./bridgeClient');
const { asLine, forTerminal } = require('./text');

const EXIT = { ok: 0, failed: 1, usage: 2, unreachable: 3, timeout: 124 };
const SIGNALS = { SIGHUP: 129, SIGINT: 130, SIGTERM: 143 };
const CANCEL_TIMEOUT_MS = 1000;
const MAX_PROMPT_BYTES = 4 * 1024 * 1024;
const MAX_TIMEOUT_S = 86400;

const USAGE = `Usage: tovictl --prompt TEXT [OPTIONS]
       tovictl --prompt=TEXT [OPTIONS]
       COMMAND | tovictl --prompt [OPTIONS]

Sends one prompt to the running bridge and prints the reply on standard output.
If TEXT is "-", or is missing and standard input is no terminal, the prompt is
read from standard input. Each prompt begins a new conversation.

Options, behind --prompt (or -p):
  -m, --model MODEL    The model, as \`tovictl models\` lists it.
  --timeout SECONDS    Give up after this time. By default there is no limit.
  -h, --help           Show this message and exit.

Exit status:
  0    the reply was printed
  1    the bridge or the model failed, or the reply could not be written
  2    wrong arguments, or an empty prompt
  3    no bridge answers on port 8765
  124  the time of --timeout is over
  127  node is missing
  130  stopped with Ctrl+C (129, 143: by SIGHUP, SIGTERM)
`;

class UsageError extends Error {}

const OPTION = /^(?:-m|-h|--help|--|--(?:model|timeout)(?:=.*)?)$/s;

//! Parses the arguments from "--prompt" on. `text` is undefined if there is none.
function parse([first, ...rest]) {
    const options = { text: undefined, model: '', timeoutMs: 0, wantsHelp: false };
    if (first.startsWith('--prompt='))
        options.text = first.slice('--prompt='.length);
    else if (rest.length && !OPTION.test(rest[0]))
        options.text = rest.shift();

    while (rest.length) {
        const argument = rest.shift();
        const [, name, attached] = /^(--(?:model|timeout))=(.*)$/s.exec(argument) ?? [null, argument];
        const value = () => attached ?? rest.shift() ?? '';
        if (name === '-m' || name === '--model') {
            options.model = value().trim();
            if (!options.model)
                throw new UsageError(`${name} needs the name of a model`);
        } else if (name === '--timeout') {
            const text = value();
            const seconds = /^\d{1,5}(?:\.\d{1,3})?$/.test(text) ? Number(text) : 0;
            if (!(seconds > 0 && seconds <= MAX_TIMEOUT_S))
                throw new UsageError(`--timeout needs a number of seconds, not "${text}"`);
            options.timeoutMs = seconds * 1000;
        } else if (name === '-h' || name === '--help') {
            options.wantsHelp = true;
        } else if (name === '--' && rest.length === 1 && options.text === undefined) {
            options.text = rest.shift();
        } else {
            throw new UsageError(`unexpected argument "${argument}": put the prompt in quotes, and options behind it`);
        }
    }
    return options;
}

//! Reads the prompt from standard input, without the line break at its end.
async function readInput() {
    const chunks = [];
    let size = 0;
    for await (const chunk of process.stdin) {
        chunks.push(chunk);
        size += chunk.length;
        if (size > MAX_PROMPT_BYTES)
            throw new UsageError(`the prompt is longer than ${MAX_PROMPT_BYTES / 1024 / 1024} MiB`);
    }
    return Buffer.concat(chunks).toString('utf8').replace(/\r?\n$/, '');
}

async function promptOf({ text }) {
    if (text === undefined && process.stdin.isTTY)
        throw new UsageError('no prompt: run `tovictl --prompt "TEXT"`, or send it through a pipe');
    const prompt = text === undefined || text === '-' ? await readInput() : text;
    if (!prompt.trim())
        throw new UsageError('the prompt is empty');
    return prompt;
}

//! Writes to standard output and waits until it is written. A reader that has closed its end has read enough.
function print(text) {
    return new Promise((resolve, reject) => {
        const done = (error) => (error && error.code !== 'EPIPE' ? reject(error) : resolve());
        process.stdout.once('error', done);
        process.stdout.write(text, done);
    });
}

function complain(...lines) {
    process.stderr.write(lines.map((line) => `tovictl: ${asLine(line)}\n`).join(''));
}

//! Resolves when a signal or the timeout ends the prompt. A second signal ends the process at once.
function untilStopped(timeoutMs) {
    return new Promise((resolve) => {
        let isStopped = false;
        for (const [signal, status] of Object.entries(SIGNALS)) {
            process.on(signal, () => {
                if (isStopped)
                    process.exit(status);
                isStopped = true;
                resolve({ isStopped, status });
            });
        }
        if (timeoutMs) {
            setTimeout(() => {
                complain(`no reply in ${timeoutMs / 1000} s`);
                resolve({ isStopped: true, status: EXIT.timeout });
            }, timeoutMs);
        }
    });
}

//! Sends the prompt and prints the reply. `connected(client)` is called in between.
async function ask(options, connected) {
    const prompt = await promptOf(options);
    const client = await BridgeClient.open();
    connected(client);
    const { text } = await chat(client, prompt, { model: options.model });
    const shown = process.stdout.isTTY ? forTerminal(text) : text;
    await print(shown.endsWith('\n') ? shown : `${shown}\n`);
    return { status: EXIT.ok };
}

//! Reports an error; returns the exit status.
function report(error) {
    if (error instanceof UsageError) {
        complain(error.message, 'see `tovictl --prompt --help`');
        return EXIT.usage;
    }
    if (error.isUnreachable) {
        complain(error.message, ...waysToStart().map((way, n) => `${n ? 'or' : 'start it with'}: ${way}`));
        return EXIT.unreachable;
    }
    complain(error.code === 'ENOSPC' ? 'the reply could not be written: no space left' : error.message);
    return EXIT.failed;
}

async function main() {
    process.stderr.on('error', () => {}); // nobody reads it
    const options = parse(process.argv.slice(2));
    if (options.wantsHelp) {
        await print(USAGE);
        return EXIT.ok;
    }
    let client = null;
    const first = await Promise.race([
        ask(options, (opened) => { client = opened; }),
        untilStopped(options.timeoutMs),
    ]);
    if (first.isStopped)
        await client?.cancel(CANCEL_TIMEOUT_MS);
    return first.status;
}

if (require.main === module)
    main().catch(report).then((status) => process.exit(status));

module.exports = { UsageError, parse };
