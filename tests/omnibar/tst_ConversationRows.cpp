// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Presses.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQmlProperty>
#include <QRegularExpression>
#include <QTest>

namespace
{

const QStringList s_roles {QStringLiteral("user"), QStringLiteral("assistant"), QStringLiteral("system")};

//! One row of each role, in the order of s_roles.
bool showAllRoles(Conversation &bar)
{
    bar.invoke("appendUserMessage", {QStringLiteral("a question")});
    bar.emitReply(QStringLiteral("an answer"));
    bar.invoke("appendSystemMessage", {QStringLiteral("a note")});
    return QTest::qWaitFor([&] { return bar.rowItem(0) && bar.rowItem(1) && bar.rowItem(2); }, 10000) && bar.settle();
}

bool atEnd(QQuickItem *list)
{
    return list->property("atYEnd").toBool();
}

//! More replies than the panel has room for.
void fill(Conversation &bar)
{
    for (int i = 0; i < 30; ++i) {
        bar.emitReply(QStringLiteral("Reply number %1").arg(i));
    }
}

} // namespace

//! The looks of the rows, and what a user can do with them.
class tst_ConversationRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void labels();
    void time();
    void bubbles_data();
    void bubbles();
    void newBubblesFadeIn();
    void bubbleHeight();
    void longWordsWrap();
    void percentagesOfTheUserArePlain();
    void actionsAreForReplies();
    void copy();
    void copyOfTheFallback();
    void votes();
    void scrollsToTheEnd();
    void followsWhatGrows();
    void userWhoScrolledBackIsLeftAlone();
    void thousandRows();
    void disclaimer();

private:
    SharedWindow<Conversation> m_window;
};

void tst_ConversationRows::labels()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(showAllRoles(bar));
    const QStringList authors {QStringLiteral("You"), QStringLiteral("Tovi"), QStringLiteral("System")};
    for (int row = 0; row < 3; ++row) {
        QQuickItem *item = bar.rowItem(row);
        const QStringList texts = bar.textsIn(item);
        QCOMPARE(texts.value(0), authors.at(row));
        QCOMPARE(texts.value(1), QStringLiteral("·"));
        QCOMPARE(texts.value(2), item->property("time").toString());
        QQuickItem *label = bar.itemsWhere(item, [](QQuickItem *child) { return child->inherits("QQuickText"); })
                                .constFirst()
                                ->parentItem();
        if (row == 0) {
            QCOMPARE(label->x() + label->width(), item->width() - 4);
        } else {
            QCOMPARE(label->x(), 38.0);
        }
    }
}

void tst_ConversationRows::time()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(showAllRoles(bar));
    const QRegularExpression timeOfDay(QStringLiteral("^([A-Z][a-z]{2} \\d{1,2}, )?(1[0-2]|[1-9]):[0-5]\\d [AP]M$"));
    QVERIFY(timeOfDay.match(bar.rowItem(0)->property("time").toString()).hasMatch());
    bar.evaluate(QStringLiteral("omniBar.chatModel.setProperty(1, 'createdAt', new Date(2001, 1, 3, 0, 5).getTime())"));
    QCOMPARE(bar.rowItem(1)->property("time").toString(), QStringLiteral("Feb 3, 12:05 AM"));
    bar.evaluate(QStringLiteral("omniBar.chatModel.setProperty(1, 'createdAt', 0)"));
    QCOMPARE(bar.rowItem(1)->property("time").toString(), QString());
}

void tst_ConversationRows::bubbles_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("light");
    QTest::addColumn<QString>("fill");
    QTest::addColumn<QString>("border");

    const auto color = qOverload<qreal, qreal, qreal, qreal>(&Conversation::color);
    QTest::newRow("user, dark") << 0 << false << color(0.25, 0.18, 0.35, 0.40) << color(0.40, 0.25, 0.60, 0.30);
    QTest::newRow("user, light") << 0 << true << color(0.55, 0.28, 0.92, 0.12) << color(0.55, 0.28, 0.92, 0.20);
    QTest::newRow("assistant, dark") << 1 << false << color(1, 1, 1, 0.03) << color(1, 1, 1, 0.08);
    QTest::newRow("assistant, light") << 1 << true << color(0, 0, 0, 0.04) << color(0, 0, 0, 0.08);
    QTest::newRow("system, dark") << 2 << false << color(0.40, 0.30, 0.10, 0.25) << color(0.60, 0.45, 0.15, 0.25);
    QTest::newRow("system, light") << 2 << true << color(0.60, 0.45, 0.10, 0.08) << color(0.65, 0.50, 0.15, 0.20);
}

