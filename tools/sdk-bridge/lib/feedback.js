// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { Failure } = require('./frames');

//! Counts the votes on replies.
class Feedback {
    #votes = { up: 0, down: 0 };

    //! Counts a vote, "up" or "down". Throws a Failure for any other word.
    add(vote) {
        if (!Object.hasOwn(this.#votes, vote))
            throw new Failure('A vote is "up" or "down"', 'INVALID_PARAMS');
        ++this.#votes[vote];
    }

    get votes() {
        return { ...this.#votes };
    }
}

module.exports = { Feedback };
