// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>

//! Translates texts for QML with KDE's translation catalogue of the domain "loomra-kde". Stateless.
class I18nHelper : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    //! The translation of a text, or the text itself if the catalogue has none. Don't pass an empty text or one with a
    //! placeholder such as "%1": KI18n returns an error note for these.
    Q_INVOKABLE QString tr(const QString &text) const;
};
