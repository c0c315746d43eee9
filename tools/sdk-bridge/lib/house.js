// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const catalog = require('./catalog');
const frames = require('./frames');
const { AiRuntime } = require('./runtime');
const { AuditTrail } = require('./audit');
const { Automations } = require('./automations');
const { Desktop } = require('./desktop');
const { Executor } = require('./executor');
const { Feedback } = require('./feedback');
const { FileTree } = require('./files');
const { Journal } = require('./journal');
const { Metrics } = require('./metrics');
const { Model } = require('./model/model');
const { Pace } = require('./pace');
const { Reminders } = require('./reminders');
const { Reports } = require('./reports');
const { SessionStore } = require('./sessions');
const { seedSessions } = require('./seed');
const { Tokens } = require('./tokens');
const { Workspaces } = require('./workspaces');

//! Everything that the clients share. Lives as long as the process.
class House {
    clients = new Set();
    feedback = new Feedback();
    files = new FileTree();
    tokens = new Tokens(new Set(catalog.models.map(({ provider }) => provider)));
    audit = new AuditTrail();
    automations = new Automations();
    reminders = new Reminders();
    desktop = new Desktop();
    journal = new Journal();
    metrics = new Metrics();
    workspaces = new Workspaces();

    constructor(settings) {
        this.settings = settings;
        this.pace = new Pace(settings.beat);
        this.model = new Model(settings);
        this.sessions = new SessionStore({ folder: settings.stateFolder, journal: this.journal });
        seedSessions(this.sessions, settings.sessions ?? 0);
        this.executor = new Executor({
            enabled: settings.executorPathEnabled,
            desktop: this.desktop,
            audit: this.audit,
            pace: this.pace,
            metrics: this.metrics,
            broadcast: (name, fields) => this.broadcast(name, fields),
        });
        this.runtime = new AiRuntime(this);
        this.reports = new Reports(this);
    }

    //! Sends an event to every client.
    broadcast(name, fields) {
        this.sendToAll(frames.event(name, fields));
    }

    //! Sends a frame to every client.
    sendToAll(frame) {
        this.clients.forEach((client) => client.send(frame));
    }

    //! Cancels everything that is running and saves what is left to save, when the bridge stops.
    close() {
        this.pace.close();
        this.model.close();
        this.sessions.close();
        this.reports.close();
    }
}

module.exports = { House };
