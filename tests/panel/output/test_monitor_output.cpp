#include "host/support/test_types.h"
#include "panel/watched_items.h"

#include "panel/output/monitor_output.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestMonitorOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void stationLines_data();
    void stationLines();
    void text();
    void textOfARefusal();
    void csv();
    void jsonChanges();
    void jsonQuality();
    void jsonLink();
    void jsonEnd();
    void goodIsWhatWasReadInTime_data();
    void goodIsWhatWasReadInTime();
    void saysTheZone();
    void typedText();
    void typedCsv();
    void names_data();
    void names();
    void typedJson();

private:
    QVector<Tag> watchTyped();
    QList<QJsonObject> objects() const;
    void show(MonitorOutput &output) const;
    static MonitorStatus lost();

    QBuffer m_device;
    std::unique_ptr<Monitor> m_monitor;
    QVector<ValueChange> m_changes;
    QDateTime m_time;
};

// Two words, one never read; and a bit that is on and then was not answered.
void TestMonitorOutput::init()
{
    qputenv("TZ", "UTC-1");
    tzset();
    m_device.close();
    m_device.setData(QByteArray());
    QVERIFY(m_device.open(QIODevice::WriteOnly));
    m_changes.clear();
    m_monitor = std::make_unique<Monitor>(1);
    connect(m_monitor.get(), &Monitor::valuesChanged, this,
            [this](const QVector<ValueChange> &changes) { m_changes += changes; });
    m_monitor->setItems({testItem("D_W", 100, 2), testItem("M_bit", 53, 1)});
    m_time = wallTime(momentAt(1000).wallMs);
    m_monitor->blockRead(0, 0, {0x1234}, momentAt(1000));
    m_monitor->blockRead(1, 0, {1}, momentAt(1000));
    m_monitor->blockRead(1, 0, {1}, momentAt(2000));
    m_monitor->blockFailed(1, 0, noAnswer(), momentAt(3000));
    m_monitor->tell();
}

void TestMonitorOutput::stationLines_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("begin");
    const auto row = [](StationState state, const char *begin) {
        QTest::newRow(begin) << static_cast<int>(state) << QString::fromLatin1(begin);
    };
    row(StationState::Unknown, "station 4: waiting, 10 frames, ");
    row(StationState::Answers, "station 4: answers, 10 frames, ");
    row(StationState::Refuses, "station 4: refuses (1132, none), 10 frames, ");
    row(StationState::Disturbed, "station 4: disturbed, 10 frames, ");
    row(StationState::Away, "station 4: silent, 10 frames, ");
}

void TestMonitorOutput::stationLines()
{
    QFETCH(int, state);
    QFETCH(QString, begin);
    StationCounters counters;
    counters.frames = 10;
    counters.answers = 5;
    counters.retries = 4;
    counters.bad = 3;
    counters.timeouts = 2;
    counters.refusals = 1;
    counters.late = 6;
    counters.times.note(1);
    counters.times.note(9);
    counters.state = static_cast<StationState>(state);
    counters.lastRefusal = QLatin1String("1132, none");
    QCOMPARE(stationLine(4, counters),
             begin + QLatin1String("5 answers, 4 retries, 3 bad answers, 2 time-outs, 1 refusals, "
                                   "6 late, mean 5.0 ms, worst 9.0 ms"));
}

MonitorStatus TestMonitorOutput::lost()
{
    MonitorStatus status;
    status.link = QLatin1String("tcp plc:8000");
    status.linkLost = QLatin1String("pulled out");
    status.time = wallTime(momentAt(4000).wallMs);
    return status;
}

// The changes, the second item's quality, and the link that goes and comes.
void TestMonitorOutput::show(MonitorOutput &output) const
{
    output.showChanges(*m_monitor, m_changes);
    output.showQuality(*m_monitor, 1, wallTime(momentAt(3000).wallMs));
    MonitorStatus status = lost();
    output.showLink(status);
    status.linkLost.clear();
    output.showLink(status);
}

void TestMonitorOutput::text()
{
    show(*makeTextOutput(m_device));
    QCOMPARE(m_device.data(),
             QByteArray("2024-05-06T07:08:09.010+01:00  1/D_W:100  4660 0x1234\n"
                        "2024-05-06T07:08:09.010+01:00  1/M_bit:3.5  1\n"
                        "2024-05-06T07:08:11.010+01:00  1/M_bit:3.5  quality no answer\n"
                        "2024-05-06T07:08:12.010+01:00  tcp plc:8000  lost: pulled out\n"
                        "2024-05-06T07:08:12.010+01:00  tcp plc:8000  open\n"));
}

