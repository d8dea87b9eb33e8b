#include "sparkplug/checker/checker.h"
#include "sparkplug/support/good_stream.h"

#include <QtTest>

#include <functional>

using namespace spcheck;

using Spoil = std::function<void(GoodStream &good)>;
Q_DECLARE_METATYPE(Spoil)

/** The checker finds what is wrong with a stream, and nothing else. */
class TestChecker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void passesAGoodStream();
    void findsEachFault_data();
    void findsEachFault();
    void hasAFaultForEachRule();

private:
    static QStringList check(const GoodStream &good);
};

namespace {

struct Fault
{
    const char *rules; ///< that are broken by it
    const char *what;
    Spoil spoil;
};

void useAlias(ReadMetric &metric, quint64 alias)
{
    metric.alias = alias;
}

const QList<Fault> kSessionFaults{
    {"connect.clean", "a session that is kept",
     [](GoodStream &good) { good.packet("connect").isClean = false; }},
    {"connect.clean", "a session that is kept by its expiry",
     [](GoodStream &good) {
         good.packet("connect").protocol = 5;
         good.packet("connect").sessionExpiry = 60;
     }},
    {"connect.version", "MQTT 3.1", [](GoodStream &good) { good.packet("connect").protocol = 3; }},
    {"will.present nbirth.bdseq ndeath.bdseq", "no will",
     [](GoodStream &good) { good.packet("connect").will.reset(); }},
    {"will.topic", "the will of a device",
     [](GoodStream &good) {
         good.packet("connect").will->topic = "spBv1.0/plant/DDEATH/gate/press.1";
     }},
    {"will.qos", "a will with QoS 0",
     [](GoodStream &good) { good.packet("connect").will->qos = 0; }},
    {"will.retain", "a retained will",
     [](GoodStream &good) { good.packet("connect").will->isRetained = true; }},
    {"will.payload nbirth.bdseq ndeath.bdseq", "a will with more metrics",
     [](GoodStream &good) { good.will("connect").metrics.append(GoodStream::data(1)); }},
    {"will.seq", "a will with a seq", [](GoodStream &good) { good.will("connect").seq = 0U; }},
    {"bdseq.type", "a bdSeq of another type",
     [](GoodStream &good) { good.will("connect").metrics[0].datatype = 8U; }},
    {"bdseq.step nbirth.bdseq", "the same bdSeq again",
     [](GoodStream &good) { good.will("reconnect").metrics[0].number = 0; }},
    {"bdseq.type bdseq.step nbirth.bdseq", "a bdSeq beyond 255",
     [](GoodStream &good) { good.will("reconnect").metrics[0].number = 256; }},
    {"subscribe.ncmd", "no subscription to node commands",
     [](GoodStream &good) { good.packet("connect-subscribe").filters.removeAt(0); }},
    {"subscribe.dcmd", "no subscription to device commands",
     [](GoodStream &good) { good.packet("connect-subscribe").filters.removeAt(1); }},
    {"subscribe.state", "no subscription to the host",
     [](GoodStream &good) { good.packet("connect-subscribe").filters.removeAt(2); }},
    {"subscribe.ncmd subscribe.dcmd subscribe.state", "subscriptions behind the birth",
     [](GoodStream &good) {
         good.copy("connect-subscribe", "dbirth");
         good.remove("connect-subscribe");
     }},
    {"subscribe.qos", "a subscription with QoS 0",
     [](GoodStream &good) { good.packet("connect-subscribe").filters[0].second = 0; }},
    {"state.wait", "a birth before the host is online",
     [](GoodStream &good) { good.remove("reconnect-online"); }},
    {"state.offline", "data without the host",
     [](GoodStream &good) {
         good.copy("ddata-on", "ndeath");
         good.renumber();
     }},
    {"state.offline", "a node that stays without the host",
     [](GoodStream &good) { good.endAt("offline"); }},
    {"state.outdated", "leaving for an outdated word",
     [](GoodStream &good) {
         good.remove("ddata-on");
         good.remove("offline");
     }},
    {"disconnect.ndeath", "no NDEATH before goodbye",
     [](GoodStream &good) { good.remove("ndeath"); }},
};

const QList<Fault> kBirthFaults{
    {"topic.form seq.step", "another group",
     [](GoodStream &good) { good.packet("ndata").message.topic = "spBv1.0/other/NDATA/gate"; }},
    {"topic.form seq.step", "a level too much",
     [](GoodStream &good) { good.packet("ddata").message.topic += "/speed"; }},
    {"ids.characters dbirth.first", "a wildcard in a name",
     [](GoodStream &good) { good.packet("ddata").message.topic += '+'; }},
    {"ids.case", "devices that differ by case",
     [](GoodStream &good) {
         for (const char *name :
              {"dbirth-oven", "ddeath", "dbirth-back", "ddata-back", "dbirth-oven-again"}) {
             good.packet(name).message.topic.replace("oven.1", "PRESS.1");
         }
     }},
    {"nbirth.first", "a device before its node",
     [](GoodStream &good) {
         good.copy("dbirth", "nbirth");
         good.renumber();
     }},
    {"nbirth.seq seq.step", "a node's birth with another seq",
     [](GoodStream &good) { good.content("nbirth").seq = 1U; }},
    {"nbirth.bdseq", "a birth of another connection",
     [](GoodStream &good) { good.metric("nbirth", 0).number = 1; }},
    {"nbirth.bdseq", "a rebirth that raises bdSeq",
     [](GoodStream &good) { good.metric("nbirth-again", 0).number = 1; }},
    {"nbirth.rebirth", "no rebirth control",
     [](GoodStream &good) { good.content("nbirth").metrics.removeAt(1); }},
    {"nbirth.rebirth", "a rebirth control that is set",
     [](GoodStream &good) { good.metric("nbirth", 1).number = 1; }},
    {"nbirth.rebirth", "a rebirth control with an alias",
     [](GoodStream &good) { useAlias(good.metric("nbirth", 1), 99); }},
    {"birth.metrics", "a metric without its datatype",
     [](GoodStream &good) { good.metric("dbirth-oven", 1).datatype.reset(); }},
    {"birth.metrics", "a metric without a time",
     [](GoodStream &good) { good.metric("dbirth-oven", 1).timestamp.reset(); }},
    {"birth.metrics", "a metric with neither value nor null",
     [](GoodStream &good) { good.metric("dbirth-oven", 1).field = Field::None; }},
    {"birth.alias", "an alias that another device has",
     [](GoodStream &good) { useAlias(good.metric("dbirth-oven", 1), 11); }},
    {"birth.case", "metrics that differ by case",
     [](GoodStream &good) { good.metric("dbirth-oven", 1).name = "SPEED"; }},
    {"dbirth.first seq.step", "data before the device's birth",
     [](GoodStream &good) { good.remove("dbirth"); }},
    {"rebirth.answered", "a rebirth that never comes",
     [](GoodStream &good) { good.endAt("rebirth"); }},
    {"rebirth.devices", "a rebirth without a device",
     [](GoodStream &good) {
         good.remove("dbirth-oven-again");
         good.renumber();
     }},
    {"payload.timestamp", "a message without a time",
     [](GoodStream &good) { good.content("dbirth").timestamp.reset(); }},
};

const QList<Fault> kDataFaults{
    {"publish.retain", "retained data",
     [](GoodStream &good) { good.packet("ddata").message.isRetained = true; }},
    {"publish.retain", "a retained birth",
     [](GoodStream &good) { good.packet("nbirth").message.isRetained = true; }},
    {"publish.qos", "data with QoS 1",
     [](GoodStream &good) { good.packet("ddata").message.qos = 1; }},
    {"publish.qos", "an NDEATH with QoS 0",
     [](GoodStream &good) { good.packet("ndeath").message.qos = 0; }},
    {"payload.decodes seq.step", "bytes that are no message",
     [](GoodStream &good) {
         good.event("ddata").content.reset();
         good.packet("ddata").message.payload = "{\"v\":1}";
     }},
    {"seq.step", "a number twice", [](GoodStream &good) { good.content("ndata").seq = 2U; }},
    {"seq.step", "a message that was lost", [](GoodStream &good) { good.remove("ndata"); }},
    {"seq.step", "a number of each device by itself",
     [](GoodStream &good) { good.content("dbirth-oven").seq = 1U; }},
    {"ddeath.fields seq.step", "a device's death without a seq",
     [](GoodStream &good) { good.content("ddeath").seq.reset(); }},
    {"ddeath.alive", "a death of what is dead",
     [](GoodStream &good) {
         good.copy("ddeath", "dbirth-back");
         good.renumber();
     }},
    {"death.no-data", "data of a dead device",
     [](GoodStream &good) {
         good.remove("dbirth-back");
         good.renumber();
     }},
    {"ndeath.bdseq", "a death of another birth",
     [](GoodStream &good) { good.metric("ndeath", 0).number = 3; }},
    {"ndeath.seq", "an NDEATH with a seq",
     [](GoodStream &good) { good.content("ndeath").seq = 5U; }},
    {"ndeath.last", "data behind the NDEATH",
     [](GoodStream &good) {
         good.copy("ddata-on", "disconnect");
         good.renumber();
     }},
    {"data.known", "an alias that no birth told",
     [](GoodStream &good) { useAlias(good.metric("ddata", 0), 77); }},
    {"data.known", "an alias of another device",
     [](GoodStream &good) { useAlias(good.metric("ddata", 0), 20); }},
    {"data.alias", "a name beside the alias",
     [](GoodStream &good) { good.metric("ddata", 0).name = "speed"; }},
    {"data.datatype", "data with a datatype",
     [](GoodStream &good) { good.metric("ddata", 0).datatype = 6U; }},
    {"data.timestamp", "data without a time",
     [](GoodStream &good) { good.metric("ddata", 0).timestamp.reset(); }},
    {"data.chronological", "data in no order",
     [](GoodStream &good) { good.metric("ddata", 0).timestamp = 1001U; }},
    {"data.type", "a value of another type",
     [](GoodStream &good) { good.metric("ddata", 0).field = Field::Long; }},
    {"data.type", "a value beyond its type",
     [](GoodStream &good) { good.metric("ddata", 0).number = 65536; }},
    {"quality.form", "a quality that there is not",
     [](GoodStream &good) { good.metric("ddata", 2).properties[0].number = 1; }},
    {"quality.form", "a quality of another type",
     [](GoodStream &good) { good.metric("ddata", 2).properties[0].type = 7; }},
    {"history.form", "history from the future",
     [](GoodStream &good) { good.metric("history", 0).timestamp = 1001U; }},
    {"birth.metrics", "history within a birth",
     [](GoodStream &good) { good.metric("dbirth-oven", 1).isHistorical = true; }},
};

QList<Fault> allFaults()
{
    return kSessionFaults + kBirthFaults + kDataFaults;
}

} // namespace

