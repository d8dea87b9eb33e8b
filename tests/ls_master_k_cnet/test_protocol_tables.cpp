#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "support/rows.h"

static const struct
{
    const char *what;
    int index;
    const char *format, *lowest, *highest, *unitBits, *access, *wordBits, *read, *write;
} kRegisterRowIsRight[] = {
    {"D_W", 0, "DDDD", "0", "9999", "16", "RW", "16", "DW", "DW"},
    {"C_W", 1, "DDDD", "0", "255", "16", "RW", "16", "CW", "CW"},
    {"T_W", 2, "DDDDD", "0", "255", "16", "RW", "16", "TW", "TW"},
    {"K_W", 3, "DD", "0", "31", "16", "RW", "16", "KW", "KW"},
    {"P_W", 4, "DD", "0", "63", "16", "RW", "16", "PW", "PW"},
    {"F_W", 5, "DDD", "0", "255", "16", "RW", "16", "FW", "FW"},
    {"L_W", 6, "DDD", "0", "255", "16", "RW", "16", "LW", "LW"},
    {"M_W", 7, "DDD", "0", "255", "16", "RW", "16", "MW", "MW"},
    {"P_bit", 8, "DDD.dd", "0", "255.15", "1", "RW", "16", "PW", "PX"},
    {"K_bit", 9, "DDD.dd", "0", "255.15", "1", "RW", "16", "KW", "KX"},
    {"M_bit", 10, "DDD.dd", "0", "255.15", "1", "RW", "16", "MW", "MX"},
    {"L_bit", 11, "DDD.dd", "0", "255.15", "1", "RW", "16", "LW", "LX"},
    {"F_bit", 12, "DDD.dd", "0", "255.15", "1", "RW", "16", "FW", "FX"},
    {"TX", 13, "DDD", "0", "255", "1", "RW", "1", "TX", "TX"},
    {"CX", 14, "DDD", "0", "255", "1", "RW", "1", "CX", "CX"},
    {"D_bit", 15, "DDDD.dd", "0.0", "9999.15", "1", "RW", "16", "DW", "DW"},
};

static const Case<const QString *, const char *> kDefaultTextIsRight[] = {
    {"serial line", &PROCOTOL_DEFALT_COM_PAR, "38400,8,NONE,1"},
    {"network", &PROCOTOL_DEFALT_IP_PAR, "192.168.0.100,8000"},
    {"name", &PROCOTOL_NAME, "ls_master_k_cnet"},
    {"version", &PROCOTOL_VERSION, "2.0.0.0"},
    {"property page", &PROCOTOL_PAR_HMI_SET_MODE, "0_0"},
};

class TestProtocolTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tablesHaveTheirSizes()
    {
        QCOMPARE(int(sizeof(REG_LIST) / sizeof(QString)), 16);
        QCOMPARE(int(sizeof(ADDRESS_RANGE_PRO) / sizeof(QString)), 17 * 6);
        QCOMPARE(int(sizeof(ADDRESS_R_COMMAND) / sizeof(QString)), 16);
        QCOMPARE(int(sizeof(ADDRESS_W_COMMAND) / sizeof(QString)), 16);
    }

    void registerRowIsRight_data() { addRows(kRegisterRowIsRight); }
    void registerRowIsRight()
    {
        const auto &row = currentRow(kRegisterRowIsRight);
        const QString *const columns = ADDRESS_RANGE_PRO[row.index];
        QCOMPARE(REG_LIST[row.index], latin(QTest::currentDataTag()));
        QCOMPARE(columns[kFormatColumn], latin(row.format));
        QCOMPARE(columns[kLowestColumn], latin(row.lowest));
        QCOMPARE(columns[kHighestColumn], latin(row.highest));
        QCOMPARE(columns[kUnitWidthColumn], latin(row.unitBits));
        QCOMPARE(columns[kAccessColumn], latin(row.access));
        QCOMPARE(columns[kWordWidthColumn], latin(row.wordBits));
        QCOMPARE(ADDRESS_R_COMMAND[row.index], latin(row.read));
        QCOMPARE(ADDRESS_W_COMMAND[row.index], latin(row.write));
    }

    void spareRowIsTheDataBitRow()
    {
        QStringList row;
        for (int column = 0; column < kColumnCount; ++column) {
            row.append(ADDRESS_RANGE_PRO[16][column]);
            QCOMPARE(ADDRESS_RANGE_PRO[kSpareRow][column], ADDRESS_RANGE_PRO[15][column]);
        }
        QCOMPARE(row.join(QLatin1String(" ")), latin("DDDD.dd 0.0 9999.15 1 RW 16"));
    }

    void contactFillsNoByte()
    {
        QCOMPARE(ADDRESS_RANGE_PRO[13][kWordWidthColumn].toInt() / 8, 0);
        QCOMPARE(ADDRESS_RANGE_PRO[14][kWordWidthColumn].toInt() / 8, 0);
    }

    void defaultTextIsRight_data() { addRows(kDefaultTextIsRight); }
    void defaultTextIsRight()
    {
        const auto &row = currentRow(kDefaultTextIsRight);
        QCOMPARE(*row.given, latin(row.expected));
    }
};

QTEST_APPLESS_MAIN(TestProtocolTables)
#include "test_protocol_tables.moc"
