// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { createParser } = require('eventsource-parser');

const { isObject } = require('../frames');

const MAX_EVENT = 1024 * 1024; // characters
const MAX_REPLY = 100000; // characters, more than anybody reads
const MAX_BYTES = 64 * 1024 * 1024; // of a stream, with its thoughts: 200,000 tokens of llama-server

//! Thoughts that a server didn't separate from the reply.
const OPENING = '<think>';
const CLOSING = '</think>';
// All but tab and newline.
const CONTROLS = /[\u0000-\u0008\u000b-\u001f\u007f]/g;

const count = (value) => (Number.isSafeInteger(value) && value >= 0 ? value : undefined);

//! The tokens that a server reports, as clients read them; undefined if it doesn't.
function usageOf(usage) {
    const [inputTokens, outputTokens] = [count(usage?.prompt_tokens), count(usage?.completion_tokens)];
    return inputTokens === undefined || outputTokens === undefined ? undefined : { inputTokens, outputTokens };
}

//! A streamed reply of a model server, fed with the bytes of the response. Malformed parts are skipped: what matters is
//! whether text arrives, and an end.
class CompletionStream {
    #decoder = new TextDecoder('utf-8'); // invalid bytes become U+FFFD
    #parser;
    #bytes = 0;
    #raw = ''; // the reply without what came before it; while the model thinks, the end of the thoughts

    //! What the server reports to have gone wrong, an object or a text.
    error;
    usage;
    //! Why the server ended the reply, such as "stop" or "length".
    finishReason = '';
    //! The part of the prompt that the server has read, 0 to 1, which only grows; undefined if it doesn't tell.
    readShare;
    //! Whether anything came that belongs to a reply, even without words.
    hasBegun = false;
    //! Whether the model has thoughts, which aren't part of the reply.
    isThinking = false;
    //! Whether words of the reply itself have come.
    hasText = false;
    //! Whether the reply was truncated because it is too long.
    isCut = false;
    //! Whether the model said anything, even if it is blank.
    #hasContent = false;
    #hasEnded = false;
    #head = 'unknown'; // what the text begins with: thoughts, or the reply itself

    constructor() {
        this.#parser = createParser({
            onEvent: ({ data }) => this.#read(data),
            onError: ({ type }) => {
                // Other errors are lines that the protocol ignores.
                if (type === 'max-buffer-size-exceeded')
                    this.error = 'an event of its stream is too long';
            },
            maxBufferSize: MAX_EVENT,
        });
    }

    //! Whether the prompt has been read: words have come, be it thoughts.
    get hasWords() {
        return this.isThinking || this.#hasContent;
    }

    //! Whether the server sent all of the reply.
    get isComplete() {
        return this.#hasEnded || this.finishReason !== '';
    }

    //! Whether nothing more is needed: the reply has ended or is too long, or the server reported an error. After the
    //! reason for the end, the usage may follow.
    get isDone() {
        return this.#hasEnded || this.isCut || this.error !== undefined;
    }

    //! The reply, without thoughts and control characters.
    get text() {
        // Surrogates without a partner become U+FFFD.
        return this.hasText ? Buffer.from(this.#raw).toString().trim() : '';
    }

    feed(bytes) {
        if (this.isDone)
            return;
        this.#bytes += bytes.length;
        this.#parser.feed(this.#decoder.decode(bytes, { stream: true }));
        this.isCut ||= this.#bytes > MAX_BYTES;
    }

    //! To be called after the last byte. The last event may lack its blank line.
    end() {
        if (!this.isDone)
            this.#parser.feed(`${this.#decoder.decode()}\n\n`);
    }

    //! Reads the body of a server that doesn't stream.
    readWhole(text) {
        this.#read(text);
        this.#hasEnded = true;
    }

    #read(data) {
        if (this.isDone)
            return;
        if (data.trim() === '[DONE]') {
            this.#hasEnded = true;
            return;
        }
        try {
            this.#take(JSON.parse(data));
        } catch (error) {
            // One broken event doesn't make the others useless.
            if (!(error instanceof SyntaxError))
                throw error;
        }
    }

    #take(value) {
        if (!isObject(value))
            return;
        if (value.error)
            this.error = value.error;
        this.usage = usageOf(value.usage) ?? this.usage;
        const { processed, total } = value.prompt_progress ?? {};
        if (Number.isFinite(processed) && processed >= 0 && Number.isFinite(total) && total > 0 && processed <= total)
            this.readShare = Math.max(this.readShare ?? 0, processed / total);
        const choice = Array.isArray(value.choices) ? value.choices[0] : undefined;
        const part = choice?.delta ?? choice?.message;
        if (isObject(part)) {
            this.hasBegun = true;
            this.isThinking ||= Boolean(part.reasoning_content || part.reasoning);
            if (typeof part.content === 'string')
                this.#append(part.content);
        }
        if (typeof choice?.finish_reason === 'string')
            this.finishReason = choice.finish_reason;
    }

    //! Takes words. Costs no more for a long reply or long thoughts, because a token may come alone.
    #append(words) {
        this.#hasContent ||= words !== '';
        this.#raw += words.replace(CONTROLS, '');
        if (this.#head !== 'reply')
            this.#passThoughts();
        if (this.#head !== 'reply')
            return;
        if (!this.hasText) {
            this.#raw = this.#raw.trimStart();
            this.hasText = this.#raw !== '';
        }
        this.isCut = this.#raw.length > MAX_REPLY;
        if (this.isCut)
            this.#raw = this.#raw.slice(0, MAX_REPLY);
    }

    //! Drops the thoughts at the start. What is left when they have ended belongs to the reply.
    #passThoughts() {
        if (this.#head === 'unknown') {
            this.#raw = this.#raw.trimStart();
            if (!this.#raw.startsWith(OPENING)) {
                this.#head = OPENING.startsWith(this.#raw) ? 'unknown' : 'reply';
                return;
            }
            this.#head = 'thoughts';
            this.isThinking = true;
        }
        const end = this.#raw.indexOf(CLOSING);
        // A part of the closing tag may have come.
        this.#raw = end < 0 ? this.#raw.slice(1 - CLOSING.length) : this.#raw.slice(end + CLOSING.length);
        if (end >= 0)
            this.#head = 'reply';
    }
}

module.exports = { CompletionStream, MAX_BYTES, MAX_REPLY };
