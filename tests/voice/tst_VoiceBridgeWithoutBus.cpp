// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MessageLog.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"

#include <QTest>

//! VoiceBridge without a session bus.
class tst_VoiceBridgeWithoutBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void disablesTheWakeWord();
};

void tst_VoiceBridgeWithoutBus::disablesTheWakeWord()
{
    TestSetup::setAboutData();
    const ScopedEnvironment bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    MessageLog messages;
    VoiceBridge voice(VoiceFixture::parts());
    QCOMPARE(messages.warnings(),
             QStringList {QStringLiteral("VoiceBridge: cannot connect to D-Bus session bus for wake word")});
    QCOMPARE(messages.count(QStringLiteral("VoiceBridge: listening for wake word")), 0);
    voice.setVoiceLogEnabled(true); // everything else works
    QVERIFY(voice.voiceLogEnabled());
}

REGISTER_TEST(tst_VoiceBridgeWithoutBus, QCoreApplication)

#include "tst_VoiceBridgeWithoutBus.moc"
