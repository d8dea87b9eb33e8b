#include "support/rows.h"

#include <host/recording/pcapng_reader.h>

#include <QtEndian>

using namespace cnet;

class TestPcapngReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsWritten();
    void readsEitherByteOrder();
    void takesSectionsOneAfterTheOther();
    void knowsUnitsOfTime_data();
    void knowsUnitsOfTime();
    void readsSimplePackets();
    void leavesOtherBlocksOut();
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void takesWhatIsBeforeTheFault();
};

namespace {

const quint32 kSection = 0x0A0D0D0A;
const quint32 kMagic = 0x1A2B3C4D;

/** Blocks as another program on another machine writes them. */
template <typename Order>
struct Blocks
{
    template <typename Number>
    static QByteArray number(Number number)
    {
        char bytes[sizeof number];
        Order::put(number, bytes);
        return QByteArray(bytes, sizeof number);
    }

    static QByteArray block(quint32 type, const QByteArray &body)
    {
        const QByteArray length = number(static_cast<quint32>(body.size() + 12));
        return number(type) + length + body + length;
    }

    static QByteArray section()
    {
        return block(kSection,
                     number(kMagic) + number(quint16(1)) + number(quint16(0)) + number(qint64(-1)));
    }

    static QByteArray option(quint16 code, const QByteArray &value)
    {
        const auto padding = static_cast<int>((4 - value.size() % 4) % 4);
        return number(code) + number(static_cast<quint16>(value.size())) + value +
               QByteArray(padding, '\0');
    }

    static QByteArray interface(const QByteArray &options = QByteArray())
    {
        return block(1, number(quint16(252)) + number(quint16(0)) + number(quint32(0)) + options);
    }

    static QByteArray packet(quint64 time, const QByteArray &data,
                             const QByteArray &options = QByteArray(), quint32 interface = 0)
    {
        const auto size = static_cast<quint32>(data.size());
        const auto padding = static_cast<int>((4 - data.size() % 4) % 4);
        return block(6, number(interface) + number(static_cast<quint32>(time >> 32)) +
                            number(static_cast<quint32>(time)) + number(size) + number(size) +
                            data + QByteArray(padding, '\0') + options);
    }
};

struct LittleFirst
{
    template <typename Number>
    static void put(Number number, char *bytes)
    {
        qToLittleEndian(number, bytes);
    }
};

struct BigFirst
{
    template <typename Number>
    static void put(Number number, char *bytes)
    {
        qToBigEndian(number, bytes);
    }
};

using Little = Blocks<LittleFirst>;
using Big = Blocks<BigFirst>;

QList<PacketRecord> packetsOf(const QByteArray &content, QString *error = nullptr)
{
    PcapngReader reader(content);
    QList<PacketRecord> all;
    PacketRecord packet;
    while (reader.next(packet)) {
        all.append(packet);
    }
    if (error != nullptr) {
        *error = reader.errorText();
    }
    return all;
}

const QByteArray kBefore = Little::section() + Little::interface();

struct Units
{
    const char *what;
    int resolution; ///< negative: not said
    quint64 time;
    qint64 ns;
};

const Units kUnits[] = {
    {"microseconds, where nothing is said", -1, 1500001, 1500001000},
    {"nanoseconds", 9, 1500000001, 1500000001},
    {"seconds", 0, 3, 3000000000},
    {"picoseconds", 12, 2000000001999, 2000000001},
    {"halves", 0x81, 3, 1500000000},
    {"2 to the minus 63", 0x80 | 63, (1ULL << 62) + (1ULL << 63), 1500000000},
    {"more than 64 bits have", 20, 3, 0},
    {"2 to the minus 64", 0x80 | 64, 3, 0},
    {"beyond all times", 0, ~0ULL, 9223372035000000000},
};

const Case<QByteArray, const char *> kWrong[] = {
    {"nothing", QByteArray(), "it is empty"},
    {"text", "station,register\n", "it is no pcapng file"},
    {"one byte", "\x0A", "it is no pcapng file"},
    {"an older format", QByteArray::fromHex("d4c3b2a102000400"),
     "it is a pcap file; expected pcapng: editcap OLD NEW converts it"},
    {"a compressed one", QByteArray::fromHex("1f8b0800"),
     "it is compressed; expected pcapng: gunzip it first"},
    {"half a head", Little::section().left(10), "it ends within a block, at byte 0"},
    {"half a section", Little::section().left(16), "it ends within a block, at byte 0"},
    {"no byte order", Little::block(kSection, QByteArray(16, 'x')),
     "a section in no known byte order, at byte 0"},
    {"another version",
     Little::block(kSection, Little::number(kMagic) + Little::number(quint32(2)) +
                                 Little::number(qint64(-1))),
     "a section of an unknown version, at byte 0"},
    {"a short section", Little::block(kSection, Little::number(kMagic)),
     "a section that is too short, at byte 0"},
    {"a short interface", Little::section() + Little::block(1, QByteArray(4, '\0')),
     "an interface that is too short, at byte 28"},
    {"a block of no length", Little::section() + QByteArray(12, '\0'),
     "a block of a wrong length, at byte 28"},
    {"a block of an odd length",
     Little::section() + Little::number(1) + Little::number(13) + QByteArray(5, '\0'),
     "a block of a wrong length, at byte 28"},
    {"an endless block",
     Little::section() + Little::number(1) + Little::number(-4) + QByteArray(4, '\0'),
     "it ends within a block, at byte 28"},
    {"lengths that differ",
     Little::section() + Little::number(1) + Little::number(12) + Little::number(16),
     "a block of a wrong length, at byte 28"},
    {"a packet of no interface", Little::section() + Little::packet(0, "x"),
     "a packet of an interface that is not there, at byte 28"},
    {"a packet of the section before", kBefore + Little::section() + Little::packet(0, "x"),
     "a packet of an interface that is not there, at byte 76"},
    {"a short packet", kBefore + Little::block(6, QByteArray(16, '\0')),
     "a packet that is too short, at byte 48"},
    {"a packet longer than its block",
     kBefore + Little::block(6, QByteArray(12, '\0') + Little::number(5) + Little::number(5) +
                                    QByteArray(4, 'x')),
     "a packet that is longer than its block, at byte 48"},
    {"an endless packet",
     kBefore + Little::block(6, QByteArray(12, '\0') + Little::number(-1) + Little::number(-1)),
     "a packet that is longer than its block, at byte 48"},
    {"a simple packet of no size", kBefore + Little::block(3, QByteArray()),
     "a packet that is too short, at byte 48"},
    {"too many interfaces",
     Little::section() + Little::interface().repeated(PcapngReader::kMostInterfaces + 1),
     "too many interfaces, at byte 200028"},
};

} // namespace

