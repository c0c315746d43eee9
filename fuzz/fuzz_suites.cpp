// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the suites of sentences, and the comparison of transcripts with sentences.
//
// The first line of an input is a transcript, the rest is a suite, and as a text also the sentence.

#include "Require.h"
#include "Scripts.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace
{

//! The comparison takes a time that grows with the product of both lengths. The longest sentences are shorter. In
//! characters.
constexpr int s_maxLength = 512;

class Suites
{
public:
    Suites()
        : m_suite(m_scripts.library(QStringLiteral("voice/sentenceSuite.js")))
        , m_scoring(m_scripts.library(QStringLiteral("voice/sttSentenceScoring.js")))
    {
    }

    void check(const QString &transcript, const QByteArray &suite)
    {
        checkSuite(suite);
        const QString sentence = QString::fromUtf8(suite).left(s_maxLength);
        checkWords(transcript);
        checkWords(sentence);
        checkScores(sentence, transcript.left(s_maxLength));
    }

private:
    void checkSuite(const QByteArray &suite)
    {
        const QJSValue sentences = Scripts::call(m_suite, "parse", {QString::fromUtf8(suite)});
        require(sentences.isArray(), "every text is a suite, if an empty one");
        const int count = sentences.property(QStringLiteral("length")).toInt();
        for (int i = 0; i < count; ++i) {
            const QJSValue sentence = sentences.property(static_cast<quint32>(i));
            for (const char *key : {"id", "category", "text"}) {
                const QJSValue value = sentence.property(QLatin1String(key));
                require(value.isString() && !value.toString().isEmpty(), "a sentence is complete");
            }
        }
        // A second parser must find as many in a list of objects.
        const QJsonArray listed = QJsonDocument::fromJson(suite).object().value(QLatin1String("sentences")).toArray();
        const QJSValue parsed = m_scripts.parse(QString::fromUtf8(suite)).property(QStringLiteral("sentences"));
        const int complete = static_cast<int>(std::count_if(listed.begin(), listed.end(), isComplete));
        require(count == complete || !isSameList(parsed, listed), "no complete sentence is left out");
    }

    static bool isComplete(const QJsonValue &sentence)
    {
        const QJsonObject object = sentence.toObject();
        return !object.value(QLatin1String("id")).toString().isEmpty()
            && !object.value(QLatin1String("category")).toString().isEmpty()
            && !object.value(QLatin1String("text")).toString().isEmpty();
    }

    //! Whether both parsers accept a list; Qt's own accepts some texts that aren't JSON, and the other way round.
    static bool isSameList(const QJSValue &parsed, const QJsonArray &listed)
    {
        return parsed.isArray() && parsed.property(QStringLiteral("length")).toInt() == listed.size()
            && QJsonArray::fromVariantList(parsed.toVariant().toList()) == listed;
    }

    void checkWords(const QString &text)
    {
        static const QRegularExpression s_normal(QStringLiteral("^(?:[a-z0-9_']+(?: [a-z0-9_']+)*)?$"));
        const QString normal = Scripts::call(m_scoring, "normalize", {text}).toString();
        require(s_normal.match(normal).hasMatch() && !normal.endsWith(QLatin1Char('\n')),
                "a normalized text is words in lower case");
        require(Scripts::call(m_scoring, "normalize", {normal}).toString() == normal,
                "a normalized text stays the same");
        const int count = Scripts::call(m_scoring, "words", {text}).property(QStringLiteral("length")).toInt();
        require(count == normal.split(QLatin1Char(' '), Qt::SkipEmptyParts).size(), "words are separated by spaces");
    }

    double score(const QString &sentence, const QString &transcript)
    {
        const QJSValue value = Scripts::call(m_scoring, "wordAccuracy", {sentence, transcript});
        require(value.isNumber() && value.toNumber() >= 0 && value.toNumber() <= 1, "a score is from 0 to 1");
        const QString percent = Scripts::call(m_scoring, "formatPercent", {value}).toString();
        require(percent == QString::number(std::floor(value.toNumber() * 100 + 0.5)) + QLatin1Char('%'),
                "a score is shown as a whole percentage");
        require(Scripts::call(m_scoring, "isGood", {value}).toBool() == (value.toNumber() >= 0.85), "85 % is good");
        return value.toNumber();
    }

    void checkScores(const QString &sentence, const QString &transcript)
    {
        const QJSValue from = Scripts::call(m_scoring, "words", {sentence});
        const QJSValue to = Scripts::call(m_scoring, "words", {transcript});
        const auto distance = [this](const QJSValue &a, const QJSValue &b) {
            return Scripts::call(m_scoring, "distance", {a, b}).toInt();
        };
        const int fromCount = from.property(QStringLiteral("length")).toInt();
        const int toCount = to.property(QStringLiteral("length")).toInt();
        const int wrong = distance(from, to);
        require(wrong == distance(to, from), "both ways are as long");
        require(wrong >= std::abs(fromCount - toCount) && wrong <= std::max(fromCount, toCount),
                "the distance is limited by the numbers of words");
        const auto text = [this](const QString &words) {
            return Scripts::call(m_scoring, "normalize", {words}).toString();
        };
        require((wrong == 0) == (text(sentence) == text(transcript)), "the same words have no distance");
        require(score(sentence, sentence) == 1, "a sentence is right");
        const double accuracy = score(sentence, transcript);
        require(accuracy < 1 || wrong == 0, "a wrong word lowers the score");
    }

    Scripts m_scripts;
    const QJSValue m_suite;
    const QJSValue m_scoring;
};

// Not deleted at exit, because Qt's own statics are destroyed before.
QCoreApplication *s_application = nullptr;
Suites *s_suites = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    s_application = new QCoreApplication(*argc, *argv);
    s_suites = new Suites;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int lineEnd = input.indexOf('\n');
    s_suites->check(QString::fromUtf8(input.left(lineEnd)), input.mid(lineEnd + 1));
    return 0;
}
