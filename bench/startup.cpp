// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The time from the start of the process to the first swapped frame: the OmniBar against an empty window.

#include "support/Peer.h"
#include "support/Starts.h"

#include <QCoreApplication>
#include <QStringList>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Peer peer; // as for a user with a running bridge
    Starts starts("startup", "bar", "bench/window/BareWindow.qml", {}, 1.15);
    if (QCoreApplication::arguments().contains(QLatin1String("--stages"))) {
        starts.printStages(Starts::Caches::Warm);
        starts.printStages(Starts::Caches::Empty);
        return 0;
    }
    starts.measure(Starts::Caches::Warm);
    starts.measureWhole();
    starts.measure(Starts::Caches::Empty);
}
