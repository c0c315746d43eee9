// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const assert = require('assert/strict');
const http = require('http');
const net = require('net');
const { once } = require('events');

const { parseAddress } = require('../lib/model/address');
const { MAX_SEARCH_MS, MAX_WAIT_MS, ModelServers } = require('../lib/model/servers');
const { ModelServer, json } = require('./support/modelServer');
const { test } = require('./support/timed');

const SEARCH = { address: null, search: true, allowRemote: false, key: '' };

const LONG_MS = 20000; // for searches that succeed, however busy the machine is

//! Finders that end with the test, looking at the given servers in this order.
function finder(t, servers, { settings = SEARCH, maxWaitMs = LONG_MS } = {}) {
    const found = new ModelServers(settings, { addresses: servers.map(({ url }) => parseAddress(url)), maxWaitMs });
    t.after(() => found.close());
    return found;
}

//! A port at which nothing listens.
async function freePort() {
    const server = net.createServer().listen(0, '127.0.0.1');
    await once(server, 'listening');
    const { port } = server.address();
    server.close();
    await once(server, 'close');
    return port;
}

//! A server that accepts connections and never says anything.
async function silent(t) {
    const sockets = [];
    const server = net.createServer((socket) => sockets.push(socket)).listen(0, '127.0.0.1');
    await once(server, 'listening');
    t.after(() => { sockets.forEach((socket) => socket.destroy()); server.close(); });
    return { url: `http://127.0.0.1:${server.address().port}`, sockets };
}

test('the limits', () => {
    assert.deepEqual([MAX_WAIT_MS, MAX_SEARCH_MS], [150, 3000]);
});

test('the first address that answers is used, and stays', async (t) => {
    const [first, second] = [await ModelServer.start(t), await ModelServer.start(t)];
    const servers = finder(t, [first, second]);
    assert.equal(servers.lastShown, '');
    assert.equal((await servers.find()).shown, first.shown);
    assert.equal((await servers.find()).shown, first.shown);
    assert.deepEqual(first.visits.filter((path) => path === '/v1/models'), ['/v1/models']);
    assert.equal(servers.lastShown, first.shown);
});

test('without a server there is none, and it is found as soon as it comes', async (t) => {
    const port = await freePort();
    const servers = finder(t, [{ url: `http://127.0.0.1:${port}` }]);
    assert.equal(await servers.find(), null);
    assert.equal(servers.lastShown, '');
    await ModelServer.start(t, { port });
    assert.equal((await servers.find()).shown, `127.0.0.1:${port}`);
});

test('a server that has gone is forgotten, and another one found', async (t) => {
    const [first, second] = [await ModelServer.start(t), await ModelServer.start(t)];
    const servers = finder(t, [first, second]);
    const found = await servers.find();
    servers.lost(await new ModelServers({ ...SEARCH, address: parseAddress(second.url) }).find());
    assert.equal(await servers.find(), found);
    await first.stop();
    servers.lost(found);
    assert.equal((await servers.find()).shown, second.shown);
    await first.listen();
});

test('what is no model server is passed over', async (t) => {
    const second = await ModelServer.start(t);
    for (const answer of [
        (request, response) => { response.writeHead(404); response.end(); },
        (request, response) => { response.writeHead(401); response.end('{"error":{"message":"who are you?"}}'); },
        (request, response) => { response.writeHead(200); response.end('<html>a web page</html>'); },
        (request, response) => json(response, { data: 'none' }),
        (request, response) => { response.writeHead(302, { location: `${second.url}/v1/models` }); response.end(); },
        (request, response) => response.destroy(),
        (request, response) => { response.writeHead(503); response.end('{"error":{"message":"Service unavailable"}}'); },
        (request, response) => { response.writeHead(200); response.end(`{"data":[],"more":"${'x'.repeat(5000000)}"}`); },
    ]) {
        const other = http.createServer(answer).listen(0, '127.0.0.1');
        await once(other, 'listening');
        t.after(() => other.close());
        const servers = finder(t, [{ url: `http://127.0.0.1:${other.address().port}` }, second]);
        assert.equal((await servers.find())?.shown, second.shown, String(answer));
    }
});

test('a port that never answers keeps no prompt waiting', async (t) => {
    const [mute, model] = [await silent(t), await ModelServer.start(t)];
    const servers = finder(t, [mute, model], { maxWaitMs: 300 });
    assert.equal((await servers.find()).shown, model.shown);
    const alone = finder(t, [mute], { maxWaitMs: 50 });
    assert.equal(await alone.find(), null);
    const connections = mute.sockets.length;
    // One search goes on: no further connections for the next prompt.
    assert.equal(await alone.find(), null);
    assert.equal(mute.sockets.length, connections);
    alone.close();
    assert.equal(await alone.find(), null);
});

