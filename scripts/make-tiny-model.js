// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// node make-tiny-model.js FILE: writes a language model with random weights as a GGUF file of 150 KB, and prints the
// words that it can say, one per line. It accepts any text and answers with some of these words in random order, which
// takes a model server only milliseconds. The file is the same each time.
//
// Two dimensions of the embedding are not random, and the layer leaves them as they are. The first is 1 for all tokens,
// so that the output matrix can hold a bias for each token. The second is 1 for words only. With these biases the model
// never says single bytes, and never ends a reply before its first word.

'use strict';

const fs = require('fs');

const CONTEXT = 8192; // tokens
const WIDTH = 32, HEADS = 2, FEED_FORWARD = 64;
const ALL = 0, IS_WORD = 1; // the two dimensions
const NEVER = -1000; // a bias
// Found by trial, for varied replies of about ten words: how likely a reply ends after a word, how much the likelihoods of
// words differ, and how much the layer adds to the embedding.
const END_AFTER_WORD = 2.5, VARIATION = 0.3, LAYER_SHARE = 1 / 24;

const WORDS = `amber anchor apricot autumn basalt beacon birch blossom bramble breeze candle canyon cedar cinder clover
    cobalt comet copper coral crimson crystal dahlia delta dune echo ember falcon feather fennel fern fjord garnet
    ginger glacier granite harbour hazel heather heron horizon indigo island ivory jasmine juniper kestrel lagoon
    lantern larch lavender lemon lichen lilac linden magnolia maple marble marigold meadow mica midnight mint moss
    nettle nutmeg oak ochre olive onyx opal orchid otter pebble pepper pine plum pollen poppy quartz quince rain
    raven reed ridge river rosemary saffron sage sand sapphire sienna silver slate sparrow spruce starling stone
    summit sunset swallow teal thistle thyme tide timber topaz tulip tundra umber valley velvet violet walnut willow
    winter wren yarrow zephyr crème naïve Größe Żółw`.split(/\s+/);

// Each turn is the role, a colon, the text and a line break.
const CHAT_TEMPLATE = '{{ bos_token }}'
    + '{% for message in messages %}{{ message.role }}: {{ message.content }}\n{% endfor %}'
    + '{% if add_generation_prompt %}assistant:{% endif %}';

// --- Tokens --------------------------------------------------------------------------------------------------------

// The numbers are those of the file format.
const Kind = { Normal: 1, Unknown: 2, Control: 3, Byte: 6 };
const UNKNOWN = 0, BEGIN = 1, END = 2;
const SPACE = '\u2581';

const tokens = [
    { text: '<unk>', kind: Kind.Unknown },
    { text: '<s>', kind: Kind.Control },
    { text: '</s>', kind: Kind.Control },
    ...Array.from({ length: 256 }, (_, byte) => (
        { text: `<0x${byte.toString(16).toUpperCase().padStart(2, '0')}>`, kind: Kind.Byte })),
    { text: SPACE, kind: Kind.Normal },
    ...WORDS.map((word) => ({ text: SPACE + word, kind: Kind.Normal, isWord: true })),
];

// --- Weights -------------------------------------------------------------------------------------------------------

//! A generator of numbers from -1 to 1 that are the same for each run.
function randomNumbers(seed) {
    let state = seed;
    return () => {
        state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
        return state / 0x80000000 - 1;
    };
}

const random = randomNumbers(14);

//! A matrix of rows of random numbers. change() may return another value for a row and column.
function matrix(name, columns, rows, change = (row, column, value) => value) {
    const data = new Float32Array(columns * rows);
    for (let row = 0; row < rows; ++row) {
        for (let column = 0; column < columns; ++column)
            data[row * columns + column] = change(row, column, random());
    }
    return { name, dimensions: [columns, rows], data };
}

function ones(name) {
    return { name, dimensions: [WIDTH], data: new Float32Array(WIDTH).fill(1) };
}

//! Each row is a token.
function embedding(row, column, value) {
    if (column === ALL)
        return 1;
    return column === IS_WORD ? Number(tokens[row].isWord ?? false) : value;
}

//! The result of the layer times a row of this matrix tells how likely the row's token comes next.
function output(row, column, value) {
    if (column !== ALL && column !== IS_WORD)
        return row === END ? 0 : value * VARIATION;
    if (row === END)
        return column === ALL ? NEVER : -NEVER + END_AFTER_WORD;
    return column === ALL && !tokens[row].isWord ? NEVER : 0;
}

//! What the layer adds to the embedding.
const addition = (row, column, value) => (row === ALL || row === IS_WORD ? 0 : value * LAYER_SHARE);

