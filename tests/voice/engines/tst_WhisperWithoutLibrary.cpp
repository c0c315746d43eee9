// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "WhisperWorker.h"

#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"

#include <QTest>

//! The worker of a build without libwhisper, regardless of this build.
class tst_WhisperWithoutLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void warnsOnce();
    void reportsThatNoModelIsLoaded();
};

void tst_WhisperWithoutLibrary::warnsOnce()
{
    const MessageLog log;
    WhisperWorker worker;
    WhisperWorker other;
    QCOMPARE(log.warnings(), QStringList());
    QVERIFY(!worker.loadModel(QStringLiteral("/dev/null")));
    QVERIFY(!worker.loadModel(QCoreApplication::applicationFilePath()));
    QVERIFY(!other.loadModel(QString()));
    QCOMPARE(log.warnings(), QStringList {QStringLiteral("WhisperWorker: built without libwhisper")});
}

void tst_WhisperWithoutLibrary::reportsThatNoModelIsLoaded()
{
    const MessageLog messages;
    WhisperWorker worker;
    SignalLog log(&worker);
    worker.transcribe(QByteArray(3200, '\0'));
    worker.transcribe(QByteArray());
    worker.loadModel(QStringLiteral("/dev/null"));
    worker.transcribe(QByteArray(3200, '\0'));
    const QString failed = QStringLiteral("transcriptionFailed(\"Model not loaded\")");
    QCOMPARE(log.take(), (QStringList {failed, failed, failed}));
}

REGISTER_TEST(tst_WhisperWithoutLibrary, QCoreApplication)
#include "tst_WhisperWithoutLibrary.moc"
