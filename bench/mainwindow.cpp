// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The main window: from the start of the process to its first swapped frame, against an empty Kirigami window, and a
// long history.

#include "support/Child.h"
#include "support/Figures.h"
#include "support/Starts.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    // The bridge that the window starts is a program that ends at once, so that it takes no time from the window.
    const QTemporaryDir bridge;
    QFile script(bridge.filePath(QStringLiteral("bridge.js")));
    if (!script.open(QIODevice::WriteOnly)
        || !QFile::link(QStringLiteral("/bin/true"), bridge.filePath(QStringLiteral("node")))) {
        notMeasured("the stand-in for the bridge can't be written");
    }
    const QByteArray directory = QFile::encodeName(bridge.path());
    qputenv("LOOMRA_BRIDGE_PATH", directory);
    qputenv("PATH", directory + ':' + qgetenv("PATH"));
    Starts starts("mainwindow", "window", "bench/window/BareMainWindow.qml", {"--main"}, 1.3);
    if (QCoreApplication::arguments().contains(QLatin1String("--stages"))) {
        starts.printStages(Starts::Caches::Warm);
        return 0;
    }
    starts.measure(Starts::Caches::Warm);
    starts.measureWhole();
    const QByteArray figures = Child::run({Child::beside("bench_history")}).output;
    std::fwrite(figures.constData(), 1, static_cast<size_t>(figures.size()), stdout);
}
