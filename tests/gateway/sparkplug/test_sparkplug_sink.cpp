#include "sparkplug/support/sparkplug_node.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::gateway;

/** Changes become births, data and deaths, and are safe when the broker has them. */
class TestSparkplugSink : public QObject, private SparkplugNode
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void tellsChanges();
    void bearsADeviceAnewForANewTag();
    void isSafeWhenTheBrokerHasIt();
    void killsASilentStation();
    void killsALostStation();
    void bearsAStationThatIsBack();
    void keepsValuesForARebirth();
    void tellsOtherTypes();
    void passesCommandsOn();
    void saysWhatIsWrongWithACommand_data();
    void saysWhatIsWrongWithACommand();
    void passesNoCommandsOnUnlessAllowed();
    void tellsAnswers();

private:
    static SparkplugSettings withCommands();
};

void TestSparkplugSink::init()
{
    make();
    QCOMPARE(m_ready, 1);
    QCOMPARE(topics(), QLatin1String("NBIRTH"));
}

void TestSparkplugSink::cleanup()
{
    QCOMPARE(m_connection->broken(), QStringList());
}

void TestSparkplugSink::tellsChanges()
{
    take({change("a", qint64(1)), change("b", qint64(2)), change("a", qint64(3))});
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 DDATA/press.1 mark"));
    const auto read = m_connection->last();
    QCOMPARE(int(read.metrics.size()), 1);
    QCOMPARE(read.metrics.first().number, quint64(3));
    take({change("b", qint64(4), Quality::Refused)});
    QCOMPARE(topics(), QLatin1String("DDATA/press.1 mark"));
    QCOMPARE(m_connection->last().metrics.first().properties.first().number, quint64(0));
}

void TestSparkplugSink::bearsADeviceAnewForANewTag()
{
    take({change("a", qint64(1))});
    topics();
    take({change("a", qint64(2)), change("b", qint64(3))});
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 mark"));
    QCOMPARE(int(m_connection->last().metrics.size()), 2);
    QCOMPARE(m_connection->last().metrics.first().number, quint64(2));
}

void TestSparkplugSink::isSafeWhenTheBrokerHasIt()
{
    m_confirms = false;
    take({change("a", qint64(1))});
    take({change("a", qint64(2))});
    m_clock.runFor(15000);
    QCOMPARE(m_safe, QVector<qint64>());
    const QVector<int> tokens = m_connection->takeUnconfirmed();
    m_connection->confirm({tokens.first()});
    QCOMPARE(m_safe, QVector<qint64>({1}));
    m_connection->lose();
    m_connection->confirm(tokens); // of a connection that is gone
    QCOMPARE(m_safe, QVector<qint64>({1}));
    begin();
    m_sink->take({{2, {change("a", qint64(2))}, SinkBatch::Age::Backlog},
                  {3, {change("a", qint64(3))}, SinkBatch::Age::Backlog}});
    m_clock.runFor(1);
    m_connection->confirm();
    QCOMPARE(m_safe, QVector<qint64>({1, 2, 3}));
}

void TestSparkplugSink::killsASilentStation()
{
    take({change("a", qint64(1)), change("b", qint64(2))});
    topics();
    take({change("a", qint64(1), Quality::NoAnswer)});
    QCOMPARE(topics(), QLatin1String("DDATA/press.1 mark"));
    take({change("b", qint64(2), Quality::NoAnswer)});
    QCOMPARE(topics(), QLatin1String("DDATA/press.1 DDEATH/press.1 mark"));
    take({change("a", qint64(1), Quality::LineDown)}); // its death told that already
    QCOMPARE(topics(), QLatin1String("mark"));
    take({change("a", qint64(5))});
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 mark"));
    const auto read = m_connection->last();
    QCOMPARE(read.metrics.first().number, quint64(5));
    QCOMPARE(read.metrics.last().properties.first().number, quint64(0));
}

void TestSparkplugSink::killsALostStation()
{
    take({change("a", qint64(1)), change("b", qint64(2))});
    status(LineStatus::State::Bad);
    // What it said before comes a moment later.
    take({change("a", qint64(2))});
    topics();
    m_clock.runFor(2100);
    QCOMPARE(topics(), QLatin1String("DDEATH/press.1"));
    m_clock.runFor(60000);
    QCOMPARE(topics(), QString());
    // Later still: it lives for as long as that takes.
    take({change("b", qint64(3))});
    m_clock.runFor(2100);
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 mark DDEATH/press.1"));
}

void TestSparkplugSink::bearsAStationThatIsBack()
{
    take({change("a", qint64(1))});
    status(LineStatus::State::Bad, std::nullopt);
    m_clock.runFor(2100);
    topics();
    status(LineStatus::State::Good, std::nullopt);
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1")); // nothing of it has changed meanwhile
    take({change("a", qint64(1), Quality::LineDown)});
    status(LineStatus::State::Bad);
    status(LineStatus::State::Good);
    QCOMPARE(topics(), QLatin1String("DDATA/press.1 DDEATH/press.1 mark")); // until it has a value
}

