// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const path = require('path');

const NAME = 'loomra-bridge';

//! The folder below which the bridge keeps its state, by the XDG base directories: an absolute XDG_STATE_HOME, else
//! ~/.local/state. Null without a home.
function stateFolder({ XDG_STATE_HOME: state = '', HOME: home = '' }) {
    if (path.isAbsolute(state))
        return path.join(state, NAME);
    return path.isAbsolute(home) ? path.join(home, '.local', 'state', NAME) : null;
}

module.exports = { stateFolder };
