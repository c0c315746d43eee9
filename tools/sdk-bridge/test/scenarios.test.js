// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');
const { after, before } = require('node:test');

const { GROUPS, choose, wanted } = require('../lib/scenarios');
const { Child, startBridge, temporaryFolder } = require('./support/child');
const { StandIns } = require('./support/standins');
const { processorMs } = require('./support/processorTime');
const { test } = require('./support/timed');

const scenarios = GROUPS.flatMap((group) => group.scenarios);
const names = scenarios.map(({ phrases }) => phrases[0]);

let bridge;
before(async () => {
    bridge = await new Child({ LOOMRA_BRIDGE_PORT: '0', LOOMRA_DEMO_DELAY_MS: '0' }).listening();
});
after(() => bridge.stop());

//! Sends a prompt on a new connection; resolves to its reply and the other frames.
async function ask(prompt) {
    const client = await bridge.connect();
    const id = client.post('chat', { message: prompt });
    const reply = await client.reply(id);
    return { client, id, reply, payload: reply.payload, events: client.events };
}

const event = (name, fields) => ({ event: name, ...fields });
const step = (index, total, capabilityId) => event('plan.step', { index, total, capabilityId, phase: 'executing' });
const executing = event('plan.phase', { phase: 'executing' });
const creating = event('plan.phase', { phase: 'creating' });
const planned = [step(0, 3, 'theme.apply'), step(1, 3, 'panel.opacity.set'), step(2, 3, 'kde.notify')];

test('a long run of spaces in a prompt is no problem', () => {
    assert.ok(processorMs(() => assert.equal(wanted(`demo a${' '.repeat(1000000)}b`), null)) < 1000);
    assert.deepEqual([' demo ', 'DEMO\nplain \n', 'demo plain', 'demonstrate', 'demo of cars'].map(wanted),
        ['help', 'plain', 'plain', null, null]);
});

test('every phrase stands for one scenario, in every case', () => {
    const phrases = scenarios.flatMap((scenario) => scenario.phrases.map((phrase) => [phrase, scenario]));
    assert.equal(new Set(phrases.map(([phrase]) => phrase.toLowerCase())).size, phrases.length);
    for (const [phrase, scenario] of phrases) {
        assert.equal(choose(phrase).scenario, scenario, phrase);
        assert.equal(choose(`${phrase.toUpperCase()} AND More`).scenario, scenario, phrase);
        assert.equal(choose(`${phrase} and More`).rest, 'and More');
    }
});

test('help and the README list every scenario', async () => {
    const { response, followUps } = (await ask('Help!')).payload;
    const readme = fs.readFileSync(path.join(__dirname, '..', 'README.md'), 'utf8');
    for (const { phrases: [name], about } of scenarios) {
        assert.ok(response.includes(`\n- \`${name}\`: ${about}`), name);
        assert.ok(readme.includes(`\`${name}\``), `${name} is missing in the README`);
    }
    for (const { prompt } of followUps)
        assert.ok(names.includes(prompt.replace(/^demo /, '')), prompt);
});

test('every scenario answers, but those that are meant not to', async () => {
    const unanswered = ['silence', 'hang up'];
    const failing = ['error', 'error notice', 'error code', 'silent error', 'old error', 'late error', 'hostile error'];
    const wordless = ['empty', 'odd result'];
    const older = ['old form', 'old error'];
    for (const name of names.filter((each) => !unanswered.includes(each))) {
        const { reply } = await ask(name);
        assert.equal('error' in reply, failing.includes(name), name);
        assert.equal('type' in reply, !older.includes(name), name);
        const { response } = reply.payload ?? reply.result ?? {};
        assert.equal(Boolean(response), !failing.includes(name) && !wordless.includes(name), name);
    }
});

