// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const fs = require('fs');
const path = require('path');

const { MAX_SEARCH_MS } = require('../lib/model/servers');
const { startBridge, temporaryFolder } = require('./support/child');
const { ModelServer, OPENING, json } = require('./support/modelServer');
const { test } = require('./support/timed');

const REPHRASE = 'You are a text-only assistant. Do NOT execute any actions or tools. Rephrase the following ' +
    'voice-transcribed command into a clear, concise instruction. Return ONLY the rephrased sentence, nothing else. If it is ' +
    'already clear, return it unchanged.\n\n"um open the the window"';

//! A bridge with a scripted model server, and a client.
async function start(t, { reply, models, ...env } = {}) {
    const model = await ModelServer.start(t, { reply, ...(models && { models }) });
    const bridge = await startBridge(t, { ...model.env, ...env });
    await bridge.complains(/^Prompts go to /m); // or a busy machine might be slower than a prompt
    return { model, bridge, client: await bridge.connect() };
}

const roles = ({ body }) => body.messages.map(({ role }) => role);
const texts = ({ body }) => body.messages.slice(1).map(({ content }) => content);
const phases = ({ events }) => events.filter(({ event }) => event === 'plan.phase').map(({ phase }) => phase);

test('a conversation goes on with its history', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer(`Reply ${model.exchanges.length}`) });
    const first = await client.chat('One');
    assert.equal(first.response, 'Reply 1');
    assert.deepEqual(first.usage, { inputTokens: 20, outputTokens: 3 });
    assert.deepEqual(roles(model.exchanges[0]), ['system', 'user']);
    assert.match(model.exchanges[0].body.messages[0].content, /Tovi/);

    const { sessionId } = first;
    assert.equal((await client.chat('Two', { sessionId })).sessionId, sessionId);
    assert.deepEqual(texts(model.exchanges[1]), ['One', 'Reply 1', 'Two']);
    // Another session has a history of its own.
    await client.chat('Three');
    assert.deepEqual(texts(model.exchanges[2]), ['Three']);
    assert.deepEqual((await client.result('loadMessages', { sessionId })).messages.map(({ role, content }) => [role, content]),
        [['user', 'One'], ['assistant', 'Reply 1'], ['user', 'Two'], ['assistant', 'Reply 2']]);
});

test('the history is cut to the context of the server', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('x'.repeat(1500)) });
    let sessionId;
    for (let n = 0; n < 6; ++n)
        ({ sessionId } = await client.chat(`Prompt ${n} ${'y'.repeat(600)}`, { sessionId }));
    const sent = texts(model.exchanges.at(-1));
    assert.match(sent.at(-1), /^Prompt 5 /);
    assert.ok(sent.length > 1 && sent.length < 11, String(sent.length));
    assert.match(sent[0], /^Prompt/);
});

test('the size of the context can be set', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('x'.repeat(1500)), LOOMRA_MODEL_CONTEXT: '300' });
    const { sessionId } = await client.chat('One');
    await client.chat('Two', { sessionId });
    assert.deepEqual(texts(model.exchanges[1]), ['Two']);
});

test('a prompt that the server finds too long is sent again with less history', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('Yes.') });
    let sessionId;
    for (const prompt of ['One', 'Two', 'Three'])
        ({ sessionId } = await client.chat(prompt, { sessionId }));
    model.reply = (exchange) => (texts(exchange).length > 1
        ? exchange.fail(400, { error: { type: 'exceed_context_size_error', message: 'too long' } }) : exchange.answer('At last.'));
    assert.equal((await client.chat('Four', { sessionId })).response, 'At last.');
    assert.deepEqual(texts(model.exchanges.at(-1)), ['Four']);
    assert.ok(model.exchanges.length <= 6, String(model.exchanges.length));
});

