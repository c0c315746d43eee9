// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "LaunchMode.h"

#include <KAboutData>

#include <QGuiApplication>
#include <QQmlApplicationEngine>

//! A graphical run: the application object, what the program says about itself, the QML engine with the native
//! objects, and the window of the mode. Lives on main's stack.
class Application
{
public:
    //! What must stand in the environment before the application object exists.
    static void prepareEnvironment();

    //! Sets translation domain and about-data, from which the settings stores take their places.
    //! Needs an application object. Tests call it too, so that they store where the program does.
    static KAboutData describe();

    Application(int &argc, char **argv);

    //! Runs the event loop. @return its result; -1, which the shell sees as 255, after a QML file that fails to load
    int exec();

private:
    void load();

    // Members are destroyed from the last to the first: the engine goes before the application, whose children,
    // the native objects, outlive all QML.
    QGuiApplication m_application;
    KAboutData m_about;
    QQmlApplicationEngine m_engine;
    QUrl m_rootFile;
    QStringList m_arguments;
};
