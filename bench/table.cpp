// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The widget of a table with many rows in its payload, of which it draws the first ones only.

#include "ResourceTree.h"
#include "support/Clock.h"
#include "support/Figures.h"
#include "support/FrameWatch.h"
#include "support/Statistics.h"

#include <QGuiApplication>
#include <QJSEngine>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

#include <memory>
#include <vector>

namespace
{

constexpr int s_few = 50;
constexpr int s_many = 5000;
constexpr int s_runs = 40;
constexpr QSize s_size(520, 700);

QString json(int rows)
{
    QJsonArray array;
    for (int row = 0; row < rows; ++row) {
        array.append(QJsonArray {QStringLiteral("row %1").arg(row), row, QStringLiteral("%1%").arg(row % 100)});
    }
    const QJsonObject table {
        {QStringLiteral("type"), QStringLiteral("table")},
        {QStringLiteral("columns"),
         QJsonArray {QStringLiteral("Name"), QStringLiteral("Number"), QStringLiteral("Used")}},
        {QStringLiteral("rows"), array},
    };
    return QString::fromUtf8(QJsonDocument(table).toJson(QJsonDocument::Compact));
}

class Tables
{
public:
    Tables()
        : m_parse(m_view.engine()->evaluate(QStringLiteral("JSON.parse")))
        , m_component(m_view.engine())
        , m_frames(&m_view)
    {
        m_view.engine()->addImportPath(QStringLiteral("qrc:/"));
        m_component.setData("import org.kde.loomra 1.0; BotTableWidget {}", QUrl());
        if (!m_component.isReady()) {
            notMeasured(m_component.errorString().toUtf8());
        }
        m_view.resize(s_size);
        m_view.show();
        m_frames.waitForFrame();
        m_frames.waitUntilStill();
    }

    QJSValue parse(const QString &text) { return m_parse.call({text}); }

    //! From the creation of a table until it is in a swapped frame, in ms.
    double showingTime(const QJSValue &payload)
    {
        const qint64 begun = Clock::now();
        const std::unique_ptr<QObject> object(m_component.createWithInitialProperties(
            {{QStringLiteral("width"), s_size.width()}, {QStringLiteral("payload"), QVariant::fromValue(payload)}}));
        auto *table = qobject_cast<QQuickItem *>(object.get());
        table->setParentItem(m_view.contentItem());
        const double time = Clock::milliseconds(m_frames.waitForFrame() - begun);
        if (table->implicitHeight() < s_size.height()) {
            notMeasured("the table isn't there");
        }
        return time;
    }

    //! Until the window has forgotten the last table.
    void waitUntilStill()
    {
        m_frames.waitUntilStill();
        m_view.engine()->collectGarbage();
    }

private:
    QQuickView m_view;
    QJSValue m_parse;
    QQmlComponent m_component;
    FrameWatch m_frames;
};

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    ResourceTree::init();
    Tables tables;

    const QString fewJson = json(s_few);
    const QString manyJson = json(s_many);
    std::vector<double> parsing;
    std::vector<double> few;
    std::vector<double> many;
    for (int run = -1; run < s_runs; ++run) {
        const double fewTime = tables.showingTime(tables.parse(fewJson));
        tables.waitUntilStill();
        const qint64 begun = Clock::now();
        const QJSValue payload = tables.parse(manyJson);
        const double parsingTime = Clock::milliseconds(Clock::now() - begun);
        const double manyTime = tables.showingTime(payload);
        tables.waitUntilStill();
        if (run >= 0) { // the first run warms up
            few.push_back(fewTime);
            parsing.push_back(parsingTime);
            many.push_back(manyTime);
        }
    }
    using Statistics::median;
    Figures::plain("table.parsing-5000", median(parsing), "ms");
    Figures::plain("table.shown-50", median(few), "ms");
    Figures::plain("table.shown-5000", median(many), "ms");
    Figures::bounded("table.ratio", median(many) / median(few), "x", 1.1);
}
