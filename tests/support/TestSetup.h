// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! What a test process needs before the objects under test exist. Its surroundings (home, bus, display, network) are
//! made by the test runner.
namespace TestSetup
{

//! Gives the application the about-data's component name, by which all stores are found. Call before anything uses
//! QSettings, best in initTestCase(). Main thread, after the application object.
void setAboutData();

//! The file behind a default-constructed QSettings, told without asking QSettings.
QString settingsFile();

//! Empties the default QSettings, so that one test doesn't see what another one stored.
void clearSettings();

} // namespace TestSetup