test('only the scenarios that mean to change the theme or speak of tools use their words', async () => {
    const markup = /<invoke |<tool_call|<\/tool_call>|<\/function>|minimax:tool_call|<function_call>|<function=/;
    for (const name of names.filter((each) => !['silence', 'hang up'].includes(each))) {
        const { reply } = await ask(name);
        const response = String((reply.payload ?? reply.result ?? {}).response ?? '');
        const lower = response.toLowerCase();
        const theme = lower.includes('applied') && ['dark', 'light'].find((word) => lower.includes(word));
        assert.equal(theme || undefined, ['dark', 'light'].includes(name) ? name : undefined, name);
        assert.equal(markup.test(response), name.endsWith('tool markup'), name);
        assert.equal(/\[TOOL: /.test(response), name.endsWith('tool tag') || name === 'hostile events', name);
    }
});

const EVENTS = [
    ['slow', [event('agent.routed', { agent: 'planner' }), creating, executing, ...planned]],
    ['plan', [event('agent.routed', { agent: 'planner' }), creating, executing, ...planned]],
    ['one step', [event('agent.routed', { agent: 'system-settings-agent' }), executing, step(0, 1, 'garden.water_plants')]],
    ['phase', [event('plan.phase', { phase: 'pondering' })]],
    ['phase Looking Around', [event('plan.phase', { phase: 'Looking Around' })]],
    ['route', [event('agent.routed', { agent: 'desktop-diagnosis-agent' })]],
    ['route plasma-panel', [event('agent.routed', { agent: 'plasma-panel' })]],
    ['launch', [event('tool.executed', { tool: 'kde_launch_app', result: 'ok' })]],
    ['volume', [event('tool.executed', { tool: 'kde-set-volume', result: 'ok' })]],
    ['tool', [event('tool.executed', { tool: 'settings_read', result: 'ok' })]],
    ['Open related system settings', [event('tool.executed', { tool: 'kde_launch_app', result: 'ok' })]],
    ['Focus the most recently used window', [event('agent.routed', { agent: 'kde-desktop-agent' })]],
    ['late error', [event('agent.routed', { agent: 'planner' }), executing, step(1, 3, 'power.profile.set')]],
    ['plain', []],
];

for (const [prompt, wanted] of EVENTS)
    test(`the events of "${prompt}"`, async () => assert.deepEqual((await ask(prompt)).events, wanted));

test('"all events" has every kind', async () => {
    const kinds = new Set((await ask('all events')).events.map((payload) => payload.event));
    assert.deepEqual([...kinds].sort(),
        ['agent.routed', 'plan.phase', 'plan.step', 'ready', 'tool.executed', 'weather.changed']);
});

test('each block type has its scenario', async () => {
    for (const type of ['text', 'list', 'table', 'options', 'slider', 'code', 'callout']) {
        const { ui, response } = (await ask(type)).payload;
        assert.deepEqual(ui.blocks.map((block) => block.type), [type]);
        assert.ok(response);
    }
    const all = (await ask('blocks')).payload.ui.blocks.map((block) => block.type);
    assert.deepEqual(all, ['text', 'list', 'table', 'options', 'slider', 'code', 'callout']);
    assert.deepEqual((await ask('callouts')).payload.ui.blocks.map(({ variant }) => variant), ['info', 'warning', 'tip']);
    assert.equal((await ask('big table')).payload.ui.blocks[0].rows.length, 60);
});

test('markdown shows every form', async () => {
    const { response } = (await ask('markdown')).payload;
    const forms = [/^# /m, /^## /m, /^### /m, /\*\*\w+\*\*/, /\s\*\w+\*/, /_\w+ \w+_/, /`\w+`/, /^- /m, /^\* /m, /^\+ /m,
        /^1\. /m, /^2\) /m, /^> .*\n> /m, /^---$/m, /^```\n[^]*\n```$/m, /</, />/, /&/];
    for (const form of forms)
        assert.match(response, form);
    assert.equal((await ask('unfinished')).payload.response.split('```').length, 2);
});

test('percentages stand on both sides of each limit', async () => {
    const { response } = (await ask('percentages')).payload;
    for (const figure of ['20%', '20.5%', '50%', '51%', '**75%**'])
        assert.ok(response.includes(figure), figure);
});

test('a long answer is long, in words too', async () => {
    const { response } = (await ask('long')).payload;
    assert.ok(response.length > 20000);
    assert.ok(Math.max(...response.split(/\s/).map((word) => word.length)) >= 300);
});

test('suggestions come beside an answer or within its document', async () => {
    assert.equal((await ask('followUps')).payload.followUps.length, 4);
    assert.equal((await ask('follow ups')).payload.ui, undefined);
    const own = (await ask('own follow ups')).payload;
    assert.equal(own.ui.followUps[0].title, 'Inner');
    assert.equal(own.followUps[0].title, 'Outer');
    assert.ok(!Array.isArray((await ask('odd follow ups')).payload.followUps));
});

test('failures have their forms', async () => {
    const table = {
        error: { type: 'response', method: 'chat', payload: null,
            error: { message: 'The bridge failed as you asked', code: 'DEMO' } },
        'error notice': { type: 'error', error: { message: 'The bridge failed with a notice', code: 'DEMO' } },
        'error code': { type: 'error', error: { message: '', code: 'E_DEMO_ONLY_A_CODE' } },
        'silent error': { type: 'error', error: { message: '', code: '' } },
        'old error': { error: 'The bridge failed the old way' },
    };
    for (const [name, wanted] of Object.entries(table)) {
        const { id, reply } = await ask(name);
        assert.deepEqual(reply, { id, ...wanted });
    }
});

test('odd answers', async () => {
    assert.equal((await ask('empty')).payload.response, '');
    assert.equal((await ask('odd result')).payload, 'just a string');
    const { id, reply } = await ask('old form');
    assert.deepEqual(Object.keys(reply), ['id', 'result']);
    assert.equal(reply.id, id);
    assert.ok(reply.result.sessionId && reply.result.usage);
});

test('noise stands before the answer', async () => {
    const { client, payload } = await ask('noise');
    assert.ok(client.frames.includes('this is not JSON'));
    assert.ok(client.frames.length > 8);
    assert.equal(payload.response, 'This answer came through the noise.');
});

