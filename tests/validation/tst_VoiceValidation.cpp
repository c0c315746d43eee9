// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibleWalk.h"
#include "Contrast.h"
#include "Looks.h"
#include "OmniBarFixture.h"
#include "ScriptedVoice.h"

#include "TestRegistry.h"
#include "Timeouts.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <utility>

namespace
{

constexpr QSize s_minimumSize(460, 560);
constexpr int s_manySteps = 50; // more than the tab order has

const QStringList s_engineFlags = {QStringLiteral("whisperSmallAvailable"), QStringLiteral("whisperSmallQ5Available"),
                                   QStringLiteral("moonshineAvailable"), QStringLiteral("nemotronAvailable")};

QString shown(QQuickItem *item)
{
    return item ? item->property("text").toString() : QString();
}

//! Whether a control shows that it has the focus.
bool hasRing(QQuickItem *control)
{
    const auto rings = OmniBarFixture::itemsWhere(control->window()->contentItem(), [control](QQuickItem *ring) {
        return QString::fromLatin1(ring->metaObject()->className()).startsWith(QLatin1String("FocusRing"))
            && OmniBarFixture::isSeen(ring)
            && (ring->property("control").value<QQuickItem *>() == control
                || control->isAncestorOf(ring->property("control").value<QQuickItem *>()));
    });
    return !rings.isEmpty();
}

//! Name and role, as assistive technology reads them.
QString described(QQuickItem *control)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(control);
    return accessible ? QStringLiteral("%1 (%2)").arg(accessible->text(QAccessible::Name)).arg(accessible->role())
                      : QStringLiteral("unknown");
}

QString described(const char *name, QAccessible::Role role)
{
    return QStringLiteral("%1 (%2)").arg(QString::fromUtf8(name)).arg(role);
}

} // namespace

//! The voice validation window, with a voice path that does what a test says. One long file, because the tests share
//! the walk through the window and its voice path.
class tst_VoiceValidation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void fixedValues();
    void framesBeforeTheModel();
    void withoutVoice();
    void states_data();
    void states();
    void engines_data();
    void engines();
    void engineOfTheSettingsIsMissing();
    void refusedEngine();
    void levelBar();
    void nothingIsAnimated();
    void errorBanner();
    void notice();
    void buttons();
    void history();
    void suite();
    void runAll();
    void reachableAtMinimumSize_data();
    void reachableAtMinimumSize();
    void longTranslations();
    void tabOrder();
    void accessible_data();
    void accessible();
    void escapeCloses();
    void escapeClosesTheListFirst();
    void announcements();

private:
    bool open();
    void understand(const QString &text, double ms = 100);
    void enterSuite();
    bool resize(const QSize &size);
    //! Presses Tab until the focus is back at the start. What it visited, from the first control on.
    QList<QQuickItem *> walk();

    std::unique_ptr<OmniBarFixture> m_fixture;
    std::unique_ptr<ScriptedVoice> m_voice;
};

void tst_VoiceValidation::init()
{
    m_fixture = std::make_unique<OmniBarFixture>();
    m_fixture->omit("agentBridge"); // not used by this window
    m_voice = std::make_unique<ScriptedVoice>(*m_fixture);
}

void tst_VoiceValidation::cleanup()
{
    m_voice.reset();
    m_fixture.reset();
}

bool tst_VoiceValidation::open()
{
    return m_fixture->open(QStringLiteral("VoiceValidation.qml"))
        && QTest::qWaitFor([this] { return m_fixture->property("contentShown").toBool(); }, Timeouts::Default)
        && m_fixture->settle();
}

void tst_VoiceValidation::understand(const QString &text, double ms)
{
    m_voice->set("lastTranscriptionMs", ms);
    m_voice->emitSignal("transcriptReady", text);
}

void tst_VoiceValidation::enterSuite()
{
    m_fixture->click("suiteSwitch");
    QTRY_VERIFY(shown(m_fixture->item("sentencePosition")).startsWith(QLatin1String("Sentence 1 / 18")));
    QVERIFY(m_fixture->settle());
}

bool tst_VoiceValidation::resize(const QSize &size)
{
    m_fixture->window()->resize(size);
    return QTest::qWaitFor(
        [&] { return m_fixture->item("validationPane")->height() == size.height() && m_fixture->settle(); },
        Timeouts::Default);
}

