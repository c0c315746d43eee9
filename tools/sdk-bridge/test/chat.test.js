// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { startBridge } = require('./support/child');
const { test } = require('./support/timed');

// So long that no pause ends during a test.
const FOREVER = { LOOMRA_DEMO_DELAY_MS: '60000' };

const running = (client) => client.until(({ type }) => type === 'event');

test('a reply carries session and usage', async (t) => {
    const client = await (await startBridge(t)).connect();
    const reply = await client.request('chat', { message: 'plain', agent: 'auto', inputMode: 'text' });
    const { sessionId } = reply.payload;
    assert.deepEqual(reply, {
        type: 'response',
        id: reply.id,
        method: 'chat',
        payload: { response: 'This is a plain answer.', sessionId, usage: { inputTokens: 2, outputTokens: 6 } },
    });
    assert.equal((await client.chat('usage')).usage.inputTokens, 31000);
    assert.deepEqual((await client.chat('free of charge')).usage, { inputTokens: 0, outputTokens: 0 });
});

test('what fits no scenario is repeated', async (t) => {
    const client = await (await startBridge(t)).connect();
    for (const prompt of ['hello there', 'plainly spoken', 'tool-tag', 'a plain word', '😀', '"help"', '-'])
        assert.ok((await client.chat(prompt)).response.startsWith(`You said: ${prompt}\n\n`), prompt);
    assert.equal((await client.request('chat', { message: ' \n ' })).error.code, 'INVALID_PARAMS');
});

test('phrases are found in any case, with any whitespace, the longest first', async (t) => {
    const client = await (await startBridge(t)).connect();
    for (const prompt of ['PLAIN', '  plain, please', 'Plain!', 'plain'])
        assert.equal((await client.chat(prompt)).response, 'This is a plain answer.', prompt);
    assert.match((await client.chat('Tool \n TAG now')).response, /^This is lost\. \[TOOL: kde_launch_app\]/);
    assert.match((await client.chat('tool')).response, /^The setting reads/);
    assert.match((await client.chat('LIST MY open windows')).response, /window/);
});

test('the answers of several prompts find their requests', async (t) => {
    const client = await (await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '20' })).connect();
    const slow = client.post('chat', { message: 'slow' });
    const plain = client.post('chat', { message: 'plain' });
    assert.equal((await client.reply(plain)).payload.response, 'This is a plain answer.');
    assert.equal((await client.reply(slow)).payload.response, 'Done, and all that in good time.');
    assert.notEqual((await client.reply(plain)).payload.sessionId, (await client.reply(slow)).payload.sessionId);
});

test('a cancel stops what runs, without further events', async (t) => {
    const client = await (await startBridge(t, FOREVER)).connect();
    const slow = client.post('chat', { message: 'slow' });
    await running(client);
    const reply = await client.request('cancel');
    assert.deepEqual(reply.payload, { ok: true, cancelled: 1 });
    assert.deepEqual((await client.reply(slow)).error, { message: 'The request was cancelled', code: 'CANCELLED' });
    await client.result('ping');
    assert.deepEqual(client.events, [{ event: 'agent.routed', agent: 'planner' }]);
    assert.deepEqual(await client.result('cancel'), { ok: true, cancelled: 0 });
});

test('a cancel that names a session leaves other sessions running', async (t) => {
    const client = await (await startBridge(t, FOREVER)).connect();
    const [a, b] = [await client.result('createSession'), await client.result('createSession')];
    const inA = client.post('chat', { message: 'slow', ...a });
    const inB = client.post('chat', { message: 'plain', ...b });
    const unnamed = client.post('chat', { message: 'plain' });

    // The client can't know yet which session the unnamed one belongs to.
    assert.equal((await client.result('cancel', a)).cancelled, 2);
    assert.equal((await client.reply(inA)).error.code, 'CANCELLED');
    assert.equal((await client.reply(unnamed)).error.code, 'CANCELLED');
    assert.equal((await client.result('cancel', a)).cancelled, 0);
    assert.equal((await client.result('cancel', { sessionId: 'unknown' })).cancelled, 0);
    assert.equal((await client.result('cancel', { sessionId: '' })).cancelled, 1);
    assert.equal((await client.reply(inB)).error.code, 'CANCELLED');
});

