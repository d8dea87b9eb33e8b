#include "host/address/assignment.h"
#include <host/driver/driver.h>

#include <QtTest>

using namespace cnet;

class TestAssignment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void parses_data();
    void parses();
    void refuses_data();
    void refuses();

private:
    Driver m_driver;
};

void TestAssignment::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

void TestAssignment::parses_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *given, const char *text) { QTest::newRow(given) << text; };
    row("D_W:100=5", "7/D_W:100=5");
    row("2/D_W:100=5", "2/D_W:100=5");
    row("D_W:100=1,-2,0x10", "7/D_W:100*3=1,65534,16");
    row("D_W:100= 1 , 2 ", "7/D_W:100*2=1,2");
    row("D_W:100*3=1,2,3", "7/D_W:100*3=1,2,3");
    row("D_W:100*3=9", "7/D_W:100*3=9,9,9");
    row("D_W:100*1=9", "7/D_W:100=9");
    row("M_bit:3.5=1", "7/M_bit:3.5=1");
    row("M_bit:3.15=1,0", "7/M_bit:3.15*2=1,0");
    row("TX:7=0", "7/TX:7=0");
    row("D_W:0*9=1", "7/D_W:0*9=1,1,1,1,1,1,1,1,...");
}

void TestAssignment::parses()
{
    QString error;
    const auto assignment =
        parseAssignment(QLatin1String(QTest::currentDataTag()), 7, m_driver.registers(), error);
    QVERIFY2(assignment.has_value(), qPrintable(error));
    QTEST(assignment->text(), "text");
    QCOMPARE(static_cast<int>(assignment->values.size()), assignment->item.count);
}

void TestAssignment::refuses_data()
{
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *text, const char *expected) {
        QTest::newRow(text) << QString::fromLatin1(expected);
    };
    row("", "expected ITEM=VALUE");
    row("D_W:100", "expected ITEM=VALUE");
    row("=5", "expected ITEM=VALUE");
    row("D_W:100=", "'' is no value of D_W");
    row("D_W:100=1,", "'' is no value of D_W");
    row("D_W:100=1,,2", "'' is no value of D_W");
    row("D_W:100=65536", "'65536' is no value of D_W, which is -32768 to 65535 or 0x0 to 0xFFFF");
    row("D_W:100=1=2", "'1=2' is no value of D_W");
    row("M_bit:3.5=2", "'2' is no value of M_bit, which is 0 or 1");
    row("TX:3=0x1", "'0x1' is no value of TX, which is 0 or 1");
    row("D_W:100*3=1,2", "expected 1 or 3 values, not 2");
    row("D_W:100*2=1,2,3", "expected 1 or 2 values, not 3");
    row("D_W:100*1=1,2", "expected 1 value, not 2");
    row("Q_W:1=1", "the driver has no register 'Q_W'");
    row("D_W:x=1", "an address of D_W is a number from 0 to 9999");
    row("D_W:10000=1", "an address of D_W is a number from 0 to 9999");
    row("M_bit:3=1", "an address of M_bit is WORD.BIT");
}

void TestAssignment::refuses()
{
    QFETCH(QString, expected);
    QString error;
    QVERIFY(
        !parseAssignment(QLatin1String(QTest::currentDataTag()), 1, m_driver.registers(), error));
    QVERIFY2(error.contains(expected), qPrintable(error));
}

QTEST_APPLESS_MAIN(TestAssignment)
#include "test_assignment.moc"
