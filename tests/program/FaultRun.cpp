// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultRun.h"

#include "Files.h"
#include "Timeouts.h"

#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

namespace
{

// In the form in which KConfig and QSettings write them.
constexpr const char *s_settings[][2] = {
    {".config/loomra-kderc",
     "[General]\nApiKey=kept\nEnabledWorkspaceTemplateSlugs=focus-dev\nWorkspaceSuggestionReminderMinutes=30\n"},
    {".config/kde.org/loomra-kde.conf", "[omniBar]\ncurrentModel=a/b\n\n[voice]\nsilenceTimeoutMs=900\n"},
};

const char s_idleBridge[] = "process.on('SIGTERM', () => process.exit(0)); setInterval(() => {}, 1e6);\n";

} // namespace

FaultRun::FaultRun(Window window)
    : m_window(window)
{
    environment.insert(QStringLiteral("HOME"), m_home.path());
    environment.insert(QStringLiteral("LOOMRA_BRIDGE_PATH"), m_bridge.path());
    faults.addTo(environment, {m_home.path()});
    QVERIFY(writeFile(m_bridge.filePath(QStringLiteral("bridge.js")), s_idleBridge));
    for (const auto &[path, content] : s_settings) {
        QVERIFY(writeFile(inHome(path), content));
    }
}

bool FaultRun::start()
{
    const QStringList arguments = m_window == Window::Main ? QStringList(QStringLiteral("--main")) : QStringList();
    m_program = std::make_unique<DesktopRun>(arguments, environment);
    return m_program->waitForWindow() && waitForReconnection(0) && m_program->takeKeyboard();
}

void FaultRun::ask(const QByteArray &prompt)
{
    m_program->type(prompt);
    m_program->press(m_window == Window::Main ? "ctrl+Return" : "Return");
}

bool FaultRun::converse(const QByteArray &prompt, const QString &reply)
{
    ask(prompt);
    const ScriptedBridge::Request request = bridge.takeRequest(QStringLiteral("chat"));
    if (request.params.value(QLatin1String("message")).toString() != QString::fromLatin1(prompt)) {
        return false;
    }
    const QString answer = reply + QLatin1Char(' ') + QString::fromLatin1(prompt);
    bridge.reply(request, QJsonObject {{QStringLiteral("response"), answer}});
    return !isReadable || waitForMessage(QLatin1String(": ") + answer);
}

bool FaultRun::waitForReconnection(int connections, int clients)
{
    const auto readyLines = [this] { return m_program->errors().count("Bridge is ready, sdkInitialized: "); };
    const bool came =
        QTest::qWaitFor([&] { return bridge.connectionCount() >= connections + clients; }, Timeouts::Program);
    const int before = readyLines();
    bridge.ready();
    return came && QTest::qWaitFor([&] { return readyLines() > before; }, Timeouts::Program);
}

QString FaultRun::lastMessage() const
{
    const QStringList messages = reader.shown(QStringLiteral("list item"));
    return messages.isEmpty() ? QString() : messages.last();
}

bool FaultRun::waitForMessage(const QString &words) const
{
    return QTest::qWaitFor([&] { return lastMessage().endsWith(words); }, Timeouts::Program);
}

bool FaultRun::shows(const QString &words) const
{
    return !reader.shown(QStringLiteral("list item")).filter(words).isEmpty();
}

QString FaultRun::end()
{
    if (!m_program->closeWindow()) {
        return QStringLiteral("The program did not end in the regular way: ") + QString::fromUtf8(m_program->errors());
    }
    return lostSettings();
}

QString FaultRun::unexpectedWords(const char *pattern)
{
    const QRegularExpression lost(
        QStringLiteral("^(qml: \\[MainWindow\\] )?WebSocket error: (\\d+|.*RemoteHostClosed.*)$"));
    const QRegularExpression expected(QLatin1String {pattern});
    QStringList lines;
    for (const QString &line : m_program->unexpectedWords().split(QLatin1Char('\n'))) {
        if (!lost.match(line).hasMatch() && !expected.match(line).hasMatch()) {
            lines.append(line);
        }
    }
    return lines.join(QLatin1Char('\n'));
}

QString FaultRun::lostSettings() const
{
    QStringList lost;
    for (const auto &[path, content] : s_settings) {
        const QList<QByteArray> now = contentOf(inHome(path)).split('\n');
        for (const QByteArray &line : QByteArray(content).split('\n')) {
            if (!now.contains(line)) {
                lost.append(QString::fromLatin1(line));
            }
        }
    }
    return lost.join(QLatin1Char('\n'));
}
