// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "ScriptedVoice.h"
#include "SharedWindow.h"

#include "TestRegistry.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QAccessible>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

namespace
{

constexpr int s_manySteps = 60;
const QString s_cancel = QStringLiteral("cancelListening()");

QStringList numberedLines(int count)
{
    QStringList lines;
    for (int i = count; i > 0; --i) {
        lines.append(QStringLiteral("[12:00:00.%1] START listening").arg(i, 3, 10, QLatin1Char('0')));
    }
    return lines;
}

//! The rows of an open choice.
QList<QQuickItem *> choices(Conversation &bar)
{
    return bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) {
        return item->inherits("QQuickItemDelegate") && OmniBarFixture::isSeen(item);
    });
}

QQuickItem *choice(Conversation &bar, const QString &label)
{
    const QList<QQuickItem *> rows = choices(bar);
    const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                    [&](QQuickItem *row) { return row->property("label").toString() == label; });
    return found == rows.cend() ? nullptr : *found;
}

//! A way to leave the tab.
struct Leaving
{
    const char *name;
    std::function<void(Conversation &)> act;
};

const Leaving s_leavings[] = {
    {"another tab", [](Conversation &bar) { bar.item("settingsTabs")->setProperty("currentIndex", 0); }},
    {"Escape", [](Conversation &bar) { bar.key(Qt::Key_Escape); }},
    {"bubble", [](Conversation &bar) { bar.setProperty("compactMode", true); }},
    {"closed window",
     [](Conversation &bar) {
         bar.spoil();
         bar.window()->close();
     }},
};

} // namespace

//! The Voice tab in the window: when its test takes the transcripts, the keyboard, and how it looks. Its controls alone
//! are in tests/omnibar/settings. One long file, because the tests share the window and the voice path.
class tst_VoiceTab : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init();
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void leavingEndsTheTest();
    void expandingTheBubbleResumesTheTest();
    void leftAndEnteredAtOnce();
    void leftBeforeTheSentencesArrive();
    void transcriptsStayInTheTest();

    void choiceByMouse();
    void choiceByKeys();
    void everythingIsReachedByTab();
    void focusReturnsAfterTheTranscription();
    void logByKeys();
    void hostileTexts();
    void nothingMovesWhileIdle();
    void pictures_data();
    void pictures();

    void sentenceThroughTheRealVoicePath();
    void leavingClosesTheMicrophone();
    void withoutAModel();

private:
    bool openTab() { return m_bar->openTab(text("Voice")) && isSuiteLoaded(*m_bar); }
    static bool isSuiteLoaded(Conversation &bar);
    static QString textOf(Conversation &bar, const char *name) { return bar.item(name)->property("text").toString(); }
    void hear(const QString &transcript, double ms);
    void submit(const QString &transcript, double ms);
    //! A window of its own with the real voice path.
    Conversation &provideVoice(VoiceParts parts);

    QTemporaryDir m_nothing;
    //! Outlives the window, as in the program.
    std::unique_ptr<VoiceBridge> m_realVoice;
    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
    Conversation *m_bar = nullptr;
};

void tst_VoiceTab::init()
{
    WhisperStandIn::reset();
    m_bar = &m_window.take();
    QVERIFY(m_bar->begin());
    m_voice->set("isModelLoaded", true);
}

bool tst_VoiceTab::isSuiteLoaded(Conversation &bar)
{
    return QTest::qWaitFor([&] { return bar.item("voiceTestPanel")->property("suiteLoaded").toBool(); });
}

void tst_VoiceTab::hear(const QString &transcript, double ms)
{
    m_voice->set("lastTranscriptionMs", ms);
    m_voice->emitSignal("transcriptReady", transcript);
}

void tst_VoiceTab::submit(const QString &transcript, double ms)
{
    hear(transcript, ms);
    QMetaObject::invokeMethod(m_bar->item("submitTestBtn"), "clicked");
}

Conversation &tst_VoiceTab::provideVoice(VoiceParts parts)
{
    Conversation &bar = m_window.renew();
    parts.roots.system = m_nothing.path();
    m_realVoice = std::make_unique<VoiceBridge>(std::move(parts), nullptr);
    bar.provide("voiceBridge", m_realVoice.get());
    return bar;
}