test('"twice" answers two times', async () => {
    const { client, id } = await ask('twice');
    await client.result('ping');
    assert.equal(client.messages.filter((message) => message.id === id).length, 2);
});

test('"silence" never answers', async () => {
    const client = await bridge.connect();
    const id = client.post('chat', { message: 'silence' });
    // A reply would arrive before that of a later prompt with the same pace.
    await client.chat('plain');
    await client.chat('plain');
    assert.ok(!client.messages.some((message) => message.id === id));
});

test('"hang up" cuts the connection', async () => {
    const client = await bridge.connect();
    client.post('chat', { message: 'hang up' });
    assert.equal(await client.closed, 1006);
    assert.equal((await ask('plain')).payload.response, 'This is a plain answer.');
});

test('"request" shows what was sent', async () => {
    const client = await bridge.connect();
    const { response } = await client.chat('request', { agent: 'auto', inputMode: 'voice', model: 'demo/small' });
    assert.match(response, /Request 1 came with/);
    assert.match(response, /"agent": "auto"[^]*"inputMode": "voice"[^]*"model": "demo\/small"/);
});

test('hostile words point where the prompt says, and nowhere else', async () => {
    for (const name of ['hostile', 'hostile events', 'hostile blocks', 'hostile error']) {
        for (const [added, wanted] of [
            ['', 'http://127.0.0.1:9/pixel.png'],
            [' http://127.0.0.1:4242/Pixel.png', 'http://127.0.0.1:4242/Pixel.png'],
            [' file:///etc/passwd', 'http://127.0.0.1:9/pixel.png'],
        ]) {
            const { client } = await ask(`${name}${added}`);
            const sent = client.frames.join('\n').replace(/\\"/g, '"');
            assert.ok(sent.includes(`<img src="${wanted}">`), `${name}${added}`);
            assert.deepEqual([...new Set(sent.match(/https?:\/\/[^"\s)]+/g))], [wanted]);
        }
    }
});

test('prompts for reports are answered from the real ones', async (t) => {
    assert.deepEqual(scenarios.filter(({ real }) => real).map(({ phrases }) => phrases[0]),
        ['help', 'Show my current system status', 'Show top processes by CPU and memory', 'List my open windows']);
    const standIns = new StandIns(temporaryFolder(t));
    standIns.add('xprop', `case "$*" in
        "-root "*) echo "_NET_CLIENT_LIST(WINDOW): window id # 0x1";;
        *) echo '_NET_WM_NAME(UTF8_STRING) = "A <b>window</b>"';;
    esac`);
    const environment = { PATH: standIns.folder, DISPLAY: ':0', WAYLAND_DISPLAY: '' };
    const client = await (await startBridge(t, environment)).connect();

    const windows = await client.chat('List my open windows');
    assert.equal(windows.response, '1 window open.');
    assert.deepEqual(windows.ui.blocks, [{ type: 'list', title: 'Open windows', items: ['A <b>window</b>'] }]);
    const status = await client.chat('Show my current system status');
    assert.match(status.response, /^- Memory: [\d.]+% of [\d.]+ GB$/m);
    assert.equal(status.followUps.length, 1);
    const { ui: { blocks } } = await client.chat('Show top processes by CPU and memory');
    assert.deepEqual(blocks.map(({ type }) => type), ['text', 'table', 'text', 'table']);
    assert.ok(blocks[1].rows.length > 0);

    const other = await (await startBridge(t, { ...environment, DISPLAY: '' })).connect();
    assert.match((await other.chat('List my open windows')).response, /^The list of your windows is unavailable/);
});

test('a prompt for a report can be cancelled', async (t) => {
    const standIns = new StandIns(temporaryFolder(t)).hanging('xprop');
    const client = await (await startBridge(t, { PATH: standIns.folder, DISPLAY: ':0' })).connect();
    const id = client.post('chat', { message: 'List my open windows' });
    await standIns.pids();
    const report = client.post('getDesktopState');
    await client.result('cancel');
    assert.equal((await client.reply(id)).error.code, 'CANCELLED');
    assert.ok(!client.messages.some((message) => message.id === report), 'the program still runs');
});

test('the window\'s own suggestions look back', async (t) => {
    const client = await (await startBridge(t)).connect();
    const begin = await client.chat('Tell me more about that');
    assert.match(begin.response, /^There is nothing to look back at yet/);
    for (const prompt of ['Run that again', 'Summarize that in one short paragraph'])
        assert.match((await client.chat(prompt)).response, /^There is nothing to look back at yet/);

    const { sessionId } = await client.chat('Dark');
    const ask = async (prompt) => (await client.chat(prompt, { sessionId })).response;
    assert.equal(await ask('Tell me more about that'), 'There is more to say about this:\n\nDark theme applied.');
    await ask('plain. Not this sentence.');
    assert.equal(await ask('Summarize that in one short paragraph'), 'In short: This is a plain answer.');
    await ask('plan');
    for (const prompt of ['Run that again', 'run  THAT\nagain', 'Run that again'])
        assert.match(await ask(prompt), /^Three steps done/, prompt);
});
