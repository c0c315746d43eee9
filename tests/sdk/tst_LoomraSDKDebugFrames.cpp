// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"
#include "DebugLogFile.h"

#include "DebugEventLog.h"
#include "TestRegistry.h"

#include <QTest>

// The entries in the debug event log about frames, and which of them are not valid JSON.
class tst_LoomraSDKDebugFrames : public ConnectedSdkTest
{
    Q_OBJECT

private Q_SLOTS:
    void malformedFrames_data();
    void malformedFrames();
    void longFrames();
    void controlCharactersBreakALine_data();
    void controlCharactersBreakALine();
    void rawQuotesBreakALineAlone();
};

void tst_LoomraSDKDebugFrames::malformedFrames_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QString>("preview");
    QTest::addColumn<QString>("second");
    const QString parsed = QStringLiteral("Parsed message object %1");
    const QString nothing = parsed.arg(QLatin1String(R"({"hasType":0,"type":"","hasId":0})"));
    QTest::newRow("not JSON") << "a\"b"
                              << R"(a\"b)"
                              << R"(JSON parse error {"error":"illegal value"})";
    QTest::newRow("cut off") << R"({"id":)"
                             << R"({\"id\":)"
                             << R"(JSON parse error {"error":"unterminated object"})";
    QTest::newRow("no object") << "[1]"
                               << "[1]" << nothing;
    QTest::newRow("type is no text") << R"({"type":1})"
                                     << R"({\"type\":1})"
                                     << parsed.arg(QLatin1String(R"({"hasType":1,"type":"","hasId":0})"));
    QTest::newRow("stream") << R"({"type":"stream","id":3})"
                            << R"({\"type\":\"stream\",\"id\":3})"
                            << parsed.arg(QLatin1String(R"({"hasType":1,"type":"stream","hasId":1})"));
    QTest::newRow("type with a quote and a backslash")
        << R"({"type":"a\"\\"})"
        << R"({\"type\":\"a\\\"\\\\\"})" << parsed.arg(QLatin1String(R"({"hasType":1,"type":"a\"\\","hasId":0})"));
    QTest::newRow("lines") << "{\n}\n"
                           << R"({\n}\n)" << nothing;
    QTest::newRow("placeholders") << R"({"a":"%1%2%3"})"
                                  << R"({\"a\":\"%1%2%3\"})" << nothing;
    QTest::newRow("beyond ASCII") << R"({"a":"ü 🙂"})"
                                  << R"({\"a\":\"ü 🙂\"})" << nothing;
}

void tst_LoomraSDKDebugFrames::malformedFrames()
{
    QFETCH(QString, frame);
    QFETCH(QString, preview);
    QFETCH(QString, second);
    DebugLogFile file("1");
    QVERIFY(fixture->deliver(frame));
    const QString receiver = QStringLiteral("onWebSocketTextMessageReceived: ");
    QCOMPARE(file.takeEvents(),
             QStringList(
                 {QString(receiver
                          + QStringLiteral(R"(WebSocket message received {"messageLength":%1,"messagePreview":"%2"})")
                                .arg(QString::number(frame.size()), preview)),
                  QString(receiver + second)}));
}

//! The preview has 200 characters, counted before escaping.
void tst_LoomraSDKDebugFrames::longFrames()
{
    DebugLogFile file("1");
    const QString quotes = QString(1000, QLatin1Char('"'));
    QVERIFY(fixture->deliver(quotes));
    QCOMPARE(file.takeEvents().first(),
             QStringLiteral(R"(onWebSocketTextMessageReceived: WebSocket message received )")
                 + QStringLiteral(R"({"messageLength":1000,"messagePreview":"%1"})")
                       .arg(QStringLiteral("\\\"").repeated(200)));
    // The cut can split a surrogate pair; the line stays valid.
    QVERIFY(fixture->deliver(QString(199, QLatin1Char('x')) + QStringLiteral("🙂")));
    QCOMPARE(file.takeEvents().size(), 2);
}

void tst_LoomraSDKDebugFrames::controlCharactersBreakALine_data()
{
    QTest::addColumn<QString>("character");
    QTest::newRow("tab") << QStringLiteral("\t");
    QTest::newRow("carriage return") << QStringLiteral("\r");
    QTest::newRow("escape") << QStringLiteral("\x1b");
}

//! Intentional: only backslashes, quotes and newlines are escaped, so a preview with other control characters is not
//! valid JSON. Readers of the log skip such lines.
void tst_LoomraSDKDebugFrames::controlCharactersBreakALine()
{
    QFETCH(QString, character);
    DebugLogFile file("1");
    QVERIFY(fixture->deliver(QStringLiteral("{\"a\":\"%1\"}").arg(character)));
    const QList<QByteArray> lines = file.lines();
    QCOMPARE(lines.size(), 2);
    QVERIFY(!isStrictJson(lines.at(0)));
    QVERIFY(lines.at(0).contains(QByteArray(R"("messagePreview":"{\"a\":\")") + character.toUtf8()));
    QVERIFY(isStrictJson(lines.at(1)));
}

void tst_LoomraSDKDebugFrames::rawQuotesBreakALineAlone()
{
    DebugLogFile file("1");
    DebugEventLog::write(QStringLiteral("LoomraSDK:test"), QStringLiteral("m"), QStringLiteral(R"({"d":"a"b"})"));
    fixture->sdk.listAgents();
    fixture->peer.takeRequest(QStringLiteral("listAgents"));
    const QList<QByteArray> lines = file.lines();
    QCOMPARE(lines.size(), 3);
    QVERIFY(!isStrictJson(lines.at(0)));
    QVERIFY(lines.at(0).startsWith(R"({"location":"LoomraSDK:test","message":"m","data":{"d":"a"b"},"timestamp":)"));
    QVERIFY(isStrictJson(lines.at(1)) && isStrictJson(lines.at(2)));
}

REGISTER_TEST(tst_LoomraSDKDebugFrames, QCoreApplication)

#include "tst_LoomraSDKDebugFrames.moc"
