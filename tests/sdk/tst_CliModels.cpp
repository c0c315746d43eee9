// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "CliModels.h"
#include "FakePath.h"
#include "Files.h"
#include "MessageLog.h"
#include "TestRegistry.h"

#include <QJsonObject>
#include <QTest>

#include <csignal>
#include <memory>

using namespace std::chrono_literals;

namespace
{

const QString s_cli = QStringLiteral("loomra");

QJsonObject row(const char *fullId)
{
    return {{QStringLiteral("fullId"), QLatin1String(fullId)}};
}

//! The fullId of each row.
QStringList idsOf(const QJsonArray &rows)
{
    QStringList ids;
    for (const QJsonValue value : rows) {
        ids.append(value.toObject().value(QLatin1String("fullId")).toString());
    }
    return ids;
}

} // namespace

class tst_CliModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void fixedValues();
    void makesRows();
    void parsesLines_data();
    void parsesLines();
    void detectsFreeModels_data();
    void detectsFreeModels();
    void merges_data();
    void merges();
    void mergeKeepsTheBridgesRow();
    void runsTheCli();
    void givesTheCliNoInput();
    void returnsNothingOnCliFailure_data();
    void returnsNothingOnCliFailure();
    void returnsNothingWithoutCli();
    void killsAHangingCli();

private:
    std::unique_ptr<MessageLog> m_log;
};

void tst_CliModels::init()
{
    m_log = std::make_unique<MessageLog>();
}

void tst_CliModels::cleanup()
{
    QCOMPARE(m_log->warnings(), QStringList());
    m_log.reset();
}

void tst_CliModels::makesRows()
{
    const QJsonArray expected {QJsonObject {
        {QStringLiteral("id"), QStringLiteral("gpt-4o-mini")},
        {QStringLiteral("name"), QStringLiteral("gpt-4o-mini")},
        {QStringLiteral("provider"), QStringLiteral("openai")},
        {QStringLiteral("fullId"), QStringLiteral("openai/gpt-4o-mini")},
        {QStringLiteral("displayName"), QStringLiteral("openai/gpt-4o-mini")},
        {QStringLiteral("free"), false},
    }};
    QCOMPARE(CliModels::rowsIn(QStringLiteral("openai/gpt-4o-mini")), expected);
}

void tst_CliModels::parsesLines_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("rows"); // provider and model of each row

    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("two") << "a/b\nc/d\n"
                         << "[a|b][c|d]";
    QTest::newRow("all ends of lines") << "a/b\r\nc/d\re/f\n\n\r\n\ng/h"
                                       << "[a|b][c|d][e|f][g|h]";
    QTest::newRow("surrounded by whitespace") << "  a / b \t\n"
                                              << "[a|b]";
    QTest::newRow("inner whitespace") << "a b/c d"
                                      << "[a b|c d]";
    QTest::newRow("whitespace line") << "   \na/b"
                                     << "[a|b]";
    QTest::newRow("three parts") << "openrouter/meta/llama"
                                 << "[openrouter|meta/llama]";
    QTest::newRow("two slashes") << "a//b"
                                 << "[a|/b]";
    QTest::newRow("no slash") << "Available models:\na/b\nWarning, old"
                              << "[a|b]";
    QTest::newRow("no provider") << "/b\n /c"
                                 << "";
    QTest::newRow("no model") << "a/\nb/ "
                              << "";
    QTest::newRow("slash alone") << "/"
                                 << "";
    QTest::newRow("twice") << "a/b\na/b"
                           << "[a|b][a|b]";
    QTest::newRow("beyond ASCII") << QStringLiteral("ä/模型") << QStringLiteral("[ä|模型]");
}

void tst_CliModels::parsesLines()
{
    QFETCH(QString, output);
    QString rows;
    for (const QJsonValue value : CliModels::rowsIn(output)) {
        const QJsonObject row = value.toObject();
        const QString provider = row.value(QLatin1String("provider")).toString();
        const QString model = row.value(QLatin1String("id")).toString();
        QCOMPARE(row.value(QLatin1String("name")).toString(), model);
        QCOMPARE(row.value(QLatin1String("fullId")).toString(), QString(provider + QLatin1Char('/') + model));
        rows += QLatin1Char('[') + provider + QLatin1Char('|') + model + QLatin1Char(']');
    }
    QTEST(rows, "rows");
}

void tst_CliModels::detectsFreeModels_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("isFree");

    QTest::newRow("no") << "openai/gpt-4o-mini" << false;
    QTest::newRow("model") << "loomra/qwen-free" << true;
    QTest::newRow("any case") << "loomra/FREEdom" << true;
    QTest::newRow("provider") << "FreeCloud/big" << true;
    QTest::newRow("not across the slash") << "f/ree" << false;
}

void tst_CliModels::detectsFreeModels()
{
    QFETCH(QString, line);
    const QJsonArray rows = CliModels::rowsIn(line);
    QCOMPARE(rows.size(), 1);
    QTEST(rows.first().toObject().value(QLatin1String("free")).toBool(), "isFree");
}

