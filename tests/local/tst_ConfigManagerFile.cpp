// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigFile.h"
#include "ConfigManager.h"
#include "Files.h"
#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QDir>
#include <QProcess>
#include <QTest>

namespace
{

constexpr char s_childArgument[] = "--run-with-key";

//! A program that changes one setting, saves it twice and exits normally.
int runWithKey(int &argc, char **argv)
{
    QCoreApplication application(argc, argv);
    TestSetup::setAboutData();
    auto *config = new ConfigManager(&application);
    config->setApiKey(QString::fromLocal8Bit(argv[2]));
    config->save();
    return 0;
}

//! The value of a key in the file, null if there is none.
QByteArray stored(const QByteArray &key)
{
    for (const QByteArray &line : ConfigFile::content().split('\n')) {
        if (line.startsWith(key + '=')) {
            return line.mid(key.size() + 1);
        }
    }
    return {};
}

//! Replaces the settings like another process: KConfig doesn't notice.
bool writeByAnother(const QByteArray &lines)
{
    return writeFile(ConfigFile::path(), "[General]\n" + lines);
}

} // namespace

class tst_ConfigManagerFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void minutesAreBoundedOnReading_data();
    void minutesAreBoundedOnReading();
    void savesAllValues();
    void doesNotSaveAutomatically();
    void loadsWithoutSignals();
    void loadDiscardsUnsavedChanges();
    void loadDoesNotReread();
    void fileIsPrivate();
    void savesOnDestruction();
    void ignoresSaveErrors();
    void savesLaterWhatItCantSaveNow();

    void keepsChangesOfAnotherProcess_data();
    void keepsChangesOfAnotherProcess();
    void ownChangesWin();
    void savedChangesAreNotWrittenAgain();
    void keepsTheKeyOfARunningProcess();
};

void tst_ConfigManagerFile::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_ConfigManagerFile::init()
{
    ConfigFile::remove();
}

void tst_ConfigManagerFile::minutesAreBoundedOnReading_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("minutes");

    QTest::newRow("as it is") << QByteArray("30") << 30;
    QTest::newRow("minimum") << QByteArray("1") << 1;
    QTest::newRow("0") << QByteArray("0") << 1;
    QTest::newRow("negative") << QByteArray("-7") << 1;
    QTest::newRow("maximum") << QByteArray("1440") << 1440;
    QTest::newRow("above") << QByteArray("1441") << 1440;
    QTest::newRow("2000") << QByteArray("2000") << 1440;
    QTest::newRow("a word") << QByteArray("often") << 1;
    QTest::newRow("empty") << QByteArray("") << 1;
    QTest::newRow("fraction") << QByteArray("7.5") << 1;
}

void tst_ConfigManagerFile::minutesAreBoundedOnReading()
{
    QFETCH(QByteArray, stored);
    QVERIFY(ConfigFile::write("WorkspaceSuggestionReminderMinutes=" + stored + '\n'));
    QTEST(ConfigManager().workspaceSuggestionReminderMinutes(), "minutes");
}

void tst_ConfigManagerFile::savesAllValues()
{
    const QString project = QDir::homePath();
    const QString key = QStringLiteral(" ü=$HOME\n\\,[x] ");
    ConfigManager config;
    config.setApiKey(key);
    config.setCurrentProject(project);
    config.setWorkspaceSuggestionReminderEnabled(true);
    config.setWorkspaceSuggestionReminderMinutes(30);
    config.setWorkspaceTemplateSlugEnabled(QStringLiteral("a,b"), true);
    config.save();

    QList<QByteArray> keys;
    for (const QByteArray &line : ConfigFile::content().split('\n')) {
        keys.append(line.split('=').first());
    }
    // KConfig sorts them.
    QCOMPARE(
        keys,
        (QList<QByteArray> {"[General]", "ApiKey", "CurrentProject", "EnabledWorkspaceTemplateSlugs", "RecentProjects",
                            "WorkspaceSuggestionReminderEnabled", "WorkspaceSuggestionReminderMinutes", ""}));

    KSharedConfig::openConfig()->reparseConfiguration();
    const ConfigManager next;
    QCOMPARE(next.apiKey(), key);
    QCOMPARE(next.currentProject(), project);
    QCOMPARE(next.recentProjects(), QStringList(project));
    QCOMPARE(next.workspaceSuggestionReminderEnabled(), true);
    QCOMPARE(next.workspaceSuggestionReminderMinutes(), 30);
    QVERIFY(next.isWorkspaceTemplateSlugEnabled(QStringLiteral("a,b")));
}

void tst_ConfigManagerFile::doesNotSaveAutomatically()
{
    ConfigManager config;
    config.setApiKey(QStringLiteral("k"));
    config.setCurrentProject(QDir::homePath());
    config.setWorkspaceTemplateSlugEnabled(QStringLiteral("x"), true);
    QVERIFY(!QFile::exists(ConfigFile::path()));
}

