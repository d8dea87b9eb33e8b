#include "plc/replay/recorded_values.h"

#include "plc/support/wire_text.h"
#include "support/rows.h"

using namespace plc;

namespace {

struct Told
{
    const char *what;
    QByteArray request;
    QByteArray answer;
    const char *values; ///< "1/D100=4660": station, device and kind, address
};

const char kRead[] = "[ENQ]01RSS0107%DW0100[EOT]";
const char kBlock[] = "[ENQ]1FRSB07%DW010002[EOT]";

} // namespace

static const Told kTold[] = {
    {"a word", kRead, "[ACK]01RSS01021234[ETX]", "1/D100=4660"},
    {"a block", kBlock, "[ACK]1FRSB0104123400FF[ETX]", "31/D100=4660 31/D101=255"},
    {"with a block check", "[ENQ]01rSS0107%DW0100[EOT]CB", "[ACK]01rSS01021234[ETX]0F",
     "1/D100=4660"},
    {"a wrong block check", "[ENQ]01rSS0107%DW0100[EOT]CB", "[ACK]01rSS01021234[ETX]0E", ""},
    {"half a block check", "[ENQ]01rSS0107%DW0100[EOT]CB", "[ACK]01rSS01021234[ETX]0", ""},
    {"bits and contacts", "[ENQ]01RSS0209%MX00031A06%TX007[EOT]", "[ACK]01RSS0201010100[ETX]",
     "1/m506=1 1/t7=0"},
    {"a write", "[ENQ]01WSB07%DW01000200010002[EOT]", "[ACK]01WSB[ETX]", "1/D100=1 1/D101=2"},
    {"a write of bits", "[ENQ]01WSS0109%MX00031A01[EOT]", "[ACK]01WSS[ETX]", "1/m506=1"},
    {"a refused read", kRead, "[NAK]01RSS1132[ETX]", ""},
    {"a refused write", "[ENQ]01WSB07%DW0100010001[EOT]", "[NAK]01WSB1132[ETX]", ""},
    {"another station", kRead, "[ACK]02RSS01021234[ETX]", ""},
    {"another command", kRead, "[ACK]01RSB01021234[ETX]", ""},
    {"too few values", kBlock, "[ACK]1FRSB01021234[ETX]", ""},
    {"fewer than said", kBlock, "[ACK]1FRSB01041234[ETX]", ""},
    {"more than said", kRead, "[ACK]01RSS010212345678[ETX]", ""},
    {"more blocks", kRead, "[ACK]01RSS020212340212345678[ETX]", ""},
    {"no digits", kRead, "[ACK]01RSS0102zz34[ETX]", ""},
    {"no end", kRead, "[ACK]01RSS01021234", ""},
    {"noise", kRead, "zzzzzzz", ""},
    {"nothing", kRead, "", ""},
    {"the echo", kRead, kRead, ""},
    {"a request that is none", "[ENQ]01RSS0107%D", "[ACK]01RSS01021234[ETX]", ""},
    {"a request for nothing", "[ENQ]01RSS0107%QW0100[EOT]", "[ACK]01RSS01021234[ETX]", ""},
    {"an empty request", "", "[ACK]01RSS01021234[ETX]", ""},
};

class TestRecordedValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsValues_data() { addRows(kTold); }
    void tellsValues()
    {
        const Told &row = currentRow(kTold);
        QByteArray all;
        for (const RecordedValue &one : recordedValues(wire(row.request), wire(row.answer))) {
            const bool word = one.point.kind == PointKind::Word;
            const QByteArray device(1, one.point.device);
            all += (all.isEmpty() ? "" : " ") + QByteArray::number(one.station) + '/' +
                   (word ? device : device.toLower()) + QByteArray::number(one.point.address) +
                   '=' + QByteArray::number(one.value);
        }
        QCOMPARE(all, QByteArray(row.values));
    }

    void knowsAnswers()
    {
        QVERIFY(isAnswerTo(wire(kRead), wire("[ACK]01RSS01021234[ETX]")));
        QVERIFY(isAnswerTo(wire(kRead), wire("[NAK]01RSS1132[ETX]")));
        QVERIFY(!isAnswerTo(wire(kRead), wire("[NAK]02RSS1132[ETX]")));
    }
};

QTEST_APPLESS_MAIN(TestRecordedValues)
#include "test_recorded_values.moc"
