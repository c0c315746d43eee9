// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentRequests.h"
#include "Json.h"
#include "TestRegistry.h"

#include <QTest>

using AgentRequests::Conversation;

namespace
{

const Conversation s_full {QStringLiteral("s1"), QStringLiteral("planner"), QStringLiteral("p/m"),
                           QStringLiteral("voice")};

} // namespace

class tst_AgentRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chatOmitsEmptyValues_data();
    void chatOmitsEmptyValues();
    void cancelNamesTheSession();
    void rephraseIsASeparateChat_data();
    void rephraseIsASeparateChat();
    void rephraseKeepsPlaceholdersInUserText();
    void uiActionAcceptsObjectsOnly_data();
    void uiActionAcceptsObjectsOnly();
    void feedbackOmitsEmptyValues_data();
    void feedbackOmitsEmptyValues();
    void feedbackCutsLongTexts_data();
    void feedbackCutsLongTexts();
};

void tst_AgentRequests::chatOmitsEmptyValues_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("sessionId");
    QTest::addColumn<QString>("agent");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("inputMode");
    QTest::addColumn<QJsonObject>("params");

    QTest::newRow("everything")
        << "hi"
        << "s1"
        << "planner"
        << "p/m"
        << "voice" << json(R"({"message":"hi","sessionId":"s1","agent":"planner","model":"p/m","inputMode":"voice"})");
    QTest::newRow("nothing") << "hi"
                             << ""
                             << ""
                             << ""
                             << "" << json(R"({"message":"hi","inputMode":"text"})");
    QTest::newRow("auto is an agent") << "hi"
                                      << ""
                                      << "auto"
                                      << ""
                                      << "text" << json(R"({"message":"hi","agent":"auto","inputMode":"text"})");
    QTest::newRow("whitespace stays") << "  hi \n"
                                      << ""
                                      << ""
                                      << " p/m "
                                      << "x" << json(R"({"message":"  hi \n","model":" p/m ","inputMode":"x"})");
    QTest::newRow("empty message stays") << ""
                                         << ""
                                         << ""
                                         << ""
                                         << "text" << json(R"({"message":"","inputMode":"text"})");
}

void tst_AgentRequests::chatOmitsEmptyValues()
{
    QFETCH(QString, message);
    QFETCH(QString, sessionId);
    QFETCH(QString, agent);
    QFETCH(QString, model);
    QFETCH(QString, inputMode);
    QTEST(AgentRequests::chat(message, {sessionId, agent, model, inputMode}), "params");
}

void tst_AgentRequests::cancelNamesTheSession()
{
    QCOMPARE(AgentRequests::cancel(s_full), json(R"({"sessionId":"s1"})"));
    QCOMPARE(AgentRequests::cancel({}), QJsonObject());
}

void tst_AgentRequests::rephraseIsASeparateChat_data()
{
    QTest::addColumn<QString>("sessionId");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("keys");

    QTest::newRow("session and model") << "s1"
                                       << "p/m"
                                       << "agent message model sessionId";
    QTest::newRow("session") << "s1"
                             << ""
                             << "agent message sessionId";
    QTest::newRow("model") << ""
                           << "p/m"
                           << "agent message model";
    QTest::newRow("neither") << ""
                             << ""
                             << "agent message";
}

void tst_AgentRequests::rephraseIsASeparateChat()
{
    QFETCH(QString, sessionId);
    QFETCH(QString, model);
    const QJsonObject params = AgentRequests::rephrase(
        QStringLiteral("open uh the files"), {sessionId, QStringLiteral("planner"), model, QStringLiteral("voice")});
    QTEST(params.keys().join(QLatin1Char(' ')), "keys");
    QCOMPARE(params.value(QStringLiteral("agent")).toString(), QStringLiteral("chat"));
    QCOMPARE(params.value(QStringLiteral("sessionId")).toString(), sessionId);
    QCOMPARE(params.value(QStringLiteral("model")).toString(), model);
    QCOMPARE(params.value(QStringLiteral("message")).toString(),
             QStringLiteral("You are a text-only assistant. Do NOT execute any actions or tools. Rephrase the following"
                            " voice-transcribed command into a clear, concise instruction. Return ONLY the rephrased"
                            " sentence, nothing else. If it is already clear, return it unchanged.\n\n"
                            "\"open uh the files\""));
}

void tst_AgentRequests::rephraseKeepsPlaceholdersInUserText()
{
    const QString said = QStringLiteral("set volume to %1 %2 \"%L1\" 50%");
    const QString message = AgentRequests::rephrase(said, {}).value(QStringLiteral("message")).toString();
    QVERIFY2(message.endsWith(QStringLiteral("unchanged.\n\n\"") + said + QLatin1Char('"')), qUtf8Printable(message));
}

