// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "TestRegistry.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <array>

namespace
{

//! The sentences of a suite as a list that can be compared.
using Rows = QList<QStringList>;

Rows sentencesIn(const QJsonObject &suite)
{
    Rows rows;
    const QJsonArray sentences = suite.value(QLatin1String("sentences")).toArray();
    for (const QJsonValue &value : sentences) {
        const QJsonObject sentence = value.toObject();
        QStringList row;
        for (const char *key : {"id", "category", "text"}) {
            row.append(sentence.value(QLatin1String(key)).toString());
        }
        if (sentence.size() != row.size()) {
            row.append(QStringLiteral("and more"));
        }
        rows.append(row);
    }
    return rows;
}

Rows rowsOf(std::initializer_list<std::array<const char *, 3>> sentences)
{
    Rows rows;
    for (const auto &[id, category, text] : sentences) {
        rows.append({QString::fromLatin1(id), QString::fromLatin1(category), QString::fromLatin1(text)});
    }
    return rows;
}

} // namespace

//! The sentences with which engines are compared. Must not change, because users have recorded results with these texts
//! and ids.
class tst_SttSuites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holds_data();
    void holds();
};

void tst_SttSuites::holds_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<Rows>("sentences");

    QTest::newRow("stt-sentence-suite.json")
        << QStringLiteral("Reference sentences for STT A/B validation (OmniBar / desktop assistant phrasing)")
        << rowsOf({
               {"s01", "command", "open the browser"},
               {"s02", "command", "set brightness to fifty percent"},
               {"s03", "command", "turn on dark mode"},
               {"s04", "command", "mute the volume"},
               {"s05", "query", "what windows are open"},
               {"s06", "query", "what time is it"},
               {"s07", "query", "show me the desktop layout"},
               {"s08", "product", "hey Tovi open settings"},
               {"s09", "product", "ask Loomra to fix this bug"},
               {"s10", "short", "yes"},
               {"s11", "short", "cancel that"},
               {"s12", "short", "try again"},
               {"s13", "numbers", "set volume to twenty five"},
               {"s14", "numbers", "remind me at three thirty"},
               {"s15", "long", "summarize the last agent reply in one sentence"},
               {"s16", "long", "move the active window to the second monitor"},
               {"s17", "punctuation", "what is the weather in San Francisco"},
               {"s18", "punctuation", "open files dot org and search for KDE"},
           });
    QTest::newRow("stt-live-validation-suite.json")
        << QString::fromUtf8("10 sentences for live microphone STT validation — speak each sentence aloud, once in "
                             "quiet, once with background noise")
        << rowsOf({
               {"v01", "command", "open the file manager and go to downloads"},
               {"v02", "command", "set the volume to seventy five percent"},
               {"v03", "query", "what is the current battery level"},
               {"v04", "product", "hey Tovi switch to dark mode"},
               {"v05", "product", "ask Loomra to refactor this function"},
               {"v06", "short", "go back"},
               {"v07", "short", "undo that"},
               {"v08", "numbers", "set a timer for fifteen minutes"},
               {"v09", "long", "search for all PDF files modified in the last week"},
               {"v10", "noise", "play the next song in my playlist"},
           });
}

void tst_SttSuites::holds()
{
    QFETCH(QString, description);
    QFETCH(Rows, sentences);
    const QString path = QStringLiteral(":/org/kde/loomra/voice/") + QLatin1String(QTest::currentDataTag());
    const QJsonObject suite = QJsonDocument::fromJson(contentOf(path)).object();
    QCOMPARE(suite.keys(),
             (QStringList {QStringLiteral("description"), QStringLiteral("sentences"), QStringLiteral("version")}));
    QCOMPARE(suite.value(QLatin1String("version")), QJsonValue(1));
    QCOMPARE(suite.value(QLatin1String("description")).toString(), description);
    // Row by row, so that a difference is shown.
    const Rows found = sentencesIn(suite);
    for (int i = 0; i < sentences.size(); ++i) {
        QCOMPARE(found.value(i), sentences.at(i));
    }
    QCOMPARE(found.size(), sentences.size());
}

REGISTER_TEST(tst_SttSuites, QCoreApplication)
#include "tst_SttSuites.moc"
