// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The settings sheet: opening it and switching between its tabs, against an empty sheet and empty tabs of the same
// size; the filter of a long list of models; and how often an open sheet is drawn.

#include "support/Clock.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/Statistics.h"
#include "window/Bar.h"

#include <QFile>
#include <QJsonArray>
#include <QQmlListReference>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace
{

constexpr int s_rounds = 4;
constexpr int s_perRound = 5;
constexpr int s_models = 5000;
constexpr int s_ticks = 10;
//! Longer than a tick takes to arrive in a frame.
constexpr auto s_tickTime = 200ms;
constexpr auto s_stillTime = 1s;
//! An interval that is longer than the benchmark, in ms.
constexpr int s_never = 100000000;

QJsonObject manyModels()
{
    static const char *const s_families[] = {"finch", "tidal", "quartz", "birch", "marten", "otter", "willow", "ember"};
    static const char *const s_kinds[] = {"instruct", "code", "vision", "long", "free"};
    QJsonArray models;
    for (int i = 0; i < s_models; ++i) {
        const QString id =
            QStringLiteral("%1-%2b-%3").arg(QLatin1String(s_families[i % 8])).arg(i).arg(QLatin1String(s_kinds[i % 5]));
        models.append(QJsonObject {{QStringLiteral("id"), id},
                                   {QStringLiteral("fullId"), QStringLiteral("provider%1/%2").arg(i % 20).arg(id)},
                                   {QStringLiteral("name"), id}});
    }
    return {{QStringLiteral("models"), models}};
}

//! One reply for all requests of the open sheet.
QJsonObject everything()
{
    QJsonArray sessions;
    for (int i = 0; i < 40; ++i) {
        sessions.append(QJsonObject {{QStringLiteral("id"), QStringLiteral("ses_%1").arg(i)},
                                     {QStringLiteral("name"), QStringLiteral("Conversation %1").arg(i)}});
    }
    QJsonArray entries;
    for (int i = 0; i < 8; ++i) {
        entries.append(QJsonObject {{QStringLiteral("level"), QStringLiteral("warn")},
                                    {QStringLiteral("message"), QStringLiteral("Something was repeated, %1").arg(i)},
                                    {QStringLiteral("ts"), 1773068700000.0 + i}});
    }
    return {
        {QStringLiteral("sessions"), sessions},
        {QStringLiteral("memory"), QJsonObject {{QStringLiteral("bridgeRssMb"), 90}}},
        {QStringLiteral("warnings"), QJsonObject {{QStringLiteral("total"), 8}}},
        {QStringLiteral("logEntries"), entries},
        {QStringLiteral("active"), QStringLiteral("balanced")},
        {QStringLiteral("available"), QJsonArray {QStringLiteral("balanced"), QStringLiteral("performance")}},
    };
}

//! The open sheet and its tabs.
class Sheet
{
public:
    explicit Sheet(Bar &bar)
        : m_bar(bar)
    {
        setOpen(true);
        if (!EventLoop::until([this] { return m_bar.window()->property("settingsPanelOpen").toBool(); })) {
            notMeasured("the sheet was not opened");
        }
        m_bar.frames().waitUntilStill();
        m_loader = m_bar.item("settingsPanel")->parentItem();
        m_file = m_loader->property("file");
    }

    //! Replaces the sheet by another one, or takes the real one again.
    void replace(const QUrl &file)
    {
        setOpen(false);
        m_bar.frames().waitUntilStill();
        m_loader->setProperty("source", QUrl());
        m_loader->setProperty("file", file.isEmpty() ? m_file : file);
    }

    //! Opens the sheet. @return the time until it is in a swapped frame, in ms
    double open()
    {
        const qint64 begun = Clock::now();
        setOpen(true);
        const qint64 shown = m_bar.frames().waitForFrame([this] {
            const auto *sheet = m_loader->property("item").value<QQuickItem *>();
            return sheet && sheet->opacity() > 0;
        });
        m_bar.frames().waitUntilStill();
        return Clock::milliseconds(shown - begun);
    }
    void close()
    {
        setOpen(false);
        m_bar.frames().waitUntilStill();
    }

    QSizeF size() const { return {m_loader->width(), m_loader->height()}; }
    int tabCount() const { return QQmlListReference(m_bar.item("settingsPanel"), "tabs").count(); }
    QObject *tab(int index) const { return QQmlListReference(m_bar.item("settingsPanel"), "tabs").at(index); }
    QByteArray title(int index) const
    {
        return tab(index)->property("title").toString().section(QLatin1Char(' '), 0, 0).toLower().toUtf8();
    }
    QQuickItem *page(int index) const
    {
        const QList<QQuickItem *> loaders = m_bar.item("settingsPages")->childItems();
        for (QQuickItem *loader : loaders) {
            if (loader->property("tab").value<QObject *>() == tab(index)) {
                return loader->property("item").value<QQuickItem *>();
            }
        }
        return nullptr;
    }

    //! Switches to a tab. @return the time until its page is in a swapped frame, in ms; 0 if it is the current one
    double enter(int index)
    {
        if (m_bar.item("settingsTabs")->property("currentIndex").toInt() == index) {
            return 0;
        }
        const qint64 begun = Clock::now();
        m_bar.item("settingsTabs")->setProperty("currentIndex", index);
        const qint64 shown = m_bar.frames().waitForFrame([&] { return page(index) != nullptr; });
        m_bar.frames().waitUntilStill();
        return Clock::milliseconds(shown - begun);
    }

private:
    void setOpen(bool isOpen) { m_bar.window()->setProperty("settingsPanelOpen", isOpen); }

    Bar &m_bar;
    QQuickItem *m_loader = nullptr;
    QVariant m_file;
};

//! Writes a QML file and returns its URL.
QUrl write(const QTemporaryDir &directory, const QString &name, const QString &qml)
{
    QFile file(directory.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(qml.toUtf8()) < 0) {
        notMeasured("a QML file can't be written");
    }
    return QUrl::fromLocalFile(file.fileName());
}

QUrl emptySheet(const QTemporaryDir &directory, const QSizeF &size)
{
    return write(directory, QStringLiteral("EmptySheet.qml"),
                 QStringLiteral("import QtQuick 2.15\n"
                                "import \"qrc:/org/kde/loomra/contents/ui/omnibar/common\"\n"
                                "FloatingPanel {\n"
                                "    required property var bar\n"
                                "    required property Item barCardItem\n"
                                "    property Item chatPanelItem\n"
                                "    width: %1; height: %2; shown: bar.settingsPanelOpen\n"
                                "}\n")
                     .arg(size.width())
                     .arg(size.height()));
}

QUrl emptyPage(const QTemporaryDir &directory, int height)
{
    return write(directory, QStringLiteral("EmptyPage%1.qml").arg(height),
                 QStringLiteral("import QtQuick 2.15\n"
                                "Item {\n"
                                "    required property var bar\n"
                                "    required property var theme\n"
                                "    required property QtObject tab\n"
                                "    implicitHeight: %1\n"
                                "}\n")
                     .arg(height));
}

void measureOpening(Sheet &sheet, const QTemporaryDir &directory)
{
    const QUrl empty = emptySheet(directory, sheet.size());
    std::vector<double> times;
    std::vector<double> emptyTimes;
    std::vector<double> firstTimes;
    // Alternately, so that other load on the machine affects both equally.
    for (int round = 0; round < s_rounds; ++round) {
        for (const bool isReal : {true, false}) {
            sheet.replace(isReal ? QUrl() : empty);
            const double first = sheet.open();
            if (isReal) {
                firstTimes.push_back(first);
            }
            for (int i = 0; i < s_perRound; ++i) {
                sheet.close();
                (isReal ? times : emptyTimes).push_back(sheet.open());
            }
        }
    }
    sheet.replace({});
    sheet.open();
    using Statistics::median;
    Figures::plain("sheet.first", median(firstTimes), "ms");
    Figures::plain("sheet.open", median(times), "ms");
    Figures::plain("sheet.open.empty", median(emptyTimes), "ms");
    Figures::bounded("sheet.open.ratio", median(times) / median(emptyTimes), "x", 1.5);
}

void measureTab(Sheet &sheet, int index, const QTemporaryDir &directory)
{
    const int other = index == 0 ? 1 : 0;
    const QVariant file = sheet.tab(index)->property("file");
    const QVariant otherFile = sheet.tab(other)->property("file");
    sheet.enter(other);
    sheet.enter(index);
    const QUrl empty = emptyPage(directory, qRound(sheet.page(index)->height()));
    sheet.tab(other)->setProperty("file", empty);
    std::vector<double> times;
    std::vector<double> emptyTimes;
    for (int i = 0; i < s_rounds * s_perRound; ++i) {
        for (const bool isReal : {true, false}) {
            sheet.enter(other);
            sheet.tab(index)->setProperty("file", isReal ? file : QVariant(empty));
            (isReal ? times : emptyTimes).push_back(sheet.enter(index));
        }
    }
    sheet.enter(other);
    sheet.tab(index)->setProperty("file", file);
    sheet.tab(other)->setProperty("file", otherFile);
    const QByteArray name = "sheet.tab." + sheet.title(index);
    using Statistics::median;
    Figures::plain(name, median(times), "ms");
    Figures::plain(name + ".empty", median(emptyTimes), "ms");
    Figures::bounded(name + ".ratio", median(times) / median(emptyTimes), "x", 1.5);
}

void loadModels(Bar &bar)
{
    bar.peer().answerAll(manyModels());
    bar.call("refreshModels");
    auto *rows = bar.window()->property("settingsModelsListModel").value<QObject *>();
    if (!EventLoop::until([rows] { return rows->property("count").toInt() == s_models; })) {
        notMeasured("the models did not arrive");
    }
    bar.peer().answerAll(everything());
    bar.frames().waitUntilStill();
}

//! Types words into the search field of the models, letter by letter, and deletes them again.
void measureFilter(Bar &bar)
{
    std::vector<double> scripts;
    std::vector<double> frames;
    for (const char *word : {"quartz", "provider7", "free", "3b-code", "nothing"}) {
        const QString text = QLatin1String(word);
        QStringList keys;
        for (int length = 1; length <= text.size(); ++length) {
            keys.append(text.left(length));
        }
        for (int length = text.size() - 1; length >= 0; --length) {
            keys.append(text.left(length));
        }
        for (const QString &typed : qAsConst(keys)) {
            const qint64 begun = Clock::now();
            bar.call("filterModels", typed);
            const qint64 done = Clock::now();
            bar.window()->update();
            bar.frames().waitForFrame();
            scripts.push_back(Clock::milliseconds(done - begun));
            frames.push_back(Clock::milliseconds(done - begun + bar.frames().lastDuration()));
        }
    }
    Figures::plain("sheet.filter", Statistics::median(scripts), "ms");
    Figures::bounded("sheet.filter.p99", Statistics::percentile(scripts, 0.99), "ms", 16);
    Figures::plain("sheet.filter.with-frame.p99", Statistics::percentile(frames, 0.99), "ms");
}

//! The frames that are swapped after a tick of the dashboard with nothing new.
void measureTicks(Bar &bar)
{
    auto *timer = bar.window()->findChild<QObject *>(QStringLiteral("dashPollTimer"));
    if (!timer || !timer->property("running").toBool()) {
        notMeasured("the dashboard does not poll");
    }
    timer->setProperty("interval", s_never);
    QSignalSpy replies(bar.window()->property("sdk").value<QObject *>(), SIGNAL(systemDashboardReceived(QJsonObject)));
    int most = 0;
    for (int i = 0; i < s_ticks; ++i) {
        bar.frames().waitUntilStill();
        const int before = bar.frames().count();
        QMetaObject::invokeMethod(timer, "triggered");
        if (!EventLoop::until([&] { return replies.size() == i + 1; })) {
            notMeasured("the dashboard was not reported");
        }
        EventLoop::run(s_tickTime);
        most = std::max(most, bar.frames().count() - before);
    }
    Figures::bounded("sheet.tick.frames", most, "frames", 1);
}

} // namespace

int main(int argc, char **argv)
{
    Bar bar(argc, argv);
    const QTemporaryDir directory;
    const auto *sdk = bar.window()->property("sdk").value<QObject *>();
    if (!EventLoop::until([sdk] { return sdk && sdk->property("ready").toBool(); })) {
        notMeasured("the SDK client did not connect");
    }

    loadModels(bar);
    Sheet sheet(bar);
    measureOpening(sheet, directory);
    for (int index = 0; index < sheet.tabCount(); ++index) {
        measureTab(sheet, index, directory);
    }
    int frames = 0;
    for (int index = 0; index < sheet.tabCount(); ++index) {
        sheet.enter(index);
        bar.frames().waitUntilStill(300ms);
        const int before = bar.frames().count();
        EventLoop::run(s_stillTime);
        frames = std::max(frames, bar.frames().count() - before);
        if (sheet.title(index) == "models") {
            measureFilter(bar);
        } else if (sheet.title(index) == "system") {
            measureTicks(bar);
        }
    }
    Figures::bounded("sheet.still.frames", frames, "frames", 0);
}
