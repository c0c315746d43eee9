// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The smallest program with a window like the OmniBar's, or with --voice-test like the voice validation window, to
// compare with bench_bar.

#include "Marks.h"
#include "WindowTask.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

int main(int argc, char **argv)
{
    Marks::note("linked");
    QGuiApplication application(argc, argv);
    const bool isVoiceTest = QCoreApplication::arguments().contains(QLatin1String("--voice-test"));
    QQmlApplicationEngine engine(isVoiceTest ? QUrl(QStringLiteral("qrc:/bench/BareValidationWindow.qml"))
                                             : QUrl(QStringLiteral("qrc:/bench/BareWindow.qml")));
    Marks::note("loaded");
    return WindowTask::run(WindowTask::openedWindow(), [] { return true; });
}
