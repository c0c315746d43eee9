// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');

const POWER_PROFILES = ['power-saver', 'balanced', 'performance'];

//! A simulated desktop, which plans read and change in place of the real one.
class Desktop {
    #nextWindow = 1;

    theme = 'Breeze';
    volume = 45;
    muted = false;
    brightness = 70;
    nightColor = false;
    rotation = 'normal';
    dnd = false;
    touchpad = true;
    locked = false;
    trash = 3;
    powerProfile = 'balanced';
    sinks = ['Speakers', 'Headphones'];
    panels = [
        { id: 1, position: 'bottom', height: 44, opacity: 'adaptive', widgets: ['launcher', 'tasks', 'tray', 'clock'] },
    ];
    settings = { 'mouse.cursorTheme': 'Breeze', 'fonts.general': 'Noto Sans 10', 'desktop.singleClick': 'false' };
    windows = [];

    constructor() {
        ['Text editor', 'Terminal', 'File manager'].forEach((title) => this.open(title));
    }

    //! Sets a property and returns the function that restores it.
    put(key, value) {
        const before = this[key];
        this[key] = value;
        return () => { this[key] = before; };
    }

    //! Opens a window and returns the function that closes it.
    open(title) {
        const window = { id: this.#nextWindow++, title, state: 'normal' };
        this.windows = [...this.windows, window];
        return () => { this.windows = this.windows.filter(({ id }) => id !== window.id); };
    }

    //! The window with this title, ignoring case. Throws a Failure if there is none.
    window(title) {
        const window = this.windows.find((each) => each.title.toLowerCase() === title.toLowerCase());
        if (!window)
            throw new Failure(`No window is named ${JSON.stringify(title)}`, 'WINDOW_NOT_FOUND');
        return window;
    }

    //! Replaces the state of a window and returns the function that restores it.
    putState(window, state) {
        const before = window.state;
        window.state = state;
        return () => { window.state = before; };
    }

    //! Closes a window and returns the function that reopens it.
    close(window) {
        this.windows = this.windows.filter((each) => each !== window);
        return () => { this.windows = [...this.windows, window].sort((a, b) => a.id - b.id); };
    }

    //! The state that plans leave behind, as clients see it.
    report() {
        const { windows, panels, theme, powerProfile } = this;
        return { windows: { windows }, panels: { panels }, theme, powerProfile };
    }
}

module.exports = { Desktop, POWER_PROFILES };
