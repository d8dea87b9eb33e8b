#include "host/support/frames.h"
#include "support/rows.h"

#include "panel/replay/answer_comparison.h"

using namespace cnet;
using namespace cnet::panel;

class TestAnswerComparison : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatHasChanged_data();
    void tellsWhatHasChanged();
    void namesEachValue();
    void namesNoAddressThatIsNotKnown();
};

namespace {

const QByteArray kRequest = requestFrame("01rSB08%DW0010002");
const QByteArray kAnswer = answerFrame("01rSB01040001FFFF");
const QByteArray kOther = answerFrame("01rSB01040001FFFE");
const QByteArray kRefusal = refusalFrame("01rSB1132");
const QByteArray kOtherRefusal = refusalFrame("01rSB1232");
const QByteArray kWrong = kAnswer.left(18) + "00";
const QByteArray kCut = kAnswer.left(9);

struct Pair
{
    const char *what;
    QByteArray recorded, now;
    AnswerChange change;
    const char *text;
};

const Pair kPairs[] = {
    {"the same", kAnswer, kAnswer, AnswerChange::None, "same"},
    {"nothing both times", "", "", AnswerChange::None, "same"},
    {"unusable as before", kWrong, kWrong, AnswerChange::None, "same"},
    {"another value", kAnswer, kOther, AnswerChange::Values, "other values"},
    {"refused now", kAnswer, kRefusal, AnswerChange::Refused, "refused instead of answered"},
    {"refused then", kRefusal, kAnswer, AnswerChange::Accepted, "answered instead of refused"},
    {"refused otherwise", kRefusal, kOtherRefusal, AnswerChange::OtherError,
     "refused with another code"},
    {"nothing now", kAnswer, "", AnswerChange::Missing, "no answer"},
    {"nothing now, half of it then", kCut, "", AnswerChange::Missing, "no answer"},
    {"nothing then", "", kAnswer, AnswerChange::Unexpected, "answered where nothing had come"},
    {"wrong check now", kAnswer, kWrong, AnswerChange::Damaged, "unusable"},
    {"half of it now", kAnswer, kCut, AnswerChange::Damaged, "unusable"},
    {"fewer values now", kAnswer, answerFrame("01rSB01020001"), AnswerChange::Damaged, "unusable"},
    {"unusable in another way", kWrong, kCut, AnswerChange::Damaged, "unusable"},
    {"half of it then", kCut, kAnswer, AnswerChange::Mended, "usable instead of unusable"},
    {"half of it then, refused now", kCut, kRefusal, AnswerChange::Mended,
     "usable instead of unusable"},
};

} // namespace

void TestAnswerComparison::tellsWhatHasChanged_data()
{
    addRows(kPairs);
}

void TestAnswerComparison::tellsWhatHasChanged()
{
    const Pair &row = currentRow(kPairs);
    const AnswerComparison found = compareAnswers(kRequest, row.recorded, row.now);
    QCOMPARE(static_cast<int>(found.change), static_cast<int>(row.change));
    QCOMPARE(QByteArray(changeText(found.change)), QByteArray(row.text));
    QCOMPARE(found.recorded.bytes, row.recorded);
    QCOMPARE(found.now.bytes, row.now);
    QCOMPARE(found.request.bytes, kRequest);
    QCOMPARE(found.values.size(), row.change == AnswerChange::Values ? 1 : 0);
}

void TestAnswerComparison::namesEachValue()
{
    const AnswerComparison found =
        compareAnswers(requestFrame("02rSS0309%MX00031A06%TX00706%TX008"),
                       answerFrame("02rSS03010001010100"), answerFrame("02rSS03010101010101"));
    QCOMPARE(found.values.size(), 2);
    QCOMPARE(found.values.at(0).item.text(), QLatin1String("2/M_bit:31.10"));
    QVERIFY(found.values.at(0).isBit);
    QCOMPARE(found.values.at(1).item.text(), QLatin1String("2/TX:8"));
    QCOMPARE(found.values.at(1).recorded, quint16(0));
    QCOMPARE(found.values.at(1).now, quint16(1));
    QCOMPARE(compareAnswers(kRequest, kAnswer, kOther).values.constFirst().item.text(),
             QLatin1String("1/D_W:101"));
}

void TestAnswerComparison::namesNoAddressThatIsNotKnown()
{
    const AnswerComparison found = compareAnswers("zz", kAnswer, kOther);
    QCOMPARE(static_cast<int>(found.change), static_cast<int>(AnswerChange::Values));
    QVERIFY(found.values.isEmpty());
}

QTEST_APPLESS_MAIN(TestAnswerComparison)
#include "test_answer_comparison.moc"
