// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the output of a sherpa-onnx program, from which the transcript is taken.

#include "Require.h"
#include "SherpaOutput.h"

#include <QStringList>

#include <cstdint>

namespace
{

const QString s_logWord = QStringLiteral("Recognizer");

//! A plain line is found if the output has no field "text".
void checkPlainLine(const QString &output, const QString &transcript)
{
    QString expected;
    for (const QString &line : output.split(QLatin1Char('\n'))) {
        const QString text = line.trimmed();
        if (!text.isEmpty() && !text.startsWith(QLatin1Char('{')) && !text.contains(s_logWord)) {
            expected = text;
        }
    }
    require(transcript == expected, "without a field the last plain line is the transcript");
}

//! The program writes a transcript into a field of a line, between others.
void checkField(const QString &spoken)
{
    QString escaped = spoken;
    escaped.remove(QLatin1Char('\\')); // its escape is not undone
    const QString expected = escaped.trimmed();
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\"")).replace(QLatin1Char('\n'), QLatin1String("\\n"));
    const QString output =
        QLatin1String("Started\n{\"lang\": \"\", \"text\": \"") + escaped + QLatin1String("\", \"tokens\": []}\nDone");
    require(SherpaOutput::transcriptIn(output, s_logWord) == expected, "the field is the transcript");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString output = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QString transcript = SherpaOutput::transcriptIn(output, s_logWord);
    require(transcript == transcript.trimmed(), "a transcript has no surrounding whitespace");
    require(transcript.size() <= output.size(), "a transcript is a part of the output");
    if (!output.contains(QLatin1String("\"text\""))) {
        checkPlainLine(output, transcript);
    }
    checkField(output);
    return 0;
}
