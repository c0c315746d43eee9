// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "../../../../components/logic/Translatable.js" as Translatable

// Text files that are attached to a prompt: which files are accepted, and what the user and the bridge get of them.

const mark = Translatable.mark;

var maxFiles = 2;
//! Characters of a file that are sent.
var maxChars = 2000;
//! Larger files are refused: they would be read as a whole, which blocks the window. In bytes.
var maxSize = 10 * 1024 * 1024;

var textExtensions = ["txt", "md", "json", "jsonc", "js", "ts", "py", "cpp", "h", "c", "qml", "xml", "yaml", "yml",
                      "toml", "ini", "cfg", "conf", "csv", "log", "sh", "bash", "zsh", "html", "css", "scss", "sql",
                      "rs", "go", "java", "kt", "rb", "lua", "cmake", "service"];
var binaryExtensions = ["pdf", "doc", "docx", "xls", "xlsx", "ppt", "pptx", "odt", "ods", "odp", "zip", "tar", "gz",
                        "bz2", "xz", "7z", "rar", "png", "jpg", "jpeg", "gif", "bmp", "webp", "svg", "ico", "mp3",
                        "mp4", "wav", "flac", "ogg", "avi", "mkv", "mov", "webm", "exe", "bin", "so", "o", "a", "deb",
                        "rpm", "appimage", "sqlite", "db", "wasm"];

const scheme = "file://";
// A character of one to four bytes, but not half a surrogate pair.
const encodedCharacter = /%[0-7][\da-f]|%[cd][\da-f]%[89ab][\da-f]|%e(?!d%[ab])[\da-f](?:%[89ab][\da-f]){2}|%f[0-7](?:%[89ab][\da-f]){3}/gi;

// The rows that the user sees, as Markdown. The first ones, up to "truncated", are in the order in which they apply.
var texts = {
    kinds: mark("**Accepted:** Plain-text files — .txt, .md, .json, .js, .ts, .py, .cpp, .h, .qml, .css, .html, .xml, .yaml, .yml, .toml, .ini, .cfg, .sh, .bash, .log, .csv, .sql, .rs, .go, .java, .kt, .rb, .c, .cmake, etc.\n"
                + "**Not accepted:** Binary files — images (.png, .jpg, .gif, .svg), documents (.pdf, .doc, .xlsx, .ppt), archives (.zip, .tar, .7z), media (.mp3, .mp4, .wav), executables (.exe, .bin, .so, .deb, .appimage), databases (.sqlite, .db).\n"
                + "Max **2** files, up to **2000** chars each."),
    full: mark("Maximum 2 files allowed. Use `/detach` to clear, then attach again."),
    noName: mark("No file selected."),
    binary: mark("**{name}** is a binary file and can't be read as text.\nPlease select a text-based file (code, config, logs, markdown, etc.)."),
    fullNow: mark("Maximum 2 files. Use `/detach` first."),
    missing: mark("Could not read **{name}**: the file no longer exists."),
    folder: mark("Could not read **{name}**: it is a folder."),
    special: mark("Could not read **{name}**: it is not a regular file."),
    unreadable: mark("Could not read **{name}**: you have no permission to read it."),
    large: mark("Could not read **{name}**: it is larger than 10 MB."),
    failed: mark("Could not read **{name}** (status {status})."),
    empty: mark("**{name}** appears to be empty."),
    attached: mark("Attached **{name}** ({chars} chars). Now type your question."),
    attachedCut: mark("Attached **{name}** ({chars} chars (truncated to 2000)). Now type your question."),
    nothing: mark("No files attached."),
    removed: mark("Removed {count} attached file(s).")
};

/** A row of the table above, translated and with its placeholders filled in. values.name is shown literally. */
function row(key, tr, values) {
    const shown = Object.assign({}, values);
    if (shown.name !== undefined) {
        shown.name = LiteralText.asMarkdown(shown.name);
    }
    return Translatable.filled(Translatable.translated(texts[key], tr), shown);
}

/** Decodes %XX. Sequences that are not UTF-8 stay as they are. */
function percentDecoded(text) {
    return text.replace(encodedCharacter, sequence => {
        try {
            return decodeURIComponent(sequence);
        } catch (error) {
            return sequence; // an overlong form
        }
    });
}

/** The path in the URL of a local file, "" for any other URL. */
function pathOf(url) {
    return url.startsWith(scheme + "/") ? percentDecoded(url.substring(scheme.length)) : "";
}

/** The last part of a path. */
function nameOf(path) {
    return path.substring(path.lastIndexOf("/") + 1);
}

/** Whether the extension of a name is that of a binary file. */
function isBinary(name) {
    const dot = name.lastIndexOf(".");
    return dot >= 0 && binaryExtensions.includes(name.substring(dot + 1).toLowerCase());
}

/** The filters of the file dialog. */
function nameFilters(tr) {
    const patterns = textExtensions.map(extension => "*." + extension).join(" ");
    return [Translatable.translated(mark("Text & code files"), tr) + " (" + patterns + ")",
            Translatable.translated(mark("All files"), tr) + " (*)"];
}

/**
 * Why a file isn't read, as a key of texts; "" if it can be read. found: {kind, size} of FileCheck. An empty file isn't
 * read either, because files of the kernel that seem empty may block.
 */
function refusal(found) {
    if (found.kind !== "file") {
        return texts.hasOwnProperty(found.kind) ? found.kind : "special";
    }
    if (found.size === 0) {
        return "empty";
    }
    return found.size > maxSize ? "large" : "";
}

/** The entry of a file: {name, path, content, chars}, with chars before the content was cut. */
function entry(name, path, content) {
    const isCut = content.length > maxChars;
    return {
        name: name,
        path: path,
        content: isCut ? content.substring(0, maxChars) + "\n…(truncated at 2000 chars)" : content,
        chars: content.length
    };
}

/** The text before a question about attached files, "" without files. files: array of {name, path, content}. */
function contextPrefix(files) {
    return files.map(file => "--- File: " + file.name + " (path: " + file.path + ") ---\n"
                             + "```\n" + file.content + "\n```\n\n").join("");
}