void TestMonitorOutput::textOfARefusal()
{
    m_monitor->markRefused(0, 1, 0x1132, momentAt(3000));
    makeTextOutput(m_device)->showQuality(*m_monitor, 0, m_time);
    QVERIFY2(m_device.data().endsWith("  1/D_W:100*2  quality refused: 1132, no such "
                                      "device, or address outside the device\n"),
             m_device.data().constData());
}

void TestMonitorOutput::csv()
{
    show(*makeCsvOutput(m_device));
    QCOMPARE(m_device.data(),
             QByteArray("time,station,register,address,count,value,quality\n"
                        "2024-05-06T07:08:09.010+01:00,1,D_W,100,1,4660,never read\n"
                        "2024-05-06T07:08:09.010+01:00,1,M_bit,3.5,1,1,no answer\n"
                        "2024-05-06T07:08:11.010+01:00,1,M_bit,3.5,1,,no answer\n"
                        "2024-05-06T07:08:12.010+01:00,,,,,,line down\n"
                        "2024-05-06T07:08:12.010+01:00,,,,,,line open\n"));
}

QList<QJsonObject> TestMonitorOutput::objects() const
{
    QList<QJsonObject> objects;
    for (const QByteArray &line : m_device.data().split('\n')) {
        if (!line.isEmpty()) {
            objects.append(QJsonDocument::fromJson(line).object());
        }
    }
    return objects;
}

void TestMonitorOutput::jsonChanges()
{
    makeJsonOutput(m_device)->showChanges(*m_monitor, m_changes);
    const QList<QJsonObject> lines = objects();
    QCOMPARE(lines.size(), 2);
    const QJsonObject &word = lines.first();
    QCOMPARE(word.value(QLatin1String("event")).toString(), QLatin1String("change"));
    QCOMPARE(word.value(QLatin1String("item")).toString(), QLatin1String("1/D_W:100*2"));
    QCOMPARE(word.value(QLatin1String("station")).toInt(), 1);
    QCOMPARE(word.value(QLatin1String("register")).toString(), QLatin1String("D_W"));
    QCOMPARE(word.value(QLatin1String("address")).toString(), QLatin1String("100"));
    QCOMPARE(word.value(QLatin1String("value")).toInt(), 0x1234);
    const QString time = word.value(QLatin1String("time")).toString();
    QCOMPARE(QDateTime::fromString(time, Qt::ISODateWithMs), m_time);
    QCOMPARE(lines.last().value(QLatin1String("address")).toString(), QLatin1String("3.5"));
}

void TestMonitorOutput::jsonQuality()
{
    makeJsonOutput(m_device)->showQuality(*m_monitor, 1, m_time);
    QCOMPARE(m_device.data(),
             QByteArray("{\"address\":\"3.5\",\"count\":1,\"event\":\"quality\",\"good\":false,"
                        "\"item\":\"1/M_bit:3.5\",\"quality\":\"no answer\","
                        "\"reason\":\"no answer\",\"register\":\"M_bit\",\"station\":1,"
                        "\"time\":\"2024-05-06T07:08:09.010+01:00\"}\n"));
}

void TestMonitorOutput::jsonLink()
{
    const auto output = makeJsonOutput(m_device);
    MonitorStatus status = lost();
    output->showLink(status);
    status.linkLost.clear();
    output->showLink(status);
    QCOMPARE(m_device.data(),
             QByteArray("{\"event\":\"link\",\"link\":\"tcp plc:8000\",\"open\":false,"
                        "\"reason\":\"pulled out\",\"time\":\"2024-05-06T07:08:12.010+01:00\"}\n"
                        "{\"event\":\"link\",\"link\":\"tcp plc:8000\",\"open\":true,"
                        "\"time\":\"2024-05-06T07:08:12.010+01:00\"}\n"));
}

void TestMonitorOutput::jsonEnd()
{
    MonitorStatus status;
    status.nowMs = 5000;
    status.stations[1].frames = 3;
    status.stations[1].late = 2;
    status.stations[1].times.note(1.26);
    makeJsonOutput(m_device)->end(*m_monitor, status);
    const QList<QJsonObject> lines = objects();
    QCOMPARE(lines.size(), 3);

    const QJsonObject &words = lines.at(0);
    QCOMPARE(words.value(QLatin1String("event")).toString(), QLatin1String("value"));
    QCOMPARE(words.value(QLatin1String("count")).toInt(), 2);
    const QJsonArray values = words.value(QLatin1String("values")).toArray();
    QCOMPARE(values.size(), 2);
    QCOMPARE(values.at(0).toInt(), 0x1234);
    QVERIFY(values.at(1).isNull());
    QVERIFY(words.value(QLatin1String("age_ms")).isNull());
    QCOMPARE(words.value(QLatin1String("quality")).toString(), QLatin1String("never read"));

    const QJsonObject &bit = lines.at(1);
    QCOMPARE(bit.value(QLatin1String("values")).toArray().at(0).toInt(), 1);
    QCOMPARE(bit.value(QLatin1String("age_ms")).toInt(), 3000);
    QCOMPARE(bit.value(QLatin1String("changed")).toString(),
             QLatin1String("2024-05-06T07:08:09.010+01:00"));

    const QJsonObject &station = lines.at(2);
    QCOMPARE(station.value(QLatin1String("event")).toString(), QLatin1String("station"));
    QCOMPARE(station.value(QLatin1String("state")).toString(), QLatin1String("waiting"));
    QCOMPARE(station.value(QLatin1String("frames")).toInt(), 3);
    QCOMPARE(station.value(QLatin1String("late")).toInt(), 2);
    QCOMPARE(station.value(QLatin1String("mean_ms")).toDouble(), 1.3);
}

