// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "ScriptedVoice.h"

#include "AgentBridge.h"
#include "LoomraSDK.h"
#include "SharedWindow.h"
#include "TestRegistry.h"
#include "WaitUntil.h"

#include <QAccessible>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QQmlProperty>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QWebSocket>

#include <algorithm>

namespace
{

//! How the log reports an image that a text could not fetch.
const QString s_failedFetch = QStringLiteral("<Unknown File>: QML Text: ");

//! Values of Text.textFormat.
enum TextFormat
{
    PlainText = 0,
    RichText = 1,
};

//! A web server on loopback that answers 404 and records the requests.
class Listener : public QTcpServer
{
public:
    Listener()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                    asked.append(QString::fromLatin1(socket->readLine()).section(QLatin1Char(' '), 1, 1));
                    socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
                    socket->disconnectFromHost();
                });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
        listen(QHostAddress::LocalHost);
    }

    QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(serverPort()); }

    //! The requested paths.
    QStringList asked;
};

//! A text that would fetch something wherever it were rendered as markup.
QString hostileText(const Listener &listener)
{
    return QStringLiteral("<img src=\"%1/img.png\"/><img src='file:///nowhere/x.png'><img src=qrc:/nowhere.png>"
                          "<img src=\"image://nowhere/x\"><a href=\"%1/a\">link</a>"
                          "<p style=\"background-image:url(%1/css.png)\">x</p><table background='%1/table.png'>"
                          "<tr><td>x</td></tr></table>![x](%1/markdown.png) [x](%1/link)")
        .arg(listener.address());
}

//! A text item without a text format, which renders markup. Null if it can't be made.
QQuickItem *showWithoutFormat(Conversation &bar, const QString &text)
{
    auto *careless = qobject_cast<QQuickItem *>(bar.fake(QStringLiteral("Text { width: 100; height: 20 }")));
    if (careless) {
        careless->setParentItem(bar.item(QStringLiteral("rootContainer")));
        careless->setProperty("text", text);
    }
    return careless;
}

//! The requests so far. Makes one more, which isn't in the list, to be sure that all earlier ones have arrived.
QStringList fetched(Conversation &bar, Listener &listener)
{
    if (!bar.settle()) {
        return {QStringLiteral("the window draws no more frames")};
    }
    QQuickItem *last = showWithoutFormat(bar, QStringLiteral("<img src=\"%1/last\"/>").arg(listener.address()));
    if (!last || !waitUntil([&] { return listener.asked.contains(QLatin1String("/last")); })) {
        return {QStringLiteral("no request arrives at all")};
    }
    last->setParentItem(nullptr); // it still waits for its image, and goes with the window
    QStringList asked = listener.asked;
    asked.removeAll(QStringLiteral("/last"));
    return asked;
}

//! The texts of all text items that aren't plain, except those of the renderer and the hint.
QStringList formattedTexts(QQuickItem *root)
{
    QStringList careless;
    const auto found = OmniBarFixture::itemsWhere(root, [](QQuickItem *item) { return item->inherits("QQuickText"); });
    for (QQuickItem *item : found) {
        const int format = item->property("textFormat").toInt();
        const bool isOurs = item->objectName() == QLatin1String("keyHint")
            || (item->objectName() == QLatin1String("words")
                && QString::fromLatin1(item->parentItem()->metaObject()->className())
                       .startsWith(QLatin1String("BotTextBubble")));
        if (format != PlainText && !(format == RichText && isOurs)) {
            careless.append(item->property("text").toString());
        }
    }
    return careless;
}

//! Whether the window shows the text as it is.
bool isShown(Conversation &bar, const QString &words)
{
    const auto found = bar.itemsWhere(bar.window()->contentItem(), [&](QQuickItem *item) {
        return item->inherits("QQuickText") && Conversation::isSeen(item)
            && item->property("text").toString().contains(
                item->property("textFormat").toInt() == PlainText ? words : words.toHtmlEscaped().left(8));
    });
    return !found.isEmpty();
}

void suggest(Conversation &bar, const QJsonObject &followUp)
{
    const QJsonObject ui {{QStringLiteral("followUps"), QJsonArray {followUp}}};
    Q_EMIT bar.agent()->structuredReplyReceived(QString::fromUtf8(QJsonDocument(ui).toJson(QJsonDocument::Compact)));
    bar.emitReply(QStringLiteral("fine"));
}

