#include "chance_frames.h"
#include "shark.h"
#include "support/pcapng_reader.h"

#include "host/capture/capture_line.h"
#include "host/decode/frame_decoder.h"
#include "host/decode/frame_text.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;

/** `cnet-panel decode` and the dissector know the frames by themselves, and say the same of each.
 */
class TestAgreement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sayTheSame_data();
    void sayTheSame();

private:
    QTemporaryDir m_directory;
};

namespace {

const int kFrames = 25000; // of each of four captures
const int kLines = 3;
const int kHeader[] = {20, 12}; // in front of a frame: exported PDU, serial recording

// As in said().
const char kFields[] = "cnet.verdict cnet.fault.offset cnet.station cnet.command cnet.type "
                       "cnet.error cnet.bcc.status cnet.bcc.expected cnet.value "
                       "cnet.value.address cnet.address cnet.count";
const int kCommand = 3;
const int kAddress = 10;

bool writeCapture(const QString &path, CaptureFormat format, quint64 seed)
{
    CaptureOptions options;
    options.path = path;
    options.format = format;
    QString error;
    const auto capture = Capture::open(options, error);
    if (!capture) {
        return false;
    }
    ChanceFrames frames(seed);
    Random random(seed);
    std::vector<std::unique_ptr<CaptureLine>> lines;
    lines.reserve(kLines);
    for (int i = 0; i < kLines; ++i) {
        lines.push_back(std::make_unique<CaptureLine>(*capture, QString::number(i)));
    }
    for (int i = 0; i < kFrames; ++i) {
        CaptureLine &line = *lines.at(
            static_cast<std::size_t>(random.weighed(std::initializer_list<int>{8, 1, 1})));
        const auto direction =
            random.chance(50) ? CaptureDirection::Sent : CaptureDirection::Received;
        line.add(direction, frames.next());
        line.flush(direction);
    }
    return capture->isRunning();
}

QByteArray joined(const QList<QByteArray> &parts)
{
    return parts.join(',');
}

QByteArray numbered(int number)
{
    return number < 0 ? QByteArray() : QByteArray::number(number);
}

QByteArray checkStatus(const DecodedFrame &frame)
{
    if (frame.checkExpected.isEmpty() || frame.checkFound.size() < 2) {
        return QByteArray();
    }
    return frame.checkFound == frame.checkExpected ? "1" : "0";
}

/** What decode says of the values, names and counts of a frame. */
struct Parts
{
    QList<QByteArray> values;
    QList<QByteArray> valueAddresses;
    QList<QByteArray> addresses;
    QList<QByteArray> counts;
};

Parts partsOf(const DecodedFrame &frame)
{
    Parts parts;
    for (const FrameField &field : frame.fields) {
        const QByteArray meaning = field.meaning.toLatin1();
        if (field.name == QLatin1String("data") && !meaning.isEmpty()) {
            const int value = frame.bytes.mid(field.offset, field.length).toInt(nullptr, 16);
            parts.values.append(QByteArray::number(value));
            if (meaning.contains(" = ")) {
                parts.valueAddresses.append(meaning.left(meaning.indexOf(" = ")));
            }
        } else if (field.name == QLatin1String("name") && !meaning.isEmpty()) {
            parts.addresses.append(meaning);
        }
    }
    for (const FrameRange &range : frame.ranges) {
        parts.counts.append(QByteArray::number(range.item.count));
        if (frame.direction == FrameDirection::Answer && range.hasAddress) {
            parts.addresses.append(
                (range.item.reg.name + QLatin1Char(':') + range.item.addressText(0)).toLatin1());
        }
    }
    return parts;
}

// The fields of kFields, the command and its type in one.
QList<QByteArray> said(const DecodedFrame &frame)
{
    const Parts parts = partsOf(frame);
    const bool checked = !frame.checkExpected.isEmpty() && frame.checkFound != frame.checkExpected;
    return {verdictText(frame.verdict).toLatin1(),
            numbered(frame.faultAt),
            numbered(frame.station),
            frame.command,
            frame.errorCode ? "0x" + QByteArray::number(*frame.errorCode, 16).rightJustified(4, '0')
                            : QByteArray(),
            checkStatus(frame),
            checked ? frame.checkExpected : QByteArray(),
            joined(parts.values),
            joined(parts.valueAddresses),
            joined(parts.addresses),
            joined(parts.counts)};
}

// What a frame is for can be told of a good one only.
QList<QByteArray> comparable(QList<QByteArray> fields)
{
    if (fields.at(0) != "good" && fields.at(0) != "wrong check") {
        fields = fields.mid(0, kAddress - 1);
    }
    return fields;
}

QList<QByteArray> dissected(const QByteArray &line)
{
    QList<QByteArray> fields = line.split('|');
    if (fields.size() != kAddress + 2) {
        return {line};
    }
    const QByteArray type = fields.takeAt(kCommand + 1);
    fields[kCommand] = type.isEmpty() ? QByteArray() : fields.at(kCommand) + type;
    return fields;
}

} // namespace

void TestAgreement::initTestCase()
{
    skipWithoutShark();
}

void TestAgreement::sayTheSame_data()
{
    QTest::addColumn<quint64>("seed");
    QTest::addColumn<int>("format");
    const auto seed = static_cast<quint64>(qEnvironmentVariableIntValue("CNET_SEED"));
    for (int i = 0; i < 4; ++i) {
        QTest::newRow(qPrintable(QString::fromLatin1("capture %1").arg(i)))
            << seed + static_cast<quint64>(i) << i % 2;
    }
}

void TestAgreement::sayTheSame()
{
    QFETCH(quint64, seed);
    QFETCH(int, format);
    const QString file = m_directory.filePath(QLatin1String("chance.pcapng"));
    QVERIFY(writeCapture(file, format == 0 ? CaptureFormat::ExportedPdu : CaptureFormat::RtacSerial,
                         seed));
    Dissection dissection(file, fieldOptions(QLatin1String(kFields)));
    const PcapngFile capture = readPcapngFile(file);
    QCOMPARE(capture.error, QByteArray());
    QVERIFY(capture.packets.size() >= kFrames);
    QHash<QByteArray, FrameDecoder> decoders;
    QHash<QByteArray, int> verdicts;
    QList<QByteArray> expected;
    for (const PcapngPacket &packet : capture.packets) {
        const DecodedFrame frame =
            decoders[packet.interfaceName].next(packet.data.mid(kHeader[format]));
        expected.append(comparable(said(frame)).join('|'));
        ++verdicts[verdictText(frame.verdict).toLatin1()];
    }
    const QList<QByteArray> lines = dissection.lines();
    QVERIFY2(lines.size() == expected.size(), lines.first().constData());
    for (int i = 0; i < lines.size(); ++i) {
        const QByteArray found = comparable(dissected(lines.at(i))).join('|');
        QVERIFY2(found == expected.at(i),
                 QByteArray("packet " + QByteArray::number(i + 1) + ": " +
                            capture.packets.at(i).data.mid(kHeader[format]).toPercentEncoding() +
                            "\ndecode:    " + expected.at(i) + "\ndissector: " + found)
                     .constData());
    }
    // Each verdict counts.
    for (const char *verdict :
         {"good", "malformed", "cut", "wrong check", "mismatch", "no frame"}) {
        QVERIFY2(verdicts.value(verdict) > kFrames / 200, verdict);
    }
}

QTEST_GUILESS_MAIN(TestAgreement)
#include "test_agreement.moc"