void tst_ConfigManagerFile::loadsWithoutSignals()
{
    ConfigManager config;
    SignalLog emitted(&config);
    QVERIFY(
        ConfigFile::write("ApiKey=k\nCurrentProject=/p\nRecentProjects=/p,/q\nWorkspaceSuggestionReminderEnabled=true\n"
                          "WorkspaceSuggestionReminderMinutes=7\nEnabledWorkspaceTemplateSlugs=x\n"));
    config.load();
    QCOMPARE(config.apiKey(), QStringLiteral("k"));
    QCOMPARE(config.currentProject(), QStringLiteral("/p"));
    QCOMPARE(config.recentProjects(), (QStringList {QStringLiteral("/p"), QStringLiteral("/q")}));
    QCOMPARE(config.workspaceSuggestionReminderEnabled(), true);
    QCOMPARE(config.workspaceSuggestionReminderMinutes(), 7);
    QVERIFY(config.isWorkspaceTemplateSlugEnabled(QStringLiteral("x")));
    QCOMPARE(emitted.entries(), QStringList());
}

void tst_ConfigManagerFile::loadDiscardsUnsavedChanges()
{
    ConfigManager config;
    config.setApiKey(QStringLiteral("saved"));
    config.save();
    config.setApiKey(QStringLiteral("not saved"));
    config.load();
    QCOMPARE(config.apiKey(), QStringLiteral("saved"));
}

void tst_ConfigManagerFile::loadDoesNotReread()
{
    ConfigManager config;
    config.setApiKey(QStringLiteral("opened"));
    config.save();
    QVERIFY(writeFile(ConfigFile::path(), "[General]\nApiKey=changed\n"));
    config.load();
    QCOMPARE(config.apiKey(), QStringLiteral("opened"));
}

void tst_ConfigManagerFile::fileIsPrivate()
{
    ConfigManager().save();
    constexpr QFile::Permissions others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QVERIFY(QFile::exists(ConfigFile::path()));
    QCOMPARE(QFile::permissions(ConfigFile::path()) & others, QFile::Permissions());
    QCOMPARE(QFile::permissions(ConfigFile::path()) & (QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner),
             QFile::ReadOwner | QFile::WriteOwner);
}

void tst_ConfigManagerFile::savesOnDestruction()
{
    // A child of the application is destroyed last, when the process is about to exit.
    QProcess run;
    run.start(QCoreApplication::applicationFilePath(),
              {QStringLiteral("tst_ConfigManagerFile"), QLatin1String(s_childArgument), QStringLiteral("last")});
    QVERIFY(run.waitForFinished());
    QCOMPARE(run.exitCode(), 0);
    QCOMPARE(run.readAllStandardError(), QByteArray());
    QVERIFY2(ConfigFile::content().contains("\nApiKey=last\n"), ConfigFile::content().constData());
}

void tst_ConfigManagerFile::ignoresSaveErrors()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("/dev/null"));
    QProcess run;
    run.setProcessEnvironment(environment);
    run.start(QCoreApplication::applicationFilePath(),
              {QStringLiteral("tst_ConfigManagerFile"), QLatin1String(s_childArgument), QStringLiteral("lost")});
    QVERIFY(run.waitForFinished());
    QCOMPARE(run.exitStatus(), QProcess::NormalExit);
    QCOMPARE(run.exitCode(), 0);
    QCOMPARE(run.readAllStandardError(),
             QByteArray("ConfigManager: the settings can't be saved, because the directory is read-only or the disk is "
                        "full: /dev/null/loomra-kderc\n")
                 .repeated(2));
}

void tst_ConfigManagerFile::savesLaterWhatItCantSaveNow()
{
    const QString folder = QFileInfo(ConfigFile::path()).path();
    const QString away = folder + QStringLiteral("-away");
    ConfigManager config;
    config.setApiKey(QStringLiteral("kept"));
    QVERIFY(QDir().mkpath(folder) && QDir().rename(folder, away) && writeFile(folder));
    {
        MessageLog log;
        config.save();
        config.save();
        const QString warning = QStringLiteral("ConfigManager: the settings can't be saved, because the directory is "
                                               "read-only or the disk is full: ")
            + ConfigFile::path();
        QCOMPARE(log.warnings(), QStringList({warning, warning}));
    }
    QVERIFY(QFile::remove(folder) && QDir().rename(away, folder));

    config.save();
    QCOMPARE(stored("ApiKey"), QByteArray("kept"));
}