void tst_ConversationRows::bubbles()
{
    QFETCH(int, row);
    QFETCH(bool, light);
    QFETCH(QString, fill);
    QFETCH(QString, border);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.setLight(light);
    QVERIFY(showAllRoles(bar));
    QQuickItem *bubble = bar.inRow(row, "messageBubble");
    QCOMPARE(bar.color(bubble), fill);
    QCOMPARE(bar.color(bubble, "border.color"), border);
    QCOMPARE(bubble->property("radius").toReal(), 14.0);
    QCOMPARE(QQmlProperty(bubble, QStringLiteral("border.width")).read().toReal(), 1.0);
    QVERIFY(qAbs(bubble->width() - bar.rowItem(row)->width() * 0.78) <= 0.5);
    // The user's bubbles are on the right, all others on the left beside their avatar.
    if (row == 0) {
        QCOMPARE(bubble->x() + bubble->width(), bar.rowItem(row)->width());
    } else {
        QVERIFY(bubble->x() >= 26);
    }
}

void tst_ConversationRows::newBubblesFadeIn()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("one line"));
    QTRY_VERIFY(bar.inRow(0, "messageBubble"));
    QQuickItem *bubble = bar.inRow(0, "messageBubble");
    const auto animation = [&](int index) {
        QQmlExpression expression(qmlContext(bubble), bubble, QStringLiteral("entrance.animations[%1]").arg(index));
        return expression.evaluate().value<QObject *>();
    };
    const QList<QPair<QString, double>> expected = {{QStringLiteral("opacity"), 0.0}, {QStringLiteral("scale"), 0.97}};
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(animation(i)->property("property").toString(), expected.at(i).first);
        QCOMPARE(animation(i)->property("from").toDouble(), expected.at(i).second);
        QCOMPARE(animation(i)->property("to").toDouble(), 1.0);
        QCOMPARE(bar.animationSpec(animation(i)), QStringLiteral("280 OutCubic"));
    }
    QVERIFY(bar.settle());
    QCOMPARE(bubble->opacity(), 1.0);
    QCOMPARE(bubble->scale(), 1.0);
}

void tst_ConversationRows::bubbleHeight()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("one line"));
    bar.emitReply(
        QStringLiteral("# Heading\n\n- one\n- two\n\n```\ncode\n```\n\n> said\n\nAnd a long paragraph. ").repeated(3));
    QTRY_VERIFY(bar.rowItem(1));
    QVERIFY(bar.settle());
    for (int row = 0; row < 2; ++row) {
        QQuickItem *bubble = bar.inRow(row, "messageBubble");
        QQuickItem *words = bar.inRow(row, "words");
        if (!bubble) {
            continue; // scrolled out of sight
        }
        QCOMPARE(bubble->height(), words->parentItem()->implicitHeight() + 18);
        // Neither the bubble nor the row cuts a line.
        QVERIFY(words->property("contentHeight").toReal() <= bubble->height());
        QVERIFY(words->property("contentWidth").toReal() <= words->width());
        QVERIFY(bar.rowItem(row)->height() >= bubble->y() + bubble->height());
    }
}

void tst_ConversationRows::longWordsWrap()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("x").repeated(4000));
    bar.invoke("appendUserMessage", {QStringLiteral("y").repeated(500)});
    QTRY_VERIFY(bar.rowItem(1));
    QVERIFY(bar.settle());
    for (int row = 0; row < 2; ++row) {
        QQuickItem *words = bar.inRow(row, "words");
        QVERIFY(words);
        QVERIFY(words->property("contentWidth").toReal() <= words->width());
        QVERIFY(words->property("contentHeight").toReal() > 5 * 14);
        QVERIFY(bar.place(words).right() <= bar.place(bar.item(QStringLiteral("messageList"))).right());
    }
}

void tst_ConversationRows::percentagesOfTheUserArePlain()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.invoke("appendUserMessage", {QStringLiteral("Is 50% enough?")});
    bar.emitReply(QStringLiteral("50% is."));
    QTRY_VERIFY(bar.rowItem(1));
    QVERIFY(!bar.inRow(0, "words")->property("text").toString().contains(QStringLiteral("#fbbf24")));
    QVERIFY(bar.inRow(1, "words")->property("text").toString().contains(QStringLiteral("#fbbf24")));
}

