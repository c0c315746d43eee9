// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import org.kde.loomra.components.controls 1.0

import "../AgentConfig.js" as AgentConfig
import "../ConfigObject.js" as ConfigObject

//! The agent tool's configuration, which the pages of the settings share: a copy of it, its unsaved changes, and what is
//! wrong with the file. Pages push whole sections. Without configManager everything is empty, and nothing can be saved.
QtObject {
    id: controller

    property var manager: typeof configManager === "undefined" ? null : configManager
    property var configData: ({ agent: {} })
    property bool hasUnsavedChanges: false
    //! What the user has to know before the file is replaced: "invalid" if it isn't a JSON object or can't be read, which
    //! makes the configuration empty; "changed" if somebody else has written it since it was read here; or empty.
    property string problem: ""
    //! Increased when all fields must forget what the user has typed.
    property int revision: 0

    readonly property string path: call("getLoomraConfigPath", "")
    readonly property string schema: call("getLoomraConfigSchema", "")

    //! A short notice for the user, shown for this many milliseconds.
    signal notified(string text, int duration)

    //! The result of a function of the manager without arguments, or the fallback if there is no such function.
    function call(name, fallback) {
        return manager && typeof manager[name] === "function" ? manager[name]() : fallback;
    }

    //! Reads the file. Unsaved changes are lost.
    function reload() {
        readBack();
        const agents = ConfigObject.get(configData, "agent");
        if (AgentConfig.needsCleaning(agents)) {
            push("agent", AgentConfig.cleaned(agents));
            hasUnsavedChanges = !write();
        }
        revision += 1;
    }

    function readBack() {
        const config = copyOf(load());
        configData = ConfigObject.has(config, "agent") ? config : ConfigObject.withValue(config, "agent", {});
        hasUnsavedChanges = false;
        problem = lastingProblem();
    }

    //! The problem of the file as it was read.
    function lastingProblem() {
        return call("isLoomraConfigValid", true) ? "" : "invalid";
    }

    function load() {
        try {
            return call("getLoomraConfig", {});
        } catch (error) {
            // A key "__proto__" that is no object. The file is read nevertheless.
            return {};
        }
    }

    //! The text is preferred, because a key "__proto__" gets lost when an object comes from C++.
    function copyOf(config) {
        try {
            return JSON.parse(call("getLoomraConfigAsString", JSON.stringify(config)));
        } catch (error) {
            // A number that only C++ can represent.
            return JSON.parse(JSON.stringify(config));
        }
    }

    //! Replaces a section here and in the manager; the file stays.
    function push(section, value) {
        const functions = {
            agent: "updateAgents",
            tools: "updateTools",
            permission: "updatePermissions",
            mcp: "updateMcp",
            provider: "updateProviders"
        };
        configData = ConfigObject.withValue(configData, section, value);
        if (manager && typeof manager[functions[section]] === "function")
            manager[functions[section]](value);
    }

    //! Looks for changes that somebody else has made in the file.
    function checkFile() {
        const isChanged = call("isLoomraConfigChangedOnDisk", false);
        if (isChanged)
            problem = "changed";
        else if (problem === "changed")
            problem = lastingProblem();
        return isChanged;
    }

    //! Saves on behalf of the user, who has to ask twice if that replaces changes of somebody else.
    function save() {
        const isWarned = problem === "changed";
        if (checkFile() && !isWarned)
            return false;
        if (!write())
            return false;
        hasUnsavedChanges = false;
        notified(Translation.tr("Configuration saved successfully"), 2000);
        return true;
    }

    //! Saves a change at once, unless that replaces a file that could not be parsed, or changes of somebody else: then
    //! it stays unsaved until the user saves.
    //! @return whether it was saved
    function saveAtOnce() {
        if (mustAsk() || !write()) {
            hasUnsavedChanges = true;
            return false;
        }
        return true;
    }

    //! Whether only the user may replace the file.
    function mustAsk() {
        return checkFile() || problem !== "";
    }

    function write() {
        if (call("saveLoomraConfig", false)) {
            problem = "";
            return true;
        }
        notified(Translation.tr("Failed to save configuration"), 3000);
        return false;
    }
}
