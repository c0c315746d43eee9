// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FileService.h"
#include "FileTree.h"
#include "MessageLog.h"
#include "TestRegistry.h"

#include <QFileInfo>
#include <QTest>

#include <unistd.h>

namespace
{

const FileService s_files;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

//! Each operation on real files, with the state of the disk afterwards.
class tst_FileService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void getFiles();
    void getFilesOfNoDirectory();
    void readFile();
    void readFails_data();
    void readFails();
    void writeFile();
    void writeKeepsLinkAndMode();
    void writeFails();
    void createFile();
    void deleteFile();
    void renameFile();
    void createDirectory();
    void kinds();
    void icons_data();
    void icons();
};

void tst_FileService::getFiles()
{
    const FileTree tree;
    for (const char *name : {"b.txt", "B.txt", "a.txt", ".hidden", "ä \n.txt", "~backup~"}) {
        tree.addFile(text(name));
    }
    tree.addDirectory(text("zoo"));
    tree.addDirectory(text(".git"));
    QVERIFY(QFile::link(tree.path(text("zoo")), tree.path(text("link to zoo"))));
    QVERIFY(QFile::link(tree.path(text("a.txt")), tree.path(text("link to a"))));
    QStringList names;
    const QStringList paths = s_files.getFiles(tree.root());
    for (const QString &path : paths) {
        QCOMPARE(QFileInfo(path).path(), QFileInfo(tree.root()).absoluteFilePath());
        names.append(QFileInfo(path).fileName());
    }
    const QStringList expected = {text("link to zoo"), text("zoo"),       text("B.txt"),    text("a.txt"),
                                  text("b.txt"),       text("link to a"), text("~backup~"), text("ä \n.txt")};
    QCOMPARE(names, expected);
}

void tst_FileService::getFilesOfNoDirectory()
{
    const FileTree tree;
    const QString file = tree.addFile(text("a.txt"));
    QCOMPARE(s_files.getFiles(tree.root() + text("/missing")), QStringList());
    QCOMPARE(s_files.getFiles(file), QStringList());
    QCOMPARE(s_files.getFiles(QString()), QStringList());
}

void tst_FileService::readFile()
{
    const FileTree tree;
    QCOMPARE(s_files.readFile(tree.addFile(text("a"), "one\r\ntwo ä 😀\n")), text("one\ntwo ä 😀\n"));
    const MessageLog log;
    QCOMPARE(s_files.readFile(tree.addFile(text("empty"))), QString());
    QCOMPARE(log.count(QString()), 0);
}

void tst_FileService::readFails_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << text("missing %1");
    QTest::newRow("a directory") << text("directory");
    QTest::newRow("no permission") << text("locked");
}

void tst_FileService::readFails()
{
    QFETCH(QString, name);

    const FileTree tree;
    tree.addDirectory(text("directory"));
    const QString locked = tree.addFile(text("locked"), "secret");
    QVERIFY(QFile::setPermissions(locked, {}));
    if (name == text("locked") && access(QFile::encodeName(locked).constData(), R_OK) == 0) {
        QSKIP("this user may read everything");
    }
    QTest::ignoreMessage(QtWarningMsg, qPrintable(text("Failed to open file: \"%1\"").arg(tree.path(name))));
    QCOMPARE(s_files.readFile(tree.path(name)), QString());
}

void tst_FileService::writeFile()
{
    const FileTree tree;
    const QString path = tree.path(text("a"));
    QVERIFY(s_files.writeFile(path, text("a longer text")));
    QCOMPARE(tree.contentOf(text("a")), QByteArray("a longer text"));
    QVERIFY(s_files.writeFile(path, text("ä\n")));
    QCOMPARE(tree.contentOf(text("a")), QByteArray("ä\n"));
    QVERIFY(s_files.writeFile(path, QString()));
    QCOMPARE(tree.contentOf(text("a")), QByteArray());
}

void tst_FileService::writeKeepsLinkAndMode()
{
    const FileTree tree;
    const QString path = tree.addFile(text("a"));
    const QFile::Permissions mode = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    QVERIFY(QFile::setPermissions(path, mode));
    QVERIFY(QFile::link(path, tree.path(text("link"))));
    QVERIFY(s_files.writeFile(tree.path(text("link")), text("new")));
    QVERIFY(QFileInfo(tree.path(text("link"))).isSymLink());
    QCOMPARE(tree.contentOf(text("a")), QByteArray("new"));
    QCOMPARE(QFile::permissions(path), mode);
}

