// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class LoomraSDK;

//! One way to call an operation of the client, and all that follows from it.
struct SdkOperation
{
    //! The call in words, unique.
    const char *name;
    std::function<void(LoomraSDK &)> call;
    //! The wire name.
    const char *method;
    //! As they are to stand in the frame.
    const char *params;
    //! A good result of the bridge.
    const char *result;
    //! The signals at a good reply.
    QStringList emitted;
    //! The signals at a reply whose result is an array where it should be an object.
    QStringList emittedForWrongType;
    //! Wire names of the requests that a good reply leads to.
    QStringList next;
};

//! Every operation, with and without its optional arguments. Those about the workspace want both capabilities.
const std::vector<SdkOperation> &sdkOperations();