void tst_VoiceTab::leavingEndsTheTest()
{
    for (const Leaving &leaving : s_leavings) {
        m_bar->setProperty("compactMode", false);
        QVERIFY2(openTab(), leaving.name);
        QVERIFY2(m_voice->object()->property("voiceTestActive").toBool(), leaving.name);
        m_voice->set("isTranscribing", true);
        m_voice->takeCalls();
        leaving.act(*m_bar);
        QVERIFY2(!m_voice->object()->property("voiceTestActive").toBool(), leaving.name);
        QCOMPARE(m_voice->takeCalls(), QStringList(s_cancel));
        m_voice->set("isTranscribing", false);
    }
}

void tst_VoiceTab::expandingTheBubbleResumesTheTest()
{
    QVERIFY(openTab());
    m_bar->setProperty("compactMode", true);
    QVERIFY(!m_voice->object()->property("voiceTestActive").toBool());
    m_bar->setProperty("compactMode", false);
    QVERIFY(m_voice->object()->property("voiceTestActive").toBool());
}

void tst_VoiceTab::leftAndEnteredAtOnce()
{
    QVERIFY(openTab());
    QQuickItem *tabs = m_bar->item("settingsTabs");
    const int voiceTab = tabs->property("currentIndex").toInt();
    tabs->setProperty("currentIndex", 0);
    tabs->setProperty("currentIndex", voiceTab);
    // The old page is deleted later.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(m_voice->object()->property("voiceTestActive").toBool());
    QCOMPARE(m_bar->items("voiceTestPanel").size(), 1);
}

