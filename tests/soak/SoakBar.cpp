// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The OmniBar: replies of all kinds, and lost bridges.

#include "Figures.h"
#include "Replies.h"
#include "Soak.h"
#include "SoakBridge.h"

#include "AgentBridge.h"
#include "AnimationClock.h"
#include "Application.h"
#include "LoomraSDK.h"

#include <QQmlEngine>
#include <QQuickWindow>
#include <QStyleHints>

#include <iterator>

using namespace std::chrono_literals;

namespace
{

//! A user begins a new conversation now and then, because rows are kept as long as theirs.
constexpr int s_rowsOfAConversation = 300;
//! Every so many replies.
constexpr int s_sheetEvery = 101;
constexpr int s_bubbleEvery = 211;
constexpr int s_themeEvery = 307;
constexpr int s_settingsTabs = 6;
constexpr auto s_sheetTime = 50ms;
//! Above the maximum of a message.
constexpr quint64 s_tooLarge = 64 * 1024 * 1024 + 1;

class BarSoak
{
public:
    BarSoak(int &argc, char **argv, const Amounts &amounts);
    int run();

private:
    struct Kind
    {
        const char *name;
        void (BarSoak::*act)();
    };
    static const Kind s_replies[];
    static const Kind s_losses[];

    void perform(const Kind &reply);
    void lose(const Kind &loss);

    // What a user does.
    void type(const QString &prompt);
    SoakBridge::Request ask();
    void beHuman();
    void beginSession();
    void visitSettings(int tab);
    void visitBubble();
    void switchTheme();
    void rest();

    //! Takes the next request of a prompt, a widget or a vote.
    SoakBridge::Request takeRequest();
    void answer(const QJsonValue &payload);
    void waitForIdle();
    void waitForConnections();

    void plain() { answer(Replies::text(Replies::plain(m_number))); }
    void markdown() { answer(Replies::text(Replies::markdown(m_number))); }
    void html() { answer(Replies::text(Replies::html(m_number))); }
    void longText();
    void blocks();
    void choice();
    void followUps();
    void usage() { answer(Replies::withUsage(m_number)); }
    void oldForm();
    void refused();
    void errorFrame();
    void emptyReply() { answer(Replies::text(QString())); }
    void noObject() { answer(QJsonArray {m_number}); }
    void cancelled();
    void twice();
    void progress();
    void malformed();
    void plan();
    void rephrased();
    void vote();

    void dropAtRest() { m_bridge.drop(); }
    void dropWhileThinking();
    void stayAway();
    void tooLarge();
    void halfAFrame();