QList<QQuickItem *> tst_VoiceValidation::walk()
{
    QList<QQuickItem *> stops;
    for (int step = 0; step < s_manySteps; ++step) {
        m_fixture->key(Qt::Key_Tab);
        QQuickItem *stop = m_fixture->window()->activeFocusItem();
        if (!stops.isEmpty() && stop == stops.first()) {
            return stops;
        }
        stops.append(stop);
    }
    return {};
}

void tst_VoiceValidation::fixedValues()
{
    QVERIFY(open());
    const QQuickWindow *window = m_fixture->window();
    QCOMPARE(window->title(), text("Tovi — Voice STT Validation"));
    QCOMPARE(window->size(), QSize(580, 720));
    QCOMPARE(window->minimumSize(), s_minimumSize);
    QCOMPARE(window->color(), QColor("#1a1a22"));
    QCOMPARE(m_voice->object()->property("batchSttMode").toBool(), true);
    QCOMPARE(m_voice->calls(), QStringList(text("loadModel()")));
    // VoiceBridge has no property for it.
    QCOMPARE(shown(m_fixture->item("subtitle")), QString());
    QCOMPARE(shown(m_fixture->item("captureLine")), text("Stops after ~1.5 s silence · 16 kHz mono"));
    QCOMPARE(shown(m_fixture->item("scoresLine")), text("Scores · whisper —"));
    QVERIFY(m_fixture->isSeen(m_fixture->item("historyList")));
    QVERIFY(!m_fixture->item("suiteControls"));
    m_voice->set("liveSttAvailable", true);
    QCOMPARE(shown(m_fixture->item("captureLine")), text("Live partials enabled (Nemotron streaming)"));
}

//! The frame is soon there, and loading a model blocks.
void tst_VoiceValidation::framesBeforeTheModel()
{
    const QObject *window = m_fixture->load(QStringLiteral("VoiceValidation.qml"));
    QVERIFY(window);
    QCOMPARE(m_voice->object()->property("batchSttMode").toBool(), true);
    QVERIFY(!window->findChild<QQuickItem *>(text("validationPane")));
    int framesWithContent = 0;
    QStringList callsBefore;
    connect(qobject_cast<const QQuickWindow *>(window), &QQuickWindow::frameSwapped, this, [&] {
        if (window->property("firstFrameShown").toBool() && ++framesWithContent == 1) {
            callsBefore = m_voice->calls();
        }
    });
    QTRY_VERIFY(window->property("contentShown").toBool());
    QCOMPARE(callsBefore, QStringList());
    QVERIFY(framesWithContent > 0);
    QCOMPARE(m_voice->calls(), QStringList(text("loadModel()")));
}

void tst_VoiceValidation::withoutVoice()
{
    m_fixture.reset(); // there is only one log
    m_fixture = std::make_unique<OmniBarFixture>();
    m_fixture->omit();
    QVERIFY(open());
    QCOMPARE(shown(m_fixture->item("stateWord")), text("Unavailable"));
    for (const char *name : {"engineBox", "listenBtn", "cancelBtn", "reloadBtn"}) {
        QVERIFY2(!m_fixture->item(name)->isEnabled(), name);
    }
    enterSuite();
    QVERIFY(!m_fixture->item("runAllBtn")->isEnabled());
    m_fixture->screenshot("validation-unavailable");
    m_fixture->key(Qt::Key_Escape);
    QTRY_VERIFY(!m_fixture->window()->isVisible());
}

void tst_VoiceValidation::states_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("color");
    QTest::newRow("no model") << QString() << "No model"
                              << "#888";
    QTest::newRow("ready") << "isModelLoaded"
                           << "Ready"
                           << "#43a047";
    QTest::newRow("listening") << "isListening"
                               << "Listening"
                               << "#e53935";
    QTest::newRow("transcribing") << "isTranscribing"
                                  << "Transcribing"
                                  << "#fb8c00";
}

