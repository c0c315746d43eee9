// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "Conversation.h"
#include "LongTexts.h"
#include "Looks.h"
#include "Mirroring.h"
#include "Scenes.h"
#include "ScriptedVoice.h"

#include "SharedWindow.h"
#include "TestRegistry.h"
#include "Timeouts.h"

#include <QGuiApplication>
#include <QTest>

#include <memory>

using Scenes::Scene;

namespace
{

//! As in tst_LongTexts, and bold titles, because Arabic letters are wider.
const QStringList s_elided = {QStringLiteral("Tell me more"),
                              QStringLiteral("What else?"),
                              QStringLiteral("List windows"),
                              QStringLiteral("Focus window"),
                              QStringLiteral("Show what is open now."),
                              QStringLiteral("Go deeper on the last answer."),
                              QStringLiteral("{names} attached — ask your question…")};

//! Untrusted texts of one or more lines are aligned by their own direction.
const QStringList s_ownDirection = {QStringLiteral("templateStatus"), QStringLiteral("sentenceText"),
                                    QStringLiteral("title"),          QStringLiteral("suggestionTitle"),
                                    QStringLiteral("suggestionBody"), QStringLiteral("entry"),
                                    QStringLiteral("prompt")};

//! A conversation in the user's language.
bool conversation(Conversation &bar)
{
    bar.setProperty("chatExpanded", true);
    return bar.exchange(
        QStringLiteral("كيف أفتح مدير الملفات؟"),
        QStringLiteral("استخدم **Dolphin**، نسبة 80% من المستخدمين يفعلون ذلك كل يوم من أجل ملفاتهم وصورهم.\n\n"
                       "- القائمة الأولى\n- `/home/me/notes.txt`\n\n1. أولا\n2. ثانيا\n\n> اقتباس\n\n"
                       "```\ndolphin --new-window # نافذة\n```"));
}

//! A table and a list in the user's language, in light colours.
bool widgets(Conversation &bar)
{
    bar.setLight(true);
    Q_EMIT bar.agent()->structuredReplyReceived(
        QStringLiteral(R"({"blocks":[{"type":"list","title":"قائمة","items":["حليب طازج", "milk"]},)"
                       R"({"type":"list","items":["حليب طازج", "milk"]},)"
                       R"({"type":"table","columns":["الاسم","النسبة"],"rows":[["البيت","18%"]]}]})"));
    bar.emitReply(QStringLiteral("in widgets"));
    return QTest::qWaitFor([&] { return bar.rowItem(2) != nullptr; }, Timeouts::Default);
}

//! A list that scrolls, so that its scroll bar takes some of the width.
bool manySessions(Conversation &bar)
{
    if (!bar.openTab(QStringLiteral("Sessions"))) {
        return false;
    }
    bar.evaluate(QStringLiteral(
        "sdk.sessionsListed(Array(30).fill().map((_, n) => ({ id: 'ses_' + n, name: 'Session ' + n })))"));
    return bar.settle() && bar.items(QStringLiteral("managedSession")).size() > 3;
}

bool suggestion(Conversation &bar)
{
    bar.evaluate(
        QStringLiteral("omniBar.workspaceSuggestionDialogData = { 'title': 'اجتماع', 'body': 'هل أفتح مساحة العمل؟',"
                       " 'actions': [{ 'id': 'prepare', 'label': 'نعم' }, { 'id': 'dismiss', 'label': 'Not now' }] }"));
    bar.setProperty("workspaceSuggestionDialogOpen", true);
    return QTest::qWaitFor([&] { return bar.items(QStringLiteral("suggestionAction")).size() == 2; },
                           Timeouts::Default);
}

} // namespace

//! The OmniBar in a language that is written from right to left.
class tst_Mirroring : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(Mirroring::use()); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void mirrored_data();
    void mirrored();
    void bubble();
    void arrowKeys();
    void arrows();

private:
    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
};

void tst_Mirroring::mirrored_data()
{
    Scenes::add();
    Scenes::addMenus();
    QTest::newRow("Arabic conversation") << Scene(conversation);
    QTest::newRow("Arabic widgets") << Scene(widgets);
    QTest::newRow("list that scrolls") << Scene(manySessions);
    QTest::newRow("Arabic suggestion") << Scene(suggestion);
}

void tst_Mirroring::mirrored()
{
    QFETCH(Scene, scene);
    Conversation &bar = m_window.take();
    m_voice->set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    bar.screenshot(QStringLiteral("mirrored-") + QLatin1String(QTest::currentDataTag()));
    // The bubble has no text.
    if (!bar.property("compactMode").toBool()) {
        QCOMPARE(LongTexts::faults(bar.window(), s_elided), QString());
    }
    const QString faults = Mirroring::faults(bar, s_ownDirection);
    QVERIFY2(faults.isEmpty(), qPrintable(faults));
}

void tst_Mirroring::bubble()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.key(Qt::Key_Escape);
    QTRY_COMPARE(bar.window()->position(),
                 QPoint(bar.property("bubbleMargin").toInt(), bar.property("bubbleMargin").toInt()));
}

void tst_Mirroring::arrowKeys()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(Scenes::settings(bar));
    QVERIFY(bar.settle());

    QQuickItem *strip = bar.item(QStringLiteral("settingsTabs"));
    const auto current = [strip] { return strip->property("currentIndex").toInt(); };
    strip->property("currentItem").value<QQuickItem *>()->forceActiveFocus(Qt::TabFocusReason);
    bar.key(Qt::Key_Left);
    QCOMPARE(current(), 1);
    bar.key(Qt::Key_Right);
    QCOMPARE(current(), 0);

    QVERIFY(bar.settle());
    QQuickItem *slider = bar.item(QStringLiteral("opacitySlider"));
    QCOMPARE(slider->property("value").toReal(), 1.0);
    slider->forceActiveFocus(Qt::TabFocusReason);
    bar.key(Qt::Key_Right);
    QCOMPARE(slider->property("value").toReal(), 0.95);
    bar.key(Qt::Key_Left);
    QCOMPARE(slider->property("value").toReal(), 1.0);
}

void tst_Mirroring::arrows()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(Scenes::conversation(bar));
    QTRY_VERIFY_WITH_TIMEOUT(iconsIn(bar.item(QStringLiteral("suggestionCard"))).contains(QStringLiteral("arrow-left")),
                             Timeouts::Default);
}

REGISTER_TEST(tst_Mirroring, QGuiApplication)

#include "tst_Mirroring.moc"
