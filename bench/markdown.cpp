// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Rendering Markdown: ours against Qt's own reader, the costliest syntax against plain text, and how the time of the
// script alone grows with the length.

#include "ResourceTree.h"
#include "support/Clock.h"
#include "support/Figures.h"
#include "support/Statistics.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTextDocument>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace
{

constexpr int s_length = 100 * 1024; // characters
constexpr int s_runs = 15;
constexpr int s_fewRuns = 3; // of each piece of syntax
//! The part of the length with which the script's time for all of it is compared.
constexpr int s_part = 10;
constexpr int s_scriptRuns = 7;
constexpr qreal s_width = 494; // of the text in a bubble, in pixels

const char *s_component = R"(
import QtQuick 2.15
import "qrc:/org/kde/loomra/components/MarkdownRenderer.js" as MarkdownRenderer
QtObject {
    function render(markdown) { return MarkdownRenderer.render(markdown, {}); }
}
)";

//! What replies consist of.
const char *s_reply = R"(## Step %1

To change the **volume**, open *System Settings* and look for `Audio`. It takes about 20% of a minute, and 5 < 6.

- first, close other windows
- then choose the _output device_
  - it has its own slider

1. one
2. two

> Note: a restart isn't needed.

```sh
pactl set-sink-volume @DEFAULT_SINK@ 50%
```

)";

//! Pieces of syntax, and of what almost is.
const std::vector<const char *> s_pieces = {
    "**a** ", "**a ",  "*a* ",   "_a_ ",  "`a` ",  "`a ",           "5% ",   "**5%** ", "& ", "< ", "**a *b** c* ",
    "# a\n",  "- a\n", "1. a\n", "> a\n", "---\n", "```\na\n```\n", "a\n\n", "*",       "_",  "`",
};

QString repeated(const QString &piece, int length = s_length)
{
    return piece.repeated(length / piece.size() + 1).left(length);
}

QString reply()
{
    QString text;
    for (int step = 1; text.size() < s_length; ++step) {
        text += QString::fromUtf8(s_reply).arg(step);
    }
    return text.left(s_length);
}

class Renderer
{
public:
    Renderer()
    {
        QQmlComponent component(&m_engine);
        component.setData(s_component, QUrl());
        m_object.reset(component.create());
        if (!m_object) {
            notMeasured(component.errorString().toUtf8());
        }
    }

    QString render(const QString &markdown)
    {
        QVariant html;
        QMetaObject::invokeMethod(m_object.get(), "render", Q_RETURN_ARG(QVariant, html), Q_ARG(QVariant, markdown));
        return html.toString();
    }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_object;
};

//! From a text to a document that is laid out.
double timeOf(const std::function<void(QTextDocument &)> &fill)
{
    const qint64 start = Clock::now();
    QTextDocument document;
    QFont font = document.defaultFont();
    font.setPixelSize(14);
    document.setDefaultFont(font);
    document.setUndoRedoEnabled(false);
    fill(document);
    document.setTextWidth(s_width);
    document.documentLayout()->documentSize();
    return Clock::milliseconds(Clock::now() - start);
}

double renderingTime(Renderer &renderer, const QString &markdown)
{
    const qint64 start = Clock::now();
    renderer.render(markdown);
    return Clock::milliseconds(Clock::now() - start);
}

//! The processor time of the script, in ms: the least of several runs, because collecting garbage slows down some.
double scriptWork(Renderer &renderer, const QString &markdown)
{
    double least = std::numeric_limits<double>::infinity();
    for (int run = 0; run < s_scriptRuns; ++run) {
        const qint64 start = Clock::work();
        renderer.render(markdown);
        least = std::min(least, Clock::milliseconds(Clock::work() - start));
    }
    return least;
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    ResourceTree::init();
    Renderer renderer;

    const QString markdown = reply();
    std::vector<double> ours;
    std::vector<double> scripts;
    std::vector<double> qts;
    for (int i = -1; i < s_runs; ++i) {
        const double script = renderingTime(renderer, markdown);
        const double our = timeOf([&](QTextDocument &document) { document.setHtml(renderer.render(markdown)); });
        const double qt = timeOf([&](QTextDocument &document) { document.setMarkdown(markdown); });
        if (i >= 0) { // the first run warms up
            scripts.push_back(script);
            ours.push_back(our);
            qts.push_back(qt);
        }
    }
    Figures::plain("markdown.script", Statistics::median(scripts), "ms");
    Figures::plain("markdown.laid-out", Statistics::median(ours), "ms");
    Figures::plain("markdown.qt", Statistics::median(qts), "ms");
    Figures::bounded("markdown.ratio", Statistics::median(ours) / Statistics::median(qts), "x", 1.5);

    const QString plain = repeated(QStringLiteral("lorem ipsum dolor "));
    const auto medianOf = [&renderer](const QString &text) {
        std::vector<double> times;
        for (int i = -1; i < s_fewRuns; ++i) {
            const double time = timeOf([&](QTextDocument &document) { document.setHtml(renderer.render(text)); });
            if (i >= 0) {
                times.push_back(time);
            }
        }
        return Statistics::median(times);
    };
    const double plainTime = medianOf(plain);
    double worst = 0;
    double worstScript = 0;
    double worstGrowth = 0;
    std::fprintf(stderr, "      all    script  its growth\n");
    for (const char *piece : s_pieces) {
        const QString syntax = QString::fromLatin1(piece);
        const double time = medianOf(repeated(syntax));
        const double script = scriptWork(renderer, repeated(syntax));
        const double growth = script / scriptWork(renderer, repeated(syntax, s_length / s_part)) / s_part;
        std::fprintf(stderr, "%6.1f ms %6.1f ms %6.2f    %s\n", time, script, growth,
                     syntax.trimmed().replace(QLatin1Char('\n'), QLatin1String("\\n")).toLatin1().constData());
        worst = std::max(worst, time);
        worstScript = std::max(worstScript, script);
        worstGrowth = std::max(worstGrowth, growth);
    }
    Figures::plain("markdown.plain-text", plainTime, "ms");
    Figures::plain("markdown.worst-syntax", worst, "ms");
    Figures::bounded("markdown.worst-ratio", worst / plainTime, "x", 10);
    Figures::plain("markdown.worst-script", worstScript, "ms");
    Figures::bounded("markdown.script-growth", worstGrowth, "x", 3);
}
