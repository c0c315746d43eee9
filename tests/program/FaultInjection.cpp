// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FaultInjection.h"

#include <QTest>

FaultInjection::FaultInjection()
{
    QVERIFY(m_file.open() && m_file.resize(sizeof(FaultState)));
    m_state = reinterpret_cast<FaultState *>(m_file.map(0, sizeof(FaultState)));
    QVERIFY(m_state);
}

void FaultInjection::addTo(QProcessEnvironment &environment, const QStringList &folders)
{
    environment.insert(QLatin1String(FaultState::FileVariable), m_file.fileName());
    environment.insert(QLatin1String(FaultState::FoldersVariable), folders.join(QLatin1Char(':')));
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(TOVICTL_FAULT_LIBRARY));
    // AddressSanitizer refuses a library that is loaded before it.
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       environment.value(QStringLiteral("ASAN_OPTIONS")) + QStringLiteral(":verify_asan_link_order=0"));
}

void FaultInjection::setClock(std::chrono::seconds ahead)
{
    m_state->clockOffset = ahead.count();
}

void FaultInjection::setDisk(FaultState::Disk disk)
{
    m_state->disk = disk;
}
