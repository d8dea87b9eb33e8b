#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include "ls_master_k_cnet/protocol_tables.h"
#include "serviceForProtocol/description.h"
#include "support/driver_fixture.h"

class TestDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void driverParameterIsRight();
    void protocolTypeIsZero();
    void versionIsRight();
    void propertyPageIsConstant_data();
    void propertyPageIsConstant();
    void callbackIsKept();
    void registersAreListedByType_data();
    void registersAreListedByType();
    void registerIsDescribed_data();
    void registerIsDescribed();
    void rowIsDescribed_data();
    void rowIsDescribed();
};

static const char *const kWords = "D_W C_W T_W K_W P_W F_W L_W M_W";
static const char *const kBits = "P_bit K_bit M_bit L_bit F_bit TX CX D_bit";

static QString joined(const QList<QString> &texts)
{
    return QStringList(texts).join(QLatin1String(" "));
}

void TestDescription::driverParameterIsRight()
{
    QString out = QString::fromLatin1("before");
    intf_getDriverParameter(out);

    QCOMPARE(out, QString::fromLatin1("0,38400,8,NONE,1,0,1,192.168.0.100,8000,ls_master_k_cnet,"
                                      "D_W,C_W,T_W,K_W,P_W,F_W,L_W,M_W,P_bit,K_bit,M_bit,L_bit,"
                                      "F_bit,TX,CX,D_bit"));
    QCOMPARE(static_cast<int>(out.split(QLatin1Char(',')).size()), 26);
}

void TestDescription::protocolTypeIsZero()
{
    int type = 77;
    intf_getProtocolType(&type);
    QCOMPARE(type, 0);
    intf_getProtocolType(nullptr); // a host that does not want to know it is not punished
}

void TestDescription::versionIsRight()
{
    QCOMPARE(intf_getVersion(), QString::fromLatin1("2.0.0.0"));
}

void TestDescription::propertyPageIsConstant_data()
{
    QTest::addColumn<QString>("page");

    QTest::newRow("a page") << "1_5";
    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("its own text") << "0_0";
}

void TestDescription::propertyPageIsConstant()
{
    QFETCH(QString, page);

    intf_SetDriverPropertyPage(page);
    QCOMPARE(driver.propertyPage, page);
    QString out = QString::fromLatin1("before");
    intf_getDriverPropertyPage(out);
    QCOMPARE(out, QString::fromLatin1("0_0"));
    QCOMPARE(driver.propertyPage, page);
}

static int ignoreChange(int, int, QString &, int)
{
    return 1;
}

void TestDescription::callbackIsKept()
{
    intf_setAddrValueChangeCallBack(&ignoreChange);
    QVERIFY(driver.valueChangeCallback == &ignoreChange);
    intf_setAddrValueChangeCallBack(nullptr);
    QVERIFY(driver.valueChangeCallback == nullptr);
}

void TestDescription::registersAreListedByType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("names");
    QTest::addColumn<int>("result");

    QTest::newRow("bits") << 0 << kBits << 1;
    QTest::newRow("words") << 1 << kWords << 1;
    QTest::newRow("unknown type lists words") << 2 << kWords << 0;
    QTest::newRow("unknown high type lists words") << 5 << kWords << 0;
    QTest::newRow("negative type lists words") << -1 << kWords << 0;
}

void TestDescription::registersAreListedByType()
{
    QFETCH(int, type);
    QFETCH(QString, names);
    QFETCH(int, result);

    QList<QString> out;
    out.append(QString::fromLatin1("before"));
    QCOMPARE(intf_getRegListByType(type, out), result);
    QCOMPARE(joined(out), QLatin1String("before ") + names);
}

void TestDescription::registerIsDescribed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");

    // clang-format off
    QTest::newRow("D_W") << "D_W" << " DDDD 0 9999 1 1";
    QTest::newRow("C_W") << "C_W" << " DDDD 0 255 1 1";
    QTest::newRow("T_W") << "T_W" << " DDDDD 0 255 1 1";
    QTest::newRow("K_W") << "K_W" << " DD 0 31 1 1";
    QTest::newRow("P_W") << "P_W" << " DD 0 63 1 1";
    QTest::newRow("F_W") << "F_W" << " DDD 0 255 1 1";
    QTest::newRow("L_W") << "L_W" << " DDD 0 255 1 1";
    QTest::newRow("M_W") << "M_W" << " DDD 0 255 1 1";
    QTest::newRow("P_bit") << "P_bit" << " DDD.dd 0 255.15 0 1";
    QTest::newRow("K_bit") << "K_bit" << " DDD.dd 0 255.15 0 1";
    QTest::newRow("M_bit") << "M_bit" << " DDD.dd 0 255.15 0 1";
    QTest::newRow("L_bit") << "L_bit" << " DDD.dd 0 255.15 0 1";
    QTest::newRow("F_bit") << "F_bit" << " DDD.dd 0 255.15 0 1";
    QTest::newRow("TX") << "TX" << " DDD 0 255 0 1";
    QTest::newRow("CX") << "CX" << " DDD 0 255 0 1";
    QTest::newRow("D_bit") << "D_bit" << " DDDD.dd 0.0 9999.15 0 1";
    QTest::newRow("unknown register") << "Q_W" << "";
    QTest::newRow("letter case counts") << "d_w" << "";
    QTest::newRow("trailing blank") << "D_W " << "";
    QTest::newRow("empty name") << "" << "";
    // clang-format on
}

void TestDescription::registerIsDescribed()
{
    QFETCH(QString, name);
    QFETCH(QString, description);

    QList<QString> out;
    out.append(QString::fromLatin1("before"));
    QCOMPARE(intf_getRegDiscription(name, out), 0);
    QCOMPARE(joined(out), QLatin1String("before") + description);
}

void TestDescription::rowIsDescribed_data()
{
    QTest::addColumn<QString>("unitBits");
    QTest::addColumn<QString>("access");
    QTest::addColumn<QString>("codes");

    // clang-format off
    QTest::newRow("bit") << "1" << "RW" << "0 1";
    QTest::newRow("byte") << "8" << "RW" << "1 1";
    QTest::newRow("word") << "16" << "RW" << "1 1";
    QTest::newRow("double word") << "32" << "RW" << "2 1";
    QTest::newRow("unknown width") << "64" << "RW" << "1 1";
    QTest::newRow("width of none") << "0" << "RW" << "1 1";
    QTest::newRow("width is no number") << "wide" << "RW" << "1 1";
    QTest::newRow("read only") << "16" << "R" << "1 0";
    QTest::newRow("write only") << "16" << "W" << "1 2";
    QTest::newRow("unknown access") << "16" << "X" << "1 1";
    QTest::newRow("letter case of access counts") << "16" << "r" << "1 1";
    QTest::newRow("no access") << "16" << "" << "1 1";
    // clang-format on
}

void TestDescription::rowIsDescribed()
{
    QFETCH(QString, unitBits);
    QFETCH(QString, access);
    QFETCH(QString, codes);

    const QString row[kColumnCount] = {QString::fromLatin1("HHH"),
                                       QString::fromLatin1("1"),
                                       QString::fromLatin1("FFF"),
                                       unitBits,
                                       access,
                                       QString::fromLatin1("16")};
    QList<QString> out;
    appendRowDescription(row, out);
    QCOMPARE(joined(out), QLatin1String("HHH 1 FFF ") + codes);
}

QTEST_APPLESS_MAIN(TestDescription)
#include "test_description.moc"
