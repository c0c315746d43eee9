// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QTest>

namespace
{

QJsonObject parse(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

const QJsonObject s_options = parse(R"({"type":"options","prompt":"Which window?","choices":[
    {"id":"editor","label":"Text editor"},{"id":"terminal","label":"Terminal"}]})");
const QJsonObject s_slider =
    parse(R"({"type":"slider","label":"Brightness","min":10,"max":90,"value":40,"step":5,"action":"dim"})");
const QJsonObject s_list = parse(R"({"type":"list","title":"Shopping","items":["milk","bread"]})");

QJsonObject table(int rows)
{
    QJsonArray cells;
    for (int row = 0; row < rows; ++row) {
        cells.append(QJsonArray {row, QStringLiteral("%1%").arg(row)});
    }
    return {{QStringLiteral("type"), QStringLiteral("table")},
            {QStringLiteral("columns"), QJsonArray {QStringLiteral("Row"), QStringLiteral("Share")}},
            {QStringLiteral("rows"), cells}};
}

//! The bridge replies to a prompt with these blocks. They are the rows after the user's.
bool replyWith(Conversation &bar, const QJsonArray &blocks, const QString &text = QStringLiteral("the reply"))
{
    const int before = bar.count();
    const QJsonObject ui {{QStringLiteral("blocks"), blocks}};
    bar.bridge.reply(bar.ask(), QJsonObject {{QStringLiteral("response"), text}, {QStringLiteral("ui"), ui}});
    return QTest::qWaitFor([&] { return bar.count() == before + 1 + blocks.size(); }, 10000)
        && QTest::qWaitFor([&] { return bar.rowItem(bar.count() - 1) != nullptr; }, 10000) && bar.settle();
}

//! The same without a prompt: many rows at little cost.
void emitBlocks(Conversation &bar, const QJsonArray &blocks)
{
    const QJsonObject ui {{QStringLiteral("blocks"), blocks}};
    Q_EMIT bar.agent()->structuredReplyReceived(QString::fromUtf8(QJsonDocument(ui).toJson(QJsonDocument::Compact)));
    bar.emitReply(QStringLiteral("the reply"));
}

//! The items of this name in a row.
QList<QQuickItem *> allIn(Conversation &bar, int row, const char *name)
{
    return bar.itemsWhere(bar.rowItem(row),
                          [name](QQuickItem *item) { return item->objectName() == QLatin1String(name); });
}

//! Presses Tab until the item has the focus.
bool tabTo(Conversation &bar, QQuickItem *item)
{
    for (int step = 0; step < 50 && item && !item->hasActiveFocus(); ++step) {
        bar.key(Qt::Key_Tab);
    }
    return item && item->hasActiveFocus();
}

//! Scrolls to a row as a user would who then stays there.
bool scrollTo(Conversation &bar, int row)
{
    QQuickItem *list = bar.item(QStringLiteral("messageList"));
    list->setProperty("followEnd", false);
    QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, row), Q_ARG(int, 0));
    return QTest::qWaitFor([&] { return bar.rowItem(row) != nullptr; }, 10000) && bar.settle();
}

//! Scrolls so far away that the row is destroyed, and back.
bool scrollAwayAndBack(Conversation &bar, int row)
{
    for (int i = 0; i < 40; ++i) {
        bar.emitReply(QStringLiteral("Reply number %1").arg(i));
    }
    const auto isGone = [&] { return bar.rowItem(bar.count() - 1) && !bar.rowItem(row); };
    return QTest::qWaitFor(isGone, 10000) && bar.settle() && scrollTo(bar, row);
}

QString accessibleName(QQuickItem *item)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
    return accessible ? accessible->text(QAccessible::Name) : QString();
}

} // namespace

//! The widgets of structured replies by mouse, by keyboard and for assistive technology.
class tst_ConversationBlocks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void rowPerBlock();
    void unknownBlocksShowTheReply();
    void tableOf51Rows();
    void calloutIsAnEmptyBubble();
    void choiceByMouse();
    void choiceByKeys();
    void sliderByMouse();
    void sliderByKeys();
    void stateBelongsToTheRow();
    void widgetsStayInsideTheirBubbles();
    void firstLineIsClearOfTheButtons();
    void rowByRowForAssistiveTechnology();

private:
    SharedWindow<Conversation> m_window;
};

