#include <host/driver/driver.h>

#include <QtTest>

using namespace cnet;

Q_DECLARE_METATYPE(cnet::ObjectKind)

class TestDriver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void describesItself();
    void tellsWhatItCannotLoad();
    void checksItems_data();
    void checksItems();
    void distrustsAnotherNumber();
    void checksTexts_data();
    void checksTexts();
    void givesSeries_data();
    void givesSeries();

private:
    RegisterInfo reg(const QString &name) const
    {
        const RegisterInfo *const found = m_driver.registers().find(name);
        return found == nullptr ? RegisterInfo() : *found;
    }

    Driver m_driver;
};

void TestDriver::initTestCase()
{
    QString error;
    QVERIFY(!m_driver.isLoaded());
    QVERIFY(m_driver.registers().all().isEmpty());
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE), error), qPrintable(error));
    QVERIFY(m_driver.isLoaded());
    QCOMPARE(m_driver.fileName(), QLatin1String(DRIVER_FILE));
}

void TestDriver::describesItself()
{
    const DriverDescription description = m_driver.description();
    QCOMPARE(description.version, QLatin1String("2.0.0.0"));
    QCOMPARE(description.protocolType, QLatin1String("0"));
    QCOMPARE(description.propertyPage, QLatin1String("0_0"));
    QCOMPARE(description.serialDefault, QLatin1String("38400,8,NONE,1"));
    QCOMPARE(description.networkDefault, QLatin1String("192.168.0.100:8000"));
    QVERIFY(!description.name.isEmpty());
    QCOMPARE(m_driver.registers().names().first(), QLatin1String("D_W"));
    QVERIFY(reg(QLatin1String("M_bit")).isBit());
    QVERIFY(reg(QLatin1String("TX")).isContact());
}

void TestDriver::tellsWhatItCannotLoad()
{
    Driver driver;
    QString error;
    QVERIFY(!driver.load(QLatin1String("/nowhere/libx.so"), error));
    QVERIFY2(error.startsWith(QLatin1String("cannot load the driver: ")), qPrintable(error));
    QVERIFY(!driver.isLoaded());
}

void TestDriver::checksItems_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("error"); // of reading; empty: good
    QTest::newRow("lowest word") << "D_W" << 0 << 1 << "";
    QTest::newRow("all words") << "D_W" << 0 << 10000 << "";
    QTest::newRow("one word too many") << "D_W" << 9999 << 2 << "'1/D_W:9999*2': out of range; ";
    QTest::newRow("beyond") << "D_W" << 10000 << 1 << "'1/D_W:10000': out of range; ";
    QTest::newRow("all bits") << "M_bit" << 0 << 4096 << "";
    QTest::newRow("one bit too many")
        << "M_bit" << 4095 << 2 << "out of range; an address of M_bit is WORD.BIT";
    QTest::newRow("one contact too many") << "TX" << 0 << 257 << "out of range";
}

void TestDriver::checksItems()
{
    QFETCH(QString, name);
    QFETCH(int, start);
    QFETCH(int, count);
    QFETCH(QString, error);
    for (const Access access : {Access::Read, Access::Write}) {
        QString told;
        QCOMPARE(m_driver.check({1, reg(name), start, count}, access, told), error.isEmpty());
        QVERIFY2(told.contains(error), qPrintable(told));
    }
}

// A register described otherwise than the driver reads it would be written somewhere else.
void TestDriver::distrustsAnotherNumber()
{
    RegisterInfo odd = reg(QLatin1String("D_W"));
    odd.radix = 16;
    QString error;
    QVERIFY(m_driver.check({1, odd, 9, 1}, Access::Read, error));
    QVERIFY(!m_driver.check({1, odd, 16, 1}, Access::Read, error));
    QVERIFY2(error.contains(QLatin1String("the driver takes it for 10")), qPrintable(error));
}

void TestDriver::checksTexts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<ObjectKind>("kind");
    QTest::addColumn<QString>("reason"); // empty: good
    QTest::addColumn<int>("number");
    QTest::newRow("words") << "D_W"
                           << "100" << ObjectKind::Words << "" << 100;
    QTest::newRow("bits") << "M_bit"
                          << "3.5" << ObjectKind::Bits << "" << 53;
    QTest::newRow("bits as words")
        << "M_bit"
        << "3.5" << ObjectKind::Words
        << "a bit register used as words, or a word register used as bits" << 0;
    QTest::newRow("beyond") << "D_W"
                            << "10000" << ObjectKind::Words << "out of range" << 0;
    QTest::newRow("not its format")
        << "M_bit"
        << "3" << ObjectKind::Bits << "not in the register's format" << 0;
    QTest::newRow("no register") << "Q_W"
                                 << "0" << ObjectKind::Words << "no such register" << 0;
    QTest::newRow("not listed") << "RWI"
                                << "0" << ObjectKind::Words << "no such register" << 0;
}

void TestDriver::checksTexts()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(ObjectKind, kind);
    QFETCH(QString, reason);
    const AddressVerdict verdict = m_driver.checkAddress(name, text, kind, 1, Access::Read);
    QCOMPARE(verdict.reason, reason);
    QCOMPARE(verdict.valid, reason.isEmpty());
    if (verdict.valid) {
        QTEST(verdict.number, "number");
    }
}

void TestDriver::givesSeries_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("step");
    QTest::addColumn<QString>("texts");
    QTest::addColumn<bool>("clamped");
    QTest::newRow("words") << "D_W" << 100 << 5 << "100 105 110" << false;
    QTest::newRow("next words") << "D_W" << 7 << static_cast<int>(Driver::kWordInterval) << "7 8 9"
                                << false;
    QTest::newRow("double words") << "D_W" << 7 << static_cast<int>(Driver::kDoubleWordInterval)
                                  << "7 9 11" << false;
    QTest::newRow("bits") << "M_bit" << 63 << 1 << "3.15 4.0 4.1" << false;
    QTest::newRow("beyond the end") << "D_W" << 9998 << 1 << "9998 9999 9999" << true;
}

void TestDriver::givesSeries()
{
    QFETCH(QString, name);
    QFETCH(int, start);
    QFETCH(int, step);
    const AddressSeries series = m_driver.series(reg(name), start, 3, step);
    QTEST(QStringList(series.texts.toList()).join(QLatin1Char(' ')), "texts");
    QTEST(series.clamped, "clamped");
    QCOMPARE(series.numbers.size(), series.texts.size());
    QCOMPARE(series.numbers.first(), start);
}

QTEST_GUILESS_MAIN(TestDriver)

#include "test_driver.moc"