QQuickItem *firstSuggestion(Conversation &bar)
{
    return bar.item(QStringLiteral("suggestionCard"));
}

//! A reply of blocks with this text in each field.
void showBlocks(Conversation &bar, const QString &words)
{
    const QJsonArray blocks {
        QJsonObject {{QStringLiteral("type"), QStringLiteral("list")},
                     {QStringLiteral("title"), words},
                     {QStringLiteral("items"),
                      QJsonArray {words, QJsonObject {{QStringLiteral("label"), words}}, QJsonArray {words}}}},
        QJsonObject {{QStringLiteral("type"), QStringLiteral("table")},
                     {QStringLiteral("columns"), QJsonArray {words, words}},
                     {QStringLiteral("rows"), QJsonArray {QJsonArray {words, QJsonArray {words}}}}},
        QJsonObject {{QStringLiteral("type"), QStringLiteral("options")},
                     {QStringLiteral("prompt"), words},
                     {QStringLiteral("choices"),
                      QJsonArray {QJsonObject {{QStringLiteral("id"), words}, {QStringLiteral("label"), words}}}}},
        QJsonObject {{QStringLiteral("type"), QStringLiteral("slider")},
                     {QStringLiteral("label"), words},
                     {QStringLiteral("action"), words}},
        QJsonObject {{QStringLiteral("type"), QStringLiteral("text")}, {QStringLiteral("content"), words}},
        QJsonObject {{QStringLiteral("type"), QStringLiteral("code")},
                     {QStringLiteral("language"), words},
                     {QStringLiteral("content"), words}},
        QJsonObject {{QStringLiteral("type"), QStringLiteral("callout")},
                     {QStringLiteral("variant"), words},
                     {QStringLiteral("content"), words}},
        QJsonObject {{QStringLiteral("type"), words}, {QStringLiteral("content"), words}},
    };
    // Of the missing components for code and callouts.
    bar.expectWarning(QStringLiteral("qrc:/org/kde/loomra/contents/ui/omnibar/chat/MessageRow.qml:"));
    const QJsonObject ui {{QStringLiteral("blocks"), blocks}};
    Q_EMIT bar.agent()->structuredReplyReceived(QString::fromUtf8(QJsonDocument(ui).toJson(QJsonDocument::Compact)));
    bar.emitReply(words);
}

using Feed = void (*)(Conversation &, const QString &);

//! The tooltip of an item shows the text as plain text.
void verifyPlainTip(Conversation &bar, QQuickItem *item, const QString &words, Listener &listener)
{
    QVERIFY(bar.settle());
    bar.hover(item);
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("toolTipText"))));
    QVERIFY(bar.item(QStringLiteral("toolTipText"))->property("text").toString().startsWith(words.left(300)));
    QCOMPARE(formattedTexts(bar.window()->contentItem()), QStringList());
    QCOMPARE(fetched(bar, listener), QStringList());
}

} // namespace

Q_DECLARE_METATYPE(Feed)

//! Untrusted text is never rendered as markup, fetched or run, and never breaks the window. One long file, to have all
//! requirements on a place that shows such text together.
class tst_Safety : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void textWithoutAFormatFetches();
    void untrustedTextIsNotFetched_data();
    void untrustedTextIsNotFetched();
    void tooltipOfTheDot();
    void tooltipOfASuggestion();
    void titleOfASuggestionIsNoShortcut();
    void accessibleNamesAreNotFetched();
    void plans();
    void partialTranscript();
    void everyTextIsPlain();
    void iconNames_data();
    void iconNames();
    void colors_data();
    void colors();
    void loadersLoadOnlyOurOwn();
    void nothingIsMadeOfUntrustedText();
    void randomBytes();
    void malformedFrames();

private:
    SharedWindow<Conversation> m_window;
};

void tst_Safety::textWithoutAFormatFetches()
{
    Listener listener;
    Conversation &bar = m_window.take();
    bar.expectWarning(s_failedFetch);
    bar.expectWarning(QStringLiteral("Unable to "));
    QVERIFY(bar.begin());
    QQuickItem *careless = showWithoutFormat(bar, QStringLiteral("<img src=\"%1/img.png\"/>").arg(listener.address()));
    QVERIFY(careless);
    QTRY_COMPARE(listener.asked, QStringList {QStringLiteral("/img.png")});
    careless->setParentItem(nullptr);
}

