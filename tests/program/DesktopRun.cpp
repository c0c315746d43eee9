// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DesktopRun.h"
#include "Timeouts.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <csignal>

namespace
{

constexpr int s_looks = 5;

// The only list of expected messages. Anything else is a warning that would appear in the user's journal.
constexpr const char *s_expectedLines[] = {
    R"(^\[AgentBridge\] )",
    R"(^LoomraSDK::\w+\(\) called, )",
    // The main window. The desktop's integration isn't installed where tests run.
    R"(^qml: \[MainWindow\] Bridge script not found: )",
    R"(^Bridge process already running, skipping start$)",
    R"(^kf.kirigami: Failed to find a Kirigami platform plugin$)",
    R"(^\[VoiceBridge\] init  )",
    R"(^VoiceBridge: (TTS (un)?available|whisper-small:|(moonshine|nemotron|live STT) available:|listening for wake word) )",
    R"(^SttPostProcessor: loaded )",
    // An utterance.
    R"(^(VoiceBridge: loading moonshine model|MoonshineWorker: loaded|VoiceBridge: transcribed in) )",
    R"(^SttPostProcessor: ".*" -> ".*"$)",
    R"(^VoiceBridge: wake word activated: )",
    R"(^Connect-only mode: connecting to existing bridge on port 8765$)",
    R"(^Checking for stale processes on port 8765$)",
    R"(^No stale processes found on port$)",
    // The chat client is already connected to the bridge.
    R"(^Skipping own PID \d+$)",
    // A scripted bridge.
    R"(^Skipping non-node process PID \d+ comm: "tests_program"$)",
    R"(^Waiting for port to be released\.\.\.$)",
    R"(^Bridge process started successfully, PID: \d+$)",
    R"(^Scheduling WebSocket connection in 1 second$)",
    R"(^Bridge output: ".*"$)",
    R"(^WebSocket connected to bridge)",
    R"(^Bridge is ready, sdkInitialized: true$)",
    R"(^WebSocket disconnected from bridge$)",
    // No bridge is listening.
    R"(^WebSocket error: QAbstractSocket::ConnectionRefusedError error string: "Connection refused"$)",
    // A normal exit; any other code is a warning.
    R"(^Bridge process finished with exit code: 0$)",
};

QByteArray tool(const QString &name, const QStringList &arguments)
{
    return Program::run(arguments, QProcessEnvironment::systemEnvironment(), name).output;
}

QByteArray xdotool(const QStringList &arguments)
{
    return tool(QStringLiteral("xdotool"), arguments);
}

} // namespace

DesktopRun::DesktopRun(const QStringList &arguments, const QProcessEnvironment &environment, const QString &program)
{
    m_process.setProcessEnvironment(environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.start(program, arguments);
    m_process.waitForStarted();
}

DesktopRun::~DesktopRun()
{
    if (isRunning()) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QList<QByteArray> DesktopRun::windows() const
{
    // A search walks the tree of windows step by step and misses windows that the window manager reparents meanwhile,
    // so an empty result must be repeated.
    QList<QByteArray> windows;
    for (int i = 0; i < s_looks && windows.isEmpty(); ++i) {
        const QByteArray found = xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                          QStringLiteral("--pid"), QString::number(m_process.processId())});
        windows = found.split('\n');
        windows.removeAll({});
    }
    return windows;
}

QByteArray DesktopRun::window() const
{
    return windows().value(0);
}

bool DesktopRun::waitForWindow()
{
    // Wait until the window manager has set the frame: before, the window may be unmapped again.
    return QTest::qWaitFor([this] { return !isRunning() || !property("_NET_FRAME_EXTENTS").isEmpty(); },
                           Timeouts::Program)
        && isRunning();
}

int DesktopRun::windowCount() const
{
    return windows().size();
}

