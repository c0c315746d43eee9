// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BridgeFrame.h"
#include "Json.h"
#include "TestRegistry.h"

#include <QTest>

using Kind = BridgeFrame::Kind;

Q_DECLARE_METATYPE(BridgeFrame::Kind)

class tst_BridgeFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void distinguishesKinds_data();
    void distinguishesKinds();
    void findsTheResultOfBothForms_data();
    void findsTheResultOfBothForms();
    void parsesEvents_data();
    void parsesEvents();
    void keepsIdAndErrorUnchanged();
    void reportsParseErrors_data();
    void reportsParseErrors();
    void treatsOtherTopLevelsAsEmptyObjects();
    void survivesAnyDepth();
    void errorTextIsMessageOrCode_data();
    void errorTextIsMessageOrCode();
    void requestIsCompactAndWhole_data();
    void requestIsCompactAndWhole();
};

void tst_BridgeFrame::distinguishesKinds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Kind>("kind");

    QTest::newRow("ready") << R"({"type":"ready","sdkInitialized":true})" << Kind::Ready;
    QTest::newRow("event") << R"({"type":"event","payload":{"event":"ready"}})" << Kind::Event;
    QTest::newRow("stream") << R"({"type":"stream","id":1})" << Kind::Stream;
    QTest::newRow("error") << R"({"type":"error","error":{"message":"x"}})" << Kind::Error;
    QTest::newRow("response") << R"({"type":"response","id":1,"payload":{}})" << Kind::Response;
    QTest::newRow("no type") << R"({"id":1,"result":{}})" << Kind::OlderReply;
    QTest::newRow("unknown type") << R"({"type":"answer"})" << Kind::OlderReply;
    QTest::newRow("empty type") << R"({"type":""})" << Kind::OlderReply;
    QTest::newRow("other case") << R"({"type":"Ready"})" << Kind::OlderReply;
    QTest::newRow("type with whitespace") << R"({"type":"ready "})" << Kind::OlderReply;
    QTest::newRow("type is a number") << R"({"type":5})" << Kind::OlderReply;
    QTest::newRow("type is an array") << R"({"type":["ready"]})" << Kind::OlderReply;
    QTest::newRow("last of two types counts") << R"({"type":"ready","type":"event"})" << Kind::Event;
    QTest::newRow("empty object") << "{}" << Kind::OlderReply;
    QTest::newRow("surrounded by whitespace") << " \n{\"type\":\"ready\"}\n " << Kind::Ready;
}

void tst_BridgeFrame::distinguishesKinds()
{
    QFETCH(QString, text);
    const BridgeFrame frame = BridgeFrame::parse(text);
    QTEST(frame.kind, "kind");
    QVERIFY(frame.isObject);
    QCOMPARE(frame.parseError, QStringLiteral("no error occurred"));
    QCOMPARE(frame.message, json(text));
}

void tst_BridgeFrame::findsTheResultOfBothForms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QJsonValue>("result");

    QTest::newRow("response") << R"({"type":"response","payload":1,"result":2})" << QJsonValue(1);
    QTest::newRow("older") << R"({"payload":1,"result":2})" << QJsonValue(2);
    QTest::newRow("stream is like older") << R"({"type":"stream","payload":1,"result":2})" << QJsonValue(2);
    QTest::newRow("response without") << R"({"type":"response","result":2})" << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("older without") << R"({"payload":1})" << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("null") << R"({"type":"response","payload":null})" << QJsonValue(QJsonValue::Null);
    QTest::newRow("array") << R"({"result":[true]})" << QJsonValue(QJsonArray {true});
}

void tst_BridgeFrame::findsTheResultOfBothForms()
{
    QFETCH(QString, text);
    QTEST(BridgeFrame::parse(text).result, "result");
}

void tst_BridgeFrame::parsesEvents_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("payloadKeys");

    QTest::newRow("name and more") << R"({"type":"event","payload":{"event":"plan.phase","phase":"x"}})"
                                   << "plan.phase" << 2;
    QTest::newRow("no name") << R"({"type":"event","payload":{"phase":"x"}})" << QString() << 1;
    QTest::newRow("name is a number") << R"({"type":"event","payload":{"event":7}})" << QString() << 1;
    QTest::newRow("payload is a text") << R"({"type":"event","payload":"ready"})" << QString() << 0;
    QTest::newRow("no payload") << R"({"type":"event","event":"ready"})" << QString() << 0;
    QTest::newRow("a response is no event") << R"({"type":"response","payload":{"event":"ready"}})" << QString() << 0;
}

void tst_BridgeFrame::parsesEvents()
{
    QFETCH(QString, text);
    const BridgeFrame frame = BridgeFrame::parse(text);
    QTEST(frame.eventName, "name");
    QTEST(frame.eventPayload.size(), "payloadKeys");
}

