// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// What an engine's program prints, on its way to a corrected transcript, and back to what is read aloud.
//
// What stands before the first zero byte are rules of correction, in JSON; the program's own where there is no such
// byte. The rest is what the engine prints.

#include "Require.h"
#include "SherpaOutput.h"
#include "SpeechText.h"
#include "SttPostProcessor.h"

#include <QLoggingCategory>

#include <cstdint>

namespace
{

//! Each step may lengthen a text by what the rules hold, so that rules which feed each other grow without end as they
//! should; beyond this there is nothing to learn.
constexpr int s_longest = 4096; // characters

const SttPostProcessor &installedRules()
{
    static const SttPostProcessor rules = [] {
        SttPostProcessor processor;
        processor.loadInstalledRules();
        require(processor.isLoaded(), "the program's own rules are good");
        return processor;
    }();
    return rules;
}

void checkCorrections(const SttPostProcessor &rules, const QString &text)
{
    const QString final = rules.correctFinal(text);
    require(text.isEmpty() == final.isEmpty(), "what was said doesn't vanish, and nothing comes of nothing");
    require(rules.correctPartial(QString()).isEmpty(), "nothing stays nothing");
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
    const QString output = QString::fromUtf8(input.mid(rulesEnd + 1)).left(s_longest);

    const QString transcript = SherpaOutput::transcriptIn(output, QStringLiteral("Recognizer"));
    require(transcript == transcript.trimmed(), "a transcript has no blanks around it");
    checkCorrections(installedRules(), transcript);
    checkCorrections(installedRules(), output);
    if (rulesEnd >= 0) {
        SttPostProcessor rules;
        rules.loadRules(input.left(rulesEnd));
        // Rules of a stranger may turn words into nothing: that they come to an end is all that is asked.
        rules.correctFinal(output);
        rules.correctPartial(transcript);
    }

    const QString spoken = SpeechText::spoken(output);
    require(spoken.size() <= 1003, "a long reply is cut short");
    require(spoken == spoken.trimmed() || spoken.endsWith(QLatin1String("...")), "nothing is said of blanks");
    return 0;
}
