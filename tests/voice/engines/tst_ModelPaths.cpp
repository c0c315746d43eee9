// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Files.h"
#include "ModelPaths.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace
{

const QString s_offline = QStringLiteral("bin/sherpa-onnx-offline");
const QString s_online = QStringLiteral("bin/sherpa-onnx");

const QString s_moonshine = QStringLiteral("sherpa-onnx-moonshine-tiny-en-quantized-2026-02-27");
const QString s_nemotron = QStringLiteral("sherpa-onnx-nemotron-speech-streaming-en-0.6b-560ms-int8-2026-04-25");

const QString s_user = QStringLiteral("home/.local/share/tovi-forkeldaos/models/");
const QString s_packaged = QStringLiteral("system/usr/share/tovi-forkeldaos/models/");
const QString s_experiments = QStringLiteral("home/experiments/whisper-voice-test/models/");
const QString s_whisperExperiments = QStringLiteral("home/experiments/whisper-voice-test/whisper.cpp/models/");
const QString s_prebuilt = QStringLiteral("home/experiments/sherpa-onnx-prebuilt-v1.12.28/");
const QString s_built = QStringLiteral("home/experiments/sherpa-onnx/build/");

using ModelSearch = QString (*)(const QString &candidate, const SearchRoots &roots);

} // namespace

Q_DECLARE_METATYPE(ModelSearch)

//! Each row creates its own directory tree. A path with a trailing slash is a directory, one with a trailing star an
//! executable file.
class tst_ModelPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void findsWhisperModels_data();
    void findsWhisperModels();
    void findsModelDirs_data();
    void findsModelDirs();
    void prefersTheCandidate_data();
    void prefersTheCandidate();
    void findsTheStreamingModel_data();
    void findsTheStreamingModel();
    void findsSherpa_data();
    void findsSherpa();
    void rootsOfThisProcess();
    void followsTheHome();

private:
    void make(const QStringList &paths) const;
    //! Absolute path in the tree. An empty string stays empty.
    QString path(const QString &relative) const
    {
        return relative.isEmpty() ? QString() : QString(m_tree->path() + QLatin1Char('/') + relative);
    }
    SearchRoots roots() const { return {path(QStringLiteral("home")), path(QStringLiteral("system"))}; }

    std::unique_ptr<QTemporaryDir> m_tree;
};

void tst_ModelPaths::init()
{
    m_tree = std::make_unique<QTemporaryDir>(QDir::homePath() + QStringLiteral("/XXXXXX"));
    QVERIFY(m_tree->isValid());
}

void tst_ModelPaths::cleanup()
{
    m_tree.reset();
}

void tst_ModelPaths::make(const QStringList &paths) const
{
    for (QString relative : paths) {
        if (relative.endsWith(QLatin1Char('/'))) {
            QVERIFY(QDir().mkpath(path(relative)));
            continue;
        }
        const bool isProgram = relative.endsWith(QLatin1Char('*'));
        relative.remove(QLatin1Char('*'));
        const QString file = path(relative);
        QVERIFY(writeFile(file));
        QVERIFY(!isProgram || QFile::setPermissions(file, QFile::permissions(file) | QFile::ExeOwner));
    }
}

