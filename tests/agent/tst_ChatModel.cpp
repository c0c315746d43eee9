// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ChatModel.h"
#include "MessageLog.h"
#include "TestRegistry.h"

#include <QAbstractItemModelTester>
#include <QMetaMethod>
#include <QTest>

#include <functional>

namespace
{

//! A message as "role agent: content", with "..." while it is streaming.
QStringList messagesOf(const ChatModel &model)
{
    QStringList messages;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row);
        const QString agent = index.data(ChatModel::AgentNameRole).toString();
        messages.append(index.data(ChatModel::RoleRole).toString()
                        + (agent.isEmpty() ? agent : QLatin1Char(' ') + agent) + QStringLiteral(": ")
                        + index.data(ChatModel::ContentRole).toString()
                        + (index.data(ChatModel::IsStreamingRole).toBool() ? QStringLiteral("...") : QString()));
    }
    return messages;
}

using Act = std::function<void(ChatModel &)>;

} // namespace

Q_DECLARE_METATYPE(Act)

//! Each operation on a chat: the messages afterwards, and the signals in their order.
class tst_ChatModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void operations_data();
    void operations();
    void timestamps();
    void roles();
    void noData();
    void lastAssistantMessage_data();
    void lastAssistantMessage();
    void fromQml();
};

void tst_ChatModel::operations_data()
{
    QTest::addColumn<Act>("before");
    QTest::addColumn<Act>("act");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QString>("emitted");

    const auto add = [](const char *name, const Act &before, const Act &act, const QStringList &messages,
                        const char *emitted) {
        QTest::newRow(name) << before << act << messages << QString::fromLatin1(emitted);
    };
    const auto text = [](const char *content) { return QString::fromUtf8(content); };
    const Act nothing = [](ChatModel &) {};
    const Act user = [=](ChatModel &model) { model.addUserMessage(text("hello")); };
    const Act assistant = [=](ChatModel &model) { model.addAssistantMessage(text("Hi"), text("Chat")); };
    const Act nameless = [=](ChatModel &model) { model.addAssistantMessage(text("Hi")); };
    const Act streaming = [=](ChatModel &model) { model.appendToLastMessage(text("Hi")); };
    const Act streamingBeforeUser = [=](ChatModel &model) {
        model.appendToLastMessage(text("Hi"));
        model.addUserMessage(text("hello"));
    };
    const Act chunk = [=](ChatModel &model) { model.appendToLastMessage(text(" there"), text("Planner")); };
    const Act finish = [](ChatModel &model) { model.finishStreaming(); };
    const Act clear = [](ChatModel &model) { model.clear(); };

    add(
        "message", nothing, [=](ChatModel &model) { model.addMessage(text("hi")); }, {text("user: hi")},
        "inserted 0 added count");
    add(
        "message of a role and an agent", user,
        [=](ChatModel &model) { model.addMessage(text("hi"), text("tool"), text("Files")); },
        {text("user: hello"), text("tool Files: hi")}, "inserted 1 added count");
    add("user", nothing, user, {text("user: hello")}, "inserted 0 added count");
    add("assistant", user, assistant, {text("user: hello"), text("assistant Chat: Hi")}, "inserted 1 added count");
    add("assistant without a name", nothing, nameless, {text("assistant: Hi")}, "inserted 0 added count");

    add("first chunk", nothing, chunk, {text("assistant Planner:  there...")}, "inserted 0 count added");
    add("chunk after the user", user, chunk, {text("user: hello"), text("assistant Planner:  there...")},
        "inserted 1 count added");
    add("chunk to a finished message", assistant, chunk, {text("assistant Chat: Hi there...")},
        "changed 0 257 261 259 added");
    add("chunk to a message without a name", nameless, chunk, {text("assistant Planner: Hi there...")},
        "changed 0 257 261 259 added");
    add(
        "chunk without a name", assistant, [=](ChatModel &model) { model.appendToLastMessage(text("!")); },
        {text("assistant Chat: Hi!...")}, "changed 0 257 261 259 added");
    add(
        "chunk after another role", [=](ChatModel &model) { model.addMessage(text("hi"), text("Assistant")); }, chunk,
        {text("Assistant: hi"), text("assistant Planner:  there...")}, "inserted 1 count added");

    add("finish", streaming, finish, {text("assistant: Hi")}, "changed 0 261");
    add("finish nothing", nothing, finish, {}, "");
    add("finish a finished message", assistant, finish, {text("assistant Chat: Hi")}, "");
    add("finish looks at the last message only", streamingBeforeUser, finish,
        {text("assistant: Hi..."), text("user: hello")}, "");

    add("clear", streamingBeforeUser, clear, {}, "reset count");
    add("clear nothing", nothing, clear, {}, "reset count");
}

