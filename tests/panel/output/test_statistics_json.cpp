#include "host/support/reports.h"

#include "panel/output/statistics_json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

/** The fields that doc/panel.md promises. */
class TestStatisticsJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hasTheFieldsOfTheSchema();
    void tellsTheLine();
    void tellsStations();
    void tellsBlocks();
    void hasNoTimesWhereNothingAnswered();
    void knowsNothingBeforeTheLineWasOpen();

private:
    QJsonObject json(qint64 nowMs = 3000) const;

    std::unique_ptr<Statistics> m_statistics;
};

namespace {

const LineSettings kLine{9600, 8, Parity::Even, 1};

QString keys(const QJsonObject &object)
{
    return object.keys().join(QLatin1Char(' '));
}

QJsonObject object(const QJsonObject &parent, const char *name)
{
    return parent.value(QLatin1String(name)).toObject();
}

QJsonArray array(const QJsonObject &parent, const char *name)
{
    return parent.value(QLatin1String(name)).toArray();
}

double number(const QJsonObject &parent, const char *name)
{
    return parent.value(QLatin1String(name)).toDouble(-1);
}

} // namespace

void TestStatisticsJson::init()
{
    m_statistics = std::make_unique<Statistics>(kLine);
    m_statistics->reset(1000);
    m_statistics->sent(400, 1500);
    m_statistics->received(560, 1600);
    for (const double ms : {10.0, 20.0, 30.5}) {
        m_statistics->note(reportOf(Outcome::Answered, ms));
    }
    m_statistics->note(reportOf(Outcome::Refused, 5));
    ExchangeReport bad = reportOf(Outcome::Bad);
    bad.final = false;
    m_statistics->note(bad);
    bad.reply.defect = Defect::BlockCheck;
    m_statistics->note(bad);
    ExchangeReport other = reportOf(Outcome::TimedOut);
    other.range.start = 7;
    m_statistics->note(other);
    m_statistics->stationBook().noteLate(2);
}

QJsonObject TestStatisticsJson::json(qint64 nowMs) const
{
    const QDateTime time(QDate(2024, 5, 6), QTime(7, 8, 9));
    return QJsonDocument::fromJson(
               statisticsJson(*m_statistics, {QLatin1String("tcp plc:8000"), nowMs, time}))
        .object();
}

void TestStatisticsJson::hasTheFieldsOfTheSchema()
{
    const QString counters =
        QLatin1String("answers%1 fences late other_bad received_bytes refusals refusals_by_code "
                      "%2repetitions requests response_ms sent_bytes%3 timeouts");
    const QJsonObject top = json();
    QCOMPARE(keys(top),
             QLatin1String("blocks format line link other_blocks stations time version"));
    QCOMPARE(top.value(QLatin1String("format")).toString(), QLatin1String("cnet-statistics"));
    QCOMPARE(top.value(QLatin1String("version")).toInt(), 1);
    QCOMPARE(top.value(QLatin1String("link")).toString(), QLatin1String("tcp plc:8000"));
    QVERIFY(top.value(QLatin1String("time"))
                .toString()
                .startsWith(QLatin1String("2024-05-06T07:08:09.000")));
    const QString traffic = QLatin1String("bytes_per_second load_percent received_bytes "
                                          "%1seconds sent_bytes%2");
    QCOMPARE(keys(object(top, "line")),
             traffic.arg(QLatin1String("recent "), QLatin1String(" settings")));
    QCOMPARE(keys(object(object(top, "line"), "recent")), traffic.arg(QString(), QString()));
    QCOMPARE(
        keys(array(top, "stations").first().toObject()),
        counters.arg(QLatin1String(" bad_checks"), QString(), QLatin1String(" state station")));
    QCOMPARE(keys(array(top, "blocks").first().toObject()),
             counters.arg(QLatin1String(" bad_checks count"), QLatin1String("register "),
                          QLatin1String(" start station")));
    QCOMPARE(keys(object(top, "other_blocks")),
             counters.arg(QLatin1String(" bad_checks"), QString(), QString()));
    const QJsonObject times = object(array(top, "stations").first().toObject(), "response_ms");
    QCOMPARE(keys(times), QLatin1String("count histogram max mean min p50 p95 p99"));
    QCOMPARE(keys(array(times, "histogram").first().toObject()), QLatin1String("count from to"));
}

