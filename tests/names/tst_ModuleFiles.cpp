// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TestRegistry.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace
{

const QDir s_source(qEnvironmentVariable("TOVICTL_SOURCE_DIR"));

//! Types in "components" that only their neighbours use.
const QSet<QString> s_internalTypes = {
    QStringLiteral("BlockText"),       QStringLiteral("BlockWidget"),  QStringLiteral("BotCalloutWidget"),
    QStringLiteral("ChipButton"),      QStringLiteral("BotCodeBlock"), QStringLiteral("TableCell"),
    QStringLiteral("UsageConfigPage"),
};

QString contentOf(const QString &path)
{
    QFile file(s_source.filePath(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

//! The files that the resource tree should have.
QStringList filesOfTheModule()
{
    QStringList files = {QStringLiteral("qmldir")};
    for (const QString &path : s_source.entryList({QStringLiteral("*.qml"), QStringLiteral("*.js")}, QDir::Files)) {
        files.append(path);
    }
    for (const QString &folder : {QStringLiteral("components"), QStringLiteral("contents")}) {
        QDirIterator entries(s_source.filePath(folder),
                             {QStringLiteral("*.qml"), QStringLiteral("*.js"), QStringLiteral("qmldir")}, QDir::Files,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            files.append(s_source.relativeFilePath(entries.next()));
        }
    }
    files.sort();
    return files;
}

//! The first group of each match.
QStringList matches(const QString &text, const QRegularExpression &expression)
{
    QStringList found;
    for (auto match = expression.globalMatch(text); match.hasNext();) {
        found.append(match.next().captured(1));
    }
    return found;
}

//! What the first list has and the second one hasn't.
QString missing(const QStringList &wanted, const QStringList &present)
{
    QStringList lines;
    for (const QString &entry : wanted) {
        if (!present.contains(entry)) {
            lines.append(entry);
        }
    }
    return lines.join(QLatin1String(", "));
}

QStringList duplicates(const QStringList &entries)
{
    QSet<QString> seen;
    QStringList found;
    for (const QString &entry : entries) {
        if (seen.contains(entry)) {
            found.append(entry);
        }
        seen.insert(entry);
    }
    return found;
}

} // namespace

//! Folder, resource tree and qmldir of the module agree.
class tst_ModuleFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resourceTree();
    void qmldirs_data();
    void qmldirs();
    void offeredTypes();
};

void tst_ModuleFiles::resourceTree()
{
    static const QRegularExpression s_file(QStringLiteral("<file(?: alias=\"[^\"]*\")?>([^<]+)</file>"));
    const QStringList listed = matches(contentOf(QStringLiteral("tovictl.qrc")), s_file);
    QVERIFY(listed.size() > 100);
    const QStringList files = filesOfTheModule();
    QCOMPARE(missing(files, listed), QString());
    QCOMPARE(duplicates(listed), QStringList());
    for (const QString &path : listed) {
        QVERIFY2(s_source.exists(path), qPrintable(path));
    }
}

void tst_ModuleFiles::qmldirs_data()
{
    QTest::addColumn<QString>("path");
    for (const QString &path : filesOfTheModule()) {
        if (path == QLatin1String("qmldir") || path.endsWith(QLatin1String("/qmldir"))) {
            QTest::newRow(qPrintable(path)) << path;
        }
    }
}

//! Each type is in an existing file of its name. A missing one would fail only where it is used.
void tst_ModuleFiles::qmldirs()
{
    QFETCH(const QString, path);
    static const QRegularExpression s_type(QStringLiteral("^(\\w+ \\d+\\.\\d+ \\S+)$"),
                                           QRegularExpression::MultilineOption);
    const QDir folder = QFileInfo(s_source.filePath(path)).dir();
    const QStringList lines = matches(contentOf(path), s_type);
    QVERIFY(!lines.isEmpty());
    QStringList names;
    for (const QString &line : lines) {
        const QStringList words = line.split(QLatin1Char(' '));
        names.append(words.at(0));
        QVERIFY2(folder.exists(words.at(2)), qPrintable(line));
        QCOMPARE(QFileInfo(words.at(2)).completeBaseName(), words.at(0));
    }
    QCOMPARE(duplicates(names), QStringList());
}

void tst_ModuleFiles::offeredTypes()
{
    static const QRegularExpression s_type(QStringLiteral("^(\\w+) \\d"), QRegularExpression::MultilineOption);
    const QStringList listed = matches(contentOf(QStringLiteral("qmldir")), s_type);
    QStringList types;
    const QDir components(s_source.filePath(QStringLiteral("components")));
    for (const QString &file : components.entryList({QStringLiteral("*.qml")}, QDir::Files)) {
        const QString name = file.chopped(4);
        QVERIFY2(!s_internalTypes.contains(name) || !listed.contains(name), qPrintable(name));
        if (!s_internalTypes.contains(name)) {
            types.append(name);
        }
    }
    QCOMPARE(missing(types, listed), QString());
}

REGISTER_TEST(tst_ModuleFiles, TestRegistry::NoApplication)

#include "tst_ModuleFiles.moc"
