// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>

//! The way of QML texts to KDE's translation catalogue of the domain "loomra-kde". Holds no state.
class I18nHelper : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    //! The translation of a text, or the text itself where the catalogue has none. KI18n answers an empty text and one
    //! with a place holder such as "%1" by a note of its own, so QML passes neither.
    Q_INVOKABLE QString tr(const QString &text) const;
};
