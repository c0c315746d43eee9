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

//! Repairs what speech engines mishear again and again, by rules from a JSON file: short commands as a whole, literal
//! words, and product names found exactly or by edit distance. Without rules it isn't asked, see isLoaded().
//! One thread.
class SttPostProcessor
{
public:
    //! Loads the rules of the program's resources.
    void loadInstalledRules();
    //! Loads the file @p resource, or @p fallback where that can't be opened. Warns when neither can be read.
    void loadRulesFrom(const QString &resource, const QString &fallback);
    //! Takes these rules in place of those before. Bad JSON is warned of and changes nothing; bad rows are left out.
    void loadRules(const QByteArray &json);
    //! Rules have been read, be it none.
    bool isLoaded() const { return m_loaded; }

    //! What was meant by a whole utterance. Its closing punctuation is lost, unless there is nothing else.
    QString correctFinal(const QString &text) const;
    //! The same while the user speaks: words and product names alone.
    QString correctPartial(const QString &text) const;

    //! Literal replacements, inside of longer words too, each row on the result of the one before.
    QString applyWordReplacements(const QString &text) const;
    //! Product names in their spelling, each row on the result of the one before.
    QString applyProductNames(const QString &text) const;

private:
    void readProductNames(const QJsonObject &root);
    void readCommandAliases(const QJsonObject &root);
    void readWordReplacements(const QJsonObject &root);

    //! Canonical spelling, and what is heard for it, in lower case.
    QVector<QPair<QString, QStringList>> m_productNames;
    //! Patterns for an utterance in lower case, and what it becomes.
    QVector<QPair<QRegularExpression, QString>> m_commandAliases;
    //! What is heard, in lower case, and what it becomes.
    QVector<QPair<QString, QString>> m_wordReplacements;
    bool m_loaded = false;
};