void tst_VoiceTab::leftBeforeTheSentencesArrive()
{
    QVERIFY(m_bar->openTab(text("Look")));
    QQuickItem *tabs = m_bar->item("settingsTabs");
    tabs->setProperty("currentIndex", 4);
    QVERIFY(m_bar->item("voiceTestPanel"));
    QVERIFY(!m_bar->item("voiceTestPanel")->property("suiteLoaded").toBool());
    tabs->setProperty("currentIndex", 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(openTab());
    // Unexpected warnings fail the test.
}

void tst_VoiceTab::transcriptsStayInTheTest()
{
    m_bar->type("typed");
    QVERIFY(openTab());
    hear(text("go back"), 12);
    QCOMPARE(textOf(*m_bar, "pendingText"), text("Understood: go back"));
    QCOMPARE(m_bar->property("inputField.text").toString(), text("typed"));
    QCOMPARE(m_bar->count(), 0);
}

void tst_VoiceTab::choiceByMouse()
{
    for (const bool isLight : {false, true}) {
        m_bar->setLight(isLight);
        QVERIFY(openTab());
        QQuickItem *box = m_bar->item("submitCombo");
        m_bar->click(box);
        QVERIFY(m_bar->settle());
        QCOMPARE(choices(*m_bar).size(), 2);
        m_bar->screenshot(text("voice-choices-%1").arg(text(isLight ? "light" : "dark")));
        m_bar->click(
            choice(*m_bar, isLight ? text("Auto send — countdown then send") : text("Manual — compose, then Enter")));
        QTRY_COMPARE(choices(*m_bar).size(), 0);
        QCOMPARE(m_voice->object()->property("voiceSubmitMode").toString(), text(isLight ? "auto" : "manual"));
        QCOMPARE(m_bar->isSeen(m_bar->item("delaySlider")), isLight);
    }
}

void tst_VoiceTab::choiceByKeys()
{
    QVERIFY(openTab());
    QQuickItem *box = m_bar->item("submitCombo");
    m_bar->focus(box);
    m_bar->key(Qt::Key_Space);
    QTRY_COMPARE(choices(*m_bar).size(), 2);
    m_bar->key(Qt::Key_Down);
    // Escape closes only the list, without a choice.
    m_bar->key(Qt::Key_Escape);
    QTRY_COMPARE(choices(*m_bar).size(), 0);
    QVERIFY(m_bar->property("settingsPanelOpen").toBool());
    QCOMPARE(m_voice->object()->property("voiceSubmitMode").toString(), text("auto"));
    QCOMPARE(box->property("displayText").toString(), text("Auto send — countdown then send"));
    QVERIFY(box->hasActiveFocus());

    m_bar->key(Qt::Key_Space);
    QTRY_COMPARE(choices(*m_bar).size(), 2);
    m_bar->key(Qt::Key_Down);
    m_bar->key(Qt::Key_Return);
    QTRY_COMPARE(choices(*m_bar).size(), 0);
    QCOMPARE(m_voice->object()->property("voiceSubmitMode").toString(), text("manual"));
    m_bar->key(Qt::Key_Escape);
    QVERIFY(!m_bar->property("settingsPanelOpen").toBool());
}

void tst_VoiceTab::everythingIsReachedByTab()
{
    m_voice->set("voiceLogEnabled", true);
    m_voice->set("voiceLog", numberedLines(20));
    QVERIFY(openTab());
    m_bar->item("voiceTestPanel")->setProperty("currentIndex", 3);
    submit(text("a"), 1);
    hear(text("b"), 1);
    m_bar->evaluate("surface.screens = [{ 'width': 1280, 'height': 300 }]");
    QVERIFY(m_bar->settle());
    QQuickItem *pane = m_bar->item("settingsScrollPane");
    QQuickItem *page = m_bar->item("voiceTab");
    QStringList order;
    const auto tabs = m_bar->itemsWhere(m_bar->item("settingsTabs"),
                                        [](QQuickItem *item) { return item->inherits("QQuickTabButton"); });
    m_bar->focus(tabs.last());
    for (int i = 0; i < s_manySteps; ++i) {
        m_bar->key(Qt::Key_Tab);
        QQuickItem *focused = m_bar->window()->activeFocusItem();
        if (!focused || !page->isAncestorOf(focused)) {
            break;
        }
        order.append(focused->objectName());
        QTRY_VERIFY2(m_bar->place(pane).contains(m_bar->place(focused)), qPrintable(focused->objectName()));
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(focused);
        QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(), qPrintable(focused->objectName()));
        QVERIFY(accessible->state().focusable);
        const auto rings = m_bar->itemsWhere(focused, [](QQuickItem *item) {
            return QByteArray(item->metaObject()->className()).startsWith("FocusRing") && OmniBarFixture::isSeen(item);
        });
        QCOMPARE(rings.size(), 1);
    }
    QCOMPARE(order,
             QStringList({text("methodCombo"), text("submitCombo"), text("silenceSlider"), text("delaySlider"),
                          text("voiceTestMicBtn"), text("submitTestBtn"), text("previousSentenceBtn"),
                          text("nextSentenceBtn"), text("clearTestResultsBtn"), text("testResultRow"),
                          text("voiceLogSwitch"), text("voiceLogRow"), text("clearVoiceLogBtn")}));
    m_bar->evaluate("surface.screens = Qt.binding(() => Qt.application.screens)");
}

void tst_VoiceTab::focusReturnsAfterTheTranscription()
{
    QVERIFY(openTab());
    QQuickItem *mic = m_bar->item("voiceTestMicBtn");
    m_bar->focus(mic);
    m_bar->key(Qt::Key_Return);
    QCOMPARE(m_voice->takeCalls().last(), text("startListening()"));
    m_voice->set("isListening", true);
    m_voice->set("isListening", false);
    m_voice->set("isTranscribing", true);
    QVERIFY(!mic->isEnabled());
    QVERIFY(m_bar->settle());
    m_voice->set("isTranscribing", false);
    hear(text("go back"), 12);
    QVERIFY(m_bar->settle());
    QVERIFY(mic->hasActiveFocus());
    QVERIFY(mic->property("visualFocus").toBool());
}

