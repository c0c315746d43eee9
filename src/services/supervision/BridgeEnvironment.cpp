// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeEnvironment.h"

#include "LogDirectory.h"

#include <QDir>
#include <QFileInfo>

namespace
{

const QLatin1String s_path("PATH");
const QLatin1String s_projectRoot("LOOMRA_PROJECT_ROOT");
const QLatin1String s_stateHome("XDG_STATE_HOME");

const QLatin1String s_toolDirectory("/usr/libexec/tovi-forkeldaos/bin");
const QLatin1String s_tool("/loomra");
const QLatin1String s_installedProject("/usr/share/tovi-forkeldaos/loomra-project");
const QLatin1String s_projectMark("/.loomra");

//! What is off unless the user switches it on.
const QLatin1String s_offByDefault[] = {QLatin1String("LOOMRA_WORKSPACE_INTEL"), QLatin1String("LOOMRA_AI_RUNTIME")};

//! The bridge talks to its providers directly.
const QLatin1String s_removed[] = {QLatin1String("HTTP_PROXY"), QLatin1String("HTTPS_PROXY"),
                                   QLatin1String("http_proxy"), QLatin1String("https_proxy"),
                                   QLatin1String("NO_PROXY"),   QLatin1String("no_proxy")};

} // namespace

bool BridgeEnvironment::truthyEnvValue(const QString &value)
{
    return value != QLatin1String("0") && value.compare(QLatin1String("false"), Qt::CaseInsensitive) != 0;
}

QString BridgeEnvironment::envValue(bool on)
{
    return on ? QStringLiteral("1") : QStringLiteral("0");
}

QString BridgeEnvironment::projectRoot(const QString &candidate,
                                       const std::function<bool(const QString &)> &isDirectory)
{
    const auto isProject = [&](const QString &path) { return isDirectory(path + s_projectMark); };
    if (!candidate.isEmpty() && isProject(candidate)) {
        return candidate;
    }
    if (candidate.endsWith(s_projectMark) && isDirectory(candidate)) {
        return QFileInfo(candidate).path();
    }
    return isProject(s_installedProject) ? QString(s_installedProject) : QString();
}

BridgeEnvironment::ForChild BridgeEnvironment::forChild(QProcessEnvironment environment, const System &system)
{
    if (system.isExecutableFile(s_toolDirectory + s_tool)) {
        // The colon stays where PATH was unset, and the bridge's own directory is searched too: it is trusted.
        environment.insert(s_path, s_toolDirectory + QLatin1Char(':') + environment.value(s_path));
    }
    environment.insert(QStringLiteral("LOOMRA_BRIDGE_PORT"), QString::number(system.port));
    environment.insert(QStringLiteral("LOOMRA_AUTO_AGENT_ROUTING"), QStringLiteral("true"));

    const QString executorPath = QLatin1String(ExecutorPathVariable);
    const bool executorPathEnabled = truthyEnvValue(environment.value(executorPath));
    environment.insert(executorPath, envValue(executorPathEnabled));

    if (!environment.contains(s_projectRoot)) {
        // Without a wish: one that is set is left for the bridge to judge.
        const QString root = projectRoot(QString(), system.isDirectory);
        if (!root.isEmpty()) {
            environment.insert(s_projectRoot, root);
        }
    }
    if (!environment.contains(s_stateHome) && !system.home.isEmpty()) {
        environment.insert(s_stateHome, LogDirectory::defaultStateHome(system.home));
    }
    for (const QLatin1String name : s_offByDefault) {
        if (!environment.contains(name)) {
            environment.insert(name, envValue(false));
        }
    }
    for (const QLatin1String name : s_removed) {
        environment.remove(name);
    }
    return {environment, executorPathEnabled};
}

BridgeEnvironment::System BridgeEnvironment::systemOfThisProcess(int port)
{
    const auto isExecutableFile = [](const QString &path) {
        const QFileInfo file(path);
        return file.isFile() && file.isExecutable();
    };
    return {port, QDir::homePath(), isExecutableFile, [](const QString &path) { return QFileInfo(path).isDir(); }};
}

BridgeEnvironment::ForChild BridgeEnvironment::forChild(int port)
{
    return forChild(QProcessEnvironment::systemEnvironment(), systemOfThisProcess(port));
}
