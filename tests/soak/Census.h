// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QMap>

//! Counts every QObject of the process, also those that no parent and no window reaches.
namespace Census
{

//! Begins to count. Objects that exist already are not counted. Call it before the application object is created.
void start();

//! The objects that exist now, by class.
QMap<QByteArray, int> byClass();

//! The timers that run now in the calling thread, by the class of their objects. QML timers and QML animations count
//! too.
QMap<QByteArray, int> runningTimers();

} // namespace Census
