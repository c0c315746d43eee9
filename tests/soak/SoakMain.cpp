// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// The main window: replies of all kinds, new sessions, and a bridge that dies and is started again.

#include "Figures.h"
#include "Replies.h"
#include "Soak.h"
#include "SoakBridge.h"

#include "Application.h"
#include "LoomraSDK.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStyleHints>

#include <csignal>
#include <iterator>

using namespace std::chrono_literals;

namespace
{

constexpr int s_rowsOfASession = 200;
constexpr int s_settingsEvery = 251;
constexpr auto s_pageTime = 400ms; // with the page's animation

class MainSoak
{
public:
    MainSoak(int &argc, char **argv, const Amounts &amounts);
    int run();

private:
    struct Kind
    {
        const char *name;
        void (MainSoak::*act)();
    };
    static const Kind s_replies[];

    void perform(const Kind &reply);
    SoakBridge::Request ask();
    void answer(const QString &words);
    //! Answers with an error, which leaves no row.
    void refuse(const QJsonObject &message);
    void beHuman();
    void beginSession();
    void visitSettings();
    void loseBridge();
    void waitForBridge();

    void plain() { answer(Replies::plain(m_number)); }
    void markdown() { answer(Replies::markdown(m_number)); }
    void html() { answer(Replies::html(m_number)); }
    void longText();
    void oldForm();
    void twice();
    void refused();
    void errorFrame();
    void malformed();

