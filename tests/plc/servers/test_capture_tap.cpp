#include "plc/servers/capture_tap.h"

#include "plc/support/wire_text.h"
#include "support/pcapng_reader.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace plc;

namespace {

const QByteArray kRead = wire("[ENQ]01RSS0107%DW0100[EOT]");
const QByteArray kAnswer = wire("[ACK]01RSS01020000[ETX]");
const QByteArray kOther = wire("[ENQ]07RSS0107%DW0100[EOT]");

QByteArray in(const QByteArray &bytes, const char *remark = "")
{
    return '<' + bytes + remark;
}

QByteArray out(const QByteArray &bytes, const char *remark = "")
{
    return '>' + bytes + remark;
}

} // namespace

/** What a connection's capture says of the faults. */
class TestCaptureTap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void tellsEachFaultWhereItIsSeen_data();
    void tellsEachFaultWhereItIsSeen();
    void eachAnswerHasItsOwnFaults();
    void bytesOfNoRequestAreThereToo();
    void forgottenAnswersNameNoFault();
    void aFaultIsNotToldOfALaterRequest();

private:
    void ask(const QByteArray &bytes);
    QList<QByteArray> written() const;

    qint64 m_nowNs = 0;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<cnet::Capture> m_capture;
    std::unique_ptr<CaptureTap> m_tap;
    std::unique_ptr<Bus> m_bus;
    std::unique_ptr<Line> m_line;
    std::vector<Chunk> m_answers;
};

void TestCaptureTap::init()
{
    m_tap.reset();
    m_capture.reset();
    m_directory = std::make_unique<QTemporaryDir>();
    cnet::CaptureOptions options;
    options.path = m_directory->filePath(QLatin1String("plc.pcapng"));
    QString error;
    cnet::CaptureClock clock = cnet::systemCaptureClock();
    clock.steadyNs = [this] { return m_nowNs; };
    m_capture = cnet::Capture::open(options, error, clock);
    QVERIFY2(m_capture, qPrintable(error));
    m_tap = std::make_unique<CaptureTap>(*m_capture, QLatin1String("a client"));
    m_bus = std::make_unique<Bus>();
    m_bus->add(1);
    m_line = std::make_unique<Line>(*m_bus);
    m_line->setObserver([this](const Exchange &exchange) { m_tap->note(exchange); });
}

void TestCaptureTap::ask(const QByteArray &bytes)
{
    m_answers = m_line->receive(bytes);
    m_tap->received(bytes);
}

// Direction, bytes and comment of each packet.
QList<QByteArray> TestCaptureTap::written() const
{
    const int header = 20;
    const PcapngFile file = readPcapngFile(m_directory->filePath(QLatin1String("plc.pcapng")));
    QList<QByteArray> all;
    if (!file.error.isEmpty()) {
        all.append(file.error);
    }
    for (const PcapngPacket &packet : file.packets) {
        all.append((packet.direction == 1 ? "<" : ">") + packet.data.mid(header) + packet.comment);
    }
    return all;
}

void TestCaptureTap::tellsEachFaultWhereItIsSeen_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("amount");
    QTest::addColumn<QList<QByteArray>>("packets");
    const auto row = [](const char *name, FaultKind kind, int amount,
                        const QList<QByteArray> &packets) {
        QTest::newRow(name) << static_cast<int>(kind) << amount << packets;
    };
    row("silence", FaultKind::Silence, 0, {in(kRead, "fault: silence")});
    row("nothing left", FaultKind::Truncate, 0, {in(kRead, "fault: truncate")});
    row("cut off", FaultKind::Truncate, 9, {in(kRead), out(kAnswer.left(9), "fault: truncate")});
    row("byte by byte", FaultKind::Split, 1, {in(kRead), out(kAnswer, "fault: split")});
    row("echo", FaultKind::Echo, 0,
        {in(kRead), out(kRead, "fault: echo"), out(kAnswer, "fault: echo")});
    row("repeat", FaultKind::Repeat, 1,
        {in(kRead), out(kAnswer, "fault: repeat"), out(kAnswer, "fault: repeat")});
}

void TestCaptureTap::tellsEachFaultWhereItIsSeen()
{
    QFETCH(int, kind);
    QFETCH(int, amount);
    QFETCH(QList<QByteArray>, packets);
    Fault fault = usualFault(static_cast<FaultKind>(kind));
    fault.low = fault.high = amount;
    m_bus->find(1)->faults.add(fault);
    ask(kRead);
    for (const Chunk &chunk : m_answers) {
        m_tap->sent(chunk.bytes);
    }
    QCOMPARE(written(), packets);
}

// They are sent together, and asked for together.
void TestCaptureTap::eachAnswerHasItsOwnFaults()
{
    Fault once = usualFault(FaultKind::Truncate);
    once.low = once.high = 3;
    once.times = 1;
    m_bus->find(1)->faults.add(once);
    ask(kRead + kOther + kRead);
    m_tap->sent(joined(m_answers));
    QCOMPARE(written(), (QList<QByteArray>{in(kRead), in(kOther), in(kRead),
                                           out(kAnswer.left(3), "fault: truncate"), out(kAnswer)}));
}

void TestCaptureTap::bytesOfNoRequestAreThereToo()
{
    m_bus->find(1)->faults.add(usualFault(FaultKind::Silence));
    ask("noise" + kRead.left(5));
    ask(kRead.mid(5) + "rest");
    m_tap.reset();
    QCOMPARE(written(), (QList<QByteArray>{in("noise"), in(kRead, "fault: silence"), in("rest")}));
}

void TestCaptureTap::forgottenAnswersNameNoFault()
{
    Fault once = usualFault(FaultKind::Delay);
    once.times = 1;
    m_bus->find(1)->faults.add(once);
    ask(kRead);
    m_tap->forgetAnswers();
    ask(kRead);
    m_tap->sent(joined(m_answers));
    QCOMPARE(written(), (QList<QByteArray>{in(kRead), in(kRead), out(kAnswer)}));
}

// The request came in two parts, so far apart that the capture has them as two packets.
void TestCaptureTap::aFaultIsNotToldOfALaterRequest()
{
    Fault once = usualFault(FaultKind::Silence);
    once.times = 1;
    m_bus->find(1)->faults.add(once);
    ask(kRead.left(5));
    m_nowNs += 1100000000;
    ask(kRead.mid(5));
    ask(kRead);
    m_tap.reset();
    const QList<QByteArray> packets = written();
    QCOMPARE(packets.first(), in(kRead.left(5)));
    QCOMPARE(packets.last(), in(kRead));
}

QTEST_GUILESS_MAIN(TestCaptureTap)
#include "test_capture_tap.moc"
