// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The time that LoomraSDK adds to a request and its reply.

#include "ConfigManager.h"
#include "DebugEventLog.h"
#include "LoomraSDK.h"
#include "support/Clock.h"
#include "support/EventLoop.h"
#include "support/Figures.h"
#include "support/Peer.h"
#include "support/Statistics.h"

#include <KAboutData>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>

#include <functional>
#include <vector>

namespace
{

//! Open requests of each client. A single one would measure how soon the other thread wakes up, and the socket's delay
//! of small frames (up to 40 ms, until the previous one is acknowledged, which a reply does). With this many there is
//! always one on its way, so that work is measured.
constexpr int s_window = 64;
constexpr int s_requests = 20000;
constexpr int s_runs = 15;
constexpr int s_warmUps = 2;
constexpr int s_calls = 2000; // of the log, per run
constexpr int s_dispatchRuns = 50;

//! The client's rate, as a share of the bare socket's.
constexpr double s_minimumRatio = 0.9;

constexpr char s_agents[] = R"({"agents":[{"description":"Works on a project","id":"build","name":"Build"}]})";

//! A reply as the peer sends it.
QString replyFrame(int id, const char *payload)
{
    return QStringLiteral(R"({"id":%1,"payload":%2,"type":"response"})")
        .arg(QString::number(id), QLatin1String(payload));
}

//! The result of a run.
struct Speed
{
    double perSecond = 0;
    //! Processor time of the client's own thread for one request and its reply, in µs.
    double work = 0;
};

//! Keeps s_window requests open until all requests of a run are answered. @param replies counts the replies
Speed run(const std::function<void()> &send, const int &replies)
{
    const int before = replies;
    int sent = 0;
    const qint64 begun = Clock::now();
    const qint64 workBefore = Clock::work();
    const bool isDone = EventLoop::until([&] {
        const int answered = replies - before;
        while (sent < s_requests && sent - answered < s_window) {
            send();
            ++sent;
        }
        return answered == s_requests;
    });
    if (!isDone) {
        notMeasured("a reply is missing");
    }
    const auto duration = static_cast<double>(Clock::now() - begun);
    return {s_requests / duration * 1e9, static_cast<double>(Clock::work() - workBefore) / s_requests / 1e3};
}

//! Sends the same JSON on a bare socket.
class BareClient
{
public:
    BareClient()
    {
        QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket, [this](const QString &text) {
            const QJsonObject message = QJsonDocument::fromJson(text.toUtf8()).object();
            if (message.value(QLatin1String("id")).toInt() > 0
                && message.value(QLatin1String("payload")).toObject().contains(QLatin1String("agents"))) {
                ++replies;
            }
        });
        m_socket.open(QUrl(QStringLiteral("ws://127.0.0.1:8765/ws")));
        if (!EventLoop::until([this] { return m_socket.isValid(); })) {
            notMeasured("a bare socket could not be opened");
        }
    }

    void send()
    {
        const QJsonObject message {{QStringLiteral("id"), ++m_id},
                                   {QStringLiteral("method"), QStringLiteral("listAgents")},
                                   {QStringLiteral("params"), QJsonObject()}};
        m_socket.sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    }

    int replies = 0;

private:
    QWebSocket m_socket;
    int m_id = 0;
};

//! Logs the events of a request and its reply, with similar texts.
void logEvents(int id, const QString &reply)
{
    const auto location = QStringLiteral("LoomraSDK:bench");
    const auto method = QStringLiteral("listAgents");
    DebugEventLog::write(location, QStringLiteral("sendRequest entry"), [&] {
        return QStringLiteral("{\"method\":\"%1\",\"requestId\":%2,\"ready\":%3,\"connected\":%4}")
            .arg(DebugEventLog::escaped(method), QString::number(id), QString::number(1), QString::number(1));
    });
    DebugEventLog::write(location, QStringLiteral("sendRequest message sent"), [&] {
        return QStringLiteral("{\"method\":\"%1\",\"requestId\":%2}")
            .arg(DebugEventLog::escaped(method), QString::number(id));
    });
    DebugEventLog::write(location, QStringLiteral("WebSocket message received"), [&] {
        return QStringLiteral("{\"messageLength\":%1,\"messagePreview\":\"%2\"}")
            .arg(QString::number(reply.size()), DebugEventLog::escapedLines(reply.left(200)));
    });
    DebugEventLog::write(location, QStringLiteral("Parsed message object"), [&] {
        return QStringLiteral("{\"hasType\":%1,\"type\":\"%2\",\"hasId\":%3}")
            .arg(QString::number(1), DebugEventLog::escaped(QStringLiteral("response")), QString::number(1));
    });
}