test('a cancel doesn\'t reach over to another connection', async (t) => {
    const bridge = await startBridge(t, FOREVER);
    const [client, other] = [await bridge.connect(), await bridge.connect()];
    client.post('chat', { message: 'slow' });
    await running(client);
    assert.equal((await other.result('cancel')).cancelled, 0);
    assert.equal((await client.result('cancel')).cancelled, 1);
});

test('events go to the client that asked, and to no other', async (t) => {
    const bridge = await startBridge(t);
    const [client, other] = [await bridge.connect(), await bridge.connect()];
    await client.chat('plan');
    await other.result('ping');
    assert.ok(client.events.length > 0);
    assert.deepEqual(other.events, []);
});

test('the late answer comes after the cancel', async (t) => {
    const client = await (await startBridge(t, { LOOMRA_DEMO_DELAY_MS: '200' })).connect();
    const late = client.post('chat', { message: 'late' });
    const cancel = client.post('cancel');
    assert.equal((await client.reply(cancel)).payload.cancelled, 1);
    assert.match((await client.reply(late)).payload.response, /^This answer comes late/);
    assert.deepEqual(client.messages.slice(1).map(({ id }) => id), [cancel, late]);
});

test('the late answer arrives if nobody cancels', async (t) => {
    const client = await (await startBridge(t)).connect();
    assert.match((await client.chat('late')).response, /^This answer comes late/);
});

const REPHRASE = 'You are a text-only assistant. Do NOT execute any actions or tools. Rephrase the following ' +
    'voice-transcribed command into a clear, concise instruction. Return ONLY the rephrased sentence, nothing else. ' +
    'If it is already clear, return it unchanged.\n\n"%1"';

test('a transcript is rewritten in its session and leaves no trace there', async (t) => {
    const client = await (await startBridge(t)).connect();
    const rewrite = (text, more) => client.chat(REPHRASE.replace('%1', text), { agent: 'chat', ...more });
    const { sessionId } = await client.chat('plain');
    const reply = await rewrite('um slow the the music down', { sessionId });
    assert.equal(reply.response, 'Slow the music down.');
    assert.equal(reply.sessionId, sessionId);
    assert.ok(reply.usage.inputTokens > 50 && reply.usage.outputTokens > 0);
    assert.equal((await client.result('loadMessages', { sessionId })).messages.length, 2);
    assert.deepEqual(client.events, []);

    // Without a session it starts one, because the client continues with the one in the reply.
    const other = await rewrite('open it');
    assert.notEqual(other.sessionId, sessionId);
    assert.equal((await client.chat('light', { sessionId: other.sessionId })).sessionId, other.sessionId);
});

test('a widget\'s action is answered like a prompt', async (t) => {
    const client = await (await startBridge(t)).connect();
    const { sessionId } = await client.chat('options');
    const chosen = await client.result('handleStructuredUiAction', { actionType: 'option_selected', data: {}, sessionId });
    assert.equal(chosen.sessionId, sessionId);
    assert.match(chosen.response, /^Your choice has arrived/);
    assert.ok(chosen.usage.outputTokens > 0);
    const roles = (await client.result('loadMessages', { sessionId })).messages.map(({ role }) => role);
    assert.deepEqual(roles, ['user', 'assistant', 'assistant']);

    const slid = await client.result('handleStructuredUiAction', { actionType: 'slider_submitted', data: { value: 5 } });
    assert.match(slid.response, /^The value has arrived[^]*"value": 5/);
    const odd = await client.result('handleStructuredUiAction', { actionType: '__proto__', data: {} });
    assert.equal(odd.response, 'The action “__proto__” has arrived.');
});

test('an action can be cancelled', async (t) => {
    const client = await (await startBridge(t, FOREVER)).connect();
    const action = client.post('handleStructuredUiAction', { actionType: 'option_selected', data: {} });
    assert.equal((await client.result('cancel')).cancelled, 1);
    assert.equal((await client.reply(action)).error.code, 'CANCELLED');
});