void tst_VoiceTab::logByKeys()
{
    m_voice->set("voiceLogEnabled", true);
    m_voice->set("voiceLog", numberedLines(200));
    QVERIFY(openTab());
    const auto focusedLine = [&] { return m_bar->window()->activeFocusItem()->property("line").toString(); };
    m_bar->focus(m_bar->item("voiceLogRow"));
    QCOMPARE(focusedLine(), numberedLines(200).at(0));
    for (int i = 1; i < 30; ++i) {
        m_bar->key(Qt::Key_Down);
        QCOMPARE(focusedLine(), numberedLines(200).at(i));
    }
    QTRY_VERIFY(
        m_bar->place(m_bar->item("voiceLogList")).contains(m_bar->place(m_bar->window()->activeFocusItem()).center()));
    // A new line moves neither the focus nor the place.
    QQuickItem *row = m_bar->window()->activeFocusItem();
    const QRectF place = m_bar->place(row);
    m_voice->set("voiceLog", QStringList(text("[12:00:01.000] new")) + numberedLines(199));
    QVERIFY(m_bar->settle());
    QCOMPARE(m_bar->window()->activeFocusItem(), row);
    QCOMPARE(m_bar->place(row), place);
    m_bar->key(Qt::Key_Escape);
    QVERIFY(!m_bar->property("settingsPanelOpen").toBool());
}

void tst_VoiceTab::hostileTexts()
{
    const QString image = text("<img src=\"http://localhost/x\"><b>bold</b>\u202e\n");
    const QString hostile = image + text("x").repeated(5000);
    m_voice->set("voiceLogEnabled", true);
    m_voice->set("voiceLog", QStringList({hostile, text("ERROR ") + hostile}));
    QVERIFY(openTab());
    submit(hostile, 1e9);
    hear(hostile, 1);
    m_bar->expectWarning("[OmniBar] voice: <img");
    m_voice->emitSignal("errorOccurred", hostile);
    QVERIFY(m_bar->settle());
    QCOMPARE(Conversation::looseTexts(m_bar->item("voiceTab")), QStringList());
    const QRectF page = m_bar->place(m_bar->item("settingsPages"));
    const auto texts = m_bar->itemsWhere(m_bar->item("voiceTab"), [](QQuickItem *item) {
        return item->inherits("QQuickText") && OmniBarFixture::isSeen(item);
    });
    for (QQuickItem *item : texts) {
        const QRectF place = m_bar->place(item);
        QVERIFY2(place.left() >= page.left() && place.right() <= page.right() + 0.5,
                 qPrintable(item->property("text").toString().left(100)));
        QVERIFY(!item->property("text").toString().contains(QLatin1Char('\n')));
    }
    QQuickItem *pane = m_bar->item("settingsScrollPane");
    pane->setProperty("contentY", pane->property("contentHeight").toReal() - pane->height());
    m_bar->screenshot("voice-hostile");
}

void tst_VoiceTab::nothingMovesWhileIdle()
{
    QVERIFY(openTab());
    for (const char *state : {"isListening", "isTranscribing"}) {
        m_voice->set(state, true);
        QCOMPARE(runningIn(m_bar->item("voiceTab")), QStringList());
        m_voice->set(state, false);
    }
}

void tst_VoiceTab::pictures_data()
{
    QTest::addColumn<bool>("isLight");
    QTest::newRow("dark") << false;
    QTest::newRow("light") << true;
}

