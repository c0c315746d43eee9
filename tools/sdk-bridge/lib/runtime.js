// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');
const { checkOneOf } = require('./params');

const HOUR_MS = 60 * 60 * 1000;
const MAX_PER_HOUR = 20;
const MAX_JOBS = 20;
const GATINGS = ['require_approval', 'auto_safe', 'off'];

const action = (id, label) => ({ id, label });

//! Proposed alternately, so that both kinds can be seen.
const SUGGESTIONS = [
    {
        id: 'sug_focus_dev',
        title: 'Prepare “Focus — Development”?',
        body: 'You often open the text editor and the terminal at this time.',
        confidence: 0.82,
        suggestionType: 'workspace_ready',
        workspaceId: 1,
        actions: [action('prepare', 'Prepare now'), action('dismiss', 'Not now')],
    },
    {
        id: 'sug_photo_evening',
        title: 'A new workspace was found',
        body: 'On Sunday evenings you sort photos. Shall this become a workspace?',
        confidence: 0.74,
        suggestionType: 'candidate_review',
        workspaceId: 4,
        actions: [action('review', 'Review'), action('dismiss', 'Not now')],
    },
];

//! The part of a suggestion that a client shows as a notification.
const notification = ({ id, title, body, actions, suggestionType, workspaceId }) =>
    ({ title, body, actions, suggestionType, suggestionId: id, workspaceId });

//! The AI runtime: its settings, jobs and suggestions.
class AiRuntime {
    #house;
    #now;
    #settings = { runtimeEnabled: true, executionGating: GATINGS[0] };
    #executions = [];
    #jobs = [];
    #lastJob = 0;
    #checks = 0;
    #proposed = 0;
    #dismissed = new Set();

    //! `house` offers {settings, executor, workspaces, desktop, metrics}.
    constructor(house, now = Date.now) {
        this.#house = house;
        this.#now = now;
    }

    #executionsThisHour() {
        this.#executions = this.#executions.filter((at) => this.#now() - at < HOUR_MS);
        return this.#executions.length;
    }

    #state() {
        if (!this.#settings.runtimeEnabled)
            return 'disabled';
        if (this.#house.executor.stopped)
            return 'stopped';
        return this.#jobs.some(({ state }) => state === 'running') ? 'working' : 'idle';
    }

    status() {
        return {
            state: this.#state(),
            gateStatus: { executionsThisHour: this.#executionsThisHour(), maxPerHour: MAX_PER_HOUR },
            settings: { ...this.#settings },
        };
    }

    //! Sets a setting from text. Throws a Failure if the value is invalid.
    set(key, value) {
        checkOneOf('key', key, Object.keys(this.#settings));
        if (key === 'runtimeEnabled') {
            checkOneOf('value', value, ['true', 'false']);
            this.#settings.runtimeEnabled = value === 'true';
        } else {
            checkOneOf('value', value, GATINGS);
            this.#settings.executionGating = value;
        }
    }

    //! Counts one execution. Returns why it is refused, or an empty text.
    admit() {
        if (this.#settings.executionGating !== 'off' && this.#executionsThisHour() >= MAX_PER_HOUR)
            return `No more than ${MAX_PER_HOUR} executions an hour`;
        this.#executions.push(this.#now());
        return '';
    }

    beginJob(kind) {
        const job = { id: `job_${++this.#lastJob}`, kind, state: 'running', lastError: '' };
        this.#jobs.push(job);
        if (this.#jobs.length > MAX_JOBS)
            this.#jobs.shift();
        return job;
    }

    endJob(job, lastError) {
        Object.assign(job, { state: lastError ? 'failed' : 'done', lastError });
    }

    //! The latest jobs, oldest first.
    jobs() {
        return this.#jobs.map((job) => ({ ...job }));
    }

    health() {
        const connected = this.#house.settings.aiRuntime;
        return { mode: 'embedded', runtimePid: connected ? process.pid : 0, connected };
    }

    //! Checks for a suggestion. `notified` is true if the client should show it.
    check({ ignoreDnd = false, dryRun = false }) {
        this.endJob(this.beginJob('workspace.analysis'), '');
        ++this.#checks;
        const analysis = { clustersCreated: this.#checks % 3, candidatesDetected: this.#checks % 2 };
        const nothing = (reason, more) => ({ notified: false, reason, analysis, ...more });

        if (!this.#settings.runtimeEnabled)
            return nothing('runtime_disabled');
        // Intentional: dismissing one suggestion silences the others too.
        if (this.#dismissed.size)
            return nothing('no_suggestions');
        const suggestion = SUGGESTIONS[this.#proposed % SUGGESTIONS.length];
        const topSuggestion = { id: suggestion.id, title: suggestion.title, confidence: suggestion.confidence };
        if (suggestion.confidence < Number(this.#house.workspaces.settings().suggestionThreshold))
            return nothing('low_confidence', { topSuggestion });
        if (this.#house.desktop.dnd && !ignoreDnd)
            return nothing('dnd', { topSuggestion });

        const found = { notified: true, analysis, topSuggestion, clientNotification: notification(suggestion) };
        if (dryRun)
            return { ...found, reason: 'dry_run' };
        ++this.#proposed;
        this.#house.metrics.countSuggestion();
        return { ...found, reason: '', notificationChannel: 'client' };
    }

    dismiss(suggestionId) {
        if (!SUGGESTIONS.some(({ id }) => id === suggestionId))
            throw new Failure('There is no such suggestion', 'SUGGESTION_NOT_FOUND');
        this.#dismissed.add(suggestionId);
    }

    //! Clears the dismissed suggestions and returns their number.
    clearDismissed() {
        const cleared = this.#dismissed.size;
        this.#dismissed.clear();
        this.#proposed = 0;
        return cleared;
    }
}

module.exports = { AiRuntime, SUGGESTIONS, notification };
