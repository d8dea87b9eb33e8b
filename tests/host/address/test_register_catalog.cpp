#include "host/address/address.h"
#include "host/address/register_catalog.h"
#include <host/driver/driver.h>

#include <QtTest>

using namespace cnet;

class TestRegisterCatalog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void refusesWhatIsNoDescription_data();
    void refusesWhatIsNoDescription();
    void asksTheDriver();
};

void TestRegisterCatalog::reads_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<bool>("wordBit");
    QTest::addColumn<int>("radix");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    QTest::addColumn<bool>("bit");
    QTest::addColumn<bool>("contact");
    QTest::newRow("word") << "DDDD 0 9999 1 1" << false << 10 << 0 << 9999 << false << false;
    QTest::newRow("bit") << "DDDD.dd 0.0 9999.15 0 1" << true << 10 << 0 << 159999 << true << false;
    QTest::newRow("bit, lowest without bit")
        << "DDD.dd 2 255.15 0 1" << true << 10 << 32 << 4095 << true << false;
    QTest::newRow("contact") << "DDD 0 255 0 1" << false << 10 << 0 << 255 << true << true;
    QTest::newRow("octal") << "OO 0 77 1 1" << false << 8 << 0 << 63 << false << false;
    QTest::newRow("hexadecimal") << "HH 10 FF 1 1" << false << 16 << 16 << 255 << false << false;
    QTest::newRow("one letter") << "D 0 9 1 1" << false << 10 << 0 << 9 << false << false;
}

void TestRegisterCatalog::reads()
{
    QFETCH(QString, description);
    QFETCH(bool, wordBit);
    QFETCH(bool, bit);
    QFETCH(bool, contact);
    const auto info =
        RegisterCatalog::read(QLatin1String("Q_W"), description.split(QLatin1Char(' ')));
    QVERIFY(info.has_value());
    QCOMPARE(info->form == AddressForm::WordBit, wordBit);
    QTEST(info->radix, "radix");
    QTEST(info->lowest, "lowest");
    QTEST(info->highest, "highest");
    QCOMPARE(info->isBit(), bit);
    QCOMPARE(info->isContact(), contact);
    QCOMPARE(info->letter(), QLatin1String("Q"));
}

void TestRegisterCatalog::refusesWhatIsNoDescription_data()
{
    QTest::addColumn<QStringList>("description");
    const QLatin1String any("1");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("four texts") << QStringList{QLatin1String("DD"), any, any, any};
    QTest::newRow("limit is no number")
        << QStringList{QLatin1String("DD"), QLatin1String("x"), any, any, any};
    QTest::newRow("highest without bit")
        << QStringList{QLatin1String("D.d"), any, QLatin1String("1.16"), any, any};
}

void TestRegisterCatalog::refusesWhatIsNoDescription()
{
    QFETCH(QStringList, description);
    QVERIFY(!RegisterCatalog::read(QLatin1String("Q_W"), description).has_value());
}

void TestRegisterCatalog::asksTheDriver()
{
    Driver driver;
    QString error;
    QVERIFY2(driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
    const RegisterCatalog &registers = driver.registers();
    QCOMPARE(registers.names().join(QLatin1Char(' ')),
             QLatin1String("D_W C_W T_W K_W P_W F_W L_W M_W "
                           "P_bit K_bit M_bit L_bit F_bit TX CX D_bit"));
    QVERIFY(registers.find(QLatin1String("d_w")) == nullptr);
    const RegisterInfo *bits = registers.find(QLatin1String("M_bit"));
    QVERIFY(bits != nullptr);
    QCOMPARE(bits->highest, 255 * kBitsPerWord + 15);
    QVERIFY(registers.find(QLatin1String("TX"))->isContact());
}

QTEST_APPLESS_MAIN(TestRegisterCatalog)
#include "test_register_catalog.moc"
