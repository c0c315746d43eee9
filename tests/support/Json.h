// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

//! The object in a JSON text, e.g. for expected values; empty if the text is no object.
inline QJsonObject json(const QByteArray &utf8)
{
    return QJsonDocument::fromJson(utf8).object();
}

inline QJsonObject json(const char *utf8)
{
    return json(QByteArray(utf8));
}

inline QJsonObject json(const QString &text)
{
    return json(text.toUtf8());
}

//! The text without whitespace, as it goes over the wire.
template<typename ObjectOrArray = QJsonObject>
QString compactJson(const ObjectOrArray &json)
{
    return QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact));
}
