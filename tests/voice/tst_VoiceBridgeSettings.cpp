// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "MessageLog.h"
#include "SignalLog.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceFixture.h"

#include <QFile>
#include <QSettings>
#include <QTest>

namespace
{

QVariant stored(const char *name)
{
    return QSettings().value(QStringLiteral("voice/") + QLatin1String(name));
}

void store(const char *name, const QVariant &value)
{
    QSettings().setValue(QStringLiteral("voice/") + QLatin1String(name), value);
}

//! The line without its time.
QString entry(const QString &line)
{
    return line.section(QStringLiteral("] "), 1);
}

} // namespace

//! The voice settings: how they are read, and how the setters normalize, store, log and announce a value.
class tst_VoiceBridgeSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void readsTheInputMode_data();
    void readsTheInputMode();
    void readsTheSubmitMode_data();
    void readsTheSubmitMode();
    void readsOtherValuesUnchecked();
    void survivesARestart();
    void sets_data();
    void sets();
    void sameValueDoesNothing_data();
    void sameValueDoesNothing();
    void switchFollowsTheInputMode();
    void switchForwardsToTheMode();
    void testModesAreNotStored();
    void logIsKeptWhileItIsOn();
    void logSwitchWritesNoLine();
};

void tst_VoiceBridgeSettings::initTestCase()
{
    TestSetup::setAboutData();
}

void tst_VoiceBridgeSettings::init()
{
    TestSetup::clearSettings();
}

void tst_VoiceBridgeSettings::readsTheInputMode_data()
{
    QTest::addColumn<QVariant>("mode");
    QTest::addColumn<QVariant>("liveEnabled");
    QTest::addColumn<QString>("expected");

    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    QTest::newRow("fresh store") << QVariant() << QVariant() << "live";
    QTest::newRow("switched off") << QVariant() << QVariant(false) << "batch";
    QTest::newRow("live") << text("live") << QVariant(false) << "live";
    QTest::newRow("batch") << text("batch") << QVariant(true) << "batch";
    QTest::newRow("by hand") << text("LIVE ") << QVariant(false) << "live";
    QTest::newRow("by hand, batch") << text("\tBatch") << QVariant(true) << "batch";
    QTest::newRow("invalid") << text("both") << QVariant(true) << "live";
    QTest::newRow("invalid, switched off") << text("both") << QVariant(false) << "batch";
    QTest::newRow("empty") << text("") << QVariant() << "live";
}

void tst_VoiceBridgeSettings::readsTheInputMode()
{
    QFETCH(QVariant, mode);
    QFETCH(QVariant, liveEnabled);
    if (mode.isValid()) {
        store("sttInputMode", mode);
    }
    if (liveEnabled.isValid()) {
        store("liveSttEnabled", liveEnabled);
    }
    MessageLog log;
    const VoiceBridge voice(VoiceFixture::parts());
    QTEST(voice.sttInputMode(), "expected");
    QCOMPARE(voice.liveSttEnabled(), liveEnabled.isValid() ? liveEnabled.toBool() : true);
    QCOMPARE(stored("sttInputMode"), mode); // reading never writes to the store
}

void tst_VoiceBridgeSettings::readsTheSubmitMode_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("expected");

    QTest::newRow("manual") << "manual"
                            << "manual";
    QTest::newRow("by hand") << " Manual "
                             << "manual";
    QTest::newRow("auto") << "auto"
                          << "auto";
    QTest::newRow("invalid") << "never"
                             << "auto";
}

void tst_VoiceBridgeSettings::readsTheSubmitMode()
{
    QFETCH(QString, mode);
    store("voiceSubmitMode", mode);
    MessageLog log;
    const VoiceBridge voice(VoiceFixture::parts());
    QTEST(voice.voiceSubmitMode(), "expected");
}

void tst_VoiceBridgeSettings::readsOtherValuesUnchecked()
{
    store("ttsEnabled", true);
    store("sttBackend", QStringLiteral(" Whisper "));
    store("silenceTimeoutMs", 20);
    store("voiceConfirmDelaySec", 99);
    store("voiceLogEnabled", true);
    MessageLog log;
    const VoiceBridge voice(VoiceFixture::parts());
    QCOMPARE(voice.ttsEnabled(), true);
    QCOMPARE(voice.sttBackend(), QStringLiteral(" Whisper "));
    QCOMPARE(voice.silenceTimeoutMs(), 20);
    QCOMPARE(voice.voiceConfirmDelaySec(), 99);
    QCOMPARE(voice.voiceLogEnabled(), true);
    QVERIFY(log.has(QtDebugMsg,
                    QStringLiteral("[VoiceBridge] init  sttBackend= Whisper  sttInputMode=live voiceSubmitMode=auto "
                                   "silenceTimeout=20ms confirmDelay=99s logEnabled=true")));
}

