// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The time from the start of the process to the first swapped frame: the voice validation window against an empty one.

#include "support/Peer.h"
#include "support/Starts.h"

#include <QCoreApplication>
#include <QStringList>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Peer peer; // as for a user with a running bridge
    Starts starts("validation", "window", "bench/window/BareValidationWindow.qml", {"--voice-test"}, 1.5);
    if (QCoreApplication::arguments().contains(QLatin1String("--stages"))) {
        starts.printStages(Starts::Caches::Warm);
    } else {
        starts.measure(Starts::Caches::Warm);
        starts.measureWhole();
    }
}
