// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SpeechText.h"

#include <QRegularExpression>
#include <QString>

#include <array>

namespace
{

constexpr int s_maxLength = 1000; // characters

struct Replacement
{
    QRegularExpression pattern;
    QString replacement;
};

//! In this order. Intentional: the "#" of a heading is removed only at the start of the reply, and an image keeps its
//! "!" and its alternative text because the row for links comes first.
const std::array<Replacement, 7> &replacements()
{
    static const std::array<Replacement, 7> table {{
        {QRegularExpression(QStringLiteral("```[\\s\\S]*?```")), QString()},
        {QRegularExpression(QStringLiteral("`[^`]+`")), QString()},
        {QRegularExpression(QStringLiteral("^#{1,6}\\s+")), QString()},
        {QRegularExpression(QStringLiteral("\\*{1,3}([^*]+)\\*{1,3}")), QStringLiteral("\\1")},
        {QRegularExpression(QStringLiteral("\\[([^\\]]+)\\]\\([^)]+\\)")), QStringLiteral("\\1")},
        {QRegularExpression(QStringLiteral("!\\[[^\\]]*\\]\\([^)]+\\)")), QString()},
        {QRegularExpression(QStringLiteral("\\n{3,}")), QStringLiteral("\n\n")},
    }};
    return table;
}

} // namespace

QString SpeechText::cleanForSpeech(const QString &reply)
{
    QString text = reply;
    for (const Replacement &row : replacements()) {
        text.replace(row.pattern, row.replacement);
    }
    return text;
}

QString SpeechText::spoken(const QString &reply)
{
    const QString text = cleanForSpeech(reply).trimmed();
    // Intentional: the cut may split a surrogate pair.
    return text.size() > s_maxLength ? QString(text.leftRef(s_maxLength) + QLatin1String("...")) : text;
}
