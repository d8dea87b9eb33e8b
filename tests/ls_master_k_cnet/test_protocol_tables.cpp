#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"

class TestProtocolTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tablesHaveTheirSizes();
    void registerRowIsRight_data();
    void registerRowIsRight();
    void spareRowIsTheDataBitRow();
    void contactFillsNoByte();
    void defaultTextIsRight_data();
    void defaultTextIsRight();
};

void TestProtocolTables::tablesHaveTheirSizes()
{
    QCOMPARE(int(sizeof(REG_LIST) / sizeof(QString)), 16);
    QCOMPARE(int(sizeof(ADDRESS_RANGE_PRO) / sizeof(QString)), 17 * 6);
    QCOMPARE(int(sizeof(ADDRESS_R_COMMAND) / sizeof(QString)), 16);
    QCOMPARE(int(sizeof(ADDRESS_W_COMMAND) / sizeof(QString)), 16);
}

void TestProtocolTables::registerRowIsRight_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("lowest");
    QTest::addColumn<QString>("highest");
    QTest::addColumn<QString>("unitBits");
    QTest::addColumn<QString>("access");
    QTest::addColumn<QString>("wordBits");
    QTest::addColumn<QString>("read");
    QTest::addColumn<QString>("write");

    // clang-format off
    QTest::newRow("D_W")   << 0  << "DDDD"    << "0"   << "9999"    << "16" << "RW" << "16" << "DW" << "DW";
    QTest::newRow("C_W")   << 1  << "DDDD"    << "0"   << "255"     << "16" << "RW" << "16" << "CW" << "CW";
    QTest::newRow("T_W")   << 2  << "DDDDD"   << "0"   << "255"     << "16" << "RW" << "16" << "TW" << "TW";
    QTest::newRow("K_W")   << 3  << "DD"      << "0"   << "31"      << "16" << "RW" << "16" << "KW" << "KW";
    QTest::newRow("P_W")   << 4  << "DD"      << "0"   << "63"      << "16" << "RW" << "16" << "PW" << "PW";
    QTest::newRow("F_W")   << 5  << "DDD"     << "0"   << "255"     << "16" << "RW" << "16" << "FW" << "FW";
    QTest::newRow("L_W")   << 6  << "DDD"     << "0"   << "255"     << "16" << "RW" << "16" << "LW" << "LW";
    QTest::newRow("M_W")   << 7  << "DDD"     << "0"   << "255"     << "16" << "RW" << "16" << "MW" << "MW";
    QTest::newRow("P_bit") << 8  << "DDD.dd"  << "0"   << "255.15"  << "1"  << "RW" << "16" << "PW" << "PX";
    QTest::newRow("K_bit") << 9  << "DDD.dd"  << "0"   << "255.15"  << "1"  << "RW" << "16" << "KW" << "KX";
    QTest::newRow("M_bit") << 10 << "DDD.dd"  << "0"   << "255.15"  << "1"  << "RW" << "16" << "MW" << "MX";
    QTest::newRow("L_bit") << 11 << "DDD.dd"  << "0"   << "255.15"  << "1"  << "RW" << "16" << "LW" << "LX";
    QTest::newRow("F_bit") << 12 << "DDD.dd"  << "0"   << "255.15"  << "1"  << "RW" << "16" << "FW" << "FX";
    QTest::newRow("TX")    << 13 << "DDD"     << "0"   << "255"     << "1"  << "RW" << "1"  << "TX" << "TX";
    QTest::newRow("CX")    << 14 << "DDD"     << "0"   << "255"     << "1"  << "RW" << "1"  << "CX" << "CX";
    QTest::newRow("D_bit") << 15 << "DDDD.dd" << "0.0" << "9999.15" << "1"  << "RW" << "16" << "DW" << "DW";
    // clang-format on
}

void TestProtocolTables::registerRowIsRight()
{
    QFETCH(int, index);

    const QString *const row = ADDRESS_RANGE_PRO[index];
    QCOMPARE(REG_LIST[index], QString::fromLatin1(QTest::currentDataTag()));
    QTEST(row[kFormatColumn], "format");
    QTEST(row[kLowestColumn], "lowest");
    QTEST(row[kHighestColumn], "highest");
    QTEST(row[kUnitWidthColumn], "unitBits");
    QTEST(row[kAccessColumn], "access");
    QTEST(row[kWordWidthColumn], "wordBits");
    QTEST(ADDRESS_R_COMMAND[index], "read");
    QTEST(ADDRESS_W_COMMAND[index], "write");
}

void TestProtocolTables::spareRowIsTheDataBitRow()
{
    QStringList row;
    for (int column = 0; column < kColumnCount; ++column) {
        row.append(ADDRESS_RANGE_PRO[16][column]);
        QCOMPARE(ADDRESS_RANGE_PRO[kSpareRow][column], ADDRESS_RANGE_PRO[15][column]);
    }
    QCOMPARE(row.join(QLatin1String(" ")), QString::fromLatin1("DDDD.dd 0.0 9999.15 1 RW 16"));
}

void TestProtocolTables::contactFillsNoByte()
{
    QCOMPARE(ADDRESS_RANGE_PRO[13][kWordWidthColumn].toInt() / 8, 0);
    QCOMPARE(ADDRESS_RANGE_PRO[14][kWordWidthColumn].toInt() / 8, 0);
}

void TestProtocolTables::defaultTextIsRight_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("serial line") << PROCOTOL_DEFALT_COM_PAR << "38400,8,NONE,1";
    QTest::newRow("network") << PROCOTOL_DEFALT_IP_PAR << "192.168.0.100,8000";
    QTest::newRow("name") << PROCOTOL_NAME << "ls_master_k_cnet";
    QTest::newRow("version") << PROCOTOL_VERSION << "2.0.0.0";
    QTest::newRow("property page") << PROCOTOL_PAR_HMI_SET_MODE << "0_0";
}

void TestProtocolTables::defaultTextIsRight()
{
    QFETCH(QString, text);

    QTEST(text, "expected");
}

QTEST_APPLESS_MAIN(TestProtocolTables)
#include "test_protocol_tables.moc"
