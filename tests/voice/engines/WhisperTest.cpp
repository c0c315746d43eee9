// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperTest.h"

#include <QFile>
#include <QTest>

void WhisperTest::init()
{
    m_log = std::make_unique<MessageLog>();
    WhisperStandIn::reset();
}

void WhisperTest::cleanup()
{
    QCOMPARE(m_log->warnings(), QStringList());
    m_log.reset();
    QCOMPARE(WhisperStandIn::livingContexts(), 0);
}

QString WhisperTest::model(const QString &name)
{
    QFile file(m_directory.filePath(name));
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("no file to load can be made");
    }
    return file.fileName();
}

std::unique_ptr<WhisperWorker> WhisperTest::loaded()
{
    auto worker = std::make_unique<WhisperWorker>();
    if (!worker->loadModel(model())) {
        qFatal("the stand-in loads nothing");
    }
    return worker;
}

QByteArray WhisperTest::silence(int bytes)
{
    return QByteArray(bytes, '\0');
}

QString WhisperTest::failed(const char *error)
{
    return QStringLiteral("transcriptionFailed(\"%1\")").arg(QLatin1String(error));
}