void tst_ModelPaths::findsWhisperModels_data()
{
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("found");

    const QString base = QStringLiteral("ggml-base.en.bin");
    const QString small = QStringLiteral("ggml-small.en.bin");
    const QString q5 = QStringLiteral("ggml-small.en-q5_1.bin");
    const auto row = [](const char *name, const QStringList &there, const char *backend, const QString &found) {
        QTest::newRow(name) << there << QString::fromLatin1(backend) << found;
    };
    const QStringList all {s_packaged + base,
                           s_packaged + small,
                           s_packaged + q5,
                           s_user + base,
                           s_user + small,
                           s_user + q5,
                           s_whisperExperiments + base,
                           s_whisperExperiments + small,
                           s_whisperExperiments + q5};
    row("nothing there", {}, "whisper", {});
    row("packaged before all", all, "whisper", s_packaged + base);
    row("user before experiments", all.mid(3), "whisper", s_user + base);
    row("experiments", all.mid(6), "whisper", s_whisperExperiments + base);
    row("small", all, "whisper-small", s_packaged + small);
    row("small, user", all.mid(3), "whisper-small", s_user + small);
    row("small, experiments", all.mid(6), "whisper-small", s_whisperExperiments + small);
    row("small-q5", all, "whisper-small-q5", s_packaged + q5);
    row("small-q5, user", all.mid(3), "whisper-small-q5", s_user + q5);
    row("small-q5, experiments", all.mid(6), "whisper-small-q5", s_whisperExperiments + q5);
    row("unknown id has the base model", all, "no such engine", s_packaged + base);
    row("no id has the base model", all, "", s_packaged + base);
    row("other case is unknown", all, "Whisper-Small", s_packaged + base);
    row("id of another engine has the base model", all, "moonshine", s_packaged + base);
    row("no base model for a missing small-q5", {s_packaged + base, s_user + small}, "whisper-small-q5", {});
    row("no base model for a missing small", {s_packaged + base, s_user + q5}, "whisper-small", {});
    row("no small for a missing base model", {s_packaged + small, s_user + q5}, "whisper", {});
    row("not where the directories of models are", {s_experiments + base}, "whisper", {});
    row("a directory is no model file", {s_packaged + base + QLatin1Char('/'), s_user + base}, "whisper",
        s_user + base);
}

void tst_ModelPaths::findsWhisperModels()
{
    QFETCH(QStringList, there);
    QFETCH(QString, backend);
    QFETCH(QString, found);
    make(there);
    QCOMPARE(ModelPaths::resolveWhisperModelPath(backend, roots()), path(found));
}

void tst_ModelPaths::findsModelDirs_data()
{
    QTest::addColumn<ModelSearch>("search");
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QString>("found");

    const auto rows = [](const char *engine, ModelSearch search, const QString &name, const QString &other) {
        const QString dir = name + QLatin1Char('/');
        const QStringList all {s_experiments + dir, s_user + dir, s_packaged + dir};
        const auto row = [&](const char *title, const QStringList &there, const QString &found) {
            QTest::addRow("%s: %s", engine, title) << search << there << found;
        };
        row("nothing there", {}, {});
        row("experiments before all", all, s_experiments + name);
        row("user before packaged", all.mid(1), s_user + name);
        row("packaged", all.mid(2), s_packaged + name);
        row("not where whisper's are", {s_whisperExperiments + dir}, {});
        row("a file is no directory", {s_experiments + name, s_user + dir}, s_user + name);
        row("the other engine's", {s_user + other + QLatin1Char('/')}, {});
    };
    rows("moonshine", ModelPaths::resolveMoonshineModelDir, s_moonshine, s_nemotron);
    rows("nemotron", ModelPaths::resolveNemotronModelDir, s_nemotron, s_moonshine);
}

void tst_ModelPaths::findsModelDirs()
{
    QFETCH(ModelSearch, search);
    QFETCH(QStringList, there);
    QFETCH(QString, found);
    make(there);
    QCOMPARE(search(QString(), roots()), path(found));
    QCOMPARE(search(path(QStringLiteral("nowhere")), roots()), path(found));
}

void tst_ModelPaths::prefersTheCandidate_data()
{
    QTest::addColumn<ModelSearch>("search");
    QTest::addColumn<QString>("name");
    QTest::newRow("moonshine") << &ModelPaths::resolveMoonshineModelDir << s_moonshine;
    QTest::newRow("nemotron") << &ModelPaths::resolveNemotronModelDir << s_nemotron;
}

void tst_ModelPaths::prefersTheCandidate()
{
    QFETCH(ModelSearch, search);
    QFETCH(QString, name);
    make({s_user + name + QLatin1Char('/'), QStringLiteral("mine/"), QStringLiteral("file")});
    // Regardless of its content and name.
    QCOMPARE(search(path(QStringLiteral("mine")), roots()), path(QStringLiteral("mine")));
    QCOMPARE(search(path(QStringLiteral("file")), roots()), path(s_user + name));
}

