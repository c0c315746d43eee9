// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "FaultInjection.h"

#include <QByteArray>
#include <QProcessEnvironment>

//! Faults of the machine that last from the start of a program to its end, as rows of a test.
namespace MachineFaults
{

enum class Fault
{
    NoSessionBus,
    NoHome, //!< it doesn't exist and can't be made
    NoNameOfTheHome, //!< the variable isn't set
    ReadOnlyHome,
    FullDisk,
    NoThemeAndIcons,
};

//! Rows with the column "fault".
void addRows();

//! Makes a program that is started in this environment suffer from the fault.
//! @param faults must know the environment
void arrange(Fault fault, QProcessEnvironment &environment, FaultInjection &faults);

//! What the program logs because of it; empty if it logs nothing.
QByteArray words(Fault fault);

} // namespace MachineFaults

Q_DECLARE_METATYPE(MachineFaults::Fault)
