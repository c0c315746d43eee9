// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentReply.h"
#include "Json.h"
#include "TestRegistry.h"

#include <QTest>

#include <limits>

namespace
{

constexpr int s_max = std::numeric_limits<int>::max();
constexpr int s_min = std::numeric_limits<int>::min();

} // namespace

class tst_AgentReply : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsesTexts_data();
    void parsesTexts();
    void parsesUsage_data();
    void parsesUsage();
    void mergesFollowUps_data();
    void mergesFollowUps();
    void parsesPlanSteps_data();
    void parsesPlanSteps();
    void parsesIds_data();
    void parsesIds();
    void dropsOnePairOfQuotationMarks_data();
    void dropsOnePairOfQuotationMarks();
};

void tst_AgentReply::parsesTexts_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("response");
    QTest::addColumn<QString>("sessionId");

    QTest::newRow("both") << R"({"response":"hi","sessionId":"s1"})"
                          << "hi"
                          << "s1";
    QTest::newRow("neither") << "{}"
                             << ""
                             << "";
    QTest::newRow("numbers") << R"({"response":5,"sessionId":7})"
                             << ""
                             << "";
    QTest::newRow("objects") << R"({"response":{"text":"hi"},"sessionId":null})"
                             << ""
                             << "";
    QTest::newRow("whitespace stays") << R"({"response":" hi\n","sessionId":" "})"
                                      << " hi\n"
                                      << " ";
}

void tst_AgentReply::parsesTexts()
{
    QFETCH(QString, result);
    const AgentReply reply = AgentReply::read(json(result));
    QTEST(reply.response, "response");
    QTEST(reply.sessionId, "sessionId");
}

void tst_AgentReply::parsesUsage_data()
{
    QTest::addColumn<QString>("usage");
    QTest::addColumn<int>("input");
    QTest::addColumn<int>("output");

    QTest::newRow("both") << R"({"inputTokens":12,"outputTokens":34})" << 12 << 34;
    QTest::newRow("one") << R"({"inputTokens":5})" << 5 << 0;
    QTest::newRow("none") << "{}" << 0 << 0;
    QTest::newRow("truncated") << R"({"inputTokens":1.9,"outputTokens":0.9})" << 1 << 0;
    QTest::newRow("negative") << R"({"inputTokens":-1.9,"outputTokens":-7})" << -1 << -7;
    QTest::newRow("beyond an int") << R"({"inputTokens":3000000000,"outputTokens":-1e300})" << s_max << s_min;
    QTest::newRow("limits") << R"({"inputTokens":2147483647,"outputTokens":-2147483648})" << s_max << s_min;
    QTest::newRow("no numbers") << R"({"inputTokens":"5","outputTokens":null})" << 0 << 0;
    QTest::newRow("array") << "[5,6]" << 0 << 0;
    QTest::newRow("number") << "5" << 0 << 0;
}

void tst_AgentReply::parsesUsage()
{
    QFETCH(QString, usage);
    const AgentReply reply = AgentReply::read(json(QStringLiteral("{\"usage\":%1}").arg(usage)));
    QTEST(reply.inputTokens, "input");
    QTEST(reply.outputTokens, "output");
}

void tst_AgentReply::mergesFollowUps_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<bool>("hasUi");
    QTest::addColumn<QString>("uiJson");

    QTest::newRow("nothing") << R"({"response":"hi"})" << false << "";
    QTest::newRow("ui") << R"({"ui":{"blocks":[1, 2]}})" << true << R"({"blocks":[1,2]})";
    QTest::newRow("empty ui") << R"({"ui":{}})" << true << "{}";
    QTest::newRow("ui and followUps") << R"({"ui":{"blocks":[]},"followUps":["a"]})" << true
                                      << R"({"blocks":[],"followUps":["a"]})";
    QTest::newRow("ui with its own followUps")
        << R"({"ui":{"followUps":["own"]},"followUps":["other"]})" << true << R"({"followUps":["own"]})";
    QTest::newRow("ui with a null of its own")
        << R"({"ui":{"followUps":null},"followUps":["other"]})" << true << R"({"followUps":null})";
    QTest::newRow("followUps alone") << R"({"followUps":[{"label":"x"}]})" << false
                                     << R"({"followUps":[{"label":"x"}]})";
    QTest::newRow("empty followUps alone") << R"({"followUps":[]})" << false << R"({"followUps":[]})";
    QTest::newRow("followUps no array") << R"({"followUps":{"a":1}})" << false << "";
    QTest::newRow("ui and followUps no array") << R"({"ui":{"b":1},"followUps":"x"})" << true << R"({"b":1})";
    QTest::newRow("ui no object") << R"({"ui":[1]})" << false << "";
    QTest::newRow("ui no object, followUps") << R"({"ui":"x","followUps":[1]})" << false << R"({"followUps":[1]})";
    QTest::newRow("other alphabets") << R"({"ui":{"t":"ü日"}})" << true << R"({"t":"ü日"})";
}