void tst_ConversationRows::actionsAreForReplies()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(showAllRoles(bar));
    for (const char *name : {"copyBtn", "thumbUpBtn", "thumbDownBtn"}) {
        QVERIFY(!bar.inRow(0, name));
        QVERIFY(bar.isSeen(bar.inRow(1, name)));
        QVERIFY(!bar.inRow(2, name));
        QCOMPARE(bar.inRow(1, name)->size(), QSizeF(24, 24));
    }
    const QRectF bubble = bar.place(bar.inRow(1, "messageBubble"));
    const QRectF last = bar.place(bar.inRow(1, "thumbDownBtn"));
    QCOMPARE(last.right(), bubble.right() - 10);
    QCOMPARE(last.top(), bubble.top() + 8);
    // Only lines beside the buttons are shorter.
    QQuickItem *words = bar.inRow(1, "words");
    QCOMPARE(bar.place(words).left(), bubble.left() + 12);
    QCOMPARE(bar.place(words).right(), bubble.right() - 12);
    const QSizeF corner = words->parentItem()->property("freeCorner").toSizeF();
    const QRectF first = bar.place(bar.inRow(1, "copyBtn"));
    QVERIFY(corner.width() >= bubble.right() - first.left());
    QVERIFY(corner.height() >= first.bottom() - bubble.top());
    QVERIFY(bar.inRow(0, "words")->parentItem()->property("freeCorner").toSizeF().isEmpty());
}

void tst_ConversationRows::copy()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    bar.emitReply(QStringLiteral("Take **this** & <that>."));
    QTRY_VERIFY(bar.inRow(0, "copyBtn"));
    QVERIFY(bar.settle());
    QQuickItem *button = bar.inRow(0, "copyBtn");
    QCOMPARE(button->property("iconName").toString(), QStringLiteral("edit-copy"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));

    bar.click(button);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Take **this** & <that>."));
    QCOMPARE(button->property("iconName").toString(), QStringLiteral("checkmark"));
    QCOMPARE(button->property("iconFallback").toString(), QStringLiteral("dialog-ok"));
    QCOMPARE(bar.color(button, "iconColor"), QStringLiteral("#ff4ade80"));
    QCOMPARE(button->findChild<QObject *>(QStringLiteral("copiedTimer"))->property("interval").toInt(), 1500);
    QTRY_COMPARE(button->property("iconName").toString(), QStringLiteral("edit-copy"));
}

void tst_ConversationRows::copyOfTheFallback()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.emitReply(QStringLiteral("drawn"));
    bar.evaluate(QStringLiteral("omniBar.chatModel.setProperty(0, 'fallbackText', 'read')"));
    QTRY_VERIFY(bar.inRow(0, "copyBtn"));
    QVERIFY(bar.settle());
    bar.click(bar.inRow(0, "copyBtn"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("read"));

    bar.evaluate(QStringLiteral("omniBar.chatModel.setProperty(0, 'fallbackText', '')"));
    bar.evaluate(QStringLiteral("omniBar.chatModel.setProperty(0, 'text', '')"));
    QQuickItem *button = bar.inRow(0, "copyBtn");
    QTRY_COMPARE(button->property("iconName").toString(), QStringLiteral("edit-copy"));
    bar.click(button);
    QCOMPARE(button->property("iconName").toString(), QStringLiteral("edit-copy"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("read"));
}

void tst_ConversationRows::votes()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.exchange(QStringLiteral("which one?"), QStringLiteral("this one"),
                         {{QStringLiteral("sessionId"), QStringLiteral("s-1")}}));
    QTRY_VERIFY(bar.inRow(1, "thumbUpBtn"));
    QVERIFY(bar.settle());
    QQuickItem *up = bar.inRow(1, "thumbUpBtn");
    QQuickItem *down = bar.inRow(1, "thumbDownBtn");

    bar.click(up);
    auto request = bar.bridge.takeRequest(QStringLiteral("messageFeedback"));
    QCOMPARE(request.params,
             (QJsonObject {{QStringLiteral("vote"), QStringLiteral("up")},
                           {QStringLiteral("messageIndex"), 1},
                           {QStringLiteral("messageText"), QStringLiteral("this one")},
                           {QStringLiteral("userQuery"), QStringLiteral("which one?")},
                           {QStringLiteral("sessionId"), QStringLiteral("s-1")},
                           {QStringLiteral("source"), QStringLiteral("omnibar")},
                           {QStringLiteral("inputMode"), QStringLiteral("text")}}));
    QVERIFY(up->property("active").toBool());
    QCOMPARE(bar.color(up, "iconColor"), QStringLiteral("#ff4ade80"));
    QCOMPARE(bar.color(up, "fill"), bar.color(0.29, 0.85, 0.50, 0.18));

    bar.click(down);
    request = bar.bridge.takeRequest(QStringLiteral("messageFeedback"));
    QCOMPARE(request.params.value(QStringLiteral("vote")).toString(), QStringLiteral("down"));
    QVERIFY(!up->property("active").toBool());
    QVERIFY(down->property("active").toBool());
    QCOMPARE(bar.color(down, "iconColor"), QStringLiteral("#ffef4444"));
    QCOMPARE(bar.color(down, "fill"), bar.color(0.90, 0.22, 0.21, 0.18));

    bar.click(down);
    QVERIFY(!down->property("active").toBool());
    QCOMPARE(bar.field(1, "feedbackVote").toString(), QString());
    // Taking a vote back sends nothing: the next request is the next prompt.
    bar.ask(QStringLiteral("and then?"));
    QVERIFY(bar.bridge.isAllTaken());
}

