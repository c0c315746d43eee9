// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The time from the start of the process to the first swapped frame: the OmniBar against an empty window.

#include "support/Child.h"
#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Peer.h"
#include "support/Starts.h"
#include "support/Statistics.h"

#include <QCoreApplication>
#include <QStringList>

namespace
{

//! Measures until the whole idle bar is on the screen: the rest of it is built after the first frame.
void measureWhole(const Starts &starts)
{
    std::vector<double> times; // ms since the start
    for (int i = 0; i < Starts::Runs; ++i) {
        const auto values = Child::valuesOf(Child::run(starts.command("--whole")));
        if (!values.contains("whole")) {
            notMeasured("the window was never complete");
        }
        times.push_back(Clock::milliseconds(values.value("whole").first().toLongLong()));
    }
    Figures::plain("startup.warm.whole", Statistics::median(times), "ms");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Peer peer; // as for a user with a running bridge
    Starts starts("startup", "bar", "bench/window/BareWindow.qml", {}, 1.3);
    if (QCoreApplication::arguments().contains(QLatin1String("--stages"))) {
        starts.printStages(Starts::Caches::Warm);
        starts.printStages(Starts::Caches::Empty);
        return 0;
    }
    starts.measure(Starts::Caches::Warm);
    measureWhole(starts);
    starts.measure(Starts::Caches::Empty);
}
