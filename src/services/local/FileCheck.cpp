// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FileCheck.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>

namespace
{

constexpr qint64 s_part = 1024 * 1024; // bytes

const QByteArray s_byteOrderMark = QByteArrayLiteral("\xEF\xBB\xBF");

QString kindOf(const QFileInfo &file)
{
    if (!file.exists()) {
        return QStringLiteral("missing");
    }
    if (file.isDir()) {
        return QStringLiteral("folder");
    }
    if (!file.isFile()) {
        return QStringLiteral("special");
    }
    return file.isReadable() ? QStringLiteral("file") : QStringLiteral("unreadable");
}

//! Whether reading the bytes as text and writing that again gives the same bytes. FileService reads in this way.
bool isText(const QByteArray &bytes, const QString &text)
{
    if (bytes.contains('\0')) {
        return false;
    }
    QByteArray written;
    QTextStream(&written) << text;
    return written == bytes;
}

//! Whether a text document returns something else for this character, such as a space for a no-break space.
bool isChangedByDocuments(QChar character)
{
    switch (character.unicode()) {
    case 0x00A0: // no-break space
    case 0x2028: // line separator
    case 0x2029: // paragraph separator
    case 0xFDD0: // QTextBeginningOfFrame
    case 0xFDD1: // QTextEndOfFrame
        return true;
    default:
        return false;
    }
}

} // namespace

QVariantMap FileCheck::examine(const QString &path) const
{
    const QFileInfo file(path);
    const QString kind = kindOf(file);
    // A double, because QML has no 64-bit integers.
    const double size = kind == QLatin1String("file") ? static_cast<double>(file.size()) : 0;
    return {{QStringLiteral("kind"), kind}, {QStringLiteral("size"), size}};
}

QVariantMap FileCheck::examineText(const QString &path, double maximumSize) const
{
    QVariantMap found = examine(path);
    const auto ofKind = [&found](const char *kind) {
        found.insert(QStringLiteral("kind"), QString::fromLatin1(kind));
        return found;
    };
    if (found.value(QStringLiteral("kind")) != QLatin1String("file")) {
        return found;
    }
    const double size = found.value(QStringLiteral("size")).toDouble();
    if (!(size <= maximumSize)) { // also if the maximum is NaN
        return ofKind("large");
    }
    QByteArray bytes;
    // Files of the kernel that seem empty may block.
    if (size > 0) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            return ofKind("unreadable");
        }
        // In parts, because the maximum may be any number.
        QByteArray part;
        do {
            part = file.read(s_part);
            bytes += part;
        } while (!part.isEmpty() && bytes.size() <= maximumSize);
    }
    if (bytes.size() > maximumSize) {
        return ofKind("large"); // it has grown
    }

    const bool hasMark = bytes.startsWith(s_byteOrderMark);
    if (hasMark) {
        bytes.remove(0, s_byteOrderMark.size());
    }
    const int breaks = bytes.count('\n');
    const int returns = bytes.count('\r');
    const bool isWindowsText = returns > 0 && returns == breaks && bytes.count("\r\n") == breaks;
    const QString text = QTextStream(bytes).readAll();
    if (!isText(bytes, text)) {
        return ofKind("binary");
    }
    if ((returns > 0 && !isWindowsText) || std::any_of(text.cbegin(), text.cend(), isChangedByDocuments)) {
        return ofKind("unsuitable");
    }
    found.insert(QStringLiteral("lineBreak"), isWindowsText ? QStringLiteral("\r\n") : QStringLiteral("\n"));
    found.insert(QStringLiteral("byteOrderMark"), hasMark);
    return found;
}

QString FileCheck::stamp(const QString &path) const
{
    const QFileInfo file(path);
    if (!file.exists()) {
        return {};
    }
    return QStringLiteral("%1 %2").arg(file.lastModified().toMSecsSinceEpoch()).arg(file.size());
}