void tst_AgentRequests::uiActionAcceptsObjectsOnly_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QJsonObject>("object");

    QTest::newRow("object") << R"({"a":{"b":[1]}})" << json(R"({"a":{"b":[1]}})");
    QTest::newRow("id, colon, label") << "opt1:Dark mode" << QJsonObject();
    QTest::newRow("value, colon, label") << "50:Volume" << QJsonObject();
    QTest::newRow("array") << "[1]" << QJsonObject();
    QTest::newRow("number") << "5" << QJsonObject();
    QTest::newRow("text") << "\"x\"" << QJsonObject();
    QTest::newRow("cut object") << R"({"a":1)" << QJsonObject();
    QTest::newRow("object and more") << R"({"a":1} x)" << QJsonObject();
    QTest::newRow("empty") << "" << QJsonObject();
}

void tst_AgentRequests::uiActionAcceptsObjectsOnly()
{
    QFETCH(QString, data);
    QFETCH(QJsonObject, object);
    QJsonObject expected {{QStringLiteral("actionType"), QStringLiteral("option_selected")},
                          {QStringLiteral("data"), object}};
    QCOMPARE(AgentRequests::uiAction(QStringLiteral("option_selected"), data, {}), expected);
    expected.insert(QStringLiteral("sessionId"), QStringLiteral("s1"));
    QCOMPARE(AgentRequests::uiAction(QStringLiteral("option_selected"), data, s_full), expected);
}

void tst_AgentRequests::feedbackOmitsEmptyValues_data()
{
    QTest::addColumn<QString>("userQuery");
    QTest::addColumn<QString>("sessionId");
    QTest::addColumn<QString>("inputMode");
    QTest::addColumn<QJsonObject>("params");

    QTest::newRow("everything") << "why"
                                << "s1"
                                << "voice"
                                << json(R"({"vote":"up","messageIndex":3,"messageText":"so","userQuery":"why",
                                            "sessionId":"s1","source":"omnibar","inputMode":"voice"})");
    QTest::newRow("nothing") << ""
                             << ""
                             << "" << json(R"({"vote":"up","messageIndex":3,"messageText":"so",
                                         "source":"omnibar","inputMode":"text"})");
}

void tst_AgentRequests::feedbackOmitsEmptyValues()
{
    QFETCH(QString, userQuery);
    QFETCH(QString, sessionId);
    QFETCH(QString, inputMode);
    QTEST(AgentRequests::feedback({QStringLiteral("up"), 3, QStringLiteral("so"), userQuery},
                                  {sessionId, QStringLiteral("planner"), QStringLiteral("p/m"), inputMode}),
          "params");

    const QJsonObject empty = AgentRequests::feedback({QString(), -1, QString(), QString()}, {});
    QCOMPARE(empty, json(R"({"vote":"","messageIndex":-1,"messageText":"","source":"omnibar","inputMode":"text"})"));
}

void tst_AgentRequests::feedbackCutsLongTexts_data()
{
    QTest::addColumn<int>("messageLength");
    QTest::addColumn<int>("queryLength");
    QTest::addColumn<int>("messageSent");
    QTest::addColumn<int>("querySent");

    QTest::newRow("at the limits") << 2000 << 500 << 2000 << 500;
    QTest::newRow("one above") << 2001 << 501 << 2000 << 500;
    QTest::newRow("far above") << 2500 << 600 << 2000 << 500;
    QTest::newRow("below") << 1 << 1 << 1 << 1;
}

void tst_AgentRequests::feedbackCutsLongTexts()
{
    QFETCH(int, messageLength);
    QFETCH(int, queryLength);
    QFETCH(int, messageSent);
    QFETCH(int, querySent);
    // Truncation keeps the beginning.
    const QString message = QLatin1Char('a') + QString(messageLength - 1, QLatin1Char('m'));
    const QString query = QLatin1Char('b') + QString(queryLength - 1, QLatin1Char('q'));
    const QJsonObject params = AgentRequests::feedback({QStringLiteral("down"), 0, message, query}, {});
    QCOMPARE(params.value(QStringLiteral("messageText")).toString(), message.left(messageSent));
    QCOMPARE(params.value(QStringLiteral("userQuery")).toString(), query.left(querySent));
}

REGISTER_TEST(tst_AgentRequests, QCoreApplication)
#include "tst_AgentRequests.moc"
