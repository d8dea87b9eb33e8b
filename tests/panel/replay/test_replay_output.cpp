#include "host/support/frames.h"

#include "panel/replay/replay_output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestReplayOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsADifference();
    void tellsThatNothingCame();
    void sumsUp();
};

namespace {

const qint64 kSinceStartNs = 1234567890;
const RecordedFrame kRequest{12, 1763781000123000000, requestFrame("01rSB08%DW0010002"), {}};
const QByteArray kAnswer = answerFrame("01rSB010400010002");

QJsonObject object(const QByteArray &line)
{
    return QJsonDocument::fromJson(line).object();
}

} // namespace

void TestReplayOutput::tellsADifference()
{
    const AnswerComparison comparison =
        compareAnswers(kRequest.bytes, kAnswer, answerFrame("01rSB010400010003"));
    QCOMPARE(differenceText(kRequest, kSinceStartNs, comparison),
             QByteArray("packet 12, +1.235 s: other values\n"
                        "  request   station 1, read 1/D_W:100*2\n"
                        "  recorded  station 1, rSB answered: 1/D_W:100*2 = 1 0x0001, 2 0x0002\n"
                        "  now       station 1, rSB answered: 1/D_W:100*2 = 1 0x0001, 3 0x0003\n"
                        "  1/D_W:101: 2 0x0002 -> 3 0x0003\n"));
    const QJsonObject json = object(differenceJson(kRequest, kSinceStartNs, comparison));
    QCOMPARE(json.value(QLatin1String("event")).toString(), QLatin1String("difference"));
    QCOMPARE(json.value(QLatin1String("packet")).toInt(), 12);
    QCOMPARE(json.value(QLatin1String("time")).toString(),
             QLatin1String("2025-11-22T03:10:00.123Z"));
    QCOMPARE(json.value(QLatin1String("seconds")).toDouble(), 1.23456789);
    QCOMPARE(json.value(QLatin1String("kind")).toString(), QLatin1String("other values"));
    for (const char *frame : {"request", "recorded", "now"}) {
        QCOMPARE(json.value(QLatin1String(frame)).toObject().value(QLatin1String("verdict")),
                 QJsonValue(QLatin1String("good")));
    }
    const QJsonObject expected{{QLatin1String("item"), QLatin1String("1/D_W:101")},
                               {QLatin1String("register"), QLatin1String("D_W")},
                               {QLatin1String("address"), QLatin1String("101")},
                               {QLatin1String("recorded"), 2},
                               {QLatin1String("now"), 3}};
    QCOMPARE(json.value(QLatin1String("values")).toArray(), QJsonArray{expected});
}

void TestReplayOutput::tellsThatNothingCame()
{
    const AnswerComparison comparison = compareAnswers(kRequest.bytes, kAnswer, QByteArray());
    QVERIFY(differenceText(kRequest, 0, comparison).endsWith("\n  now       no answer\n"));
    const QJsonObject json = object(differenceJson(kRequest, 0, comparison));
    QVERIFY(json.value(QLatin1String("now")).isNull());
    QVERIFY(json.value(QLatin1String("recorded")).isObject());
}

void TestReplayOutput::sumsUp()
{
    ReplaySummary summary;
    summary.requests = 4;
    summary.sent = 3;
    summary.changes = {{AnswerChange::None, 3}};
    QVERIFY(!summary.isSame()); // not all of it
    summary.sent = 4;
    QVERIFY(!summary.isSame());
    summary.notCompared = 1;
    QVERIFY(summary.isSame());
    QCOMPARE(summaryText(summary),
             QByteArray("4 of 4 requests: 3 same, 1 whose answer was not recorded\n"));
    summary.changes = {{AnswerChange::Values, 2}, {AnswerChange::Missing, 1}};
    QVERIFY(!summary.isSame());
    QCOMPARE(summaryText(summary), QByteArray("4 of 4 requests: 0 same, 2 other values, 1 no "
                                              "answer, 1 whose answer was not recorded\n"));
    QCOMPARE(summaryJson(summary),
             QByteArray("{\"differences\":{\"no answer\":1,\"other values\":2},\"event\":\"end\","
                        "\"not_compared\":1,\"requests\":4,\"same\":0,\"sent\":4}\n"));
}

QTEST_APPLESS_MAIN(TestReplayOutput)
#include "test_replay_output.moc"
