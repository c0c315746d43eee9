// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// What a model server says of its models, which is untrusted: `/v1/models`, which all servers have, `/props` of
// llama-server, and `/api/tags` and `/api/ps` of Ollama.

const { isObject } = require('../frames');
const { cut, oneLine } = require('../text');

const PROVIDER = 'local';
const DEFAULT_CONTEXT = 4096; // tokens, that of Ollama
const MIN_CONTEXT = 256;
const MAX_CONTEXT = 16 * 1024 * 1024;
const MAX_MODELS = 500;
const MAX_ID = 300;
const MAX_NAME = 80;

const objects = (value) => (Array.isArray(value) ? value.filter(isObject) : []);
const isId = (value) => typeof value === 'string' && value.trim() !== '' && value.length <= MAX_ID;
const text = (value) => (typeof value === 'string' ? cut(oneLine(value), MAX_NAME) : '');
const positive = (value) => (Number.isFinite(value) && value > 0 ? value : 0);

//! A number of tokens, or 0 if it is none.
const tokens = (value) =>
    (Number.isSafeInteger(value) && value >= MIN_CONTEXT ? Math.min(value, MAX_CONTEXT) : 0);

//! llama-server names a model by its file, if it gets no alias.
const nameOf = (id) => text(id.replace(/^.*\//, '').replace(/\.gguf$/i, '')) || text(id);

function withUnit(value, units) {
    const step = Math.min(units.length - 1, Math.max(0, Math.floor(Math.log10(value) / 3)));
    const scaled = value / 10 ** (3 * step);
    return `${scaled < 10 ? Math.round(scaled * 10) / 10 : Math.round(scaled)}${units[step]}`;
}

const parameterCount = (value) => withUnit(value, ['', 'K', 'M', 'B', 'T']);
const bytes = (value) => withUnit(value, [' B', ' kB', ' MB', ' GB', ' TB']);

//! Models for embeddings can't chat.
const canChat = ({ id, families }) => !/embed/i.test(id) && !families.includes('bert');

//! The models of a server, from the parsed JSON of its pages, of which all but the first may be undefined. Returns
//! undefined if what answered is no model server. A model is {id, name, parameters, bytes, contextTokens}: `parameters`
//! is a text, and what is unknown is '' or 0.
function readModels({ models, props, tags, running }) {
    if (!isObject(models) || !Array.isArray(models.data))
        return undefined;
    const tagOf = new Map(objects(tags?.models).map((tag) => [tag.name, tag]));
    const contextOf = new Map(objects(running?.models).map((each) => [each.name, tokens(each.context_length)]));
    const served = tokens(props?.default_generation_settings?.n_ctx);
    const rows = objects(models.data).filter(({ id }) => isId(id)).slice(0, MAX_MODELS).map(({ id, meta }) => {
        const { details, size } = tagOf.get(id) ?? {};
        const parameters = positive(meta?.n_params);
        return {
            id,
            name: nameOf(id),
            parameters: parameters ? parameterCount(parameters) : text(details?.parameter_size),
            bytes: positive(meta?.size) || positive(size),
            contextTokens: contextOf.get(id) || served || tokens(meta?.n_ctx) || DEFAULT_CONTEXT,
            families: Array.isArray(details?.families) ? details.families : [],
        };
    });
    const chatting = rows.filter(canChat);
    return (chatting.length ? chatting : rows).map(({ families, ...row }) => row);
}

//! What clients show and send for a model: its name, or its id if another model has that name.
function fullIdOf({ id, name }, models) {
    const isUnique = models.filter((other) => other.name === name).length === 1;
    return `${PROVIDER}/${isUnique ? name : id}`;
}

//! The rows of models for the client's list.
function listed(models) {
    return models.map((model) => {
        const { id, name, parameters, bytes: size } = model;
        const facts = [parameters, size && bytes(size)].filter(Boolean).join(', ');
        return {
            id,
            name,
            provider: PROVIDER,
            fullId: fullIdOf(model, models),
            displayName: facts ? `${name} (${facts})` : name,
            free: true,
            parameters,
            sizeBytes: size,
        };
    });
}

//! The model that a client's `fullId` means, by default the first; undefined without models.
function chooseModel(models, fullId = '') {
    return models.find((model) => [fullIdOf(model, models), `${PROVIDER}/${model.id}`, model.id].includes(fullId)) ?? models[0];
}

module.exports = { DEFAULT_CONTEXT, chooseModel, listed, readModels };
