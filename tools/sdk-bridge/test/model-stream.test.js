// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { CompletionStream, MAX_BYTES, MAX_REPLY } = require('../lib/model/stream');
const { OPENING, ending, usage, words } = require('./support/modelServer');
const { processorMs } = require('./support/processorTime');
const { test } = require('./support/timed');

const event = (data) => `data: ${typeof data === 'string' ? data : JSON.stringify(data)}\n\n`;
const thought = (text, key = 'reasoning_content') => ({ choices: [{ delta: { [key]: text } }] });

//! A stream that was fed with events.
function fed(...events) {
    const stream = new CompletionStream();
    stream.feed(Buffer.from(events.map(event).join('')));
    return stream;
}

test('a reply comes in pieces of any size', () => {
    const bytes = Buffer.from([OPENING, words('Grüße '), words('an 👩‍👩‍👧, '), words('你好'), ending(), usage(7, 5), '[DONE]']
        .map(event).join(''));
    for (const size of [1, 2, 3, 7, 64, bytes.length]) {
        const stream = new CompletionStream();
        for (let at = 0; at < bytes.length; at += size)
            stream.feed(bytes.subarray(at, at + size));
        assert.equal(stream.text, 'Grüße an 👩‍👩‍👧, 你好', size);
        assert.deepEqual(stream.usage, { inputTokens: 7, outputTokens: 5 });
        assert.deepEqual([stream.isDone, stream.isComplete, stream.hasText, stream.finishReason], [true, true, true, 'stop']);
    }
});

test('every form of line end and of field is read', () => {
    for (const text of ['data:{"choices":[{"delta":{"content":"a"}}]}\r\n\r\n', ': a remark\n\ndata: {"choices":[{"delta":' +
        '{"content":"a"}}]}\n\n', 'event: message\nid: 3\nretry: 5\ndata: {"choices":[{"delta":{"content":"a"}}]}\n\n',
        'data: {"choices":\ndata: [{"delta":{"content":"a"}}]}\n\n', 'nonsense\ndata: {"choices":[{"delta":{"content":"a"}}]}\n\n']) {
        const stream = new CompletionStream();
        stream.feed(Buffer.from(text));
        assert.equal(stream.text, 'a', text);
    }
});

test('broken events are skipped', () => {
    const stream = fed(words('a'), '{"choices":', '[]', '"text"', '17', 'null', '{}', { choices: 'none' }, { choices: [] },
        { choices: [null] }, { choices: [{ delta: 'text' }] }, { choices: [{ delta: { content: 5 } }] }, words('b'),
        { choices: [{ finish_reason: 7, delta: {} }] }, { usage: 'much' }, { usage: { prompt_tokens: -1, completion_tokens: 2 } },
        { usage: { prompt_tokens: 1e300, completion_tokens: 2 } }, { prompt_progress: 'half' },
        { prompt_progress: { processed: 0, total: 0 } }, { prompt_progress: { processed: { toString: 1 }, total: 2 } });
    assert.deepEqual([stream.text, stream.usage, stream.isComplete, stream.readShare], ['ab', undefined, false, undefined]);
});

test('the usage may come before the end', () => {
    assert.deepEqual(fed(words('a'), usage(7, 5), ending(), '[DONE]').usage, { inputTokens: 7, outputTokens: 5 });
});

test('the last event may lack its blank line', () => {
    const stream = new CompletionStream();
    stream.feed(Buffer.from(`data: ${JSON.stringify(words('end'))}`));
    assert.equal(stream.text, '');
    stream.end();
    assert.equal(stream.text, 'end');

    const torn = new CompletionStream();
    torn.feed(Buffer.concat([Buffer.from('data: {"choices":[{"delta":{"content":"a"}}]}\n\ndata: [DONE]'), Buffer.of(0xe2)]));
    torn.end();
    assert.equal(torn.isComplete, false, 'half a character was there');
});

test('invalid UTF-8, control characters and half surrogates do no harm', () => {
    const stream = new CompletionStream();
    stream.feed(Buffer.concat([Buffer.from('data: {"choices":[{"delta":{"content":"a'), Buffer.from([0xff, 0xc3]),
        Buffer.from('b\\u0000\\u001b[31mc\\ud800d\\te\\nf"}}]}\n\n')]));
    assert.equal(stream.text, 'a\ufffd\ufffdb[31mc\ufffdd\te\nf');
});

test('a reply ends when it is too long', () => {
    const stream = fed(words('x'.repeat(MAX_REPLY)));
    assert.deepEqual([stream.isDone, stream.isCut], [false, false]);
    stream.feed(Buffer.from(event(words('y'))));
    assert.deepEqual([stream.isDone, stream.isCut, stream.text.length], [true, true, MAX_REPLY]);
    stream.feed(Buffer.from(event(words('z'))));
    assert.equal(stream.text.length, MAX_REPLY);
});

