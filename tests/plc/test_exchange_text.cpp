#include "plc/exchange_text.h"

#include "wire_text.h"

#include <QtTest>

using namespace plc;

class TestExchangeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words_data()
    {
        QTest::addColumn<QByteArray>("frame");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *frame, const char *text) {
            QTest::newRow(frame) << wire(frame) << QString::fromLatin1(text);
        };
        row("[ENQ]01RSB07%DW010005[EOT]", "station 1: read %DW100 x5");
        row("[ENQ]1FRSS0206%DW10006%MW001[EOT]", "station 31: read %DW100, %MW1");
        row("[ENQ]01WSS0209%MX00001A0105%TX1200[EOT]", "station 1: write %MX1A = 01, %TX12 = 00");
        row("[ENQ]01WSB05%DW10021234ABCD[EOT]", "station 1: write %DW10 x2 = 1234 ABCD");
        row("[ENQ]01RSS11[EOT]", "station 1: more than 16 blocks");
        row("[ENQ]01rSS01[EOT]00", "not a whole request, or its block check is wrong");
        row("[ACK]01RSS01020001[ETX]", "station 1: data 01020001");
        row("[ACK]01WSS[ETX]", "station 1: done");
        row("[NAK]01RSS1132[ETX]", "station 1: refused, 1132 (no such device or address)");
        row("[NAK]01RSSBEEF[ETX]", "station 1: refused, BEEF (unknown code)");
        row("", "not a whole request, or its block check is wrong");
        row("[ENQ]", "not a whole request, or its block check is wrong");
        row("[ACK]", "not a whole request, or its block check is wrong");
    }

    void words()
    {
        QFETCH(QByteArray, frame);
        QTEST(frameInWords(frame), "text");
        for (int size = 0; size < frame.size(); ++size) {
            QVERIFY(!frameInWords(frame.left(size)).isEmpty());
        }
    }

    void visibleBytes()
    {
        QCOMPARE(visible(wire("[ENQ]01%[EOT][ACK][NAK][ETX][00][20][FF]") + "[]"),
                 QString::fromLatin1("[ENQ]01%[EOT][ACK][NAK][ETX][00][20][FF][5B][5D]"));
    }

    void exchanges()
    {
        Bus bus;
        bus.add(1).faults.add({FaultKind::Delay, 20, 20, 1});
        Line line(bus);
        QStringList texts;
        line.setObserver([&texts](const Exchange &exchange) { texts << exchangeText(exchange); });
        line.receive(wire("[ENQ]01RSS0104%DW5[EOT]"));
        line.receive(wire("[ENQ]02RSS0104%DW5[EOT]"));
        QCOMPARE(texts.at(0),
                 QString::fromLatin1("> [ENQ]01RSS0104%DW5[EOT]  station 1: read %DW5\n"
                                     "< [ACK]01RSS01020000[ETX]  station 1: data 01020000, in 20 ms"
                                     "  (fault: delay)"));
        QCOMPARE(texts.at(1),
                 QString::fromLatin1("> [ENQ]02RSS0104%DW5[EOT]  station 2: read %DW5\n"
                                     "< nothing"));
    }
};

QTEST_APPLESS_MAIN(TestExchangeText)
#include "test_exchange_text.moc"