void tst_Safety::untrustedTextIsNotFetched_data()
{
    QTest::addColumn<Feed>("feed");

    QTest::newRow("reply") << Feed([](Conversation &bar, const QString &words) { bar.emitReply(words); });
    QTest::newRow("reply of markdown") << Feed([](Conversation &bar, const QString &words) {
        bar.emitReply(QStringLiteral("# %1\n\n- %1\n\n1. %1\n\n> %1\n\n```%1\n%1\n```\n\n**%1** `%1` *%1*").arg(words));
    });
    QTest::newRow("blocks") << Feed(showBlocks);
    QTest::newRow("error") << Feed(
        [](Conversation &bar, const QString &words) { Q_EMIT bar.agent()->errorOccurred(words); });
    QTest::newRow("system row") << Feed(
        [](Conversation &bar, const QString &words) { bar.invoke("appendSystemMessage", {words}); });
    QTest::newRow("prompt") << Feed(
        [](Conversation &bar, const QString &words) { bar.invoke("appendUserMessage", {words}); });
    QTest::newRow("typed") << Feed([](Conversation &bar, const QString &words) { bar.ask(words); });
    QTest::newRow("rest of a tool tag") << Feed([](Conversation &bar, const QString &words) {
        const QString inBrackets = QString(words).remove(QLatin1Char(']'));
        bar.emitReply(QStringLiteral("[TOOL: %1] [STATUS: %1] [RESULT: %1] %2").arg(inBrackets, words));
    });
    QTest::newRow("phase") << Feed([](Conversation &bar, const QString &words) {
        bar.ask();
        bar.reportPhase(words);
    });
    QTest::newRow("agent") << Feed([](Conversation &bar, const QString &words) {
        bar.ask();
        bar.bridge.event(QStringLiteral("agent.routed"), {{QStringLiteral("agent"), words}});
    });
    QTest::newRow("title of a suggestion") << Feed([](Conversation &bar, const QString &words) {
        suggest(bar, {{QStringLiteral("prompt"), QStringLiteral("go")}, {QStringLiteral("title"), words.left(150)}});
    });
    QTest::newRow("subtitle of a suggestion") << Feed([](Conversation &bar, const QString &words) {
        suggest(bar, {{QStringLiteral("prompt"), QStringLiteral("go")}, {QStringLiteral("subtitle"), words.left(150)}});
    });
    QTest::newRow("attached file") << Feed([](Conversation &bar, const QString &words) {
        bar.setProperty("slashAttachedFiles",
                        QVariantList {QVariantMap {{QStringLiteral("name"), words},
                                                   {QStringLiteral("path"), words},
                                                   {QStringLiteral("content"), words}}});
    });
    QTest::newRow("name of a session") << Feed([](Conversation &bar, const QString &words) {
        bar.setProperty("slashSessionListPending", true);
        const QJsonArray sessions {QJsonObject {{QStringLiteral("id"), words.mid(5)}, {QStringLiteral("name"), words}}};
        Q_EMIT bar.property("sdk").value<LoomraSDK *>()->sessionsListed(sessions);
    });
    QTest::newRow("name of a deleted session") << Feed([](Conversation &bar, const QString &words) {
        bar.setProperty("slashSessionListPending", true);
        bar.expectWarning("[WARN] sendRequest failed"); // there is no connection
        const QJsonArray sessions {QJsonObject {{QStringLiteral("id"), words.mid(5)}, {QStringLiteral("name"), words}}};
        Q_EMIT bar.property("sdk").value<LoomraSDK *>()->sessionsListed(sessions);
        bar.invoke("deleteSession", {0});
    });
    QTest::newRow("name of a file that is refused") << Feed([](Conversation &bar, const QString &words) {
        const QString name = QString(words).remove(QLatin1Char('/')) + QStringLiteral(".zip");
        bar.invoke("attachFile", {QString(QStringLiteral("file:///") + name), QVariant()});
        QVERIFY(bar.rows().value(0).startsWith(QString(QStringLiteral("system: **")) + name.left(20)));
        bar.emitReply(words); // a file name has no slashes
    });
    QTest::newRow("unknown session") << Feed([](Conversation &bar, const QString &words) {
        bar.invoke("tryHandleSlashCommand", {QString(QStringLiteral("/session ") + words)});
    });
    QTest::newRow("system name") << Feed([](Conversation &bar, const QString &words) {
        bar.setProperty("systemName", words);
        bar.emitReply(QStringLiteral("shown in the header too"));
    });
    QTest::newRow("line under the bar") << Feed([](Conversation &bar, const QString &words) {
        bar.setProperty("wiNotifyBarLine", words);
        bar.emitReply(QStringLiteral("not idle"));
    });
}

