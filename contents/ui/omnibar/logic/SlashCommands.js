// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/LiteralText.js" as LiteralText
.import "../../../../components/logic/Translatable.js" as Translatable

// Local commands, which the user types after a "/". A row of the table is all that a command needs.

const mark = Translatable.mark;

/**
 * name         in lower case
 * icon         name of a theme icon
 * description  shown in the menu and by the command help
 * run          executes the command; target: the SlashCommandController, argument: the words after the command
 */
const commands = [
    { name: "help", icon: "help-about", description: mark("Show all available commands"),
      run: (target, argument) => target.showHelp() },
    { name: "new", icon: "document-new", description: mark("Start a new chat session"),
      run: (target, argument) => target.startSession() },
    { name: "clear", icon: "edit-clear-history", description: mark("Clear the chat display"),
      run: (target, argument) => target.bar.clearConversation() },
    { name: "session", icon: "view-history", description: mark("List and switch sessions"),
      run: (target, argument) => target.bar.openSessions(argument) },
    { name: "attach", icon: "mail-attachment", description: mark("Attach a text file as context (max 2)"),
      run: (target, argument) => target.bar.chooseFile() },
    { name: "detach", icon: "edit-clear", description: mark("Remove all attached files"),
      run: (target, argument) => target.bar.detachFiles() },
    { name: "about", icon: "help-about-symbolic", description: mark("About this app"),
      run: (target, argument) => target.showAbout() }
];

const shownIdLength = 8;
const sessionLine = mark("**Session:** {session}");
const aboutLines = [
    mark("**Tovi for KeldaOS**"),
    mark("Version {version} · Loomra Meridan"),
    "",
    mark("A native KDE desktop assistant powered by AI."),
    mark("Chat, voice, desktop control, and workspace intelligence."),
    "",
    mark("**Current model:** {model}"),
    sessionLine,
    mark("**Bridge:** {status}"),
    "",
    mark("Built with Qt5, KDE Frameworks 5, and Loomra SDK.")
];

/** The commands whose name starts with the filter in any case. */
function filtered(filter) {
    const start = filter.toLowerCase();
    return commands.filter(command => command.name.startsWith(start));
}

/** What follows the "/" that begins a text, after surrounding whitespace is removed; null for any other text. */
function filterOf(text) {
    const trimmed = text.trim();
    return trimmed.startsWith("/") ? trimmed.substring(1) : null;
}

/** The command in a text as {command, argument}, null if there is none. The argument's words are joined by spaces. */
function parse(text) {
    const rest = filterOf(text);
    if (rest === null) {
        return null;
    }
    const words = rest.split(/\s+/).filter(word => word !== "");
    const name = words.length > 0 ? words[0].toLowerCase() : "";
    const command = commands.find(row => row.name === name);
    return command ? { command: command, argument: words.slice(1).join(" ") } : null;
}

/** All commands as Markdown. */
function helpText(tr) {
    const lines = commands.map(row => "**/" + row.name + "** — " + Translatable.translated(row.description, tr));
    return [Translatable.translated(mark("**Available commands:**"), tr)]
        .concat(lines, Translatable.translated(mark("Type `/` in the input to see suggestions."), tr))
        .join("\n");
}

/** What the command about shows, as Markdown. facts: {version, model, session, status}; all but the first may be missing. */
function aboutText(facts, tr) {
    const session = facts.session ? LiteralText.asMarkdown(facts.session.substring(0, shownIdLength) + "…") : "";
    const values = {
        version: facts.version,
        model: LiteralText.asMarkdown(facts.model || Translatable.translated(mark("(default)"), tr)),
        session: session,
        status: LiteralText.asMarkdown(facts.status || Translatable.translated(mark("unknown"), tr))
    };
    return aboutLines.filter(line => line !== sessionLine || session !== "")
        .map(line => Translatable.filled(Translatable.translated(line, tr), values))
        .join("\n");
}
