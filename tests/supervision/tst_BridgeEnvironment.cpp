// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeEnvironment.h"
#include "TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

using Variables = QMap<QString, QString>;

namespace
{

const QString s_tool = QStringLiteral("/usr/libexec/tovi-forkeldaos/bin/loomra");
const QString s_project = QStringLiteral("/usr/share/tovi-forkeldaos/loomra-project");
const QString s_mark = QStringLiteral("/.loomra");

//! The environment of a child if that of this process is empty.
const Variables s_always {
    {QStringLiteral("LOOMRA_BRIDGE_PORT"), QStringLiteral("8765")},
    {QStringLiteral("LOOMRA_AUTO_AGENT_ROUTING"), QStringLiteral("true")},
    {QStringLiteral("LOOMRA_EXECUTOR_PATH"), QStringLiteral("1")},
    {QStringLiteral("XDG_STATE_HOME"), QStringLiteral("/home/u/.local/state")},
    {QStringLiteral("LOOMRA_WORKSPACE_INTEL"), QStringLiteral("0")},
    {QStringLiteral("LOOMRA_AI_RUNTIME"), QStringLiteral("0")},
};

QProcessEnvironment environmentOf(const Variables &variables)
{
    QProcessEnvironment environment;
    for (auto row = variables.cbegin(); row != variables.cend(); ++row) {
        environment.insert(row.key(), row.value());
    }
    return environment;
}

Variables variablesOf(const QProcessEnvironment &environment)
{
    Variables variables;
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        variables.insert(name, environment.value(name));
    }
    return variables;
}

} // namespace

class tst_BridgeEnvironment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsesSwitches_data();
    void parsesSwitches();
    void writesSwitches();
    void findsTheProject_data();
    void findsTheProject();
    void makesTheChildsEnvironment_data();
    void makesTheChildsEnvironment();
    void omitsTheStateDirectoryWithoutAHome();
    void inspectsThisMachine();
    void startsFromThisProcess();
};

void tst_BridgeEnvironment::parsesSwitches_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("on");

    QTest::newRow("unset") << QString() << true;
    QTest::newRow("empty") << "" << true;
    QTest::newRow("0") << "0" << false;
    QTest::newRow("false") << "false" << false;
    QTest::newRow("False") << "False" << false;
    QTest::newRow("FALSE") << "FALSE" << false;
    QTest::newRow("1") << "1" << true;
    QTest::newRow("true") << "true" << true;
    QTest::newRow("no") << "no" << true;
    QTest::newRow("off") << "off" << true;
    QTest::newRow("00") << "00" << true;
    QTest::newRow("whitespace before") << " 0" << true;
    QTest::newRow("whitespace behind") << "false " << true;
    QTest::newRow("begins like false") << "falsey" << true;
}

void tst_BridgeEnvironment::parsesSwitches()
{
    QFETCH(QString, value);
    QTEST(BridgeEnvironment::truthyEnvValue(value), "on");
}

void tst_BridgeEnvironment::writesSwitches()
{
    QCOMPARE(BridgeEnvironment::envValue(true), QStringLiteral("1"));
    QCOMPARE(BridgeEnvironment::envValue(false), QStringLiteral("0"));
}

void tst_BridgeEnvironment::findsTheProject_data()
{
    QTest::addColumn<QString>("candidate");
    QTest::addColumn<QStringList>("directories");
    QTest::addColumn<QString>("root");

    const QString installed = s_project + s_mark;
    const auto row = [&](const char *name, const char *candidate, const QStringList &directories, const QString &root) {
        QTest::newRow(name) << QString::fromUtf8(candidate) << (directories + QStringList {installed}) << root;
    };
    const auto list = [](const char *one) { return QStringList {QString::fromUtf8(one)}; };

    row("no candidate", "", {}, s_project);
    row("no candidate is not the root directory", "", list("/.loomra"), s_project);
    row("a project", "/p", list("/p/.loomra"), QStringLiteral("/p"));
    row("taken as it is", "p/../q", list("p/../q/.loomra"), QStringLiteral("p/../q"));
    row("a directory without the mark", "/p", list("/p"), s_project);
    row("the mark for its parent", "/p/.loomra", list("/p/.loomra"), QStringLiteral("/p"));
    row("the mark that isn't there", "/p/.loomra", list("/p"), s_project);
    row("a project of that name", "/p/.loomra", {QStringLiteral("/p/.loomra"), QStringLiteral("/p/.loomra/.loomra")},
        QStringLiteral("/p/.loomra"));
    row("the mark of the root directory", "/.loomra", list("/.loomra"), QStringLiteral("/"));
    row("the mark with a slash behind", "/p/.loomra/", list("/p/.loomra"), s_project);
    row("a name that ends like it", "/p/x.loomra", list("/p/x.loomra"), s_project);
    row("a relative mark", ".loomra", list(".loomra"), s_project);
    QTest::newRow("nothing installed") << QString() << QStringList {s_project} << QString();
    QTest::newRow("neither candidate nor installed") << QStringLiteral("/p") << QStringList {} << QString();
}

