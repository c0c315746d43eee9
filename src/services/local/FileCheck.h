// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QVariantMap>

//! Examines files before QML reads them, known to QML as the type FileCheck. QML reads a file as a whole on the main
//! thread: a FIFO would block the window until someone writes to it, and a huge file would exhaust the memory.
class FileCheck : public QObject
{
    Q_OBJECT

public:
    //! Examines a path without opening the file; follows symbolic links. Only a file system that hangs can block it.
    //! @return "kind": "file", "folder", "special" (such as a FIFO, socket or device), "missing", or "unreadable" for a
    //! file without permission; "size": in bytes, 0 unless it is a file
    Q_INVOKABLE QVariantMap examine(const QString &path) const;
};