void tst_ConversationBlocks::rowPerBlock()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QJsonObject text {{QStringLiteral("type"), QStringLiteral("text")},
                            {QStringLiteral("content"), QStringLiteral("The **list** again:")}};
    QVERIFY(replyWith(bar, {s_options, text, s_list}));
    QCOMPARE(bar.rows().mid(1),
             (QStringList {QStringLiteral("assistant: the reply"), QStringLiteral("assistant: The **list** again:"),
                           QStringLiteral("assistant: the reply")}));
    QVERIFY(bar.textItem(QStringLiteral("Shopping")));
    QVERIFY(bar.textItem(QStringLiteral("milk")));
    QVERIFY(bar.inRow(2, "words")->property("text").toString().contains(QStringLiteral("<b>list</b>")));
    // The choices replace the suggestions.
    QCOMPARE(bar.suggestions(), QStringList());
    bar.screenshot("blocks");
}

void tst_ConversationBlocks::unknownBlocksShowTheReply()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QJsonObject unknown {{QStringLiteral("type"), QStringLiteral("hologram")}};
    QVERIFY(replyWith(bar, {unknown, s_list, unknown}));
    QCOMPARE(bar.field(1, "messageType").toString(), QStringLiteral("text"));
    QCOMPARE(bar.field(2, "messageType").toString(), QStringLiteral("list"));
    QCOMPARE(bar.field(3, "messageType").toString(), QStringLiteral("text"));
    for (const int row : {1, 3}) {
        QVERIFY(bar.textsIn(bar.rowItem(row)).join(QString()).contains(QStringLiteral("the reply")));
    }
}

void tst_ConversationBlocks::tableOf51Rows()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(replyWith(bar, {table(51)}));
    QCOMPARE(allIn(bar, 1, "tableRow").size(), 50);
    QVERIFY(bar.textsIn(bar.rowItem(1)).contains(QStringLiteral("... 1 more rows")));
    const QList<QQuickItem *> cells = allIn(bar, 1, "cell");
    QCOMPARE(bar.color(cells.at(2 * 20 + 1)), QStringLiteral("#fff87171"));
    QCOMPARE(bar.color(cells.at(2 * 21 + 1)), QStringLiteral("#fffbbf24"));
    bar.screenshot("table");
}

void tst_ConversationBlocks::calloutIsAnEmptyBubble()
{
    Conversation &bar = m_window.renew();
    // The engine's report of the missing component.
    bar.expectWarning(QStringLiteral("qrc:/org/kde/loomra/contents/ui/omnibar/chat/MessageRow.qml:"));
    QVERIFY(bar.begin());
    const QJsonObject callout {{QStringLiteral("type"), QStringLiteral("callout")},
                               {QStringLiteral("content"), QStringLiteral("Take care.")}};
    QVERIFY(replyWith(bar, {callout}));
    QCOMPARE(bar.log.warnings().filter(QStringLiteral("ReferenceError: botCalloutComponent is not defined")).size(), 1);
    QCOMPARE(bar.inRow(1, "messageBubble")->height(), 48.0);
    QVERIFY(!bar.textsIn(bar.rowItem(1)).contains(QStringLiteral("Take care.")));
    bar.click(bar.inRow(1, "copyBtn"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Take care."));
    bar.click(bar.inRow(1, "thumbDownBtn"));
    const QJsonObject vote = bar.bridge.takeRequest(QStringLiteral("messageFeedback")).params;
    QCOMPARE(vote.value(QStringLiteral("messageText")).toString(), QStringLiteral("Take care."));
}

void tst_ConversationBlocks::choiceByMouse()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(replyWith(bar, {s_options}));
    const QList<QQuickItem *> chips = allIn(bar, 1, "chip");
    bar.click(chips.at(1));
    const auto request = bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    QCOMPARE(request.params.value(QStringLiteral("actionType")).toString(), QStringLiteral("option_selected"));
    QVERIFY(bar.log.has(QtDebugMsg,
                        QStringLiteral("[AgentBridge] UI action: \"option_selected\" msgIdx: 1 data: "
                                       "\"terminal:Terminal\"")));
    QVERIFY(chips.at(1)->property("selected").toBool());
    QVERIFY(bar.item(QStringLiteral("inputField"))->hasActiveFocus());
    // The reply to it is an ordinary one.
    QVERIFY(bar.answer(request, QStringLiteral("The terminal is in front.")));
    // A later click sends again.
    bar.click(chips.at(0));
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    QVERIFY(!chips.at(1)->property("selected").toBool());
}

void tst_ConversationBlocks::choiceByKeys()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(replyWith(bar, {s_options, s_options}));
    // Only the chips of the current row, which is the last one, are in the tab order.
    QVERIFY(tabTo(bar, bar.item(QStringLiteral("messageList"))));
    bar.key(Qt::Key_Tab);
    const QList<QQuickItem *> chips = allIn(bar, 2, "chip");
    QVERIFY(chips.at(0)->hasActiveFocus());
    bar.key(Qt::Key_Space);
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    bar.key(Qt::Key_Tab);
    QVERIFY(chips.at(1)->hasActiveFocus());
    bar.screenshot("chip-focus");
    bar.key(Qt::Key_Return);
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    bar.key(Qt::Key_Enter);
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    QVERIFY(chips.at(1)->property("selected").toBool());
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.inRow(2, "copyBtn")->hasActiveFocus());
    QVERIFY(!tabTo(bar, allIn(bar, 1, "chip").at(0)));
}