void tst_Safety::untrustedTextIsNotFetched()
{
    QFETCH(Feed, feed);

    Listener listener;
    Conversation &bar = m_window.take();
    bar.expectWarning(s_failedFetch);
    QVERIFY(bar.begin());
    const QString words = hostileText(listener);
    feed(bar, words);
    QTRY_VERIFY(isShown(bar, words.left(100)));
    QCOMPARE(fetched(bar, listener), QStringList());
}

void tst_Safety::tooltipOfTheDot()
{
    Listener listener;
    Conversation &bar = m_window.take();
    bar.expectWarning(s_failedFetch);
    QVERIFY(bar.begin());
    const QString words = hostileText(listener);
    bar.ask();
    bar.reportPhase(words);
    verifyPlainTip(bar, bar.item(QStringLiteral("connectionDot")), words, listener);
}

void tst_Safety::tooltipOfASuggestion()
{
    Listener listener;
    Conversation &bar = m_window.take();
    bar.expectWarning(s_failedFetch);
    QVERIFY(bar.begin());
    const QString words = hostileText(listener);
    suggest(bar, {{QStringLiteral("prompt"), words}, {QStringLiteral("title"), QStringLiteral("Harmless")}});
    QTRY_VERIFY(firstSuggestion(bar));
    verifyPlainTip(bar, firstSuggestion(bar), words, listener);
    // It is sent unchanged.
    bar.click(firstSuggestion(bar));
    QCOMPARE(bar.bridge.takeRequest(QStringLiteral("chat")).params.value(QStringLiteral("message")).toString(), words);
}

void tst_Safety::titleOfASuggestionIsNoShortcut()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    suggest(
        bar,
        {{QStringLiteral("prompt"), QStringLiteral("delete all")}, {QStringLiteral("title"), QStringLiteral("R&D")}});
    QTRY_VERIFY(firstSuggestion(bar));
    QVERIFY(bar.settle());
    QVERIFY(isShown(bar, QStringLiteral("R&D")));
    const int rows = bar.count();
    bar.key(Qt::Key_D, Qt::AltModifier);
    QCOMPARE(bar.count(), rows);
    QVERIFY(bar.bridge.isAllTaken());
}

void tst_Safety::accessibleNamesAreNotFetched()
{
    Listener listener;
    Conversation &bar = m_window.take();
    bar.expectWarning(s_failedFetch);
    QVERIFY(bar.begin());
    const QString words = hostileText(listener);
    bar.setProperty("systemName", words);
    bar.ask(words);
    bar.reportPhase(words);
    QVERIFY(bar.settle());
    int named = 0;
    const auto all = bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *) { return true; });
    for (QQuickItem *item : all) {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        for (const QAccessible::Text text : {QAccessible::Name, QAccessible::Description, QAccessible::Value}) {
            named += accessible && accessible->text(text).contains(words) ? 1 : 0;
        }
    }
    QVERIFY(named >= 4); // brand, header, row, indicator
    QCOMPARE(fetched(bar, listener), QStringList());
}

