// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SttPostProcessor.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVarLengthArray>

#include <algorithm>
#include <functional>
#include <numeric>

namespace
{

//! Minimum length for matches by edit distance, in characters. Too many shorter words resemble each other.
constexpr int s_minFuzzyLength = 4;

//! Converts to lower case and keeps the index of every character. QString::toLower() would turn the dotted capital I
//! into two characters, and doesn't handle unpaired surrogates.
QString lowered(const QString &text)
{
    QString result = text;
    QChar *const end = result.end();
    for (QChar *c = result.begin(); c < end; ++c) {
        if (c->isHighSurrogate() && c + 1 < end && c[1].isLowSurrogate()) {
            const uint low = QChar::toLower(QChar::surrogateToUcs4(c[0], c[1]));
            *c = QChar(QChar::highSurrogate(low));
            *++c = QChar(QChar::lowSurrogate(low));
        } else {
            *c = *c == QChar(0x130) ? QChar(u'i') : c->toLower();
        }
    }
    return result;
}

bool isLetterOrDigit(QChar c)
{
    const ushort code = c.unicode();
    if (code < 128) {
        return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') || (code >= '0' && code <= '9');
    }
    return c.isLetterOrNumber();
}

bool isPhrase(const QString &variant)
{
    return variant.contains(QLatin1Char(' '));
}

//! Replaces each @p what (lower case, not empty) by @p replacement if the index of its end in @p text is accepted.
//! Doesn't search the replacement.
QString replaced(const QString &text, const QString &what, const QString &replacement,
                 const std::function<bool(int end)> &accepts)
{
    const QString low = lowered(text);
    QString result;
    int copied = 0;
    int hit = low.indexOf(what);
    while (hit >= 0) {
        const int end = hit + what.size();
        if (accepts(end)) {
            result.append(text.midRef(copied, hit - copied));
            result.append(replacement);
            copied = end;
            hit = low.indexOf(what, end);
        } else {
            hit = low.indexOf(what, hit + 1);
        }
    }
    return copied == 0 ? text : QString(result + text.midRef(copied));
}

//! The edit distance: the number of letters to insert, delete or change.
int levenshtein(const QString &a, const QString &b)
{
    QVarLengthArray<int, 32> before(b.size() + 1);
    QVarLengthArray<int, 32> now(b.size() + 1);
    std::iota(before.begin(), before.end(), 0);
    for (int i = 0; i < a.size(); ++i) {
        now[0] = i + 1;
        for (int j = 0; j < b.size(); ++j) {
            const int change = before[j] + (a.at(i).toLower() == b.at(j).toLower() ? 0 : 1);
            now[j + 1] = std::min({change, before[j + 1] + 1, now[j] + 1});
        }
        std::swap(before, now);
    }
    return before.last();
}

bool resembles(const QString &word, const QString &variant)
{
    const int limit = variant.size() < 8 ? 1 : variant.size() / 4;
    return qAbs(word.size() - variant.size()) <= limit && levenshtein(word, variant) <= limit;
}

bool matchesAny(const QString &word, const QStringList &variants)
{
    const QString low = lowered(word);
    const auto isExact = [&](const QString &variant) { return !isPhrase(variant) && variant == low; };
    const auto isFuzzy = [&](const QString &variant) {
        return !isPhrase(variant) && variant.size() >= s_minFuzzyLength && resembles(low, variant);
    };
    return std::any_of(variants.cbegin(), variants.cend(), isExact)
        || (word.size() >= s_minFuzzyLength && std::any_of(variants.cbegin(), variants.cend(), isFuzzy));
}

//! Replaces single words that match a variant by @p canonical. Keeps the punctuation after a word.
QString wordsReplaced(const QString &text, const QString &canonical, const QStringList &variants)
{
    QStringList words = text.split(QLatin1Char(' '));
    for (QString &word : words) {
        const auto last = std::find_if(word.crbegin(), word.crend(), isLetterOrDigit);
        const auto length = static_cast<int>(word.crend() - last);
        const QString core = word.left(length);
        if (core.size() >= 2 && core != canonical && matchesAny(core, variants)) {
            word.replace(0, length, canonical);
        }
    }
    return words.join(QLatin1Char(' '));
}

} // namespace

void SttPostProcessor::loadInstalledRules()
{
    loadRulesFrom(QStringLiteral(":/org/kde/loomra/voice/stt-corrections.json"),
                  QCoreApplication::applicationDirPath() + QLatin1String("/../src/voice/stt-corrections.json"));
}

