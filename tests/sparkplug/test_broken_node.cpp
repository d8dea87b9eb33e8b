#include "sparkplug/checker/checker.h"
#include "sparkplug/support/sparkplug_node.h"

#include <QtTest>

#include <functional>

using namespace cnet;
using namespace cnet::gateway;
using namespace spcheck;

using Spoil = std::function<void(Stream &)>;
Q_DECLARE_METATYPE(Spoil)

/** What the gateway itself says, spoiled in one way throughout, is found by the checker. */
class TestBrokenNode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void keepsAllRules();
    void isFound_data();
    void isFound();

private:
    static QStringList failed(const Stream &stream);

    Stream m_stream;
};

namespace {

using Alter = std::function<void(ReadMessage &)>;

/** Spoils all messages of a node, or those of one kind. */
Spoil each(const char *kind, const Alter &change)
{
    return [kind = QByteArray(kind), change](Stream &stream) {
        for (Packet &packet : stream) {
            const bool isOwn = packet.kind == Packet::Kind::Publish &&
                               packet.from == Packet::From::Node &&
                               packet.message.topic.startsWith("spBv1.0/");
            if (isOwn && packet.message.topic.split('/').at(2).endsWith(kind)) {
                ReadMessage read = readMessage(packet.message.payload).value_or(ReadMessage());
                change(read);
                packet.message.payload = MessageWriter::write(read);
            }
        }
    };
}

Spoil eachMetric(const char *kind, const std::function<void(ReadMetric &)> &change)
{
    return each(kind, [change](ReadMessage &message) {
        for (ReadMetric &metric : message.metrics) {
            change(metric);
        }
    });
}

Spoil eachWill(const Alter &change)
{
    return [change](Stream &stream) {
        for (Packet &packet : stream) {
            if (packet.will) {
                ReadMessage read = readMessage(packet.will->payload).value_or(ReadMessage());
                change(read);
                packet.will->payload = MessageWriter::write(read);
            }
        }
    };
}

Spoil eachPacket(Packet::Kind kind, const std::function<void(Packet &)> &change)
{
    return [kind, change](Stream &stream) {
        for (Packet &packet : stream) {
            if (packet.kind == kind && packet.from == Packet::From::Node) {
                change(packet);
            }
        }
    };
}

Spoil without(const char *kind)
{
    return [kind = QByteArray(kind)](Stream &stream) {
        Stream kept;
        for (const Packet &packet : stream) {
            if (packet.message.topic.split('/').value(2) != kind ||
                packet.from == Packet::From::Broker) {
                kept.append(packet);
            }
        }
        stream = kept;
    };
}

const auto kConnect = Packet::Kind::Connect;
const auto kPublish = Packet::Kind::Publish;
const auto kSubscribe = Packet::Kind::Subscribe;

struct Fault
{
    const char *rule;
    const char *what;
    Spoil spoil;
};

const QList<Fault> kFaults{
    {"connect.clean", "it keeps its session",
     eachPacket(kConnect, [](Packet &packet) { packet.isClean = false; })},
    {"will.payload", "its will tells more",
     eachWill([](ReadMessage &will) { will.metrics.append(will.metrics.first()); })},
    {"will.seq", "its will is numbered", eachWill([](ReadMessage &will) { will.seq = 0U; })},
    {"bdseq.step", "its will is always the same",
     eachWill([](ReadMessage &will) { will.metrics[0].number = 0; })},
    {"bdseq.type", "bdSeq is unsigned",
     eachWill([](ReadMessage &will) { will.metrics[0].datatype = 8U; })},
    {"nbirth.bdseq", "its births count for themselves",
     each("NBIRTH", [](ReadMessage &birth) { birth.metrics[0].number += 1; })},
    {"ndeath.bdseq", "its deaths count for themselves",
     each("NDEATH", [](ReadMessage &death) { death.metrics[0].number += 1; })},
    {"subscribe.qos", "it may miss commands",
     eachPacket(kSubscribe, [](Packet &packet) { packet.filters[0].second = 0; })},
    {"subscribe.ncmd", "it hears no commands",
     eachPacket(kSubscribe, [](Packet &packet) { packet.filters.removeFirst(); })},
    {"topic.form", "its topics are a level too long",
     eachPacket(kPublish, [](Packet &packet) { packet.message.topic += "/x"; })},
    {"publish.retain", "all is retained",
     eachPacket(kPublish, [](Packet &packet) { packet.message.isRetained = true; })},
    {"publish.qos", "all has QoS 1",
     eachPacket(kPublish, [](Packet &packet) { packet.message.qos = 1; })},
    {"payload.decodes", "its messages are cut short",
     eachPacket(kPublish, [](Packet &packet) { packet.message.payload.chop(1); })},
    {"payload.timestamp", "its messages have no time",
     each("", [](ReadMessage &message) { message.timestamp.reset(); })},
    {"nbirth.seq", "seq begins with 1", each("NBIRTH", [](ReadMessage &birth) { birth.seq = 1U; })},
    {"seq.step", "data is not counted", each("DDATA", [](ReadMessage &data) { data.seq = 0U; })},
    {"seq.step", "seq goes to 256",
     each("DDATA", [](ReadMessage &data) { data.seq = *data.seq == 0 ? 256U : *data.seq; })},
    {"nbirth.rebirth", "nobody can ask for a birth",
     each("NBIRTH", [](ReadMessage &birth) { birth.metrics.removeAt(1); })},
    {"nbirth.first", "devices without a node", without("NBIRTH")},
    {"dbirth.first", "data of devices that were not born", without("DBIRTH")},
    {"birth.metrics", "births have no datatypes",
     eachMetric("DBIRTH", [](ReadMetric &metric) { metric.datatype.reset(); })},
    {"birth.alias", "each device counts its own aliases",
     each("DBIRTH",
          [](ReadMessage &birth) {
              for (int i = 0; i < birth.metrics.size(); ++i) {
                  birth.metrics[i].alias = quint64(i);
              }
          })},
    {"birth.case", "names differ by case",
     each("DBIRTH",
          [](ReadMessage &birth) {
              birth.metrics.append(birth.metrics.first());
              birth.metrics.last().name = birth.metrics.first().name->toUpper();
              birth.metrics.last().alias = 99U;
          })},
    {"data.known", "data has aliases of its own",
     eachMetric("DDATA", [](ReadMetric &metric) { metric.alias = *metric.alias + 100; })},
    {"data.alias", "data has names, too",
     eachMetric("DDATA", [](ReadMetric &metric) { metric.name = "a"; })},
    {"data.datatype", "data has datatypes",
     eachMetric("DDATA", [](ReadMetric &metric) { metric.datatype = 6U; })},
    {"data.timestamp", "data has no times",
     eachMetric("DDATA", [](ReadMetric &metric) { metric.timestamp.reset(); })},
    {"data.chronological", "data is told backwards",
     each("DDATA",
          [](ReadMessage &data) { std::reverse(data.metrics.begin(), data.metrics.end()); })},
    {"data.type", "16 bits go in the field of 64",
     eachMetric("DDATA",
                [](ReadMetric &metric) {
                    metric.field = metric.field == Field::Int ? Field::Long : metric.field;
                })},
    {"quality.form", "another quality",
     eachMetric("",
                [](ReadMetric &metric) {
                    for (ReadProperty &property : metric.properties) {
                        property.number += 1;
                    }
                })},
    {"history.form", "history is of the future",
     eachMetric(
         "DDATA",
         [](ReadMetric &metric) { *metric.timestamp += metric.isHistorical ? 1000000000U : 0U; })},
    {"ddeath.fields", "a device dies without a number",
     each("DDEATH", [](ReadMessage &death) { death.seq.reset(); })},
    {"death.no-data", "a dead device has no birth",
     [](Stream &stream) {
         bool isDead = false;
         Stream kept;
         for (const Packet &packet : stream) {
             const QByteArray kind = packet.message.topic.split('/').value(2);
             if (!isDead || kind != "DBIRTH") {
                 kept.append(packet);
             }
             isDead = isDead || kind == "DDEATH";
         }
         stream = kept;
     }},
    {"disconnect.ndeath", "it leaves without a word", without("NDEATH")},
    {"rebirth.answered", "it is deaf",
     [](Stream &stream) {
         while (!stream.last().message.topic.contains("/NCMD/")) {
             stream.removeLast();
         }
     }},
    {"state.wait", "it waits for nobody",
     [](Stream &stream) {
         for (int i = int(stream.size()) - 1; i >= 0; --i) {
             if (stream.at(i).message.topic.contains("/STATE/")) {
                 stream.removeAt(i);
             }
         }
     }},
};

QByteArray stateOf(bool isOnline, int atMs)
{
    return QByteArray("{\"online\":") + (isOnline ? "true" : "false") +
           ",\"timestamp\":" + QByteArray::number(atMs) + '}';
}

} // namespace

