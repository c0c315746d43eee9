// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QVariantMap>

//! Examines files before QML reads them, known to QML as the type FileCheck. Stateless. QML reads a file as a whole on
//! the main thread: a FIFO would block the window until someone writes to it, and a huge file would exhaust the memory.
class FileCheck : public QObject
{
    Q_OBJECT

public:
    //! Examines a path without opening the file; follows symbolic links. Only a file system that hangs can block it.
    //! @return "kind": "file", "folder", "special" (such as a FIFO, socket or device), "missing", or "unreadable" for a
    //! file without permission; "size": in bytes, 0 unless it is a file
    Q_INVOKABLE QVariantMap examine(const QString &path) const;
    //! Reads a file, if it is small enough, to tell whether an editor can show its text and write all of it back.
    //! @param maximumSize in bytes
    //! @return as examine(), but "kind" may also be "large"; "binary", if the bytes are no text in the encoding of the
    //! locale; or "unsuitable", if the text has characters or mixed line breaks that Qt's text documents don't keep.
    //! For a "file" also "lineBreak": "\n" or "\r\n", and "byteOrderMark": whether it begins with one.
    Q_INVOKABLE QVariantMap examineText(const QString &path, double maximumSize) const;
    //! A text that differs when the file has been written, replaced or removed. Empty if there is no file.
    Q_INVOKABLE QString stamp(const QString &path) const;
};