void tst_CliModels::merges_data()
{
    QTest::addColumn<QJsonArray>("bridgeRows");
    QTest::addColumn<QJsonArray>("cliRows");
    QTest::addColumn<QStringList>("merged");

    const auto ids = [](const char *list) { return QString::fromLatin1(list).split(QLatin1Char(' ')); };
    QTest::newRow("none") << QJsonArray() << QJsonArray() << QStringList();
    QTest::newRow("bridge alone") << QJsonArray {row("a/b")} << QJsonArray() << ids("a/b");
    QTest::newRow("CLI alone") << QJsonArray() << QJsonArray {row("a/b"), row("c/d")} << ids("a/b c/d");
    QTest::newRow("bridge first") << QJsonArray {row("z/z"), row("m/m")} << QJsonArray {row("a/b")}
                                  << ids("z/z m/m a/b");
    QTest::newRow("same in both") << QJsonArray {row("a/b")} << QJsonArray {row("c/d"), row("a/b")} << ids("a/b c/d");
    QTest::newRow("case counts") << QJsonArray {row("a/b")} << QJsonArray {row("A/b")} << ids("a/b A/b");
    QTest::newRow("CLI twice") << QJsonArray() << QJsonArray {row("a/b"), row("a/b")} << ids("a/b");
    QTest::newRow("bridge twice") << QJsonArray {row("a/b"), row("a/b")} << QJsonArray {row("a/b")} << ids("a/b a/b");
    QTest::newRow("no id in the CLI's") << QJsonArray {row("a/b")} << QJsonArray {row(""), QJsonObject(), 5}
                                        << ids("a/b");
    QTest::newRow("no id in the bridge's")
        << QJsonArray {QJsonObject(), QStringLiteral("a/b")} << QJsonArray {row("a/b")}
        << QStringList {QString(), QString(), QStringLiteral("a/b")};
}

void tst_CliModels::merges()
{
    QFETCH(QJsonArray, bridgeRows);
    QFETCH(QJsonArray, cliRows);
    QTEST(idsOf(CliModels::merge(bridgeRows, cliRows)), "merged");
}

void tst_CliModels::mergeKeepsTheBridgesRow()
{
    const QJsonArray bridgeRows {QJsonObject {{QStringLiteral("fullId"), QStringLiteral("a/b")},
                                              {QStringLiteral("free"), true},
                                              {QStringLiteral("more"), 1}}};
    QCOMPARE(CliModels::merge(bridgeRows, CliModels::rowsIn(QStringLiteral("a/b"))), bridgeRows);
}

void tst_CliModels::runsTheCli()
{
    FakePath path;
    path.add(s_cli, R"(printf '%s|' "$@" > ")" + QFile::encodeName(path.filePath(QStringLiteral("arguments"))) + R"("
printf 'b/on the error stream\n' >&2
printf 'Models\nloomra/größe\r\nloomra/other')");
    QCOMPARE(idsOf(CliModels::list()), (QStringList {QStringLiteral("loomra/größe"), QStringLiteral("loomra/other")}));
    QCOMPARE(contentOf(path.filePath(QStringLiteral("arguments"))), QByteArray("models|"));
}

void tst_CliModels::givesTheCliNoInput()
{
    FakePath path;
    const QString note = path.filePath(QStringLiteral("input"));
    path.add(s_cli, "readlink /proc/$$/fd/0 > '" + QFile::encodeName(note) + "'; cat; echo loomra/model");
    QCOMPARE(idsOf(CliModels::list()), QStringList(QStringLiteral("loomra/model")));
    QCOMPARE(contentOf(note), QByteArray("/dev/null\n"));
}

void tst_CliModels::returnsNothingOnCliFailure_data()
{
    QTest::addColumn<QByteArray>("script");

    QTest::newRow("fails") << QByteArray("echo a/b; exit 3");
    QTest::newRow("crashes") << QByteArray("echo a/b; kill -SEGV $$");
    QTest::newRow("is ended") << QByteArray("echo a/b; kill -TERM $$");
    QTest::newRow("prints nothing") << QByteArray("exit 0");
    QTest::newRow("prints junk") << QByteArray("printf '\\000\\377\\376 junk \\033[0m \\302'");
    QTest::newRow("prints to the error stream") << QByteArray("echo a/b >&2");
}

void tst_CliModels::returnsNothingOnCliFailure()
{
    QFETCH(QByteArray, script);
    FakePath path;
    path.add(s_cli, script);
    QCOMPARE(CliModels::list(), QJsonArray());
}

void tst_CliModels::returnsNothingWithoutCli()
{
    FakePath path(FakePath::Rest::Hidden);
    QCOMPARE(CliModels::list(), QJsonArray());
    path.add(s_cli, "echo a/b", "/nowhere/sh");
    QCOMPARE(CliModels::list(), QJsonArray());
}

void tst_CliModels::killsAHangingCli()
{
    FakePath path;
    const QString note = path.filePath(QStringLiteral("pid"));
    path.add(s_cli, "echo a/b; echo $$ > '" + QFile::encodeName(note) + "'; exec sleep 1000");

    // On a busy machine the script needs some time to get to its `sleep`.
    for (auto timeout = 50ms; contentOf(note).isEmpty() && timeout < 1min; timeout *= 2) {
        QCOMPARE(CliModels::list(timeout), QJsonArray());
    }
    const int pid = contentOf(note).trimmed().toInt();
    QVERIFY(pid > 0);
    QCOMPARE(::kill(pid, 0), -1);
}

void tst_CliModels::fixedValues()
{
    QCOMPARE(CliModels::ListTimeout, std::chrono::milliseconds(6000));
}

REGISTER_TEST(tst_CliModels, QCoreApplication)
#include "tst_CliModels.moc"
