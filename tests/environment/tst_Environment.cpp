// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Environment.h"
#include "ScopedEnvironment.h"
#include "TestRegistry.h"

#include <QProcessEnvironment>
#include <QTest>

#include <set>
#include <string>
#include <vector>

#include <unistd.h>

namespace
{

constexpr auto s_name = "TOVICTL_TEST";

//! The value as the C library, Qt and child processes find it; null if it isn't set or they differ.
QByteArray value()
{
    const QByteArray ofLibrary(getenv(s_name));
    const QString ofChildren = QProcessEnvironment::systemEnvironment().value(QString::fromLatin1(s_name));
    return ofLibrary == qgetenv(s_name) && ofLibrary == ofChildren.toUtf8() ? ofLibrary : QByteArray();
}

//! The variables that a thread finds which has taken this array from environ.
std::vector<std::string> read(char **array)
{
    std::vector<std::string> variables;
    for (; *array; ++array) {
        variables.emplace_back(*array);
    }
    return variables;
}

} // namespace

class tst_Environment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void setsAndUnsets();
    void similarNames();
    void readersAreNotDisturbed_data();
    void readersAreNotDisturbed();
    void worksWithOtherChanges();
    void memoryDoesNotGrow();
    void temporaryVariable();
    void temporaryVariableKeepsTheUsersValue_data();
    void temporaryVariableKeepsTheUsersValue();
};

void tst_Environment::init()
{
    qunsetenv(s_name);
}

void tst_Environment::setsAndUnsets()
{
    const std::vector<std::string> before = read(environ);
    Environment::set(s_name, "1");
    QCOMPARE(value(), QByteArray("1"));
    Environment::set(s_name, "ü = 2");
    QCOMPARE(value(), QByteArray("ü = 2"));
    Environment::set(s_name, "");
    QVERIFY(qEnvironmentVariableIsSet(s_name));
    QCOMPARE(value(), QByteArray(""));
    Environment::unset(s_name);
    QVERIFY(!qEnvironmentVariableIsSet(s_name));
    Environment::unset(s_name);
    QVERIFY(read(environ) == before);
}

void tst_Environment::similarNames()
{
    const ScopedEnvironment longer("TOVICTL_TEST_2", "longer");
    const ScopedEnvironment shorter("TOVICTL_TES", "shorter");
    Environment::set(s_name, "1");
    Environment::unset(s_name);
    QCOMPARE(qgetenv("TOVICTL_TEST_2"), QByteArray("longer"));
    QCOMPARE(qgetenv("TOVICTL_TES"), QByteArray("shorter"));
}

void tst_Environment::readersAreNotDisturbed_data()
{
    QTest::addColumn<QByteArray>("before"); // null: not set
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("added") << QByteArray() << QByteArray("1");
    QTest::newRow("changed") << QByteArray("1") << QByteArray("2");
    QTest::newRow("removed") << QByteArray("1") << QByteArray();
}

void tst_Environment::readersAreNotDisturbed()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const ScopedEnvironment variable(s_name, before);
    const ScopedEnvironment last("TOVICTL_TEST_LAST", "behind it");
    char **const array = environ;
    const std::vector<std::string> expected = read(array);
    after.isNull() ? Environment::unset(s_name) : Environment::set(s_name, after);
    QVERIFY(read(array) == expected);
    QCOMPARE(value(), after);
}

void tst_Environment::worksWithOtherChanges()
{
    const std::vector<std::string> before = read(environ);
    Environment::set(s_name, "1");
    qputenv("TOVICTL_TEST_2", "by Qt");
    qputenv(s_name, "2");
    QCOMPARE(value(), QByteArray("2"));
    Environment::set(s_name, "1");
    QCOMPARE(value(), QByteArray("1"));
    QCOMPARE(qgetenv("TOVICTL_TEST_2"), QByteArray("by Qt"));
    qunsetenv("TOVICTL_TEST_2");
    Environment::set(s_name, "3");
    QCOMPARE(value(), QByteArray("3"));
    Environment::unset(s_name);
    QVERIFY(read(environ) == before);
}

void tst_Environment::memoryDoesNotGrow()
{
    std::set<char **> arrays;
    std::set<const char *> values;
    for (int i = 0; i < 100; ++i) {
        Environment::set(s_name, "1");
        arrays.insert(environ);
        values.insert(getenv(s_name));
        Environment::unset(s_name);
        arrays.insert(environ);
    }
    QVERIFY(arrays.size() <= 2);
    QCOMPARE(values.size(), std::size_t(1));
}

void tst_Environment::temporaryVariable()
{
    {
        const Environment::TemporaryVariable variable(s_name, "50");
        QCOMPARE(value(), QByteArray("50"));
    }
    QVERIFY(!qEnvironmentVariableIsSet(s_name));
}

void tst_Environment::temporaryVariableKeepsTheUsersValue_data()
{
    QTest::addColumn<QByteArray>("usersValue");

    QTest::newRow("a value") << QByteArray("30");
    QTest::newRow("the same value") << QByteArray("50");
    QTest::newRow("an empty value") << QByteArray("");
}

void tst_Environment::temporaryVariableKeepsTheUsersValue()
{
    QFETCH(QByteArray, usersValue);
    const ScopedEnvironment user(s_name, usersValue);
    {
        const Environment::TemporaryVariable variable(s_name, "50");
        QCOMPARE(value(), usersValue);
    }
    QVERIFY(qEnvironmentVariableIsSet(s_name));
    QCOMPARE(value(), usersValue);
}

REGISTER_TEST(tst_Environment, QCoreApplication)

#include "tst_Environment.moc"
