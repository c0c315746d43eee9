// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The smallest program with a window like the OmniBar's, to compare with bench_bar.

#include "Marks.h"
#include "WindowTask.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

int main(int argc, char **argv)
{
    Marks::note("linked");
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/bench/BareWindow.qml")));
    Marks::note("loaded");
    return WindowTask::run(WindowTask::openedWindow(), [] { return true; });
}
