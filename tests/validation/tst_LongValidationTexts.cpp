// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LongTexts.h"
#include "Mirroring.h"
#include "OmniBarFixture.h"
#include "ScriptedVoice.h"

#include "TestRegistry.h"
#include "Timeouts.h"

#include <QGuiApplication>
#include <QTest>

namespace
{

//! Opens the voice validation window, complete and at rest.
bool open(OmniBarFixture &window)
{
    window.omit("agentBridge");
    return window.open(QStringLiteral("VoiceValidation.qml"))
        && QTest::qWaitFor([&] { return window.property("contentShown").toBool(); }, Timeouts::Default)
        && window.settle();
}

} // namespace

//! The voice validation window in a language whose texts are 1.4 times as long, at its smallest size too.
class tst_LongValidationTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(LongTexts::use()); }
    void fit();
    void mirrored();
};

void tst_LongValidationTexts::fit()
{
    OmniBarFixture window;
    ScriptedVoice voice(window);
    QVERIFY(open(window));
    window.screenshot("long-validation");
    QCOMPARE(LongTexts::faults(window.window()), QString());

    window.click("suiteSwitch");
    QVERIFY(window.settle());
    voice.set("lastTranscriptionMs", 100);
    voice.emitSignal("transcriptReady", QStringLiteral("open the browser"));
    voice.set("isListening", true);
    QVERIFY(window.settle());
    window.screenshot("long-validation-suite");
    QCOMPARE(LongTexts::faults(window.window()), QString());

    const QSize smallest = window.window()->minimumSize();
    window.window()->resize(smallest);
    QTRY_COMPARE(window.window()->contentItem()->height(), qreal(smallest.height()));
    QVERIFY(window.settle());
    window.screenshot("long-validation-smallest");
    QCOMPARE(LongTexts::faults(window.window()), QString());
}

//! In a language that is written from right to left.
void tst_LongValidationTexts::mirrored()
{
    QVERIFY(Mirroring::use());
    OmniBarFixture window;
    ScriptedVoice voice(window);
    QVERIFY(open(window));
    window.click("suiteSwitch");
    voice.set("inputLevel", 0.02);
    for (int i = 0; i < 9; ++i) {
        voice.emitSignal("transcriptReady", QStringLiteral("open the browser"));
    }
    QVERIFY(window.settle());
    window.screenshot("long-validation-mirrored");
    QCOMPARE(LongTexts::faults(window.window()), QString());
    // These are aligned by their own direction.
    const QString faults = Mirroring::faults(window, {QStringLiteral("sentenceText"), QStringLiteral("engineHints")});
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
}

REGISTER_TEST(tst_LongValidationTexts, QGuiApplication)

#include "tst_LongValidationTexts.moc"
