// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

//! Memory, threads and plugins of this process. Linux only.
namespace Process
{

//! Resident memory in bytes, including shared pages. Ends the benchmark if /proc can't be read.
double residentMemory();

//! Resident memory in bytes by mapping: the path of a file, "[heap]", or "anonymous".
QMap<QByteArray, double> residentMappings();

//! Returns the allocator's free memory to the system, so that two figures can be compared.
void giveBackMemory();

//! The processor time in ns of the threads with which software rendering takes the place of a graphics card.
qint64 rendererWork();

//! The sorted paths of the loaded QML plugins, one per imported module.
QList<QByteArray> qmlPlugins();

} // namespace Process
