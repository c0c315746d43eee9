// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

const { models } = require('./models');

const agent = (id, name, description) => ({ id, name, description });

const agents = [
    agent('auto', 'Assistant', 'Chooses the agent that fits the prompt.'),
    agent('chat', 'Chat', 'Answers without acting on the desktop.'),
    agent('planner', 'Planner', 'Breaks a wish into steps.'),
    agent('kde-desktop-agent', 'Desktop Agent', 'Opens, closes and moves windows.'),
    agent('plasma-panel', 'Panel Agent', 'Reads and changes the panels.'),
    agent('panel-customizer-agent', 'Panel Customizer', 'Styles the panels.'),
    agent('system-settings-agent', 'Settings Agent', 'Reads and writes settings.'),
    agent('automation-agent', 'Automation Agent', 'Keeps automations.'),
    agent('desktop-diagnosis-agent', 'Diagnosis Agent', 'Looks for what is wrong.'),
    agent('safe-executor-agent', 'Safe Executor', 'Runs approved steps.'),
];

module.exports = { agents, models };
