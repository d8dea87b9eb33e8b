#include "host/decode/wire_text.h"
#include "shark.h"
#include "support/rows.h"
#include "tcp_capture.h"

#include <QTemporaryDir>

using namespace cnet;

/** Frames in TCP streams, whatever segments they come in. */
class TestStreams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void findsFrames_data();
    void findsFrames();

private:
    QTemporaryDir m_directory;
};

namespace {

const char kAsk[] = "<ENQ>01rSB08%DW0010002<EOT>??";
const char kSay[] = "<ACK>01rSB0104000100FF<ETX>??";
const char kAsk2[] = "<ENQ>02rSS0106%MW003<EOT>??";
const char kSay2[] = "<ACK>02rSS01020007<ETX>??";

const int kFound = 4001; // none of the dissector's ports
const int kOwn = 8000;

/** Bytes of a segment: of the client (>) or of the server (<). Of a text, "^" ends a segment. */
struct Row
{
    const char *what;
    int port;
    QList<QByteArray> segments;
    QList<QByteArray> found; ///< protocol|verdicts|request in|values, of each packet
    const char *options;
};

QByteArray wire(const char *text)
{
    return wireText(text);
}

QList<QByteArray> byteByByte(const QByteArray &bytes)
{
    QList<QByteArray> segments;
    for (const char byte : bytes) {
        segments.append(QByteArray("<") + byte);
    }
    return segments;
}

QByteArray repeated(const char *text, int times)
{
    return QByteArray(text).repeated(times);
}

const QByteArray kAnswer = "Cnet|good|1|1,255";
const QByteArray kRequest = "Cnet|good||";
const QByteArray kNothing = "TCP|||"; // of a frame that goes on, or of no frame

/** What is found where an answer comes in so many segments. */
QList<QByteArray> onlyTheLast(int segments, const QByteArray &request, const QByteArray &answer)
{
    QList<QByteArray> found{request};
    for (int i = 1; i < segments; ++i) {
        found.append(kNothing);
    }
    return found << answer;
}

const Row kRows[] = {
    {"port of its own", kOwn, {'>' + wire(kAsk), '<' + wire(kSay)}, {kRequest, kAnswer}, ""},
    {"found by its look", kFound, {'>' + wire(kAsk), '<' + wire(kSay)}, {kRequest, kAnswer}, ""},
    {"byte by byte", kFound, QList<QByteArray>{'>' + wire(kAsk)} + byteByByte(wire(kSay)),
     onlyTheLast(static_cast<int>(wire(kSay).size()), kRequest, kAnswer), ""},
    {"several in one segment",
     kFound,
     {'>' + wire(kAsk) + wire(kAsk2), '<' + wire(kSay) + wire(kSay2)},
     {"Cnet|good,good||", "Cnet|good,good|1,1|1,255,7"},
     ""},
    {"one, and half of another",
     kFound,
     {'>' + wire(kAsk) + wire(kAsk2).left(9), '>' + wire(kAsk2).mid(9),
      '<' + wire(kSay) + wire(kSay2).left(3), '<' + wire(kSay2).mid(3)},
     {"Cnet|good||", "Cnet|good||", "Cnet|good|1|1,255", "Cnet|good|2|7"},
     ""},
    {"noise around",
     kOwn,
     {'>' + wire(kAsk), '<' + QByteArray("xyz") + wire(kSay) + "uv", "<w", '>' + wire(kAsk)},
     {kRequest, "Cnet|no frame,good,no frame|1|1,255", "Cnet|no frame||", kRequest},
     ""},
    {"noise before all, which is nobody's",
     kOwn,
     {"<xyz", '>' + wire(kAsk), '<' + wire(kSay)},
     {kNothing, kRequest, "Cnet|good|2|1,255"},
     ""},
    {"an answer that is cut, and the next",
     kFound,
     {'>' + wire(kAsk), '<' + wire(kSay).left(12), '>' + wire(kAsk), '<' + wire(kSay)},
     {kRequest, kNothing, kRequest, "Cnet|malformed,good|3|1,255"},
     ""},
    {"segments that are missing",
     kFound,
     {'>' + wire(kAsk), '<' + wire(kSay).left(5), "-7", '<' + wire(kSay).mid(12), '>' + wire(kAsk),
      '<' + wire(kSay)},
     {kRequest, kNothing, "Cnet|no frame||", kRequest, "Cnet|good|4|1,255"},
     ""},
    {"without end",
     kFound,
     {'>' + wire(kAsk), '<' + QByteArray("\x06") + repeated("0", 1500), '>' + wire(kAsk),
      '<' + wire(kSay)},
     {kRequest, "Cnet|malformed,no frame||", kRequest, "Cnet|good|3|1,255"},
     ""},
    {"another protocol at its port", kOwn, {">GET / HTTP/1.0\r\n\r\n"}, {"HTTP|||"}, ""},
    {"another protocol elsewhere",
     kFound,
     {">\x05\x01", "<\x05", ">\x05\x01\x02"},
     {kNothing, kNothing, kNothing},
     ""},
    {"port by preference",
     kFound,
     {'>' + QByteArray("??") + wire(kAsk), '<' + wire(kSay)},
     {"Cnet|no frame,good||", kAnswer},
     "-o cnet.tcp_ports:4001-4003,9000"},
    {"port by preference, not this one",
     kFound,
     {'>' + QByteArray("??") + wire(kAsk), '<' + wire(kSay)},
     {kNothing, "Cnet|good||1,255"},
     "-o cnet.tcp_ports:9000"},
    {"decode as",
     kFound,
     {'>' + QByteArray("??") + wire(kAsk), '<' + wire(kSay)},
     {"Cnet|no frame,good||", kAnswer},
     "-d tcp.port==4001,cnet"},
};

} // namespace

void TestStreams::initTestCase()
{
    skipWithoutShark();
}

void TestStreams::findsFrames_data()
{
    addRows(kRows);
}

void TestStreams::findsFrames()
{
    const Row &row = currentRow(kRows);
    TcpCapture capture(static_cast<quint16>(row.port));
    for (const QByteArray &segment : row.segments) {
        const QByteArray bytes = segment.mid(1);
        if (segment.startsWith('-')) {
            capture.lost(bytes.toInt());
        } else if (segment.startsWith('>')) {
            capture.client(bytes);
        } else {
            capture.server(bytes);
        }
    }
    const QString file = m_directory.filePath(QLatin1String("stream.pcap"));
    QVERIFY(capture.write(file));
    const QString fields =
        fieldOptions(QLatin1String("_ws.col.Protocol cnet.verdict cnet.request_in cnet.value ")) +
        QLatin1Char(' ') + QLatin1String(row.options);
    Dissection once(file, fields);
    Dissection twice(file, fields + QLatin1String(" -2"));
    const QList<QByteArray> lines = once.lines();
    QCOMPARE(twice.lines(), lines);
    QCOMPARE(lines, row.found);
}

QTEST_GUILESS_MAIN(TestStreams)
#include "test_streams.moc"
