// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');

const POWER_PROFILES = ['power-saver', 'balanced', 'performance'];

//! A made-up desktop: the state that plans read and change in place of the real one.
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

    //! Sets one property and gives the function that sets it back.
    put(key, value) {
        const before = this[key];
        this[key] = value;
        return () => { this[key] = before; };
    }

    //! Opens a window and gives the function that closes it again.
    open(title) {
        const window = { id: this.#nextWindow++, title, state: 'normal' };
        this.windows = [...this.windows, window];
        return () => { this.windows = this.windows.filter(({ id }) => id !== window.id); };
    }

    //! The window of a title, in any case; throws a Failure when none is open.
    window(title) {
        const window = this.windows.find((each) => each.title.toLowerCase() === title.toLowerCase());
        if (!window)
            throw new Failure(`No window is named ${JSON.stringify(title)}`, 'WINDOW_NOT_FOUND');
        return window;
    }

    //! Replaces the state of a window and gives the function that sets it back.
    putState(window, state) {
        const before = window.state;
        window.state = state;
        return () => { window.state = before; };
    }

    //! Closes a window and gives the function that brings it back.
    close(window) {
        this.windows = this.windows.filter((each) => each !== window);
        return () => { this.windows = [...this.windows, window].sort((a, b) => a.id - b.id); };
    }

    //! Its state as the clients see it.
    report() {
        return { windows: { windows: this.windows }, panels: { panels: this.panels }, theme: this.theme };
    }
}

module.exports = { Desktop, POWER_PROFILES };