void tst_BridgeEnvironment::findsTheProject()
{
    QFETCH(QString, candidate);
    QFETCH(QStringList, directories);
    const auto isDirectory = [&](const QString &path) { return directories.contains(path); };
    QTEST(BridgeEnvironment::projectRoot(candidate, isDirectory), "root");
}

void tst_BridgeEnvironment::makesTheChildsEnvironment_data()
{
    QTest::addColumn<Variables>("before");
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<Variables>("changes"); // compared with s_always
    QTest::addColumn<bool>("executorPathEnabled");

    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    const auto row = [&](const char *name, const Variables &before, const Variables &changes, bool enabled = true) {
        QTest::newRow(name) << before << QStringList {} << changes << enabled;
    };
    const auto kept = [&](const char *name, const char *variable, const char *value) {
        row(name, {{text(variable), text(value)}}, {{text(variable), text(value)}});
    };
    const auto set = [&](const char *name, const char *variable, const char *before, const char *after,
                         bool enabled = true) {
        row(name, {{text(variable), text(before)}}, {{text(variable), text(after)}}, enabled);
    };

    row("nothing", {}, {});
    kept("the rest stays", "EDITOR", "vi");
    kept("the path stays", "PATH", "/bin");

    set("port is ours", "LOOMRA_BRIDGE_PORT", "9000", "8765");
    set("routing is always on", "LOOMRA_AUTO_AGENT_ROUTING", "false", "true");

    set("executor path empty", "LOOMRA_EXECUTOR_PATH", "", "1");
    set("executor path yes", "LOOMRA_EXECUTOR_PATH", "yes", "1");
    set("executor path no", "LOOMRA_EXECUTOR_PATH", "no", "1");
    set("executor path False", "LOOMRA_EXECUTOR_PATH", "False", "0", false);
    set("executor path 0", "LOOMRA_EXECUTOR_PATH", "0", "0", false);

    kept("state directory is the user's", "XDG_STATE_HOME", "/s");
    kept("state directory may be empty", "XDG_STATE_HOME", "");
    kept("workspace is the user's", "LOOMRA_WORKSPACE_INTEL", "1");
    kept("workspace may be empty", "LOOMRA_WORKSPACE_INTEL", "");
    kept("runtime is the user's", "LOOMRA_AI_RUNTIME", "1");
    kept("runtime may be empty", "LOOMRA_AI_RUNTIME", "");

    row("proxies are removed",
        {{text("HTTP_PROXY"), text("p")},
         {text("HTTPS_PROXY"), text("p")},
         {text("http_proxy"), text("p")},
         {text("https_proxy"), text("p")},
         {text("NO_PROXY"), text("p")},
         {text("no_proxy"), text("p")}},
        {});
    kept("other proxies stay", "ALL_PROXY", "p");

    QTest::newRow("tool directory first")
        << Variables {{text("PATH"), text("/bin:/usr/bin")}} << QStringList {s_tool}
        << Variables {{text("PATH"), text("/usr/libexec/tovi-forkeldaos/bin:/bin:/usr/bin")}} << true;
    QTest::newRow("tool directory alone keeps its colon")
        << Variables {} << QStringList {s_tool} << Variables {{text("PATH"), text("/usr/libexec/tovi-forkeldaos/bin:")}}
        << true;

    const QStringList project {s_project + s_mark};
    QTest::newRow("installed project") << Variables {} << project
                                       << Variables {{text("LOOMRA_PROJECT_ROOT"), s_project}} << true;
    for (const char *value : {"", "/p", "/p/.loomra"}) {
        const Variables own {{text("LOOMRA_PROJECT_ROOT"), text(value)}};
        QTest::addRow("project is the user's: \"%s\"", value)
            << own << (project + QStringList {text("/p/.loomra")}) << own << true;
    }
}