void tst_VoiceValidation::states()
{
    QFETCH(const QString, property);
    QFETCH(const QString, word);
    QFETCH(const QString, color);
    QVERIFY(open());
    if (!property.isEmpty()) {
        m_voice->set(property.toUtf8().constData(), true);
    }
    m_voice->set("inputLevel", property == QLatin1String("isListening") ? 0.02 : 0);
    QCOMPARE(shown(m_fixture->item("stateWord")), word);
    QCOMPARE(colourOf(m_fixture->item("statePill")), rgb(color));
    QCOMPARE(m_fixture->item("listenBtn")->property("label").toString(),
             property == QLatin1String("isListening") ? text("Stop") : text("Start listening"));
    m_fixture->screenshot(QStringLiteral("validation-") + QString(word).replace(QLatin1Char(' '), QLatin1Char('-')));
}

void tst_VoiceValidation::engines_data()
{
    QTest::addColumn<QStringList>("flags");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("hints");
    const QString moonshine = QStringLiteral("Moonshine: setup-moonshine.sh");
    const QString nemotron = QStringLiteral("Nemotron: setup-nemotron.sh");
    const QString both = moonshine + QLatin1Char('\n') + nemotron;
    QTest::newRow("none") << QStringList() << 1 << both;
    QTest::newRow("one") << QStringList(s_engineFlags.at(2)) << 2 << nemotron;
    QTest::newRow("all") << s_engineFlags << 5 << QString();
}

void tst_VoiceValidation::engines()
{
    QFETCH(const QStringList, flags);
    QFETCH(const int, count);
    QFETCH(const QString, hints);
    m_voice->set("sttBackend", QStringLiteral("whisper"));
    for (const QString &flag : flags) {
        m_voice->set(flag.toUtf8().constData(), true);
    }
    QVERIFY(open());
    QQuickItem *box = m_fixture->item("engineBox");
    QCOMPARE(box->property("count").toInt(), count);
    QCOMPARE(box->property("displayText").toString(), text("Whisper base.en (~142 MB)"));
    QCOMPARE(shown(m_fixture->item("engineHints")), hints);
    QCOMPARE(m_fixture->isSeen(m_fixture->item("engineHints")), !hints.isEmpty());
    m_fixture->screenshot(QStringLiteral("validation-engines-") + QLatin1String(QTest::currentDataTag()));

    // Chosen by the keyboard.
    m_fixture->focus(box);
    m_fixture->key(Qt::Key_Space);
    QTRY_VERIFY(box->property("popup").value<QObject *>()->property("opened").toBool());
    for (int row = 1; row < count; ++row) {
        m_fixture->key(Qt::Key_Down);
    }
    m_fixture->screenshot(QStringLiteral("validation-choosing-") + QLatin1String(QTest::currentDataTag()));
    m_fixture->key(Qt::Key_Return);
    const QString wanted = count == 1 ? text("whisper") : count == 2 ? text("moonshine") : text("nemotron");
    QCOMPARE(m_voice->object()->property("sttBackend").toString(), wanted);
    // It follows a change from elsewhere.
    m_voice->set("sttBackend", QStringLiteral("whisper"));
    QCOMPARE(box->property("currentIndex").toInt(), 0);
}

void tst_VoiceValidation::engineOfTheSettingsIsMissing()
{
    QVERIFY(open());
    QQuickItem *box = m_fixture->item("engineBox");
    QCOMPARE(box->property("displayText").toString(), text("whisper-small-q5 is not installed"));
    QCOMPARE(box->property("currentIndex").toInt(), -1);
    m_voice->set("whisperSmallQ5Available", true);
    QCOMPARE(box->property("displayText").toString(), text("Whisper small.en Q5_1 (~182 MB) ★"));
}

void tst_VoiceValidation::refusedEngine()
{
    QObject *refusing = m_fixture->fake("FakeVoiceBridge { moonshineAvailable: true; sttBackend: 'whisper';"
                                        " onSttBackendChanged: sttBackend = 'whisper' }");
    m_fixture->provide("voiceBridge", refusing);
    QVERIFY(open());
    QQuickItem *box = m_fixture->item("engineBox");
    m_fixture->focus(box);
    m_fixture->key(Qt::Key_Down);
    QCOMPARE(box->property("currentIndex").toInt(), 0);
    QCOMPARE(box->property("displayText").toString(), text("Whisper base.en (~142 MB)"));
}

