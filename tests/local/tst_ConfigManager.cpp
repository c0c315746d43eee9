// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigFile.h"
#include "ConfigManager.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <QDir>
#include <QMetaProperty>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QString s_recentProjectsChanged = QStringLiteral("recentProjectsChanged()");
const QString s_currentProjectChanged = QStringLiteral("currentProjectChanged()");

//! Existing directories, identified by numbers.
class Projects
{
public:
    QString operator[](int number) const
    {
        const QString path = m_root.filePath(QString::number(number));
        QDir().mkpath(path);
        return path;
    }
    QString missing() const { return m_root.filePath(QStringLiteral("missing")); }

private:
    const QTemporaryDir m_root;
};

} // namespace

class tst_ConfigManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void hasDefaultValues();
    void offersItsMembersToQml();
    void apiKeySignalsChanges();
    void knownProjectMovesToTheFront();
    void eleventhProjectPushesOutTheOldest();
    void pathsThatStayOutOfTheRecentOnes_data();
    void pathsThatStayOutOfTheRecentOnes();
    void sameProjectDoesNothing();
    void comparesPathsLiterally();
    void longListIsTruncatedByTheNextProject();
    void templatesAreSwitchedOnAndOff();
    void settersDoNotBoundMinutes();
};

void tst_ConfigManager::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_ConfigManager::init()
{
    ConfigFile::remove();
}

void tst_ConfigManager::hasDefaultValues()
{
    const ConfigManager config;
    QCOMPARE(config.apiKey(), QString());
    QCOMPARE(config.currentProject(), QString());
    QCOMPARE(config.recentProjects(), QStringList());
    QCOMPARE(config.workspaceSuggestionReminderEnabled(), false);
    QCOMPARE(config.workspaceSuggestionReminderMinutes(), 5);
    QVERIFY(!config.isWorkspaceTemplateSlugEnabled(QStringLiteral("x")));
    QCOMPARE(config.parent(), nullptr);
}

void tst_ConfigManager::offersItsMembersToQml()
{
    const QMetaObject &type = ConfigManager::staticMetaObject;
    QStringList members;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        members.append(QStringLiteral("%1 %2 %3%4")
                           .arg(QString::fromLatin1(property.typeName()), QString::fromLatin1(property.name()),
                                QString::fromLatin1(property.notifySignal().methodSignature()),
                                property.isWritable() ? QStringLiteral(" writable") : QString()));
    }
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        members.append(QString::fromLatin1(method.typeName()) + QLatin1Char(' ')
                       + QString::fromLatin1(method.methodSignature()));
    }
    QCOMPARE(members,
             (QStringList {
                 QStringLiteral("QString apiKey apiKeyChanged() writable"),
                 QStringLiteral("QString currentProject currentProjectChanged() writable"),
                 QStringLiteral("QStringList recentProjects recentProjectsChanged()"),
                 QStringLiteral("void apiKeyChanged()"),
                 QStringLiteral("void currentProjectChanged()"),
                 QStringLiteral("void recentProjectsChanged()"),
                 QStringLiteral("void loomraConfigChanged()"),
                 QStringLiteral("void load()"),
                 QStringLiteral("void save()"),
                 QStringLiteral("bool isWorkspaceTemplateSlugEnabled(QString)"),
                 QStringLiteral("void setWorkspaceTemplateSlugEnabled(QString,bool)"),
                 QStringLiteral("QJsonObject getLoomraConfig()"),
                 QStringLiteral("void setLoomraConfig(QJsonObject)"),
                 QStringLiteral("QJsonObject getAgents()"),
                 QStringLiteral("QJsonObject getTools()"),
                 QStringLiteral("QJsonObject getPermissions()"),
                 QStringLiteral("QJsonObject getMcp()"),
                 QStringLiteral("QJsonObject getProviders()"),
                 QStringLiteral("void updateAgents(QJsonObject)"),
                 QStringLiteral("void updateTools(QJsonObject)"),
                 QStringLiteral("void updatePermissions(QJsonObject)"),
                 QStringLiteral("void updateMcp(QJsonObject)"),
                 QStringLiteral("void updateProviders(QJsonObject)"),
                 QStringLiteral("bool saveLoomraConfig()"),
                 QStringLiteral("QString getLoomraConfigPath()"),
                 QStringLiteral("QString getLoomraConfigAsString()"),
                 QStringLiteral("QString getLoomraConfigSchema()"),
                 QStringLiteral("bool isLoomraConfigValid()"),
                 QStringLiteral("bool isLoomraConfigChangedOnDisk()"),
             }));
}

void tst_ConfigManager::apiKeySignalsChanges()
{
    ConfigManager config;
    SignalLog emitted(&config);
    config.setProperty("apiKey", QStringLiteral("k"));
    config.setProperty("apiKey", QStringLiteral("k"));
    QCOMPARE(config.apiKey(), QStringLiteral("k"));
    QCOMPARE(emitted.entries(), QStringList(QStringLiteral("apiKeyChanged()")));
}