void tst_VoiceTab::pictures()
{
    QFETCH(bool, isLight);

    m_bar->setLight(isLight);
    QVERIFY(openTab());
    QQuickItem *pane = m_bar->item("settingsScrollPane");
    QQuickItem *panel = m_bar->item("voiceTestPanel");
    const auto shot = [&](const char *name, bool atEnd) {
        QVERIFY(m_bar->settle());
        const qreal end = pane->property("contentHeight").toReal() - pane->height();
        pane->setProperty("contentY", atEnd ? qMax(0.0, end) : 0.0);
        m_bar->screenshot(QStringLiteral("voice-%1-%2").arg(text(name), text(isLight ? "light" : "dark")));
        QVERIFY(m_bar->item("settingsPanel")->height() <= m_bar->property("screenHeight").toInt() * 0.78 + 25);
    };
    shot("fresh", false);
    shot("fresh-end", true);
    m_voice->set("liveSttAvailable", true);
    m_voice->set("voiceSubmitMode", text("manual"));
    shot("live-manual", false);
    m_voice->set("isListening", true);
    m_voice->set("partialTranscript", text("open the file man"));
    shot("listening", true);
    m_voice->set("isListening", false);
    m_voice->set("isTranscribing", true);
    shot("transcribing", true);
    m_voice->set("isTranscribing", false);
    hear(text("open the file manager and go to downloads"), 812.4);
    shot("pending", true);
    const QStringList said = {text("open the file manager and go to downloads"), text("set the volume to 75 percent"),
                              text("what is the current battery level"),         text("hey Tovi switched to dark moon"),
                              text("ask Loomra to refactor this function"),      text("go back")};
    for (int i = 0; i < said.size(); ++i) {
        submit(said.at(i), 400 + 97 * i);
    }
    shot("results", true);
    m_voice->set("voiceLogEnabled", true);
    shot("log-empty", true);
    m_voice->set(
        "voiceLog",
        QStringList({text("[12:00:02.410] TRANSCRIPT \"ask Loomra to refactor this function\"  latency=788ms"),
                     text("[12:00:02.409] CORRECTED \"ask lumra to refactor this function\" -> \"ask Loomra to "
                          "refactor this function\""),
                     text("[12:00:01.600] TRANSCRIBING (batch)  backend=whisper-small-q5"),
                     text("[12:00:01.599] CAPTURE done  audio=2350ms  samples=37600"),
                     text("[11:59:58.000] START listening  mode=batch  backend=whisper-small-q5  "
                          "silenceTimeout=700ms"),
                     text("[11:59:40.123] ERROR No speech detected in audio")}));
    shot("log", true);
    m_voice->set("voiceLog", numberedLines(200));
    m_voice->set("isModelLoaded", false);
    m_bar->expectWarning("[OmniBar] voice: Whisper model not found");
    m_voice->emitSignal("errorOccurred",
                        text("Whisper model not found. Download ggml-base.en.bin to "
                             "~/.local/share/tovi-forkeldaos/models/"));
    shot("no-engine", true);
    QCOMPARE(panel->property("currentIndex").toInt(), 6);
}

