// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');

const { chooseModel, listed, readModels } = require('../lib/model/catalog');
const { test } = require('./support/timed');

const models = (...ids) => ({ data: ids.map((id) => ({ id })) });

test('llama-server tells the size and the context of its model', () => {
    const [model] = readModels({
        models: { data: [{ id: '/home/ann/models/finch-7b-q4.gguf', meta: { n_params: 7615616512, size: 4683073536, n_ctx: 32768 } }] },
        props: { default_generation_settings: { n_ctx: 8192 } },
    });
    assert.deepEqual(model, { id: '/home/ann/models/finch-7b-q4.gguf', name: 'finch-7b-q4', parameters: '7.6B', bytes: 4683073536,
        contextTokens: 8192 });
    assert.deepEqual(listed([model])[0], { id: model.id, name: 'finch-7b-q4', provider: 'local', fullId: 'local/finch-7b-q4',
        displayName: 'finch-7b-q4 (7.6B, 4.7 GB)', free: true, parameters: '7.6B', sizeBytes: 4683073536 });
});

test('Ollama tells the size, and the context of a model that is loaded', () => {
    const found = readModels({
        models: models('finch:7b', 'heron:latest', 'nomic-embed-text', 'quartz'),
        tags: { models: [
            { name: 'finch:7b', size: 4700000000, details: { parameter_size: '7.6B', families: ['finch'] } },
            { name: 'heron:latest', size: 900000000, details: { parameter_size: '1.2B', families: null } },
            { name: 'quartz', size: 900000000, details: { families: ['bert'] } },
        ] },
        running: { models: [{ name: 'finch:7b', context_length: 16384 }] },
    });
    assert.deepEqual(found.map(({ id, contextTokens }) => [id, contextTokens]), [['finch:7b', 16384], ['heron:latest', 4096]]);
    assert.deepEqual(listed(found).map(({ displayName }) => displayName), ['finch:7b (7.6B, 4.7 GB)', 'heron:latest (1.2B, 900 MB)']);
});

test('models for embeddings are listed only if there is nothing else', () => {
    assert.deepEqual(readModels({ models: models('bge-embed') }).map(({ id }) => id), ['bge-embed']);
});

test('what tells nothing has a name and a default context', () => {
    const [model] = readModels({ models: models('mystery') });
    assert.deepEqual(model, { id: 'mystery', name: 'mystery', parameters: '', bytes: 0, contextTokens: 4096 });
    assert.equal(listed([model])[0].displayName, 'mystery');
});

test('what is no list of models is no model server', () => {
    for (const page of [undefined, null, 'text', 7, [], {}, { data: null }, { data: {} }, { models: [] }])
        assert.equal(readModels({ models: page }), undefined, JSON.stringify(page));
    assert.deepEqual(readModels({ models: { data: [] } }), []);
});

test('nonsense about a model is not believed', () => {
    const nonsense = [null, 'much', -1, NaN, 1e400, {}, [], true];
    for (const value of nonsense) {
        const [model] = readModels({
            models: { data: [{ id: 'x', meta: { n_params: value, size: value, n_ctx: value } }] },
            props: { default_generation_settings: { n_ctx: value } },
            tags: { models: [value, { name: 'x', size: value, details: value }, { name: 'x', details: { families: value } }] },
            running: { models: [{ name: 'x', context_length: value }] },
        });
        assert.deepEqual([model.parameters, model.bytes, model.contextTokens], ['', 0, 4096], String(value));
    }
    for (const page of nonsense)
        assert.equal(readModels({ models: models('x'), props: page, tags: page, running: page })[0].contextTokens, 4096);
    // Too small to hold a prompt, or beyond all measure.
    const contexts = [255, 256, 1e15].map((n_ctx) => readModels({ models: { data: [{ id: 'x', meta: { n_ctx } }] } })[0].contextTokens);
    assert.deepEqual(contexts, [4096, 256, 16777216]);
});

test('ids are bounded, names are one short line', () => {
    const found = readModels({ models: models('', ' ', 7, null, 'x'.repeat(301), 'x'.repeat(300), 'two\nlines', '<b>&', '__proto__') });
    assert.deepEqual(found.map(({ name }) => name), [`${'x'.repeat(80)}…`, 'two lines', '<b>&', '__proto__']);
    assert.equal(readModels({ models: models(...Array.from({ length: 600 }, (_, n) => `m${n}`)) }).length, 500);
});

test('sizes are rounded to what a person reads', () => {
    const size = (bytes) => listed([{ id: 'x', name: 'x', parameters: '', bytes }])[0].displayName;
    assert.deepEqual([1, 999, 1000, 1500, 999999, 12345678, 4683073536, 42e9, 1.5e12, 9e15].map(size), ['x (1 B)', 'x (999 B)',
        'x (1 kB)', 'x (1.5 kB)', 'x (1000 kB)', 'x (12 MB)', 'x (4.7 GB)', 'x (42 GB)', 'x (1.5 TB)', 'x (9000 TB)']);
});

test('the model that a client means is found by its id, by default the first', () => {
    const found = readModels({ models: models('a', 'b/c') });
    for (const [fullId, id] of [['local/b/c', 'b/c'], ['b/c', 'b/c'], ['local/a', 'a'], ['demo/small', 'a'], ['', 'a'],
        [undefined, 'a'], ['c', 'a']])
        assert.equal(chooseModel(found, fullId).id, id, fullId);
    assert.equal(chooseModel([], 'local/a'), undefined);
});

test('a model goes by its name, or by its id where the name would be ambiguous', () => {
    const found = readModels({ models: models('/a/finch.gguf', '/b/finch.gguf', '/c/heron.gguf') });
    const ids = listed(found).map(({ fullId }) => fullId);
    assert.deepEqual(ids, ['local//a/finch.gguf', 'local//b/finch.gguf', 'local/heron']);
    assert.deepEqual(ids.map((fullId) => chooseModel(found, fullId)), found);
    assert.equal(chooseModel(found, 'local//c/heron.gguf'), found[2]);
});