void tst_VoiceBridgeSettings::survivesARestart()
{
    MessageLog log;
    {
        VoiceBridge voice(VoiceFixture::parts());
        voice.setTtsEnabled(true);
        voice.setWakeWordEnabled(true);
        voice.setSttInputMode(QStringLiteral("batch"));
        voice.setVoiceSubmitMode(QStringLiteral("manual"));
        voice.setSilenceTimeoutMs(1200);
        voice.setVoiceConfirmDelaySec(9);
        voice.setVoiceLogEnabled(true);
        voice.setBatchSttMode(true);
        voice.setVoiceTestActive(true);
    }
    const VoiceBridge voice(VoiceFixture::parts());
    QCOMPARE(voice.ttsEnabled(), true);
    QCOMPARE(voice.wakeWordEnabled(), true);
    QCOMPARE(voice.sttInputMode(), QStringLiteral("batch"));
    QCOMPARE(voice.liveSttEnabled(), false);
    QCOMPARE(voice.voiceSubmitMode(), QStringLiteral("manual"));
    QCOMPARE(voice.silenceTimeoutMs(), 1200);
    QCOMPARE(voice.voiceConfirmDelaySec(), 9);
    QCOMPARE(voice.voiceLogEnabled(), true);
    QCOMPARE(voice.batchSttMode(), false);
    QCOMPARE(voice.voiceTestActive(), false);
    QVERIFY(QFile::exists(TestSetup::settingsFile()));
}

void tst_VoiceBridgeSettings::sets_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QVariant>("becomes");
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QString>("debugLine");
    QTest::addColumn<QString>("logEntry");

    const auto row = [](const char *name, const char *property, const QVariant &value, const QVariant &becomes,
                        const char *signal, const char *debugLine, const char *logEntry) {
        QTest::newRow(name) << QByteArray(property) << value << becomes << QString::fromLatin1(signal)
                            << QString::fromLatin1(debugLine) << QString::fromLatin1(logEntry);
    };
    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    row("speech", "ttsEnabled", true, true, "ttsEnabledChanged()", "", "");
    row("wake word", "wakeWordEnabled", true, true, "wakeWordEnabledChanged()",
        "VoiceBridge: requested tovi-wakeword.service start", "");
    row("submit mode", "voiceSubmitMode", text("manual"), text("manual"), "voiceSubmitModeChanged()",
        "[VoiceBridge] voiceSubmitMode -> manual", "Setting changed: submit mode = manual");
    row("submit mode, normalized", "voiceSubmitMode", text(" MANUAL\n"), text("manual"), "voiceSubmitModeChanged()",
        "[VoiceBridge] voiceSubmitMode -> manual", "Setting changed: submit mode = manual");
    row("silence", "silenceTimeoutMs", 1500, 1500, "silenceTimeoutMsChanged()",
        "[VoiceBridge] silenceTimeoutMs -> 1500", "Setting changed: silence timeout = 1500 ms");
    row("silence too short", "silenceTimeoutMs", 100, 200, "silenceTimeoutMsChanged()",
        "[VoiceBridge] silenceTimeoutMs -> 200", "Setting changed: silence timeout = 200 ms");
    row("silence too long", "silenceTimeoutMs", 9000, 5000, "silenceTimeoutMsChanged()",
        "[VoiceBridge] silenceTimeoutMs -> 5000", "Setting changed: silence timeout = 5000 ms");
    row("delay", "voiceConfirmDelaySec", 7, 7, "voiceConfirmDelaySecChanged()",
        "[VoiceBridge] voiceConfirmDelaySec -> 7", "Setting changed: confirm delay = 7 s");
    row("delay below zero", "voiceConfirmDelaySec", -3, 0, "voiceConfirmDelaySecChanged()",
        "[VoiceBridge] voiceConfirmDelaySec -> 0", "Setting changed: confirm delay = 0 s");
    row("delay too long", "voiceConfirmDelaySec", 20, 15, "voiceConfirmDelaySecChanged()",
        "[VoiceBridge] voiceConfirmDelaySec -> 15", "Setting changed: confirm delay = 15 s");
}

