// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');
const { checkRange, invalid } = require('./params');

const MAX_DAYS = 365;
const MAX_VALUE = 200;
const DEFAULT_DAYS = 14;

const isSwitch = (value) => value === 'true' || value === 'false';
const isCount = (value) => /^[1-9]\d{0,3}$/.test(value);
const isShare = (value) => /^(?:0(?:\.\d{1,6})?|1(?:\.0{1,6})?)$/.test(value);

//! The settings. Their values are texts, as on the wire.
const SETTINGS = [
    { key: 'observationEnabled', preset: 'true', fits: isSwitch, words: '"true" or "false"' },
    { key: 'retentionDays', preset: '30', fits: isCount, words: 'a number of days' },
    { key: 'suggestionThreshold', preset: '0.6', fits: isShare, words: 'a number from 0 to 1' },
];

const HOURS_A_DAY = [['Text editor', 3.2], ['Browser', 2.1], ['Terminal', 1.4], ['Mail', 0.5]];

const workspace = (id, slug, name, goal, apps) => ({ id, slug, name, goal, apps, status: 'paused', preparedAt: null });

const templates = () => [
    workspace(1, 'focus-dev', 'Focus — Development', 'Write code without being disturbed.', ['Text editor', 'Terminal']),
    workspace(2, 'meeting', 'Meeting', 'See everybody and take notes.', ['Video call', 'Notes']),
    workspace(3, 'research', 'Research', 'Read, and keep what matters.', ['Browser', 'Notes']),
    workspace(4, 'photo-evening', 'Photo evening', 'Sort the pictures of the week.', ['Photos']),
];

//! A row as clients see it. One template has its rules as text, because clients accept both forms.
function shownRow({ slug, apps, ...row }) {
    const rules = { slug, apps };
    return slug === 'research'
        ? { ...row, behavior_rules: JSON.stringify(rules) }
        : { ...row, behaviorRules: rules };
}

//! Workspaces as if learned from the user. All of it is made up, but changes are kept.
class Workspaces {
    #templates = templates();
    #settings = new Map(SETTINGS.map(({ key, preset }) => [key, preset]));

    settings() {
        return Object.fromEntries(this.#settings);
    }

    //! Changes a setting. Throws a Failure if the key is unknown or the value invalid.
    set(key, value) {
        const setting = SETTINGS.find((each) => each.key === key);
        if (!setting)
            throw invalid('There is no setting of this key');
        if (value.length > MAX_VALUE || !setting.fits(value))
            throw invalid(`The setting "${key}" takes ${setting.words}`);
        this.#settings.set(key, value);
    }

    //! The time for which each app was used in the last days.
    dwell(days = DEFAULT_DAYS) {
        checkRange('days', days, 1, MAX_DAYS);
        const apps = HOURS_A_DAY.map(([app, hours]) => ({ app, hours: Math.round(hours * days * 10) / 10 }));
        return { days, topApp: apps[0].app, topAppHours: apps[0].hours, uniqueApps: apps.length, apps };
    }

    list() {
        return this.#templates.map(shownRow);
    }

    //! The template of an id. Throws a Failure if there is none.
    get(id) {
        return this.#find((each) => each.id === id, `id ${id}`);
    }

    //! Enables or disables the template with this slug, this id, or both.
    enable({ slug, id, enabled }) {
        if (slug === undefined && id === undefined)
            throw invalid('One of the parameters "slug" and "id" must be there');
        const template = id === undefined
            ? this.#find((each) => each.slug === slug, 'this slug')
            : this.get(id);
        if (slug !== undefined && template.slug !== slug)
            throw invalid('The parameters "slug" and "id" name different workspaces');
        template.status = enabled ? 'active' : 'paused';
        return template;
    }

    #find(fits, words) {
        const template = this.#templates.find(fits);
        if (!template)
            throw new Failure(`There is no workspace of ${words}`, 'WORKSPACE_NOT_FOUND');
        return template;
    }
}

module.exports = { Workspaces };
