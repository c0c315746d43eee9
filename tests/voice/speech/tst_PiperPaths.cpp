// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FakePath.h"
#include "Files.h"
#include "PiperPaths.h"
#include "TestRegistry.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

namespace
{

//! In the order of the search. "~" is the home; the rest is below the system's root.
const QStringList s_programs {
    QStringLiteral("/usr/bin/piper"),
    QStringLiteral("/usr/local/bin/piper"),
    QStringLiteral("~/.local/bin/piper"),
    QStringLiteral("~/piper/piper"),
    QStringLiteral("/usr/share/tovi-forkeldaos/models/../bin/piper"),
};
const QStringList s_voiceDirectories {
    QStringLiteral("/usr/share/tovi-forkeldaos/models"),
    QStringLiteral("~/.local/share/tovi-forkeldaos/models"),
    QStringLiteral("~/.local/share/piper/voices"),
    QStringLiteral("/usr/share/piper-voices"),
    QStringLiteral("~/piper/voices"),
};
const QStringList s_preferred {
    QStringLiteral("/en_US-lessac-medium.onnx"),
    QStringLiteral("/en_US-amy-medium.onnx"),
    QStringLiteral("/en_US-ryan-medium.onnx"),
};

//! A directory tree with a system and a home.
class Tree
{
public:
    SearchRoots roots() const { return {m_root.filePath(QStringLiteral("home")), m_root.path()}; }

    QString path(const QString &place) const
    {
        return place.startsWith(QLatin1Char('~')) ? roots().home + place.mid(1) : roots().system + place;
    }

    void addFile(const QString &place, QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner) const
    {
        // For the path with "..", both directories must exist.
        QDir().mkpath(QFileInfo(path(place)).path());
        QDir().mkpath(QFileInfo(QDir::cleanPath(path(place))).path());
        const QString file = path(place);
        QVERIFY2(writeFile(file) && QFile::setPermissions(file, permissions), qPrintable(file));
    }
    void addProgram(const QString &place) const { addFile(place, QFile::ReadOwner | QFile::ExeOwner); }
    void addDirectory(const QString &place) const { QVERIFY(QDir().mkpath(path(place))); }
    void remove(const QString &place) const { QVERIFY(QFile::remove(path(place))); }

private:
    const QTemporaryDir m_root;
};

} // namespace

class tst_PiperPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsProgramsInOrder();
    void ignoresFilesThatCannotRun_data();
    void ignoresFilesThatCannotRun();
    void looksOnPath();
    void findsNoProgram();
    void findsVoicesInOrder();
    void takesAnyEnglishVoice_data();
    void takesAnyEnglishVoice();
    void anyVoiceComesBeforeTheNextDirectory();
    void findsNoVoice();
};

void tst_PiperPaths::findsProgramsInOrder()
{
    const Tree tree;
    for (const QString &place : s_programs) {
        tree.addProgram(place);
    }
    FakePath path;
    const QString onPath = path.add(QStringLiteral("piper"), "exit 0");
    for (const QString &place : s_programs) {
        QCOMPARE(PiperPaths::findPiper(tree.roots()), tree.path(place));
        tree.remove(place);
    }
    QCOMPARE(PiperPaths::findPiper(tree.roots()), onPath);
}

void tst_PiperPaths::ignoresFilesThatCannotRun_data()
{
    QTest::addColumn<QString>("place");
    for (const QString &place : s_programs) {
        QTest::newRow(qPrintable(place)) << place;
    }
}

void tst_PiperPaths::ignoresFilesThatCannotRun()
{
    QFETCH(QString, place);
    const FakePath nothing(FakePath::Rest::Hidden);
    const Tree notExecutable;
    notExecutable.addFile(place);
    QCOMPARE(PiperPaths::findPiper(notExecutable.roots()), QString());
    const Tree directory;
    directory.addDirectory(QDir::cleanPath(place));
    QCOMPARE(PiperPaths::findPiper(directory.roots()), QString());
}

void tst_PiperPaths::looksOnPath()
{
    const Tree tree;
    FakePath path(FakePath::Rest::Hidden);
    const QString onPath = path.add(QStringLiteral("piper"), "exit 0");
    QCOMPARE(PiperPaths::findPiper(tree.roots()), onPath);
}

void tst_PiperPaths::findsNoProgram()
{
    const Tree tree;
    const FakePath nothing(FakePath::Rest::Hidden);
    QCOMPARE(PiperPaths::findPiper(tree.roots()), QString());
}

void tst_PiperPaths::findsVoicesInOrder()
{
    const Tree tree;
    for (const QString &directory : s_voiceDirectories) {
        for (const QString &name : s_preferred) {
            tree.addFile(directory + name);
        }
    }
    for (const QString &directory : s_voiceDirectories) {
        for (const QString &name : s_preferred) {
            QCOMPARE(PiperPaths::findVoice(tree.roots()), tree.path(directory + name));
            tree.remove(directory + name);
        }
    }
    QCOMPARE(PiperPaths::findVoice(tree.roots()), QString());
}

void tst_PiperPaths::takesAnyEnglishVoice_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("British") << "/en_GB-alan-low.onnx" << true;
    QTest::newRow("shortest") << "/en_.onnx" << true;
    QTest::newRow("other language") << "/de_DE-eva_k-x_low.onnx" << false;
    QTest::newRow("no region") << "/en-us.onnx" << false;
    QTest::newRow("its description") << "/en_GB-alan-low.onnx.json" << false;
    QTest::newRow("other beginning") << "/xen_GB.onnx" << false;
}

void tst_PiperPaths::takesAnyEnglishVoice()
{
    QFETCH(QString, name);
    QFETCH(bool, isTaken);
    for (const QString &directory : s_voiceDirectories) {
        const Tree tree;
        tree.addFile(directory + name);
        QCOMPARE(PiperPaths::findVoice(tree.roots()), isTaken ? tree.path(directory + name) : QString());
        // Preferred voices come first.
        tree.addFile(directory + s_preferred.constLast());
        QCOMPARE(PiperPaths::findVoice(tree.roots()), tree.path(directory + s_preferred.constLast()));
    }
}

void tst_PiperPaths::anyVoiceComesBeforeTheNextDirectory()
{
    const QString any = QStringLiteral("/en_GB-alan-low.onnx");
    const Tree tree;
    for (const QString &directory : s_voiceDirectories) {
        tree.addFile(directory + any);
    }
    tree.addFile(s_voiceDirectories.at(1) + s_preferred.constFirst());
    QCOMPARE(PiperPaths::findVoice(tree.roots()), tree.path(s_voiceDirectories.at(0) + any));
}

void tst_PiperPaths::findsNoVoice()
{
    const Tree tree;
    QCOMPARE(PiperPaths::findVoice(tree.roots()), QString());
    for (const QString &directory : s_voiceDirectories) {
        tree.addDirectory(directory + s_preferred.constFirst());
    }
    QCOMPARE(PiperPaths::findVoice(tree.roots()), QString());
}

REGISTER_TEST(tst_PiperPaths, QCoreApplication)
#include "tst_PiperPaths.moc"
