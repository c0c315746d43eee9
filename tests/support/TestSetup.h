// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

//! Set-up within a test process. Its environment (home, bus, display, network) is made by tests/support/environment.
namespace TestSetup
{

//! Sets the same about-data as the program, which determines where settings are stored. Call before anything uses
//! QSettings, best in initTestCase(). Main thread, after the application object.
void setAboutData();

//! The file of a default-constructed QSettings, determined without QSettings.
QString settingsFile();

//! Clears the default QSettings, so that a test doesn't see values that another one stored.
void clearSettings();

} // namespace TestSetup
