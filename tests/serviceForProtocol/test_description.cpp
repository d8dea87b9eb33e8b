#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "serviceForProtocol/description.h"
#include "support/driver_fixture.h"
#include "support/rows.h"

static const char *const kWords = "D_W C_W T_W K_W P_W F_W L_W M_W";
static const char *const kBits = "P_bit K_bit M_bit L_bit F_bit TX CX D_bit";

static QString joined(const QList<QString> &texts)
{
    return QStringList(texts).join(QLatin1String(" "));
}

static const Given<const char *> kPropertyPageIsConstant[] = {
    {"a page", "1_5"},
    {"empty", ""},
    {"null", nullptr},
    {"its own text", "0_0"},
};

static int ignoreChange(int, int, QString &, int)
{
    return 1;
}

static const struct
{
    const char *what;
    int type;
    const char *names;
    int result;
} kRegistersAreListedByType[] = {
    {"bits", 0, kBits, 1},
    {"words", 1, kWords, 1},
    {"unknown type lists words", 2, kWords, 0},
    {"unknown high type lists words", 5, kWords, 0},
    {"negative type lists words", -1, kWords, 0},
};

static const struct
{
    const char *what, *name, *description;
} kRegisterIsDescribed[] = {
    {"D_W", "D_W", " DDDD 0 9999 1 1"},
    {"C_W", "C_W", " DDDD 0 255 1 1"},
    {"T_W", "T_W", " DDDDD 0 255 1 1"},
    {"K_W", "K_W", " DD 0 31 1 1"},
    {"P_W", "P_W", " DD 0 63 1 1"},
    {"F_W", "F_W", " DDD 0 255 1 1"},
    {"L_W", "L_W", " DDD 0 255 1 1"},
    {"M_W", "M_W", " DDD 0 255 1 1"},
    {"P_bit", "P_bit", " DDD.dd 0 255.15 0 1"},
    {"K_bit", "K_bit", " DDD.dd 0 255.15 0 1"},
    {"M_bit", "M_bit", " DDD.dd 0 255.15 0 1"},
    {"L_bit", "L_bit", " DDD.dd 0 255.15 0 1"},
    {"F_bit", "F_bit", " DDD.dd 0 255.15 0 1"},
    {"TX", "TX", " DDD 0 255 0 1"},
    {"CX", "CX", " DDD 0 255 0 1"},
    {"D_bit", "D_bit", " DDDD.dd 0.0 9999.15 0 1"},
    {"unknown register", "Q_W", ""},
    {"letter case counts", "d_w", ""},
    {"trailing blank", "D_W ", ""},
    {"empty name", "", ""},
};

static const struct
{
    const char *what, *unitBits, *access, *codes;
} kRowIsDescribed[] = {
    {"bit", "1", "RW", "0 1"},
    {"byte", "8", "RW", "1 1"},
    {"word", "16", "RW", "1 1"},
    {"double word", "32", "RW", "2 1"},
    {"unknown width", "64", "RW", "1 1"},
    {"width of none", "0", "RW", "1 1"},
    {"width is no number", "wide", "RW", "1 1"},
    {"read only", "16", "R", "1 0"},
    {"write only", "16", "W", "1 2"},
    {"unknown access", "16", "X", "1 1"},
    {"letter case of access counts", "16", "r", "1 1"},
    {"no access", "16", "", "1 1"},
};

class TestDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void driverParameterIsRight()
    {
        QString out = latin("before");
        intf_getDriverParameter(out);

        QCOMPARE(out, latin("0,38400,8,NONE,1,0,1,192.168.0.100,8000,ls_master_k_cnet,"
                            "D_W,C_W,T_W,K_W,P_W,F_W,L_W,M_W,P_bit,K_bit,M_bit,L_bit,"
                            "F_bit,TX,CX,D_bit"));
        QCOMPARE(static_cast<int>(out.split(QLatin1Char(',')).size()), 26);
    }

    void protocolTypeIsZero()
    {
        int type = 77;
        intf_getProtocolType(&type);
        QCOMPARE(type, 0);
        intf_getProtocolType(nullptr); // a host that does not want to know it is not punished
    }

    void versionIsRight() { QCOMPARE(intf_getVersion(), latin("2.0.0.0")); }

    void propertyPageIsConstant_data() { addRows(kPropertyPageIsConstant); }
    void propertyPageIsConstant()
    {
        const auto &row = currentRow(kPropertyPageIsConstant);
        intf_SetDriverPropertyPage(latin(row.given));
        QCOMPARE(driver.propertyPage, latin(row.given));
        QString out = latin("before");
        intf_getDriverPropertyPage(out);
        QCOMPARE(out, latin("0_0"));
        QCOMPARE(driver.propertyPage, latin(row.given));
    }

    void callbackIsKept()
    {
        intf_setAddrValueChangeCallBack(&ignoreChange);
        QVERIFY(driver.valueChangeCallback == &ignoreChange);
        intf_setAddrValueChangeCallBack(nullptr);
        QVERIFY(driver.valueChangeCallback == nullptr);
    }

    void registersAreListedByType_data() { addRows(kRegistersAreListedByType); }
    void registersAreListedByType()
    {
        const auto &row = currentRow(kRegistersAreListedByType);
        QList<QString> out;
        out.append(latin("before"));
        QCOMPARE(intf_getRegListByType(row.type, out), row.result);
        QCOMPARE(joined(out), QLatin1String("before ") + latin(row.names));
    }

    void registerIsDescribed_data() { addRows(kRegisterIsDescribed); }
    void registerIsDescribed()
    {
        const auto &row = currentRow(kRegisterIsDescribed);
        QList<QString> out;
        out.append(latin("before"));
        QCOMPARE(intf_getRegDiscription(latin(row.name), out), 0);
        QCOMPARE(joined(out), QLatin1String("before") + latin(row.description));
    }

    void rowIsDescribed_data() { addRows(kRowIsDescribed); }
    void rowIsDescribed()
    {
        const auto &row = currentRow(kRowIsDescribed);
        const QString columns[kColumnCount] = {latin("HHH"),        latin("1"),        latin("FFF"),
                                               latin(row.unitBits), latin(row.access), latin("16")};
        QList<QString> out;
        appendRowDescription(columns, out);
        QCOMPARE(joined(out), QLatin1String("HHH 1 FFF ") + latin(row.codes));
    }
};

QTEST_APPLESS_MAIN(TestDescription)
#include "test_description.moc"