void tst_BridgeFrame::keepsIdAndErrorUnchanged()
{
    const BridgeFrame full = BridgeFrame::parse(QStringLiteral(R"({"id":"7","error":{"code":"E1"}})"));
    QCOMPARE(full.id, QJsonValue(QStringLiteral("7")));
    QCOMPARE(full.error, QJsonValue(QJsonObject {{QStringLiteral("code"), QStringLiteral("E1")}}));

    const BridgeFrame bare = BridgeFrame::parse(QStringLiteral("{}"));
    QVERIFY(bare.id.isUndefined());
    QVERIFY(bare.error.isUndefined());
}

void tst_BridgeFrame::reportsParseErrors_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QString();
    QTest::newRow("word") << "hello";
    QTest::newRow("cut") << R"({"type":"ready")";
    QTest::newRow("rest behind") << "{} x";
    QTest::newRow("two objects") << "{}{}";
    QTest::newRow("number") << "5";
    QTest::newRow("number out of range") << R"({"id":1e999})";
    QTest::newRow("control character") << QStringLiteral("{\"a\":1}") + QChar(0);
    QTest::newRow("byte order mark inside") << QStringLiteral("{}") + QChar(0xfeff);
}

void tst_BridgeFrame::reportsParseErrors()
{
    QFETCH(QString, text);
    const BridgeFrame frame = BridgeFrame::parse(text);
    QCOMPARE(frame.kind, Kind::Unreadable);
    QVERIFY(!frame.isObject);
    QVERIFY(!frame.parseError.isEmpty());
    QVERIFY(frame.parseError != QLatin1String("no error occurred"));
    QVERIFY(frame.message.isEmpty());
    QVERIFY(frame.id.isUndefined());
    QVERIFY(frame.result.isUndefined());
}

void tst_BridgeFrame::treatsOtherTopLevelsAsEmptyObjects()
{
    const BridgeFrame frame = BridgeFrame::parse(QStringLiteral(R"([{"type":"ready"}])"));
    QCOMPARE(frame.kind, Kind::OlderReply);
    QVERIFY(!frame.isObject);
    QVERIFY(frame.message.isEmpty());
    QVERIFY(frame.id.isUndefined());
    QCOMPARE(frame.parseError, QStringLiteral("no error occurred"));
}

void tst_BridgeFrame::survivesAnyDepth()
{
    const int depth = 1000000;
    QCOMPARE(BridgeFrame::parse(QString(depth, QLatin1Char('['))).kind, Kind::Unreadable);
    QCOMPARE(BridgeFrame::parse(QString(depth, QLatin1Char('[')) + QString(depth, QLatin1Char(']'))).kind,
             Kind::Unreadable);
}

void tst_BridgeFrame::errorTextIsMessageOrCode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("errorText");

    QTest::newRow("both") << R"({"error":{"message":"no","code":"E1"}})"
                          << "no";
    QTest::newRow("code alone") << R"({"error":{"code":"E1"}})"
                                << "E1";
    QTest::newRow("empty message") << R"({"error":{"message":"","code":"E1"}})"
                                   << "E1";
    QTest::newRow("message is no string") << R"({"error":{"message":7,"code":"E1"}})"
                                          << "E1";
    QTest::newRow("code is no string") << R"({"error":{"code":7}})"
                                       << "";
    QTest::newRow("no object") << R"({"error":"no"})"
                               << "";
    QTest::newRow("no error") << "{}"
                              << "";
}

void tst_BridgeFrame::errorTextIsMessageOrCode()
{
    QFETCH(QString, text);
    QTEST(BridgeFrame::parse(text).errorText(), "errorText");
}

void tst_BridgeFrame::requestIsCompactAndWhole_data()
{
    QTest::addColumn<qint64>("id");
    QTest::addColumn<QJsonObject>("params");
    QTest::addColumn<QString>("text");

    QTest::newRow("first") << qint64(1) << QJsonObject() << R"({"id":1,"method":"m","params":{}})";
    QTest::newRow("beyond 32 bits") << qint64(5000000000) << QJsonObject()
                                    << R"({"id":5000000000,"method":"m","params":{}})";
    QTest::newRow("other alphabets and newlines")
        << qint64(2) << QJsonObject {{QStringLiteral("a"), QStringLiteral("ü\n日\U0001F600\"")}}
        << QStringLiteral("{\"id\":2,\"method\":\"m\",\"params\":{\"a\":\"ü\\n日\U0001F600\\\"\"}}");
}

void tst_BridgeFrame::requestIsCompactAndWhole()
{
    QFETCH(qint64, id);
    QFETCH(QJsonObject, params);
    QTEST(BridgeFrame::request(id, QStringLiteral("m"), params), "text");
}

REGISTER_TEST(tst_BridgeFrame, QCoreApplication)
#include "tst_BridgeFrame.moc"