void tst_ConfigManager::knownProjectMovesToTheFront()
{
    const Projects projects;
    ConfigManager config;
    for (const int number : {1, 2, 3, 4}) {
        config.setCurrentProject(projects[number]);
    }
    QCOMPARE(config.recentProjects(), (QStringList {projects[4], projects[3], projects[2], projects[1]}));

    SignalLog emitted(&config);
    config.setCurrentProject(projects[2]);
    QCOMPARE(config.currentProject(), projects[2]);
    QCOMPARE(config.recentProjects(), (QStringList {projects[2], projects[4], projects[3], projects[1]}));
    QCOMPARE(emitted.entries(), (QStringList {s_recentProjectsChanged, s_currentProjectChanged}));
}

void tst_ConfigManager::eleventhProjectPushesOutTheOldest()
{
    const Projects projects;
    ConfigManager config;
    QStringList expected;
    for (int number = 1; number <= 11; ++number) {
        config.setCurrentProject(projects[number]);
        expected.prepend(projects[number]);
    }
    expected.removeLast();
    QCOMPARE(config.recentProjects().size(), 10);
    QCOMPARE(config.recentProjects(), expected);
}

void tst_ConfigManager::pathsThatStayOutOfTheRecentOnes_data()
{
    QTest::addColumn<QString>("path");
    const Projects projects;
    QTest::newRow("missing") << projects.missing();
    QTest::newRow("file") << QCoreApplication::applicationFilePath();
    QTest::newRow("empty") << QString();
}

void tst_ConfigManager::pathsThatStayOutOfTheRecentOnes()
{
    QFETCH(QString, path);
    const Projects projects;
    ConfigManager config;
    config.setCurrentProject(projects[1]);
    SignalLog emitted(&config);

    config.setCurrentProject(path);
    QCOMPARE(config.currentProject(), path);
    QCOMPARE(config.recentProjects(), QStringList(projects[1]));
    QCOMPARE(emitted.entries(), QStringList(s_currentProjectChanged));
}

void tst_ConfigManager::sameProjectDoesNothing()
{
    const Projects projects;
    ConfigManager config;
    config.setCurrentProject(projects[1]);
    SignalLog emitted(&config);
    config.setCurrentProject(projects[1]);
    QCOMPARE(emitted.entries(), QStringList());
}

void tst_ConfigManager::comparesPathsLiterally()
{
    const Projects projects;
    const QString otherSpelling = projects[1] + QLatin1Char('/');
    ConfigManager config;
    config.setCurrentProject(projects[1]);
    config.setCurrentProject(otherSpelling);
    QCOMPARE(config.recentProjects(), (QStringList {otherSpelling, projects[1]}));
}

void tst_ConfigManager::longListIsTruncatedByTheNextProject()
{
    QStringList paths;
    for (int number = 1; number <= 15; ++number) {
        paths.append(QStringLiteral("/p/%1").arg(number));
    }
    QVERIFY(ConfigFile::write("RecentProjects=" + paths.join(QLatin1Char(',')).toUtf8() + '\n'));

    const Projects projects;
    ConfigManager config;
    QCOMPARE(config.recentProjects(), paths);

    config.setCurrentProject(projects.missing());
    QCOMPARE(config.recentProjects(), paths);
    config.setCurrentProject(projects[1]);
    QCOMPARE(config.recentProjects(), QStringList(projects[1]) + paths.mid(0, 9));
}

void tst_ConfigManager::templatesAreSwitchedOnAndOff()
{
    const QString slug = QStringLiteral("x");
    ConfigManager config;
    SignalLog emitted(&config);
    config.setWorkspaceTemplateSlugEnabled(QStringLiteral("z"), true);
    config.setWorkspaceTemplateSlugEnabled(slug, true);
    config.setWorkspaceTemplateSlugEnabled(slug, true);
    config.setWorkspaceTemplateSlugEnabled(QString(), true);
    QVERIFY(config.isWorkspaceTemplateSlugEnabled(slug));
    QVERIFY(!config.isWorkspaceTemplateSlugEnabled(QStringLiteral("X")));
    QVERIFY(!config.isWorkspaceTemplateSlugEnabled(QString()));
    config.save();
    QVERIFY2(ConfigFile::content().contains("\nEnabledWorkspaceTemplateSlugs=z,x\n"),
             ConfigFile::content().constData());

    // A user can have added it twice.
    QVERIFY(ConfigFile::write("EnabledWorkspaceTemplateSlugs=x,z,x\n"));
    config.load();
    config.setWorkspaceTemplateSlugEnabled(QStringLiteral("X"), false);
    QVERIFY(config.isWorkspaceTemplateSlugEnabled(slug));
    config.setWorkspaceTemplateSlugEnabled(slug, false);
    QVERIFY(!config.isWorkspaceTemplateSlugEnabled(slug));
    config.save();
    QVERIFY2(ConfigFile::content().contains("\nEnabledWorkspaceTemplateSlugs=z\n"), ConfigFile::content().constData());
    QCOMPARE(emitted.entries(), QStringList());
}

void tst_ConfigManager::settersDoNotBoundMinutes()
{
    ConfigManager config;
    SignalLog emitted(&config);
    config.setWorkspaceSuggestionReminderMinutes(5000);
    config.setWorkspaceSuggestionReminderEnabled(true);
    QCOMPARE(config.workspaceSuggestionReminderMinutes(), 5000);
    QCOMPARE(config.workspaceSuggestionReminderEnabled(), true);
    QCOMPARE(emitted.entries(), QStringList());
    QVERIFY(!QFile::exists(ConfigFile::path()));
}

REGISTER_TEST(tst_ConfigManager, QCoreApplication)
#include "tst_ConfigManager.moc"