//! From the microphone to the log on disk, with stand-ins for microphone and engine.
void tst_VoiceTab::sentenceThroughTheRealVoicePath()
{
    const WhisperModelFile model;
    ScriptedMicrophone microphone;
    Conversation &bar = provideVoice(VoiceFixture::parts(microphone));
    VoiceBridge &voice = *m_realVoice;
    voice.setSilenceTimeoutMs(200);
    voice.setVoiceLogEnabled(true);
    QVERIFY(bar.begin());
    bar.type("typed");
    QVERIFY(!voice.isModelLoaded());
    QVERIFY(bar.openTab(text("Voice")));
    QVERIFY(isSuiteLoaded(bar));
    QVERIFY(voice.isModelLoaded());
    QQuickItem *panel = bar.item("voiceTestPanel");
    panel->setProperty("currentIndex", 4);
    QCOMPARE(textOf(bar, "sentenceText"), text("“ask Loomra to refactor this function”"));

    const auto records = [&] {
        QFile file(voice.voiceTestLogPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
    };
    const auto say = [&](const QByteArray &words) {
        WhisperStandIn::say({words});
        microphone.hear(8, ScriptedMicrophone::Loud);
        bar.focus(bar.item("voiceTestMicBtn"));
        bar.key(Qt::Key_Return);
        QTRY_VERIFY(bar.item("submitTestBtn")->isEnabled());
    };
    // The corrections come before the score.
    say(" ask lumra to refactor this function");
    QCOMPARE(textOf(bar, "pendingText"), text("Understood: ask Loomra to refactor this function"));
    const double firstMs = voice.lastTranscriptionMs();
    bar.focus(bar.item("submitTestBtn"));
    bar.key(Qt::Key_Return);
    QCOMPARE(panel->property("currentIndex").toInt(), 5);
    QVERIFY(voice.voiceLog().first().endsWith(
        QStringLiteral("TEST v05 100% · %1ms · \"ask Loomra to refactor this function\"").arg(qRound(firstMs))));

    bar.focus(bar.item("previousSentenceBtn"));
    bar.key(Qt::Key_Return);
    say(" ask lumra to factor the function");
    bar.focus(bar.item("submitTestBtn"));
    bar.key(Qt::Key_Return);
    QCOMPARE(panel->property("testResults").toList().size(), 1);
    QCOMPARE(textOf(bar, "submittedCount"), text("1 of 10 submitted"));
    QTRY_COMPARE(bar.items("testResultRow").size(), 1);
    QTRY_COMPARE(textOf(bar, "testResultPercentage"), text("67%"));

    const QList<QByteArray> lines = records();
    QCOMPARE(lines.size(), 3); // the last one is empty
    const struct
    {
        QString hypothesis;
        double accuracy;
    } expected[] = {
        {text("ask Loomra to refactor this function"), 1.0},
        {text("ask Loomra to factor the function"), 1 - 2 / 6.0},
    };
    for (int i = 0; i < 2; ++i) {
        QJsonObject record = QJsonDocument::fromJson(lines.at(i)).object();
        QVERIFY(record.take(text("timestamp")).toString().endsWith(text("ZZ")));
        QVERIFY(record.take(text("latencyMs")).isDouble());
        QVERIFY(qFuzzyCompare(record.take(text("accuracy")).toDouble(), expected[i].accuracy));
        QCOMPARE(record,
                 QJsonObject({{text("event"), text("voice.test.submitted")},
                              {text("source"), text("settings_voice_test")},
                              {text("sentenceId"), text("v05")},
                              {text("category"), text("product")},
                              {text("reference"), text("ask Loomra to refactor this function")},
                              {text("hypothesis"), expected[i].hypothesis},
                              {text("sttInputMode"), text("live")},
                              {text("voiceSubmitMode"), text("auto")},
                              {text("sttBackend"), text("whisper-small-q5")},
                              {text("liveSttAvailable"), false},
                              {text("silenceTimeoutMs"), 200}}));
    }
    bar.focus(bar.item("clearTestResultsBtn"));
    bar.key(Qt::Key_Return);
    QCOMPARE(panel->property("testResults").toList().size(), 0);
    QCOMPARE(records().size(), 3);
    QCOMPARE(bar.property("inputField.text").toString(), text("typed"));
    QCOMPARE(bar.count(), 0);
    QVERIFY(QFile::remove(voice.voiceTestLogPath()));
}

void tst_VoiceTab::leavingClosesTheMicrophone()
{
    const WhisperModelFile model;
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Talks);
    Conversation &bar = provideVoice(VoiceFixture::parts(microphone));
    QVERIFY(bar.begin());
    QVERIFY(bar.openTab(text("Voice")));
    QVERIFY(isSuiteLoaded(bar));
    bar.expectWarning("[OmniBar] voice: No speech detected");
    for (const Leaving &leaving : s_leavings) {
        bar.setProperty("settingsPanelOpen", true);
        bar.setProperty("compactMode", false);
        QVERIFY2(bar.openTab(text("Voice")), leaving.name);
        QVERIFY(isSuiteLoaded(bar));
        bar.focus(bar.item("voiceTestMicBtn"));
        bar.key(Qt::Key_Space);
        QTRY_COMPARE(microphone.openStreams(), 1);
        QCOMPARE(bar.item("voiceTestMicBtn")->property("label").toString(), text("Stop"));
        leaving.act(bar);
        QVERIFY2(!m_realVoice->isListening(), leaving.name);
        QVERIFY2(!m_realVoice->voiceTestActive(), leaving.name);
        QTRY_COMPARE(microphone.openStreams(), 0);
    }
}

void tst_VoiceTab::withoutAModel()
{
    ScriptedMicrophone microphone;
    Conversation &bar = provideVoice(VoiceFixture::parts(microphone));
    QVERIFY(bar.begin());
    bar.expectWarning("[OmniBar] voice: Whisper model not found");
    QVERIFY(bar.openTab(text("Voice")));
    QVERIFY(isSuiteLoaded(bar));
    QVERIFY(textOf(bar, "voiceTestState").startsWith(text("Whisper model not found. Download ")));
    bar.focus(bar.item("voiceTestMicBtn"));
    bar.key(Qt::Key_Return);
    QVERIFY(!m_realVoice->isListening());
    QVERIFY(textOf(bar, "voiceTestState").startsWith(text("Whisper model not found. Download ")));
    QCOMPARE(microphone.openStreams(), 0);
}

REGISTER_TEST(tst_VoiceTab, QGuiApplication)

#include "tst_VoiceTab.moc"
