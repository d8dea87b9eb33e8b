#include "host/support/test_registers.h"

#include "host/driver/driver_library.h"
#include "host/driver/item_check.h"

#include <QtTest>

using namespace cnet;

class TestItemCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void asksTheDriver_data();
    void asksTheDriver();
    void distrustsAnotherNumber();
    void namesEveryCode_data();
    void namesEveryCode();

private:
    DriverLibrary m_driver;
};

void TestItemCheck::initTestCase()
{
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE)), qPrintable(m_driver.errorText()));
}

void TestItemCheck::asksTheDriver_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("expected"); // empty: good
    const auto row = [](const char *name, const char *reg, int start, int count,
                        const char *expected) {
        QTest::newRow(name) << QString::fromLatin1(reg) << start << count
                            << QString::fromLatin1(expected);
    };
    row("lowest word", "D_W", 0, 1, "");
    row("all words", "D_W", 0, 10000, "");
    row("highest word", "D_W", 9999, 1, "");
    row("one word too many", "D_W", 9999, 2, "'1/D_W:9999*2': out of range");
    row("beyond", "D_W", 10000, 1, "'1/D_W:10000': out of range");
    row("all bits", "M_bit", 0, 4096, "");
    row("one bit too many", "M_bit", 4095, 2, "out of range; an address of M_bit is WORD.BIT");
    row("all contacts", "TX", 0, 256, "");
    row("one contact too many", "TX", 0, 257, "out of range");
}

void TestItemCheck::asksTheDriver()
{
    QFETCH(QString, reg);
    QFETCH(int, start);
    QFETCH(int, count);
    QFETCH(QString, expected);
    const Item item = testItem(reg.toLatin1().constData(), start, count);
    for (const Access access : {Access::Read, Access::Write}) {
        QString error;
        QCOMPARE(checkItem(m_driver.functions(), item, access, error), expected.isEmpty());
        QVERIFY2(error.contains(expected), qPrintable(error));
    }
}

// A driver that reads addresses in another way would write somewhere else.
void TestItemCheck::distrustsAnotherNumber()
{
    DriverFunctions functions;
    functions.checkAddr = [](const QString &, const QString &, int &addr, int, int, int) {
        addr = 7;
        return 0;
    };
    QString error;
    QVERIFY(checkItem(functions, testItem("D_W", 7, 1), Access::Read, error));
    QVERIFY(!checkItem(functions, testItem("D_W", 8, 1), Access::Read, error));
    QVERIFY2(error.contains(QLatin1String("the driver takes it for 7")), qPrintable(error));
}

void TestItemCheck::namesEveryCode_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("valid") << 0;
    QTest::newRow("a bit register used as words") << 1;
    QTest::newRow("out of range") << 2;
    QTest::newRow("no such register") << 3;
    QTest::newRow("not in the register's format") << 4;
    QTest::newRow("the data type does not fit") << 5;
    QTest::newRow("cannot be written") << 6;
    QTest::newRow("refused with code 7") << 7;
}

void TestItemCheck::namesEveryCode()
{
    QFETCH(int, code);
    QVERIFY(addressCodeText(code).contains(QLatin1String(QTest::currentDataTag())));
}

QTEST_APPLESS_MAIN(TestItemCheck)
#include "test_item_check.moc"
