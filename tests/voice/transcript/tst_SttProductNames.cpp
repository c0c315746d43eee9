// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SttRules.h"
#include "TestRegistry.h"

#include <QTest>

using SttRules::processor;
using SttRules::textColumns;

class tst_SttProductNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replacesPhrases_data();
    void replacesPhrases();
    void replacesNames_data();
    void replacesNames();
};

void tst_SttProductNames::replacesPhrases_data()
{
    textColumns();
    const QByteArray json = SttRules::json(
        {SttRules::name("OmniBar", {"omni bar", "on the bar"}), SttRules::name("Big OmniBar", {"big omnibar"})});
    const auto row = [&](const char *name, const char *text, const char *result) {
        QTest::newRow(name) << json << QString::fromUtf8(text) << QString::fromUtf8(result);
    };
    row("alone", "omni bar", "OmniBar");
    row("in any case", "Omni BAR", "OmniBar");
    row("twice", "omni bar omni bar", "OmniBar OmniBar");
    row("both", "on the bar omni bar", "OmniBar OmniBar");
    row("the left side doesn't count", "non the bar", "nOmniBar");
    row("a letter at the right", "omni bars", "omni bars");
    row("a capital", "omni barS", "omni barS");
    row("a digit", "omni bar2", "omni bar2");
    row("found again behind a refusal", "omni bars omni bar", "omni bars OmniBar");
    row("a later row on the output", "big omni bar", "Big OmniBar");
    row("a letter beyond ASCII", "omni barä", "omni barä");
    row("a digit beyond ASCII", "omni bar٣", "omni bar٣");
    row("a sign beyond ASCII", "omni bar…", "OmniBar…");
    row("the sign of code 128", "omni bar\u0080", "OmniBar\u0080");
    row("an ordinal sign is a letter", "omni barª", "omni barª");
    row("a pair is none", "omni bar𐐀", "OmniBar𐐀");
    row("spaces stay", "  the  omni bar  is", "  the  OmniBar  is");
    row("two spaces don't match one", "omni  bar", "omni  bar");
    row("dotted capital I before", "İİ omni bar", "İİ OmniBar");
    for (const char *sign : {"@", "[", "\\", "]", "^", "_", "`", "{", "/", ":", "'", "-", "\t", "\x7f"}) {
        QTest::addRow("ends at the sign %02x", *sign)
            << json << QString(QLatin1String("omni bar") + QLatin1String(sign))
            << QString(QLatin1String("OmniBar") + QLatin1String(sign));
    }
    for (const char *letter : {"A", "Z", "a", "z", "0", "9"}) {
        QTest::addRow("goes on with %s", letter) << json << QString(QLatin1String("omni bar") + QLatin1String(letter))
                                                 << QString(QLatin1String("omni bar") + QLatin1String(letter));
    }
}

void tst_SttProductNames::replacesPhrases()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QTEST(processor(json).applyProductNames(text), "result");
}

void tst_SttProductNames::replacesNames_data()
{
    textColumns();
    const QByteArray json =
        SttRules::json({SttRules::name("KDE", {"kd", "KATY"}), SttRules::name("Plasma", {"plasma", "plaza"}),
                        SttRules::name("Kirigami", {"kirigami"}), SttRules::name("Loudspeaker", {"loudspeakers"}),
                        SttRules::name("%1", {"percent"}), SttRules::name("Chained", {"kde"}),
                        SttRules::name("Short", {"x", "www"}), SttRules::name("Zoë", {"zoë", "zöëy"})});
    const auto row = [&](const char *name, const char *text, const char *result) {
        QTest::newRow(name) << json << QString::fromUtf8(text) << QString::fromUtf8(result);
    };
    row("empty", "", "");
    row("exact", "plaza", "Plasma");
    row("in any case", "PLAZA", "Plasma");
    row("to its case", "plasma", "Plasma");
    row("canonical stays", "Plasma", "Plasma");
    row("not canonical by case", "PLASMA", "Plasma");
    row("suffix", "plaza,", "Plasma,");
    row("suffix in its order", "plaza?!,", "Plasma?!,");
    row("suffix of the signs between the cases", "plaza_[", "Plasma_[");
    row("suffix behind canonical", "Plasma...", "Plasma...");
    row("signs before keep it from being exact", "\"plaza", "Plasma");
    row("two signs before are too many", "\"(plaza", "\"(plaza");
    row("signs inside count", "pla-za", "Plasma");
    row("signs alone", "... ,", "... ,");
    row("one character", "k", "k");
    row("a later row sees the result", "kd.", "Chained.");
    row("three letters aren't fuzzy", "kdx", "kdx");
    row("three letters next to a longer variant", "kat", "kat");
    row("four letters next to a shorter variant", "kdxy", "kdxy");
    row("four letters next to a variant of three", "wwww", "wwww");
    row("one character isn't even exact", "x.", "x.");
    row("four letters are fuzzy", "katz", "Chained");
    row("one more", "plazas", "Plasma");
    row("one less", "plaz", "Plasma");
    row("one other", "plaxa", "Plasma");
    row("two others", "plxxa", "plxxa");
    row("two swapped are two", "plzaa", "plzaa");
    row("two letters off at eight", "kirigaxx", "Kirigami");
    row("two more at eight", "kirigamixx", "Kirigami");
    row("three more at eight", "kirigamixxx", "kirigamixxx");
    row("three off at eight", "kirigxxx", "kirigxxx");
    row("three off at twelve", "loudspeaxxxs", "Loudspeaker");
    row("four off at twelve", "loudspexxxxs", "loudspexxxxs");
    row("placeholders", "percent %1 %2", "%1 %1 %2");
    row("beyond ASCII", "ZOË", "Zoë");
    row("fuzzy beyond ASCII", "ZÖËX", "Zoë");
    row("suffix beyond ASCII", "plaza… plaza”", "Plasma… Plasma”");
    row("a pair goes with the suffix", "plaza😀", "Plasma😀");
    row("a pair before", "😀 plaza", "😀 Plasma");
    row("dotted capital I", "kİrİgamİ", "Kirigami");
    row("spaces stay if nothing changes", "  a   b  ", "  a   b  ");
    row("and where something does", "  plaza   b  ", "  Plasma   b  ");
    row("only spaces separate words", "plaza\tb", "plaza\tb");
}

void tst_SttProductNames::replacesNames()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, text);
    QTEST(processor(json).applyProductNames(text), "result");
}

REGISTER_TEST(tst_SttProductNames, TestRegistry::NoApplication)
#include "tst_SttProductNames.moc"
