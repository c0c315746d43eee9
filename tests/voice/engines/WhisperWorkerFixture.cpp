// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperWorkerFixture.h"

#include <QFile>
#include <QTest>

void WhisperWorkerFixture::init()
{
    m_log = std::make_unique<MessageLog>();
    WhisperStandIn::reset();
}

void WhisperWorkerFixture::cleanup()
{
    QCOMPARE(m_log->warnings(), QStringList());
    m_log.reset();
    QCOMPARE(WhisperStandIn::livingContexts(), 0);
}

QString WhisperWorkerFixture::model(const QString &name)
{
    QFile file(m_directory.filePath(name));
    if (!file.open(QIODevice::WriteOnly)) {
        qFatal("no file to load can be made");
    }
    return file.fileName();
}

std::unique_ptr<WhisperWorker> WhisperWorkerFixture::loaded()
{
    auto worker = std::make_unique<WhisperWorker>();
    if (!worker->loadModel(model())) {
        qFatal("the stand-in loads nothing");
    }
    return worker;
}

QByteArray WhisperWorkerFixture::silence(int bytes)
{
    return QByteArray(bytes, '\0');
}

QString WhisperWorkerFixture::failed(const char *error)
{
    return QStringLiteral("transcriptionFailed(\"%1\")").arg(QLatin1String(error));
}
