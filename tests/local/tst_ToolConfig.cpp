// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigManager.h"
#include "Files.h"
#include "MessageLog.h"
#include "TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QJsonObject objectOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

using Update = std::function<void(ConfigManager &, const QJsonObject &)>;
using Get = std::function<QJsonObject(const ConfigManager &)>;

} // namespace

Q_DECLARE_METATYPE(Update)
Q_DECLARE_METATYPE(Get)

//! The agent tool's configuration through ConfigManager, with the file before and after.
class tst_ToolConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void withoutAFile();
    void loads();
    void unusableFiles_data();
    void unusableFiles();
    void unreadableFile();
    void brokenFileIsOverwritten();
    void changedOnDisk();
    void cutShortByAFailedSave();
    void sections_data();
    void sections();
    void agentsOrModes_data();
    void agentsOrModes();
    void replacesEverything();
    void reloadingLosesUpdates();
    void savesInPlace();
    void newFileIsPrivate();
    void keepsTheLayout();
    void saveFails_data();
    void saveFails();
    void fullDisk();
    void specialFile();
    void hugeFile();

private:
    void write(const QByteArray &content) const;
    QByteArray content() const;

    QString m_directory;
    QString m_path;
};

void tst_ToolConfig::init()
{
    m_directory = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + text("/loomra");
    m_path = m_directory + text("/loomra.json");
    QFile::setPermissions(m_directory, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QVERIFY(QDir(m_directory).removeRecursively());
}

void tst_ToolConfig::write(const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(m_directory));
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray tst_ToolConfig::content() const
{
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

void tst_ToolConfig::withoutAFile()
{
    ConfigManager config;
    QVERIFY(QFileInfo(m_directory).isDir()); // asking for the path creates it
    QCOMPARE(config.getLoomraConfigPath(), m_path);
    const QJsonObject expected {{text("$schema"), text("https://loomra.example/config.schema.json")}};
    QCOMPARE(config.getLoomraConfig(), expected);
    QVERIFY(!QFileInfo::exists(m_path));

    QVERIFY(QDir(m_directory).removeRecursively());
    const QSignalSpy changed(&config, &ConfigManager::loomraConfigChanged);
    QVERIFY(config.saveLoomraConfig());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(content(), QJsonDocument(expected).toJson());
}

void tst_ToolConfig::loads()
{
    write(R"({"agent":{"build":{"mode":"primary"},"plan":{}},"tools":{"bash":true},"theme":"dark"})");
    ConfigManager config;
    QCOMPARE(config.getAgents(), objectOf(R"({"build":{"mode":"primary"},"plan":{}})"));
    QCOMPARE(config.getTools(), objectOf(R"({"bash":true})"));
    const QSignalSpy changed(&config, &ConfigManager::loomraConfigChanged);
    write(R"({"agent":{"build":{}}})");
    QCOMPARE(config.getTools().size(), 1); // the file isn't watched
    QTest::ignoreMessage(QtDebugMsg, "getLoomraConfig: Loaded config with 1 top-level keys");
    QTest::ignoreMessage(QtDebugMsg, "getLoomraConfig: agent keys: (\"build\")");
    QCOMPARE(config.getLoomraConfig(), objectOf(R"({"agent":{"build":{}}})"));
    QCOMPARE(config.getTools(), QJsonObject());
    QCOMPARE(changed.count(), 0);
}

void tst_ToolConfig::unusableFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("warning");

    QTest::newRow("broken") << QByteArray("{\"agent\":")
                            << QByteArray("Failed to parse Loomra config JSON: \"unterminated object\"");
    QTest::newRow("empty") << QByteArray() << QByteArray("Failed to parse Loomra config JSON: \"illegal value\"");
    QTest::newRow("binary") << QByteArray("\0\1\2", 3)
                            << QByteArray("Failed to parse Loomra config JSON: \"illegal value\"");
    QTest::newRow("deep") << QByteArray("{\"a\":").repeated(5000)
                          << QByteArray("Failed to parse Loomra config JSON: \"too deeply nested document\"");
    QTest::newRow("a list") << QByteArray("[1]") << QByteArray();
}

void tst_ToolConfig::unusableFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, warning);

    write(content);
    for (int time = 0; time < 2 && !warning.isEmpty(); ++time) {
        QTest::ignoreMessage(QtWarningMsg, warning.constData());
    }
    ConfigManager config;
    QCOMPARE(config.getLoomraConfig(), QJsonObject());
    QCOMPARE(config.isLoomraConfigValid(), false);
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false);
    QCOMPARE(this->content(), content);
}