void TestPcapngReader::readsWhatIsWritten()
{
    CapturePacket first;
    first.timeNs = 1763781000123456789;
    first.direction = CaptureDirection::Sent;
    first.data = QByteArray("ab\0", 3);
    first.comment = QString::fromUtf8("a cömment");
    first.lost = 7;
    CapturePacket second;
    second.interfaceNumber = 1;
    PcapngReader reader(sectionBlock(QLatin1String("a program")) +
                        interfaceBlock(252, QString::fromUtf8("línea")) + packetBlock(first) +
                        interfaceBlock(250, QString()) + packetBlock(second));
    PacketRecord packet;
    QVERIFY(reader.next(packet));
    QCOMPARE(packet.number, 1);
    QCOMPARE(packet.interfaceNumber, 0);
    QCOMPARE(packet.timeNs, first.timeNs);
    QVERIFY(packet.direction == CaptureDirection::Sent);
    QCOMPARE(packet.data, first.data);
    QCOMPARE(packet.comment, first.comment);
    QCOMPARE(packet.lost, first.lost);
    QVERIFY(reader.next(packet));
    QCOMPARE(packet.number, 2);
    QCOMPARE(packet.interfaceNumber, 1);
    QVERIFY(packet.direction == CaptureDirection::Received);
    QCOMPARE(packet.data, QByteArray());
    QVERIFY(packet.comment.isEmpty());
    QCOMPARE(packet.lost, quint64(0));
    QVERIFY(!reader.next(packet));
    QVERIFY(!reader.next(packet));
    QCOMPARE(reader.errorText(), QString());
    QCOMPARE(reader.interfaces().at(0).name, QString::fromUtf8("línea"));
    QCOMPARE(reader.interfaces().at(1).linkType, quint16(250));
    QVERIFY(reader.interfaces().at(1).name.isEmpty());
}

