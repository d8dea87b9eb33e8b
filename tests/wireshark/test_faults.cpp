#include "programs/program.h"
#include "shark.h"
#include "support/pcapng_reader.h"
#include "support/rows.h"

#include <QTemporaryDir>

#include <csignal>

/** What the simulated PLC does to a line is what the dissector finds, frame by frame. */
class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void areFound_data();
    void areFound();

private:
    void record(const QString &file, bool rtac);

    QTemporaryDir m_directory;
};

namespace {

struct Row
{
    const char *what;
    const char *plc;
    const char *panel;
    int marks; ///< packets at least that the PLC says a fault of
};

const char kItems[] = "--count 12 --timeout 50 D_W:100*5 M_bit:3.1 2/TX:7";
const char kStations[] = "--station 1 --station 2 ";

const Row kRows[] = {
    {"silence", "--fault silence@25%", kItems, 3},
    {"delay", "--fault delay=30..40@50%", "--count 8 --timeout 5000 D_W:100*5 M_bit:3.1", 3},
    {"noise-before", "--fault noise-before@25%", kItems, 3},
    {"noise-after", "--fault noise-after=1..60@25%", kItems, 3},
    {"split", "--fault split=1@10%", "--count 8 --timeout 5000 D_W:100*5 M_bit:3.1", 1},
    {"wrong-check", "--fault wrong-check@25%", kItems, 3},
    {"wrong-station", "--fault wrong-station=9@25%", kItems, 3},
    {"refuse", "--fault refuse=1232@25%", kItems, 3},
    {"truncate", "--fault truncate@25%", kItems, 3},
    {"truncate to nothing", "--fault truncate=0@25%", kItems, 3},
    {"oversize", "--fault oversize=100..400@25%", kItems, 3},
    {"echo", "--fault echo@25%", kItems, 6},
    {"repeat", "--fault repeat=1..3@25%", kItems, 6},
    {"no fault, the press", "--scenario press",
     "--count 3 --timeout 5000 D_W:100*31 P_W:0 M_W:0*4 T_W:0 C_W:0 M_bit:0.1 TX:0", 0},
};

// A time-out is short; where all is busy a PLC may need longer.
const int kMostTries = 5;

const char kExperts[] = "bad_check malformed cut refused no_answer other_station mismatch repeated "
                        "unasked echo outside not_captured";

QStringList words(const char *line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/** What the comments of a capture say of its packets, as experts of the dissector. */
class Expected
{
public:
    explicit Expected(int header)
        : m_header(header)
    {}

    int marks = 0;

    QByteArray of(const PcapngPacket &packet)
    {
        m_experts.clear();
        const QByteArray bytes = packet.data.mid(m_header);
        const auto at = packet.comment.indexOf("; fault: ");
        const QByteArray fault = at < 0 ? QByteArray() : packet.comment.mid(at + 9);
        marks += fault.isEmpty() ? 0 : 1;
        const bool isRequest = bytes.startsWith('\x05');
        const bool isAnswer = bytes.startsWith('\x06') || bytes.startsWith('\x15');
        if (isRequest && packet.direction == 1) {
            request(bytes, fault);
        } else if (isRequest) {
            expect(fault == "echo", "echo");
        } else if (isAnswer) {
            answer(fault);
        } else {
            expect(fault.startsWith("noise-"), "outside");
        }
        return m_experts.join(' ');
    }

private:
    void expect(bool condition, const char *expert)
    {
        m_experts.append(condition ? expert : "nothing of the kind");
    }

    // A mark on a request says that nothing was sent for it.
    void request(const QByteArray &bytes, const QByteArray &fault)
    {
        if (m_silent) {
            m_experts.append("no_answer");
        }
        if (m_failed && bytes == m_request) {
            m_experts.append("repeated");
        }
        m_request = bytes;
        m_silent = !fault.isEmpty();
        m_failed = m_silent;
        m_answers = 0;
    }

    void answer(const QByteArray &fault)
    {
        static const QHash<QByteArray, QByteArray> kFailing = {{"wrong-check", "bad_check"},
                                                               {"wrong-station", "other_station"},
                                                               {"truncate", "cut"},
                                                               {"oversize", "malformed"}};
        ++m_answers;
        if (kFailing.contains(fault)) {
            m_failed = true;
            m_experts.append(kFailing.value(fault));
        } else if (fault == "refuse") {
            m_experts.append("refused");
        } else if (m_answers > 1) {
            expect(fault == "repeat", "unasked");
        }
    }

    int m_header;
    QByteArrayList m_experts;
    QByteArray m_request;
    bool m_silent = false;
    bool m_failed = false;
    int m_answers = 0;
};

/** The PLC was not quick enough: a request came while the answer to the one before was due. */
bool isOverlapping(const PcapngFile &capture, int header)
{
    bool isDue = false;
    for (const PcapngPacket &packet : capture.packets) {
        const bool isRequest = packet.direction == 1;
        if (isRequest && isDue) {
            return true;
        }
        isDue = isRequest && packet.data.mid(header).startsWith('\x05') &&
                !packet.comment.contains("; fault: ");
    }
    return false;
}

} // namespace

void TestFaults::initTestCase()
{
    skipWithoutShark();
}

void TestFaults::areFound_data()
{
    addRows(kRows);
}

/** Has the panel read from a PLC that captures what it does. */
void TestFaults::record(const QString &file, bool rtac)
{
    const Row &row = currentRow(kRows);
    PlcProgram plc;
    QVERIFY(
        plc.serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0"), QLatin1String("--capture"),
                   file, QLatin1String("--capture-as"), QLatin1String(rtac ? "rtac" : "pdu")},
                  words(kStations) + words(row.plc)));
    Program panel;
    QVERIFY(panel.start(QLatin1String(CNET_PANEL),
                        QStringList{QLatin1String("monitor"), QLatin1String("--interval"),
                                    QLatin1String("0"), QLatin1String("--link"),
                                    QLatin1String("tcp:") + plc.place()} +
                            words(row.panel)));
    QVERIFY(panel.exitCode() >= 0);
    plc.signal(SIGTERM);
    QCOMPARE(plc.exitCode(), 0);
}

