// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The time that the program adds to a prompt and its reply.

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

//! The time from an action until its frame is written to the socket, and until the peer receives it, in ms.
struct Sending
{
    double toWire = 0;
    double toPeer = 0;
};

//! Measures an action, which must send one frame on this socket.
template<typename Action>
Sending send(QWebSocket *socket, Peer &peer, Action action)
{
    const int before = peer.received();
    qint64 written = 0;
    const auto watch = QObject::connect(
        socket, &QWebSocket::bytesWritten, socket, [&written] { written = Clock::now(); }, Qt::DirectConnection);
    const qint64 begun = Clock::now();
    action();
    const bool isSent = EventLoop::until([&] { return written != 0; });
    QObject::disconnect(watch);
    if (!isSent || !EventLoop::until([&] { return peer.received() > before; })) {
        notMeasured("a frame was not sent");
    }
    return {Clock::milliseconds(written - begun), Clock::milliseconds(peer.lastReceivedAt() - begun)};
}

//! The time from the arrival of the reply at the socket to the swapped frame that shows its row, in ms.
double showReply(Bar &bar, QWebSocket *socket, Peer &peer, const QString &text)
{
    const int rows = bar.rowCount();
    qint64 received = 0;
    // Emitted just before the signal to which the program is connected.
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
    QString frame = QStringLiteral("{}"); // from the second run on, the frame of the previous prompt
    for (int i = -s_warmUps; i < s_prompts; ++i) {
        bar.item("inputField")->setProperty("text", QStringLiteral("Prompt number %1, if you please").arg(i));
        bar.frames().waitUntilStill(); // or drawing would count as waiting, in both measurements
        const Sending bare = send(&raw, peer, [&] { raw.sendTextMessage(frame); });
        const Sending prompt = send(socket, peer, [&] { QTest::keyClick(bar.window(), Qt::Key_Return); });
        frame = peer.lastReceived();
        // The prompt's own row first, so that only the reply is measured.
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