void tst_ToolConfig::unreadableFile()
{
    QVERIFY(QDir().mkpath(m_path)); // not even root can open it as a file
    for (int time = 0; time < 2; ++time) {
        QTest::ignoreMessage(QtWarningMsg, qPrintable(text("Failed to open Loomra config file: \"%1\"").arg(m_path)));
    }
    ConfigManager config;
    QCOMPARE(config.getLoomraConfig(), QJsonObject());
    QCOMPARE(config.isLoomraConfigValid(), false);
    QVERIFY(QDir(m_path).removeRecursively());
}

void tst_ToolConfig::brokenFileIsOverwritten()
{
    write("{\"agent\":");
    QTest::ignoreMessage(QtWarningMsg, "Failed to parse Loomra config JSON: \"unterminated object\"");
    ConfigManager config;
    QVERIFY(config.saveLoomraConfig());
    QCOMPARE(content(), QByteArray("{\n}\n"));
    QCOMPARE(config.isLoomraConfigValid(), true);
}

void tst_ToolConfig::changedOnDisk()
{
    ConfigManager config;
    QCOMPARE(config.getLoomraConfigSchema(), config.getLoomraConfig().value(text("$schema")).toString());
    QCOMPARE(config.isLoomraConfigValid(), true);
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false); // no file, and none before

    write(R"({"theme":"dark"})");
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), true);
    config.getLoomraConfig();
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false);
    write("{\r\n}");
    config.getLoomraConfig();
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false);

    config.updateTools(objectOf(R"({"bash":true})"));
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false); // the change is in memory
    QVERIFY(config.saveLoomraConfig());
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false);
    write(content() + ' ');
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), true);
    QVERIFY(config.saveLoomraConfig()); // the caller has decided
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false);
    QVERIFY(QFile::remove(m_path));
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), true);
}

void tst_ToolConfig::cutShortByAFailedSave()
{
    // Writing fails when the file is full: no file of this process may be longer than this.
    write(R"({"theme":"dark"})");
    ConfigManager config;
    config.updateTools(objectOf(R"({"bash":true})"));
    struct rlimit before
    {
    };
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = before;
    limit.rlim_cur = 4;
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limit), 0);
    const bool isSaved = config.saveLoomraConfig();
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
    signal(SIGXFSZ, handler);
    QVERIFY(!isSaved);
    QVERIFY(content().size() <= 4);
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false);
    QVERIFY(config.saveLoomraConfig());
    QCOMPARE(config.isLoomraConfigChangedOnDisk(), false);
    QCOMPARE(objectOf(content()), objectOf(R"({"theme":"dark","tools":{"bash":true}})"));
}

void tst_ToolConfig::sections_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<Update>("update");
    QTest::addColumn<Get>("get");

    QTest::newRow("agents") << text("agent") << Update(&ConfigManager::updateAgents) << Get(&ConfigManager::getAgents);
    QTest::newRow("tools") << text("tools") << Update(&ConfigManager::updateTools) << Get(&ConfigManager::getTools);
    QTest::newRow("permissions") << text("permission") << Update(&ConfigManager::updatePermissions)
                                 << Get(&ConfigManager::getPermissions);
    QTest::newRow("mcp") << text("mcp") << Update(&ConfigManager::updateMcp) << Get(&ConfigManager::getMcp);
    QTest::newRow("providers") << text("provider") << Update(&ConfigManager::updateProviders)
                               << Get(&ConfigManager::getProviders);
}

