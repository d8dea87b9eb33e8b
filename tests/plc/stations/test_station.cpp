#include "plc/stations/station.h"

#include "plc/support/wire_text.h"
#include "plc/wire/wire.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

namespace {

/** Station 1 with D 100 up = 1, 2, 3 ..., and a few others. */
Station example(Model model = Model::Full)
{
    Station station(1, model);
    Memory &memory = station.memory();
    for (int i = 0; i < 60; ++i) {
        memory.setWord('D', 100 + i, static_cast<quint16>(i + 1));
    }
    memory.setWord('M', 1, 0x0400);
    memory.setWord('T', 12, 0xABCD);
    memory.setContact('T', 12, true);
    memory.setWord('F', 3, 0x00F3);
    return station;
}

} // namespace

static const Case<const char *, const char *> kAnswers[] = {
    {"rSS word", "[ENQ]01rSS0107%DW0100[EOT]CB", "[ACK]01rSS01020001[ETX]06"},
    {"RSS word without check", "[ENQ]01RSS0107%DW0100[EOT]", "[ACK]01RSS01020001[ETX]"},
    {"rSS two words", "[ENQ]01rSS0207%DW010106%TW012[EOT]96", "[ACK]01rSS0202000202ABCD[ETX]74"},
    {"RSS bit on", "[ENQ]01RSS0109%MX00001A[EOT]", "[ACK]01RSS010101[ETX]"},
    {"RSS bit off", "[ENQ]01RSS0109%MX00001B[EOT]", "[ACK]01RSS010100[ETX]"},
    {"RSS contact, not bit 12 of anything", "[ENQ]01RSS0109%TX000012[EOT]",
     "[ACK]01RSS010101[ETX]"},
    {"rSS bit and contact are both bits", "[ENQ]01rSS0205%MX1A05%CX12[EOT]0D",
     "[ACK]01rSS0201010100[ETX]67"},
    {"RSS shortest name", "[ENQ]01RSS0104%DW0[EOT]", "[ACK]01RSS01020000[ETX]"},
    {"RSS longest name", "[ENQ]01RSS0110%DW0000000000100[EOT]", "[ACK]01RSS01020001[ETX]"},
    {"RSS hexadecimal length in lower case", "[ENQ]01RSS010a%DW0000100[EOT]",
     "[ACK]01RSS01020001[ETX]"},
    {"RSS 16 blocks",
     "[ENQ]01RSS1006%DW10006%DW10106%DW10206%DW10306%DW10406%DW10506%DW10606%DW107"
     "06%DW10806%DW10906%DW11006%DW11106%DW11206%DW11306%DW11406%DW115[EOT]",
     "[ACK]01RSS10020001020002020003020004020005020006020007020008"
     "02000902000A02000B02000C02000D02000E02000F020010[ETX]"},
    {"RSS reads F", "[ENQ]01RSS0105%FW03[EOT]", "[ACK]01RSS010200F3[ETX]"},
    {"rSB one word", "[ENQ]01rSB07%DW010001[EOT]BA", "[ACK]01rSB01020001[ETX]F5"},
    {"rSB three words", "[ENQ]01rSB07%DW010003[EOT]BC", "[ACK]01rSB0106000100020003[ETX]7E"},
    {"RSB three words", "[ENQ]01RSB07%DW010003[EOT]", "[ACK]01RSB0106000100020003[ETX]"},

    {"0003: 17 blocks", "[ENQ]01rSS1107%DW0100[EOT]CC", "[NAK]01rSS0003[ETX]54"},
    {"0003: 17 blocks, no check", "[ENQ]01RSS1107%DW0100[EOT]", "[NAK]01RSS0003[ETX]"},
    {"0003: 255 blocks", "[ENQ]01WSSFF07%DW01000000[EOT]", "[NAK]01WSS0003[ETX]"},
    {"0004: name of 17", "[ENQ]01RSS0111%DW00000000000100[EOT]", "[NAK]01RSS0004[ETX]"},
    {"0004: name of 17 in a block read", "[ENQ]01RSB11%DW0000000000010001[EOT]",
     "[NAK]01RSB0004[ETX]"},
    {"0007: type B", "[ENQ]01RSS0107%DB0100[EOT]", "[NAK]01RSS0007[ETX]"},
    {"0007: bit of D", "[ENQ]01RSS0107%DX0100[EOT]", "[NAK]01RSS0007[ETX]"},
    {"0007: rSB of bits", "[ENQ]01rSB07%MX001A01[EOT]D5", "[NAK]01rSB0007[ETX]47"},
    {"0007: wSB of contacts", "[ENQ]01WSB06%TX0120101[EOT]", "[NAK]01WSB0007[ETX]"},
    {"0011: no blocks", "[ENQ]01RSS00[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: body missing", "[ENQ]01RSS[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: blocks not hexadecimal", "[ENQ]01RSS0X07%DW0100[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: second block missing", "[ENQ]01RSS0207%DW0100[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: name shorter than told", "[ENQ]01RSS0109%DW0100[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: no percent sign", "[ENQ]01RSS0106DW0100[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: empty name", "[ENQ]01RSS0100[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: letter in a word number", "[ENQ]01RSS0107%DW01A0[EOT]", "[NAK]01RSS0011[ETX]"},
    {"0011: no words", "[ENQ]01RSB07%DW010000[EOT]", "[NAK]01RSB0011[ETX]"},
    {"0011: number of words missing", "[ENQ]01RSB07%DW0100[EOT]", "[NAK]01RSB0011[ETX]"},
    {"0011: data missing", "[ENQ]01WSS0107%DW0100[EOT]", "[NAK]01WSS0011[ETX]"},
    {"0011: data too short", "[ENQ]01WSS0107%DW0100123[EOT]", "[NAK]01WSS0011[ETX]"},
    {"0011: a word missing", "[ENQ]01WSB07%DW0100021234[EOT]", "[NAK]01WSB0011[ETX]"},
    {"0011: bit of 02", "[ENQ]01WSS0107%MX001A02[EOT]", "[NAK]01WSS0011[ETX]"},
    {"0011: unknown type", "[ENQ]01RST0107%DW0100[EOT]", "[NAK]01RST0011[ETX]"},
    {"0011: type in lower case", "[ENQ]01Rss0107%DW0100[EOT]", "[NAK]01Rss0011[ETX]"},
    {"0011: unknown command", "[ENQ]01xSS[EOT]88", "[NAK]01xSS0011[ETX]59"},
    {"1132: no such device", "[ENQ]01rSS0107%ZW0100[EOT]E1", "[NAK]01rSS1132[ETX]58"},
    {"1132: beyond the device", "[ENQ]01RSS0108%DW10000[EOT]", "[NAK]01RSS1132[ETX]"},
    {"1132: far beyond", "[ENQ]01RSS0110%DW9999999999999[EOT]", "[NAK]01RSS1132[ETX]"},
    {"1132: second block beyond", "[ENQ]01RSS0204%DW008%DW10000[EOT]", "[NAK]01RSS1132[ETX]"},
    {"block that ends with the device", "[ENQ]01RSB07%DW999802[EOT]",
     "[ACK]01RSB010400000000[ETX]"},
    {"1132: block ends beyond", "[ENQ]01RSB07%DW999803[EOT]", "[NAK]01RSB1132[ETX]"},
    {"1132: write to F", "[ENQ]01wSS0105%FW031234[EOT]3C", "[NAK]01wSS1132[ETX]5D"},
    {"1132: write to a bit of F", "[ENQ]01WSS0105%FX3101[EOT]", "[NAK]01WSS1132[ETX]"},
    {"1132: block write to F", "[ENQ]01WSB05%FW03011234[EOT]", "[NAK]01WSB1132[ETX]"},
    {"1232: 61 words", "[ENQ]01rSB07%DW01003D[EOT]D0", "[NAK]01rSB1232[ETX]48"},
    {"1232: 61 words to write", "[ENQ]01WSB07%DW01003D1234[EOT]", "[NAK]01WSB1232[ETX]"},
    {"1234: behind rSS", "[ENQ]01rSS0107%DW01000[EOT]FB", "[NAK]01rSS1234[ETX]5B"},
    {"1234: behind rSB", "[ENQ]01RSB07%DW0100010[EOT]", "[NAK]01RSB1234[ETX]"},
    {"1234: behind wSS", "[ENQ]01WSS0107%DW010012345[EOT]", "[NAK]01WSS1234[ETX]"},
    {"1234: behind wSB", "[ENQ]01WSB07%DW01000112345678[EOT]", "[NAK]01WSB1234[ETX]"},
    {"1332: word and bit", "[ENQ]01rSS0207%DW010007%MX001A[EOT]CF", "[NAK]01rSS1332[ETX]5A"},
    {"1332: contact and word", "[ENQ]01WSS0205%TX120105%TW120001[EOT]", "[NAK]01WSS1332[ETX]"},
    {"1432: word", "[ENQ]01wSS0107%DW010012G4[EOT]AE", "[NAK]01wSS1432[ETX]60"},
    {"1432: bit", "[ENQ]01WSS0107%MX001A0X[EOT]", "[NAK]01WSS1432[ETX]"},
    {"1432: block", "[ENQ]01WSB07%DW01000112 4[EOT]", "[NAK]01WSB1432[ETX]"},

    {"silence: another station", "[ENQ]02RSS0107%DW0100[EOT]", ""},
    {"silence: wrong check", "[ENQ]01rSS0107%DW0100[EOT]00", ""},
    {"silence: check missing", "[ENQ]01rSS0107%DW0100[EOT]", ""},
    {"silence: half a check", "[ENQ]01rSS0107%DW0100[EOT]C", ""},
    {"silence: check in lower case", "[ENQ]01rSS0107%DW0144[EOT]d3", ""},
    {"silence: bytes behind EOT", "[ENQ]01RSS0107%DW0100[EOT]A0", ""},
    {"silence: no ENQ", "[ACK]01RSS0107%DW0100[EOT]", ""},
    {"silence: no EOT", "[ENQ]01RSS0107%DW0100[ETX]", ""},
    {"silence: station not hexadecimal", "[ENQ]0GRSS0107%DW0100[EOT]", ""},
    {"silence: command no letter", "[ENQ]011SS0107%DW0100[EOT]", ""},
    {"silence: empty frame", "[ENQ][EOT]", ""},
    {"silence: nothing", "", ""},
};