template <typename Order>
QByteArray otherFile()
{
    return Order::section() +
           Order::interface(Order::option(2, "eth0") + Order::option(9, QByteArray(1, 9)) +
                            Order::option(14, Order::number(qint64(2))) + Order::option(0, {})) +
           Order::packet(5, "abcde",
                         Order::option(2, Order::number(quint32(0x102))) + Order::option(1, "one") +
                             Order::option(1, "two") + Order::option(4, Order::number(quint64(3))));
}

void TestPcapngReader::readsEitherByteOrder()
{
    for (const QByteArray &content : {otherFile<Little>(), otherFile<Big>()}) {
        const QList<PacketRecord> packets = packetsOf(content);
        QCOMPARE(packets.size(), 1);
        QCOMPARE(packets.first().timeNs, qint64(2000000005));
        QCOMPARE(packets.first().data, QByteArray("abcde"));
        QCOMPARE(packets.first().comment, QLatin1String("one; two"));
        QVERIFY(packets.first().direction == CaptureDirection::Sent);
        QCOMPARE(packets.first().lost, quint64(3));
    }
}

void TestPcapngReader::takesSectionsOneAfterTheOther()
{
    QString error;
    const QList<PacketRecord> packets =
        packetsOf(otherFile<Little>() + otherFile<Big>() + otherFile<Little>(), &error);
    QCOMPARE(error, QString());
    QCOMPARE(packets.size(), 3);
    for (int i = 0; i < packets.size(); ++i) {
        QCOMPARE(packets.at(i).number, i + 1);
        QCOMPARE(packets.at(i).interfaceNumber, i);
        QCOMPARE(packets.at(i).data, QByteArray("abcde"));
    }
}

void TestPcapngReader::knowsUnitsOfTime_data()
{
    addRows(kUnits);
}

void TestPcapngReader::knowsUnitsOfTime()
{
    const Units &row = currentRow(kUnits);
    QByteArray options;
    if (row.resolution >= 0) {
        options = Little::option(9, QByteArray(1, static_cast<char>(row.resolution)));
    }
    const QList<PacketRecord> packets =
        packetsOf(Little::section() + Little::interface(options) + Little::packet(row.time, "x"));
    QCOMPARE(packets.value(0).timeNs, row.ns);
}

void TestPcapngReader::readsSimplePackets()
{
    const QList<PacketRecord> packets =
        packetsOf(kBefore + Little::block(3, Little::number(quint32(3)) + QByteArray("abc\0", 4)) +
                  Little::block(3, Little::number(quint32(99)) + "abcd"));
    QCOMPARE(packets.size(), 2);
    QCOMPARE(packets.at(0).data, QByteArray("abc"));
    QVERIFY(!packets.at(0).direction);
    QCOMPARE(packets.at(1).data, QByteArray("abcd"));
}

void TestPcapngReader::leavesOtherBlocksOut()
{
    QString error;
    const QList<PacketRecord> packets = packetsOf(
        kBefore + Little::block(5, "1234") + Little::packet(1, "x", Little::option(77, "abc")) +
            Little::block(0xBAD, QByteArray(1000, 'x')),
        &error);
    QCOMPARE(error, QString());
    QCOMPARE(packets.size(), 1);
}

void TestPcapngReader::saysWhatIsWrong_data()
{
    addRows(kWrong);
}

void TestPcapngReader::saysWhatIsWrong()
{
    const auto &row = currentRow(kWrong);
    QString error;
    QCOMPARE(packetsOf(row.given, &error).size(), 0);
    QCOMPARE(error, QLatin1String(row.expected));
}

// As a program that crashed leaves it.
void TestPcapngReader::takesWhatIsBeforeTheFault()
{
    QString error;
    const QByteArray content = kBefore + Little::packet(1, "x") +
                               Little::packet(2, "y", Little::option(1, "cut")).left(40);
    QCOMPARE(packetsOf(content, &error).size(), 1);
    QCOMPARE(error, QLatin1String("it ends within a block, at byte 84"));
}

QTEST_APPLESS_MAIN(TestPcapngReader)
#include "test_pcapng_reader.moc"
