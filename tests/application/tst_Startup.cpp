// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "Application.h"
#include "ConfigManager.h"
#include "FileService.h"
#include "I18nHelper.h"
#include "LaunchMode.h"
#include "LoomraSDK.h"
#include "NativeObjects.h"
#include "TerminalRequests.h"
#include "TestRegistry.h"
#include "TokenUsageService.h"
#include "VoiceBridge.h"

#include <QGuiApplication>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>

#include <memory>

using TerminalRequests::Request;

Q_DECLARE_METATYPE(LaunchMode)
Q_DECLARE_METATYPE(std::optional<Request>)

//! What happens before the first window: terminal requests, launch modes, environment and native objects.
class tst_Startup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void requests_data();
    void requests();
    void modes_data();
    void modes();
    void rootFiles();
    void advancedInterface_data();
    void advancedInterface();
    void readsLocalFiles();
    void fixedValues();
    void describesItself();
    void passesTextsOn();
    void objectsOfQml();
    void typesOfQml_data();
    void typesOfQml();
    void objectsOutliveTheEngine();

private:
    KAboutData m_about;
};

void tst_Startup::initTestCase()
{
    m_about = Application::describe();
}

void tst_Startup::requests_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<std::optional<Request>>("expected");

    const auto row = [](const char *argument, std::optional<Request> expected) {
        QTest::newRow(argument) << QString::fromLatin1(argument) << expected;
    };
    row("--prompt", Request::Prompt);
    row("-p", Request::Prompt);
    row("--prompt=", Request::Prompt);
    row("--prompt=Say hello", Request::Prompt);
    row("--prompts", std::nullopt);
    row("-p=x", std::nullopt);
    row("help", Request::Usage);
    row("--help", Request::Usage);
    row("-h", Request::Usage);
    row("Help", std::nullopt);
    row("--version", Request::Version);
    row("-V", Request::Version);
    row("-v", std::nullopt);
    row("uninstall", Request::Uninstall);
    row("test", Request::Test);
    row("models", Request::Models);
    row(" models", std::nullopt);
    row("", std::nullopt);
}

void tst_Startup::requests()
{
    QFETCH(QString, argument);
    QFETCH(std::optional<Request>, expected);

    QVERIFY(TerminalRequests::requestOf(argument) == expected);
}

void tst_Startup::modes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<LaunchMode>("expected");

    const auto row = [](const char *arguments, LaunchMode expected) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char(' ')) << expected;
    };
    row("tovictl", LaunchMode::OmniBar);
    row("tovictl -o", LaunchMode::OmniBar);
    row("tovictl --omni-bar", LaunchMode::OmniBar);
    row("tovictl unknown --MAIN", LaunchMode::OmniBar);
    row("tovictl -m", LaunchMode::MainWindow);
    row("tovictl --main", LaunchMode::MainWindow);
    row("tovictl --omni-bar --main", LaunchMode::MainWindow);
    row("tovictl -t", LaunchMode::Tray);
    row("tovictl --tray", LaunchMode::Tray);
    row("tovictl --tray -m", LaunchMode::MainWindow);
    row("tovictl -m -t --voice-test", LaunchMode::VoiceTest);
}

void tst_Startup::modes()
{
    QFETCH(QStringList, arguments);
    QFETCH(LaunchMode, expected);

    QCOMPARE(launchModeOf(arguments), expected);
}

void tst_Startup::rootFiles()
{
    const QString tree = QStringLiteral("qrc:/org/kde/loomra/");
    QCOMPARE(rootFileOf(LaunchMode::OmniBar), QUrl(tree + QLatin1String("contents/ui/OmniBar.qml")));
    QCOMPARE(rootFileOf(LaunchMode::MainWindow), QUrl(tree + QLatin1String("MainWindow.qml")));
    QCOMPARE(rootFileOf(LaunchMode::Tray), QUrl(tree + QLatin1String("contents/ui/TrayIcon.qml")));
    QCOMPARE(rootFileOf(LaunchMode::VoiceTest), QUrl(tree + QLatin1String("contents/ui/VoiceValidation.qml")));
}

void tst_Startup::advancedInterface_data()
{
    QTest::addColumn<QByteArray>("value"); // null means unset
    QTest::addColumn<bool>("expected");

    QTest::newRow("unset") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("abc") << QByteArray("abc") << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("1x") << QByteArray("1x") << false;
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("2") << QByteArray("2") << true;
    QTest::newRow("-1") << QByteArray("-1") << true;
}