void tst_AgentReply::mergesFollowUps()
{
    QFETCH(QString, result);
    const AgentReply reply = AgentReply::read(json(result));
    QTEST(reply.hasUi, "hasUi");
    QTEST(reply.uiJson, "uiJson");
}

void tst_AgentReply::parsesPlanSteps_data()
{
    QTest::addColumn<QString>("payload");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("total");
    QTest::addColumn<QString>("capability");
    QTest::addColumn<QString>("phase");
    QTest::addColumn<bool>("running");

    QTest::newRow("whole") << R"({"index":1,"total":3,"capabilityId":"theme.apply","phase":"run"})" << 1 << 3
                           << "theme.apply"
                           << "run" << true;
    QTest::newRow("empty") << "{}" << -1 << 0 << ""
                           << "" << false;
    QTest::newRow("first") << R"({"index":0})" << 0 << 0 << ""
                           << "" << true;
    QTest::newRow("truncated") << R"({"index":2.9,"total":3.9})" << 2 << 3 << ""
                               << "" << true;
    QTest::newRow("towards zero") << R"({"index":-0.9})" << 0 << 0 << ""
                                  << "" << true;
    QTest::newRow("negative") << R"({"index":-5,"total":-2})" << -5 << -2 << ""
                              << "" << false;
    QTest::newRow("beyond an int") << R"({"index":1e18,"total":-1e18})" << s_max << s_min << ""
                                   << "" << true;
    QTest::newRow("other types") << R"({"index":"1","total":null,"capabilityId":5,"phase":{}})" << -1 << 0 << ""
                                 << "" << false;
}

void tst_AgentReply::parsesPlanSteps()
{
    QFETCH(QString, payload);
    const PlanStep step = PlanStep::read(json(payload));
    QTEST(step.index, "index");
    QTEST(step.total, "total");
    QTEST(step.capability, "capability");
    QTEST(step.phase, "phase");
    QTEST(step.isRunning(), "running");
}

void tst_AgentReply::parsesIds_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<quint64>("id");

    QTest::newRow("whole") << "7" << quint64(7);
    QTest::newRow("truncated") << "7.9" << quint64(7);
    QTest::newRow("below one") << "0.9" << quint64(0);
    QTest::newRow("zero") << "0" << quint64(0);
    QTest::newRow("negative") << "-1" << quint64(0);
    QTest::newRow("negative by far") << "-1e300" << quint64(0);
    QTest::newRow("beyond 32 bits") << "5000000000" << quint64(5000000000);
    QTest::newRow("2 to the 63rd") << "9223372036854775808" << (quint64(1) << 63);
    QTest::newRow("2 to the 64th") << "18446744073709551616" << quint64(0);
    QTest::newRow("huge") << "1e300" << quint64(0);
    QTest::newRow("text") << "\"7\"" << quint64(0);
    QTest::newRow("null") << "null" << quint64(0);
    QTest::newRow("true") << "true" << quint64(0);
    QTest::newRow("array") << "[7]" << quint64(0);
}

void tst_AgentReply::parsesIds()
{
    QFETCH(QString, value);
    QTEST(requestIdOf(json(QStringLiteral("{\"id\":%1}").arg(value)).value(QStringLiteral("id"))), "id");
    QCOMPARE(requestIdOf(QJsonValue::Undefined), quint64(0));
    QCOMPARE(requestIdOf(std::numeric_limits<double>::quiet_NaN()), quint64(0));
}

void tst_AgentReply::dropsOnePairOfQuotationMarks_data()
{
    QTest::addColumn<QString>("response");
    QTest::addColumn<QString>("text");

    QTest::newRow("bare") << "open it"
                          << "open it";
    QTest::newRow("double") << "\"open it\""
                            << "open it";
    QTest::newRow("single") << "'open it'"
                            << "open it";
    QTest::newRow("outer whitespace is removed first") << " \n\"open it\"\t"
                                                       << "open it";
    QTest::newRow("inner whitespace stays") << "\" open it \""
                                            << " open it ";
    QTest::newRow("one pair only") << "\"\"open it\"\""
                                   << "\"open it\"";
    QTest::newRow("single inside double") << "\"'open it'\""
                                          << "'open it'";
    QTest::newRow("two kinds") << "\"open it'"
                               << "\"open it'";
    QTest::newRow("two kinds turned") << "'open it\""
                                      << "'open it\"";
    QTest::newRow("start only") << "'open it"
                                << "'open it";
    QTest::newRow("end only") << "open it\""
                              << "open it\"";
    QTest::newRow("lone mark") << "\""
                               << "\"";
    QTest::newRow("lone single mark") << " ' "
                                      << "'";
    QTest::newRow("empty pair") << "\"\""
                                << "";
    QTest::newRow("typographic") << "“open it”"
                                 << "“open it”";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("whitespace") << " \n"
                                << "";
}

void tst_AgentReply::dropsOnePairOfQuotationMarks()
{
    QFETCH(QString, response);
    QTEST(withoutQuotationMarks(response), "text");
}

REGISTER_TEST(tst_AgentReply, QCoreApplication)
#include "tst_AgentReply.moc"
