// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "AccessibleRowOrder.h"
#include "CatalogueTranslator.h"
#include "LaunchMode.h"

#include <KAboutData>

#include <QGuiApplication>
#include <QQmlApplicationEngine>

//! A graphical run: the application object, the about-data, the QML engine with the native objects, and the window of
//! the launch mode. Lives on the stack of main().
class Application
{
public:
    //! Sets the environment variables that must be set before the application object exists.
    static void prepareEnvironment();

    //! Sets the translation domain and the about-data, which determine where settings are stored.
    //! Needs an application object. Tests call it too, so that they use the same settings files.
    static KAboutData describe();

    Application(int &argc, char **argv);

    //! Runs the event loop. @return its exit code, or -1 (255 in a shell) if the QML file failed to load
    int exec();

private:
    void load();

    // The order matters: members are destroyed in reverse, so the native objects, which are children of the
    // application, outlive the QML engine.
    QGuiApplication m_application;
    KAboutData m_about;
    CatalogueTranslator m_translator;
    AccessibleRowOrder m_rowOrder;
    QQmlApplicationEngine m_engine;
    QUrl m_rootFile;
    QStringList m_arguments;
};
