#include "host/support/test_registers.h"

#include "panel/output/monitor_output.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

namespace {

RequestRange block(const char *name, int start, int count)
{
    RequestRange block{};
    block.stationNo = 1;
    block.regName = QLatin1String(name);
    block.startAddr = start;
    block.count = count;
    return block;
}

} // namespace

class TestMonitorOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void valueTexts_data();
    void valueTexts();
    void stationLines_data();
    void stationLines();
    void text();
    void csv();
    void jsonChanges();
    void jsonEnd();

private:
    QList<QJsonObject> objects() const;

    QBuffer m_device;
    std::unique_ptr<Monitor> m_monitor;
    QDateTime m_time;
};

// Two words, one never read; and a bit that is on.
void TestMonitorOutput::init()
{
    m_device.close();
    m_device.setData(QByteArray());
    QVERIFY(m_device.open(QIODevice::WriteOnly));
    m_time = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9, 10));
    m_monitor =
        std::make_unique<Monitor>(QVector<Item>{testItem("D_W", 100, 2), testItem("M_bit", 53, 1)},
                                  1, [](int, const RegisterInfo &reg, int, int count) {
                                      return QVector<quint16>(count, reg.isBit() ? 1 : 0x1234);
                                  });
    m_monitor->readEnded(block("D_W", 100, 1), true, 1000, m_time);
    m_monitor->readEnded(block("M_W", 3, 1), true, 2000, m_time);
    m_monitor->readEnded(block("M_W", 3, 1), false, 3000, m_time);
}

void TestMonitorOutput::valueTexts_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("word") << "D_W" << 0x1234 << "4660 0x1234";
    QTest::newRow("word 0") << "D_W" << 0 << "0 0x0000";
    QTest::newRow("unsigned") << "D_W" << 65535 << "65535 0xFFFF";
    QTest::newRow("bit") << "M_bit" << 1 << "1";
    QTest::newRow("contact") << "TX" << 0 << "0";
}

void TestMonitorOutput::valueTexts()
{
    QFETCH(QString, reg);
    QFETCH(int, value);
    const RegisterInfo info = testRegister(reg.toLatin1().constData());
    QTEST(valueText(info, static_cast<quint16>(value)), "text");
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
    counters.meanMs = 1.25;
    counters.worstMs = 9;
    counters.state = static_cast<StationState>(state);
    counters.lastRefusal = QLatin1String("1132, none");
    QCOMPARE(stationLine(4, counters),
             begin + QLatin1String("5 answers, 4 retries, 3 bad answers, 2 time-outs, 1 refusals, "
                                   "mean 1.3 ms, worst 9.0 ms"));
}

void TestMonitorOutput::text()
{
    makeTextOutput(m_device)->showChanges(*m_monitor, m_monitor->takeChanges());
    QCOMPARE(m_device.data(), QByteArray("07:08:09.010  1/D_W:100  4660 0x1234\n"
                                         "07:08:09.010  1/M_bit:3.5  1\n"));
}

void TestMonitorOutput::csv()
{
    makeCsvOutput(m_device)->showChanges(*m_monitor, m_monitor->takeChanges());
    QCOMPARE(m_device.data(), QByteArray("time,station,register,address,value\n"
                                         "2024-05-06T07:08:09.010,1,D_W,100,4660\n"
                                         "2024-05-06T07:08:09.010,1,M_bit,3.5,1\n"));
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
    makeJsonOutput(m_device)->showChanges(*m_monitor, m_monitor->takeChanges());
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

void TestMonitorOutput::jsonEnd()
{
    MonitorStatus status;
    status.nowMs = 5000;
    status.stations[1].frames = 3;
    status.stations[1].meanMs = 1.26;
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
    QCOMPARE(words.value(QLatin1String("good")).toBool(true), false);

    const QJsonObject &bit = lines.at(1);
    QCOMPARE(bit.value(QLatin1String("values")).toArray().at(0).toInt(), 1);
    QCOMPARE(bit.value(QLatin1String("age_ms")).toInt(), 3000);
    QCOMPARE(bit.value(QLatin1String("good")).toBool(true), false); // its last read was given up

    const QJsonObject &station = lines.at(2);
    QCOMPARE(station.value(QLatin1String("event")).toString(), QLatin1String("station"));
    QCOMPARE(station.value(QLatin1String("state")).toString(), QLatin1String("waiting"));
    QCOMPARE(station.value(QLatin1String("frames")).toInt(), 3);
    QCOMPARE(station.value(QLatin1String("mean_ms")).toDouble(), 1.3);
}

QTEST_APPLESS_MAIN(TestMonitorOutput)
#include "test_monitor_output.moc"