void tst_VoiceBridgeSettings::sets()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    QFETCH(QVariant, becomes);
    QFETCH(QString, signal);
    QFETCH(QString, debugLine);
    QFETCH(QString, logEntry);

    MessageLog log;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setVoiceLogEnabled(true);
    log.clear();
    SignalLog emitted(&voice);
    QVERIFY(voice.setProperty(property.constData(), value));

    QCOMPARE(voice.property(property.constData()), becomes);
    QCOMPARE(stored(property.constData()).toString(), becomes.toString());
    if (logEntry.isEmpty()) {
        QCOMPARE(emitted.entries(), QStringList {signal});
        QCOMPARE(voice.voiceLog(), QStringList());
    } else {
        QCOMPARE(emitted.entries(), (QStringList {QStringLiteral("voiceLogChanged()"), signal}));
        QCOMPARE(voice.voiceLog().size(), 1);
        QCOMPARE(entry(voice.voiceLog().constFirst()), logEntry);
    }
    QCOMPARE(log.lines().size(), debugLine.isEmpty() ? 0 : 1);
    QVERIFY(debugLine.isEmpty() || log.has(QtDebugMsg, debugLine));
}

void tst_VoiceBridgeSettings::sameValueDoesNothing_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("first");
    QTest::addColumn<QVariant>("again");

    const auto row = [](const char *property, const QVariant &first, const QVariant &again) {
        QTest::addRow("%s %s", property, qPrintable(again.toString())) << QByteArray(property) << first << again;
    };
    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    row("ttsEnabled", true, true);
    row("wakeWordEnabled", true, true);
    row("liveSttEnabled", false, false);
    row("sttInputMode", text("batch"), text(" BATCH "));
    row("sttInputMode", text("batch"), text("nonsense"));
    row("voiceSubmitMode", text("auto"), text("nonsense"));
    row("voiceSubmitMode", text("manual"), text("Manual"));
    // The value is clamped before it is compared.
    row("silenceTimeoutMs", 5000, 9000);
    row("silenceTimeoutMs", 200, -1);
    row("voiceConfirmDelaySec", 15, 20);
    row("voiceConfirmDelaySec", 0, -3);
    row("voiceTestActive", true, true);
    row("batchSttMode", true, true);
    row("voiceLogEnabled", true, true);
    row("sttBackend", text("whisper"), text(" Whisper "));
}

void tst_VoiceBridgeSettings::sameValueDoesNothing()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, first);
    QFETCH(QVariant, again);
    MessageLog log;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setVoiceLogEnabled(true);
    voice.setProperty(property.constData(), first);
    const QStringList lines = voice.voiceLog();
    log.clear();
    SignalLog emitted(&voice);
    QVERIFY(voice.setProperty(property.constData(), again));
    QCOMPARE(voice.property(property.constData()), first);
    QCOMPARE(emitted.entries(), QStringList());
    QCOMPARE(log.lines().size(), 0);
    QCOMPARE(voice.voiceLog(), lines);
}

void tst_VoiceBridgeSettings::switchFollowsTheInputMode()
{
    MessageLog log;
    VoiceBridge voice(VoiceFixture::parts());
    voice.setVoiceLogEnabled(true);
    log.clear();
    SignalLog emitted(&voice);

    voice.setSttInputMode(QStringLiteral("anything"));
    QCOMPARE(voice.sttInputMode(), QStringLiteral("batch"));
    QCOMPARE(voice.liveSttEnabled(), false);
    QCOMPARE(stored("sttInputMode").toString(), QStringLiteral("batch"));
    QCOMPARE(stored("liveSttEnabled").toString(), QStringLiteral("false"));
    const QStringList all = {QStringLiteral("liveSttEnabledChanged()"), QStringLiteral("voiceLogChanged()"),
                             QStringLiteral("sttInputModeChanged()")};
    QCOMPARE(emitted.take(), all);
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.has(QtDebugMsg, QStringLiteral("[VoiceBridge] sttInputMode -> batch")));
    QCOMPARE(entry(voice.voiceLog().constFirst()), QStringLiteral("Setting changed: STT mode = batch"));

    voice.setSttInputMode(QStringLiteral(" Live"));
    QCOMPARE(voice.sttInputMode(), QStringLiteral("live"));
    QCOMPARE(voice.liveSttEnabled(), true);
    QCOMPARE(emitted.take(), all);
}

