// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The smallest program with a window like the OmniBar's, with --voice-test like the voice validation window or with
// --main like the main window, to compare with bench_bar.

#include "Marks.h"
#include "WindowTask.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace
{

QUrl bareWindow(const QStringList &arguments)
{
    if (arguments.contains(QLatin1String("--voice-test"))) {
        return QUrl(QStringLiteral("qrc:/bench/BareValidationWindow.qml"));
    }
    if (arguments.contains(QLatin1String("--main"))) {
        return QUrl(QStringLiteral("qrc:/bench/BareMainWindow.qml"));
    }
    return QUrl(QStringLiteral("qrc:/bench/BareWindow.qml"));
}

} // namespace

int main(int argc, char **argv)
{
    Marks::note("linked");
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine(bareWindow(QCoreApplication::arguments()));
    Marks::note("loaded");
    return WindowTask::run(WindowTask::openedWindow(), [] { return true; });
}