void TestMonitorOutput::goodIsWhatWasReadInTime_data()
{
    QTest::addColumn<qint64>("atMs"); // the bit was read at 2000, and is due every 2000
    QTest::addColumn<bool>("answered");
    QTest::addColumn<bool>("lineOpen");
    QTest::addColumn<QString>("quality");
    QTest::newRow("in time") << Q_INT64_C(4000) << true << true << "good";
    QTest::newRow("too old") << Q_INT64_C(4001) << true << true << "stale";
    QTest::newRow("no answer") << Q_INT64_C(3500) << false << true << "no answer";
    QTest::newRow("no line") << Q_INT64_C(3500) << true << false << "line down";
}

void TestMonitorOutput::goodIsWhatWasReadInTime()
{
    QFETCH(qint64, atMs);
    QFETCH(bool, answered);
    QFETCH(bool, lineOpen);
    if (answered) {
        m_monitor->blockRead(1, 0, {1}, momentAt(2000));
    }
    m_monitor->look(momentAt(atMs, lineOpen));
    makeJsonOutput(m_device)->end(*m_monitor, {});
    const QJsonObject bit = objects().at(1);
    QTEST(bit.value(QLatin1String("quality")).toString(), "quality");
    QCOMPARE(bit.value(QLatin1String("good")).toBool(),
             QString::fromLatin1(QTest::currentDataTag()) == QLatin1String("in time"));
}

// The file may be read in another place, or in winter.
void TestMonitorOutput::saysTheZone()
{
    const qint64 sinceEpochMs = m_time.toMSecsSinceEpoch();
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(sinceEpochMs);
    QCOMPARE(zonedTime(local), QLatin1String("2024-05-06T07:08:09.010+01:00"));
    QCOMPARE(zonedTime(local.toUTC()), QLatin1String("2024-05-06T06:08:09.010Z"));
}

// A float that changes in one of its words, and a BCD number that is none.
QVector<Tag> TestMonitorOutput::watchTyped()
{
    const QVector<Tag> tags{testTag("D_W:100*2@f32"), testTag("D_W:110@bcd4")};
    m_monitor = std::make_unique<Monitor>(60);
    connect(m_monitor.get(), &Monitor::valuesChanged, this,
            [this](const QVector<ValueChange> &changes) { m_changes = changes; });
    m_monitor->setItems({tags.at(0).item, tags.at(1).item});
    m_monitor->blockRead(0, 0, {0, 0x4148, 0, 0}, momentAt(1000));
    m_monitor->tell();
    m_monitor->blockRead(0, 0, {0, 0x4148, 0, 0x3F80}, momentAt(1000));
    m_monitor->blockRead(1, 0, {0x12A4}, momentAt(1000));
    m_monitor->tell();
    return tags;
}

void TestMonitorOutput::typedText()
{
    const auto output = makeTextOutput(m_device, watchTyped());
    output->showChanges(*m_monitor, m_changes);
    output->showQuality(*m_monitor, 1, m_time);
    QCOMPARE(m_device.data(),
             QByteArray("2024-05-06T07:08:09.010+01:00  1/D_W:102@f32  1\n"
                        "2024-05-06T07:08:09.010+01:00  1/D_W:110@bcd4  - (wrong BCD digit)\n"
                        "2024-05-06T07:08:09.010+01:00  1/D_W:110@bcd4  quality implausible\n"));
}

void TestMonitorOutput::typedCsv()
{
    const auto output = makeCsvOutput(m_device, watchTyped());
    output->showChanges(*m_monitor, m_changes);
    output->showQuality(*m_monitor, 0, m_time);
    QCOMPARE(m_device.data(), QByteArray("time,station,register,address,count,value,quality\n"
                                         "2024-05-06T07:08:09.010+01:00,1,D_W,102,2,1,good\n"
                                         "2024-05-06T07:08:09.010+01:00,1,D_W,110,1,,implausible\n"
                                         "2024-05-06T07:08:09.010+01:00,1,D_W,100,4,,good\n"));
}