static const struct
{
    const char *what;
    Model model;
    const char *last, *beyond;
} kRanges[] = {
    // clang-format off
    {"full PW", Model::Full, "%PW255", "%PW256"},
    {"full PX", Model::Full, "%PX255F", "%PX2560"},
    {"full FX", Model::Full, "%FX255F", "%FX2560"},
    {"full TX", Model::Full, "%TX255", "%TX256"},
    {"full CX", Model::Full, "%CX255", "%CX256"},
    {"full DW", Model::Full, "%DW9999", "%DW10000"},
    {"k120s PW", Model::K120s, "%PW63", "%PW64"},
    {"k120s PX", Model::K120s, "%PX63F", "%PX640"},
    {"k120s MW", Model::K120s, "%MW191", "%MW192"},
    {"k120s KW", Model::K120s, "%KW31", "%KW32"},
    {"k120s LW", Model::K120s, "%LW63", "%LW64"},
    {"k120s FW", Model::K120s, "%FW63", "%FW64"},
    {"k120s TW", Model::K120s, "%TW255", "%TW256"},
    {"k120s CW", Model::K120s, "%CW255", "%CW256"},
    {"k120s DW", Model::K120s, "%DW4999", "%DW5000"},
    // clang-format on
};

static const Given<QByteArray> kEveryCutIsSilent[] = {
    {"rSS", wire("[ENQ]01rSS0107%DW0100[EOT]CB")},
    {"RSB", wire("[ENQ]01RSB07%DW010003[EOT]")},
    {"wSB", wire("[ENQ]01wSB07%DW010002AAAABBBB[EOT]CC")},
};

