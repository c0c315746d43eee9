// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <functional>

//! The environment that the bridge is started with: this process's own, with what the bridge needs to know.
namespace BridgeEnvironment
{

//! The variable by which the executor path is switched off. It is on by default.
constexpr char executorPathVariable[] = "LOOMRA_EXECUTOR_PATH";

//! How such a switch is read: on unless the value is "0" or, in any case, "false". An empty value is on too.
bool truthyEnvValue(const QString &value);
//! How it is written.
QString envValue(bool on);

//! What the rules look at besides the environment.
struct Surroundings
{
    int port;
    //! Absolute path; may be empty.
    QString home;
    std::function<bool(const QString &)> isExecutableFile;
    std::function<bool(const QString &)> isDirectory;
};

//! The directory that the bridge takes for its project, which is one that holds a directory ".loomra".
//! @param candidate a wish: such a directory, or the path of its ".loomra"; may be empty
//! @return the wish, or else the installed project, or empty when that isn't there either. Pure, any thread.
QString projectRoot(const QString &candidate, const std::function<bool(const QString &)> &isDirectory);

struct ForChild
{
    QProcessEnvironment environment;
    //! The executor path as the child is told.
    bool executorPathEnabled;
};

//! Makes the child's environment out of another one. What the user may decide keeps the user's value, even an empty
//! one; the rest is overwritten or removed. Pure, any thread.
ForChild forChild(QProcessEnvironment environment, const Surroundings &surroundings);

//! What the rules look at on this machine, in this process.
Surroundings surroundingsOfThisProcess(int port);
//! The child's environment made out of this process's own.
ForChild forChild(int port);

} // namespace BridgeEnvironment
