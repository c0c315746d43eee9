// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// The bridge and what it uses: models, tokens, MCP servers, user services.

const fs = require('fs');
const path = require('path');

const { URL, chat, isObject, waysToStart } = require('../bridgeClient');
const { asLine } = require('../text');
const { missing, ok, problem } = require('./outcomes');

const REQUEST_TIMEOUT_MS = 5000;
const CHAT_TIMEOUT_MS = 120000;
const CHAT_PROMPT = 'This is a test of the connection. Reply with the single word: ready';
const SHOWN_NAMES = 10;
const SHOWN_REPLY = 60; // characters
const DEMO_MODEL = 'demo/echo-free';
const BRIDGE_UNIT = 'tovi-bridge.service';
const WAKE_WORD_UNIT = 'tovi-wakeword.service';
const NO_BRIDGE = ['unknown without a bridge', 'Start the bridge'];

function names(list) {
    const shown = list.slice(0, SHOWN_NAMES).join(', ');
    return list.length > SHOWN_NAMES ? `${shown} and ${list.length - SHOWN_NAMES} more` : shown;
}

const text = (value) => (typeof value === 'string' ? value : '');

async function checkBridge({ bridge }) {
    const { client, error } = await bridge;
    if (!client)
        return (error.isUnreachable ? missing : problem)(error.message, waysToStart().join(', or: '));
    try {
        await client.request('ping', {}, { timeoutMs: REQUEST_TIMEOUT_MS });
    } catch (failure) {
        return problem(failure.message, 'Restart the bridge');
    }
    const found = await client.request('getCapabilities', {}, { timeoutMs: REQUEST_TIMEOUT_MS }).catch(() => null);
    const parts = [found?.workspaceIntelligence?.enabled === true && 'workspace intelligence',
        found?.aiRuntime?.enabled === true && 'AI runtime'].filter(Boolean);
    return ok(`${URL}${parts.length ? `, with ${parts.join(' and ')}` : ''}`);
}

//! The address of the model server: '' for none, undefined if the bridge doesn't report it.
async function modelServerOf(client) {
    const health = await client.request('health', {}, { timeoutMs: REQUEST_TIMEOUT_MS }).catch(() => null);
    return typeof health?.modelServer === 'string' ? health.modelServer : undefined;
}

async function checkModels({ bridge }) {
    const { client } = await bridge;
    if (!client)
        return missing(...NO_BRIDGE);
    let models;
    try {
        ({ models } = await client.request('listModels', {}, { timeoutMs: REQUEST_TIMEOUT_MS }));
    } catch (error) {
        return problem(error.message, 'Restart the bridge, or its model server');
    }
    const ids = (Array.isArray(models) ? models : []).map((model) => text(model?.fullId) || text(model?.id)).filter(Boolean);
    const server = await modelServerOf(client);
    const howTo = 'Start llama-server or Ollama, or name a server in LOOMRA_MODEL_URL';
    if (!server && ids.includes(DEMO_MODEL))
        return missing('no model server: the bridge plays its demonstration', howTo);
    if (!ids.length)
        return missing(server ? `no model at the model server ${server}, or no answer` : 'the bridge has no model', howTo);
    return ok(`${names(ids)}${server ? `, by the model server at ${server}` : ''}`);
}

//! Tokens themselves are never shown.
async function checkProviders({ bridge }) {
    const { client } = await bridge;
    if (!client)
        return missing(...NO_BRIDGE);
    let result;
    try {
        result = await client.request('getTokenStatus', {}, { timeoutMs: REQUEST_TIMEOUT_MS });
    } catch (error) {
        return problem(error.message, 'Restart the bridge');
    }
    const providers = (Array.isArray(result?.providers) ? result.providers : []).filter((each) => text(each?.provider));
    const withToken = providers.filter(({ configured }) => configured === true).map(({ provider }) => provider);
    const without = providers.filter(({ configured }) => configured !== true).map(({ provider }) => provider);
    if (withToken.length)
        return ok(`token for ${names(withToken)}`);
    // The bundled bridge uses no providers, only a model server.
    if (!providers.length || await modelServerOf(client) !== undefined)
        return ok('the bridge needs none');
    return missing(`no token for ${names(without)}`, 'Needed only for models of these providers; set it in the settings');
}