void tst_BridgeEnvironment::makesTheChildsEnvironment()
{
    QFETCH(Variables, before);
    QFETCH(QStringList, installed);
    QFETCH(Variables, changes);
    const auto isInstalled = [&](const QString &path) { return installed.contains(path); };
    const auto child =
        BridgeEnvironment::forChild(environmentOf(before), {8765, QStringLiteral("/home/u"), isInstalled, isInstalled});
    Variables expected = s_always;
    expected.insert(changes);
    QCOMPARE(variablesOf(child.environment), expected);
    QTEST(child.executorPathEnabled, "executorPathEnabled");
}

void tst_BridgeEnvironment::omitsTheStateDirectoryWithoutAHome()
{
    const auto nothing = [](const QString &) { return false; };
    const auto child = BridgeEnvironment::forChild(QProcessEnvironment(), {1, QString(), nothing, nothing});
    Variables expected = s_always;
    expected.remove(QStringLiteral("XDG_STATE_HOME"));
    expected.insert(QStringLiteral("LOOMRA_BRIDGE_PORT"), QStringLiteral("1"));
    QCOMPARE(variablesOf(child.environment), expected);
}

void tst_BridgeEnvironment::inspectsThisMachine()
{
    const QTemporaryDir directory(QDir::homePath() + QStringLiteral("/XXXXXX"));
    QFile file(directory.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));

    const auto here = BridgeEnvironment::systemOfThisProcess(12);
    QCOMPARE(here.port, 12);
    QCOMPARE(here.home, QDir::homePath());
    QVERIFY(here.isDirectory(directory.path()));
    QVERIFY(!here.isDirectory(file.fileName()));
    QVERIFY(!here.isDirectory(directory.filePath(QStringLiteral("absent"))));
    QVERIFY(!here.isExecutableFile(file.fileName()));
    QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner));
    QVERIFY(here.isExecutableFile(file.fileName()));
    QVERIFY(!here.isExecutableFile(directory.path()));
    QVERIFY(!here.isExecutableFile(directory.filePath(QStringLiteral("absent"))));
}

void tst_BridgeEnvironment::startsFromThisProcess()
{
    qputenv("LOOMRA_WORKSPACE_INTEL", "1");
    qputenv("LOOMRA_AUTO_AGENT_ROUTING", "false");
    qputenv("LOOMRA_EXECUTOR_PATH", "False");
    qputenv("https_proxy", "http://nowhere");
    const auto child = BridgeEnvironment::forChild(8765);
    QVERIFY(!child.executorPathEnabled);
    QCOMPARE(child.environment.value(QStringLiteral("LOOMRA_EXECUTOR_PATH")), QStringLiteral("0"));
    QCOMPARE(child.environment.value(QStringLiteral("LOOMRA_BRIDGE_PORT")), QStringLiteral("8765"));
    QCOMPARE(child.environment.value(QStringLiteral("LOOMRA_WORKSPACE_INTEL")), QStringLiteral("1"));
    QCOMPARE(child.environment.value(QStringLiteral("LOOMRA_AUTO_AGENT_ROUTING")), QStringLiteral("true"));
    QCOMPARE(child.environment.value(QStringLiteral("XDG_STATE_HOME")),
             QDir::homePath() + QStringLiteral("/.local/state"));
    QVERIFY(!child.environment.contains(QStringLiteral("https_proxy")));
    QVERIFY(child.environment.value(QStringLiteral("PATH")).endsWith(qEnvironmentVariable("PATH")));
    // The environment of this process is unchanged.
    QCOMPARE(qgetenv("LOOMRA_EXECUTOR_PATH"), QByteArray("False"));
    QCOMPARE(qgetenv("https_proxy"), QByteArray("http://nowhere"));
}

REGISTER_TEST(tst_BridgeEnvironment, QCoreApplication)
#include "tst_BridgeEnvironment.moc"
