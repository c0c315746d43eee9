// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LoopbackListener.h"
#include "QmlWarnings.h"

#include "Application.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

//! The runner of every tst_*.qml: the program's resource tree as its import path, the program's about-data, and any
//! warning of the QML engine a failure. (The engine keeps the errors of bindings until the outermost creation is done.
//! Without "when: windowShown" that is after the last test, which is then the one reported.)
//!
//! Tests find two objects in their context:
//!   qmlWarnings       expect(start): a warning that begins so is meant to come, and must come
//!   loopbackListener  a server on loopback that has nothing: address, connections
class QmlTests : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable() { Application::describe(); }

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