const tensors = [
    matrix('token_embd.weight', WIDTH, tokens.length, embedding),
    ones('blk.0.attn_norm.weight'),
    matrix('blk.0.attn_q.weight', WIDTH, WIDTH),
    matrix('blk.0.attn_k.weight', WIDTH, WIDTH),
    matrix('blk.0.attn_v.weight', WIDTH, WIDTH),
    matrix('blk.0.attn_output.weight', WIDTH, WIDTH, addition),
    ones('blk.0.ffn_norm.weight'),
    matrix('blk.0.ffn_gate.weight', WIDTH, FEED_FORWARD),
    matrix('blk.0.ffn_up.weight', WIDTH, FEED_FORWARD),
    matrix('blk.0.ffn_down.weight', FEED_FORWARD, WIDTH, addition),
    ones('output_norm.weight'),
    matrix('output.weight', WIDTH, tokens.length, output),
];

// --- The file ------------------------------------------------------------------------------------------------------

const ALIGNMENT = 32;
const Type = { Uint32: 4, Int32: 5, Float32: 6, Bool: 7, String: 8, Array: 9 };

const metadata = [
    ['general.architecture', Type.String, 'llama'],
    ['general.name', Type.String, 'tiny random words'],
    ['llama.context_length', Type.Uint32, CONTEXT],
    ['llama.embedding_length', Type.Uint32, WIDTH],
    ['llama.block_count', Type.Uint32, 1],
    ['llama.feed_forward_length', Type.Uint32, FEED_FORWARD],
    ['llama.attention.head_count', Type.Uint32, HEADS],
    ['llama.attention.layer_norm_rms_epsilon', Type.Float32, 1e-5],
    ['llama.rope.dimension_count', Type.Uint32, WIDTH / HEADS],
    ['tokenizer.ggml.model', Type.String, 'llama'],
    ['tokenizer.ggml.tokens', Type.Array, [Type.String, tokens.map((token) => token.text)]],
    ['tokenizer.ggml.scores', Type.Array, [Type.Float32, tokens.map(() => 0)]],
    ['tokenizer.ggml.token_type', Type.Array, [Type.Int32, tokens.map((token) => token.kind)]],
    ['tokenizer.ggml.unknown_token_id', Type.Uint32, UNKNOWN],
    ['tokenizer.ggml.bos_token_id', Type.Uint32, BEGIN],
    ['tokenizer.ggml.eos_token_id', Type.Uint32, END],
    ['tokenizer.ggml.add_bos_token', Type.Bool, false], // it is part of the template
    ['tokenizer.chat_template', Type.String, CHAT_TEMPLATE],
];

function number(size, write, value) {
    const bytes = Buffer.alloc(size);
    bytes[write](value);
    return bytes;
}

const uint32 = (value) => number(4, 'writeUInt32LE', value);
const uint64 = (value) => number(8, 'writeBigUInt64LE', BigInt(value));

const encode = {
    [Type.Uint32]: uint32,
    [Type.Int32]: (value) => number(4, 'writeInt32LE', value),
    [Type.Float32]: (value) => number(4, 'writeFloatLE', value),
    [Type.Bool]: (value) => Buffer.from([Number(value)]),
    [Type.String]: (value) => Buffer.concat([uint64(Buffer.byteLength(value)), Buffer.from(value)]),
    [Type.Array]: ([type, values]) => Buffer.concat([uint32(type), uint64(values.length), ...values.map(encode[type])]),
};

const padding = (length) => Buffer.alloc((ALIGNMENT - (length % ALIGNMENT)) % ALIGNMENT);

function file() {
    const parts = [Buffer.from('GGUF'), uint32(3), uint64(tensors.length), uint64(metadata.length)];
    for (const [key, type, value] of metadata)
        parts.push(encode[Type.String](key), uint32(type), encode[type](value));
    const data = [];
    let offset = 0;
    for (const tensor of tensors) {
        parts.push(encode[Type.String](tensor.name), uint32(tensor.dimensions.length), ...tensor.dimensions.map(uint64),
            uint32(0), uint64(offset)); // 0: 32-bit floats
        const bytes = Buffer.from(tensor.data.buffer);
        data.push(bytes, padding(bytes.length));
        offset += bytes.length + padding(bytes.length).length;
    }
    const head = Buffer.concat(parts);
    return Buffer.concat([head, padding(head.length), ...data]);
}

const [name] = process.argv.slice(2);
if (!name) {
    process.stderr.write('usage: node make-tiny-model.js FILE\n');
    process.exit(2);
}
fs.writeFileSync(name, file());
process.stdout.write(`${WORDS.join('\n')}\n`);