const configFolder = ({ env, home }) => env.XDG_CONFIG_HOME || path.join(home, '.config');

//! The servers in the file of the agent tool. None of them is started.
function checkMcp(context) {
    const file = path.join(configFolder(context), 'loomra', 'loomra.json');
    let config;
    try {
        if (!fs.statSync(file).isFile())
            return problem(`${file} is no file`, 'Remove it');
        config = JSON.parse(fs.readFileSync(file, 'utf8').replace(/^\ufeff/, ''));
    } catch (error) {
        if (error.code === 'ENOENT')
            return ok('none');
        return problem(`${file} cannot be read: ${error.message}`, 'Correct the file, or move it away');
    }
    const servers = isObject(config?.mcp) ? Object.entries(config.mcp) : [];
    if (!servers.length)
        return ok('none');
    return ok(names(servers.map(([name, server]) => (server?.enabled === false ? `${name} (disabled)` : name))));
}

//! The state of a user unit. Resolves to {load, active, enabled}, or null without a user manager.
async function unitState({ run }, unit) {
    const { code, output } = await run('systemctl',
        ['--user', 'show', unit, '--property=LoadState,ActiveState,UnitFileState']);
    const values = Object.fromEntries(output.split('\n').map((line) => /^(\w+)=(.*)$/.exec(line)?.slice(1)).filter(Boolean));
    if (code !== 0 || !values.LoadState)
        return null;
    return { load: values.LoadState, active: values.ActiveState, enabled: values.UnitFileState || 'disabled' };
}

const WAKE_WORD_HELP = 'Needed only to talk without a click; a detector is not part of tovictl';

//! The outcome for a unit; `absent` and `without` are the help if it isn't installed, and without a user manager.
async function checkUnit(context, unit, { absent, without }) {
    const found = await unitState(context, unit);
    if (!found)
        return missing('systemd\'s user manager does not answer', without);
    if (found.load !== 'loaded')
        return missing(`${unit} is not installed`, absent);
    const state = `${unit} is ${found.active}, ${found.enabled}`;
    return found.active === 'failed' ? problem(state, `journalctl --user -u ${unit} has the reason`) : ok(state);
}

const checkService = (context) => checkUnit(context, BRIDGE_UNIT, {
    absent: 'Install tovictl with its bridge, or enable the unit of the build folder: systemctl --user enable --now FILE',
    without: `Start the bridge by hand: ${waysToStart().at(-1)}`,
});

const checkWakeWord = (context) => checkUnit(context, WAKE_WORD_UNIT, { absent: WAKE_WORD_HELP, without: WAKE_WORD_HELP });

//! Sends a real prompt, and deletes its conversation afterwards.
async function checkChat({ bridge, chatTimeoutMs = CHAT_TIMEOUT_MS }) {
    const { client } = await bridge;
    if (!client)
        return missing('no prompt can be sent without a bridge', 'Start the bridge');
    const began = performance.now();
    try {
        const reply = await chat(client, CHAT_PROMPT, { timeoutMs: chatTimeoutMs });
        const seconds = ((performance.now() - began) / 1000).toFixed(1);
        if (reply.sessionId) {
            await client.request('deleteSession', { sessionId: reply.sessionId }, { timeoutMs: REQUEST_TIMEOUT_MS })
                .catch(() => {});
        }
        return ok(`reply in ${seconds} s: ${asLine(reply.text, SHOWN_REPLY)}`);
    } catch (error) {
        if (error.isTimeout)
            await client.cancel(REQUEST_TIMEOUT_MS);
        return problem(error.message, 'See the line of the models, and the log of the bridge');
    }
}

module.exports = {
    checks: [
        { id: 'bridge', title: 'Bridge', isEssential: true, run: checkBridge },
        { id: 'models', title: 'Models', run: checkModels },
        { id: 'providers', title: 'Provider tokens', run: checkProviders },
        { id: 'mcp', title: 'MCP servers', run: checkMcp },
        { id: 'service', title: 'Bridge service', run: checkService },
        { id: 'wakeword', title: 'Wake word', run: checkWakeWord },
    ],
    chatCheck: { id: 'chat', title: 'Chat', isEssential: true, run: checkChat },
};
