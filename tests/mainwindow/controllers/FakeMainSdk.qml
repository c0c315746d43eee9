// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../../omnibar/controllers"

//! The SDK client as the main window sees it. It records calls and emits only what a test makes it emit.
CallRecorder {
    id: sdk

    property bool ready: true
    property string currentModel: "default"
    property string currentAgent: "build"
    property string currentSessionId: ""

    signal chatResponse(string response)
    signal chatStreamChunk(string chunk)
    signal codeGenerated(string code)
    signal error(string error)
    signal modelsListed(var models)
    signal agentsListed(var agents)
    signal messagesLoaded(var messages)
    signal sessionsListed(var sessions)
    signal sessionCreated(string sessionId)
    signal sessionSwitched(string sessionId)
    signal sessionRenamed(string sessionId, string newName)
    signal sessionDeleted(string sessionId)

    function initialize() { note("initialize", []); }
    function sendChatMessage(message) { note("sendChatMessage", [message]); }
    function listModels() { note("listModels", []); }
    function listAgents() { note("listAgents", []); }
    function listSessions() { note("listSessions", []); }
    function createSession() { note("createSession", []); }
    function switchSession(sessionId) { note("switchSession", [sessionId]); }
    function renameSession(sessionId, newName) { note("renameSession", [sessionId, newName]); }
    function deleteSession(sessionId) { note("deleteSession", [sessionId]); }
    function loadMessages(sessionId) { note("loadMessages", [sessionId]); }
}
