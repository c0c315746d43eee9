// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// A history of 2000 messages in the main window, from its arrival until its newest rows are in a swapped frame.
// bench_mainwindow runs it.

#include "Application.h"
#include "LoomraSDK.h"
#include "ResourceTree.h"

#include "support/Clock.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/FrameWatch.h"
#include "support/Statistics.h"
#include "window/WindowTask.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStyleHints>

#include <algorithm>
#include <vector>

namespace
{

constexpr int s_messages = 2000;
constexpr int s_loads = 10;
constexpr int s_maxFrames = 3;

QJsonArray history(int number)
{
    QJsonArray messages;
    for (int i = 1; i <= s_messages; ++i) {
        messages.append(QJsonObject {
            {QStringLiteral("role"), i % 2 ? QStringLiteral("user") : QStringLiteral("assistant")},
            {QStringLiteral("content"), QStringLiteral("%1, message %2\n").arg(number).arg(i).repeated(3)}});
    }
    return messages;
}

QQuickItem *shown(QQuickItem *root, const QString &text)
{
    if (root->isVisible() && root->objectName() == QLatin1String("messageText")
        && root->property("text").toString().startsWith(text)) {
        return root;
    }
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = shown(child, text)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

int main(int, char **argv)
{
    ResourceTree::init();
    Application::prepareEnvironment();
    char mode[] = "--main";
    char *arguments[] = {argv[0], mode, nullptr};
    int count = 2;
    Application application(count, arguments);
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    QQuickWindow *window = WindowTask::openedWindow();
    auto *sdk =
        qobject_cast<LoomraSDK *>(qmlContext(window)->contextProperty(QStringLiteral("loomraSDK")).value<QObject *>());
    FrameWatch frames(window);
    if (!sdk || !EventLoop::until([window] { return window->property("firstFrameShown").toBool(); })) {
        notMeasured("the window has no client or no frame");
    }
    frames.waitUntilStill();

    std::vector<double> times;
    int mostFrames = 0;
    for (int i = 0; i < s_loads; ++i) {
        const QString newest = QStringLiteral("%1, message %2\n").arg(i).arg(s_messages);
        const QJsonArray messages = history(i);
        Q_EMIT sdk->sessionSwitched(QStringLiteral("session"));
        frames.waitUntilStill();
        const int before = frames.count();
        const qint64 begun = Clock::now();
        Q_EMIT sdk->messagesLoaded(messages);
        const qint64 swapped = frames.waitForFrame([&] { return shown(window->contentItem(), newest) != nullptr; });
        times.push_back(Clock::milliseconds(swapped - begun));
        mostFrames = std::max(mostFrames, frames.count() - before);
        frames.waitUntilStill();
    }
    Figures::bounded("mainwindow.history.frames", mostFrames, "frames", s_maxFrames);
    Figures::plain("mainwindow.history", Statistics::median(times), "ms");
}
