// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <functional>

//! The environment of the bridge's child process: that of this process with the variables that the bridge needs.
namespace BridgeEnvironment
{

//! Switches the executor path off. It is on by default.
constexpr char ExecutorPathVariable[] = "LOOMRA_EXECUTOR_PATH";

//! Parses such a switch: on unless the value is "0" or, case-insensitively, "false". An empty value is on.
bool truthyEnvValue(const QString &value);
//! Its value as written to the environment.
QString envValue(bool on);

//! What the rules depend on besides the environment.
struct System
{
    int port;
    //! Absolute path; may be empty.
    QString home;
    std::function<bool(const QString &)> isExecutableFile;
    std::function<bool(const QString &)> isDirectory;
};

//! The project directory of the bridge: one that contains a directory ".loomra".
//! @param candidate preferred directory, or the path of its ".loomra"; may be empty
//! @return the candidate, the installed project as a fallback, or an empty string if neither exists. Pure, any thread.
QString projectRoot(const QString &candidate, const std::function<bool(const QString &)> &isDirectory);

struct ForChild
{
    QProcessEnvironment environment;
    //! The value that the child gets.
    bool executorPathEnabled;
};

//! Derives the child's environment from another one. Variables that the user may set keep their value, even an empty
//! one; the others are overwritten or removed. Pure, any thread.
ForChild forChild(QProcessEnvironment environment, const System &system);

//! The values of this process.
System systemOfThisProcess(int port);
//! The child's environment derived from that of this process.
ForChild forChild(int port);

} // namespace BridgeEnvironment
