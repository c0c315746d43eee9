// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The models that the bridge offers: a few that scenarios and tests name, and made-up ones, because real lists are long.

const COUNT = 300;

const FAMILIES = {
    meadow: ['finch', 'heron'],
    harbour: ['tidal', 'pebble'],
    atelier: ['quartz', 'lichen'],
    orchard: ['birch', 'willow'],
    summit: ['marten', 'ember'],
    lantern: ['otter', 'thistle'],
};
//! The kinds by size. Only small models are free.
const KINDS = {
    '1b': ['instruct', 'code', 'free'],
    '3b': ['instruct', 'code', 'free'],
    '8b': ['instruct', 'code', 'vision', 'long', 'draft'],
    '14b': ['instruct', 'code', 'vision', 'long', 'draft'],
    '32b': ['instruct', 'code', 'vision', 'long', 'draft'],
    '70b': ['instruct', 'code', 'vision', 'long', 'draft'],
};

const model = (provider, id, free) => ({
    id,
    name: id,
    provider,
    fullId: `${provider}/${id}`,
    displayName: `${provider}/${id}`,
    free,
});

const NAMED = [
    model('demo', 'echo-free', true),
    model('demo', 'small', false),
    model('demo', 'large', false),
    model('workshop', 'nightly-build-with-a-rather-long-name-that-must-elide-somewhere', false),
    model('workshop', 'tiny-free', true),
];

const madeUp = Object.entries(FAMILIES).flatMap(([provider, families]) =>
    families.flatMap((family) => Object.entries(KINDS).flatMap(([size, kinds]) =>
        kinds.map((kind) => model(provider, `${family}-${size}-${kind}`, kind === 'free')))));

const models = [...NAMED, ...madeUp].slice(0, COUNT);

module.exports = { models };
