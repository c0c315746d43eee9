// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// A scripted model server for the tests of the started program, where llama-server listens by default. The first word of
// a prompt selects the reply; any other prompt is repeated.
//
// It prints "listening"; for each prompt the number of messages in its request and, as JSON, the last one; "holding" when
// the words before a pause are sent; and "closed" when the client closes a request before its reply is complete.

'use strict';

const path = require('path');
const { ModelServer, OPENING } = require(path.join(__dirname, '../../tools/sdk-bridge/test/support/modelServer'));

const PORT = 8080;

const TABLE = {
    blocks: [
        { type: 'table', title: 'Units', columns: ['Unit', 'Bytes'], rows: [['KiB', 1024], ['MiB', 1048576]] },
    ],
};

const print = (text) => process.stdout.write(`${text}\n`);

const REPLIES = {
    //! A few words, and then nothing more.
    async hold(exchange) {
        await exchange.send(OPENING);
        await exchange.write('These', ' words', ' arrive.');
        print('holding');
    },
    fail: (exchange) => exchange.fail(500, { error: { code: 500, message: 'out of memory', type: 'server_error' } }),
    table: (exchange) => exchange.answer('The **units**:\n\n```tovi-ui\n', JSON.stringify(TABLE), '\n```\n'),
};

async function reply(exchange) {
    print(`${exchange.body.messages.length} ${JSON.stringify(exchange.prompt)}`);
    exchange.closed.then(() => exchange.response.writableFinished || print('closed'));
    // Prompts that got no reply come before this one, because roles alternate.
    const prompt = exchange.prompt.split('\n').at(-1);
    const [word] = prompt.toLowerCase().split(' ');
    if (Object.hasOwn(REPLIES, word))
        await REPLIES[word](exchange);
    else
        await exchange.answer('The', ' model', ' says: ', prompt);
}

const server = Object.assign(new ModelServer(), { reply });
server.listen(PORT).then(() => print('listening'));