test('what the model is doing is shown', async (t) => {
    const { model, client } = await start(t);
    const id = client.post('chat', { message: 'Hello' });
    const exchange = await model.next();
    assert.equal(exchange.body.return_progress, true);
    const shown = (phase) => client.until(({ payload }) => payload?.phase === phase);
    await shown('Reading…');
    await exchange.send({ ...OPENING, prompt_progress: { total: 200, processed: 0 } });
    await exchange.send({ ...OPENING, prompt_progress: { total: 200, processed: 91 } });
    await shown('Reading… 45%');
    await exchange.write('<think>Hm');
    await shown('Thinking…');
    await exchange.write('</think>', 'Good', ' day');
    await shown('Writing…');
    await exchange.finish();
    await client.reply(id);
    assert.deepEqual(phases(client), ['Reading…', 'Reading… 45%', 'Thinking…', 'Writing…', '']);
});

test('a stopped prompt ends at the server, and stays in the conversation', async (t) => {
    const { model, client } = await start(t);
    model.reply = (each) => each.answer('Reply');
    const { sessionId } = await client.chat('One');
    model.reply = null;
    for (const begun of [false, true]) {
        const id = client.post('chat', { message: 'Stop me', sessionId });
        const exchange = await model.next();
        if (begun)
            await exchange.write('Never', ' mind');
        await client.result('cancel', { sessionId });
        await exchange.closed;
        assert.deepEqual((await client.reply(id)).error, { message: 'The request was cancelled', code: 'CANCELLED' });
    }
    model.reply = (each) => each.answer('Reply');
    await client.chat('Two', { sessionId });
    assert.deepEqual(texts(model.exchanges.at(-1)), ['One', 'Reply', 'Stop me\n\nStop me\n\nTwo']);
});

test('a client that leaves ends its prompt at the server', async (t) => {
    const { model, client } = await start(t);
    client.post('chat', { message: 'Hello' });
    const exchange = await model.next();
    await exchange.write('Good');
    client.socket.terminate();
    await exchange.closed;
});

test('the model is the one that the client names, by default the first', async (t) => {
    const { model, client } = await start(t, {
        models: { data: [{ id: 'first' }, { id: 'org/second' }] },
        reply: (exchange) => exchange.answer('Yes.'),
    });
    for (const name of ['local/org/second', 'demo/small', '', undefined])
        await client.chat('Hello', { model: name });
    assert.deepEqual(model.exchanges.map(({ body }) => body.model), ['org/second', 'first', 'first', 'first']);
});

test('the models of the server are listed, instead of those of the demonstration', async (t) => {
    const { client } = await start(t);
    const { models } = await client.result('listModels');
    assert.deepEqual(models.map(({ fullId, displayName, free }) => [fullId, displayName, free]),
        [['local/tiny', 'tiny (7.6B, 4.7 GB)', true]]);
});

test('the check of the free providers measures the server', async (t) => {
    const { model, client } = await start(t, { models: { data: [{ id: 'good' }, { id: 'bad' }] } });
    model.reply = (exchange) => (exchange.body.model === 'good' ? exchange.answer('Hello!')
        : exchange.fail(500, { error: { message: 'out of memory' } }));
    const { results, recommended } = await client.result('checkFreeProviders');
    assert.deepEqual(results.map(({ responseMs, ...row }) => row), [
        { model: 'local/good', displayName: 'good', ok: true, response: 'Hello!', error: '' },
        { model: 'local/bad', displayName: 'bad', ok: false, response: '',
            error: `The model server at ${model.shown} failed: out of memory` },
    ]);
    assert.ok(results[0].responseMs > 0 && results[1].responseMs === 0);
    assert.deepEqual(recommended, results[0]);
    assert.equal(model.exchanges[0].body.max_tokens, 8);
});

test('the check of the free providers is limited', async (t) => {
    const data = Array.from({ length: 15 }, (_, n) => ({ id: `model-${n}` }));
    const { client } = await start(t, { models: { data }, reply: (exchange) => exchange.answer('x'.repeat(1000)) });
    const { results } = await client.result('checkFreeProviders');
    assert.deepEqual([results.length, results[9].response.length], [10, 201]);
});

