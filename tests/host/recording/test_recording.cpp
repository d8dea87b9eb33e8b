#include "support/rows.h"

#include <host/capture/packet_format.h>
#include <host/recording/recording.h>

#include <QTemporaryDir>

using namespace cnet;

class TestRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesAnswersToTheirRequest_data();
    void givesAnswersToTheirRequest();
    void keepsLinesApart();
    void joinsAFileThatWasCut();
    void saysWhatIsLeftOut();
    void saysThatThereIsNoLine_data();
    void saysThatThereIsNoLine();
    void choosesALine();
    void readsFiles();
    void theExampleIsOne();
};

namespace {

const QByteArray kRequest("\x05"
                          "01r");
const QByteArray kOther("\x05"
                        "02r");
const QByteArray kAnswer("\x06"
                         "01r");

/** A capture in the making. */
class Written
{
public:
    explicit Written(CaptureFormat format = CaptureFormat::ExportedPdu)
        : m_format(format)
        , m_bytes(sectionBlock(QLatin1String("test")))
    {}

    Written &line(const char *name)
    {
        m_bytes += interfaceBlock(linkTypeOf(m_format), QLatin1String(name));
        return *this;
    }

    /** @param way ">" sent, "<" received */
    Written &packet(const char *way, const QByteArray &bytes, quint32 line = 0, quint64 lost = 0)
    {
        CapturePacket packet;
        packet.interfaceNumber = line;
        packet.timeNs = ++m_ns;
        packet.direction = *way == '>' ? CaptureDirection::Sent : CaptureDirection::Received;
        packet.data = packetData(m_format, packet.direction, m_ns, bytes);
        packet.comment = QLatin1String("words");
        packet.lost = lost;
        m_bytes += packetBlock(packet);
        return *this;
    }

    Written &add(const QByteArray &blocks)
    {
        m_bytes += blocks;
        return *this;
    }

    QByteArray bytes() const { return m_bytes; }

private:
    CaptureFormat m_format;
    QByteArray m_bytes;
    qint64 m_ns = 0;
};

Written oneLine()
{
    return Written().line("tcp 1");
}

/** "1>2,3 4>": the packets of each request and, behind ">", those that came for it; "?" open. */
QByteArray text(const RecordedLine &line)
{
    QByteArray all;
    for (const RecordedExchange &exchange : line.exchanges) {
        QByteArrayList answers;
        for (const RecordedFrame &frame : exchange.answers) {
            answers << QByteArray::number(frame.number);
        }
        all += (all.isEmpty() ? "" : " ") + QByteArray::number(exchange.request.number) + '>' +
               answers.join(',') + (exchange.isOpen ? "?" : "");
    }
    return all;
}

const Case<QByteArray, const char *> kExchanges[] = {
    {"one", oneLine().packet(">", kRequest).packet("<", kAnswer).bytes(), "1>2"},
    {"as the PLC writes it", oneLine().packet("<", kRequest).packet(">", kAnswer).bytes(), "1>2"},
    {"of a serial recorder",
     Written(CaptureFormat::RtacSerial).line("").packet(">", kRequest).packet("<", kAnswer).bytes(),
     "1>2"},
    {"noise, a copy, a late answer",
     oneLine()
         .packet(">", kRequest)
         .packet("<", "zz")
         .packet("<", kAnswer)
         .packet("<", kAnswer)
         .packet(">", kOther)
         .packet("<", kAnswer)
         .bytes(),
     "1>2,3,4 5>6"},
    {"echo", oneLine().packet(">", kRequest).packet("<", kRequest).packet("<", kAnswer).bytes(),
     "1>2,3"},
    {"echo, as the PLC writes it",
     oneLine().packet("<", kRequest).packet(">", kRequest).packet(">", kAnswer).bytes(), "1>2,3"},
    {"silence", oneLine().packet(">", kRequest).packet(">", kRequest).packet("<", kAnswer).bytes(),
     "1> 2>3"},
    {"cut before the answer", oneLine().packet(">", kRequest).bytes(), "1>?"},
    {"what came before the first request",
     oneLine().packet("<", kAnswer).packet(">", kRequest).packet("<", kAnswer).bytes(), "2>3"},
    {"a request that is none",
     oneLine().packet(">", kRequest).packet("<", kAnswer).packet(">", "zz").bytes(), "1>2 3>?"},
    {"packets without bytes",
     oneLine().packet(">", kRequest).packet("<", "").packet("<", kAnswer).bytes(), "1>3"},
};

const Case<QByteArray, const char *> kNoLine[] = {
    {"no capture", "abc", "it is no pcapng file"},
    {"no packets", oneLine().bytes(), "there is no request in it"},
    {"answers alone", oneLine().packet("<", kAnswer).bytes(), "there is no request in it"},
    {"a network", Written().add(interfaceBlock(1, QLatin1String("eth0"))).packet("<", "x").bytes(),
     "there is no request in it: packets left out, of no Cnet line (link type 1, Ethernet): 1"},
    {"cut before the first packet", oneLine().packet(">", kRequest).bytes().chopped(4),
     "it ends within a block, at byte 84"},
};

} // namespace

void TestRecording::givesAnswersToTheirRequest_data()
{
    addRows(kExchanges);
}