void tst_VoiceValidation::levelBar()
{
    QVERIFY(open());
    const QQuickItem *bar = m_fixture->item("levelBar");
    const qreal whole = m_fixture->item("levelTrack")->width();
    QVERIFY(whole > 400);
    for (const auto &[level, share] : {std::pair(0.0, 0.0), {0.01, 0.25}, {0.03, 0.75}, {0.04, 1.0}, {0.5, 1.0}}) {
        m_voice->set("inputLevel", level);
        QCOMPARE(bar->width(), whole * share);
    }
}

//! Frames while the level stays the same are counted with the real microphone.
void tst_VoiceValidation::nothingIsAnimated()
{
    QVERIFY(open());
    enterSuite();
    for (const char *state : {"isListening", "isTranscribing"}) {
        m_voice->set(state, true);
        QVERIFY(m_fixture->settle());
        QCOMPARE(runningIn(m_fixture->window()), QStringList());
        m_voice->set(state, false);
    }
}

void tst_VoiceValidation::errorBanner()
{
    QVERIFY(open());
    QVERIFY(!m_fixture->isSeen(m_fixture->item("errorBanner")));
    const QString error = QStringLiteral("<b>broken</b>\n") + QStringLiteral("engine ").repeated(200);
    m_voice->set("lastError", error);
    m_voice->emitSignal("errorOccurred", error);
    QVERIFY(m_fixture->settle());
    QVERIFY(m_fixture->isSeen(m_fixture->item("errorBanner")));
    QVERIFY(shown(m_fixture->item("errorText")).startsWith(QStringLiteral("<b>broken</b>\ufffdengine engine")));
    QCOMPARE(m_fixture->item("errorText")->property("lineCount").toInt(), 4);
    QCOMPARE(shown(m_fixture->item("stateWord")), text("Error"));
    QCOMPARE(colourOf(m_fixture->item("statePill")), rgb(text("#ef5350")));
    QVERIFY(!m_fixture->isSeen(m_fixture->item("notice")));
    m_fixture->screenshot("validation-error");
    m_fixture->hover(m_fixture->item("errorText"));
    QTRY_COMPARE(tipsOf(*m_fixture).size(), 1);
    m_voice->set("lastError", QString());
    understand(QStringLiteral("a"));
    QVERIFY(!m_fixture->isSeen(m_fixture->item("errorBanner")));
}

void tst_VoiceValidation::notice()
{
    QVERIFY(open());
    m_voice->emitSignal("errorOccurred", text("No speech detected"));
    QCOMPARE(shown(m_fixture->item("notice")), text("No speech detected"));
    QVERIFY(!m_fixture->isSeen(m_fixture->item("errorBanner")));
    QVERIFY(m_fixture->settle());
    m_fixture->click("listenBtn");
    QVERIFY(!m_fixture->isSeen(m_fixture->item("notice")));
}

void tst_VoiceValidation::buttons()
{
    QVERIFY(open());
    m_voice->takeCalls();
    m_fixture->click("listenBtn");
    m_voice->set("isListening", true);
    m_fixture->click("listenBtn");
    m_fixture->click("cancelBtn");
    m_fixture->click("reloadBtn");
    QCOMPARE(m_voice->takeCalls(),
             QStringList(
                 {text("startListening()"), text("stopListening()"), text("cancelListening()"), text("loadModel()")}));
}

