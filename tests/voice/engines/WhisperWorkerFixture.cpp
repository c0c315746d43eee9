// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperWorkerFixture.h"

#include "Files.h"

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
    const QString path = m_directory.filePath(name);
    if (!writeFile(path)) {
        qFatal("cannot write the model file");
    }
    return path;
}

std::unique_ptr<WhisperWorker> WhisperWorkerFixture::loaded()
{
    auto worker = std::make_unique<WhisperWorker>();
    if (!worker->loadModel(model())) {
        qFatal("the stand-in does not load the model");
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
