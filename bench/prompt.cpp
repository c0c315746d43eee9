// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The time that the program adds to a typed prompt, a spoken one, and a reply.

#include "AgentBridge.h"
#include "VoiceBridge.h"
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

//! The times of all frames of a kind.
struct Series
{
    std::vector<double> toWire;
    std::vector<double> toPeer;

    void add(const Sending &sending)
    {
        toWire.push_back(sending.toWire);
        toPeer.push_back(sending.toPeer);
    }
};

//! Prints the medians of a series, those of a bare socket, and the differences, which are the program's share.
void print(const char *name, const Series &program, const Series &raw)
{
    const auto printOne = [](const QByteArray &name, const std::vector<double> &times,
                             const std::vector<double> &bare) {
        const double median = Statistics::median(times);
        const double bareMedian = Statistics::median(bare);
        Figures::plain(name, median, "ms");
        Figures::plain(name + ".raw-socket", bareMedian, "ms");
        Figures::plain(name + ".own", median - bareMedian, "ms");
    };
    printOne(QByteArray("prompt.") + name + "-to-wire", program.toWire, raw.toWire);
    printOne(QByteArray("prompt.") + name + "-to-peer", program.toPeer, raw.toPeer);
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
    std::vector<double> replyToFrame;
    QString frame = QStringLiteral("{}"); // from the second run on, the frame of the previous prompt
    // Sends prompts by an action and replies to them. Prints the times of the prompts.
    const auto measure = [&](const char *name, const auto &prepare, const auto &act) {
        Series program;
        Series bare;
        replyToFrame.clear();
        for (int i = -s_warmUps; i < s_prompts; ++i) {
            const QString text = QStringLiteral("Prompt number %1, if you please").arg(i);
            prepare(text);
            bar.frames().waitUntilStill(); // or drawing would count as waiting, in both measurements
            const Sending rawFrame = send(&raw, peer, [&] { raw.sendTextMessage(frame); });
            const Sending prompt = send(socket, peer, [&] { act(text); });
            frame = peer.lastReceived();
            // The prompt's own row first, so that only the reply is measured.
            bar.waitForLastRow();
            const double reply = showReply(bar, socket, peer, QStringLiteral("Reply number **%1** of many.").arg(i));
            if (i >= 0) {
                program.add(prompt);
                bare.add(rawFrame);
                replyToFrame.push_back(reply);
            }
        }
        print(name, program, bare);
    };

    measure(
        "enter", [&](const QString &text) { bar.item("inputField")->setProperty("text", text); },
        [&](const QString &) { QTest::keyClick(bar.window(), Qt::Key_Return); });
    Figures::plain("prompt.reply-to-frame", Statistics::median(replyToFrame), "ms");

    VoiceBridge *voice = bar.voice();
    voice->setVoiceConfirmDelaySec(0);
    measure(
        "transcript", [](const QString &) {}, [&](const QString &text) { Q_EMIT voice->transcriptReady(text); });
}