void tst_Safety::plans()
{
    Listener listener;
    Conversation &bar = m_window.take();
    bar.expectWarning(s_failedFetch);
    QVERIFY(bar.begin());
    const QString words = hostileText(listener);
    const QJsonObject step {{QStringLiteral("capabilityId"), words},
                            {QStringLiteral("params"), QJsonObject {{words, words}}}};
    const QJsonObject plan {{QStringLiteral("allowed"), true},
                            {QStringLiteral("requiresApproval"), true},
                            {QStringLiteral("plan"), QJsonArray {step}},
                            {QStringLiteral("summary"), words},
                            {QStringLiteral("riskLevel"), words}};
    auto *sdk = qobject_cast<LoomraSDK *>(bar.property("sdk").value<QObject *>());
    QVERIFY(sdk);
    bar.invoke("appendUserMessage", {QStringLiteral("a plan")});
    Q_EMIT sdk->planReceived(plan);
    QTRY_VERIFY(isShown(bar, words.left(50)));
    QVERIFY(bar.isSeen(bar.item(QStringLiteral("planCard"))));
    for (const char *part : {"planSummary", "planRisk", "planStepText"}) {
        QVERIFY(bar.isSeen(bar.item(QLatin1String(part))));
    }
    verifyPlainTip(bar, bar.item(QStringLiteral("planSummary")), words, listener);
    bar.invoke("cancelPlan");

    bar.setProperty("planExecuting", true);
    bar.setProperty("planExecutingVisible", true);
    bar.bridge.event(QStringLiteral("plan.step"),
                     {{QStringLiteral("index"), 0},
                      {QStringLiteral("total"), 1},
                      {QStringLiteral("capabilityId"), words},
                      {QStringLiteral("phase"), words}});
    // Dots of the capability become spaces.
    QTRY_VERIFY(isShown(bar, words.left(50).replace(QLatin1Char('.'), QLatin1Char(' '))));
    QCOMPARE(formattedTexts(bar.window()->contentItem()), QStringList());

    // What was done is in the progress bar and in the conversation.
    const QJsonObject launched {{QStringLiteral("ok"), true},
                                {QStringLiteral("capabilityId"), QStringLiteral("app.launch")},
                                {QStringLiteral("result"), QJsonObject {{QStringLiteral("name"), words}}}};
    const QJsonObject written {
        {QStringLiteral("ok"), true},
        {QStringLiteral("capabilityId"), QStringLiteral("settings.write")},
        {QStringLiteral("result"),
         QJsonObject {{QStringLiteral("liveApplied"), false}, {QStringLiteral("liveApplyHook"), words}}}};
    const QJsonObject verified {{QStringLiteral("state"), QStringLiteral("verified")}};
    Q_EMIT sdk->planExecuted({{QStringLiteral("success"), true},
                              {QStringLiteral("results"), QJsonArray {launched, written}},
                              {QStringLiteral("verificationSummary"), verified}});
    QVERIFY(bar.property("planDoneLabel").toString().startsWith(QStringLiteral("✓ App launched: ") + words.left(50)));
    QVERIFY(bar.rows().last().contains(words.left(50)));
    QVERIFY(bar.settle());
    QCOMPARE(formattedTexts(bar.window()->contentItem()), QStringList());

    bar.setProperty("planExecuting", true);
    Q_EMIT sdk->error(words);
    QCOMPARE(bar.rows().last(), QString(QStringLiteral("assistant: Error: ") + words));
    QVERIFY(bar.settle());

    bar.setProperty("planExecutingVisible", true);
    const QJsonObject result {{QStringLiteral("ok"), true},
                              {QStringLiteral("capabilityId"), words},
                              {QStringLiteral("result"), QJsonObject {{words, words}}}};
    const QJsonObject summary {{QStringLiteral("state"), words}, {QStringLiteral("details"), QJsonArray {words}}};
    Q_EMIT sdk->planExecuted({{QStringLiteral("success"), false},
                              {QStringLiteral("actionId"), words},
                              {QStringLiteral("error"), words},
                              {QStringLiteral("results"), QJsonArray {result}},
                              {QStringLiteral("verificationSummary"), summary}});
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.item(QStringLiteral("undoBar"))));
    QCOMPARE(formattedTexts(bar.window()->contentItem()), QStringList());
    QCOMPARE(fetched(bar, listener), QStringList());
}