void tst_VoiceBridgeSettings::switchForwardsToTheMode()
{
    store("sttInputMode", QStringLiteral("batch")); // while the switch has its default, which is on
    MessageLog log;
    VoiceBridge voice(VoiceFixture::parts());
    SignalLog emitted(&voice);
    QCOMPARE(voice.liveSttEnabled(), true);
    voice.setLiveSttEnabled(false);
    QCOMPARE(emitted.take(), QStringList()); // the mode counts, and it is "batch" already

    voice.setLiveSttEnabled(true);
    QCOMPARE(voice.sttInputMode(), QStringLiteral("live"));
    QCOMPARE(emitted.take(), QStringList {QStringLiteral("sttInputModeChanged()")});

    voice.setLiveSttEnabled(false);
    QCOMPARE(voice.sttInputMode(), QStringLiteral("batch"));
    QCOMPARE(emitted.take(),
             (QStringList {QStringLiteral("liveSttEnabledChanged()"), QStringLiteral("sttInputModeChanged()")}));
    QCOMPARE(stored("sttInputMode").toString(), QStringLiteral("batch"));
    QCOMPARE(stored("liveSttEnabled").toString(), QStringLiteral("false"));
}

void tst_VoiceBridgeSettings::testModesAreNotStored()
{
    MessageLog log;
    VoiceBridge voice(VoiceFixture::parts());
    SignalLog emitted(&voice);
    voice.setVoiceTestActive(true);
    voice.setBatchSttMode(true);
    QCOMPARE(emitted.entries(),
             (QStringList {QStringLiteral("voiceTestActiveChanged()"), QStringLiteral("batchSttModeChanged()")}));
    QCOMPARE(QSettings().allKeys().filter(QStringLiteral("voice/")), QStringList());
}

void tst_VoiceBridgeSettings::logIsKeptWhileItIsOn()
{
    MessageLog log;
    VoiceBridge voice(VoiceFixture::parts());
    SignalLog emitted(&voice);
    voice.appendVoiceLog(QStringLiteral("not logged"));
    QCOMPARE(voice.voiceLog(), QStringList());
    voice.clearVoiceLog();
    QCOMPARE(emitted.take(), QStringList());

    voice.setVoiceLogEnabled(true);
    emitted.take();
    for (int i = 1; i <= 201; ++i) {
        voice.appendVoiceLog(QString::number(i));
    }
    QCOMPARE(emitted.take().size(), 201);
    QCOMPARE(voice.voiceLog().size(), 200);
    QCOMPARE(entry(voice.voiceLog().constFirst()), QStringLiteral("201"));
    QCOMPARE(entry(voice.voiceLog().constLast()), QStringLiteral("2"));
    const QRegularExpression form(QStringLiteral("^\\[\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d\\] 201$"));
    QVERIFY(form.match(voice.voiceLog().constFirst()).hasMatch());

    voice.setVoiceLogEnabled(false);
    QCOMPARE(voice.voiceLog().size(), 200); // existing lines are kept
    emitted.take();
    voice.clearVoiceLog();
    QCOMPARE(voice.voiceLog(), QStringList());
    QCOMPARE(emitted.take(), QStringList {QStringLiteral("voiceLogChanged()")});
}

void tst_VoiceBridgeSettings::logSwitchWritesNoLine()
{
    MessageLog log;
    VoiceBridge voice(VoiceFixture::parts());
    log.clear();
    SignalLog emitted(&voice);
    voice.setVoiceLogEnabled(true);
    QCOMPARE(emitted.take(), QStringList {QStringLiteral("voiceLogEnabledChanged()")});
    QVERIFY(log.has(QtDebugMsg, QStringLiteral("[VoiceBridge] voiceLogEnabled -> true")));
    QCOMPARE(stored("voiceLogEnabled").toString(), QStringLiteral("true"));
    voice.setVoiceLogEnabled(false);
    QVERIFY(log.has(QtDebugMsg, QStringLiteral("[VoiceBridge] voiceLogEnabled -> false")));
    QCOMPARE(voice.voiceLog(), QStringList());
}

REGISTER_TEST(tst_VoiceBridgeSettings, QCoreApplication)

#include "tst_VoiceBridgeSettings.moc"
