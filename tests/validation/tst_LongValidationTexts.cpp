// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LongTexts.h"
#include "OmniBarFixture.h"
#include "ScriptedVoice.h"

#include "TestRegistry.h"
#include "Timeouts.h"

#include <QGuiApplication>
#include <QTest>
#include <QTranslator>

namespace
{

//! Qt asks for the direction of the layout as for a translation.
class RightToLeft : public QTranslator
{
public:
    QString translate(const char *, const char *sourceText, const char *, int) const override
    {
        return qstrcmp(sourceText, "QT_LAYOUT_DIRECTION") == 0 ? QStringLiteral("RTL") : QString();
    }
    bool isEmpty() const override { return false; }
};

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
    window.omit("agentBridge");
    ScriptedVoice voice(window);
    QVERIFY(window.open(QStringLiteral("VoiceValidation.qml")));
    QTRY_VERIFY_WITH_TIMEOUT(window.property("contentShown").toBool(), Timeouts::Default);
    QVERIFY(window.settle());
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

//! In languages that are written from right to left.
void tst_LongValidationTexts::mirrored()
{
    RightToLeft direction;
    QVERIFY(QCoreApplication::installTranslator(&direction));
    QCOMPARE(QGuiApplication::layoutDirection(), Qt::RightToLeft);
    OmniBarFixture window;
    window.omit("agentBridge");
    const ScriptedVoice voice(window);
    QVERIFY(window.open(QStringLiteral("VoiceValidation.qml")));
    QTRY_VERIFY_WITH_TIMEOUT(window.property("contentShown").toBool(), Timeouts::Default);
    QVERIFY(window.settle());
    window.screenshot("long-validation-mirrored");
    QCOMPARE(LongTexts::faults(window.window()), QString());
    QVERIFY(window.place(window.item("statePill")).right() < window.window()->width() / 2);
    QVERIFY(window.place(window.item("listenBtn")).left() > window.window()->width() / 2);
}

REGISTER_TEST(tst_LongValidationTexts, QGuiApplication)

#include "tst_LongValidationTexts.moc"
