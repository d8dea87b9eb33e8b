#include "plc/request.h"

#include "wire_text.h"

#include <QtTest>

using namespace plc;

class TestRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void envelope_data();
    void envelope();
    void services_data();
    void services();
    void firstFaultWins_data();
    void firstFaultWins();
};

void TestRequest::envelope_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<bool>("good");
    QTest::addColumn<int>("station");
    QTest::addColumn<char>("command");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const char *frame, bool good, int station, char command,
                        const char *type, const char *body) {
        QTest::newRow(name) << wire(frame) << good << station << command << QByteArray(type)
                            << QByteArray(body);
    };
    row("with check", "[ENQ]1FrSB07%DW010003[EOT]D2", true, 31, 'r', "SB", "07%DW010003");
    row("without check", "[ENQ]00WSS0104%DW01234[EOT]", true, 0, 'W', "SS", "0104%DW01234");
    row("station in lower case", "[ENQ]1fRSS[EOT]", true, 31, 'R', "SS", "");
    row("foreign command", "[ENQ]01X??abc[EOT]", true, 1, 'X', "??", "abc");
    row("station FF", "[ENQ]FFRSS[EOT]", true, 255, 'R', "SS", "");
    row("type cut", "[ENQ]01RS[EOT]", false, 0, 'r', "", "");
    row("type cut, with check", "[ENQ]01rS[EOT]2F", false, 0, 'r', "", "");
    row("wrong check", "[ENQ]01rSS[EOT]7D", false, 0, 'r', "", "");
    row("digit for a command", "[ENQ]011SS[EOT]", false, 0, 'r', "", "");
    row("byte above 7F for a command", "[ENQ]01[E4]SS[EOT]", false, 0, 'r', "", "");
    row("no ENQ", "[NAK]01RSS[EOT]", false, 0, 'r', "", "");
    row("empty", "", false, 0, 'r', "", "");
}

void TestRequest::envelope()
{
    QFETCH(QByteArray, frame);
    const std::optional<Envelope> envelope = openEnvelope(frame);
    QTEST(envelope.has_value(), "good");
    if (envelope) {
        QTEST(envelope->station, "station");
        QTEST(envelope->command, "command");
        QTEST(envelope->type, "type");
        QTEST(envelope->body, "body");
    }
}

void TestRequest::services_data()
{
    QTest::addColumn<char>("command");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("service");
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("data");
    QTest::newRow("rSS") << 'r' << QByteArray("SS") << QByteArray("0205%DW1005%DW11")
                         << int(Service::ReadSingle) << 2 << 1 << 0;
    QTest::newRow("RSB") << 'R' << QByteArray("SB") << QByteArray("05%DW103C")
                         << int(Service::ReadBlock) << 1 << 60 << 0;
    QTest::newRow("WSS") << 'W' << QByteArray("SS") << QByteArray("0105%DW10FFFF")
                         << int(Service::WriteSingle) << 1 << 1 << 1;
    QTest::newRow("wSB") << 'w' << QByteArray("SB") << QByteArray("05%DW100311112222FFFF")
                         << int(Service::WriteBlock) << 1 << 3 << 3;
}

void TestRequest::services()
{
    QFETCH(char, command);
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, body);
    QFETCH(int, service);
    const auto read = readRequest({1, command, type, body});
    QVERIFY(std::holds_alternative<Request>(read));
    const Request request = std::get<Request>(read);
    QCOMPARE(int(request.service), service);
    QTEST(int(request.items.size()), "items");
    QTEST(request.items.front().count, "count");
    QTEST(int(request.items.front().data.size()), "data");
    QCOMPARE(request.items.front().first.address, 10);
    if (!request.items.front().data.empty()) {
        QCOMPARE(request.items.front().data.back(), quint16(0xFFFF));
    }
}

void TestRequest::firstFaultWins_data()
{
    QTest::addColumn<char>("command");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("code");
    QTest::newRow("blocks before name") << 'r' << QByteArray("SS") << QByteArray("1111%DW1") << 3;
    QTest::newRow("length before device")
        << 'r' << QByteArray("SS") << QByteArray("0111%ZW00000000000001") << 4;
    QTest::newRow("device before type")
        << 'r' << QByteArray("SS") << QByteArray("0104%ZB1") << 0x1132;
    QTest::newRow("type before digits") << 'r' << QByteArray("SS") << QByteArray("0104%DBX") << 7;
    QTest::newRow("other type before its data")
        << 'w' << QByteArray("SS") << QByteArray("0204%DW1000104%MX1XX") << 0x1332;
    QTest::newRow("words before data")
        << 'w' << QByteArray("SB") << QByteArray("04%DW13DXXXX") << 0x1232;
    QTest::newRow("bad data before extra characters")
        << 'w' << QByteArray("SS") << QByteArray("0104%DW1XXXXX") << 0x1432;
    QTest::newRow("extra characters before address")
        << 'r' << QByteArray("SS") << QByteArray("0108%DW99999X") << 0x1234;
}

void TestRequest::firstFaultWins()
{
    QFETCH(char, command);
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, body);
    const auto read = readRequest({1, command, type, body});
    QVERIFY(std::holds_alternative<Refusal>(read));
    QTEST(int(std::get<Refusal>(read)), "code");
}

QTEST_APPLESS_MAIN(TestRequest)
#include "test_request.moc"