static const Case<QByteArray, QByteArray> kRefusal[] = {
    {"with check", wire("[ENQ]01rSS0107%DW0100[EOT]CB"), wire("[NAK]01rSS12AB[ETX]77")},
    {"without check", wire("[ENQ]01WSB07%DW0100021234[EOT]"), wire("[NAK]01WSB12AB[ETX]")},
    {"another station", wire("[ENQ]02RSS0107%DW0100[EOT]"), ""},
    {"wrong check", wire("[ENQ]01rSS0107%DW0100[EOT]00"), ""},
};

static const struct
{
    const char *what, *request, *answer;
    Point point;
    int value;
} kWrites[] = {
    // clang-format off
    {"wSS D", "[ENQ]01wSS0107%DW0100BEEF[EOT]E2", "[ACK]01wSS[ETX]87", {'D', PointKind::Word, 100}, 0xBEEF},
    {"WSS D", "[ENQ]01WSS0107%DW0100BEEF[EOT]", "[ACK]01WSS[ETX]", {'D', PointKind::Word, 100}, 0xBEEF},
    {"WSS data in lower case", "[ENQ]01WSS0104%DW0beef[EOT]", "[ACK]01WSS[ETX]", {'D', PointKind::Word, 0}, 0xBEEF},
    {"WSS P", "[ENQ]01WSS0104%PW1000F[EOT]", "[ACK]01WSS[ETX]", {'P', PointKind::Word, 1}, 15},
    {"WSS K", "[ENQ]01WSS0104%KW1000F[EOT]", "[ACK]01WSS[ETX]", {'K', PointKind::Word, 1}, 15},
    {"WSS L", "[ENQ]01WSS0104%LW1000F[EOT]", "[ACK]01WSS[ETX]", {'L', PointKind::Word, 1}, 15},
    {"WSS T", "[ENQ]01WSS0104%TW1000F[EOT]", "[ACK]01WSS[ETX]", {'T', PointKind::Word, 1}, 15},
    {"WSS C", "[ENQ]01WSS0104%CW1000F[EOT]", "[ACK]01WSS[ETX]", {'C', PointKind::Word, 1}, 15},
    {"WSS bit on", "[ENQ]01WSS0109%MX00002301[EOT]", "[ACK]01WSS[ETX]", {'M', PointKind::Bit, 35}, 1},
    {"WSS bit off", "[ENQ]01WSS0109%MX00001A00[EOT]", "[ACK]01WSS[ETX]", {'M', PointKind::Bit, 26}, 0},
    {"WSS contact", "[ENQ]01WSS0109%CX00001201[EOT]", "[ACK]01WSS[ETX]", {'C', PointKind::Contact, 12}, 1},
    {"WSS two blocks", "[ENQ]01WSS0205%DW10111105%DW112222[EOT]", "[ACK]01WSS[ETX]", {'D', PointKind::Word, 11}, 0x2222},
    {"wSB last word", "[ENQ]01wSB07%DW020002AAAABBBB[EOT]CD", "[ACK]01wSB[ETX]76", {'D', PointKind::Word, 201}, 0xBBBB},
    {"WSB first word", "[ENQ]01WSB07%DW020002AAAABBBB[EOT]", "[ACK]01WSB[ETX]", {'D', PointKind::Word, 200}, 0xAAAA},
    {"WSB leaves the next alone", "[ENQ]01WSB07%DW010002AAAABBBB[EOT]", "[ACK]01WSB[ETX]", {'D', PointKind::Word, 102}, 3},
    // clang-format on
};

