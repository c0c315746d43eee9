// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

.pragma library
.import "../../../../components/logic/Translatable.js" as Translatable

// Display names of agents, capabilities and phases. The last argument of each function is the translating function;
// without it the result is English. Maps instead of objects, because ids are untrusted and every object has a
// "constructor".

const mark = Translatable.mark;

const agentNames = new Map([
    ["kde-desktop-agent", mark("Desktop Agent")],
    ["plasma-panel", mark("Panel Agent")],
    ["planner", mark("Planner")],
    ["chat", mark("Chat")],
    ["safe-executor-agent", mark("Safe Executor")],
    ["system-settings-agent", mark("Settings Agent")],
    ["automation-agent", mark("Automation Agent")],
    ["desktop-diagnosis-agent", mark("Diagnosis Agent")],
    ["panel-customizer-agent", mark("Panel Customizer")]
]);

const capabilityNames = new Map([
    ["theme.apply", mark("Apply theme")],
    ["theme.preview", mark("Preview theme")],
    ["panel.theme.set", mark("Set panel theme")],
    ["panel.opacity.set", mark("Set panel opacity")],
    ["panel.get_layout", mark("Read panel layout")],
    ["power.screen_off_timeout.set", mark("Screen timeout")],
    ["power.screenlock_timeout.set", mark("Screen lock timeout")],
    ["power.lock_screen", mark("Lock screen")],
    ["power.profile.set", mark("Power profile")],
    ["power.profile.get", mark("Read power profile")],
    ["settings.write", mark("Write setting")],
    ["settings.read", mark("Read setting")],
    ["display.brightness.set", mark("Set brightness")],
    ["display.brightness.get", mark("Get brightness")],
    ["kde.launch_app", mark("Launch app")],
    ["kde.close_window", mark("Close window")],
    ["kde.move_window", mark("Move window")],
    ["kde.resize_window", mark("Resize window")],
    ["kde.set_wallpaper", mark("Set wallpaper")],
    ["kde.notify", mark("Send notification")],
    ["kde.lock_screen", mark("Lock screen")],
    ["kde.mute_audio", mark("Mute audio")],
    ["kde.set_volume", mark("Set volume")],
    ["kde.get_volume", mark("Get volume")]
]);

const phaseNames = new Map([
    ["creating", mark("Planning…")],
    ["executing", mark("Executing…")]
]);

/** The display name of an agent, the id itself if that is unknown. */
function agentDisplayName(id, tr) {
    return agentNames.has(id) ? Translatable.translated(agentNames.get(id), tr) : String(id || "");
}

/** The display name of a capability. An unknown id is returned with spaces for dots and underscores. */
function friendlyCapabilityName(id, tr) {
    return capabilityNames.has(id) ? Translatable.translated(capabilityNames.get(id), tr)
                                   : String(id || "").replace(/[._]/g, " ");
}

/** The label of a phase: the agent's name while routing. An unknown phase is returned unchanged. */
function phaseLabel(phase, routedAgent, tr) {
    if (phase === "routing") {
        return agentDisplayName(routedAgent, tr);
    }
    return phaseNames.has(phase) ? Translatable.translated(phaseNames.get(phase), tr) : String(phase || "");
}

/** The label of a running step of a plan. index counts from 0; it is shown if there is more than one step. */
function runningLabel(capability, index, total, tr) {
    const step = total > 1 ? " (" + (index + 1) + "/" + total + ")" : "";
    // No spaces around {step}, because it may be empty.
    return Translatable.filled(Translatable.translated(mark("Running “{capability}”{step}…"), tr),
                               { capability: friendlyCapabilityName(capability, tr), step: step });
}