    const Amounts m_amounts;
    Application m_application;
    SoakBridge m_bridge;
    SoakWindow m_window;
    LoomraSDK *const m_sdk = Soak::native<LoomraSDK>();
    QList<SoakBridge::Request> m_requests;
    int m_number = 0;
    int m_errors = 0;
};

const MainSoak::Kind MainSoak::s_replies[] = {
    {"plain", &MainSoak::plain},     {"markdown", &MainSoak::markdown}, {"html", &MainSoak::html},
    {"long", &MainSoak::longText},   {"old form", &MainSoak::oldForm},  {"twice", &MainSoak::twice},
    {"refused", &MainSoak::refused}, {"error", &MainSoak::errorFrame},  {"malformed", &MainSoak::malformed},
};

MainSoak::MainSoak(int &argc, char **argv, const Amounts &amounts)
    : m_amounts(amounts)
    , m_application(argc, argv)
{
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    m_bridge.onChat = [this](const SoakBridge::Request &request) { m_requests.append(request); };
    QObject::connect(m_sdk, &LoomraSDK::error, [this] { ++m_errors; });
    Soak::waitFor("the whole window", [this] { return m_window.find("newSessionButton") != nullptr; });
    waitForBridge();
}

int MainSoak::run()
{
    // Everything once, so that what is created on first use is not taken for growth.
    for (const Kind &kind : s_replies) {
        --m_number; // the window shows no text twice
        perform(kind);
    }
    loseBridge();
    visitSettings();

    Record record("main", m_amounts.replies, qmlEngine(m_window.window()), [this] { beginSession(); });
    int losses = 0;
    for (m_number = 1; m_number <= m_amounts.replies; ++m_number) {
        perform(s_replies[m_number % std::size(s_replies)]);
        beHuman();
        if (static_cast<qint64>(m_number) * m_amounts.losses / m_amounts.replies > losses) {
            ++losses;
            loseBridge();
        }
        record.step();
    }
    return record.finish();
}

void MainSoak::perform(const Kind &reply)
{
    Soak::setTask(reply.name);
    (this->*reply.act)();
}

SoakBridge::Request MainSoak::ask()
{
    m_window.item("chatInput")->setProperty("text", QStringLiteral("Prompt %1").arg(m_number));
    QMetaObject::invokeMethod(m_window.item("sendButton"), "clicked");
    Soak::waitFor("a prompt", [this] { return !m_requests.isEmpty(); });
    return m_requests.takeFirst();
}

void MainSoak::answer(const QString &words)
{
    const SoakBridge::Request request = ask();
    const int before = m_window.rows();
    SoakBridge::reply(request, Replies::text(words));
    Soak::waitFor("a reply", [&] { return m_window.rows() > before; });
}

void MainSoak::refuse(const QJsonObject &message)
{
    const SoakBridge::Request request = ask();
    const int before = m_errors;
    SoakBridge::send(request, message);
    Soak::waitFor("an error", [&] { return m_errors > before; });
}

void MainSoak::beHuman()
{
    if (m_window.rows() >= s_rowsOfASession) {
        beginSession();
    }
    if (m_number % s_settingsEvery == 0) {
        visitSettings();
    }
}

void MainSoak::visitSettings()
{
    m_window.call("openSettings");
    Soak::runEvents(s_pageTime);
    QMetaObject::invokeMethod(m_window.object("pageStack"), "pop", Q_ARG(QVariant, QVariant()));
    Soak::runEvents(s_pageTime);
}

void MainSoak::beginSession()
{
    m_window.item("newSessionButton")->forceActiveFocus();
    const int before = m_bridge.histories();
    QMetaObject::invokeMethod(m_window.item("newSessionButton"), "clicked");
    Soak::waitFor("a new session", [&] {
        return m_bridge.histories() > before && m_window.rows() == 0
            && !m_window.item("chatView")->property("isLoadingHistory").toBool();
    });
}

void MainSoak::loseBridge()
{
    // The stand-in doesn't listen, so the connection is lost here.
    const auto *process = m_sdk->findChild<QProcess *>();
    if (!process || process->state() != QProcess::Running) {
        Soak::fail("no bridge is running, state " + QByteArray::number(process ? process->state() : -1));
    }
    ::kill(static_cast<pid_t>(process->processId()), SIGKILL);
    m_bridge.drop();
    Soak::waitFor("the loss", [this] { return !m_sdk->isReady(); });
    waitForBridge();
}

void MainSoak::waitForBridge()
{
    Soak::waitFor("the bridge", [this] { return m_sdk->isReady(); });
    // The lists of models, agents and sessions arrive.
    Soak::runEvents(s_pageTime);
    beginSession();
}

void MainSoak::longText()
{
    answer(Replies::filled(m_number, Replies::lengthOf(m_number / int(std::size(s_replies)))));
}

void MainSoak::oldForm()
{
    const SoakBridge::Request request = ask();
    const int before = m_window.rows();
    SoakBridge::send(request, {{QStringLiteral("result"), Replies::text(Replies::plain(m_number))}});
    Soak::waitFor("a reply", [&] { return m_window.rows() > before; });
}

void MainSoak::twice()
{
    const SoakBridge::Request request = ask();
    const int before = m_window.rows();
    SoakBridge::reply(request, Replies::text(Replies::plain(m_number)));
    SoakBridge::reply(request, Replies::text(Replies::plain(m_number)));
    Soak::waitFor("a reply", [&] { return m_window.rows() > before; });
}

void MainSoak::refused()
{
    const QJsonObject error {{QStringLiteral("message"), QStringLiteral("Refused %1").arg(m_number)}};
    refuse({{QStringLiteral("type"), QStringLiteral("response")}, {QStringLiteral("error"), error}});
}

void MainSoak::errorFrame()
{
    const QJsonObject error {{QStringLiteral("code"), QStringLiteral("broken_%1").arg(m_number)}};
    refuse({{QStringLiteral("type"), QStringLiteral("error")}, {QStringLiteral("error"), error}});
}

void MainSoak::malformed()
{
    for (const char *frame : Replies::Malformed) {
        m_bridge.sendRaw(QString::fromUtf8(frame));
    }
    plain();
}

//! A bridge that does nothing: this process listens in its place.
void installBridge()
{
    const QString folder = QDir::homePath() + QStringLiteral("/bridge");
    QFile script(folder + QStringLiteral("/bridge.js"));
    if (!QDir().mkpath(folder) || !script.open(QIODevice::WriteOnly)
        || script.write("setInterval(() => {}, 1e6);\n") < 0) {
        Soak::fail("the stand-in for the bridge can't be written");
    }
    qputenv("LOOMRA_BRIDGE_PATH", QFile::encodeName(folder));
}

} // namespace

int Soak::runMain(char *program, const Amounts &amounts)
{
    installBridge();
    int argc = 2;
    char option[] = "--main";
    char *argv[] = {program, option, nullptr};
    return (new MainSoak(argc, argv, amounts))->run(); // kept until the process ends
}
