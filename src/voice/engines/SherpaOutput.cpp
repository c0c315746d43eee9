// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaOutput.h"

#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace
{

QString unescaped(QString text)
{
    // Intentional: only these two, one after the other. All other escapes stay, and "\\n" becomes a backslash and a
    // line feed.
    text.replace(QLatin1String("\\\""), QLatin1String("\""));
    text.replace(QLatin1String("\\n"), QLatin1String("\n"));
    return text.trimmed();
}

QString lastPlainLine(const QString &output, const QString &logWord)
{
    const QVector<QStringRef> lines = output.splitRef(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const auto found = std::find_if(lines.crbegin(), lines.crend(), [&](const QStringRef &line) {
        const QStringRef text = line.trimmed();
        return !text.isEmpty() && !text.startsWith(QLatin1Char('{')) && !text.contains(logWord);
    });
    return found == lines.crend() ? QString() : found->trimmed().toString();
}

} // namespace

QString SherpaOutput::transcriptIn(const QString &output, const QString &logWord)
{
    // Possessive, so that a long text doesn't exceed the limits of the regular expression engine.
    static const QRegularExpression s_textField(QStringLiteral(R"re("text"\s*:\s*"((?:\\.|[^"\\]++)*+)")re"));
    const QRegularExpressionMatch match = s_textField.match(output);
    return match.hasMatch() ? unescaped(match.captured(1)) : lastPlainLine(output, logWord);
}