void TestFaults::areFound()
{
    const Row &row = currentRow(kRows);
    const bool rtac = (&row - kRows) % 2 != 0;
    const int header = rtac ? 12 : 20;
    const QString file = m_directory.filePath(QLatin1String("faults.pcapng"));
    PcapngFile capture;
    for (int tries = 0; tries == 0 || (tries < kMostTries && isOverlapping(capture, header));
         ++tries) {
        record(file, rtac);
        QVERIFY(!QTest::currentTestFailed());
        capture = readPcapngFile(file);
        QCOMPARE(capture.error, QByteArray());
    }
    const QByteArrayList experts = QByteArray(kExperts).split(' ');
    const QList<QByteArray> lines = dissectFields(
        file, QLatin1String("cnet.time cnet.") +
                  QString::fromLatin1(kExperts).replace(QLatin1Char(' '), QLatin1String(" cnet.")));
    QVERIFY2(lines.size() == capture.packets.size() && lines.size() > 20,
             lines.value(0).constData());
    Expected expected(header);
    for (int i = 0; i < lines.size(); ++i) {
        const QList<QByteArray> fields = lines.at(i).split('|');
        QByteArrayList found;
        for (int k = 0; k < experts.size(); ++k) {
            if (!fields.value(k + 1).isEmpty()) {
                found.append(experts.at(k));
            }
        }
        const PcapngPacket &packet = capture.packets.at(i);
        QVERIFY2(found.join(' ') == expected.of(packet),
                 QByteArray("packet " + QByteArray::number(i + 1) + ", " + packet.comment +
                            ", has: " + found.join(' '))
                     .constData());
        if (packet.comment.endsWith("; fault: delay")) {
            QVERIFY2(fields.at(0).toDouble() >= 0.03, fields.at(0).constData());
        }
    }
    QVERIFY2(expected.marks >= row.marks, QByteArray::number(expected.marks).constData());
}

QTEST_GUILESS_MAIN(TestFaults)
#include "test_faults.moc"
