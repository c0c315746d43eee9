// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LoopbackListener.h"
#include "QmlWarnings.h"

#include "Application.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

//! The runner of all tst_*.qml. It imports the program's resources, sets the program's environment and about data, and
//! turns warnings of the QML engine into failures. (The engine reports errors in bindings when the outermost object is
//! complete. Without "when: windowShown" that is after the last test, to which the failure is then attributed.)
//!
//! Tests have two context properties:
//!   qmlWarnings       see QmlWarnings; expect(start) for a warning that must occur
//!   loopbackListener  see LoopbackListener; address, connections
class QmlTests : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        Application::prepareEnvironment();
        Application::describe();
    }

    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/"));
        m_warnings.watch(engine);
        engine->rootContext()->setContextProperty(QStringLiteral("qmlWarnings"), &m_warnings);
        m_listener.listen();
        engine->rootContext()->setContextProperty(QStringLiteral("loopbackListener"), &m_listener);
    }

    void cleanupTestCase() { m_warnings.reportMissing(); }

private:
    QmlWarnings m_warnings;
    LoopbackListener m_listener;
};

QUICK_TEST_MAIN_WITH_SETUP(QmlTests, QmlTests)

#include "QmlTests.moc"
