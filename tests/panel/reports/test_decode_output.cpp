#include "panel/reports/decode_output.h"

#include "host/decode/frame_decoder.h"

#include <QJsonArray>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestDecodeOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsAFieldOnALine();
    void putsACaretBelowTheFault();
    void hasAllInJson();
};

namespace {

const QByteArray kRead = "\x05"
                         "01rSB08%DW0010002\x04"
                         "EC";
const QByteArray kAnswer = "\x06"
                           "01rSB0104000100FF\x03"
                           "E3";

} // namespace

void TestDecodeOutput::printsAFieldOnALine()
{
    const QList<QByteArray> lines = decodedText(decodeFrame(kRead)).split('\n');
    QCOMPARE(lines.size(), 12);
    QCOMPARE(lines.at(0), QByteArray("request: station 1, read 1/D_W:100*2"));
    QCOMPARE(lines.at(1), QByteArray("  <ENQ>01rSB08%DW0010002<EOT>EC"));
    QCOMPARE(lines.at(8).simplified(), QByteArray("16 30 32 02 words 2"));
}

void TestDecodeOutput::putsACaretBelowTheFault()
{
    QByteArray wrong = kRead;
    wrong[13] = 'x';
    const QList<QByteArray> lines = decodedText(decodeFrame(wrong)).split('\n');
    QCOMPARE(lines.at(1).at(lines.at(2).indexOf('^')), 'x');
    QVERIFY(lines.at(2).endsWith("^ expected a decimal digit of the address"));
    QVERIFY(decodedText(decodeFrame("x")).startsWith("no frame: "));
}

void TestDecodeOutput::hasAllInJson()
{
    const DecodedFrame request = decodeFrame(kRead);
    QByteArray wrong = kAnswer;
    wrong[20] = '4';
    const QJsonObject json = decodedJson(decodeFrame(wrong, &request));
    QCOMPARE(json.value(QLatin1String("direction")).toString(), QLatin1String("answer"));
    QCOMPARE(json.value(QLatin1String("verdict")).toString(), QLatin1String("wrong check"));
    QCOMPARE(json.value(QLatin1String("check")).toString(), QLatin1String("E4"));
    QCOMPARE(json.value(QLatin1String("check_expected")).toString(), QLatin1String("E3"));
    QCOMPARE(json.value(QLatin1String("fault_at")).toInt(), 20);
    const QJsonObject range = json.value(QLatin1String("ranges")).toArray().at(0).toObject();
    QCOMPARE(range.value(QLatin1String("item")).toString(), QLatin1String("1/D_W:100*2"));
    QCOMPARE(range.value(QLatin1String("values")).toArray(), (QJsonArray{1, 255}));
    QCOMPARE(json.value(QLatin1String("fields")).toArray().size(), 10);
}

QTEST_APPLESS_MAIN(TestDecodeOutput)
#include "test_decode_output.moc"
