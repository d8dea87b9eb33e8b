#include <host/driver/driver_core.h>

#include <plc/stations/line.h>

#include <QtTest>

using namespace cnet;

namespace {

Item item(const char *name, int start, int count)
{
    Item item;
    item.reg.name = QLatin1String(name);
    item.reg.width =
        item.reg.name.endsWith(QLatin1String("_W")) ? RegisterWidth::Word : RegisterWidth::Bit;
    item.reg.form =
        item.reg.name.endsWith(QLatin1String("_bit")) ? AddressForm::WordBit : AddressForm::Plain;
    item.start = start;
    item.count = count;
    return item;
}

// A driver with PLCs of its own.
struct Site
{
    Site()
        : line(bus)
    {
        bus.add(1);
        QString error;
        if (!core.load(QLatin1String(DRIVER_FILE), error)) {
            qFatal("%s", qPrintable(error));
        }
        core.start(DriverProperties());
    }

    /** Lets the driver have what it asks for. @return the frames and their purposes */
    QStringList exchange(int times = 1)
    {
        QStringList asked;
        for (int i = 0; i < times; ++i) {
            FRAME_PRO frame{};
            if (core.functions().getSendFrame(frame) == 0) {
                break;
            }
            const QByteArray request(reinterpret_cast<const char *>(frame.sendBuf), frame.sendLen);
            QByteArray answer = plc::joined(line.receive(request));
            QString text;
            core.functions().dealRcvFrame(answer, text);
            asked.append(QString::fromLatin1("%1 %2")
                             .arg(QLatin1String(request.mid(1, request.size() - 4)))
                             .arg(frame.var.opKind));
        }
        return asked;
    }

    plc::Bus bus;
    plc::Line line;
    DriverCore core;
};

} // namespace

class TestDriverCore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesThePropertyText();
    void makesKeys();
    void readsWhatWasNeverReadAsZero();
    void countsChanges();
    void queues();
    void startsAnewForOtherBlocks();
    void isDeafAfterItsEnd();
    void sharesNothing();
};

void TestDriverCore::writesThePropertyText()
{
    DriverProperties properties;
    QCOMPARE(properties.text(), QByteArray("0#0#0#3#60"));
    properties.attempts = 1;
    properties.blockWords = 255;
    QCOMPARE(properties.text(), QByteArray("0#0#0#1#255"));
}

void TestDriverCore::makesKeys()
{
    const KEY_ADDRESS word = keyOf(item("D_W", 100, 7));
    QCOMPARE(word.regName, QLatin1String("D_W"));
    QCOMPARE(word.addrText, QLatin1String("100"));
    QCOMPARE(word.startAddr, 100);
    QCOMPARE(word.count, 7);
    QCOMPARE(word.bitFlag, 0);
    QCOMPARE(word.stationNo, 1);
    const KEY_ADDRESS bit = keyOf(item("M_bit", 53, 2));
    QCOMPARE(bit.addrText, QLatin1String("3.5"));
    QCOMPARE(bit.bitFlag, -1);
}

void TestDriverCore::readsWhatWasNeverReadAsZero()
{
    const Site site;
    const int more = 4000; // than one call of the driver gives
    QCOMPARE(site.core.values(item("D_W", 0, more)), QVector<quint16>(more, 0));
    QCOMPARE(site.core.values(item("M_bit", 0, more)), QVector<quint16>(more, 0));
    QCOMPARE(site.core.values(item("D_W", 0, 0)), QVector<quint16>());
}

void TestDriverCore::countsChanges()
{
    Site site;
    plc::Memory &memory = site.bus.find(1)->station.memory();
    memory.setWord('D', 11, 0xFFFE);
    memory.setBit('M', 3, 5, true);
    QCOMPARE(site.core.merge({keyOf(item("D_W", 10, 2)), keyOf(item("M_bit", 53, 1))}), 2);
    QCOMPARE(site.core.changes(), 0U);
    site.exchange(2);
    QCOMPARE(site.core.changes(), 2U);
    QCOMPARE(site.core.values(item("D_W", 10, 2)), (QVector<quint16>{0, 0xFFFE}));
    QCOMPARE(site.core.values(item("M_bit", 52, 3)), (QVector<quint16>{0, 1, 0}));
    site.exchange(2);
    QCOMPARE(site.core.changes(), 2U);
}

void TestDriverCore::queues()
{
    Site site;
    site.core.queueRead(item("D_W", 5, 2));
    QCOMPARE(site.exchange(), QStringList{QLatin1String("01rSB08%DW0000502 100")});
    site.core.queueWrite(item("D_W", 5, 2), {0x1234, 0xFFFE});
    QCOMPARE(site.exchange(), QStringList{QLatin1String("01wSB08%DW00005021234FFFE 101")});
    site.core.queueWrite(item("M_bit", 58, 1), {1});
    QCOMPARE(site.exchange(), QStringList{QLatin1String("01wSS0109%MX00003A01 101")});
    QCOMPARE(site.core.values(item("D_W", 5, 2)), (QVector<quint16>{0x1234, 0xFFFE}));
    QVERIFY(site.exchange().isEmpty());
}

void TestDriverCore::startsAnewForOtherBlocks()
{
    Site site;
    site.core.merge({keyOf(item("D_W", 0, 10)), keyOf(item("D_W", 10, 50))});
    site.core.setBlockWords(60); // as it has
    QCOMPARE(site.exchange(), QStringList{QLatin1String("01rSB08%DW000003C 4")});
    site.core.setBlockWords(20);
    QCOMPARE(site.core.blockWords(), 20);
    QVERIFY(site.exchange().isEmpty()); // has forgotten its cyclic reads
    QCOMPARE(site.core.merge({keyOf(item("D_W", 0, 10)), keyOf(item("D_W", 10, 11))}), 2);
}

// The library outlives its host and must have forgotten it.
void TestDriverCore::isDeafAfterItsEnd()
{
    DriverFunctions functions;
    {
        Site site;
        functions = site.core.functions();
        site.core.merge({keyOf(item("D_W", 0, 1))});
    }
    FRAME_PRO frame{};
    QCOMPARE(functions.getSendFrame(frame), 0);
}

void TestDriverCore::sharesNothing()
{
    Site sites[3];
    for (int i = 0; i < 3; ++i) {
        sites[i].bus.find(1)->station.memory().setWord('D', 5, static_cast<quint16>(100 + i));
        sites[i].core.merge({keyOf(item("D_W", 5, 1))});
    }
    for (Site &site : sites) {
        site.exchange();
    }
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(sites[i].core.values(item("D_W", 5, 1)),
                 QVector<quint16>{static_cast<quint16>(100 + i)});
        QCOMPARE(sites[i].core.changes(), 1U);
    }
    sites[1].core.start(DriverProperties());
    QCOMPARE(sites[1].core.values(item("D_W", 5, 1)), QVector<quint16>{0});
    QCOMPARE(sites[2].core.values(item("D_W", 5, 1)), QVector<quint16>{102});
}

QTEST_GUILESS_MAIN(TestDriverCore)

#include "test_driver_core.moc"
