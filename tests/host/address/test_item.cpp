#include "host/support/test_registers.h"

#include "host/address/item.h"
#include "host/address/value_text.h"
#include <host/driver/driver.h>

#include <QtTest>

using namespace cnet;

class TestItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void parses_data();
    void parses();
    void refuses_data();
    void refuses();
    void cutsIntoPieces_data();
    void cutsIntoPieces();

private:
    Driver m_driver;
};

void TestItem::initTestCase()
{
    QString error;
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
}

void TestItem::parses_data()
{
    QTest::addColumn<int>("station");
    QTest::addColumn<QString>("reg");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("text");
    QTest::newRow("D_W:100") << 7 << "D_W" << 100 << 1 << "7/D_W:100";
    QTest::newRow("D_W:100*10") << 7 << "D_W" << 100 << 10 << "7/D_W:100*10";
    QTest::newRow("1/M_bit:3.5") << 1 << "M_bit" << 53 << 1 << "1/M_bit:3.5";
    QTest::newRow("0/D_W:1") << 0 << "D_W" << 1 << 1 << "0/D_W:1";
    QTest::newRow("31/D_W:1") << 31 << "D_W" << 1 << 1 << "31/D_W:1";
    QTest::newRow("TX:7") << 7 << "TX" << 7 << 1 << "7/TX:7";
    QTest::newRow("D_W:0*10000") << 7 << "D_W" << 0 << 10000 << "7/D_W:0*10000";
    QTest::newRow("M_bit:255.15*1") << 7 << "M_bit" << 4095 << 1 << "7/M_bit:255.15";
    QTest::newRow("D_W:0100") << 7 << "D_W" << 100 << 1 << "7/D_W:100";
}

void TestItem::parses()
{
    QString error;
    const auto item =
        parseItem(QLatin1String(QTest::currentDataTag()), 7, m_driver.registers(), error);
    QVERIFY2(item.has_value(), qPrintable(error));
    QTEST(item->station, "station");
    QTEST(item->reg.name, "reg");
    QTEST(item->start, "start");
    QTEST(item->count, "count");
    QTEST(item->text(), "text");
}

void TestItem::refuses_data()
{
    QTest::addColumn<QString>("expected");
    const char form[] = "expected [STATION/]REGISTER:ADDRESS[*COUNT]";
    const char station[] = "a station is a number from 0 to 31";
    const char number[] = "an address of D_W is a number from 0 to 9999";
    for (const char *text : {"", "D_W", "D_W:", ":1", "D_W:1*", "D_W:1*x", "x/D_W:1", "1/2/D_W:1",
                             "D_W:1:2", "D_W:1*2*3", "D_W:1*-1", "/D_W:1", "D_W:1\n"}) {
        QTest::newRow(text) << form;
    }
    QTest::newRow("\x1b[2J:1") << "'?[2J:1': the driver has no register '?[2J', it has";
    QTest::newRow("32/D_W:1") << station;
    QTest::newRow("99999999999/D_W:1") << station;
    QTest::newRow("X_W:1") << "the driver has no register 'X_W', it has D_W ";
    QTest::newRow("d_w:1") << "the driver has no register 'd_w'";
    QTest::newRow("D_W:10000") << number;
    QTest::newRow("D_W:-1") << number;
    QTest::newRow("D_W:1.5") << number;
    QTest::newRow("M_bit:3") << "an address of M_bit is WORD.BIT from 0.0 to 255.15";
    QTest::newRow("M_bit:256.0") << "an address of M_bit is WORD.BIT from 0.0 to 255.15";
    QTest::newRow("D_W:9999*2") << "expected a count of 1, since";
    QTest::newRow("D_W:0*0") << "expected a count of 1 to 10000, since";
    QTest::newRow("D_W:0*99999999999") << "expected a count of 1 to 10000, since";
    QTest::newRow("M_bit:255.0*17") << "expected a count of 1 to 16, since";
}

void TestItem::refuses()
{
    QFETCH(QString, expected);
    QString error;
    const QString text = QLatin1String(QTest::currentDataTag());
    QVERIFY(!parseItem(text, 1, m_driver.registers(), error).has_value());
    QVERIFY2(error.contains(expected), qPrintable(error));
    QVERIFY2(error.startsWith(QLatin1Char('\'') + quotable(text)), qPrintable(error));
}

void TestItem::cutsIntoPieces_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("pieces"); // offset+count of each
    QTest::newRow("as long as a block") << "D_W" << 5 << 60 << "0+60";
    QTest::newRow("one word more") << "D_W" << 5 << 61 << "0+60 60+1";
    QTest::newRow("three blocks") << "D_W" << 0 << 180 << "0+60 60+60 120+60";
    QTest::newRow("each contact alone") << "TX" << 3 << 3 << "0+1 1+1 2+1";
    QTest::newRow("bits of 60 words") << "M_bit" << 0 << 960 << "0+960";
    QTest::newRow("bits of 61 words, unaligned") << "M_bit" << 15 << 961 << "0+945 945+16";
}

void TestItem::cutsIntoPieces()
{
    QFETCH(QString, reg);
    QFETCH(int, start);
    QFETCH(int, count);
    QStringList pieces;
    const Item item = testItem(reg.toLatin1().constData(), start, count);
    for (const ItemBlock &piece : blocksOf(item, 60)) {
        pieces.append(QString::fromLatin1("%1+%2").arg(piece.offset).arg(piece.count));
    }
    QTEST(pieces.join(QLatin1Char(' ')), "pieces");
}

QTEST_APPLESS_MAIN(TestItem)
#include "test_item.moc"