/** A life with all that there is: births, data, bad values, history, deaths, commands, hosts. */
void TestBrokenNode::initTestCase()
{
    const QByteArray host = "spBv1.0/STATE/scada";
    SparkplugNode node;
    SparkplugSettings settings;
    settings.primaryHost = QLatin1String("scada");
    settings.takesCommands = true;
    settings.connection.brokers.resize(1);
    node.make(settings);
    node.m_connection->send(host, stateOf(true, 1000));
    node.change("b", qint64(1));
    node.m_sources.value("b")->station = 2;
    for (int i = 0; i < 300; ++i) {
        node.m_clock.runFor(100);
        const auto first = node.change("a", qint64(i));
        node.m_clock.runFor(1);
        node.take({first, node.change("b", qint64(i)), node.change("a", qint64(i + 1))});
    }
    node.take({node.change("a", qint64(1), Quality::Refused)});
    node.take({node.change("a", qint64(1), Quality::NoAnswer)});
    node.take({node.change("a", qint64(2))});
    node.take({node.change("a", qint64(3))});
    node.answer();
    node.askForRebirth();
    node.m_connection->send(host, stateOf(false, 500));
    node.take({node.change("a", qint64(3))});
    node.m_connection->lose();
    node.begin();
    node.m_connection->send(host, stateOf(true, 1000));
    node.take({node.change("a", qint64(4)), node.change("b", qint64(4))}, SinkBatch::Age::Backlog);
    node.m_sink->caughtUp();
    node.m_connection->send(host, stateOf(false, 2000));
    node.begin();
    node.m_connection->send(host, stateOf(true, 3000));
    node.m_clock.runFor(10000);
    node.askForRebirth();
    m_stream = node.m_connection->stream;
}

void TestBrokenNode::keepsAllRules()
{
    Checker checker({"plant", "gate", "scada"});
    checker.see(m_stream);
    checker.finish();
    const QStringList faults = checker.report().filter(QLatin1String("fail "));
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
    QCOMPARE(checker.notSeen(), QStringList());
}

void TestBrokenNode::isFound_data()
{
    QTest::addColumn<QString>("rule");
    QTest::addColumn<Spoil>("spoil");
    for (const Fault &fault : kFaults) {
        QTest::newRow(fault.what) << QString::fromLatin1(fault.rule) << fault.spoil;
    }
}

void TestBrokenNode::isFound()
{
    QFETCH(QString, rule);
    QFETCH(Spoil, spoil);
    Stream stream = m_stream;
    spoil(stream);
    QVERIFY2(failed(stream).contains(rule), qPrintable(failed(stream).join(QLatin1Char(' '))));
}

QStringList TestBrokenNode::failed(const Stream &stream)
{
    Checker checker({"plant", "gate", "scada"});
    checker.see(stream);
    checker.finish();
    return checker.failed();
}

QTEST_APPLESS_MAIN(TestBrokenNode)
#include "test_broken_node.moc"
