// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QPair>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>

class QByteArray;
class QJsonObject;

//! Corrects words that speech engines often get wrong, with rules from a JSON file: aliases for short commands, literal
//! replacements, and product names that are found exactly or by edit distance. Not used without rules, see isLoaded().
//! Not thread-safe.
class SttPostProcessor
{
public:
    //! Loads the rules from the program's resources.
    void loadInstalledRules();
    //! Loads the file @p resource, or @p fallback if that can't be opened. Logs a warning if both fail.
    void loadRulesFrom(const QString &resource, const QString &fallback);
    //! Replaces the rules. Invalid JSON logs a warning and changes nothing; invalid rows are skipped.
    void loadRules(const QByteArray &json);
    //! Whether rules have been loaded, even if there are none in the file.
    bool isLoaded() const { return m_loaded; }

    //! Corrects the transcript of a whole utterance. Removes its closing punctuation, unless there is nothing else.
    QString correctFinal(const QString &text) const;
    //! Corrects a transcript while the user speaks: only words and product names.
    QString correctPartial(const QString &text) const;

    //! Applies the literal replacements in order, also inside longer words.
    QString applyWordReplacements(const QString &text) const;
    //! Applies the product names in order.
    QString applyProductNames(const QString &text) const;

private:
    void parseProductNames(const QJsonObject &root);
    void parseCommandAliases(const QJsonObject &root);
    void parseWordReplacements(const QJsonObject &root);

    //! The canonical spelling and its variants, in lower case.
    QVector<QPair<QString, QStringList>> m_productNames;
    //! Patterns for an utterance in lower case, and the replacements.
    QVector<QPair<QRegularExpression, QString>> m_commandAliases;
    //! The texts to replace, in lower case, and the replacements.
    QVector<QPair<QString, QString>> m_wordReplacements;
    bool m_loaded = false;
};