void TestSparkplugSink::keepsValuesForARebirth()
{
    take({change("a", qint64(1)), change("b", qint64(2))});
    take({change("a", qint64(7))});
    // What comes late is no news.
    m_sink->take({{1, {change("a", qint64(6))}, SinkBatch::Age::Backlog}});
    topics();
    askForRebirth();
    QCOMPARE(topics(), QLatin1String("NBIRTH DBIRTH/press.1"));
    QCOMPARE(m_connection->last().metrics.first().number, quint64(7));
    QVERIFY(m_connection->last().metrics.first().properties.isEmpty());
}

void TestSparkplugSink::tellsOtherTypes()
{
    take({change("a", qint64(1))});
    m_sources.remove("a");
    change("a", qint64(1));
    m_sources.value("a")->type.kind = ValueKind::F64; // another tag file was read
    topics();
    take({change("a", 0.5)});
    QCOMPARE(topics(), QLatin1String("DBIRTH/press.1 mark"));
    QCOMPARE(m_connection->last().metrics.first().datatype.value_or(0), quint64(10));
}

SparkplugSettings TestSparkplugSink::withCommands()
{
    SparkplugSettings settings;
    settings.takesCommands = true;
    return settings;
}

void TestSparkplugSink::passesCommandsOn()
{
    make(withCommands());
    take({change("a", qint64(1)), change("b", qint64(2))});
    const char *const topic = "spBv1.0/plant/DCMD/gate/press.1";
    m_connection->send(topic, command("b", std::nullopt, spcheck::Field::Int, 5));
    m_connection->send(topic, command("", 0, spcheck::Field::Int, 6), true);
    QCOMPARE(int(m_asked.size()), 2);
    QCOMPARE(m_asked.first().line, QLatin1String("press"));
    QCOMPARE(m_asked.first().tag, QLatin1String("b"));
    QCOMPARE(m_asked.first().value, QLatin1String("5"));
    QCOMPARE(m_asked.first().fault, QString());
    QVERIFY(m_asked.first().arrival == WriteRequest::Arrival::Live);
    QCOMPARE(m_asked.last().tag, QLatin1String("a"));
    QVERIFY(m_asked.last().arrival == WriteRequest::Arrival::Retained);
}

// Each is written down, and so each is a request.
void TestSparkplugSink::saysWhatIsWrongWithACommand_data()
{
    QTest::addColumn<QByteArray>("device");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const char *device, const QByteArray &payload,
                        const char *tag, const char *fault) {
        QTest::newRow(name) << QByteArray(device) << payload << QString::fromLatin1(tag)
                            << QString::fromLatin1(fault);
    };
    const char *const unknown = "press.1 has no such metric";
    const char *const misfit = "it is no value of the metric's datatype";
    using spcheck::Field;
    row("name", "press.1", command("x", std::nullopt, Field::Int, 5), "x", unknown);
    row("alias", "press.1", command("", 77, Field::Int, 5), "alias 77", unknown);
    row("neither", "press.1", command("", std::nullopt, Field::Int, 5), "", unknown);
    row("type", "press.1", command("b", std::nullopt, Field::Long, 5), "b", misfit);
    row("range of the type", "press.1", command("b", std::nullopt, Field::Int, 65536), "b", misfit);
    row("no value", "press.1", command("b", std::nullopt, Field::None, 0), "b", misfit);
    row("no message", "press.1", "5", "", "what came is no Sparkplug message, or too long");
    row("device", "press.2", command("b", std::nullopt, Field::Int, 5), "b",
        "there is no device press.2");
}

void TestSparkplugSink::saysWhatIsWrongWithACommand()
{
    QFETCH(QByteArray, device);
    QFETCH(QByteArray, payload);
    QFETCH(QString, tag);
    QFETCH(QString, fault);
    make(withCommands());
    take({change("a", qint64(1)), change("b", qint64(2))});
    m_connection->send("spBv1.0/plant/DCMD/gate/" + device, payload);
    QCOMPARE(int(m_asked.size()), 1);
    QCOMPARE(m_asked.first().tag, tag);
    QCOMPARE(m_asked.first().fault, fault);
}

void TestSparkplugSink::passesNoCommandsOnUnlessAllowed()
{
    take({change("a", qint64(1))});
    m_connection->send("spBv1.0/plant/DCMD/gate/press.1",
                       command("a", std::nullopt, spcheck::Field::Int, 5));
    QCOMPARE(int(m_asked.size()), 0);
}

void TestSparkplugSink::tellsAnswers()
{
    make(withCommands());
    topics();
    answer();
    QCOMPARE(topics(), QLatin1String("NDATA"));
    QCOMPARE(m_connection->last().metrics.first().text,
             QByteArray("press a: refused, nobody may write it"));
}

QTEST_APPLESS_MAIN(TestSparkplugSink)
#include "test_sparkplug_sink.moc"