void tst_ConversationRows::scrollsToTheEnd()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    fill(bar);
    QQuickItem *list = bar.item(QStringLiteral("messageList"));
    QTRY_VERIFY(bar.rowItem(29));
    QVERIFY(bar.settle());
    QVERIFY(atEnd(list));
    QVERIFY(bar.place(list).contains(bar.place(bar.rowItem(29))));
    QQuickItem *scroll = bar.item(QStringLiteral("messageScrollBar"));
    QVERIFY(bar.isSeen(scroll));
    QCOMPARE(scroll->width(), 6.0);
    QCOMPARE(scroll->property("position").toReal() + scroll->property("size").toReal(), 1.0);
}

void tst_ConversationRows::followsWhatGrows()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    fill(bar);
    const auto request = bar.ask(QStringLiteral("more"));
    QQuickItem *list = bar.item(QStringLiteral("messageList"));
    QVERIFY(bar.settle());
    QVERIFY(bar.place(list).contains(bar.place(bar.item(QStringLiteral("thinkingIndicator")))));
    QVERIFY(bar.answer(request, QStringLiteral("A long reply.\n\n").repeated(20)));
    QVERIFY(bar.settle());
    QVERIFY(atEnd(list));
    // The end stays in sight when the panel's height changes.
    bar.setProperty("chatExpanded", true);
    QVERIFY(bar.settle());
    QVERIFY(atEnd(list));
    bar.setProperty("chatExpanded", false);
    QVERIFY(bar.settle());
    QVERIFY(atEnd(list));
}

void tst_ConversationRows::userWhoScrolledBackIsLeftAlone()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    fill(bar);
    QQuickItem *list = bar.item(QStringLiteral("messageList"));
    QTRY_VERIFY(bar.rowItem(29));
    QVERIFY(bar.settle());
    turnWheel(bar, list, 5);
    QTRY_VERIFY(!atEnd(list) && !list->property("moving").toBool());
    const qreal place = list->property("contentY").toReal();
    bar.agent()->sendIntent(QStringLiteral("from elsewhere"));
    QTRY_COMPARE(bar.item(QStringLiteral("thinkingIndicator"))->height(), 40.0);
    QVERIFY(bar.settle());
    QCOMPARE(list->property("contentY").toReal(), place);
    // The user's next prompt is shown again.
    bar.ask(QStringLiteral("on"));
    QTRY_VERIFY(bar.rowItem(30));
    QVERIFY(bar.settle());
    QVERIFY(atEnd(list));
}

void tst_ConversationRows::thousandRows()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    for (int i = 0; i < 500; ++i) {
        bar.invoke("appendUserMessage", {QStringLiteral("Question %1").arg(i)});
        bar.emitReply(QStringLiteral("Answer %1").arg(i));
    }
    QTRY_VERIFY(bar.rowItem(999));
    QVERIFY(bar.settle());
    QVERIFY(atEnd(bar.item(QStringLiteral("messageList"))));
    // Only the rows in sight and their neighbours were built.
    QVERIFY(bar.items(QStringLiteral("messageRow")).size() < 50);
}

void tst_ConversationRows::disclaimer()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(showAllRoles(bar));
    QQuickItem *words = bar.textItem(QStringLiteral("Tovi can make mistakes. Verify important information."));
    QVERIFY(words);
    QVERIFY(bar.place(bar.item(QStringLiteral("chatPanel"))).contains(bar.place(words)));
}

REGISTER_TEST(tst_ConversationRows, QGuiApplication)

#include "tst_ConversationRows.moc"
