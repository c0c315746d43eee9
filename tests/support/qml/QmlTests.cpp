// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DrawnValues.h"
#include "LoopbackListener.h"
#include "QmlWarnings.h"
#include "TestFiles.h"

#include "Application.h"
#include "Arc.h"
#include "ChatModel.h"
#include "CodeDirection.h"
#include "ConfigManager.h"
#include "FileCheck.h"
#include "FileService.h"
#include "Motion.h"
#include "ProjectModel.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

#include <memory>

//! The runner of all tst_*.qml. It imports the program's resources, sets the program's environment and about data, and
//! turns warnings of the QML engine into failures. (The engine reports errors in bindings when the outermost object is
//! complete. Without "when: windowShown" that is after the last test, to which the failure is then attributed.)
//!
//! Types and services for files are those of the program. Tests have these context properties:
//!   qmlWarnings       see QmlWarnings; expect(start) for a warning that must occur
//!   loopbackListener  see LoopbackListener; address, connections
//!   testFiles         see TestFiles; a temporary directory
//!   drawn             see DrawnValues; compares what a component draws with a table
//!   realFileService, realConfigManager  to be passed to a component
class QmlTests : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        Application::prepareEnvironment();
        Application::describe();
        m_configManager = std::make_unique<ConfigManager>();
        qmlRegisterType<Arc>("org.kde.loomra.components.controls", 1, 0, "Arc");
        qmlRegisterType<ChatModel>("org.kde.loomra", 1, 0, "ChatModel");
        qmlRegisterType<CodeDirection>("org.kde.loomra", 1, 0, "CodeDirection");
        qmlRegisterType<FileCheck>("org.kde.loomra", 1, 0, "FileCheck");
        qmlRegisterType<ProjectModel>("org.kde.loomra", 1, 0, "ProjectModel");
        Motion::registerSingleton();
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/"));
        m_warnings.watch(engine);
        engine->rootContext()->setContextProperty(QStringLiteral("qmlWarnings"), &m_warnings);
        m_listener.listen();
        QQmlContext *context = engine->rootContext();
        context->setContextProperty(QStringLiteral("loopbackListener"), &m_listener);
        context->setContextProperty(QStringLiteral("testFiles"), &m_files);
        context->setContextProperty(QStringLiteral("drawn"), &m_drawn);
        context->setContextProperty(QStringLiteral("realFileService"), &m_fileService);
        context->setContextProperty(QStringLiteral("realConfigManager"), m_configManager.get());
    }

    void cleanupTestCase() { m_warnings.reportMissing(); }

private:
    QmlWarnings m_warnings;
    LoopbackListener m_listener;
    TestFiles m_files;
    DrawnValues m_drawn;
    FileService m_fileService;
    std::unique_ptr<ConfigManager> m_configManager; // after the about data
};

QUICK_TEST_MAIN_WITH_SETUP(QmlTests, QmlTests)

#include "QmlTests.moc"