void tst_Safety::partialTranscript()
{
    Listener listener;
    Conversation &bar = m_window.renew();
    bar.expectWarning(s_failedFetch);
    ScriptedVoice voice(bar);
    voice.set("isListening", true);
    QVERIFY(bar.begin());
    const QString words = hostileText(listener);
    QVERIFY(bar.textItem(QStringLiteral("Listening...")));
    // A test of the microphone shows it as placeholder only.
    voice.set("voiceTestActive", true);
    voice.set("partialTranscript", words);
    QTRY_VERIFY(bar.textItem(words));
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    QCOMPARE(formattedTexts(bar.window()->contentItem()), QStringList());

    voice.set("voiceTestActive", false);
    const QString more = QStringLiteral("then ") + words;
    voice.set("partialTranscript", more);
    QCOMPARE(bar.property("inputField.text").toString(), more);
    voice.emitSignal("transcriptReady", words);
    QCOMPARE(bar.property("inputField.text").toString(), words);
    QVERIFY(bar.settle());
    QCOMPARE(formattedTexts(bar.window()->contentItem()), QStringList());
    QCOMPARE(fetched(bar, listener), QStringList());
}

void tst_Safety::everyTextIsPlain()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    QQuickItem *all = bar.window()->contentItem();
    QCOMPARE(formattedTexts(all), QStringList());

    const auto request = bar.ask();
    bar.reportPhase(QStringLiteral("executing"));
    bar.bridge.event(QStringLiteral("plan.step"),
                     {{QStringLiteral("index"), 0},
                      {QStringLiteral("total"), 2},
                      {QStringLiteral("capabilityId"), QStringLiteral("theme.apply")}});
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("stepBadge"))));
    QCOMPARE(formattedTexts(all), QStringList());

    QVERIFY(bar.answer(request, QStringLiteral("[TOOL: x] [STATUS: ok] [RESULT: y] done"),
                       {{QStringLiteral("usage"), QJsonObject {{QStringLiteral("inputTokens"), 7}}}}));
    bar.invoke("appendSystemMessage", {QStringLiteral("note")});
    bar.setProperty("wiNotifyBarLine", QStringLiteral("news"));
    QVERIFY(bar.settle());
    QCOMPARE(formattedTexts(all), QStringList());

    // All tooltips.
    const auto hoverable =
        bar.itemsWhere(all, [&](QQuickItem *item) { return item->property("hovered").isValid() && bar.isSeen(item); });
    QVERIFY(hoverable.size() > 8);
    for (QQuickItem *item : hoverable) {
        bar.hover(item);
        QVERIFY(bar.settle());
    }
    QCOMPARE(formattedTexts(all), QStringList());

    bar.evaluate(QStringLiteral("omniBar.toggleSettings()"));
    QTRY_VERIFY(bar.item(QStringLiteral("lookTab")));
    QCOMPARE(formattedTexts(all), QStringList());
    bar.setProperty("settingsPanelOpen", false);
    bar.invoke("shrinkToCompactBubble");
    QVERIFY(bar.settle());
    QCOMPARE(formattedTexts(all), QStringList());
}

void tst_Safety::iconNames_data()
{
    QTest::addColumn<QJsonValue>("name");
    QTest::addColumn<QString>("expected");

    const QString none = QStringLiteral("dialog-messages");
    QTest::newRow("a theme icon") << QJsonValue(QStringLiteral("system-run")) << QStringLiteral("system-run");
    QTest::newRow("a path") << QJsonValue(QStringLiteral("/usr/share/pixmaps/x.png")) << none;
    QTest::newRow("a path upwards") << QJsonValue(QStringLiteral("../../etc/passwd")) << none;
    QTest::newRow("a hidden file") << QJsonValue(QStringLiteral(".profile")) << none;
    QTest::newRow("file") << QJsonValue(QStringLiteral("file:///usr/share/x.png")) << none;
    QTest::newRow("web") << QJsonValue(QStringLiteral("LISTENER/icon.png")) << none;
    QTest::newRow("web, no scheme") << QJsonValue(QStringLiteral("//127.0.0.1/icon.png")) << none;
    QTest::newRow("resource") << QJsonValue(QStringLiteral("qrc:/x.png")) << none;
    QTest::newRow("resource path") << QJsonValue(QStringLiteral(":/x.png")) << none;
    QTest::newRow("provider") << QJsonValue(QStringLiteral("image://theme/x")) << none;
    QTest::newRow("data") << QJsonValue(QStringLiteral("data:image/png;base64,AAAA")) << none;
    QTest::newRow("markup") << QJsonValue(QStringLiteral("<img src=x>")) << none;
    QTest::newRow("two lines") << QJsonValue(QStringLiteral("system-run\nx")) << none;
    QTest::newRow("too long") << QJsonValue(QStringLiteral("a").repeated(5000)) << none;
    QTest::newRow("a number") << QJsonValue(7) << none;
    QTest::newRow("an object") << QJsonValue(QJsonObject {{QStringLiteral("source"), QStringLiteral("/x")}}) << none;
    QTest::newRow("null") << QJsonValue(QJsonValue::Null) << none;
}