void tst_FileService::writeFails()
{
    const FileTree tree;
    const QString path = tree.path(text("missing/a"));
    QTest::ignoreMessage(QtWarningMsg, qPrintable(text("Failed to write file: \"%1\"").arg(path)));
    QVERIFY(!s_files.writeFile(path, text("new")));
    QVERIFY(!QFileInfo::exists(tree.path(text("missing"))));
}

void tst_FileService::createFile()
{
    const FileTree tree;
    QVERIFY(s_files.createFile(tree.path(text("new"))));
    QVERIFY(QFileInfo(tree.path(text("new"))).isFile());
    tree.addFile(text("old"), "content");
    QVERIFY(!s_files.createFile(tree.path(text("old"))));
    QCOMPARE(tree.contentOf(text("old")), QByteArray("content"));
    QVERIFY(!s_files.createFile(tree.root()));
    QVERIFY(!s_files.createFile(tree.path(text("missing/new"))));
    QVERIFY(!QFileInfo::exists(tree.path(text("missing"))));
}

void tst_FileService::deleteFile()
{
    const FileTree tree;
    QVERIFY(s_files.deleteFile(tree.addFile(text("a"))));
    QVERIFY(!QFileInfo::exists(tree.path(text("a"))));
    QVERIFY(!s_files.deleteFile(tree.path(text("a"))));
    tree.addDirectory(text("directory"));
    QVERIFY(!s_files.deleteFile(tree.path(text("directory"))));
    QVERIFY(QFileInfo::exists(tree.path(text("directory"))));
}

void tst_FileService::renameFile()
{
    const FileTree tree;
    const QString old = tree.addFile(text("old"), "old");
    tree.addFile(text("other"), "other");
    tree.addDirectory(text("directory"));
    QVERIFY(!s_files.renameFile(old, tree.path(text("other"))));
    QCOMPARE(tree.contentOf(text("other")), QByteArray("other"));
    QVERIFY(s_files.renameFile(old, tree.path(text("directory/new"))));
    QCOMPARE(tree.contentOf(text("directory/new")), QByteArray("old"));
    QVERIFY(!QFileInfo::exists(old));
    QVERIFY(!s_files.renameFile(old, tree.path(text("newer"))));
}

void tst_FileService::createDirectory()
{
    const FileTree tree;
    for (int time = 0; time < 2; ++time) { // the second time it exists
        QVERIFY(s_files.createDirectory(tree.path(text("a/b/c"))));
        QVERIFY(QFileInfo(tree.path(text("a/b/c"))).isDir());
    }
    tree.addFile(text("file"));
    QVERIFY(!s_files.createDirectory(tree.path(text("file/inside"))));
}

void tst_FileService::kinds()
{
    const FileTree tree;
    const QString file = tree.addFile(text("a"));
    QVERIFY(s_files.fileExists(file));
    QVERIFY(!s_files.isDirectory(file));
    QVERIFY(s_files.fileExists(tree.root()));
    QVERIFY(s_files.isDirectory(tree.root()));
    QVERIFY(!s_files.fileExists(tree.path(text("missing"))));
    QVERIFY(!s_files.isDirectory(tree.path(text("missing"))));
    QVERIFY(!s_files.fileExists(QString()));
}

void tst_FileService::icons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("icon");

    QTest::newRow("by name") << text("a.png") << QByteArray("text") << text("image-png");
    QTest::newRow("by content") << text("picture") << QByteArray("\x89PNG\r\n\x1a\n") << text("image-png");
    QTest::newRow("text") << text("notes") << QByteArray("text") << text("text-plain");
    QTest::newRow("unknown") << text("junk") << QByteArray("\0\1\2", 3) << text("application-octet-stream");
}

void tst_FileService::icons()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);

    const FileTree tree;
    QTEST(s_files.getFileIcon(tree.addFile(name, content)), "icon");
    // A directory gets the icon of its MIME type here.
    QCOMPARE(s_files.getFileIcon(tree.root()), text("inode-directory"));
}

REGISTER_TEST(tst_FileService, QCoreApplication)

#include "tst_FileService.moc"