void tst_ConversationBlocks::sliderByMouse()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(replyWith(bar, {s_slider}));
    bar.click(bar.inRow(1, "slider")); // its centre
    QVERIFY(bar.textItem(QStringLiteral("Brightness: 50")));
    QVERIFY(bar.bridge.isAllTaken());
    bar.click(bar.inRow(1, "confirmBtn"));
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    QVERIFY(bar.log.has(QtDebugMsg,
                        QStringLiteral("[AgentBridge] UI action: \"slider_submitted\" msgIdx: 1 data: \"50:dim\"")));
    QVERIFY(bar.textItem(QStringLiteral("Submitted: 50")));
    QVERIFY(!bar.isSeen(bar.inRow(1, "confirmBtn")));
    bar.screenshot("submitted");
}

void tst_ConversationBlocks::sliderByKeys()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(replyWith(bar, {s_slider}));
    QVERIFY(tabTo(bar, bar.inRow(1, "slider")));
    bar.key(Qt::Key_Right);
    bar.key(Qt::Key_Up);
    bar.key(Qt::Key_Left);
    QVERIFY(bar.textItem(QStringLiteral("Brightness: 45")));
    bar.screenshot("slider-focus");
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.inRow(1, "confirmBtn")->hasActiveFocus());
    bar.key(Qt::Key_Space);
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    QVERIFY(bar.textItem(QStringLiteral("Submitted: 45")));
    // The focus stays in the row.
    QVERIFY(bar.rowItem(1)->hasActiveFocus());
    bar.key(Qt::Key_Tab);
    QVERIFY(bar.inRow(1, "copyBtn")->hasActiveFocus());
}

void tst_ConversationBlocks::stateBelongsToTheRow()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(bar.settle());
    emitBlocks(bar, {s_options, s_slider, s_slider});
    QTRY_VERIFY(bar.rowItem(2));
    QVERIFY(bar.settle());
    QMetaObject::invokeMethod(bar.inRow(0, "messageContent")->property("item").value<QObject *>(), "select",
                              Q_ARG(QVariant, 1));
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    bar.click(bar.inRow(2, "confirmBtn"));
    bar.bridge.takeRequest(QStringLiteral("handleStructuredUiAction"));
    bar.focus(bar.inRow(1, "slider"));
    bar.key(Qt::Key_Right);

    const auto verifyState = [&] {
        QVERIFY(allIn(bar, 0, "chip").at(1)->property("selected").toBool());
        QCOMPARE(bar.inRow(1, "slider")->property("value").toReal(), 45.0);
        QVERIFY(bar.inRow(1, "confirmBtn")->isVisible());
        QVERIFY(!bar.inRow(2, "slider")->isEnabled());
        QVERIFY(!bar.inRow(2, "confirmBtn")->isVisible());
        QVERIFY(bar.bridge.isAllTaken());
    };
    verifyState();
    bar.setLight(true);
    verifyState();
    bar.invoke("shrinkToCompactBubble");
    QVERIFY(bar.settle());
    bar.invoke("expandFromBubble");
    QVERIFY(bar.settle());
    verifyState();
    QVERIFY(scrollAwayAndBack(bar, 0));
    verifyState();
}

