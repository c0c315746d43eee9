// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

class QObject;

//! Finds activity in all objects that can be reached from some roots, as children or as items of a window.
namespace ObjectWalk
{

//! Each running QML timer or animation and each active native timer, with its class and its parents.
QStringList runningIn(const QList<QObject *> &roots);

} // namespace ObjectWalk
