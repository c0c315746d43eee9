// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the output of an engine on its way to a corrected transcript, and the text that is read aloud.
//
// The part before the first zero byte is a set of correction rules in JSON; without such a byte the installed rules are
// used. The rest is the output of the engine.

#include "Require.h"
#include "SherpaOutput.h"
#include "SpeechText.h"
#include "SttPostProcessor.h"

#include <QLoggingCategory>

#include <cstdint>

namespace
{

//! Rules may lengthen a text at each step, so rules that feed each other make very long texts of long ones. Longer
//! inputs find nothing new.
constexpr int s_maxLength = 4096; // characters

const SttPostProcessor &installedRules()
{
    static const SttPostProcessor rules = [] {
        SttPostProcessor processor;
        processor.loadInstalledRules();
        require(processor.isLoaded(), "the installed rules are valid");
        return processor;
    }();
    return rules;
}

void checkCorrections(const SttPostProcessor &rules, const QString &text)
{
    const QString final = rules.correctFinal(text);
    require(text.isEmpty() == final.isEmpty(), "the installed rules empty no text and fill no empty one");
    require(rules.correctPartial(QString()).isEmpty(), "an empty text stays empty");
    rules.correctPartial(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const bool isSilent = [] {
        QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
        return true;
    }();
    Q_UNUSED(isSilent)

    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int rulesEnd = input.indexOf('\0');
    const QString output = QString::fromUtf8(input.mid(rulesEnd + 1)).left(s_maxLength);

    const QString transcript = SherpaOutput::transcriptIn(output, QStringLiteral("Recognizer"));
    require(transcript == transcript.trimmed(), "a transcript has no surrounding whitespace");
    checkCorrections(installedRules(), output);
    if (transcript != output) {
        checkCorrections(installedRules(), transcript);
    }
    if (rulesEnd >= 0) {
        SttPostProcessor rules;
        rules.loadRules(input.left(rulesEnd));
        // Other rules may empty a text; the only requirement is that they terminate.
        rules.correctFinal(output);
        rules.correctPartial(transcript);
    }

    const QString spoken = SpeechText::spoken(output);
    require(spoken.size() <= 1003, "a long reply is truncated");
    require(spoken == spoken.trimmed() || spoken.endsWith(QLatin1String("...")),
            "a text that is read aloud has no surrounding whitespace");
    return 0;
}