QByteArray DesktopRun::property(const QByteArray &name) const
{
    const QByteArray line = tool(
        QStringLiteral("xprop"),
        {QStringLiteral("-id"), QString::fromLatin1(window()), QStringLiteral("-notype"), QString::fromLatin1(name)});
    const int value = line.indexOf('=');
    return value < 0 ? QByteArray() : line.mid(value + 1).trimmed();
}

QRect DesktopRun::geometry() const
{
    const QString text = QString::fromLatin1(
        xdotool({QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), QString::fromLatin1(window())}));
    const auto number = [&text](const char *name) {
        const QRegularExpression line(QLatin1String("^%1=(-?\\d+)$").arg(QLatin1String(name)),
                                      QRegularExpression::MultilineOption);
        return line.match(text).captured(1).toInt();
    };
    return {number("X"), number("Y"), number("WIDTH"), number("HEIGHT")};
}

bool DesktopRun::takeKeyboard()
{
    // Activate through the window manager, which handles keys like Alt+F4 only for the active window. Repeat it,
    // because the window manager moves the focus while it maps the window.
    const bool done = QTest::qWaitFor(
        [this] {
            if (!isRunning()) {
                return true;
            }
            const QByteArray id = window();
            if (!id.isEmpty() && xdotool({QStringLiteral("getactivewindow")}).trimmed() == id
                && xdotool({QStringLiteral("getwindowfocus")}).trimmed() == id) {
                return true;
            }
            xdotool({QStringLiteral("windowactivate"), QString::fromLatin1(id)});
            return false;
        },
        Timeouts::Program);
    return done && isRunning();
}

void DesktopRun::press(const QByteArray &keys) const
{
    xdotool({QStringLiteral("key"), QString::fromLatin1(keys)});
}

void DesktopRun::type(const QByteArray &text) const
{
    // Letters are lost if they come faster.
    xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("60"), QString::fromLatin1(text)});
}

void DesktopRun::pressDown(const QByteArray &key) const
{
    xdotool({QStringLiteral("keydown"), QString::fromLatin1(key)});
}

void DesktopRun::letGo(const QByteArray &key) const
{
    xdotool({QStringLiteral("keyup"), QString::fromLatin1(key)});
}

void DesktopRun::click(const QPoint &position) const
{
    // Without --sync, which waits 15 s for a pointer that is already there. The server keeps the order of events.
    xdotool({QStringLiteral("mousemove"), QString::number(position.x()), QString::number(position.y()),
             QStringLiteral("click"), QStringLiteral("1")});
}

bool DesktopRun::closeWindow()
{
    // Repeat it, because the key is lost if the focus moves at the same time. Only after a while, or the second key
    // would close the window that gets the focus next.
    for (int i = 0; i < s_looks && isRunning(); ++i) {
        if (takeKeyboard()) {
            press("alt+F4");
        }
        m_process.waitForFinished(Timeouts::Program / s_looks);
    }
    return !isRunning() && !crashed() && exitCode() == 0;
}

void DesktopRun::loseDisplay() const
{
    tool(QStringLiteral("xkill"), {QStringLiteral("-id"), QString::fromLatin1(window())});
}

bool DesktopRun::isRunning()
{
    // waitForFinished() lets QProcess notice the end.
    return m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(0);
}

void DesktopRun::send(int signal) const
{
    ::kill(static_cast<pid_t>(m_process.processId()), signal);
}

bool DesktopRun::waitForEnd()
{
    return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(Timeouts::Program);
}

QByteArray DesktopRun::output()
{
    return m_output += m_process.readAllStandardOutput();
}

QByteArray DesktopRun::errors()
{
    return m_errors += m_process.readAllStandardError();
}

QString DesktopRun::unexpectedWords()
{
    QStringList lines = QString::fromUtf8(errors()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const char *pattern : s_expectedLines) {
        const QRegularExpression expected(QLatin1String {pattern});
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [&expected](const QString &line) { return expected.match(line).hasMatch(); }),
                    lines.end());
    }
    return lines.join(QLatin1Char('\n'));
}
