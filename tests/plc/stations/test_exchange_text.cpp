#include "plc/stations/exchange_text.h"

#include "plc/support/wire_text.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const Given<const char *> kWords[] = {
    {"[ENQ]01RSB07%DW010005[EOT]", "station 1: read %DW100 x5"},
    {"[ENQ]1FRSS0206%DW10006%MW001[EOT]", "station 31: read %DW100, %MW1"},
    {"[ENQ]01WSS0209%MX00001A0105%TX1200[EOT]", "station 1: write %MX1A = 01, %TX12 = 00"},
    {"[ENQ]01WSB05%DW10021234ABCD[EOT]", "station 1: write %DW10 x2 = 1234 ABCD"},
    {"[ENQ]01RSS11[EOT]", "station 1: more than 16 blocks"},
    {"[ENQ]01rSS01[EOT]00", "not a whole request, or its block check is wrong"},
    {"[ACK]01RSS01020001[ETX]", "station 1: data 01020001"},
    {"[ACK]01WSS[ETX]", "station 1: done"},
    {"[NAK]01RSS1132[ETX]", "station 1: refused, 1132 (no such device or address)"},
    {"[NAK]01RSSBEEF[ETX]", "station 1: refused, BEEF (unknown code)"},
    {"", "not a whole request, or its block check is wrong"},
    {"[ENQ]", "not a whole request, or its block check is wrong"},
    {"[ACK]", "not a whole request, or its block check is wrong"},
};

class TestExchangeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words_data() { addRows(kWords); }
    void words()
    {
        const auto &row = currentRow(kWords);
        const QByteArray frame = wire(row.what);
        QCOMPARE(frameInWords(frame), latin(row.given));
        for (int size = 0; size < frame.size(); ++size) {
            QVERIFY(!frameInWords(frame.left(size)).isEmpty());
        }
    }

    void visibleBytes()
    {
        QCOMPARE(visible(wire("[ENQ]01%[EOT][ACK][NAK][ETX][00][20][FF]") + "[]"),
                 latin("[ENQ]01%[EOT][ACK][NAK][ETX][00][20][FF][5B][5D]"));
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
        QCOMPARE(texts.at(0), latin("> [ENQ]01RSS0104%DW5[EOT]  station 1: read %DW5\n"
                                    "< [ACK]01RSS01020000[ETX]  station 1: data 01020000, in 20 ms"
                                    "  (fault: delay)"));
        QCOMPARE(texts.at(1), latin("> [ENQ]02RSS0104%DW5[EOT]  station 2: read %DW5\n"
                                    "< nothing"));
    }
};

QTEST_APPLESS_MAIN(TestExchangeText)
#include "test_exchange_text.moc"
