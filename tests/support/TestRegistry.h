// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QCoreApplication>
#include <QTest>

//! The test classes of one executable. Tests of one room share an executable, so that an edit links one file and not
//! dozens; each class still runs in a process of its own, as `tests_ROOM CLASS [ARGUMENTS OF QTEST]`.
namespace TestRegistry
{

//! Takes the place of main(), with the arguments that follow the class name. @return the exit status
using Run = int (*)(int argc, char **argv);

//! See REGISTER_TEST.
struct Registration
{
    Registration(const char *name, Run run);
};

//! Runs the class that the first argument names. @return the exit status
int run(int argc, char **argv);

//! For tests without an application object.
struct NoApplication
{
    NoApplication(int &, char **) { }
};

template<typename Application, typename Test>
int runWith(int argc, char **argv)
{
    const Application application(argc, argv);
    // As QTEST_MAIN does: sizes of fonts don't depend on the display.
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace TestRegistry

//! Adds a test class, in place of QTEST_MAIN. Application is QCoreApplication, QGuiApplication or
//! TestRegistry::NoApplication.
#define REGISTER_TEST(Test, Application)                                                                               \
    static const TestRegistry::Registration s_registration(#Test, TestRegistry::runWith<Application, Test>);

//! Adds a test class with a custom main(), which is given as a function.
#define REGISTER_TEST_MAIN(Test, main) static const TestRegistry::Registration s_registration(#Test, main);