void tst_VoiceValidation::history()
{
    QVERIFY(open());
    const QString sentence = QStringLiteral("<i>move</i>\nthe active window ");
    for (int i = 0; i < 21; ++i) {
        understand(QString::number(i) + QLatin1Char(' ') + sentence.repeated(20), 340.6);
    }
    QVERIFY(m_fixture->settle());
    QCOMPARE(m_fixture->item("historyList")->property("count").toInt(), 20);
    // The newest one is shown, in spite of the rows that were added above the first.
    QQuickItem *list = m_fixture->item("historyList");
    const auto rowAtTop = [&] {
        const auto rows = OmniBarFixture::itemsWhere(list, [&](QQuickItem *item) {
            return item->objectName() == text("resultRow")
                && OmniBarFixture::place(item).contains(OmniBarFixture::place(list).topLeft() + QPointF(20, 20));
        });
        return rows.value(0);
    };
    QQuickItem *row = rowAtTop();
    QVERIFY(row);
    QCOMPARE(row->property("index").toInt(), 0);
    const QString line = shown(m_fixture->itemIn(row, text("rowTranscript")));
    QVERIFY(line.startsWith(QStringLiteral("20 <i>move</i>\ufffdthe active")));
    static const QRegularExpression s_heading(text("^\\d\\d:\\d\\d:\\d\\d · whisper-small-q5 · 341 ms$"));
    QVERIFY(s_heading.match(shown(m_fixture->itemIn(row, text("rowHeading")))).hasMatch());
    m_fixture->screenshot("validation-history");
    m_fixture->hover(row);
    QTRY_COMPARE(tipsOf(*m_fixture), QStringList(line));

    // A user who reads older rows isn't disturbed.
    m_fixture->focus(row);
    m_fixture->key(Qt::Key_Down);
    QQuickItem *focused = m_fixture->window()->activeFocusItem();
    QCOMPARE(focused->property("index").toInt(), 1);
    const QString name = described(focused);
    understand(QStringLiteral("newer"));
    QVERIFY(m_fixture->settle());
    QCOMPARE(described(m_fixture->window()->activeFocusItem()), name);
    QCOMPARE(m_fixture->window()->activeFocusItem()->property("index").toInt(), 2);
}

void tst_VoiceValidation::suite()
{
    QVERIFY(open());
    enterSuite();
    QVERIFY(!m_fixture->isSeen(m_fixture->item("historyList")));
    QCOMPARE(shown(m_fixture->item("sentencePosition")), text("Sentence 1 / 18 · command"));
    QCOMPARE(shown(m_fixture->item("sentenceText")), text("“open the browser”"));
    m_fixture->click("nextBtn");
    m_fixture->click("nextBtn");
    m_fixture->click("prevBtn");
    QCOMPARE(shown(m_fixture->item("sentenceText")), text("“set brightness to fifty percent”"));
    understand(QStringLiteral("set brightness to fifty percent"), 120);
    understand(QStringLiteral("turn dark"), 80);
    QVERIFY(m_fixture->settle());
    QCOMPARE(shown(m_fixture->item("sentencePosition")), text("Sentence 4 / 18 · command"));
    const QList<QQuickItem *> rows = m_fixture->items("resultRow");
    QCOMPARE(rows.size(), 2);
    const auto heading = [&](int row) { return m_fixture->itemIn(rows.at(row), text("rowHeading")); };
    QCOMPARE(shown(heading(0)), text("50% · s03 · command · whisper-small-q5 · 80 ms"));
    QCOMPARE(shown(heading(1)), text("100% · s02 · command · whisper-small-q5 · 120 ms"));
    QCOMPARE(colourOf(heading(0)), colourOf(m_fixture->object(text("validationTheme")), "warningText"));
    QCOMPARE(colourOf(heading(1)), colourOf(m_fixture->object(text("validationTheme")), "positiveText"));
    m_fixture->click("suiteSwitch");
    QVERIFY(m_fixture->isSeen(m_fixture->item("historyList")));
    QVERIFY(!m_fixture->isSeen(m_fixture->item("suiteControls")));
}

void tst_VoiceValidation::runAll()
{
    m_voice->set("whisperSmallQ5Available", true);
    m_voice->set("moonshineAvailable", true);
    QVERIFY(open());
    enterSuite();
    m_voice->takeCalls();
    m_fixture->click("runAllBtn");
    QStringList expected {text("startListening()")};
    QCOMPARE(m_voice->calls(), expected);
    for (const char *heard : {"open the browser", "brightness fifty", "turn on dark mode", "mute volume"}) {
        understand(text(heard), 140);
        expected.append(text("startListening()"));
        QTRY_COMPARE(m_voice->calls(), expected);
    }
    m_voice->set("isListening", true);
    m_voice->set("inputLevel", 0.03);
    QVERIFY(m_fixture->settle());
    QCOMPARE(shown(m_fixture->item("scoresLine")),
             text("Scores · whisper —  |  whisper-small-q5 77% avg · 140 ms  |  moonshine —"));
    QCOMPARE(shown(m_fixture->item("runLine")), text("Running all sentences. Cancel ends the run."));
    m_fixture->screenshot("validation-run");
    m_voice->set("isListening", false);
    m_voice->emitSignal("errorOccurred", text("No speech detected"));
    QCOMPARE(shown(m_fixture->item("runLine")), text("The run waits. Start listening to go on with this sentence."));
    QVERIFY(m_fixture->settle());
    m_fixture->screenshot("validation-run-waits");
    m_fixture->click("cancelBtn");
    QVERIFY(!m_fixture->isSeen(m_fixture->item("runLine")));
    QCOMPARE(m_fixture->property("suiteRunAll").toBool(), false);
}