class TestStation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data() { addRows(kAnswers); }
    void answers()
    {
        const auto &row = currentRow(kAnswers);
        Station station = example();
        QCOMPARE(station.answer(wire(row.given)), wire(row.expected));
    }

    void writes_data() { addRows(kWrites); }
    void writes()
    {
        const auto &row = currentRow(kWrites);
        Station station = example();
        QCOMPARE(station.answer(wire(row.request)), wire(row.answer));
        QCOMPARE(int(station.memory().value(row.point).value()), row.value);
    }

    void writesInParts()
    {
        Station station = example();
        QCOMPARE(station.answer(wire("[ENQ]01WSS0206%MX01F0106%MX01A00[EOT]")),
                 wire("[ACK]01WSS[ETX]"));
        QCOMPARE(*station.memory().word('M', 1), quint16(0x8000));
    }

    void ranges_data() { addRows(kRanges); }
    void ranges()
    {
        const auto &row = currentRow(kRanges);
        Station station(1, row.model);
        const auto ask = [&station](const QByteArray &name) {
            return station.answer(
                wire("[ENQ]01RSS010" + QByteArray::number(name.size()) + name + "[EOT]"));
        };
        QCOMPARE(ask(QByteArray(row.last)).left(1), wire("[ACK]"));
        QCOMPARE(ask(QByteArray(row.beyond)), wire("[NAK]01RSS1132[ETX]"));
    }

    void everyCutIsSilent_data() { addRows(kEveryCutIsSilent); }
    void everyCutIsSilent()
    {
        const auto &row = currentRow(kEveryCutIsSilent);
        Station station = example();
        for (int size = 0; size < row.given.size(); ++size) {
            QCOMPARE(station.answer(row.given.left(size)), QByteArray());
        }
        QCOMPARE(station.answer(row.given).isEmpty(), false);
    }

    void longestFrames()
    {
        Station station = example();
        const QByteArray answer = station.answer(wire("[ENQ]01rSB07%DW01003C[EOT]CF"));
        QCOMPARE(answer.size(), 253);
        QCOMPARE(answer.left(14), wire("[ACK]01rSB01780001"));
        QCOMPARE(answer.mid(246, 5), wire("003C[ETX]"));

        // ENQ st(2) R SS(2) blocks(2) and 14 names of 15 characters are 246 bytes; EOT is the last.
        QByteArray request = wire("[ENQ]01RSS0F");
        for (int i = 0; i < 14; ++i) {
            request += "0F%DW000000000100";
        }
        QCOMPARE(station.answer(request + "08%DW00100" + wire("[EOT]")), QByteArray());
        QCOMPARE(station.answer(request + "07%DW0100" + wire("[EOT]")).left(8),
                 wire("[ACK]01RSS0F"));
    }

    void refusal_data() { addRows(kRefusal); }
    void refusal()
    {
        const auto &row = currentRow(kRefusal);
        const Station station = example();
        QCOMPARE(station.refusal(row.given, 0x12AB), row.expected);
    }

    void refusedWriteChangesNothing()
    {
        Station station = example();
        // The first block is good; the second lies outside.
        QCOMPARE(station.answer(wire("[ENQ]01WSS0206%DW100999908%DW100009999[EOT]")),
                 wire("[NAK]01WSS1132[ETX]"));
        QCOMPARE(*station.memory().word('D', 100), quint16(1));
        // A row of words whose last is not hexadecimal.
        QCOMPARE(station.answer(wire("[ENQ]01WSB06%DW1000299999X99[EOT]")),
                 wire("[NAK]01WSB1432[ETX]"));
        QCOMPARE(*station.memory().word('D', 100), quint16(1));
    }
};

QTEST_APPLESS_MAIN(TestStation)
#include "test_station.moc"
