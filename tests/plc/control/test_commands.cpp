#include "plc/control/commands.h"
#include "support/rows.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QtTest>

using namespace plc;

namespace {

/** Stations 1 and 2, and a clock that the test sets. */
struct Commanded
{
    Commanded()
    {
        bus.add(1);
        bus.add(2, Model::K120s);
        target.bus = &bus;
        target.nowMs = [this] { return nowMs; };
    }

    Reply run(const QByteArray &line) const
    {
        return runCommand(QString::fromLatin1(line), target);
    }

    Bus bus;
    qint64 nowMs = 0;
    ControlTarget target;

    Q_DISABLE_COPY(Commanded)
};

} // namespace

static const struct
{
    const char *what;  ///< commands, one behind the other
    const char *shows; ///< what the last one says
} kReplies[] = {
    {"set 1/D_W:100=5,-1;show 1/D_W:100*3", "1/D_W:100 = 5 65535 0"},
    {"set D_W:1=7;show D_W:1", "1/D_W:1 = 7\n2/D_W:1 = 7"},
    {"set D_W:1=7  1/M_bit:0.3=1;show 1/D_W:1-2 1/M_W:0", "1/D_W:1 = 7 0\n1/M_W:0 = 8"},
    {"set D_W:1=7 M_W:0=x;show 1/D_W:1", "1/D_W:1 = 0"},
    {"set 1/D_W:1=7 D_W:4999=1;clear memory 1;show D_W:1", "1/D_W:1 = 0\n2/D_W:1 = 0"},
    {"fault 1:silence*3 delay=20;faults", "1:silence*3\n1:delay=20\n2:delay=20"},
    {"fault silence;clear faults 1;faults", "2:silence"},
    {"fault silence;clear faults;faults", "none"},
    {"fault silence;clear motions;faults", "1:silence\n2:silence"},
    {"fault silence;clear all;faults", "none"},
    {"ramp 1/D_W:5;counter 2/D_W:5;motions",
     "ramp 1/D_W:5=0..9999@1000\ncounter 2/D_W:5-6=0..4294967295+1@1000"},
    {"sine 1/D_W:0-9;square 1/D_W:10-19;walk 1/D_W:20-29;clear D_W:9-10;motions",
     "walk 1/D_W:20-29=0..9999@1000"},
    {"sine 1/D_W:9;sine 1/M_W:9;clear 2/D_W:9;motions",
     "sine 1/D_W:9=0..9999@60000\nsine 1/M_W:9=0..9999@60000"},
    {"sine D_W:0;clear motions 2;motions", "sine 1/D_W:0=0..9999@60000"},
    {"stations", "1 full\n2 k120s"},
    {"clients", "none"},
    {"motions", "none"},
};

static const Case<const char *, const char *> kErrors[] = {
    {"nothing", "", "expected one of set, show"},
    {"unknown", "sett D_W:1=1", "\"sett\": expected one of set, show"},
    {"no value", "set", "set: expected [STATION/]REGISTER"},
    {"wrong value", "set D_W:1=1 D_W:2=x", "expected values from"},
    {"a later one does not exist", "set D_W:1=1 1/D_W:9999=1,2", "D_W:10000 does not exist"},
    {"a later station does not exist", "set D_W:1=1 3/D_W:2=1", "no station 3"},
    {"no such station", "set 3/D_W:1=1", "no station 3"},
    {"not in every station", "set D_W:5000=1", "D_W:5000 does not exist in station 2"},
    {"no range", "show", "show: expected RANGE"},
    {"too much", "show 1/D_W:0*4097", "more than 4096 values"},
    {"too much in all", "show D_W:0*2049", "more than 4096 values"},
    {"beyond the device", "show 1/D_W:9999*2", "D_W:10000 does not exist"},
    {"wrong motion", "walk D_W:5=2..1", "expected =LOW..HIGH"},
    {"wrong fault", "fault silent", "expected one of silence"},
    {"arguments where none are", "faults 1", "faults takes no arguments"},
    {"clear nothing", "clear everything", "expected faults, motions"},
    {"clear of no station", "clear faults one", "expected faults, motions"},
    {"clear of a missing station", "clear faults 9", "no station 9"},
    {"clear of two ranges", "clear D_W:1 D_W:2", "expected one range"},
    {"clear of no range", "clear D_W:x", "expected a decimal address"},
    {"no file", "save", "--memory FILE"},
};

class TestCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replies_data() { addRows(kReplies); }
    void replies()
    {
        const auto &row = currentRow(kReplies);
        Commanded commanded;
        Reply last;
        for (const QByteArray &line : QByteArray(row.what).split(';')) {
            last = commanded.run(line);
        }
        QCOMPARE(last.error, QString());
        QCOMPARE(last.lines.join(QLatin1Char('\n')), latin(row.shows));
        QVERIFY(last.data.contains(latin("command")) && last.data.size() == 2);
    }

    void errors_data() { addRows(kErrors); }
    void errors()
    {
        const auto &row = currentRow(kErrors);
        Commanded commanded;
        const Reply reply = commanded.run(row.given);
        QVERIFY2(reply.error.contains(latin(row.expected)), qPrintable(reply.error));
        QCOMPARE(*commanded.bus.find(1)->station.memory().word('D', 1), quint16(0));
    }

    void nothingIsAppliedByHalves()
    {
        Commanded commanded;
        const QByteArray silences = QByteArray("silence ").repeated(1000);
        QVERIFY(!commanded.run("ramp 1/D_W:0 3/D_W:0").isGood());
        QCOMPARE(commanded.run("motions").lines, QStringList(latin("none")));
        QVERIFY(!commanded.run("fault " + silences + "echo").isGood());
        QCOMPARE(commanded.run("faults").lines, QStringList(latin("none")));
    }

    void aMotionBeginsWhenItIsAskedFor()
    {
        Commanded commanded;
        commanded.nowMs = 5555;
        QVERIFY(commanded.run("ramp 1/D_W:0=10..20@100").isGood());
        QCOMPARE(commanded.run("show 1/D_W:0").lines, QStringList(latin("1/D_W:0 = 10")));
        commanded.nowMs = 5655;
        QCOMPARE(commanded.run("show 1/D_W:0").lines, QStringList(latin("1/D_W:0 = 11")));
        // What is set stays until the next step, even if nobody has looked for long.
        commanded.nowMs = 5850;
        QVERIFY(commanded.run("set 1/D_W:0=99").isGood());
        QCOMPARE(commanded.run("show 1/D_W:0").lines, QStringList(latin("1/D_W:0 = 99")));
    }

    void faultsThatAreOverAreNotListed()
    {
        Commanded commanded;
        QVERIFY(commanded.run("fault 1:silence*2 1:echo").isGood());
        commanded.bus.find(1)->faults.draw();
        QCOMPARE(commanded.run("faults").lines.at(0), latin("1:silence*1"));
        commanded.bus.find(1)->faults.draw();
        QCOMPARE(commanded.run("faults").lines, QStringList(latin("1:echo")));
    }

    void clientsAreListed()
    {
        Commanded commanded;
        Connections connections;
        const int first = connections.add(latin("127.0.0.1:4000"), 1000);
        connections.remove(connections.add(latin("127.0.0.1:4001"), 1000));
        connections.count(first);
        commanded.target.connections = &connections;
        commanded.nowMs = 4999;
        const Reply reply = commanded.run("clients");
        QCOMPARE(reply.lines, QStringList(latin("127.0.0.1:4000 for 3 s, requests: 1")));
        const QJsonObject client = reply.data.value(latin("clients")).toArray().at(0).toObject();
        QCOMPARE(client.value(latin("ms")).toInt(), 3999);
    }

    void valuesForPrograms()
    {
        Commanded commanded;
        const Reply reply = commanded.run("show 2/M_bit:1.15*2");
        QCOMPARE(reply.bytes(ReplyFormat::Json),
                 QByteArray("{\"command\":\"show\",\"ok\":true,\"values\":[{\"address\":"
                            "\"M_bit:1.15\",\"station\":2,\"values\":[0,0]}]}\n"));
    }

    void callsThoseWhoCanSaveAndQuit()
    {
        Commanded commanded;
        QStringList called;
        commanded.target.quit = [&called] { called << latin("quit"); };
        commanded.target.save = [&called]() -> std::optional<TextError> {
            called << latin("save");
            return called.size() > 1 ? std::optional<TextError>({latin("disk full")})
                                     : std::nullopt;
        };
        QVERIFY(commanded.run("save").isGood());
        QCOMPARE(commanded.run("save").error, latin("disk full"));
        QVERIFY(commanded.run("quit").isGood());
        QCOMPARE(called.join(QLatin1Char(' ')), latin("save save quit"));
    }

    void helpNamesEveryCommand()
    {
        Commanded commanded;
        const QString names = commanded.run("x").error.section(latin("one of "), 1);
        const QStringList help = commanded.run("help").lines;
        const QStringList all = names.split(latin(", "));
        QVERIFY(all.size() > 10);
        for (const QString &name : all) {
            QCOMPARE(help.filter(QRegularExpression(QLatin1Char('^') + name + latin("\\b"))).size(),
                     1);
        }
    }
};

QTEST_APPLESS_MAIN(TestCommands)
#include "test_commands.moc"
