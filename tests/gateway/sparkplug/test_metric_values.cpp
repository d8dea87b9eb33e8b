#include "gateway/sparkplug/metric_values.h"

#include <QtTest>

#include <limits>

using namespace cnet;
using namespace cnet::gateway;

Q_DECLARE_METATYPE(cnet::Scalar)
Q_DECLARE_METATYPE(cnet::gateway::CameValue)

/** Values of tags travel in types that hold them, and commands fit theirs or are none. */
class TestMetricValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesDatatypes_data();
    void choosesDatatypes();
    void holdsValues_data();
    void holdsValues();
    void readsCommands_data();
    void readsCommands();
    void keepsTheOrderOfEachMetric();
};

void TestMetricValues::choosesDatatypes_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("offset");
    QTest::addColumn<int>("datatype");
    const auto row = [](const char *name, ValueKind kind, double scale, double offset,
                        Datatype datatype) {
        QTest::newRow(name) << int(kind) << scale << offset << int(datatype);
    };
    row("raw", ValueKind::Raw, 1, 0, Datatype::UInt16);
    row("bool", ValueKind::Bool, 1, 0, Datatype::Boolean);
    row("bit", ValueKind::Bit, 1, 0, Datatype::Boolean);
    row("i16", ValueKind::I16, 1, 0, Datatype::Int16);
    row("u32", ValueKind::U32, 1, 0, Datatype::UInt32);
    row("i32", ValueKind::I32, 1, 0, Datatype::Int32);
    row("u64", ValueKind::U64, 1, 0, Datatype::UInt64);
    row("i64", ValueKind::I64, 1, 0, Datatype::Int64);
    row("bcd8", ValueKind::Bcd8, 1, 0, Datatype::UInt32);
    row("f32", ValueKind::F32, 1, 0, Datatype::Float);
    row("f64", ValueKind::F64, 1, 0, Datatype::Double);
    row("string", ValueKind::String, 1, 0, Datatype::String);
    row("enum", ValueKind::Enum, 1, 0, Datatype::UInt16);
    row("tenths", ValueKind::I16, 0.1, 0, Datatype::Double);
    row("tens", ValueKind::U16, 10, 0, Datatype::Int64);
    row("offset", ValueKind::U16, 1, -40, Datatype::Int64);
    row("half offset", ValueKind::U16, 1, 0.5, Datatype::Double);
    row("scaled float", ValueKind::F32, 2, 0, Datatype::Double);
}

void TestMetricValues::choosesDatatypes()
{
    QFETCH(int, kind);
    QFETCH(double, scale);
    QFETCH(double, offset);
    QFETCH(int, datatype);
    ChangeSource source;
    source.type.kind = static_cast<ValueKind>(kind);
    source.scale = scale;
    source.offset = offset;
    QCOMPARE(int(datatypeOf(source)), datatype);
}

void TestMetricValues::holdsValues_data()
{
    QTest::addColumn<int>("datatype");
    QTest::addColumn<Scalar>("value");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char *name, Datatype datatype, const Scalar &value, bool fits) {
        QTest::newRow(name) << int(datatype) << value << fits;
    };
    row("greatest of 16 bits", Datatype::UInt16, qint64(65535), true);
    row("beyond 16 bits", Datatype::UInt16, qint64(65536), false);
    row("negative without sign", Datatype::UInt32, qint64(-1), false);
    row("least of 16 bits", Datatype::Int16, qint64(-32768), true);
    row("below 16 bits", Datatype::Int16, qint64(-32769), false);
    row("greatest of 64 bits", Datatype::UInt64, std::numeric_limits<quint64>::max(), true);
    row("beyond 63 bits", Datatype::Int64, std::numeric_limits<quint64>::max(), false);
    row("infinite", Datatype::Double, std::numeric_limits<double>::infinity(), false);
    row("beyond a float", Datatype::Float, 1e39, false);
    row("text for a number", Datatype::Double, QString::fromLatin1("1"), false);
    row("nothing", Datatype::UInt16, Scalar(), false);
    row("truth", Datatype::Boolean, true, true);
    row("number for a truth", Datatype::Boolean, qint64(1), false);
}