void tst_ConversationBlocks::widgetsStayInsideTheirBubbles()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QString word = QString(QLatin1Char('w')).repeated(100000);
    const QJsonObject choice {{QStringLiteral("id"), word}, {QStringLiteral("label"), word}};
    const QList<QJsonObject> blocks {
        {{QStringLiteral("type"), QStringLiteral("list")},
         {QStringLiteral("title"), word},
         {QStringLiteral("items"), QJsonArray {word, word}}},
        {{QStringLiteral("type"), QStringLiteral("table")},
         {QStringLiteral("columns"), QJsonArray {word, word, word}},
         {QStringLiteral("rows"), QJsonArray {QJsonArray {word, word}}}},
        {{QStringLiteral("type"), QStringLiteral("options")},
         {QStringLiteral("prompt"), word},
         {QStringLiteral("choices"), QJsonArray {choice, choice}}},
        {{QStringLiteral("type"), QStringLiteral("slider")}, {QStringLiteral("label"), word}},
    };
    for (const QJsonObject &block : blocks) {
        emitBlocks(bar, {block});
        QTRY_VERIFY(bar.rowItem(bar.count() - 1));
        QVERIFY(bar.settle());
        QQuickItem *bubble = bar.inRow(bar.count() - 1, "messageBubble");
        const QRectF inside = bar.place(bubble).adjusted(8, 8, -8, -8);
        const auto texts = bar.itemsWhere(
            bubble, [](QQuickItem *item) { return item->inherits("QQuickText") && OmniBarFixture::isSeen(item); });
        QVERIFY(!texts.isEmpty());
        for (QQuickItem *text : texts) {
            QVERIFY2(inside.contains(bar.place(text)), qPrintable(text->objectName()));
            QVERIFY2(text->property("contentWidth").toReal() <= text->width() + 1, qPrintable(text->objectName()));
        }
    }
    bar.screenshot("long-words");
}

void tst_ConversationBlocks::firstLineIsClearOfTheButtons()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QJsonObject plainOptions = s_options;
    plainOptions.remove(QStringLiteral("prompt"));
    QJsonObject plainList = s_list;
    plainList.remove(QStringLiteral("title"));
    emitBlocks(bar, {s_list, plainList, table(1), s_options, plainOptions, s_slider});
    QTRY_VERIFY(bar.rowItem(5));
    QVERIFY(bar.settle());
    for (int row = 0; row < 6; ++row) {
        QVERIFY(scrollTo(bar, row));
        const QRectF buttons = bar.place(bar.inRow(row, "copyBtn")) | bar.place(bar.inRow(row, "thumbDownBtn"));
        QQuickItem *content = bar.inRow(row, "messageContent");
        const auto parts = bar.itemsWhere(content, [](QQuickItem *item) {
            return OmniBarFixture::isSeen(item)
                && (item->inherits("QQuickText") || item->inherits("QQuickAbstractButton")
                    || item->inherits("QQuickSlider"));
        });
        for (QQuickItem *part : parts) {
            QRectF place = bar.place(part);
            if (part->inherits("QQuickText")) {
                place.setWidth(part->property("contentWidth").toReal());
            }
            QVERIFY2(!place.intersects(buttons), qPrintable(QStringLiteral("row %1").arg(row)));
        }
    }
}

void tst_ConversationBlocks::rowByRowForAssistiveTechnology()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QVERIFY(replyWith(bar, {s_list, table(2)}));
    QStringList entries;
    for (QQuickItem *entry : allIn(bar, 1, "entry")) {
        QCOMPARE(QAccessible::queryAccessibleInterface(entry)->role(), QAccessible::ListItem);
        entries.append(accessibleName(entry));
    }
    QCOMPARE(entries, (QStringList {QStringLiteral("milk"), QStringLiteral("bread")}));
    QStringList rows;
    for (QQuickItem *row : allIn(bar, 2, "tableRow")) {
        QCOMPARE(QAccessible::queryAccessibleInterface(row)->role(), QAccessible::Row);
        rows.append(accessibleName(row));
    }
    QCOMPARE(rows, (QStringList {QStringLiteral("Row: 0, Share: 0%"), QStringLiteral("Row: 1, Share: 1%")}));
    QCOMPARE(accessibleName(bar.inRow(2, "header")), QStringLiteral("Row, Share"));
}

REGISTER_TEST(tst_ConversationBlocks, QGuiApplication)

#include "tst_ConversationBlocks.moc"