void tst_ToolConfig::sections()
{
    QFETCH(QString, key);
    QFETCH(Update, update);
    QFETCH(Get, get);

    write(QByteArray(R"({"unknown":{"x":[1]},")") + key.toUtf8() + R"(":{"old":1,"kept":2}})");
    ConfigManager config;
    QCOMPARE(get(config), objectOf(R"({"old":1,"kept":2})"));
    const QSignalSpy changed(&config, &ConfigManager::loomraConfigChanged);
    update(config, objectOf(R"({"new":3})")); // replaces, doesn't merge
    QCOMPARE(changed.count(), 1);
    QCOMPARE(get(config), objectOf(R"({"new":3})"));
    QVERIFY(content().contains("old"));
    QVERIFY(config.saveLoomraConfig());
    QCOMPARE(changed.count(), 2);
    const QJsonObject expected {{text("unknown"), objectOf(R"({"x":[1]})")}, {key, objectOf(R"({"new":3})")}};
    QCOMPARE(objectOf(content()), expected);

    write(QByteArray("{\"") + key.toUtf8() + "\":\"a string\"}");
    config.getLoomraConfig();
    QCOMPARE(get(config), QJsonObject());
}

void tst_ToolConfig::agentsOrModes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("agents");

    QTest::newRow("only modes") << QByteArray(R"({"mode":{"a":{}}})") << QStringList(text("a"));
    QTest::newRow("both") << QByteArray(R"({"mode":{"a":{}},"agent":{"b":{}}})") << QStringList(text("b"));
    QTest::newRow("no agents") << QByteArray(R"({"mode":{"a":{}},"agent":{}})") << QStringList(text("a"));
    QTest::newRow("agents are no object") << QByteArray(R"({"mode":{"a":{}},"agent":["b"]})") << QStringList(text("a"));
    QTest::newRow("neither") << QByteArray("{}") << QStringList();
}

void tst_ToolConfig::agentsOrModes()
{
    QFETCH(QByteArray, content);

    write(content);
    ConfigManager config;
    QTEST(config.getAgents().keys(), "agents");
    // The modes stay when the agents are saved.
    config.updateAgents(objectOf(R"({"new":{}})"));
    QVERIFY(config.saveLoomraConfig());
    QCOMPARE(objectOf(this->content()).value(text("mode")), objectOf(content).value(text("mode")));
    QCOMPARE(config.getAgents().keys(), QStringList(text("new")));
}

void tst_ToolConfig::replacesEverything()
{
    write(R"({"agent":{"a":{}}})");
    ConfigManager config;
    const QSignalSpy changed(&config, &ConfigManager::loomraConfigChanged);
    config.setLoomraConfig(objectOf(R"({"tools":{"bash":false}})"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(config.getAgents(), QJsonObject());
    QCOMPARE(config.getTools(), objectOf(R"({"bash":false})"));
    QCOMPARE(config.getLoomraConfigAsString(), text("{\n    \"tools\": {\n        \"bash\": false\n    }\n}\n"));
}

void tst_ToolConfig::reloadingLosesUpdates()
{
    write(R"({"tools":{"bash":true}})");
    ConfigManager config;
    config.updateTools({});
    QCOMPARE(config.getLoomraConfig(), objectOf(R"({"tools":{"bash":true}})"));
    QCOMPARE(config.getTools(), objectOf(R"({"bash":true})"));
    // Nor does the end of the program save them.
    {
        ConfigManager other;
        other.updateTools({});
    }
    QCOMPARE(content(), QByteArray(R"({"tools":{"bash":true}})"));
}

void tst_ToolConfig::savesInPlace()
{
    const QString target = QDir::homePath() + text("/dotfiles.json");
    QFile file(target);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    const QFile::Permissions mode =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup | QFile::ReadOther;
    QVERIFY(QFile::setPermissions(target, mode));
    QVERIFY(QDir().mkpath(m_directory));
    QVERIFY(QFile::link(target, m_path));
    ConfigManager config;
    config.updateTools(objectOf(R"({"bash":true})"));
    const QByteArray expected = "{\n    \"tools\": {\n        \"bash\": true\n    }\n}\n";
    QTest::ignoreMessage(QtDebugMsg, qPrintable(text("Saving Loomra config to: \"%1\"").arg(m_path)));
    QTest::ignoreMessage(
        QtDebugMsg,
        qPrintable(text("Successfully wrote %1 bytes to config file: \"%2\"").arg(expected.size()).arg(m_path)));
    QTest::ignoreMessage(QtDebugMsg, "Loomra config saved successfully");
    QVERIFY(config.saveLoomraConfig());
    QVERIFY(QFileInfo(m_path).isSymLink());
    QCOMPARE(QFile::permissions(target), mode);
    QCOMPARE(content(), expected);
    QCOMPARE(QDir(m_directory).entryList(QDir::Files), QStringList(text("loomra.json")));
    QVERIFY(QFile::remove(target));
}

void tst_ToolConfig::newFileIsPrivate()
{
    QVERIFY(QDir().mkpath(m_directory));
    ConfigManager config;
    config.updateTools(objectOf(R"({"bash":true})"));
    const mode_t umaskBefore = ::umask(0); // so that it can't make the file private
    QVERIFY(config.saveLoomraConfig());
    ::umask(umaskBefore);
    QCOMPARE(modeOf(m_path), 0600);
}

void tst_ToolConfig::keepsTheLayout()
{
    write("{ \"tools\": {\"write\": 1.0, \"bash\": true}, \"agent\": {} }");
    ConfigManager config;
    config.updateAgents(objectOf(R"({"build":{"temperature":0.5}})"));
    const QByteArray expected = R"({
    "tools": {
        "write": 1.0,
        "bash": true
    },
    "agent": {
        "build": {
            "temperature": 0.5
        }
    }
}
)";
    QCOMPARE(config.getLoomraConfigAsString(), QString::fromUtf8(expected));
    QVERIFY(config.saveLoomraConfig());
    QCOMPARE(content(), expected);
    // What was saved is the layout of the next save.
    config.updateMcp({});
    config.updateAgents({});
    QVERIFY(config.saveLoomraConfig());
    QVERIFY(content().startsWith("{\n    \"tools\": {\n        \"write\": 1.0,"));
}

