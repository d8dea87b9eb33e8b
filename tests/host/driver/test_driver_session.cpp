#include "host/driver/driver_session.h"

#include <plc/line.h>

#include <QtTest>

using namespace cnet;

class TestDriverSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void writesThePropertyText_data();
    void writesThePropertyText();
    void readsWhatWasNeverReadAsZero();
    void reportsChangesAndGivesValues();
    void isDeafAfterItsEnd();

private:
    static KEY_ADDRESS key(const char *name, int start, int count, int bitFlag);
    void exchangeOnce(plc::Line &line);

    DriverLibrary m_driver;
};

KEY_ADDRESS TestDriverSession::key(const char *name, int start, int count, int bitFlag)
{
    KEY_ADDRESS key{};
    key.stationNo = 1;
    key.regName = QLatin1String(name);
    key.startAddr = start;
    key.count = count;
    key.bitFlag = bitFlag;
    return key;
}

void TestDriverSession::exchangeOnce(plc::Line &line)
{
    FRAME_PRO frame{};
    QCOMPARE(m_driver.functions().getSendFrame(frame), 1);
    QByteArray answer = plc::joined(
        line.receive(QByteArray(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen)));
    QString text;
    QCOMPARE(m_driver.functions().dealRcvFrame(answer, text), 1);
}

void TestDriverSession::initTestCase()
{
    QVERIFY2(m_driver.load(QLatin1String(DRIVER_FILE)), qPrintable(m_driver.errorText()));
}

void TestDriverSession::writesThePropertyText_data()
{
    QTest::addColumn<int>("device");
    QTest::addColumn<bool>("cacheOnly");
    QTest::addColumn<int>("attempts");
    QTest::addColumn<int>("words");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("usual") << 0 << false << 3 << 60 << QByteArray("0#0#0#3#60");
    QTest::newRow("all else") << 4 << true << 1 << 255 << QByteArray("4#1#0#1#255");
}

void TestDriverSession::writesThePropertyText()
{
    QFETCH(int, device);
    QFETCH(bool, cacheOnly);
    QFETCH(int, attempts);
    QFETCH(int, words);
    QTEST((DriverProperties{device, cacheOnly, attempts, words}.text()), "text");
}

void TestDriverSession::readsWhatWasNeverReadAsZero()
{
    DriverSession session(m_driver.functions());
    session.start(DriverProperties());
    const int more = 1500; // than one call of the driver gives
    QCOMPARE(session.values(1, QLatin1String("D_W"), 0, more, false), QVector<quint16>(more, 0));
    QCOMPARE(session.values(1, QLatin1String("M_bit"), 0, more, true), QVector<quint16>(more, 0));
    QCOMPARE(session.values(1, QLatin1String("D_W"), 0, 0, false), QVector<quint16>());
}

void TestDriverSession::reportsChangesAndGivesValues()
{
    plc::Bus bus;
    plc::Memory &memory = bus.add(1).station.memory();
    plc::Line line(bus);
    QVERIFY(memory.setWord('D', 11, 0xFFFE));
    QVERIFY(memory.setBit('M', 3, 5, true));

    DriverSession session(m_driver.functions());
    session.start(DriverProperties());
    QStringList changes;
    session.setChangeHandler([&](int station, const QString &name, int address) {
        const bool isBit = name == QLatin1String("M_bit");
        changes.append(QString::fromLatin1("%1/%2:%3=%4")
                           .arg(station)
                           .arg(name)
                           .arg(address)
                           .arg(session.values(station, name, address, 1, isBit).first()));
    });
    QCOMPARE(session.monitor({key("D_W", 10, 2, 0), key("M_bit", 53, 1, -1)}), 2);
    exchangeOnce(line);
    exchangeOnce(line);
    QCOMPARE(changes.join(QLatin1Char(' ')), QLatin1String("1/D_W:11=65534 1/M_bit:53=1"));
    QCOMPARE(session.values(1, QLatin1String("D_W"), 10, 2, false), (QVector<quint16>{0, 0xFFFE}));
    QCOMPARE(session.values(1, QLatin1String("M_bit"), 52, 3, true), (QVector<quint16>{0, 1, 0}));
}

// The library outlives the session and must have forgotten it.
void TestDriverSession::isDeafAfterItsEnd()
{
    int calls = 0;
    {
        DriverSession session(m_driver.functions());
        session.start(DriverProperties());
        session.setChangeHandler([&](int, const QString &, int) { ++calls; });
        QCOMPARE(session.monitor({key("D_W", 0, 1, 0)}), 1);
    }
    FRAME_PRO frame{};
    QCOMPARE(m_driver.functions().getSendFrame(frame), 0);
    QCOMPARE(calls, 0);
}

QTEST_APPLESS_MAIN(TestDriverSession)
#include "test_driver_session.moc"
