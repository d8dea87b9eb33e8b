#pragma once

#include <type_traits>

#include <QtTest/QtTest>

// Qt 4.8 compares values of one type only; a comparison of two does not link there. This one does
// not compile anywhere. Every driver test is compiled with it.
#undef QCOMPARE
#define QCOMPARE(actual, expected)                                                        \
    do {                                                                                  \
        static_assert(std::is_same<std::decay<decltype(actual)>::type,                    \
                                   std::decay<decltype(expected)>::type>::value,          \
                      "QCOMPARE of two types, which Qt 4.8 does not have");               \
        if (!QTest::qCompare(actual, expected, #actual, #expected, __FILE__, __LINE__)) { \
            return;                                                                       \
        }                                                                                 \
    } while (false)