test('a server that answers late is found by the next prompt', async (t) => {
    let answer;
    const model = await ModelServer.start(t);
    const { models } = model;
    const asked = new Promise((resolve) => { model.models = (response) => { answer = () => json(response, models); resolve(); }; });
    const servers = finder(t, [model], { maxWaitMs: 50 });
    assert.equal(await servers.find(), null);
    await asked;
    answer();
    while (!await servers.find())
        await new Promise(setImmediate);
    assert.equal(servers.lastShown, model.shown);
});

test('a server that is loading its model is one', async (t) => {
    const model = await ModelServer.start(t);
    const { models } = model;
    model.models = (response) =>
        json(response, { error: { code: 503, message: 'Loading model', type: 'unavailable_error' } }, 503);
    const servers = finder(t, [model]);
    assert.deepEqual((await servers.find()).models, []);
    assert.equal((await servers.find()).model('x').id, 'default');
    model.models = models;
    assert.equal((await servers.find()).model('x').id, '/models/tiny.gguf');
});

test('pages that are slow or missing do not delay the models', async (t) => {
    let answer;
    const model = await ModelServer.start(t);
    const asked = new Promise((resolve) => {
        model.pages = { '/props': (response) => {
            answer = () => json(response, { default_generation_settings: { n_ctx: 1024 } });
            resolve();
        } };
    });
    const server = await finder(t, [model]).find();
    assert.equal(server.model().contextTokens, 2048);
    assert.equal(server.reportsProgress, false);
    await asked;
    answer();
    while (!server.reportsProgress)
        await new Promise(setImmediate);
    assert.equal(server.model().contextTokens, 1024);
});

test('a named server is used even if it lists no models, and no other', async (t) => {
    const [named, other] = [await ModelServer.start(t), await ModelServer.start(t)];
    named.models = undefined;
    const settings = { ...SEARCH, address: parseAddress(named.url), search: false, key: 'k' };
    const servers = finder(t, [other], { settings });
    assert.equal(servers.lastShown, named.shown);
    const server = await servers.find();
    assert.deepEqual([server.shown, server.models, server.key], [named.shown, [], 'k']);
    assert.deepEqual(other.visits, []);
});

test('with the search switched off nothing is looked for', async (t) => {
    const model = await ModelServer.start(t);
    assert.equal(await finder(t, [model], { settings: { ...SEARCH, search: false } }).find(), null);
    assert.deepEqual(model.visits, []);
});

test('models that were added are listed', async (t) => {
    const model = await ModelServer.start(t);
    const servers = finder(t, [model]);
    assert.equal((await servers.refresh()).models.length, 1);
    model.models = { data: [{ id: 'a' }, { id: 'b' }] };
    assert.deepEqual((await servers.refresh()).models.map(({ id }) => id), ['a', 'b']);
    await model.stop();
    assert.equal(await servers.refresh(), null);
    await model.listen();
});

test('a name that leads to another machine is not followed', async (t) => {
    const { readJson } = require('../lib/model/http');
    const dns = require('dns');
    const model = await ModelServer.start(t);
    const { lookup } = dns;
    t.after(() => { dns.lookup = lookup; });
    dns.lookup = (host, options, done) => lookup('192.0.2.1', options, done);
    const base = `http://localhost:${model.port}`;
    assert.deepEqual(await readJson({ base, allowRemote: false, key: '' }, '/v1/models'), {});
    dns.lookup = lookup;
    assert.equal((await readJson({ base, allowRemote: false, key: '' }, '/v1/models')).status, 200);
});

test('a name with two addresses leads to the one that answers', async (t) => {
    const { readJson } = require('../lib/model/http');
    const dns = require('dns');
    const model = await ModelServer.start(t);
    const { lookup } = dns;
    t.after(() => {
        dns.lookup = lookup;
        net.setDefaultAutoSelectFamily?.(true);
    });
    // As in node 18.
    net.setDefaultAutoSelectFamily?.(false);
    dns.lookup = (host, { all }, done) => {
        const both = [{ address: '::1', family: 6 }, { address: '127.0.0.1', family: 4 }];
        process.nextTick(done, null, ...(all ? [both] : ['::1', 6]));
    };
    const server = { base: `http://localhost:${model.port}`, allowRemote: false, key: '' };
    assert.equal((await readJson(server, '/v1/models')).status, 200);
});

test('a server that changes the protocol does not keep the search waiting', async (t) => {
    const model = await ModelServer.start(t);
    model.models = ({ socket }) => socket.end('HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\nConnection: upgrade\r\n\r\n');
    const servers = finder(t, [model]);
    assert.equal(await servers.find(), null);
    model.models = { data: [{ id: 'a' }] };
    assert.equal((await servers.find()).models[0].id, 'a');
});
