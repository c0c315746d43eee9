// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../logic/Untrusted.js" as Untrusted
.import "TextSet.js" as TextSet

// Which messages the chat shows: neither a reply nor the history of a session may appear twice.

const maxNameLength = 50;
const cutNameLength = 47;
const hashedReply = 200;
const hashedRow = 100;

/** What identifies a new reply. */
function replyHash(response) {
    return "assistant|" + response.length + "|" + response.substring(0, hashedReply);
}

/** What identifies a prompt, or a message of the history. */
function rowHash(role, content) {
    return role + "|" + content.substring(0, hashedRow);
}

/** The name of a session that begins with this prompt. */
function sessionName(prompt) {
    return prompt.length > maxNameLength ? prompt.substring(0, cutNameLength) + "..." : prompt;
}

/**
 * Why a list of messages is ignored, "" if it is to be shown. The order matters, because the first reason ends it.
 * @param state the properties of the ChatController, and sessionId, shownCount, messageCount, now (ms)
 */
function refusal(state) {
    if (state.isSendingMessage) {
        return "sending";
    }
    const elapsed = state.now - state.lastResponseTimestamp;
    // A clock that was set back must not block it for hours.
    if (state.lastResponseTimestamp > 0 && elapsed >= 0 && elapsed < state.responseCooldownMs) {
        return "cooldown";
    }
    if (!state.isLoadingHistory && state.sessionId === state.lastLoadedSessionId
            && state.shownCount >= state.messageCount) {
        return "shown";
    }
    return state.isLoadingHistory ? "" : "unrequested";
}

/** Whether the shown rows have to be replaced by the loaded ones. */
function isNewer(state) {
    return state.shownCount === 0 || state.sessionId !== state.lastLoadedSessionId || state.shownCount < state.messageCount;
}

/**
 * The rows {role, content} of a history, which is untrusted, the hashes of its messages, and the last reply. Repeated
 * messages are left out.
 */
function rows(messages) {
    const hashes = [];
    const known = {};
    const shown = [];
    let lastReply = "";
    messages.filter(Untrusted.isObject).forEach(message => {
        const role = Untrusted.textOf(message.role);
        const content = Untrusted.textOf(message.content);
        const hash = rowHash(role, content);
        if ((role === "assistant" && content === lastReply) || !TextSet.add(known, hash)) {
            return;
        }
        hashes.push(hash);
        if (role === "user" || role === "assistant") {
            shown.push({ role: role, content: content });
        }
        if (role === "assistant") {
            lastReply = content;
        }
    });
    return { rows: shown, hashes: hashes, lastReply: lastReply };
}