QStringList TestChecker::check(const GoodStream &good)
{
    Checker checker({"plant", "gate", "scada"});
    checker.see(good.stream());
    checker.finish();
    return checker.failed();
}

void TestChecker::passesAGoodStream()
{
    Checker checker({"plant", "gate", "scada"});
    checker.see(GoodStream().stream());
    checker.finish();
    QCOMPARE(checker.failed(), QStringList());
    QCOMPARE(checker.notSeen(), QStringList());
    QCOMPARE(int(checker.report().size()), int(Checker::rules().size()));
    QVERIFY(checker.report().contains(QLatin1String("pass seq.step")));
}

void TestChecker::findsEachFault_data()
{
    QTest::addColumn<QStringList>("rules");
    QTest::addColumn<Spoil>("spoil");
    for (const Fault &fault : allFaults()) {
        QStringList rules = QString::fromLatin1(fault.rules).split(QLatin1Char(' '));
        rules.sort();
        QTest::newRow(fault.what) << rules << fault.spoil;
    }
}

void TestChecker::findsEachFault()
{
    QFETCH(QStringList, rules);
    QFETCH(Spoil, spoil);
    GoodStream good;
    spoil(good);
    QCOMPARE(check(good), rules);
}

void TestChecker::hasAFaultForEachRule()
{
    QStringList missing = Checker::rules();
    for (const Fault &fault : allFaults()) {
        missing.removeAll(QString::fromLatin1(fault.rules).split(QLatin1Char(' ')).first());
    }
    QCOMPARE(missing, QStringList());
}

QTEST_APPLESS_MAIN(TestChecker)
#include "test_checker.moc"