//! The processor time of the log's share of a request, in µs.
double logWork(const QString &reply)
{
    std::vector<double> times;
    for (int run = 0; run < s_runs; ++run) {
        const qint64 before = Clock::work();
        for (int i = 0; i < s_calls; ++i) {
            logEvents(i, reply);
        }
        times.push_back(static_cast<double>(Clock::work() - before) / s_calls / 1e3);
    }
    return Statistics::median(times);
}

//! LoomraSDK, with a count of the ids that it uses.
class WindowClient
{
public:
    WindowClient()
    {
        m_sdk.setConnectOnly(true);
        m_sdk.reconnectBridge();
        QObject::connect(&m_sdk, &LoomraSDK::agentsListed, &m_sdk, [this] { ++replies; });
        QObject::connect(&m_sdk, &LoomraSDK::chatResponse, &m_sdk, [this] { ++replies; });
        QObject::connect(&m_sdk, &LoomraSDK::deniedPermissionsReceived, &m_sdk, [this] { ++replies; });
        if (!EventLoop::until([this] { return m_sdk.isReady(); })) {
            notMeasured("the client does not become ready");
        }
    }

    void send()
    {
        m_sdk.listAgents();
        ++m_id;
    }

    //! The processor time for a reply to this operation, from the text on the socket to the end of the signal, in µs.
    //! The peer must not reply.
    double receive(void (*operation)(LoomraSDK &), const char *payload)
    {
        std::vector<QString> frames;
        for (int i = 0; i < s_window; ++i) {
            operation(m_sdk);
            frames.push_back(replyFrame(++m_id, payload));
        }
        const int before = replies;
        const qint64 workBefore = Clock::work();
        for (const QString &frame : frames) {
            Q_EMIT m_socket->textMessageReceived(frame);
        }
        const qint64 spent = Clock::work() - workBefore;
        if (replies - before != s_window) {
            notMeasured("the client uses other ids than expected");
        }
        return static_cast<double>(spent) / s_window / 1e3;
    }

    int replies = 0;

private:
    ConfigManager m_config;
    LoomraSDK m_sdk {&m_config};
    QWebSocket *const m_socket = m_sdk.findChild<QWebSocket *>();
    int m_id = 2; // used by "ping" and "getCapabilities"
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    KAboutData::setApplicationData(KAboutData(QStringLiteral("loomra-kde"), QString(), QString()));
    if (DebugEventLog::isOn()) {
        notMeasured("the debug log is on");
    }
    Peer peer;
    // Each request is answered at once, so that both ends work in parallel.
    peer.answerAll(QJsonDocument::fromJson(s_agents).object());
    WindowClient client;
    BareClient bare;

    std::vector<double> perSecond;
    std::vector<double> perSecondBare;
    std::vector<double> work;
    std::vector<double> workBare;
    // Alternately, so that other load on the machine affects both equally.
    for (int i = -s_warmUps; i < s_runs; ++i) {
        const Speed own = run([&client] { client.send(); }, client.replies);
        const Speed raw = run([&bare] { bare.send(); }, bare.replies);
        if (i >= 0) {
            perSecond.push_back(own.perSecond);
            perSecondBare.push_back(raw.perSecond);
            work.push_back(own.work);
            workBare.push_back(raw.work);
        }
    }

    using Statistics::median;
    Figures::plain("requests.per-second", median(perSecond), "1/s");
    Figures::plain("requests.per-second.raw-socket", median(perSecondBare), "1/s");
    Figures::atLeast("requests.ratio", median(perSecond) / median(perSecondBare), "x", s_minimumRatio);
    Figures::plain("requests.work", median(work), "us");
    Figures::plain("requests.work.raw-socket", median(workBare), "us");
    Figures::plain("requests.work.own", median(work) - median(workBare), "us");
    const double log = logWork(replyFrame(1, s_agents));
    Figures::plain("requests.debug-log", log, "us");
    Figures::plain("requests.debug-log.share", 100 * log / median(work), "%");

    peer.answerAll({});
    std::vector<double> first;
    std::vector<double> last;
    for (int i = -s_warmUps; i < s_dispatchRuns; ++i) {
        const double early =
            client.receive([](LoomraSDK &sdk) { sdk.sendChatMessage(QString()); }, R"({"response":"r"})");
        const double late = client.receive([](LoomraSDK &sdk) { sdk.getDeniedPermissions(); }, R"({"denied":[]})");
        if (i >= 0) {
            first.push_back(early);
            last.push_back(late);
        }
    }
    Figures::plain("requests.dispatch-first", median(first), "us");
    Figures::plain("requests.dispatch-last", median(last), "us");
    Figures::plain("requests.dispatch-dearer", median(last) - median(first), "us");
}