test('a stream ends when it is too long, whatever it contains', () => {
    const filler = (sample) => Buffer.from(event(sample).repeat(Math.ceil(1024 * 1024 / event(sample).length)));
    for (const sample of [thought('x'.repeat(1000)), words(`<think>${'x'.repeat(1000)}`), { choices: [], ping: 'x'.repeat(1000) }]) {
        const stream = new CompletionStream();
        const bytes = filler(sample);
        let fedBytes = 0;
        for (; !stream.isDone; fedBytes += bytes.length)
            stream.feed(bytes);
        assert.deepEqual([stream.isCut, stream.text, stream.error], [true, '', undefined]);
        assert.ok(fedBytes > MAX_BYTES && fedBytes <= MAX_BYTES + bytes.length);
    }
});

test('long thoughts take nothing from the reply', () => {
    const stream = fed(words('<think>'), ...Array(3).fill(words('x'.repeat(MAX_REPLY))), words('</think>'), words('Yes.'));
    assert.deepEqual([stream.text, stream.isCut], ['Yes.', false]);
});

//! The processor time that it takes to read many parts, in ms.
function timeOf(first, part, count) {
    const stream = fed(words(first));
    const bytes = Buffer.from(event(words(part)));
    const ms = processorMs(() => {
        for (let n = 0; n < count; ++n)
            stream.feed(bytes);
    });
    assert.equal(stream.hasText, false);
    return ms;
}

test('parts without words cost the same at the end of a long stream', () => {
    for (const [first, part] of [['', '\0'], ['', ' '], ['<think>', '>'], ['<think></think>', '\0'], ['<think></think>', ' ']]) {
        const [few, many] = [timeOf(first, part, 4000), timeOf(first, part, 40000)];
        assert.ok(many < 30 * few + 50, `${JSON.stringify([first, part])}: ${few} ms, ${many} ms`);
    }
});

test('an endless event is an error', () => {
    const stream = new CompletionStream();
    for (let n = 0; n < 40 && !stream.isDone; ++n)
        stream.feed(Buffer.alloc(64 * 1024, 'x'));
    assert.equal(stream.error, 'an event of its stream is too long');
    stream.feed(Buffer.from(event(words('late'))));
    stream.end();
    assert.equal(stream.text, '');
});

test('thoughts are no part of the reply', () => {
    for (const events of [
        [thought('Hm.'), words('Yes.')],
        [thought('Hm.', 'reasoning'), words('Yes.')],
        [words('<think>Hm.</think>\n\nYes.')],
        [words('<'), words('think'), words('>Hm'), words('. <b> </'), words('think>'), words('\n\nYes.')],
        [words('\n<think>'), words('a > b'), words('</think>Yes.')],
        [...'<think>Hm.</thin k></think>Yes.'.slice(0, -4)].map((letter) => words(letter)).concat(words('Yes.')),
    ]) {
        const stream = new CompletionStream();
        const seen = events.map((each) => {
            stream.feed(Buffer.from(event(each)));
            return [stream.isThinking, stream.hasText];
        });
        assert.deepEqual([stream.text, stream.hasText, stream.isThinking], ['Yes.', true, true]);
        seen.slice(0, -1).forEach(([, hasText]) => assert.equal(hasText, false));
    }
    assert.deepEqual([fed(words('<think>for ever')).text, fed(words('<think>for ever')).hasText], ['', false]);
    assert.equal(fed(words('<b>bold</b>')).text, '<b>bold</b>');
    assert.equal(fed(words('<thinker>')).hasText, true);
    assert.equal(fed(words('Yes'), words(' <think>no</think>')).text, 'Yes <think>no</think>');
});

test('blank words are no text', () => {
    const stream = fed(OPENING, words(' '), words('\n'));
    assert.deepEqual([stream.hasText, stream.hasBegun, stream.isThinking, stream.text], [false, true, false, '']);
});

test('the part of the prompt that was read is reported', () => {
    const progress = (processed, total) => ({ ...OPENING, prompt_progress: { total, processed } });
    const stream = fed(progress(50, 200));
    assert.deepEqual([stream.readShare, stream.hasWords, stream.hasBegun], [0.25, false, true]);
    stream.feed(Buffer.from(event(progress(20, 200))));
    assert.equal(stream.readShare, 0.25, 'it only grows');
    for (const [processed, total] of [[5, 4], [-1, 4], ['2', 'x'], [0, 0]])
        assert.ok(!(fed(progress(processed, total)).readShare > 0), `${processed}/${total}`);
});

test('an error in the stream ends it', () => {
    const stream = fed(words('a'), { error: { code: 500, message: 'out of memory' } }, words('b'));
    assert.deepEqual([stream.text, stream.isDone, stream.isComplete], ['a', true, false]);
    assert.equal(stream.error.message, 'out of memory');
});

test('a reply that is not streamed is read whole', () => {
    const stream = new CompletionStream();
    stream.readWhole(JSON.stringify({ choices: [{ finish_reason: 'stop', message: { content: ' Hello.' } }],
        usage: { prompt_tokens: 1, completion_tokens: 2 } }));
    assert.deepEqual([stream.text, stream.isComplete, stream.usage.outputTokens], ['Hello.', true, 2]);
    const broken = new CompletionStream();
    broken.readWhole('<html>');
    assert.deepEqual([broken.text, broken.isDone, broken.hasBegun], ['', true, false]);
});
