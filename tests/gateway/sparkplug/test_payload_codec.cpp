#include "gateway/sparkplug/payload_codec.h"
#include "sparkplug/checker/message_reader.h"
#include "sparkplug/support/message_writer.h"

#include <QProcess>
#include <QtTest>

#include <limits>

using namespace cnet;
using namespace cnet::gateway;

/** What is written is read by others, and commands of others are read. */
class TestPayloadCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isReadByOthers_data();
    void isReadByOthers();
    void readsCommands_data();
    void readsCommands();
    void refusesWhatIsNoMessage();
};

namespace {

Metric metricOf(Datatype datatype, const Scalar &value)
{
    Metric metric;
    metric.alias = 3;
    metric.atMs = 1700000000123;
    metric.datatype = datatype;
    metric.value = value;
    return metric;
}

QString decodedByProtoc(const QByteArray &bytes)
{
    QProcess protoc;
    protoc.start(QLatin1String(PROTOC),
                 {QLatin1String("--decode=Message"),
                  QLatin1String("--proto_path=" SPARKPLUG_FIELDS), QLatin1String("fields.proto")});
    protoc.waitForStarted();
    protoc.write(bytes);
    protoc.closeWriteChannel();
    protoc.waitForFinished();
    return QString::fromUtf8(protoc.readAllStandardOutput()).simplified();
}

} // namespace

void TestPayloadCodec::isReadByOthers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const Metric &metric, const char *expected) {
        QTest::newRow(name) << encodePayload({5, 7, {metric}})
                            << QString::fromLatin1("timestamp: 5 metrics { %1 } seq: 7")
                                   .arg(QLatin1String(expected));
    };
    const auto value = [&row](const char *name, Datatype datatype, const Scalar &of,
                              const QByteArray &text) {
        row(name, metricOf(datatype, of), "alias: 3 timestamp: 1700000000123 " + text);
    };
    value("negative of 16 bits", Datatype::Int16, qint64(-2), "int: 4294967294");
    value("negative of 32 bits", Datatype::Int32, qint64(-2147483647), "int: 2147483649");
    value("negative of 64 bits", Datatype::Int64, qint64(-1), "long: 18446744073709551615");
    value("without sign", Datatype::UInt32, qint64(4294967295), "int: 4294967295");
    value("large", Datatype::UInt64, quint64(18446744073709551615U), "long: 18446744073709551615");
    value("float", Datatype::Float, 0.5, "float: 0.5");
    value("double", Datatype::Double, 12.3, "double: 12.3");
    value("truth", Datatype::Boolean, false, "bool: false");
    value("text", Datatype::String, QString::fromLatin1("a\"b"), "string: \"a\\\"b\"");
    value("nothing", Datatype::UInt16, Scalar(), "isNull: true");
    Metric birth = metricOf(Datatype::UInt16, qint64(9));
    birth.name = QLatin1String("speed");
    birth.tellsDatatype = true;
    birth.unit = QLatin1String("mm");
    row("birth", birth,
        "name: \"speed\" alias: 3 timestamp: 1700000000123 datatype: 6 properties { keys: "
        "\"engUnit\" values { type: 12 string: \"mm\" } } int: 9");
    Metric bad = metricOf(Datatype::UInt16, qint64(9));
    bad.isHistorical = true;
    bad.quality = MetricQuality::Stale;
    bad.cause = QLatin1String("late");
    row("bad and old", bad,
        "alias: 3 timestamp: 1700000000123 isHistorical: true properties { keys: \"Quality\" "
        "keys: \"Cause\" values { type: 3 int: 500 } values { type: 12 string: \"late\" } } "
        "int: 9");
}

void TestPayloadCodec::isReadByOthers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    QCOMPARE(decodedByProtoc(bytes), expected);
    // The checker's own reader and writer agree with both.
    const auto read = spcheck::readMessage(bytes);
    QVERIFY(read);
    QCOMPARE(int(read->metrics.size()), 1);
    QCOMPARE(int(*read->seq), 7);
}

void TestPayloadCodec::readsCommands_data()
{
    QTest::addColumn<int>("field");
    QTest::addColumn<quint64>("number");
    QTest::addColumn<int>("kind");
    const auto row = [](const char *name, spcheck::Field field, quint64 number,
                        const CameValue &kind) {
        QTest::newRow(name) << int(field) << number << int(kind.index());
    };
    row("int", spcheck::Field::Int, 5, quint32());
    row("long", spcheck::Field::Long, 5, quint64());
    row("float", spcheck::Field::Float, 0x3f000000, float());
    row("double", spcheck::Field::Double, 0x3fe0000000000000U, double());
    row("truth", spcheck::Field::Truth, 1, bool());
    row("text", spcheck::Field::Text, 0, QString());
    row("none", spcheck::Field::None, 0, {});
}

void TestPayloadCodec::readsCommands()
{
    QFETCH(int, field);
    QFETCH(quint64, number);
    QFETCH(int, kind);
    spcheck::ReadMetric metric;
    metric.name = "speed";
    metric.alias = 4U;
    metric.datatype = 6U;
    metric.field = static_cast<spcheck::Field>(field);
    metric.number = number;
    metric.text = "on";
    const auto metrics =
        decodePayload(spcheck::MessageWriter::write({std::nullopt, std::nullopt, {metric, {}}}));
    QVERIFY(metrics);
    QCOMPARE(int(metrics->size()), 2);
    const CameMetric &came = metrics->first();
    QCOMPARE(came.name, QLatin1String("speed"));
    QVERIFY(came.alias == quint64(4) && came.datatype == 6U);
    QCOMPARE(int(came.value.index()), kind);
    const auto *whole = std::get_if<quint32>(&came.value);
    const auto *single = std::get_if<float>(&came.value);
    const auto *fraction = std::get_if<double>(&came.value);
    QVERIFY((whole == nullptr || *whole == 5) && (single == nullptr || *single == 0.5F) &&
            (fraction == nullptr || *fraction == 0.5));
    QVERIFY(!metrics->last().alias && metrics->last().name.isEmpty());
}

void TestPayloadCodec::refusesWhatIsNoMessage()
{
    QVERIFY(!decodePayload("{\"v\":1}"));
    QVERIFY(!decodePayload(QByteArray("\x12\x7f\x01", 3)));
    QVERIFY(decodePayload(QByteArray())->isEmpty());
    // Each metric is a request; one without anything is two bytes.
    QCOMPARE(int(decodePayload(QByteArray("\x12\0", 2).repeated(1000))->size()), 1000);
    QVERIFY(!decodePayload(QByteArray("\x12\0", 2).repeated(1001)));
    const spcheck::ReadMetric metric;
    const auto withText = [&metric](int bytes) {
        spcheck::ReadMetric wide = metric;
        wide.field = spcheck::Field::Text;
        wide.text = QByteArray(bytes, 'x');
        return spcheck::MessageWriter::write({std::nullopt, std::nullopt, {wide}});
    };
    QVERIFY(decodePayload(withText(63900)));
    QVERIFY(!decodePayload(withText(64000)));
}

QTEST_APPLESS_MAIN(TestPayloadCodec)
#include "test_payload_codec.moc"