void tst_Startup::advancedInterface()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, expected);
    const char *variable = "LOOMRA_WI_ADVANCED_UI";
    value.isNull() ? qunsetenv(variable) : qputenv(variable, value);

    QQmlEngine engine;
    QObject parent;
    NativeObjects::create(&parent, &engine);
    qunsetenv(variable);

    const QVariant property = engine.rootContext()->contextProperty(QStringLiteral("toviWiAdvancedUiDefault"));
    QCOMPARE(property, QVariant(expected));
}

void tst_Startup::readsLocalFiles()
{
    qunsetenv("QML_XHR_ALLOW_FILE_READ");
    Application::prepareEnvironment();
    QCOMPARE(qgetenv("QML_XHR_ALLOW_FILE_READ"), QByteArray("1"));
}

void tst_Startup::describesItself()
{
    QCOMPARE(m_about.componentName(), QStringLiteral("loomra-kde"));
    QCOMPARE(m_about.displayName(), QStringLiteral("Loomra KDE"));
    QCOMPARE(m_about.version(), QStringLiteral("0.3.2"));
    QVERIFY(!m_about.shortDescription().isEmpty());
    QCOMPARE(m_about.licenses().first().key(), KAboutLicense::GPL);
    QVERIFY(m_about.otherText().isEmpty());
    QVERIFY(m_about.homepage().isEmpty());
    QCOMPARE(m_about.bugAddress(), KAboutData().bugAddress());
    // These name the settings stores.
    QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("loomra-kde"));
    QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("kde.org"));
}

void tst_Startup::passesTextsOn()
{
    const I18nHelper helper;
    QCOMPARE(helper.tr(QStringLiteral("No catalogue knows this — ü")), QStringLiteral("No catalogue knows this — ü"));
    QCOMPARE(helper.tr(QStringLiteral("<b>Esc</b> to stop")), QStringLiteral("<b>Esc</b> to stop"));
}

void tst_Startup::objectsOfQml()
{
    QQmlEngine engine;
    QObject parent;
    NativeObjects::create(&parent, &engine);

    const QQmlContext *context = engine.rootContext();
    const auto named = [context](const char *name) {
        return context->contextProperty(QLatin1String(name)).value<QObject *>();
    };
    QVERIFY(qobject_cast<I18nHelper *>(named("i18n")));
    QVERIFY(qobject_cast<ConfigManager *>(named("configManager")));
    QVERIFY(qobject_cast<LoomraSDK *>(named("loomraSDK")));
    QVERIFY(qobject_cast<FileService *>(named("fileService")));
    QVERIFY(qobject_cast<AgentBridge *>(named("agentBridge")));
    QVERIFY(qobject_cast<TokenUsageService *>(named("tokenUsageService")));
    QVERIFY(qobject_cast<VoiceBridge *>(named("voiceBridge")));

    // In the order of their creation.
    const QObjectList inOrder = {named("i18n"),        named("configManager"), named("loomraSDK"),
                                 named("fileService"), named("agentBridge"),   named("tokenUsageService"),
                                 named("voiceBridge")};
    QCOMPARE(parent.children(), inOrder);
}

void tst_Startup::typesOfQml_data()
{
    QTest::addColumn<QByteArray>("type");

    for (const char *type : {"ChatModel", "CodeDirection", "FileCheck", "ProjectModel"}) {
        QTest::newRow(type) << QByteArray(type);
    }
}

void tst_Startup::typesOfQml()
{
    QFETCH(QByteArray, type);

    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    QObject parent;
    NativeObjects::create(&parent, &engine);
    QQmlComponent component(&engine);
    component.setData("import org.kde.loomra 1.0\n" + type + " {}", QUrl());
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->metaObject()->className(), type.constData());
}

void tst_Startup::objectsOutliveTheEngine()
{
    QObject parent;
    QPointer<QObject> agent;
    {
        QQmlEngine engine;
        NativeObjects::create(&parent, &engine);
        agent = parent.findChild<AgentBridge *>();
    }
    QVERIFY(agent);
}

void tst_Startup::fixedValues()
{
    QCOMPARE(TerminalRequests::LaunchTimeout, std::chrono::milliseconds(5000));
}

REGISTER_TEST(tst_Startup, QGuiApplication)

#include "tst_Startup.moc"