void TestMetricValues::holdsValues()
{
    QFETCH(int, datatype);
    QFETCH(Scalar, value);
    QFETCH(bool, fits);
    QVERIFY(valueAs(static_cast<Datatype>(datatype), value) == (fits ? value : Scalar()));
}

void TestMetricValues::readsCommands_data()
{
    QTest::addColumn<int>("datatype");
    QTest::addColumn<int>("told");
    QTest::addColumn<CameValue>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, Datatype datatype, const CameValue &value,
                        const char *text, int told = -1) {
        QTest::newRow(name) << int(datatype) << told << value << QString::fromLatin1(text);
    };
    row("16 bits", Datatype::UInt16, quint32(7), "7");
    row("beyond 16 bits", Datatype::UInt16, quint32(65536), "");
    row("negative", Datatype::Int16, quint32(0xfffffffe), "-2");
    row("negative without sign above", Datatype::Int16, quint32(0xfffe), "-2");
    row("neither", Datatype::Int16, quint32(0x1fffe), "");
    row("negative of 32 bits", Datatype::Int32, quint32(0x80000000), "-2147483648");
    row("32 bits", Datatype::UInt32, quint32(0x80000000), "2147483648");
    row("64 bits", Datatype::UInt64, std::numeric_limits<quint64>::max(), "18446744073709551615");
    row("negative of 64 bits", Datatype::Int64, std::numeric_limits<quint64>::max(), "-1");
    row("wrong field", Datatype::UInt16, quint64(7), "");
    row("narrow field", Datatype::Int64, quint32(7), "");
    row("float", Datatype::Float, 0.1F, "0.1");
    row("double", Datatype::Double, 0.1, "0.1");
    row("no number", Datatype::Double, std::numeric_limits<double>::quiet_NaN(), "");
    row("truth", Datatype::Boolean, true, "true");
    row("number for a truth", Datatype::Boolean, quint32(1), "");
    row("text", Datatype::String, QString::fromLatin1("a\"b"), "\"a\\\"b\"");
    row("null", Datatype::UInt16, {}, "");
    row("right type", Datatype::UInt16, quint32(7), "7", 6);
    row("wrong type", Datatype::UInt16, quint32(7), "", 2);
}

void TestMetricValues::readsCommands()
{
    QFETCH(int, datatype);
    QFETCH(int, told);
    QFETCH(CameValue, value);
    QFETCH(QString, text);
    CameMetric command;
    command.value = value;
    if (told >= 0) {
        command.datatype = static_cast<quint32>(told);
    }
    QCOMPARE(commandText(command, static_cast<Datatype>(datatype)).value_or(QString()), text);
}

void TestMetricValues::keepsTheOrderOfEachMetric()
{
    QVector<Metric> metrics;
    const auto add = [&metrics](quint64 alias, qint64 atMs, qint64 value) {
        Metric metric;
        metric.alias = alias;
        metric.atMs = atMs;
        metric.value = value;
        metrics.append(metric);
    };
    add(1, 20, 1);
    add(2, 10, 2); // another metric's time is earlier: the two change places
    add(1, 20, 3);
    add(1, 5, 4); // the clock was set back: what is told of 1 stays in its order
    QStringList texts;
    for (const QVector<Metric> &message : inMessages(metrics)) {
        for (const Metric &metric : message) {
            texts.append(QString::number(std::get<qint64>(metric.value)));
        }
        texts.append(QLatin1String("|"));
    }
    QCOMPARE(texts.join(QString()), QLatin1String("213|4|"));
}

QTEST_APPLESS_MAIN(TestMetricValues)
#include "test_metric_values.moc"