void tst_Safety::iconNames()
{
    QFETCH(QJsonValue, name);
    QFETCH(QString, expected);

    Listener listener;
    Conversation &bar = m_window.take();
    bar.expectWarning(s_failedFetch);
    QVERIFY(bar.begin());
    if (name.isString()) {
        name = name.toString().replace(QLatin1String("LISTENER"), listener.address());
    }
    for (const QString &key : {QStringLiteral("icon"), QStringLiteral("iconName")}) {
        suggest(bar, {{QStringLiteral("prompt"), QStringLiteral("go")}, {key, name}});
        QTRY_VERIFY(firstSuggestion(bar));
        QCOMPARE(firstSuggestion(bar)->property("iconName").toString(), expected);
    }
    QCOMPARE(fetched(bar, listener), QStringList());
}

void tst_Safety::colors_data()
{
    QTest::addColumn<QJsonValue>("color");
    QTest::addColumn<QJsonValue>("background");
    QTest::addColumn<QString>("expectedColor");
    QTest::addColumn<QString>("expectedBackground");

    const QString color = QStringLiteral("#a855f7");
    const QString background = QStringLiteral("0.4,0.2,0.8");
    const auto text = [](const char *words) { return QJsonValue(QString::fromLatin1(words)); };
    QTest::newRow("good") << text("#ff0000") << text("1,0.5,0") << QStringLiteral("#ff0000")
                          << QStringLiteral("1,0.5,0");
    QTest::newRow("no colours") << text("url(http://127.0.0.1/)") << text("url(http://127.0.0.1/)") << color
                                << background;
    QTest::newRow("cut") << text("#12345") << text("0.1,0.2") << color << background;
    QTest::newRow("too much") << text("#1234567890") << text("1,2,3") << color << background;
    QTest::newRow("below nothing") << text("-1") << text("-1,0,0") << color << background;
    QTest::newRow("no numbers") << text("red green") << text("NaN,Infinity,x") << color << background;
    QTest::newRow("markup") << text("<b>red</b>") << text("<b>1</b>,0,0") << color << background;
    QTest::newRow("empty") << text("") << text("") << color << background;
    QTest::newRow("other types") << QJsonValue(5) << QJsonValue(QJsonArray {1, 0, 0}) << color << background;
    QTest::newRow("null") << QJsonValue() << QJsonValue() << color << background;
}

void tst_Safety::colors()
{
    QFETCH(QJsonValue, color);
    QFETCH(QJsonValue, background);
    QFETCH(QString, expectedColor);
    QFETCH(QString, expectedBackground);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    suggest(bar,
            {{QStringLiteral("prompt"), QStringLiteral("go")},
             {QStringLiteral("iconColor"), color},
             {QStringLiteral("iconBg"), background}});
    QTRY_VERIFY(firstSuggestion(bar));
    QCOMPARE(firstSuggestion(bar)->property("iconColor").toString(), expectedColor);
    QCOMPARE(firstSuggestion(bar)->property("iconBg").toString(), expectedBackground);
    QVERIFY(bar.settle());
}

void tst_Safety::loadersLoadOnlyOurOwn()
{
    Listener listener;
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QString words = hostileText(listener);
    bar.emitReply(words);
    suggest(bar, {{QStringLiteral("prompt"), words}});
    bar.setProperty("settingsPanelOpen", true);
    QTRY_VERIFY(bar.item(QStringLiteral("lookTab")));
    const auto loaders =
        bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) { return item->inherits("QQuickLoader"); });
    QVERIFY(loaders.size() > 5);
    for (QQuickItem *loader : loaders) {
        const QUrl source = loader->property("source").toUrl();
        QVERIFY2(source.isEmpty() || source.toString().startsWith(QLatin1String("qrc:/org/kde/loomra/")),
                 qUtf8Printable(source.toString()));
        QVERIFY(!source.toString().contains(listener.address()));
    }
}

