#include <climits>

#include <QtTest/QtTest>

#include "shared/wrap.h"

class TestWrap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void overflowWrapsRound_data();
    void overflowWrapsRound();
    void fractionIsCut_data();
    void fractionIsCut();
};

void TestWrap::overflowWrapsRound_data()
{
    QTest::addColumn<int>("a");
    QTest::addColumn<int>("b");
    QTest::addColumn<int>("sum");
    QTest::addColumn<int>("difference");
    QTest::addColumn<int>("product");

    QTest::newRow("small") << 7 << 3 << 10 << 4 << 21;
    QTest::newRow("negative") << -7 << 3 << -4 << -10 << -21;
    QTest::newRow("above the top") << INT_MAX << 1 << INT_MIN << INT_MAX - 1 << INT_MAX;
    QTest::newRow("below the bottom") << INT_MIN << -1 << INT_MAX << INT_MIN + 1 << INT_MIN;
    QTest::newRow("both at the top") << INT_MAX << INT_MAX << -2 << 0 << 1;
    QTest::newRow("product beyond the top") << INT_MAX << 4 << INT_MIN + 3 << INT_MAX - 4 << -4;
}

void TestWrap::overflowWrapsRound()
{
    QFETCH(int, a);
    QFETCH(int, b);

    QTEST(wrapAdd(a, b), "sum");
    QTEST(wrapSub(a, b), "difference");
    QTEST(wrapMul(a, b), "product");
}

void TestWrap::fractionIsCut_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("expected");

    QTest::newRow("towards zero from above") << 2.9 << 2;
    QTest::newRow("towards zero from below") << -2.9 << -2;
    QTest::newRow("top") << 2147483647.0 << INT_MAX;
    QTest::newRow("bottom") << -2147483648.0 << INT_MIN;
    QTest::newRow("beyond the top") << 1e18 << INT_MAX;
    QTest::newRow("beyond the bottom") << -1e18 << INT_MIN;
}

void TestWrap::fractionIsCut()
{
    QFETCH(double, value);
    QFETCH(int, expected);

    QCOMPARE(truncToInt(value), expected);
}

QTEST_APPLESS_MAIN(TestWrap)
#include "test_wrap.moc"