void tst_VoiceValidation::reachableAtMinimumSize_data()
{
    QTest::addColumn<bool>("suite");
    QTest::newRow("free") << false;
    QTest::newRow("suite") << true;
}

//! With everything that takes room, each control is scrolled into view, and the pane is never wider than the window.
void tst_VoiceValidation::reachableAtMinimumSize()
{
    QFETCH(const bool, suite);
    for (const QString &flag : s_engineFlags) {
        m_voice->set(flag.toUtf8().constData(), true);
    }
    QVERIFY(open());
    if (suite) {
        enterSuite();
    }
    for (int i = 0; i < 14; ++i) {
        understand(QStringLiteral("move the active window to the second monitor and further"));
    }
    const QString error = QStringLiteral("engine broken ").repeated(60);
    m_voice->set("lastError", error);
    m_voice->emitSignal("errorOccurred", error);
    m_voice->emitSignal("errorOccurred", error + QStringLiteral("again"));
    QVERIFY(resize(s_minimumSize));
    m_fixture->screenshot(suite ? "validation-minimum-suite" : "validation-minimum-free");
    const QList<QQuickItem *> stops = walk();
    QVERIFY(stops.size() >= (suite ? 9 : 6));
    const QRectF window({}, QSizeF(s_minimumSize));
    for (int i = 0; i < stops.size(); ++i) {
        m_fixture->key(Qt::Key_Tab);
        QVERIFY(m_fixture->settle());
        QQuickItem *stop = m_fixture->window()->activeFocusItem();
        QVERIFY2(window.contains(m_fixture->place(stop)), qPrintable(described(stop)));
        QVERIFY2(hasRing(stop), qPrintable(described(stop)));
    }
    m_fixture->screenshot(suite ? "validation-minimum-suite-end" : "validation-minimum-free-end");
}

//! Texts of twice the length stay inside the smallest window, except for the title.
void tst_VoiceValidation::longTranslations()
{
    m_fixture->provide("i18n", m_fixture->fake("QtObject { function tr(text) { return text + ' ' + text; } }"));
    QVERIFY(open());
    m_fixture->click("suiteSwitch");
    m_voice->emitSignal("errorOccurred", text("No speech detected"));
    m_voice->set("isListening", true);
    QVERIFY(resize(s_minimumSize));
    m_fixture->screenshot("validation-long-texts");
    const auto items = OmniBarFixture::itemsWhere(m_fixture->item("validationPane"), [](QQuickItem *item) {
        return OmniBarFixture::isSeen(item) && (item->inherits("QQuickText") || item->inherits("QQuickAbstractButton"));
    });
    QVERIFY(items.size() > 15);
    for (QQuickItem *item : items) {
        const QRectF place = m_fixture->place(item);
        QVERIFY2(place.left() >= 0 && place.right() <= s_minimumSize.width(), qPrintable(described(item)));
        if (item->property("truncated").toBool() && shown(item) != text("Voice STT Validation Voice STT Validation")) {
            // Only the engine, which is whole in a tooltip.
            QVERIFY2(shown(item).startsWith(text("whisper-small-q5 is not")), qPrintable(described(item)));
            m_fixture->hover(item);
            QTRY_COMPARE(tipsOf(*m_fixture), QStringList(shown(item)));
        }
    }
}