void tst_Safety::nothingIsMadeOfUntrustedText()
{
    const QRegularExpression makers(
        QStringLiteral("createQmlObject|createComponent|openUrlExternally|\\beval\\b|new Function|onLinkActivated"));
    // The directory of our own client's logs; the address of the agent tool's documentation, a constant.
    const QStringList known = {QStringLiteral("Qt.openUrlExternally(Dashboard.directoryUrl(path))"),
                               QStringLiteral("Qt.openUrlExternally(page.documentation)")};
    int knownCount = 0;
    const QDir source(qEnvironmentVariable("TOVICTL_SOURCE_DIR"));
    int read = 0;
    for (const QString &folder : {QStringLiteral("contents"), QStringLiteral("components")}) {
        QDirIterator files(source.filePath(folder), {QStringLiteral("*.qml"), QStringLiteral("*.js")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QString text = QString::fromUtf8(file.readAll());
            for (const QString &call : known) {
                knownCount += text.count(call);
                text.remove(call);
            }
            QVERIFY2(!makers.match(text).hasMatch(), qUtf8Printable(file.fileName()));
            ++read;
        }
    }
    QVERIFY(read > 50);
    QCOMPARE(knownCount, known.size());
}

void tst_Safety::randomBytes()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge]"));
    QVERIFY(bar.begin());
    QRandomGenerator random(20260101);
    for (int frame = 0; frame < 300; ++frame) {
        QByteArray bytes(random.bounded(1, 400), '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return char(random.bounded(256)); });
        bar.bridge.sendRaw(frame % 2 ? QString::fromLatin1(bytes) : QLatin1Char('{') + QString::fromUtf8(bytes));
        bar.bridge.connection(0)->sendBinaryMessage(bytes);
    }
    QVERIFY(bar.exchange(QStringLiteral("still there?"), QStringLiteral("yes")));
    QCOMPARE(bar.rows(), (QStringList {QStringLiteral("user: still there?"), QStringLiteral("assistant: yes")}));
    QCOMPARE(bar.property("bridgeStatus").toString(), QStringLiteral("idle"));
    QVERIFY(bar.settle());
}

void tst_Safety::malformedFrames()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge]"));
    QVERIFY(bar.begin());
    const auto request = bar.ask(QStringLiteral("odd"));
    const QStringList values {
        QStringLiteral("null"),  QStringLiteral("true"), QStringLiteral("-1"),
        QStringLiteral("1e308"), QStringLiteral("\"\""), QStringLiteral("\"constructor\""),
        QStringLiteral("[]"),    QStringLiteral("{}"),   QStringLiteral("\"\\u0000<img src=x>\"")};
    const QStringList frames {
        QStringLiteral(R"({"type":%1})"),
        QStringLiteral(R"({"type":"event","payload":%1})"),
        QStringLiteral(R"({"type":"event","payload":{"event":%1}})"),
        QStringLiteral(R"({"type":"event","payload":{"event":"agent.routed","agent":%1}})"),
        QStringLiteral(R"({"type":"event","payload":{"event":"plan.phase","phase":%1}})"),
        QStringLiteral(R"({"type":"event","payload":{"event":"plan.step","index":%1,"total":%1,"capabilityId":%1,)"
                       R"("phase":%1}})"),
        QStringLiteral(R"({"type":"event","payload":{"event":"tool.executed","tool":%1}})"),
        QStringLiteral(R"({"type":"response","id":%1,"payload":%1})"),
        QStringLiteral(R"({"id":%1,"result":%1,"error":%1})"),
    };
    for (const QString &frame : frames) {
        for (const QString &value : values) {
            bar.bridge.sendRaw(QString(frame).replace(QLatin1String("%1"), value));
        }
    }
    QVERIFY(bar.answer(request, QStringLiteral("none of it was an answer")));
    QCOMPARE(bar.rows(),
             (QStringList {QStringLiteral("user: odd"), QStringLiteral("assistant: none of it was an answer")}));
    QVERIFY(bar.settle());
    QVERIFY(!bar.property("compactMode").toBool());
}

REGISTER_TEST(tst_Safety, QGuiApplication)

#include "tst_Safety.moc"
