// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>

bool PrivateFile::open(QFile &file, QIODevice::OpenMode mode, Existing existing)
{
    constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
    const int howToWrite = mode.testFlag(QIODevice::Append) ? O_APPEND : O_TRUNC;
    const int descriptor =
        ::open(QFile::encodeName(file.fileName()).constData(), O_WRONLY | O_CREAT | O_CLOEXEC | howToWrite, ownerOnly);
    if (descriptor < 0) {
        return false;
    }
    if (existing == Existing::BecomesPrivate) {
        ::fchmod(descriptor, ownerOnly);
    }
    return file.open(descriptor, mode, QFile::AutoCloseHandle);
}
