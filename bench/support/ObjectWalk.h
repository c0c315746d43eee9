// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

class QObject;

//! A walk over all objects that can be reached from some, as children or as items of a window.
namespace ObjectWalk
{

//! Every running QML timer and animation and every active native timer, with its class and where it lies.
QStringList runningIn(const QList<QObject *> &roots);

} // namespace ObjectWalk
