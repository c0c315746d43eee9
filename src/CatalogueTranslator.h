// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QTranslator>

//! Answers Qt's own translation functions, such as qsTr() in QML, from KDE's translation catalogue of the application,
//! so that one catalogue has all texts. Thread-safe.
class CatalogueTranslator : public QTranslator
{
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    //! The translation, with placeholders such as "%1" left in it; null if the catalogue has none, so that the next
    //! translator is asked. The context is ignored because the catalogue has texts without one, except for "Plural":
    //! then the disambiguation is the English singular, under which the catalogue has the text, and @p n selects the
    //! form. The catalogue has no plural forms for Qt's "%n".
    QString translate(const char *context, const char *sourceText, const char *disambiguation = nullptr,
                      int n = -1) const override;
    bool isEmpty() const override { return false; }
};