void TestRecording::givesAnswersToTheirRequest()
{
    const auto &row = currentRow(kExchanges);
    const Recording recording = readRecording(row.given);
    QCOMPARE(recording.error, QString());
    QCOMPARE(recording.lines.size(), std::size_t(1));
    QCOMPARE(text(recording.lines.front()), QByteArray(row.expected));
    const RecordedFrame &request = recording.lines.front().exchanges.front().request;
    QCOMPARE(request.bytes, kRequest);
    QCOMPARE(request.comment, QLatin1String("words"));
    QCOMPARE(request.timeNs, qint64(request.number));
}

void TestRecording::keepsLinesApart()
{
    const Recording recording = readRecording(Written()
                                                  .line("tcp 1")
                                                  .line("")
                                                  .line("tcp 1")
                                                  .line("silent")
                                                  .packet(">", kRequest, 0)
                                                  .packet("<", kOther, 1)
                                                  .packet("<", kAnswer, 0)
                                                  .packet(">", kAnswer, 1)
                                                  .packet(">", kRequest, 2)
                                                  .packet("<", kAnswer, 3)
                                                  .bytes());
    QCOMPARE(recording.lines.size(), std::size_t(2));
    QCOMPARE(recording.lines.at(0).name, QLatin1String("tcp 1"));
    QCOMPARE(text(recording.lines.at(0)), QByteArray("1>3 5>?"));
    QCOMPARE(recording.lines.at(1).name, QLatin1String("interface 1"));
    QCOMPARE(text(recording.lines.at(1)), QByteArray("2>4"));
}

void TestRecording::joinsAFileThatWasCut()
{
    const QByteArray whole =
        oneLine().packet(">", kRequest).packet("<", kAnswer).packet(">", kRequest).bytes();
    const Recording recording = readRecording(whole.chopped(1));
    QCOMPARE(text(recording.lines.at(0)), QByteArray("1>2"));
    QVERIFY2(recording.remarks.join(QLatin1Char('|'))
                 .endsWith(QLatin1String("; what stands before that is used")),
             qPrintable(recording.remarks.join(QLatin1Char('|'))));
}

void TestRecording::saysWhatIsLeftOut()
{
    const Recording recording = readRecording(Written()
                                                  .line("tcp 1")
                                                  .add(interfaceBlock(1, QLatin1String("eth0")))
                                                  .packet(">", kRequest, 0, 3)
                                                  .packet("<", kAnswer, 1)
                                                  .packet("<", kAnswer, 1)
                                                  .packet("<", kAnswer, 0, 1)
                                                  .add(packetBlock(CapturePacket()))
                                                  .bytes());
    QCOMPARE(recording.remarks,
             QStringList({QLatin1String("packets left out, of no Cnet line (link type 1, "
                                        "Ethernet): 2"),
                          QLatin1String("packets left out, of another protocol or cut: 1"),
                          QLatin1String("packets missing, which the capture's reader was too slow "
                                        "for: 4")}));
    QCOMPARE(text(recording.lines.at(0)), QByteArray("1>4"));
}

void TestRecording::saysThatThereIsNoLine_data()
{
    addRows(kNoLine);
}

void TestRecording::saysThatThereIsNoLine()
{
    const auto &row = currentRow(kNoLine);
    const Recording recording = readRecording(row.given);
    QCOMPARE(recording.error, QLatin1String(row.expected));
    QVERIFY(recording.lines.empty());
}

void TestRecording::choosesALine()
{
    Recording recording;
    recording.lines = {{QLatin1String("a"), {}}};
    QString error;
    QCOMPARE(findLine(recording, QString(), error), &recording.lines.at(0));
    recording.lines.push_back({QLatin1String("b"), {}});
    QCOMPARE(findLine(recording, QLatin1String("b"), error), &recording.lines.at(1));
    QVERIFY(!findLine(recording, QString(), error));
    QCOMPARE(error, QLatin1String("2 lines in it, expected the name of one: 'a', 'b'"));
    recording.lines.resize(12, {QLatin1String("c"), {}});
    QVERIFY(!findLine(recording, QLatin1String("x"), error));
    QCOMPARE(error, QLatin1String("no line 'x' in it; there is 'a', 'b', 'c', 'c', 'c', 'c', 'c', "
                                  "'c', 'c', 'c', 2 more"));
}

void TestRecording::readsFiles()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QLatin1String("x.pcapng"));
    QCOMPARE(readRecordingFile(path).error, path + QLatin1String(": No such file or directory"));
    QVERIFY(readRecordingFile(directory.path())
                .error.startsWith(directory.path() + QLatin1String(": ")));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(oneLine().packet(">", kRequest, 0, 1).bytes()) > 0);
    file.close();
    const Recording recording = readRecordingFile(path);
    QCOMPARE(recording.lines.size(), std::size_t(1));
    QVERIFY(recording.remarks.value(0).startsWith(path + QLatin1String(": packets missing")));
}

void TestRecording::theExampleIsOne()
{
    const Recording recording = readRecordingFile(QLatin1String(PRESS_CAPTURE));
    QCOMPARE(recording.error, QString());
    QCOMPARE(recording.remarks, QStringList());
    QCOMPARE(recording.lines.size(), std::size_t(1));
    QVERIFY(recording.lines.front().exchanges.size() > 10);
}

QTEST_APPLESS_MAIN(TestRecording)
#include "test_recording.moc"