void tst_ModelPaths::findsTheStreamingModel_data()
{
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QString>("found");

    const QString dir = s_nemotron + QLatin1Char('/');
    const QStringList all {s_experiments + dir, s_user + dir, s_packaged + dir};
    QTest::newRow("nothing there") << QStringList() << QString();
    QTest::newRow("experiments before user") << all << s_experiments + s_nemotron;
    QTest::newRow("user") << QStringList(all.mid(1)) << s_user + s_nemotron;
    QTest::newRow("never packaged") << QStringList(all.mid(2)) << QString();
    QTest::newRow("a file is no directory") << QStringList {s_user + s_nemotron} << QString();
}

void tst_ModelPaths::findsTheStreamingModel()
{
    QFETCH(QStringList, there);
    QFETCH(QString, found);
    make(there);
    QCOMPARE(ModelPaths::resolveStreamingModelDir(roots()), path(found));
}

void tst_ModelPaths::findsSherpa_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QString>("root");

    const auto rows = [](const QString &program, const QString &other) {
        const QString executable = program + QLatin1Char('*');
        const QString lib = QStringLiteral("lib/");
        const auto row = [&](const char *title, const QStringList &there, const QString &root) {
            QTest::addRow("%s: %s", qPrintable(program), title) << program << there << root;
        };
        row("nothing there", {}, {});
        row("prebuilt before built", {s_prebuilt + executable, s_prebuilt + lib, s_built + executable, s_built + lib},
            s_prebuilt);
        row("built", {s_built + executable, s_built + lib}, s_built);
        row("without libraries", {s_prebuilt + executable}, {});
        row("without libraries before a whole one", {s_prebuilt + executable, s_built + executable, s_built + lib},
            s_built);
        row("without the program before a whole one", {s_prebuilt + lib, s_built + executable, s_built + lib}, s_built);
        row("program here, libraries there", {s_prebuilt + executable, s_built + lib}, {});
        row("not executable", {s_prebuilt + program, s_prebuilt + lib}, {});
        row("libraries that are a file", {s_prebuilt + executable, s_prebuilt + QStringLiteral("lib")}, {});
        row("the other program", {s_prebuilt + other + QLatin1Char('*'), s_prebuilt + lib}, {});
    };
    rows(s_offline, s_online);
    rows(s_online, s_offline);
}

void tst_ModelPaths::findsSherpa()
{
    QFETCH(QString, program);
    QFETCH(QStringList, there);
    QFETCH(QString, root);
    make(there);
    QCOMPARE(ModelPaths::findSherpaLibDir(program, roots()),
             root.isEmpty() ? QString() : path(root + QStringLiteral("lib")));
    QCOMPARE(ModelPaths::findSherpaBinary(program, roots()), root.isEmpty() ? QString() : path(root + program));
}

void tst_ModelPaths::rootsOfThisProcess()
{
    const SearchRoots roots = SearchRoots::ofThisProcess();
    QCOMPARE(roots.home, QDir::homePath());
    QCOMPARE(roots.system, QString());
    QCOMPARE(roots.packagedModels(), QStringLiteral("/usr/share/tovi-forkeldaos/models"));
    QCOMPARE(roots.userModels(), QString(QDir::homePath() + QStringLiteral("/.local/share/tovi-forkeldaos/models")));
}

void tst_ModelPaths::followsTheHome()
{
    make({s_user + s_moonshine + QLatin1Char('/')});
    const ScopedEnvironment home("HOME", QFile::encodeName(path(QStringLiteral("home"))));
    const SearchRoots roots {SearchRoots::ofThisProcess().home, path(QStringLiteral("system"))};
    QCOMPARE(ModelPaths::resolveMoonshineModelDir({}, roots), path(s_user + s_moonshine));
}

REGISTER_TEST(tst_ModelPaths, QCoreApplication)
#include "tst_ModelPaths.moc"