test('the bridge ends at once while it looks for a server', async (t) => {
    const { model, bridge, client } = await start(t);
    model.models = () => {}; // never answers
    model.reply = (exchange) => exchange.cut();
    await client.request('chat', { message: 'Lost' });
    const visits = model.visits.length;
    client.post('chat', { message: 'One' });
    while (model.visits.length === visits)
        await new Promise((resolve) => setImmediate(resolve));
    const began = performance.now();
    assert.deepEqual(await bridge.stop(), { code: 0, signal: null });
    assert.ok(performance.now() - began < MAX_SEARCH_MS);
});

test('a transcript is rephrased without history, and is no part of the conversation', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('Open the window.') });
    const { sessionId } = await client.chat('One');
    const { response, usage } = await client.chat(REPHRASE, { agent: 'chat', sessionId });
    assert.equal(response, 'Open the window.');
    assert.deepEqual(usage, { inputTokens: 20, outputTokens: 3 });
    assert.deepEqual(model.exchanges[1].body.messages, [{ role: 'user', content: REPHRASE }]);
    assert.equal((await client.result('loadMessages', { sessionId })).messages.length, 2);
    assert.deepEqual(phases(client), ['Reading…', 'Writing…', '']);
});

test('a transcript is rephrased by rules if the model fails', async (t) => {
    const { model, client, bridge } = await start(t, { reply: (exchange) => exchange.fail(500, {}) });
    assert.equal((await client.chat(REPHRASE, { agent: 'chat' })).response, 'Open the window.');
    await model.stop();
    assert.equal((await client.chat(REPHRASE, { agent: 'chat' })).response, 'Open the window.');
    const { entries } = await client.result('getAppLogSummary');
    assert.deepEqual(entries.map(({ level, event }) => [level, event]), [['warn', 'rephrase.model'], ['warn', 'rephrase.model']]);
    assert.match(bridge.errors, /A transcript is rephrased by rules: "The model server at /);
    await model.listen();
});

test('a rephrasing can be stopped', async (t) => {
    const { model, client } = await start(t);
    const id = client.post('chat', { message: REPHRASE, agent: 'chat' });
    const exchange = await model.next();
    await client.result('cancel');
    await exchange.closed;
    assert.equal((await client.reply(id)).error.code, 'CANCELLED');
});

test('attached files are sent to the model', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('Yes.') });
    const message = '--- File: a.txt (path: /home/ann/a.txt) ---\n```\nsecret plan\n```\n\nUser question: What is this?';
    const { sessionId } = await client.chat(message);
    assert.equal(model.exchanges[0].prompt, message);
    assert.equal((await client.result('listSessions')).sessions[0].name, 'What is this?');
    await client.chat('And now?', { sessionId });
    assert.deepEqual(texts(model.exchanges[1]), [message, 'Yes.', 'And now?']);
});

test('the demonstration is still there, by its name', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('From the model.') });
    for (const [prompt, response] of [
        ['demo plain', 'This is a plain answer.'],
        [' DEMO   Plain ', 'This is a plain answer.'],
        ['plain', 'From the model.'],
        ['demo of what?', 'From the model.'],
        ['demonstrate', 'From the model.'],
        ['help me', 'From the model.'],
    ])
        assert.equal((await client.chat(prompt)).response, response, prompt);
    assert.equal(model.exchanges.length, 4);
    for (const prompt of ['help', ' Help! ', 'demo', 'demo help'])
        assert.match((await client.chat(prompt)).response, /- `markdown`: /, prompt);
    assert.equal(model.exchanges.length, 4);
});

test('help tells which model answers, or how to get one', async (t) => {
    const { model, client } = await start(t);
    const { response } = await client.chat('help');
    assert.ok(response.includes(`model server at ${model.shown}`), response);
    const alone = await (await startBridge(t)).connect();
    const { response: without } = await alone.chat('help');
    assert.match(without, /llama-server/);
    assert.match(without, /Ollama/);
    assert.match(without, /LOOMRA_MODEL_URL/);
});

