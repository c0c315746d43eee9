// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaTest.h"

#include <QDir>
#include <QFile>
#include <QTest>

const QByteArray SherpaTest::s_audio(s_shortestAudio, '\x12');

void SherpaTest::initTestCase()
{
    QVERIFY(SherpaStandIn::systemHasNone());
}

void SherpaTest::init()
{
    m_temp.emplace(QDir::homePath() + QStringLiteral("/temp-XXXXXX"));
    m_tempVariable.emplace("TMPDIR", QFile::encodeName(m_temp->path()));
    m_log.emplace();
}

void SherpaTest::cleanup()
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

QStringList SherpaTest::ready(const char *text)
{
    return {QStringLiteral("ready: ") + QString::fromUtf8(text)};
}

QStringList SherpaTest::failed(const QString &error)
{
    return {QStringLiteral("failed: ") + error};
}

std::unique_ptr<SherpaWorker> SherpaTest::loaded(const TestedSherpa *tested)
{
    m_standIn.emplace(tested->engine);
    std::unique_ptr<SherpaWorker> worker = tested->worker();
    worker->load(m_standIn->modelDir());
    return worker;
}

QStringList SherpaTest::tempFiles() const
{
    return QDir(m_temp->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}
