// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class LoomraSDK;

//! A call of an operation of LoomraSDK, and its effects.
struct SdkOperation
{
    //! A unique description.
    const char *name;
    std::function<void(LoomraSDK &)> call;
    //! The wire name.
    const char *method;
    //! JSON, as it must appear in the frame.
    const char *params;
    //! A valid result, as JSON.
    const char *result;
    //! The signals after a valid reply.
    QStringList emitted;
    //! The signals after a reply with an array in place of an object.
    QStringList emittedForWrongType;
    //! The wire names of the requests that follow a valid reply.
    QStringList next;
};

//! All operations, with and without their optional arguments. Those for the workspace need both capabilities.
const std::vector<SdkOperation> &sdkOperations();