test('without a model the demonstration answers', async (t) => {
    const client = await (await startBridge(t)).connect();
    assert.match((await client.chat('Hello')).response, /^You said: Hello\n/);
    assert.equal((await client.chat('demo plain')).response, 'This is a plain answer.');
    assert.match((await client.chat('demo of what?')).response, /^You said: demo of what\?/);
    assert.equal((await client.result('listModels')).models.length, 300);
});

test('a named server that does not answer is a fault, and no reason for a demonstration', async (t) => {
    const { model, client } = await start(t);
    await model.stop();
    const { error } = await client.request('chat', { message: 'plain' });
    assert.deepEqual(error, { message: `No model server answers at ${model.shown}. Start it, then send your prompt again.`,
        code: 'MODEL_UNREACHABLE' });
    assert.equal((await client.chat('demo plain')).response, 'This is a plain answer.');
    await model.listen();
    model.reply = (exchange) => exchange.answer('Back again.');
    assert.equal((await client.chat('plain')).response, 'Back again.');
});

test('the failed prompt is not forgotten', async (t) => {
    const { model, client } = await start(t);
    model.reply = (exchange) => exchange.answer('Yes.');
    const { sessionId } = await client.chat('One');
    model.reply = (exchange) => exchange.fail(500, {});
    await client.request('chat', { message: 'Two', sessionId });
    assert.deepEqual((await client.result('loadMessages', { sessionId })).messages.map(({ content }) => content),
        ['One', 'Yes.', 'Two']);
});

test('a choice in a widget is passed on if the client tells it', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('As you like.') });
    const { sessionId } = await client.chat('Offer me something');
    const act = (data) => client.result('handleStructuredUiAction', { actionType: 'option_selected', data, sessionId });
    assert.deepEqual((await act({})).response, 'I can’t see from here what you chose. Please type it.');
    assert.equal(model.exchanges.length, 1);
    assert.equal((await act({ id: 'tea' })).response, 'As you like.');
    assert.equal(model.exchanges[1].prompt, 'option_selected: {"id":"tea"}');
});

test('a server that does not know progress is not asked for it', async (t) => {
    const model = await ModelServer.start(t, { pages: {}, reply: (exchange) => exchange.answer('Yes.') });
    await (await (await startBridge(t, model.env)).connect()).chat('Hello');
    assert.ok(!('return_progress' in model.exchanges[0].body));
    assert.deepEqual(model.exchanges[0].body.stream_options, { include_usage: true });
});

test('without a report of the server the usage is estimated', async (t) => {
    const { client } = await start(t, {
        reply: ({ response }) => json(response, { choices: [{ finish_reason: 'stop', message: { content: 'x'.repeat(40) } }] }),
    });
    assert.deepEqual((await client.chat('y'.repeat(80))).usage, { inputTokens: 20, outputTokens: 10 });
});

test('many prompts at once are answered by their ids', async (t) => {
    const { client } = await start(t, { reply: (exchange) => exchange.answer(`To ${exchange.prompt}`) });
    const replies = await Promise.all(Array.from({ length: 50 }, (_, n) => client.chat(`prompt ${n}`)));
    replies.forEach(({ response }, n) => assert.equal(response, `To prompt ${n}`));
});

//! The names of the listed sessions.
const listed = async (client) => (await client.result('listSessions')).sessions.map(({ name }) => name);

test('a first prompt that the server failed to answer is listed, a stopped one is forgotten', async (t) => {
    const { model, client, bridge } = await start(t);
    const stopped = client.post('chat', { message: 'Stop me' });
    await model.next();
    await client.result('cancel');
    await client.reply(stopped);
    assert.deepEqual(await listed(client), []);

    model.reply = (exchange) => exchange.fail(500, {});
    await client.request('chat', { message: 'Fail' });
    await client.request('chat', { message: 'demo error' });
    await client.request('chat', { message: 'demo odd result' });
    assert.deepEqual(await listed(client), ['Fail']);

    // The client leaves: its prompt is found again at the next start.
    model.reply = null;
    const leaving = await bridge.connect();
    leaving.post('chat', { message: 'Lost' });
    const exchange = await model.next();
    leaving.socket.terminate();
    await exchange.closed;
    assert.deepEqual(await listed(client), ['Fail']);
    await bridge.stop();
    const again = await (await startBridge(t, { ...model.env, XDG_STATE_HOME: bridge.state })).connect();
    assert.deepEqual((await listed(again)).sort(), ['Fail', 'Lost']);
});

