// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the layout in which the agent tool's configuration is written.
//
// The part before the first zero byte is the file as it was read. The rest is the object to write; without a zero byte
// it is that of the file.

#include "JsonLayout.h"
#include "Require.h"

#include <QJsonDocument>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int end = input.indexOf('\0');
    const QByteArray original = input.left(end);
    const QJsonDocument document = QJsonDocument::fromJson(end < 0 ? original : input.mid(end + 1));
    // Qt itself doesn't always get the same object back, for instance of keys with a zero character.
    if (!document.isObject() || QJsonDocument::fromJson(document.toJson()) != document) {
        return 0;
    }
    const QByteArray written = JsonLayout::write(document.object(), original);
    const QJsonDocument again = QJsonDocument::fromJson(written);
    require(again.isObject(), "what is written can be parsed");
    require(again.object() == document.object(), "nothing is lost or added");
    require(JsonLayout::write(document.object(), written) == written, "a second write changes nothing");
    return 0;
}
