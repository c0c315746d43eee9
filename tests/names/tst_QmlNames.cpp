// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NameCheck.h"
#include "TestRegistry.h"

#include "AgentBridge.h"
#include "ConfigManager.h"
#include "FileService.h"
#include "I18nHelper.h"
#include "LoomraSDK.h"
#include "TokenUsageService.h"
#include "VoiceBridge.h"

#include <QDirIterator>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QtTest>

namespace
{

const QDir s_source(qEnvironmentVariable("TOVICTL_SOURCE_DIR"));

struct NativeObject
{
    QString name;
    const QMetaObject *type;
};
const QVector<NativeObject> s_nativeObjects = {
    {QStringLiteral("i18n"), &I18nHelper::staticMetaObject},
    {QStringLiteral("toviWiAdvancedUiDefault"), nullptr}, // a bool
    {QStringLiteral("configManager"), &ConfigManager::staticMetaObject},
    {QStringLiteral("loomraSDK"), &LoomraSDK::staticMetaObject},
    {QStringLiteral("fileService"), &FileService::staticMetaObject},
    {QStringLiteral("agentBridge"), &AgentBridge::staticMetaObject},
    {QStringLiteral("tokenUsageService"), &TokenUsageService::staticMetaObject},
    {QStringLiteral("voiceBridge"), &VoiceBridge::staticMetaObject},
};

//! A member that QML uses although the program's own class doesn't have it, after it has tested for it.
struct Probe
{
    QString file;
    QString name;
};
const QVector<Probe> s_probes = {
    // A chat client may offer more than AgentBridge does.
    {QStringLiteral("contents/ui/omnibar/controllers/ConversationController.qml"),
     QStringLiteral("target.setCurrentAgent")},
    {QStringLiteral("contents/ui/omnibar/controllers/ConversationController.qml"),
     QStringLiteral("target.sendIntentWithContext")},
    {QStringLiteral("contents/ui/omnibar/controllers/ConversationController.qml"), QStringLiteral("target.sendIntent")},
    {QStringLiteral("contents/ui/omnibar/controllers/SlashCommandController.qml"),
     QStringLiteral("bar.bridge.sessionId")},
    // Stays blank, see the file.
    {QStringLiteral("contents/ui/validation/ValidationView.qml"),
     QStringLiteral("pane.validation.voice.sttBackendLabel")},
};

//! What a fake declares for tests besides members of the real object.
const QStringList s_forTests = {QStringLiteral("answers")};

QString contentOf(const QString &path)
{
    QFile file(s_source.filePath(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList filesIn(const QString &folder)
{
    QStringList files;
    QDirIterator entries(s_source.filePath(folder), {QStringLiteral("*.qml"), QStringLiteral("*.js")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files.append(s_source.relativeFilePath(entries.next()));
    }
    files.sort();
    return files;
}

QString asText(const QVector<NameCheck::Finding> &findings)
{
    QStringList lines;
    for (const NameCheck::Finding &finding : findings) {
        lines.append(finding.text());
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

//! Checks the members that the program's QML uses of the window, its theme and the native objects. In QML these are
//! untyped, so that a typo would be a silent "undefined".
class tst_QmlNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void members();
    void knownTypes_data();
    void knownTypes();
    void fakes_data();
    void fakes();
    void nativeObjects();

private:
    NameCheck m_check;
    QStringList m_files;
};

void tst_QmlNames::initTestCase()
{
    m_files = filesIn(QStringLiteral("contents")) + filesIn(QStringLiteral("components"))
        + QStringList {QStringLiteral("MainWindow.qml")};
    QVERIFY(m_files.contains(QStringLiteral("contents/ui/OmniBar.qml")));
    const QStringList fakes = filesIn(QStringLiteral("tests/omnibar/controllers"))
        + filesIn(QStringLiteral("tests/mainwindow/panels")) + filesIn(QStringLiteral("tests/mainwindow/controllers"));
    for (const QString &path : m_files + fakes) {
        m_check.addFile(path, contentOf(path));
    }
    for (const NativeObject &object : s_nativeObjects) {
        m_check.addNativeObject(object.name, object.type);
    }
    m_check.addHandedProperty(QStringLiteral("bar"), QStringLiteral("OmniBar"));
    m_check.addHandedProperty(QStringLiteral("theme"), QStringLiteral("OmniBarTheme"));
    m_check.addHandedProperty(QStringLiteral("tray"), QStringLiteral("TrayIcon"));
    m_check.addHandedProperty(QStringLiteral("validation"), QStringLiteral("ValidationController"));
    m_check.addHandedProperty(QStringLiteral("chatView"), QStringLiteral("ChatView"));
    m_check.addHandedProperty(QStringLiteral("sidebar"), QStringLiteral("SessionSidebar"));
    m_check.addBaseType(QStringLiteral("Window"), &QQuickWindow::staticMetaObject);
    m_check.addBaseType(QStringLiteral("FocusScope"), &QQuickItem::staticMetaObject);
    m_check.addBaseType(QStringLiteral("QtObject"), &QObject::staticMetaObject);
    m_check.addBaseType(QStringLiteral("Settings"), {QStringLiteral("category"), QStringLiteral("fileName")});
}

void tst_QmlNames::members()
{
    QVector<NameCheck::Finding> findings;
    QVector<bool> isProbed(s_probes.size());
    for (const QString &path : qAsConst(m_files)) {
        for (const NameCheck::Finding &finding : m_check.check(path)) {
            const auto probe = std::find_if(s_probes.begin(), s_probes.end(), [&](const Probe &candidate) {
                return candidate.file == finding.file && candidate.name == finding.name;
            });
            if (probe == s_probes.end()) {
                findings.append(finding);
            } else {
                isProbed[int(probe - s_probes.begin())] = true;
            }
        }
    }
    QVERIFY2(findings.isEmpty(), qPrintable(QLatin1Char('\n') + asText(findings)));
    for (int i = 0; i < s_probes.size(); ++i) {
        QVERIFY2(isProbed.at(i), qPrintable(s_probes.at(i).name + QStringLiteral(" needs no exception any more")));
    }
}

void tst_QmlNames::knownTypes_data()
{
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("type");
    QTest::newRow("window") << "bar"
                            << "OmniBar.qml";
    QTest::newRow("theme") << "theme"
                           << "OmniBarTheme.qml";
    QTest::newRow("tray view") << "tray"
                               << "TrayIcon.qml";
    QTest::newRow("voice validation") << "validation"
                                      << "ValidationController.qml";
    QTest::newRow("its voice") << "validation.voice"
                               << "VoiceBridge";
    QTest::newRow("chat client") << "bar.bridge"
                                 << "AgentBridge";
    QTest::newRow("SDK client") << "bar.sdk"
                                << "LoomraSDK";
    QTest::newRow("voice") << "bar.voice"
                           << "VoiceBridge";
    QTest::newRow("chat of the main window") << "chatView"
                                             << "ChatView.qml";
    QTest::newRow("its SDK client") << "chatView.sdk"
                                    << "LoomraSDK";
    QTest::newRow("sidebar") << "sidebar"
                             << "SessionSidebar.qml";
    QTest::newRow("stored appearance") << "bar.appearanceStore"
                                       << "omniUiStore in OmniBar.qml";
}

//! Where a type isn't known nothing is checked, so these must stay known however OmniBar.qml is written.
void tst_QmlNames::knownTypes()
{
    QFETCH(const QString, object);
    QFETCH(const QString, type);
    NameCheck check = m_check;
    const QString path = QStringLiteral("Example.qml");
    check.addFile(path, QStringLiteral("Item { width: %1.missing }").arg(object));
    QCOMPARE(asText(check.check(path)),
             QStringLiteral("Example.qml:1: %1.missing is not declared by %2").arg(object, type));
}

void tst_QmlNames::fakes_data()
{
    QTest::addColumn<QString>("fake");
    QTest::addColumn<QString>("real");
    QTest::newRow("bar") << "FakeBar"
                         << "OmniBar";
    QTest::newRow("bridge") << "FakeBridge"
                            << "agentBridge";
    QTest::newRow("SDK") << "FakeSdk"
                         << "loomraSDK";
    QTest::newRow("SDK of the panels") << "FakePanelSdk"
                                       << "loomraSDK";
    QTest::newRow("SDK of the main window") << "FakeMainSdk"
                                            << "loomraSDK";
    QTest::newRow("chat view") << "FakeChatView"
                               << "ChatView";
    QTest::newRow("sidebar") << "FakeSidebar"
                             << "SessionSidebar";
    QTest::newRow("settings") << "FakeConfig"
                              << "configManager";
    QTest::newRow("voice bridge") << "FakeVoiceBridge"
                                  << "voiceBridge";
}

//! If a fake had members that the real object lacks, tests could pass that shouldn't.
void tst_QmlNames::fakes()
{
    QFETCH(const QString, fake);
    QFETCH(const QString, real);
    const QVector<NameCheck::Finding> findings = m_check.checkFake(fake, real, s_forTests);
    QVERIFY2(findings.isEmpty(), qPrintable(QLatin1Char('\n') + asText(findings)));
}

//! The table above has the native objects of the program.
void tst_QmlNames::nativeObjects()
{
    static const QRegularExpression s_registration(
        QStringLiteral("setContextProperty\\(QStringLiteral\\(\"(\\w+)\"\\)"));
    QStringList registered;
    for (auto match = s_registration.globalMatch(contentOf(QStringLiteral("src/NativeObjects.cpp")));
         match.hasNext();) {
        registered.append(match.next().captured(1));
    }
    QStringList known;
    for (const NativeObject &object : s_nativeObjects) {
        known.append(object.name);
    }
    QCOMPARE(known, registered);
}

REGISTER_TEST(tst_QmlNames, TestRegistry::NoApplication)

#include "tst_QmlNames.moc"
