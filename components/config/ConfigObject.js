// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library

// Objects from the agent tool's file, which is untrusted: keys may be "__proto__" or "constructor", and any value may be
// of any type. Nothing here changes its arguments, so the values that a page shows never change behind it.

function isObject(value) {
    return typeof value === "object" && value !== null && !Array.isArray(value);
}

function has(object, key) {
    return isObject(object) && Object.prototype.hasOwnProperty.call(object, key);
}

/** The value of a key, or undefined. */
function get(object, key) {
    return has(object, key) ? object[key] : undefined;
}

/** The value of a key if that is an object, or else an empty object. */
function section(object, key) {
    const value = get(object, key);
    return isObject(value) ? value : {};
}

function isEmpty(object) {
    return Object.keys(object).length === 0;
}

/** The keys whose values are objects. */
function objectKeys(object) {
    return isObject(object) ? Object.keys(object).filter(key => isObject(object[key])) : [];
}

/** Sets a key of an object that nobody else has yet. An assignment to "__proto__" would not create a key. */
function define(object, key, value) {
    Object.defineProperty(object, key, { value: value, configurable: true, enumerable: true, writable: true });
}

/** A copy with the keys for which isWanted(key, value) holds. */
function filtered(object, isWanted) {
    const result = {};
    if (isObject(object))
        Object.keys(object).forEach(key => {
            if (isWanted(key, object[key]))
                define(result, key, object[key]);
        });
    return result;
}

/** A copy without a key. */
function without(object, key) {
    return filtered(object, name => name !== key);
}

/** A copy in which the key has this value. Its place among the keys stays. */
function withValue(object, key, value) {
    const result = filtered(object, () => true);
    define(result, key, value);
    return result;
}

/** A copy in which the key has this value, or is missing if that is undefined, null or "". */
function edited(object, key, value) {
    const isRemoved = value === undefined || value === null || value === "";
    return isRemoved ? without(object, key) : withValue(object, key, value);
}

/** A copy in which an entry of a section is replaced. An entry that has become empty is removed. */
function withEntry(object, key, entry) {
    return isEmpty(entry) ? without(object, key) : withValue(object, key, entry);
}

/**
 * A value that a file may have, as text, for a field.
 * @param separator between the elements of a list
 */
function asText(value, separator) {
    if (value === undefined || value === null)
        return "";
    if (Array.isArray(value) && separator !== undefined && value.every(element => !(element instanceof Object)))
        return value.join(separator);
    return typeof value === "string" ? value : JSON.stringify(value);
}

/** JSON for a text area. The characters that text areas replace, see FileCheck, are escaped. */
function asJson(value) {
    return JSON.stringify(value, null, 2).replace(/[\u00a0\u2028\u2029\ufdd0\ufdd1]/g, character =>
        "\\u" + ("000" + character.charCodeAt(0).toString(16)).slice(-4));
}

/** Longer texts are not edited in a field. */
const longestText = 50000;

/** The start of a text, for places where a longer one would take too long to lay out. */
function shortened(text, length) {
    const limit = length || 300;
    return text.length > limit ? text.slice(0, limit) + "\u2026" : text;
}