void tst_VoiceValidation::tabOrder()
{
    m_voice->set("sttBackend", QStringLiteral("whisper"));
    QVERIFY(open());
    enterSuite();
    understand(QStringLiteral("open browser"), 80);
    QVERIFY(m_fixture->settle());
    const QList<QQuickItem *> stops = walk();
    QStringList names;
    for (QQuickItem *stop : stops) {
        names.append(described(stop));
        m_fixture->focus(stop);
        QVERIFY2(hasRing(stop), qPrintable(names.constLast()));
    }
    // From the switch on, which has been clicked.
    const QStringList expected {
        described("Prev", QAccessible::Button),
        described("Next", QAccessible::Button),
        described("Run all sentences", QAccessible::Button),
        described("67% · s01 · command · whisper · 80 ms, open the browser, open browser", QAccessible::ListItem),
        described("Engine", QAccessible::ComboBox),
        described("Start listening", QAccessible::Button),
        described("Cancel", QAccessible::Button),
        described("Reload model", QAccessible::Button),
        described("Sentence suite", QAccessible::CheckBox),
    };
    const int first = names.indexOf(expected.first());
    QVERIFY2(first >= 0, qPrintable(names.join(QLatin1Char('\n'))));
    QCOMPARE(names.mid(first) + names.mid(0, first), expected);
    QCOMPARE(described(m_fixture->item("levelTrack")), described("Microphone level", QAccessible::Indicator));
    QCOMPARE(described(m_fixture->item("stateWord")), described("No model", QAccessible::StaticText));
    m_fixture->screenshot("validation-focus");
}

void tst_VoiceValidation::accessible_data()
{
    QTest::addColumn<bool>("suite");
    QTest::addColumn<QSize>("size");

    for (const QSize size : {QSize(580, 720), s_minimumSize}) {
        const QString name = QStringLiteral(", %1 pixels wide").arg(size.width());
        QTest::newRow(qPrintable(QStringLiteral("history") + name)) << false << size;
        QTest::newRow(qPrintable(QStringLiteral("suite") + name)) << true << size;
    }
}

void tst_VoiceValidation::accessible()
{
    QFETCH(bool, suite);
    QFETCH(QSize, size);

    QAccessible::setActive(true);
    m_voice->set("sttBackend", QStringLiteral("whisper"));
    QVERIFY(open());
    QVERIFY(resize(size));
    if (suite) {
        enterSuite();
    }
    understand(QStringLiteral("open browser"), 80);
    understand(QStringLiteral("close browser"), 80);
    m_voice->emitSignal("errorOccurred", text("No speech detected"));
    QVERIFY(m_fixture->settle());
    const QStringList wrong = Contrast::faintTexts(m_fixture->window()) + AccessibleWalk::faults(m_fixture->window());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QStringLiteral("\n    "))));
}

void tst_VoiceValidation::escapeCloses()
{
    QVERIFY(open());
    m_voice->takeCalls();
    m_fixture->key(Qt::Key_Escape);
    QTRY_VERIFY(!m_fixture->window()->isVisible());
    QCOMPARE(m_voice->takeCalls(), QStringList(text("cancelListening()")));
    QCOMPARE(m_voice->object()->property("batchSttMode").toBool(), true);
}

void tst_VoiceValidation::escapeClosesTheListFirst()
{
    QVERIFY(open());
    QQuickItem *box = m_fixture->item("engineBox");
    const QObject *list = box->property("popup").value<QObject *>();
    m_fixture->focus(box);
    m_fixture->key(Qt::Key_Space);
    QTRY_VERIFY(list->property("opened").toBool());
    m_fixture->key(Qt::Key_Escape);
    QTRY_VERIFY(!list->property("visible").toBool());
    QVERIFY(m_fixture->window()->isVisible());
    m_fixture->key(Qt::Key_Escape);
    QTRY_VERIFY(!m_fixture->window()->isVisible());
}

void tst_VoiceValidation::announcements()
{
    QVERIFY(open());
    const auto announced = [this] {
        QStringList announcements;
        for (QQuickItem *item : m_fixture->items("announcement")) {
            if (item->isVisible()) {
                announcements.append(described(item));
            }
        }
        return announcements;
    };
    QCOMPARE(announced(), QStringList());
    m_voice->set("isListening", true);
    QCOMPARE(announced(), QStringList(described("Listening...", QAccessible::Notification)));
    m_voice->set("isListening", false);
    QCOMPARE(announced(), QStringList(described("Listening ended", QAccessible::Notification)));
    understand(QStringLiteral("go back"));
    QCOMPARE(announced(), QStringList(described("Understood: go back", QAccessible::Notification)));
}

REGISTER_TEST(tst_VoiceValidation, QGuiApplication)

#include "tst_VoiceValidation.moc"