void SttPostProcessor::loadRulesFrom(const QString &resource, const QString &fallback)
{
    QFile file(resource);
    if (!file.open(QIODevice::ReadOnly)) {
        file.setFileName(fallback);
        if (!file.exists()) {
            qWarning("SttPostProcessor: no corrections file found");
            return;
        }
        if (!file.open(QIODevice::ReadOnly)) {
            qWarning() << "SttPostProcessor: cannot open" << fallback;
            return;
        }
    }
    loadRules(file.readAll());
}

void SttPostProcessor::loadRules(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        qWarning() << "SttPostProcessor: JSON parse error:" << error.errorString();
        return;
    }
    const QJsonObject root = document.object();
    parseProductNames(root);
    parseCommandAliases(root);
    parseWordReplacements(root);
    m_loaded = true;
    qDebug() << "SttPostProcessor: loaded" << m_productNames.size() << "product names," << m_commandAliases.size()
             << "aliases," << m_wordReplacements.size() << "word replacements";
}

void SttPostProcessor::parseProductNames(const QJsonObject &root)
{
    m_productNames.clear();
    const QJsonArray rows = root.value(QLatin1String("product_names")).toArray();
    for (const QJsonValue &row : rows) {
        const QString canonical = row[QLatin1String("canonical")].toString();
        QStringList variants;
        const QJsonArray listed = row[QLatin1String("variants")].toArray();
        for (const QJsonValue &variant : listed) {
            variants.append(lowered(variant.toString()));
        }
        if (!canonical.isEmpty()) {
            m_productNames.append({canonical, variants});
        }
    }
}

void SttPostProcessor::parseCommandAliases(const QJsonObject &root)
{
    m_commandAliases.clear();
    const QJsonArray rows = root.value(QLatin1String("command_aliases")).toArray();
    for (const QJsonValue &row : rows) {
        const QRegularExpression pattern(row[QLatin1String("pattern")].toString(),
                                         QRegularExpression::CaseInsensitiveOption);
        const QString replacement = row[QLatin1String("replacement")].toString();
        if (pattern.isValid() && !replacement.isEmpty()) {
            m_commandAliases.append({pattern, replacement});
        }
    }
}

void SttPostProcessor::parseWordReplacements(const QJsonObject &root)
{
    m_wordReplacements.clear();
    const QJsonArray rows = root.value(QLatin1String("word_replacements")).toArray();
    for (const QJsonValue &row : rows) {
        const QString from = lowered(row[QLatin1String("from")].toString());
        if (!from.isEmpty()) {
            m_wordReplacements.append({from, row[QLatin1String("to")].toString()});
        }
    }
}

QString SttPostProcessor::correctFinal(const QString &text) const
{
    QString spoken = text.trimmed();
    while (spoken.endsWith(QLatin1Char('.')) || spoken.endsWith(QLatin1Char('!'))
           || spoken.endsWith(QLatin1Char('?'))) {
        spoken.chop(1);
    }
    spoken = spoken.trimmed();
    if (spoken.isEmpty()) {
        return text;
    }
    const QString low = lowered(spoken).trimmed();
    const auto alias = std::find_if(m_commandAliases.cbegin(), m_commandAliases.cend(),
                                    [&](const auto &row) { return row.first.match(low).hasMatch(); });
    // If the alias changes nothing, the other rules apply.
    if (alias != m_commandAliases.cend() && alias->second != spoken) {
        return alias->second;
    }
    return correctPartial(spoken);
}

QString SttPostProcessor::correctPartial(const QString &text) const
{
    // Words first: their replacements may be variants of product names.
    return text.isEmpty() ? text : applyProductNames(applyWordReplacements(text));
}

QString SttPostProcessor::applyWordReplacements(const QString &text) const
{
    QString result = text;
    for (const auto &[from, to] : m_wordReplacements) {
        result = replaced(result, from, to, [](int) { return true; });
    }
    return result;
}

QString SttPostProcessor::applyProductNames(const QString &text) const
{
    QString result = text;
    for (const auto &[canonical, variants] : m_productNames) {
        for (const QString &variant : variants) {
            if (isPhrase(variant)) {
                // Intentional: only the right edge must be a word boundary. "non the bar" contains "on the bar".
                result = replaced(result, variant, canonical, [&result](int end) {
                    return end == result.size() || !isLetterOrDigit(result.at(end));
                });
            }
        }
        result = wordsReplaced(result, canonical, variants);
    }
    return result;
}
