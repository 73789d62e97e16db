#pragma once

#include "support/testenvironment.h"

#include <QtTest>

// Like QTEST_GUILESS_MAIN / QTEST_MAIN, but with the isolated home in place before the application
// object (and with it any QSettings) exists.
#define TAVERO_TEST_MAIN_IMPL(TestObject, AppClass)                                                \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        tavero::test::TestEnvironment environment;                                                 \
        AppClass app(argc, argv);                                                                  \
        TestObject test;                                                                           \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return QTest::qExec(&test, argc, argv);                                                    \
    }

#define TAVERO_TEST_GUILESS_MAIN(TestObject) TAVERO_TEST_MAIN_IMPL(TestObject, QCoreApplication)
#define TAVERO_TEST_GUI_MAIN(TestObject) TAVERO_TEST_MAIN_IMPL(TestObject, QApplication)
