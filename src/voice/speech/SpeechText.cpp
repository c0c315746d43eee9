// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SpeechText.h"

#include <QRegularExpression>
#include <QString>

#include <array>

namespace
{

constexpr int s_longest = 1000; // characters

struct Step
{
    QRegularExpression pattern;
    QString by;
};

//! In this order. Two rows look like slips and aren't: a heading loses its mark at the very start alone, and of an
//! image the "!" and the alternative text stay, as links come first.
const std::array<Step, 7> &steps()
{
    static const std::array<Step, 7> table {{
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
    for (const Step &step : steps()) {
        text.replace(step.pattern, step.by);
    }
    return text;
}

QString SpeechText::spoken(const QString &reply)
{
    const QString text = cleanForSpeech(reply).trimmed();
    // The number of characters is fixed: half of one that takes two stays where the cut splits it.
    return text.size() > s_longest ? QString(text.leftRef(s_longest) + QLatin1String("...")) : text;
}
