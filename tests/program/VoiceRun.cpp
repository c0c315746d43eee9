// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "VoiceRun.h"

#include "Files.h"
#include "Timeouts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QTest>

#include <algorithm>
#include <csignal>

namespace VoiceUser
{

void chooseEngine(const QByteArray &more)
{
    QVERIFY(writeFile(QDir::homePath() + QStringLiteral("/.config/kde.org/loomra-kde.conf"),
                      "[voice]\nsttBackend=moonshine\n" + more));
}

bool wake()
{
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/org/kde/loomra/WakeWord"),
                                   QStringLiteral("org.kde.loomra.WakeWord"), QStringLiteral("Activated"));
    signal << QStringLiteral("hey");
    return QDBusConnection::sessionBus().send(signal);
}

int readers()
{
    QList<QByteArray> lines =
        Program::run({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("source-outputs")},
                     QProcessEnvironment::systemEnvironment(), QStringLiteral("pactl"))
            .output.split('\n');
    lines.removeAll({});
    return lines.size();
}

bool isAnyAlive(const QList<qint64> &processIds)
{
    return std::any_of(processIds.cbegin(), processIds.cend(),
                       [](qint64 id) { return ::kill(static_cast<pid_t>(id), 0) == 0; });
}

} // namespace VoiceUser

namespace
{

constexpr int s_looks = 5;

bool waitForReaders(int count)
{
    return QTest::qWaitFor([count] { return VoiceUser::readers() == count; }, Timeouts::Program);
}

} // namespace

VoiceRun::VoiceRun(std::chrono::seconds confirmDelay, const QString &words)
    : moonshine(SherpaStandIn::Engine::Moonshine)
    , sentence(words)
{
    QVERIFY(sentence.isMade());
    VoiceUser::chooseEngine("ttsEnabled=true\nsilenceTimeoutMs=200\nvoiceConfirmDelaySec="
                            + QByteArray::number(qlonglong(confirmDelay.count())) + '\n');
}

bool VoiceRun::start(const QStringList &arguments, const QProcessEnvironment &environment)
{
    m_program = std::make_unique<DesktopRun>(arguments, environment);
    return m_program->waitForWindow();
}

bool VoiceRun::waitForConnection(int before)
{
    return QTest::qWaitFor([this, before] { return connections() > before; }, Timeouts::Program);
}

QStringList VoiceRun::prompts() const
{
    QStringList prompts;
    const QList<ScriptedBridge::Request> requests = bridge.received();
    for (const ScriptedBridge::Request &request : requests) {
        if (request.method == QLatin1String("chat")) {
            prompts.append(request.params[QStringLiteral("message")].toString() + QStringLiteral(", by ")
                           + request.params[QStringLiteral("inputMode")].toString());
        }
    }
    return prompts;
}

bool VoiceRun::wakeAndListen()
{
    return VoiceUser::wake() && waitForReaders(1);
}

void VoiceRun::focusMicrophone() const
{
    m_program->press("Tab");
    m_program->press("Tab");
}

bool VoiceRun::pressAndListen() const
{
    m_program->press("Return");
    return waitForReaders(1);
}

bool VoiceRun::holdUntilSilent() const
{
    m_program->pressDown("space");
    // Several looks: the first repeat may look like a click, which ends the recording too.
    int looks = 0;
    const bool isSilent = QTest::qWaitFor(
        [&looks] {
            looks = VoiceUser::readers() == 0 ? looks + 1 : 0;
            return looks == s_looks;
        },
        Timeouts::Program);
    m_program->letGo("space");
    return isSilent;
}

bool VoiceRun::speak(const QString &transcript)
{
    const int before = transcripts();
    moonshine.says(transcript);
    sentence.speak();
    return QTest::qWaitFor([this, before] { return transcripts() > before; }, Timeouts::Program);
}

int VoiceRun::openStreams() const
{
    // The library runs a thread of this name for each stream.
    int streams = 0;
    const QString tasks = QStringLiteral("/proc/%1/task/").arg(m_program->processId());
    const QStringList ids = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &id : ids) {
        streams += contentOf(tasks + id + QStringLiteral("/comm")).trimmed() == "threaded-ml" ? 1 : 0;
    }
    return streams;
}

int VoiceRun::children() const
{
    const QString id = QString::number(m_program->processId());
    const QByteArray children = contentOf(QStringLiteral("/proc/%1/task/%1/children").arg(id)).trimmed();
    return children.isEmpty() ? 0 : children.split(' ').size();
}
