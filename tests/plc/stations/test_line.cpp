#include "plc/stations/line.h"

#include "plc/support/recorded_line.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

namespace {

const QByteArray kRead = wire("[ENQ]01rSS0107%DW0100[EOT]CB");
const QByteArray kData = wire("[ACK]01rSS01021234[ETX]0F");
const QByteArray kWrite = wire("[ENQ]01WSS0107%DW0200BEEF[EOT]");

} // namespace

static const Case<const char *, const char *> kStationsAnswerForThemselves[] = {
    {"station 1", "[ENQ]01RSS0107%DW0100[EOT]", "[ACK]01RSS01021234[ETX]"},
    {"station 2", "[ENQ]02RSS0107%DW0100[EOT]", "[ACK]02RSS01025678[ETX]"},
    {"station 3 is not there", "[ENQ]03RSS0107%DW0100[EOT]", ""},
    {"station FF is not there", "[ENQ]FFRSS0107%DW0100[EOT]", ""},
    {"both in one piece", "[ENQ]02RSS0107%DW0100[EOT][ENQ]01RSS0107%DW0100[EOT]",
     "[ACK]02RSS01025678[ETX][ACK]01RSS01021234[ETX]"},
    {"good after a wrong check", "[ENQ]01rSS0107%DW0100[EOT]00[ENQ]01RSS0107%DW0100[EOT]",
     "[ACK]01RSS01021234[ETX]"},
    {"good after a cut one", "[ENQ]01rSS0107%D[ENQ]01RSS0107%DW0100[EOT]",
     "[ACK]01RSS01021234[ETX]"},
    {"noise around", "[00][FF][ACK][ENQ]01RSS0107%DW0100[EOT][EOT]zz", "[ACK]01RSS01021234[ETX]"},
    {"answers of others are no requests", "[ACK]01RSS01021234[ETX]", ""},
};

static const struct
{
    const char *what;
    FaultKind kind;
    int value;
    QByteArray sent;
    int ms;
} kFaultsPassTheLine[] = {
    {"delay", FaultKind::Delay, 250, kData, 250},
    {"wrong-station", FaultKind::WrongStation, 2, wire("[ACK]02rSS01021234[ETX]10"), 0},
    {"truncate", FaultKind::Truncate, 3, wire("[ACK]01"), 0},
    {"echo", FaultKind::Echo, 0, kRead + kData, 0},
    {"repeat", FaultKind::Repeat, 2, kData + kData + kData, 0},
    {"split", FaultKind::Split, 2, kData, 2 * (int(kData.size()) - 1)},
};

static const struct
{
    const char *what;
    int baud, firstMs, lastMs;
} kPace[] = {
    // 15 bytes ask and 15 answer. 9600 baud: 1.041 ms a byte, 16 bytes 16.7 ms, 30 bytes 31.2 ms.
    {"as fast as it goes", 0, 0, 0},
    {"9600", 9600, 17, 32},
    {"1000", 1000, 160, 300},
    {"38400", 38400, 5, 8},
};

class TestLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_bus.add(1).station.memory().setWord('D', 100, 0x1234);
        m_bus.add(2).station.memory().setWord('D', 100, 0x5678);
    }

    void anyDivision()
    {
        Line line(m_bus);
        for (int piece = 1; piece <= kRead.size(); ++piece) {
            std::vector<Chunk> answers;
            for (int i = 0; i < kRead.size(); i += piece) {
                QVERIFY(answers.empty());
                answers = line.receive(kRead.mid(i, piece));
            }
            QCOMPARE(joined(answers), kData);
            QCOMPARE(duration(answers), 0);
        }
    }

    void stationsAnswerForThemselves_data() { addRows(kStationsAnswerForThemselves); }
    void stationsAnswerForThemselves()
    {
        const auto &row = currentRow(kStationsAnswerForThemselves);
        Line line(m_bus);
        QCOMPARE(joined(line.receive(wire(row.given))), wire(row.expected));
    }

    void linesShareTheStations()
    {
        Bus bus;
        bus.add(1);
        Line first(bus);
        Line second(bus);
        QVERIFY(first.receive(kRead.left(9)).empty());
        QCOMPARE(joined(second.receive(wire("[ENQ]01WSS0107%DW01001234[EOT]"))),
                 wire("[ACK]01WSS[ETX]"));
        QCOMPARE(joined(first.receive(kRead.mid(9))), kData);
    }

    void rampsFollowTheTime()
    {
        Bus bus;
        bus.add(1).motions.push_back({{'D', PointKind::Word, 100}, 1, 0, 99, 50});
        Line line(bus);
        const QByteArray read = wire("[ENQ]01RSS0107%DW0100[EOT]");
        QCOMPARE(joined(line.receive(read, 0)), wire("[ACK]01RSS01020000[ETX]"));
        QCOMPARE(joined(line.receive(read, 49)), wire("[ACK]01RSS01020000[ETX]"));
        QCOMPARE(joined(line.receive(read, 500)), wire("[ACK]01RSS0102000A[ETX]"));
    }

    void silenceIsNotCarriedOut()
    {
        Bus bus;
        Unit &unit = bus.add(1);
        unit.faults.add({FaultKind::Silence, 0, 0, 2});
        Line line(bus);
        for (int i = 0; i < 2; ++i) {
            QVERIFY(line.receive(kWrite).empty());
            QCOMPARE(*unit.station.memory().word('D', 200), quint16(0));
        }
        QCOMPARE(joined(line.receive(kWrite)), wire("[ACK]01WSS[ETX]"));
        QCOMPARE(*unit.station.memory().word('D', 200), quint16(0xBEEF));
    }

    void refusalIsNotCarriedOut()
    {
        Bus bus;
        Unit &unit = bus.add(1);
        unit.faults.add({FaultKind::Refuse, 0xABCD, 0xABCD, 1});
        Line line(bus);
        QCOMPARE(joined(line.receive(kWrite)), wire("[NAK]01WSSABCD[ETX]"));
        QCOMPARE(*unit.station.memory().word('D', 200), quint16(0));
        QCOMPARE(joined(line.receive(kWrite)), wire("[ACK]01WSS[ETX]"));
    }

    void faultsOfOneStation()
    {
        Bus bus;
        bus.add(1).faults.add(usualFault(FaultKind::Silence));
        bus.add(2);
        Line line(bus);
        QVERIFY(line.receive(wire("[ENQ]01RSS0104%DW0[EOT]")).empty());
        QCOMPARE(joined(line.receive(wire("[ENQ]02RSS0104%DW0[EOT]"))),
                 wire("[ACK]02RSS01020000[ETX]"));
    }

    // With its faults and at its pace; what it does not have is answered from the memory.
    void answersAsACapture()
    {
        cnet::RecordedLine recorded;
        addExchange(recorded, 0, "[ENQ]01RSS0107%DW0100[EOT]", {{9, "[ACK]01RSS01020001[ETX]"}});
        addExchange(recorded, 50, "[ENQ]01RSS0107%DW0100[EOT]", {{9, "zz"}});
        Bus bus;
        bus.add(1).faults.add({FaultKind::Silence});
        bus.setReplay(std::make_shared<Replay>(recorded));
        QByteArray request;
        QByteArray answer;
        Line first(bus);
        first.setBaud(50);
        first.setObserver([&](const Exchange &exchange) {
            request = exchange.request;
            answer = exchange.answer;
        });
        const QByteArray known = wire("[ENQ]01RSS0107%DW0100[EOT]");
        const std::vector<Chunk> chunks = first.receive(known);
        QCOMPARE(joined(chunks), wire("[ACK]01RSS01020001[ETX]"));
        QCOMPARE(duration(chunks), 9);
        QCOMPARE(request, known);
        QCOMPARE(answer, joined(chunks));
        QCOMPARE(joined(first.receive(known)), QByteArray("zz"));
        QCOMPARE(joined(first.receive(known)), QByteArray("zz"));
        Line second(bus);
        QCOMPARE(joined(second.receive(known)), wire("[ACK]01RSS01020001[ETX]"));
        const QByteArray other = wire("[ENQ]01RSB07%DW010001[EOT]");
        QCOMPARE(joined(second.receive(other)), QByteArray());
        bus.find(1)->faults = Faults(1);
        QCOMPARE(joined(second.receive(other)), wire("[ACK]01RSB01020001[ETX]"));
    }

    void faultsPassTheLine_data() { addRows(kFaultsPassTheLine); }
    void faultsPassTheLine()
    {
        const auto &row = currentRow(kFaultsPassTheLine);
        Bus bus;
        Unit &unit = bus.add(1);
        unit.station.memory().setWord('D', 100, 0x1234);
        unit.faults.add({row.kind, row.value, row.value, 1});
        Line line(bus);
        const std::vector<Chunk> chunks = line.receive(kRead);
        QCOMPARE(joined(chunks), row.sent);
        QCOMPARE(duration(chunks), row.ms);
        QCOMPARE(joined(line.receive(kRead)), kData);
    }

    void observerSeesEverything()
    {
        Bus bus;
        bus.add(1).faults.add({FaultKind::Delay, 20, 20, 1});
        Line line(bus);
        std::vector<Exchange> seen;
        line.setObserver([&seen](const Exchange &exchange) { seen.push_back(exchange); });
        line.receive(kWrite + wire("[ENQ]09RSS[EOT]") + kRead.left(kRead.size() - 1) + "Z", 77);
        QCOMPARE(seen.size(), std::size_t(3));
        QCOMPARE(seen[0].nowMs, qint64(77));
        QCOMPARE(seen[0].request, kWrite);
        QCOMPARE(seen[0].answer, wire("[ACK]01WSS[ETX]"));
        QCOMPARE(seen[0].fired.size(), std::size_t(1));
        QCOMPARE(duration(seen[0].sent), 20);
        QCOMPARE(seen[1].request, wire("[ENQ]09RSS[EOT]"));
        QVERIFY(seen[1].answer.isEmpty() && seen[1].sent.empty());
        QVERIFY(seen[2].answer.isEmpty() && seen[2].fired.empty());
    }

    void pace_data() { addRows(kPace); }
    void pace()
    {
        const auto &row = currentRow(kPace);
        const QByteArray request = wire("[ENQ]01RSS0104%DW0[EOT]");
        const QByteArray answer = wire("[ACK]01RSS01020000[ETX]");
        QCOMPARE(int(request.size() + answer.size()), 30);
        Line line(m_bus);
        line.setBaud(row.baud);
        const std::vector<Chunk> chunks = line.receive(request);
        QCOMPARE(joined(chunks), answer);
        QCOMPARE(chunks.front().delayMs, row.firstMs);
        QCOMPARE(duration(chunks), row.lastMs);
    }

    void paceAfterDelay()
    {
        Bus bus;
        bus.add(1).faults.add({FaultKind::Delay, 500, 500});
        Line line(bus);
        line.setBaud(1000);
        const std::vector<Chunk> chunks = line.receive(wire("[ENQ]01RSS0104%DW0[EOT]"));
        QCOMPARE(chunks.front().delayMs, 150 + 500 + 10);
        QCOMPARE(chunks[1].delayMs, 10);
    }

    void randomBytesAreHarmless()
    {
        Line line(m_bus);
        std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same bytes each time
        // Characters that requests are made of, so that many get far.
        const QByteArray alphabet = wire("[ENQ][EOT][ENQ][EOT]0123456789ABCDEFrRwWSSBB%%MTDXW");
        int answers = 0;
        for (int i = 0; i < 20000; ++i) {
            QByteArray bytes = wire("[ENQ]01");
            bytes += (random() % 2 == 0) ? "RS" : "WS";
            for (auto left = random() % 20; left > 0; --left) {
                bytes +=
                    alphabet[static_cast<int>(random() % static_cast<unsigned>(alphabet.size()))];
            }
            const QByteArray answer = joined(line.receive(bytes + wire("[EOT]")));
            answers += answer.isEmpty() ? 0 : 1;
        }
        QVERIFY(answers > 1000);
        QCOMPARE(joined(line.receive(wire("[EOT]zz[ENQ]02RSS0104%KW0[EOT]"))),
                 wire("[ACK]02RSS01020000[ETX]"));
    }

private:
    Bus m_bus;
};

QTEST_APPLESS_MAIN(TestLine)
#include "test_line.moc"
