// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Makes a plan from text, without a model: the text is split into parts, and keywords select the step of each part.

const { findCapability } = require('./capabilities');
const { cut, oneLine } = require('./text');

const MAX_WISH = 2000;
const MAX_SUMMARY = 200;
const MAX_STEPS = 20;
const RISKS = ['low', 'medium', 'high'];

const step = (capabilityId, params = {}) => ({ capabilityId, params });

const level = (capability) => ([, figure]) => step(capability, { level: Math.min(100, Number(figure)) });

const isOn = (word) => word !== 'off';

const RULES = [
    {
        pattern: /\bsetting (\S{1,100}) to (.{1,100})/,
        plan: ([, key, value]) => step('settings.write', { key, value }),
    },
    { pattern: /\bsetting (\S{1,100})/, plan: ([, key]) => step('settings.read', { key }) },
    { pattern: /\bvolume\b.*?\b(\d{1,6})\b/, plan: level('audio.volume.set') },
    { pattern: /\bvolume\b/, plan: () => step('audio.volume.get') },
    { pattern: /\bunmute\b/, plan: () => step('audio.volume.mute', { mute: false }) },
    { pattern: /\bmute\b/, plan: () => step('audio.volume.mute', { mute: true }) },
    { pattern: /\b(?:speakers|sound outputs?)\b/, plan: () => step('audio.sink.list') },
    { pattern: /\bbrightness\b.*?\b(\d{1,6})\b/, plan: level('display.brightness.set') },
    { pattern: /\bbrightness\b/, plan: () => step('display.brightness.get') },
    {
        pattern: /\bnight colou?r\b(?:.*\b(off)\b)?/,
        plan: ([, off]) => step('display.night_color.toggle', { enabled: isOn(off) }),
    },
    {
        pattern: /\brotate\b.*\b(left|right|inverted|normal)\b/,
        plan: ([, rotation]) => step('display.rotate', { rotation }),
    },
    {
        pattern: /\bdo not disturb\b(?:.*\b(on|off)\b)?/,
        plan: ([, word]) => (word ? step('notification.dnd.set', { enabled: isOn(word) }) : step('notification.dnd.get')),
    },
    { pattern: /\bdark\b/, plan: () => step('theme.apply', { name: 'Breeze Dark' }) },
    { pattern: /\blight\b/, plan: () => step('theme.apply', { name: 'Breeze Light' }) },
    {
        pattern: /\b(power-saver|balanced|performance)\b/,
        plan: ([, profile]) => step('power.profile.set', { profile }),
    },
    { pattern: /\bempty\b.*\btrash\b/, plan: () => step('trash.empty') },
    { pattern: /\block\b.*\bscreen\b/, plan: () => step('power.lock_screen') },
    { pattern: /\b(?:shut ?down|power off)\b/, plan: () => step('power.shutdown') },
    { pattern: /\bdelete\b/, plan: () => step('file.delete') },
    { pattern: /\binstall\b/, plan: () => step('package.install') },
    // Before the next one, because windows may be "open".
    { pattern: /\bwindows\b/, plan: () => step('window.list') },
    { pattern: /\b(?:open|launch|start) (?:the )?(.+)/, plan: ([, name]) => step('app.launch', { name }) },
    {
        pattern: /\b(close|minimi[sz]e|maximi[sz]e) (?:the )?(.+)/,
        plan: ([, verb, title]) => step(`window.${verb.replace('ise', 'ize')}`, { title }),
    },
    { pattern: /\bpanels?\b/, plan: () => step('panel.get_layout') },
    {
        pattern: /\b(?:notify|tell) me\b(?: that)?(.*)/,
        plan: ([, text]) => step('kde.notify', { text: text.trim() || 'Done' }),
    },
];

function stepFor(part) {
    for (const { pattern, plan } of RULES) {
        const match = pattern.exec(part);
        if (match)
            return plan(match);
    }
    return null;
}

const refused = (summary, reason) => ({ allowed: false, requiresApproval: false, plan: [], summary, reason });

//! The plan for a text. It isn't allowed if no step was found or one of them is denied. It requires approval unless all
//! steps only read.
function makePlan(message) {
    const wish = oneLine(message.slice(0, MAX_WISH));
    const summary = cut(wish, MAX_SUMMARY);
    const parts = wish.toLowerCase().replace(/[.!?]+$/, '').split(/,| and | then /)
        .map((part) => part.trim()).filter(Boolean);
    const found = parts.map((part) => ({ part, step: stepFor(part) }));
    const plan = found.flatMap(({ step: each }) => each ?? []);
    if (!plan.length)
        return refused(summary, 'There is no step for this');
    if (plan.length > MAX_STEPS)
        return refused(summary, `A plan has at most ${MAX_STEPS} steps`);

    const rows = plan.map(({ capabilityId }) => findCapability(capabilityId));
    const never = rows.find(({ denied }) => denied);
    if (never)
        return refused(summary, never.denied);
    const risks = rows.map(({ risk }) => RISKS.indexOf(risk));
    return {
        allowed: true,
        requiresApproval: rows.some(({ risk }) => risk),
        plan,
        summary,
        riskLevel: RISKS[Math.max(0, ...risks)],
        notUnderstood: found.filter(({ step: each }) => !each).map(({ part }) => part),
    };
}

module.exports = { MAX_STEPS, makePlan };
