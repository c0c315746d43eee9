// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// What the program adds to a prompt and to its reply.

#include "AgentBridge.h"
#include "support/Clock.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/Statistics.h"
#include "window/Bar.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QWebSocket>

namespace
{

constexpr int s_prompts = 200;
constexpr int s_warmUps = 10;

//! From an action until its frame was handed to the system, and until the peer has it, in ms.
struct Sending
{
    double toWire = 0;
    double toPeer = 0;
};

//! What one action needs until its frame is out. The action must send one frame on this socket.
template<typename Action>
Sending send(QWebSocket *socket, Peer &peer, Action action)
{
    const int before = peer.heard();
    qint64 written = 0;
    const auto watch = QObject::connect(
        socket, &QWebSocket::bytesWritten, socket, [&written] { written = Clock::now(); }, Qt::DirectConnection);
    const qint64 begun = Clock::now();
    action();
    const bool isSent = EventLoop::until([&] { return written != 0; });
    QObject::disconnect(watch);
    if (!isSent || !EventLoop::until([&] { return peer.heard() > before; })) {
        notMeasured("a frame did not come out");
    }
    return {Clock::milliseconds(written - begun), Clock::milliseconds(peer.lastHeardAt() - begun)};
}

//! From the reply's frame, as the socket has it, to the swapped frame that shows its row, in ms.
double showReply(Bar &bar, QWebSocket *socket, Peer &peer, const QString &text)
{
    const int rows = bar.rowCount();
    qint64 received = 0;
    // Comes just before the signal that the program listens to.
    const auto watch = QObject::connect(
        socket, &QWebSocket::textFrameReceived, socket, [&received] { received = Clock::now(); }, Qt::DirectConnection);
    peer.answer(text);
    const qint64 shown = bar.frames().waitForFrame([&] { return bar.rowCount() > rows && bar.isLastRowShown(); });
    QObject::disconnect(watch);
    return Clock::milliseconds(shown - received);
}

} // namespace

int main(int argc, char **argv)
{
    Bar bar(argc, argv);
    Peer &peer = bar.peer();
    auto *socket = bar.agent()->findChild<QWebSocket *>();
    if (!socket) {
        notMeasured("the chat client has no socket");
    }
    QWebSocket raw;
    raw.open(QUrl(QStringLiteral("ws://127.0.0.1:8765/ws")));
    if (!EventLoop::until([&raw] { return raw.isValid(); })) {
        notMeasured("a bare socket could not be opened");
    }

    std::vector<double> promptToWire;
    std::vector<double> promptToPeer;
    std::vector<double> rawToWire;
    std::vector<double> rawToPeer;
    std::vector<double> replyToFrame;
    QString frame = QStringLiteral("{}"); // from the second time on, what the prompt before sent
    for (int i = -s_warmUps; i < s_prompts; ++i) {
        bar.item("inputField")->setProperty("text", QStringLiteral("Prompt number %1, if you please").arg(i));
        bar.frames().waitUntilStill(); // or drawing would count as waiting, in both
        const Sending bare = send(&raw, peer, [&] { raw.sendTextMessage(frame); });
        const Sending prompt = send(socket, peer, [&] { QTest::keyClick(bar.window(), Qt::Key_Return); });
        frame = peer.lastHeard();
        // The prompt's own row first, so that it is only the reply that is waited for.
        bar.waitForLastRow();
        const double reply = showReply(bar, socket, peer, QStringLiteral("Reply number **%1** of many.").arg(i));
        if (i < 0) {
            continue;
        }
        promptToWire.push_back(prompt.toWire);
        promptToPeer.push_back(prompt.toPeer);
        rawToWire.push_back(bare.toWire);
        rawToPeer.push_back(bare.toPeer);
        replyToFrame.push_back(reply);
    }

    using Statistics::median;
    Figures::plain("prompt.enter-to-wire", median(promptToWire), "ms");
    Figures::plain("prompt.enter-to-wire.raw-socket", median(rawToWire), "ms");
    Figures::plain("prompt.enter-to-wire.own", median(promptToWire) - median(rawToWire), "ms");
    Figures::plain("prompt.enter-to-peer", median(promptToPeer), "ms");
    Figures::plain("prompt.enter-to-peer.raw-socket", median(rawToPeer), "ms");
    Figures::plain("prompt.enter-to-peer.own", median(promptToPeer) - median(rawToPeer), "ms");
    Figures::plain("prompt.reply-to-frame", median(replyToFrame), "ms");
}