// The second change is within the deadband.
void TestMonitorOutput::names_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("text") << static_cast<int>(OutputFormat::Text)
                          << QByteArray("2024-05-06T07:08:09.010+01:00  speed[1]  1 mm/s\n"
                                        "2024-05-06T07:08:09.010+01:00  speed  quality good\n"
                                        "2024-05-06T07:08:12.010+01:00  tcp plc:8000  lost: "
                                        "pulled out\n");
    QTest::newRow("csv") << static_cast<int>(OutputFormat::Csv)
                         << QByteArray(
                                "time,station,register,address,count,value,quality,name,unit\n"
                                "2024-05-06T07:08:09.010+01:00,1,D_W,102,2,1,good,speed,mm/s\n"
                                "2024-05-06T07:08:09.010+01:00,1,D_W,100,4,,good,speed,mm/s\n"
                                "2024-05-06T07:08:12.010+01:00,,,,,,line down,,\n");
    QTest::newRow("json")
        << static_cast<int>(OutputFormat::Json)
        << QByteArray(
               "{\"address\":\"102\",\"event\":\"change\",\"item\":\"1/D_W:100*2@f32\",\"name\":"
               "\"speed\",\"register\":\"D_W\",\"station\":1,\"time\":\"2024-05-06T07:08:09.010+01:"
               "00\",\"unit\":\"mm/s\",\"value\":1}\n"
               "{\"address\":\"100\",\"count\":2,\"event\":\"quality\",\"good\":true,\"item\":\"1/"
               "D_W:100*2@f32\",\"name\":\"speed\",\"quality\":\"good\",\"register\":\"D_W\","
               "\"station\":1,\"time\":\"2024-05-06T07:08:09.010+01:00\",\"unit\":\"mm/s\"}\n"
               "{\"event\":\"link\",\"link\":\"tcp plc:8000\",\"open\":false,\"reason\":\"pulled "
               "out\",\"time\":\"2024-05-06T07:08:12.010+01:00\"}\n");
}

void TestMonitorOutput::names()
{
    QFETCH(int, format);
    Tag tag = watchTyped().first();
    tag.name = QLatin1String("speed");
    tag.unit = QLatin1String("mm/s");
    tag.deadband = 0.5;
    const auto make = format == static_cast<int>(OutputFormat::Csv)    ? makeCsvOutput
                      : format == static_cast<int>(OutputFormat::Json) ? makeJsonOutput
                                                                       : makeTextOutput;
    const auto output = make(m_device, {tag});
    QVector<ValueChange> changes;
    for (const ValueChange &change : m_changes) {
        if (change.item == 0) {
            changes.append(change);
        }
    }
    output->showChanges(*m_monitor, changes);
    output->showChanges(*m_monitor, changes);
    output->showQuality(*m_monitor, 0, m_time);
    output->showLink(lost());
    QTEST(m_device.data(), "text");
}

void TestMonitorOutput::typedJson()
{
    const auto output = makeJsonOutput(m_device, watchTyped());
    output->showChanges(*m_monitor, m_changes);
    output->end(*m_monitor, lost());
    const QList<QJsonObject> all = objects();
    QCOMPARE(static_cast<int>(all.size()), 4);
    QCOMPARE(all.at(0).value(QLatin1String("item")).toString(), QStringLiteral("1/D_W:100*2@f32"));
    QCOMPARE(all.at(0).value(QLatin1String("address")).toString(), QStringLiteral("102"));
    QCOMPARE(all.at(0).value(QLatin1String("value")), QJsonValue(1.0));
    QCOMPARE(all.at(1).value(QLatin1String("fault")).toString(), QStringLiteral("wrong BCD digit"));
    QVERIFY(all.at(1).value(QLatin1String("value")).isNull());
    QCOMPARE(all.at(2).value(QLatin1String("values")).toArray(), (QJsonArray{12.5, 1.0}));
    QCOMPARE(all.at(2).value(QLatin1String("count")).toInt(), 2);
    QCOMPARE(all.at(3).value(QLatin1String("quality")).toString(), QStringLiteral("implausible"));
    QCOMPARE(all.at(3).value(QLatin1String("reason")).toString(),
             QStringLiteral("wrong BCD digit"));
    QCOMPARE(all.at(3).value(QLatin1String("good")), QJsonValue(false));
}

QTEST_APPLESS_MAIN(TestMonitorOutput)
#include "test_monitor_output.moc"