void tst_ToolConfig::saveFails_data()
{
    QTest::addColumn<bool>("isDirectory");

    QTest::newRow("a directory") << true;
    QTest::newRow("no permission") << false;
}

void tst_ToolConfig::saveFails()
{
    QFETCH(bool, isDirectory);

    ConfigManager config;
    if (isDirectory) {
        QVERIFY(QDir().mkpath(m_path));
    } else {
        write("{}");
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner));
        if (access(QFile::encodeName(m_path).constData(), W_OK) == 0) {
            QSKIP("this user may write everything");
        }
    }
    const QSignalSpy changed(&config, &ConfigManager::loomraConfigChanged);
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(text("Failed to open Loomra config file for writing: \"%1\"").arg(m_path)));
    QTest::ignoreMessage(QtWarningMsg, qPrintable(text("Failed to save Loomra config to: \"%1\"").arg(m_path)));
    QVERIFY(!config.saveLoomraConfig());
    QCOMPARE(changed.count(), 0);
}

void tst_ToolConfig::fullDisk()
{
    ConfigManager config;
    QVERIFY(QFile::link(text("/dev/full"), m_path));
    // The device is a special file, so it is not even opened.
    QTest::ignoreMessage(QtWarningMsg, qPrintable(text("Failed to save Loomra config to: \"%1\"").arg(m_path)));
    QVERIFY(!config.saveLoomraConfig());
}

void tst_ToolConfig::specialFile()
{
    QVERIFY(QDir().mkpath(m_directory));
    QCOMPARE(mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
    QTest::ignoreMessage(QtWarningMsg, qPrintable(text("Failed to open Loomra config file: \"%1\"").arg(m_path)));
    ConfigManager config; // hangs if it is opened
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(text("Failed to open Loomra config file for writing: \"%1\"").arg(m_path)));
    QVERIFY(!config.saveLoomraConfig());
}

void tst_ToolConfig::hugeFile()
{
    QByteArray huge = R"({"unknown":[)";
    for (int i = 0; i < 20000; ++i) {
        huge += R"({"name":"something that is as long as a path in a home directory","value":1.0},)";
    }
    huge += "0]}";
    write(huge);
    ConfigManager config;
    config.updateTools(objectOf(R"({"bash":true})"));
    QVERIFY(config.saveLoomraConfig());
    const QJsonObject saved = objectOf(content());
    QCOMPARE(saved.value(text("unknown")).toArray().size(), 20001);
    QCOMPARE(saved.value(text("tools")), objectOf(R"({"bash":true})"));
    QVERIFY(content().contains("\"value\": 1.0"));
}

REGISTER_TEST(tst_ToolConfig, QCoreApplication)

#include "tst_ToolConfig.moc"
