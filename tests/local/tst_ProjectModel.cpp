// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FileTree.h"
#include "ProjectModel.h"
#include "TestRegistry.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

namespace
{

QStringList namesIn(const ProjectModel &model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row) {
        names.append(model.index(row).data(ProjectModel::NameRole).toString());
    }
    return names;
}

} // namespace

//! The model of a directory on the disk.
class tst_ProjectModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void entries();
    void icons();
    void noData();
    void rootPath();
    void noDirectory_data();
    void noDirectory();
    void refresh();

private:
    std::unique_ptr<FileTree> m_tree;
};

void tst_ProjectModel::init()
{
    m_tree = std::make_unique<FileTree>();
    m_tree->addFile(QStringLiteral("b.png"));
    m_tree->addFile(QStringLiteral("a.txt"), "text");
    m_tree->addFile(QStringLiteral(".hidden"));
    m_tree->addFile(QStringLiteral("zoo/inside.txt"));
}

void tst_ProjectModel::entries()
{
    ProjectModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.rootPath(), QString());
    QCOMPARE(model.rowCount(), 0);
    model.setRootPath(m_tree->root());
    QCOMPARE(namesIn(model), QStringList({QStringLiteral("zoo"), QStringLiteral("a.txt"), QStringLiteral("b.png")}));
    for (int row = 0; row < 3; ++row) {
        const QModelIndex index = model.index(row);
        const QString path = m_tree->path(index.data(257).toString());
        QCOMPARE(index.data(258).toString(), path);
        QCOMPARE(index.data(259), QVariant(row == 0));
        QCOMPARE(model.getPath(row), path);
        QCOMPARE(model.isDirectory(row), row == 0);
    }
    const QHash<int, QByteArray> roles = {{257, "name"}, {258, "path"}, {259, "isDirectory"}, {260, "icon"}};
    QCOMPARE(model.roleNames(), roles);
}

void tst_ProjectModel::icons()
{
    m_tree->addFile(QStringLiteral("junk"), QByteArray("\0\1\2", 3));
    ProjectModel model;
    model.setRootPath(m_tree->root());
    QStringList icons;
    for (int row = 0; row < model.rowCount(); ++row) {
        icons.append(model.index(row).data(260).toString());
    }
    QCOMPARE(icons,
             QStringList({QStringLiteral("folder"), QStringLiteral("text-plain"), QStringLiteral("image-png"),
                          QStringLiteral("application-octet-stream")}));
}

void tst_ProjectModel::noData()
{
    ProjectModel model;
    model.setRootPath(m_tree->root());
    const QModelIndex index = model.index(0);
    for (const int role : {256, 261, int(Qt::DisplayRole)}) {
        QVERIFY(!model.data(index, role).isValid());
    }
    QVERIFY(!model.data(QModelIndex(), 257).isValid());
    QCOMPARE(model.rowCount(index), 0);
    for (const int row : {-1, 3, 99}) {
        QCOMPARE(model.getPath(row), QString());
        QVERIFY(!model.isDirectory(row));
    }
}

void tst_ProjectModel::rootPath()
{
    ProjectModel model;
    const QSignalSpy reset(&model, &ProjectModel::modelReset);
    const QSignalSpy changed(&model, &ProjectModel::rootPathChanged);
    // The model is complete when the change is reported.
    connect(&model, &ProjectModel::rootPathChanged, this, [&model] { QCOMPARE(model.rowCount(), 3); });
    for (int time = 0; time < 2; ++time) {
        model.setRootPath(m_tree->root());
        QCOMPARE(reset.count(), 1);
        QCOMPARE(changed.count(), 1);
    }
}

void tst_ProjectModel::noDirectory_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("missing") << QStringLiteral("/nonexistent");
    QTest::newRow("a file") << QStringLiteral("a.txt");
    QTest::newRow("none") << QString();
}

void tst_ProjectModel::noDirectory()
{
    QFETCH(QString, path);

    ProjectModel model;
    model.setRootPath(m_tree->root());
    const QSignalSpy changed(&model, &ProjectModel::rootPathChanged);
    model.setRootPath(path.isEmpty() ? path : m_tree->path(path));
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(changed.count(), 1);
}

void tst_ProjectModel::refresh()
{
    ProjectModel model;
    model.setRootPath(m_tree->root());
    m_tree->addFile(QStringLiteral("c"));
    QCOMPARE(model.rowCount(), 3);
    const QSignalSpy aboutToReset(&model, &ProjectModel::modelAboutToBeReset);
    const QSignalSpy reset(&model, &ProjectModel::modelReset);
    const QSignalSpy changed(&model, &ProjectModel::rootPathChanged);
    model.refresh();
    QCOMPARE(model.rowCount(), 4);
    model.refresh();
    QCOMPARE(aboutToReset.count(), 2);
    QCOMPARE(reset.count(), 2);
    QCOMPARE(changed.count(), 0);
}

REGISTER_TEST(tst_ProjectModel, QCoreApplication)

#include "tst_ProjectModel.moc"