    const Amounts m_amounts;
    Application m_application;
    SoakBridge m_bridge;
    SoakWindow m_window;
    AgentBridge *const m_agent = Soak::native<AgentBridge>();
    LoomraSDK *const m_sdk = Soak::native<LoomraSDK>();
    QList<SoakBridge::Request> m_requests;
    int m_number = 0;
    int m_rephrased = 0;
};

const BarSoak::Kind BarSoak::s_replies[] = {
    {"plain", &BarSoak::plain},         {"markdown", &BarSoak::markdown},   {"html", &BarSoak::html},
    {"long", &BarSoak::longText},       {"blocks", &BarSoak::blocks},       {"choice", &BarSoak::choice},
    {"followUps", &BarSoak::followUps}, {"usage", &BarSoak::usage},         {"old form", &BarSoak::oldForm},
    {"refused", &BarSoak::refused},     {"error", &BarSoak::errorFrame},    {"empty", &BarSoak::emptyReply},
    {"no object", &BarSoak::noObject},  {"cancelled", &BarSoak::cancelled}, {"twice", &BarSoak::twice},
    {"progress", &BarSoak::progress},   {"malformed", &BarSoak::malformed}, {"plan", &BarSoak::plan},
    {"rephrased", &BarSoak::rephrased}, {"vote", &BarSoak::vote},
};

const BarSoak::Kind BarSoak::s_losses[] = {
    {"at rest", &BarSoak::dropAtRest},      {"while thinking", &BarSoak::dropWhileThinking},
    {"stays away", &BarSoak::stayAway},     {"too large", &BarSoak::tooLarge},
    {"half a frame", &BarSoak::halfAFrame},
};

BarSoak::BarSoak(int &argc, char **argv, const Amounts &amounts)
    : m_amounts(amounts)
    , m_application(argc, argv)
{
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    AnimationClock::install();
    m_bridge.onChat = [this](const SoakBridge::Request &request) { m_requests.append(request); };
    QObject::connect(m_agent, &AgentBridge::rephraseReady, [this] { ++m_rephrased; });
    Soak::hurryReconnects();
    waitForConnections();
    Soak::waitFor("the whole window", [this] { return m_window.get("firstFrameShown").toBool(); });
}

int BarSoak::run()
{
    // Everything once, so that what is created on first use is not taken for growth.
    for (const Kind &kind : s_replies) {
        perform(kind);
    }
    for (const Kind &loss : s_losses) {
        lose(loss);
    }
    for (int tab = 0; tab < s_settingsTabs; ++tab) {
        visitSettings(tab);
    }
    visitBubble();
    switchTheme();
    switchTheme();
    beginSession();
    rest();

    Record record("bar", m_amounts.replies, qmlEngine(m_window.window()), [this] { rest(); });
    int losses = 0;
    for (m_number = 1; m_number <= m_amounts.replies; ++m_number) {
        perform(s_replies[m_number % std::size(s_replies)]);
        beHuman();
        if (static_cast<qint64>(m_number) * m_amounts.losses / m_amounts.replies > losses) {
            lose(s_losses[losses++ % std::size(s_losses)]);
        }
        record.step();
    }
    return record.finish();
}

void BarSoak::perform(const Kind &reply)
{
    Soak::setTask(reply.name);
    const int before = m_window.rows();
    (this->*reply.act)();
    if (m_window.rows() <= before) {
        Soak::fail("no row for a reply");
    }
}

void BarSoak::lose(const Kind &loss)
{
    Soak::setTask(loss.name);
    (this->*loss.act)();
    waitForConnections();
}

void BarSoak::type(const QString &prompt)
{
    m_window.object("inputField")->setProperty("text", prompt);
    m_window.call("submitInput");
}

SoakBridge::Request BarSoak::ask()
{
    type(QStringLiteral("Prompt %1").arg(m_number));
    return takeRequest();
}

SoakBridge::Request BarSoak::takeRequest()
{
    Soak::waitFor("a request", [this] { return !m_requests.isEmpty(); });
    return m_requests.takeFirst();
}

void BarSoak::answer(const QJsonValue &payload)
{
    SoakBridge::reply(ask(), payload);
    waitForIdle();
}

void BarSoak::waitForIdle()
{
    Soak::waitFor("the end of a request", [this] { return !m_agent->isThinking(); });
}

void BarSoak::waitForConnections()
{
    Soak::waitFor("both connections",
                  [this] { return m_bridge.clients() == 2 && m_agent->isServiceAvailable() && m_sdk->isReady(); });
}

void BarSoak::beHuman()
{
    Soak::setTask("user");
    if (m_window.rows() >= s_rowsOfAConversation) {
        if (m_number % 2 == 0) {
            m_window.call("clearConversation");
        } else {
            beginSession();
        }
    }
    if (m_number % s_sheetEvery == 0) {
        visitSettings(m_number / s_sheetEvery % s_settingsTabs);
    }
    if (m_number % s_bubbleEvery == 0) {
        visitBubble();
    }
    if (m_number % s_themeEvery == 0) {
        switchTheme();
    }
}

void BarSoak::beginSession()
{
    type(QStringLiteral("/new"));
    type(QStringLiteral("/help"));
    type(QStringLiteral("/about"));
}

void BarSoak::visitSettings(int tab)
{
    m_window.set("settingsPanelOpen", true);
    Soak::waitFor("the settings", [this] { return m_window.find("settingsTabs") != nullptr; });
    m_window.item("settingsTabs")->setProperty("currentIndex", tab);
    Soak::runEvents(s_sheetTime);
    m_window.set("settingsPanelOpen", false);
}

void BarSoak::visitBubble()
{
    m_window.call("shrinkToCompactBubble");
    Soak::runEvents(s_sheetTime);
    m_window.call("expandFromBubble");
}

void BarSoak::switchTheme()
{
    QObject *store = m_window.object("appearanceStore");
    store->setProperty("lightChrome", !store->property("lightChrome").toBool());
}

void BarSoak::rest()
{
    m_window.set("settingsPanelOpen", false);
    m_window.call("dismissUndo");
    m_window.call("clearConversation");
    m_window.call("initResponseSuggestions");
    m_window.object("appearanceStore")->setProperty("lightChrome", false);
    Soak::waitFor("the end of the last plan", [this] { return !m_window.get("planExecutingVisible").toBool(); });
}

void BarSoak::longText()
{
    answer(Replies::text(Replies::filled(m_number, Replies::lengthOf(m_number / int(std::size(s_replies))))));
}

void BarSoak::blocks()
{
    answer(Replies::blocks(m_number, m_number / int(std::size(s_replies))));
}

void BarSoak::choice()
{
    answer(Replies::blocks(m_number, m_number / int(std::size(s_replies))));
    m_window.call("selectOption", m_window.rows() - 1, QStringLiteral("a"), QStringLiteral("Move them"));
    SoakBridge::reply(takeRequest(), Replies::text(Replies::plain(m_number)));
    waitForIdle();
}

void BarSoak::followUps()
{
    answer(Replies::followUps(m_number));
    m_window.call("activateResponseSuggestion", QStringLiteral("Do it again"));
    SoakBridge::reply(takeRequest(), Replies::text(Replies::plain(m_number)));
    waitForIdle();
}

void BarSoak::oldForm()
{
    SoakBridge::send(ask(), {{QStringLiteral("result"), Replies::text(Replies::plain(m_number))}});
    waitForIdle();
}

void BarSoak::refused()
{
    const QJsonObject error {{QStringLiteral("message"), QStringLiteral("Refused %1").arg(m_number)}};
    SoakBridge::send(ask(), {{QStringLiteral("type"), QStringLiteral("response")}, {QStringLiteral("error"), error}});
    waitForIdle();
}

void BarSoak::errorFrame()
{
    const QJsonObject error {{QStringLiteral("code"), QStringLiteral("broken_%1").arg(m_number)}};
    SoakBridge::send(ask(), {{QStringLiteral("type"), QStringLiteral("error")}, {QStringLiteral("error"), error}});
    waitForIdle();
}

void BarSoak::cancelled()
{
    const SoakBridge::Request request = ask();
    m_window.call("stopActiveQuery");
    SoakBridge::reply(request, Replies::text(Replies::plain(m_number))); // too late
    waitForIdle();
}

void BarSoak::twice()
{
    const SoakBridge::Request request = ask();
    SoakBridge::reply(request, Replies::text(Replies::plain(m_number)));
    SoakBridge::reply(request, Replies::text(Replies::plain(m_number)));
    waitForIdle();
}

void BarSoak::progress()
{
    const SoakBridge::Request request = ask();
    m_bridge.event(QStringLiteral("agent.routed"), {{QStringLiteral("agent"), QStringLiteral("build")}});
    m_bridge.event(QStringLiteral("plan.phase"), {{QStringLiteral("phase"), QStringLiteral("executing")}});
    for (int step = 0; step < 3; ++step) {
        m_bridge.event(QStringLiteral("plan.step"),
                       {{QStringLiteral("index"), step},
                        {QStringLiteral("total"), 3},
                        {QStringLiteral("capabilityId"), QStringLiteral("window.list")}});
        m_bridge.event(QStringLiteral("tool.executed"), {{QStringLiteral("tool"), QStringLiteral("window.list")}});
    }
    SoakBridge::reply(request, Replies::text(Replies::plain(m_number)));
    waitForIdle();
}

void BarSoak::malformed()
{
    const SoakBridge::Request request = ask();
    for (const char *frame : Replies::Malformed) {
        m_bridge.sendRaw(QString::fromUtf8(frame));
    }
    SoakBridge::reply(request, Replies::text(Replies::plain(m_number)));
    waitForIdle();
}

void BarSoak::plan()
{
    const int before = m_window.rows();
    m_window.call("requestPlan", QStringLiteral("List and empty"));
    Soak::waitFor("a plan", [this] { return m_window.get("planCardShown").toBool(); });
    m_window.call("runPlan");
    Soak::waitFor("the result of a plan", [&] { return m_window.rows() > before; });
}

void BarSoak::rephrased()
{
    plain();
    const int before = m_rephrased;
    m_agent->rephraseText(QStringLiteral("words %1").arg(m_number));
    SoakBridge::reply(takeRequest(), Replies::text(QStringLiteral("Words %1").arg(m_number)));
    Soak::waitFor("rephrased words", [&] { return m_rephrased > before; });
}

void BarSoak::vote()
{
    plain();
    m_window.call("voteMessage", m_window.rows() - 1, QStringLiteral("up"));
    SoakBridge::reply(takeRequest(), QJsonObject {{QStringLiteral("ok"), true}});
}

void BarSoak::dropWhileThinking()
{
    ask();
    m_bridge.drop();
    waitForConnections();
    m_window.call("stopActiveQuery");
}

void BarSoak::stayAway()
{
    m_bridge.close();
    Soak::waitFor("a refused attempt", [this] { return m_agent->status() == AgentStatus::Error; });
    m_bridge.listen();
}

void BarSoak::tooLarge()
{
    ask();
    m_bridge.announce(s_tooLarge);
    waitForIdle();
}

void BarSoak::halfAFrame()
{
    m_bridge.announce(Replies::HugeLength);
    Soak::runEvents(1ms);
    m_bridge.drop();
}

} // namespace

int Soak::runBar(char *program, const Amounts &amounts)
{
    // Without it a plan would be sent as a prompt.
    qputenv("LOOMRA_EXECUTOR_PATH", "1");
    int argc = 1;
    char *argv[] = {program, nullptr};
    return (new BarSoak(argc, argv, amounts))->run(); // kept until the process ends
}