void tst_ConfigManagerFile::keepsChangesOfAnotherProcess_data()
{
    QTest::addColumn<QByteArray>("atStart");
    QTest::addColumn<QByteArray>("byAnother");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("atEnd"); // null: the key isn't in the file

    const auto row = [](const char *name, const char *atStart, const char *byAnother, const char *key,
                        const char *atEnd) {
        QTest::newRow(name) << QByteArray(atStart) << QByteArray(byAnother) << QByteArray(key) << QByteArray(atEnd);
    };
    row("new key", "", "ApiKey=k\n", "ApiKey", "k");
    row("new project", "ApiKey=k\n", "ApiKey=k\nCurrentProject=/p\n", "CurrentProject", "/p");
    row("new list", "", "RecentProjects=/p,/q\n", "RecentProjects", "/p,/q");
    row("new bool", "", "WorkspaceSuggestionReminderEnabled=true\n", "WorkspaceSuggestionReminderEnabled", "true");
    row("new number", "", "WorkspaceSuggestionReminderMinutes=30\n", "WorkspaceSuggestionReminderMinutes", "30");
    row("new slugs", "", "EnabledWorkspaceTemplateSlugs=x\n", "EnabledWorkspaceTemplateSlugs", "x");
    row("changed", "ApiKey=k\n", "ApiKey=l\n", "ApiKey", "l");
    row("emptied", "ApiKey=k\n", "ApiKey=\n", "ApiKey", "");
    row("removed", "ApiKey=k\n", "CurrentProject=/p\n", "ApiKey", nullptr);
    row("changed from an invalid number", "WorkspaceSuggestionReminderMinutes=often\n",
        "WorkspaceSuggestionReminderMinutes=30\n", "WorkspaceSuggestionReminderMinutes", "30");
    row("unknown key", "", "Other=1\n", "Other", "1");

    // What nobody changed is written too.
    row("default beside a new key", "", "ApiKey=k\n", "WorkspaceSuggestionReminderMinutes", "5");
    row("bounded", "WorkspaceSuggestionReminderMinutes=2000\n", "WorkspaceSuggestionReminderMinutes=2000\nApiKey=k\n",
        "WorkspaceSuggestionReminderMinutes", "1440");
}

void tst_ConfigManagerFile::keepsChangesOfAnotherProcess()
{
    QFETCH(QByteArray, atStart);
    QFETCH(QByteArray, byAnother);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, atEnd);
    QVERIFY(ConfigFile::write(atStart));
    {
        ConfigManager config;
        QVERIFY(writeByAnother(byAnother));
        config.save();
        QCOMPARE(stored(key), atEnd);
        QCOMPARE(stored(key).isNull(), atEnd.isNull());
    }
    QCOMPARE(stored(key), atEnd);
    QCOMPARE(stored(key).isNull(), atEnd.isNull());
}

void tst_ConfigManagerFile::ownChangesWin()
{
    QVERIFY(ConfigFile::write("CurrentProject=/p\n"));
    ConfigManager config;
    config.setApiKey(QStringLiteral("own"));
    config.setCurrentProject(QStringLiteral("/own"));
    QVERIFY(writeByAnother("ApiKey=other\nWorkspaceSuggestionReminderMinutes=7\n"));
    config.save();
    QCOMPARE(stored("ApiKey"), QByteArray("own"));
    QCOMPARE(stored("CurrentProject"), QByteArray("/own"));
    QCOMPARE(stored("WorkspaceSuggestionReminderMinutes"), QByteArray("7"));
}

void tst_ConfigManagerFile::savedChangesAreNotWrittenAgain()
{
    ConfigManager config;
    config.setApiKey(QStringLiteral("own"));
    config.save();
    QVERIFY(writeByAnother("ApiKey=other\n"));
    config.save();
    QCOMPARE(stored("ApiKey"), QByteArray("other"));
    QCOMPARE(config.apiKey(), QStringLiteral("own")); // until the file is read again

    // Libraries share the file's object, and may make it read the file again.
    QVERIFY(ConfigFile::write("ApiKey=read\n"));
    config.save();
    QCOMPARE(stored("ApiKey"), QByteArray("read"));

    config.setApiKey(QStringLiteral("last"));
    config.save();
    QCOMPARE(stored("ApiKey"), QByteArray("last"));

    // Values that load() restored count as unchanged too.
    config.setApiKey(QStringLiteral("discarded"));
    config.load();
    QVERIFY(writeByAnother("ApiKey=other\n"));
    config.save();
    QCOMPARE(stored("ApiKey"), QByteArray("other"));
}

void tst_ConfigManagerFile::keepsTheKeyOfARunningProcess()
{
    {
        const ConfigManager config;
        QProcess other;
        other.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("tst_ConfigManagerFile"), QLatin1String(s_childArgument), QStringLiteral("other")});
        QVERIFY(other.waitForFinished());
        QCOMPARE(stored("ApiKey"), QByteArray("other"));
    }
    QCOMPARE(stored("ApiKey"), QByteArray("other"));
}

static int run(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], s_childArgument) == 0) {
        return runWithKey(argc, argv);
    }
    QCoreApplication application(argc, argv);
    tst_ConfigManagerFile test;
    return QTest::qExec(&test, argc, argv);
}

REGISTER_TEST_MAIN(tst_ConfigManagerFile, run)

#include "tst_ConfigManagerFile.moc"
