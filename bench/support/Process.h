// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

//! What the running process is made of. Linux only, as is the program.
namespace Process
{

//! Resident memory in bytes, shared pages included. Ends the benchmark where the kernel doesn't tell.
double residentMemory();

//! The same in bytes by what is mapped: files by their path, "[heap]", and "anonymous" for the rest.
QMap<QByteArray, double> residentMappings();

//! Gives back to the system what the allocator only keeps for later, so that two figures can be compared.
void giveBackMemory();

//! The QML plugins that are mapped into the process, sorted paths. They stand for the modules that it imports.
QList<QByteArray> qmlPlugins();

} // namespace Process
