#include "plc/wire/request.h"

#include "plc/support/wire_text.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

static const struct
{
    const char *what, *frame;
    bool good;
    int station;
    char command;
    const char *type, *body;
} kEnvelope[] = {
    {"with check", "[ENQ]1FrSB07%DW010003[EOT]D2", true, 31, 'r', "SB", "07%DW010003"},
    {"without check", "[ENQ]00WSS0104%DW01234[EOT]", true, 0, 'W', "SS", "0104%DW01234"},
    {"station in lower case", "[ENQ]1fRSS[EOT]", true, 31, 'R', "SS", ""},
    {"foreign command", "[ENQ]01X??abc[EOT]", true, 1, 'X', "??", "abc"},
    {"station FF", "[ENQ]FFRSS[EOT]", true, 255, 'R', "SS", ""},
    {"type cut", "[ENQ]01RS[EOT]", false, 0, 'r', "", ""},
    {"type cut, with check", "[ENQ]01rS[EOT]2F", false, 0, 'r', "", ""},
    {"wrong check", "[ENQ]01rSS[EOT]7D", false, 0, 'r', "", ""},
    {"digit for a command", "[ENQ]011SS[EOT]", false, 0, 'r', "", ""},
    {"byte above 7F for a command", "[ENQ]01[E4]SS[EOT]", false, 0, 'r', "", ""},
    {"no ENQ", "[NAK]01RSS[EOT]", false, 0, 'r', "", ""},
    {"empty", "", false, 0, 'r', "", ""},
};

static const struct
{
    const char *what;
    char command;
    QByteArray type, body;
    int service, items, count, data;
} kServices[] = {
    {"rSS", 'r', "SS", "0205%DW1005%DW11", int(Service::ReadSingle), 2, 1, 0},
    {"RSB", 'R', "SB", "05%DW103C", int(Service::ReadBlock), 1, 60, 0},
    {"WSS", 'W', "SS", "0105%DW10FFFF", int(Service::WriteSingle), 1, 1, 1},
    {"wSB", 'w', "SB", "05%DW100311112222FFFF", int(Service::WriteBlock), 1, 3, 3},
};

static const struct
{
    const char *what;
    char command;
    QByteArray type, body;
    int code;
} kFirstFaultWins[] = {
    {"blocks before name", 'r', "SS", "1111%DW1", 3},
    {"length before device", 'r', "SS", "0111%ZW00000000000001", 4},
    {"device before type", 'r', "SS", "0104%ZB1", 0x1132},
    {"type before digits", 'r', "SS", "0104%DBX", 7},
    {"other type before its data", 'w', "SS", "0204%DW1000104%MX1XX", 0x1332},
    {"words before data", 'w', "SB", "04%DW13DXXXX", 0x1232},
    {"bad data before extra characters", 'w', "SS", "0104%DW1XXXXX", 0x1432},
    {"extra characters before address", 'r', "SS", "0108%DW99999X", 0x1234},
};

class TestRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void envelope_data() { addRows(kEnvelope); }
    void envelope()
    {
        const auto &row = currentRow(kEnvelope);
        const std::optional<Envelope> envelope = openEnvelope(wire(row.frame));
        QCOMPARE(envelope.has_value(), row.good);
        if (envelope) {
            QCOMPARE(envelope->station, row.station);
            QCOMPARE(envelope->command, row.command);
            QCOMPARE(envelope->type, QByteArray(row.type));
            QCOMPARE(envelope->body, QByteArray(row.body));
        }
    }

    void services_data() { addRows(kServices); }
    void services()
    {
        const auto &row = currentRow(kServices);
        const auto read = readRequest({1, row.command, row.type, row.body});
        QVERIFY(std::holds_alternative<Request>(read));
        const Request request = std::get<Request>(read);
        QCOMPARE(int(request.service), row.service);
        QCOMPARE(int(request.items.size()), row.items);
        QCOMPARE(request.items.front().count, row.count);
        QCOMPARE(int(request.items.front().data.size()), row.data);
        QCOMPARE(request.items.front().first.address, 10);
        if (!request.items.front().data.empty()) {
            QCOMPARE(request.items.front().data.back(), quint16(0xFFFF));
        }
    }

    void firstFaultWins_data() { addRows(kFirstFaultWins); }
    void firstFaultWins()
    {
        const auto &row = currentRow(kFirstFaultWins);
        const auto read = readRequest({1, row.command, row.type, row.body});
        QVERIFY(std::holds_alternative<Refusal>(read));
        QCOMPARE(int(std::get<Refusal>(read)), row.code);
    }
};

QTEST_APPLESS_MAIN(TestRequest)
#include "test_request.moc"
