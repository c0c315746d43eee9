// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaWorkerFixture.h"

#include <QDir>
#include <QFile>
#include <QTest>

const QByteArray SherpaWorkerFixture::s_audio(s_minimumBytes, '\x12');

void SherpaWorkerFixture::init()
{
    m_temp.emplace(QDir::homePath() + QStringLiteral("/temp-XXXXXX"));
    m_tempVariable.emplace("TMPDIR", QFile::encodeName(m_temp->path()));
    m_log.emplace();
}

void SherpaWorkerFixture::cleanup()
{
    const QStringList leftBehind = tempFiles();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    m_standIn.reset();
    m_tempVariable.reset();
    m_temp.reset();
    QCOMPARE(leftBehind, QStringList());
    QCOMPARE(warnings, QStringList());
}

QStringList SherpaWorkerFixture::ready(const char *text)
{
    return {QStringLiteral("ready: ") + QString::fromUtf8(text)};
}

QStringList SherpaWorkerFixture::failed(const QString &error)
{
    return {QStringLiteral("failed: ") + error};
}

std::unique_ptr<SherpaWorker> SherpaWorkerFixture::loaded(const EngineUnderTest *tested)
{
    m_standIn.emplace(tested->engine);
    std::unique_ptr<SherpaWorker> worker = tested->worker();
    worker->load(m_standIn->modelDir(), isolatedRoots());
    return worker;
}

QStringList SherpaWorkerFixture::tempFiles() const
{
    return QDir(m_temp->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}
