#include "host/capture/pcapng_block.h"
#include "support/pcapng_reader.h"

#include <QtTest>

using namespace cnet;

/** The blocks, as another reader has them. */
class TestPcapngBlock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sectionNamesTheProgram();
    void packetKeepsAllThereIs_data();
    void packetKeepsAllThereIs();
    void sectionHasTheFormatsLayout();
};

namespace {

QByteArray beforePackets()
{
    return sectionBlock(QLatin1String("a program 1.0")) +
           interfaceBlock(252, QString::fromUtf8("línea"));
}

} // namespace

void TestPcapngBlock::sectionNamesTheProgram()
{
    const PcapngFile file = readPcapng(beforePackets());
    QCOMPARE(file.error, QByteArray());
    QCOMPARE(file.program, QByteArray("a program 1.0"));
    QCOMPARE(file.interfaces, QList<QByteArray>{QByteArray("línea")});
}

void TestPcapngBlock::packetKeepsAllThereIs_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("comment");
    QTest::addColumn<bool>("sent");
    QTest::addColumn<quint64>("lost");
    QTest::newRow("all") << QByteArray("12345") << QString::fromUtf8("a cömment") << true
                         << quint64(7);
    QTest::newRow("no comment") << QByteArray("1234") << QString() << false << quint64(0);
    QTest::newRow("no data") << QByteArray() << QString::fromUtf8("x") << false << quint64(1);
    QTest::newRow("zeros") << QByteArray(3, '\0') << QString::fromUtf8("abc") << true << quint64(0);
}

void TestPcapngBlock::packetKeepsAllThereIs()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, comment);
    QFETCH(bool, sent);
    QFETCH(quint64, lost);
    CapturePacket packet;
    packet.timeNs = 0x1234567890ABCDEF;
    packet.data = data;
    packet.comment = comment;
    packet.direction = sent ? CaptureDirection::Sent : CaptureDirection::Received;
    packet.lost = lost;
    const PcapngFile file = readPcapng(beforePackets() + packetBlock(packet));
    QCOMPARE(file.error, QByteArray());
    QCOMPARE(file.packets.size(), 1);
    const PcapngPacket &read = file.packets.first();
    QCOMPARE(read.linkType, 252);
    QCOMPARE(read.timeNs, packet.timeNs);
    QCOMPARE(read.data, data);
    QCOMPARE(read.comment, comment.toUtf8());
    QCOMPARE(read.direction, sent ? 2 : 1);
    QCOMPARE(read.lost, lost);
}

void TestPcapngBlock::sectionHasTheFormatsLayout()
{
    QCOMPARE(sectionBlock(QLatin1String("abc")).toHex(' '),
             QByteArray("0a 0d 0d 0a 28 00 00 00 4d 3c 2b 1a 01 00 00 00 ff ff ff ff ff ff ff ff "
                        "04 00 03 00 61 62 63 00 00 00 00 00 28 00 00 00"));
}

QTEST_GUILESS_MAIN(TestPcapngBlock)
#include "test_pcapng_block.moc"
