// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// A long conversation, and one of structured replies: the time to append a row, its memory, and scrolling.

#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Process.h"
#include "support/Statistics.h"
#include "window/Bar.h"

#include <QJsonDocument>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QVariantList>

#include <algorithm>
#include <iterator>

namespace
{

constexpr int s_few = 10;
constexpr int s_many = 1000;
constexpr int s_manyStructured = 200;
//! Appends measured before and after the named row.
constexpr int s_window = 6;
constexpr int s_runs = 4;
constexpr int s_batch = 10;
//! Pixels per frame. A fast turn of the wheel: about one row per frame comes into view.
constexpr int s_scrollStep = 200;
constexpr int s_scrollFrames = 200;

//! One block of each kind that has a widget.
const char *const s_blocks[] = {
    R"({"type": "text", "content": "Here is **what** was found:\n\n- three windows\n- `90%` of the disk"})",
    R"({"type": "list", "items": ["The files", {"label": "The terminal"}, "The editor", "The player", "The rest"]})",
    R"({"type": "table", "columns": ["Name", "Used", "Size"], "rows": [["Home", "18%", 512], ["System", "42%", 64],
        ["Backup", "71%", 2048], ["Games", "93%", 1024], ["Music", "5%", 256], ["Films", "66%", 4096]]})",
    R"({"type": "options", "choices": [{"id": "a", "label": "Move them"}, {"id": "b", "label": "Close them"},
        {"id": "c", "label": "Arrange all of them side by side"}, {"id": "d", "label": "Nothing"}]})",
    R"({"type": "slider", "label": "Volume", "min": 0, "max": 100, "value": 40, "action": "volume"})",
};

//! Long enough that ten rows need scrolling.
QString rowText(int number)
{
    return QStringLiteral("Row %1 of a long conversation.\n\n- first, a list with *emphasis*\n- then `code`\n\n"
                          "And a paragraph that is long enough to be broken into several lines, as replies are: the "
                          "windows of the desktop were listed, three of them were moved, and one was closed at 90%.")
        .arg(number);
}

void appendMessage(Bar &bar, int number)
{
    bar.call(number % 2 == 0 ? "appendUserMessage" : "appendAgentMessage", rowText(number));
}

void appendBlock(Bar &bar, int number)
{
    const QByteArray json = s_blocks[number % std::size(s_blocks)];
    bar.call("appendStructuredBlocks", QVariantList {QJsonDocument::fromJson(json).toVariant()}, rowText(number));
}

//! Appends the row with this number.
using Append = void (*)(Bar &bar, int number);

//! Appends a row and shows it.
void show(Bar &bar, Append append)
{
    append(bar, bar.rowCount());
    bar.call("scrollToBottom");
}

//! Appends rows up to this number, several per frame because the time doesn't matter.
void fill(Bar &bar, int rows, Append append)
{
    while (bar.rowCount() < rows) {
        for (int i = 0; i < s_batch && bar.rowCount() < rows; ++i) {
            show(bar, append);
        }
        bar.frames().waitForFrame();
    }
    bar.frames().waitUntilStill();
}

//! Measures the appends around this row: the time from the call to the swapped frame with the row, in ms.
void measureAppends(Bar &bar, int around, std::vector<double> &times)
{
    fill(bar, around - s_window - 1, appendMessage);
    for (int i = -s_window; i <= s_window; ++i) {
        const qint64 begun = Clock::now();
        show(bar, appendMessage);
        const qint64 shown = bar.frames().waitForFrame([&bar] { return bar.isLastRowBuilt(); });
        times.push_back(Clock::milliseconds(shown - begun));
        bar.frames().waitUntilStill();
    }
}

//! Memory with this many rows, after releasing everything that can be released.
double memoryWith(Bar &bar, int rows, Append append)
{
    fill(bar, rows, append);
    qmlEngine(bar.window())->collectGarbage();
    Process::giveBackMemory();
    return Process::residentMemory();
}

void clear(Bar &bar)
{
    bar.call("clearConversation");
    bar.frames().waitUntilStill();
}

//! Measures each frame while the list scrolls up from its end (and down and up again if it is short), in ms: moving the
//! rows, creating those that come into view, layout and drawing.
void scroll(Bar &bar, std::vector<double> &times)
{
    QQuickItem *list = bar.item("messageList");
    const auto number = [list](const char *name) { return list->property(name).toReal(); };
    // As when the user scrolls, or the list would return to its end whenever its height changes.
    list->setProperty("followEnd", false);
    int direction = -1;
    for (int i = 0; i < s_scrollFrames; ++i) {
        const qreal first = number("originY");
        const qreal last = first + number("contentHeight") - list->height();
        if (last - first < s_scrollStep) {
            notMeasured("there is nothing to scroll");
        }
        qreal next = number("contentY") + direction * s_scrollStep;
        if (next < first || next > last) {
            direction = -direction;
            next = std::clamp(next, first, last);
        }
        const qint64 begun = Clock::now();
        list->setProperty("contentY", next);
        const qint64 moved = Clock::now() - begun;
        bar.frames().waitForFrame();
        times.push_back(Clock::milliseconds(moved + bar.frames().lastDuration()));
    }
}

//! Memory per row, in KiB.
void measureMemory(Bar &bar, const QByteArray &name, int many, Append append)
{
    // The first rows also load what all rows share.
    fill(bar, s_few, append);
    clear(bar);
    const double withFew = memoryWith(bar, s_few, append);
    const double withMany = memoryWith(bar, many, append);
    clear(bar);
    Figures::plain(name + ".memory-per-row", (withMany - withFew) / (many - s_few) / 1024, "KiB");
}

//! Scrolling many rows against a few.
void measureScrolling(Bar &bar, const QByteArray &name, int many, Append append)
{
    using Statistics::median;
    using Statistics::percentile;

    // Alternately, so that other load on the machine affects both equally.
    std::vector<double> shortScroll;
    std::vector<double> longScroll;
    for (int run = 0; run < s_runs; ++run) {
        fill(bar, s_few, append);
        scroll(bar, shortScroll);
        fill(bar, many, append);
        scroll(bar, longScroll);
        clear(bar);
    }
    const QByteArray fewName = name + ".scroll-" + QByteArray::number(s_few);
    const QByteArray manyName = name + ".scroll-" + QByteArray::number(many);
    Figures::plain(fewName + ".median", median(shortScroll), "ms");
    Figures::plain(manyName + ".median", median(longScroll), "ms");
    Figures::plain(fewName + ".p99", percentile(shortScroll, 0.99), "ms");
    Figures::plain(manyName + ".p99", percentile(longScroll, 0.99), "ms");
    Figures::bounded(name + ".scroll-ratio", percentile(longScroll, 0.99) / percentile(shortScroll, 0.99), "x", 1.5);
}

} // namespace

int main(int argc, char **argv)
{
    Bar bar(argc, argv);

    using Statistics::median;

    measureMemory(bar, "rows", s_many, appendMessage);

    std::vector<double> early;
    std::vector<double> late;
    for (int run = 0; run < s_runs; ++run) {
        measureAppends(bar, s_few, early);
        measureAppends(bar, s_many, late);
        clear(bar);
    }
    Figures::plain("rows.append-10th", median(early), "ms");
    Figures::plain("rows.append-1000th", median(late), "ms");
    Figures::bounded("rows.append-dearer", median(late) - median(early), "ms", 1);

    measureScrolling(bar, "rows", s_many, appendMessage);

    measureMemory(bar, "rows.structured", s_manyStructured, appendBlock);
    measureScrolling(bar, "rows.structured", s_manyStructured, appendBlock);
}