// 960 bytes with eleven bits each in two seconds, at 9600 baud.
void TestStatisticsJson::tellsTheLine()
{
    const QJsonObject line = object(json(), "line");
    QCOMPARE(number(line, "seconds"), 2.0);
    QCOMPARE(number(line, "sent_bytes"), 400.0);
    QCOMPARE(number(line, "received_bytes"), 560.0);
    QCOMPARE(number(line, "bytes_per_second"), 480.0);
    QCOMPARE(number(line, "load_percent"), 55.0);
    QCOMPARE(line.value(QLatin1String("settings")).toString(), QLatin1String("9600,8,EVEN,1"));
    QCOMPARE(number(object(json(31000), "line"), "load_percent"), 3.667);
    QCOMPARE(number(object(object(json(31000), "line"), "recent"), "load_percent"), 0.0);
}

void TestStatisticsJson::tellsStations()
{
    QCOMPARE(array(json(), "stations").size(), 1);
    const QJsonObject station = array(json(), "stations").first().toObject();
    QCOMPARE(number(station, "station"), 2.0);
    QCOMPARE(station.value(QLatin1String("state")).toString(), QLatin1String("refuses"));
    QCOMPARE(number(station, "requests"), 7.0);
    QCOMPARE(number(station, "answers"), 3.0);
    QCOMPARE(number(station, "refusals"), 1.0);
    QCOMPARE(object(station, "refusals_by_code").value(QLatin1String("1132")).toInt(), 1);
    QCOMPARE(number(station, "bad_checks"), 1.0);
    QCOMPARE(number(station, "other_bad"), 1.0);
    QCOMPARE(number(station, "timeouts"), 1.0);
    QCOMPARE(number(station, "repetitions"), 2.0);
    QCOMPARE(number(station, "late"), 1.0);
    const QJsonObject times = object(station, "response_ms");
    QCOMPARE(number(times, "count"), 4.0);
    QCOMPARE(number(times, "min"), 5.0);
    QCOMPARE(number(times, "mean"), 16.375);
    QCOMPARE(number(times, "max"), 30.5);
    QVERIFY(qAbs(number(times, "p50") - 10) <= 10.0 / 32);
    QVERIFY(qAbs(number(times, "p99") - 30.5) <= 30.5 / 32);
    QCOMPARE(array(times, "histogram").size(), 4);
}

void TestStatisticsJson::tellsBlocks()
{
    const QJsonArray blocks = array(json(), "blocks");
    QCOMPARE(blocks.size(), 2);
    const QJsonObject first = blocks.first().toObject();
    QCOMPARE(number(first, "start"), 7.0);
    QCOMPARE(number(first, "timeouts"), 1.0);
    const QJsonObject second = blocks.last().toObject();
    QCOMPARE(number(second, "station"), 2.0);
    QCOMPARE(second.value(QLatin1String("register")).toString(), QLatin1String("D_W"));
    QCOMPARE(number(second, "start"), 100.0);
    QCOMPARE(number(second, "count"), 3.0);
    QCOMPARE(number(second, "answers"), 3.0);
    QCOMPARE(number(object(json(), "other_blocks"), "requests"), 0.0);
}

// 0 ms would be a time.
void TestStatisticsJson::hasNoTimesWhereNothingAnswered()
{
    const QJsonObject times = object(array(json(), "blocks").first().toObject(), "response_ms");
    QCOMPARE(number(times, "count"), 0.0);
    for (const char *name : {"min", "mean", "p50", "p95", "p99", "max"}) {
        QVERIFY(times.value(QLatin1String(name)).isNull());
    }
}

void TestStatisticsJson::knowsNothingBeforeTheLineWasOpen()
{
    m_statistics = std::make_unique<Statistics>(std::nullopt);
    const QJsonObject line = object(json(), "line");
    QCOMPARE(number(line, "seconds"), 0.0);
    QCOMPARE(number(line, "bytes_per_second"), 0.0);
    QVERIFY(line.value(QLatin1String("load_percent")).isNull());
    QVERIFY(line.value(QLatin1String("settings")).isNull());
}

QTEST_APPLESS_MAIN(TestStatisticsJson)
#include "test_statistics_json.moc"
