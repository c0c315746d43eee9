// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// The files with sentences to read aloud: {"version": 1, "description": ..., "sentences": [{id, category, text}, ...]}

const keys = ["id", "category", "text"];

/** The sentences of a suite, an empty list if the content is no suite. Incomplete sentences are left out. */
function parse(content) {
    let suite = null;
    try {
        suite = JSON.parse(content);
    } catch (error) {
        return [];
    }
    const sentences = suite && Array.isArray(suite.sentences) ? suite.sentences : [];
    return sentences.filter(sentence => sentence && keys.every(key => typeof sentence[key] === "string" && sentence[key] !== ""));
}

/** Reads a suite and calls done(sentences) once, later. */
function load(url, done) {
    const request = new XMLHttpRequest();
    request.onreadystatechange = () => {
        if (request.readyState === XMLHttpRequest.DONE) {
            done(parse(request.responseText));
        }
    };
    request.open("GET", url);
    request.send();
}