test('the model sees its own words again, and the user the reply', async (t) => {
    const raw = 'Look:\n\n```tovi-ui\n{"blocks":[{"type":"table","columns":["A","B"],"rows":[["x",1]]}]}\n```';
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer(raw) });
    const { response, ui, sessionId } = await client.chat('One');
    assert.deepEqual(ui.blocks.map(({ type }) => type), ['text', 'table']);
    assert.doesNotMatch(response, /tovi-ui/);
    await client.chat('Two', { sessionId });
    assert.deepEqual(texts(model.exchanges[1]), ['One', raw, 'Two']);
    const { messages } = await client.result('loadMessages', { sessionId });
    assert.deepEqual(messages[1], { role: 'assistant', content: response });
});

test('suggestions of a model are passed on', async (t) => {
    const { client } = await start(t, {
        reply: (exchange) => exchange.answer('Yes.\n```tovi-ui\n', '{"followUps":[{"prompt":"More"}]}', '\n```'),
    });
    const { response, ui, followUps } = await client.chat('One');
    assert.deepEqual([response, ui, followUps], ['Yes.', undefined, [{ prompt: 'More' }]]);
});

test('a spoken prompt asks for a short reply', async (t) => {
    const { model, client } = await start(t, { reply: (exchange) => exchange.answer('Yes.') });
    await client.chat('One', { inputMode: 'voice' });
    await client.chat('One', { inputMode: 'text' });
    assert.deepEqual(model.exchanges.map(({ body }) => /will hear your reply/.test(body.messages[0].content)), [true, false]);
});

test('conversations that cannot be saved are reported once to each client', async (t) => {
    const folder = temporaryFolder(t);
    fs.writeFileSync(path.join(folder, 'loomra-bridge'), 'in the way');
    const { client, bridge } = await start(t, { reply: (exchange) => exchange.answer('Yes.'), XDG_STATE_HOME: folder });
    assert.match((await client.chat('One')).response, /^Yes\.\n\n\(Conversations are neither loaded nor saved: .*\)$/);
    assert.equal((await client.chat('Two')).response, 'Yes.');
    const other = await bridge.connect();
    const { ui } = await other.chat('demo list');
    assert.match(ui.blocks.at(-1).content, /^\(Conversations are neither loaded nor saved/);
});

test('a prompt that waits for a server is cancelled at once', async (t) => {
    const { model, client } = await start(t);
    await client.result('listModels');
    model.models = () => {}; // never answers
    await model.stop();
    await model.listen();
    model.reply = (exchange) => exchange.cut();
    await client.request('chat', { message: 'Lost' });
    const id = client.post('chat', { message: 'One' });
    await client.result('cancel');
    await client.result('ping');
    const replies = client.messages.map((message) => message.id);
    assert.ok(replies.includes(id)); // before the search has ended
    assert.equal((await client.reply(id)).error.code, 'CANCELLED');
    assert.equal(model.exchanges.length, 1);
});

test('a server is announced once in the log, and again when it has come back', async (t) => {
    // Without a list of models it might be loading one, so each prompt looks for it.
    const { model, bridge, client } = await start(t, { models: { data: [] }, reply: (exchange) => exchange.answer('Yes.') });
    const announced = () => bridge.errors.match(/^Prompts go to /gm).length;
    for (const prompt of ['One', 'Two', 'Three'])
        await client.chat(prompt);
    assert.equal(announced(), 1);
    await model.stop();
    await client.request('chat', { message: 'Four' });
    await model.listen();
    await client.chat('Five');
    await bridge.complains(/(Prompts go to [^]*){2}/);
});