void tst_ChatModel::operations()
{
    QFETCH(Act, before);
    QFETCH(Act, act);
    QFETCH(QStringList, messages);

    ChatModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    before(model);
    QStringList emitted;
    connect(&model, &ChatModel::rowsInserted, this,
            [&](const QModelIndex &, int first) { emitted.append(QStringLiteral("inserted %1").arg(first)); });
    connect(&model, &ChatModel::dataChanged, this,
            [&](const QModelIndex &first, const QModelIndex &last, const QVector<int> &roles) {
                QCOMPARE(first, last);
                emitted.append(QStringLiteral("changed %1").arg(first.row()));
                for (const int role : roles) {
                    emitted.append(QString::number(role));
                }
            });
    connect(&model, &ChatModel::modelReset, this, [&] { emitted.append(QStringLiteral("reset")); });
    connect(&model, &ChatModel::messageAdded, this, [&] { emitted.append(QStringLiteral("added")); });
    connect(&model, &ChatModel::countChanged, this, [&] { emitted.append(QStringLiteral("count")); });
    act(model);
    QCOMPARE(messagesOf(model), messages);
    QTEST(emitted.join(QLatin1Char(' ')), "emitted");
    QCOMPARE(model.getCount(), messages.size());
    QCOMPARE(model.property("count").toInt(), messages.size());
    QCOMPARE(model.rowCount(), messages.size());
}

void tst_ChatModel::timestamps()
{
    ChatModel model;
    const QDateTime before = QDateTime::currentDateTime();
    model.addUserMessage(QStringLiteral("hello"));
    model.appendToLastMessage(QStringLiteral("Hi"));
    for (int row = 0; row < 2; ++row) {
        const QVariant timestamp = model.index(row).data(ChatModel::TimestampRole);
        QCOMPARE(timestamp.type(), QVariant::DateTime);
        QCOMPARE(timestamp.toDateTime().timeSpec(), Qt::LocalTime);
        QVERIFY(timestamp.toDateTime() >= before && timestamp.toDateTime() <= QDateTime::currentDateTime());
    }
    // It is the time at which the message began.
    const QVariant began = model.index(1).data(ChatModel::TimestampRole);
    model.appendToLastMessage(QStringLiteral(" there"));
    QCOMPARE(model.index(1).data(ChatModel::TimestampRole), began);
}

void tst_ChatModel::roles()
{
    const QHash<int, QByteArray> expected = {
        {257, "content"}, {258, "role"}, {259, "agentName"}, {260, "timestamp"}, {261, "isStreaming"}};
    QCOMPARE(ChatModel().roleNames(), expected);
}

void tst_ChatModel::noData()
{
    ChatModel model;
    const MessageLog log;
    model.addUserMessage(QStringLiteral("hello"));
    const QModelIndex index = model.index(0);
    QVERIFY(index.data(257).isValid());
    for (const int role : {256, 262, int(Qt::DisplayRole)}) {
        QVERIFY(!model.data(index, role).isValid());
    }
    QVERIFY(!model.data(QModelIndex(), 257).isValid());
    QCOMPARE(model.rowCount(index), 0);
    model.clear();
    QVERIFY(!model.data(index, 257).isValid()); // a row that is gone
    QCOMPARE(log.count(QString()), 0);
}

void tst_ChatModel::lastAssistantMessage_data()
{
    QTest::addColumn<QStringList>("roles");
    QTest::addColumn<QString>("last");

    const auto roles = [](const char *names) { return QString::fromLatin1(names).split(QLatin1Char(' ')); };
    QTest::newRow("none") << QStringList() << QString();
    QTest::newRow("only the user") << roles("user") << QString();
    QTest::newRow("the last") << roles("assistant user assistant") << QStringLiteral("2");
    QTest::newRow("before others") << roles("assistant assistant user Assistant") << QStringLiteral("1");
}

void tst_ChatModel::lastAssistantMessage()
{
    QFETCH(QStringList, roles);

    ChatModel model;
    for (int i = 0; i < roles.size(); ++i) {
        model.addMessage(QString::number(i), roles.at(i));
    }
    QTEST(model.getLastAssistantMessage(), "last");
}

//! QML sees these names, and may leave out the last arguments.
void tst_ChatModel::fromQml()
{
    QStringList names;
    const QMetaObject &type = ChatModel::staticMetaObject;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        names.append(QString::fromLatin1(type.method(i).methodSignature()));
    }
    names.sort();
    const QStringList expected = {
        QStringLiteral("addAssistantMessage(QString)"),
        QStringLiteral("addAssistantMessage(QString,QString)"),
        QStringLiteral("addMessage(QString)"),
        QStringLiteral("addMessage(QString,QString)"),
        QStringLiteral("addMessage(QString,QString,QString)"),
        QStringLiteral("addUserMessage(QString)"),
        QStringLiteral("appendToLastMessage(QString)"),
        QStringLiteral("appendToLastMessage(QString,QString)"),
        QStringLiteral("clear()"),
        QStringLiteral("countChanged()"),
        QStringLiteral("finishStreaming()"),
        QStringLiteral("getCount()"),
        QStringLiteral("getLastAssistantMessage()"),
        QStringLiteral("messageAdded()"),
    };
    QCOMPARE(names, expected);
}

REGISTER_TEST(tst_ChatModel, QCoreApplication)

#include "tst_ChatModel.moc"
