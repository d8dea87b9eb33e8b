#include "complaint.h"
#include "program.h"
#include "terminal.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstdio>
#include <memory>

/** cnet-panel with a tag file: the press line's own, and wrong ones. */
class TestTagsProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsByName_data();
    void readsByName();
    void writesByName();
    void refuses_data();
    void refuses();
    void refusesAFileWithMistakes();
    void watchesByName();
    void takesListsOfNames();
    void takesAFileThatIsStoredAnew();
    void keepsItemsAndValuesOfArraysOverAFileStoredAnew();
    void reloadsOnAKey();
    void aStationOfANewTagIsSimulated();

private:
    QByteArray run(const QList<QByteArray> &arguments, int exitCode = 0);
    QByteArray path(const char *name) const
    {
        return QFile::encodeName(m_directory.filePath(QLatin1String(name)));
    }
    bool store(const char *name, const QByteArray &content) const;

    QTemporaryDir m_directory;
    std::unique_ptr<PlcProgram> m_plc;
    QByteArray m_errors;
};

namespace {

const int kUsage = 2;

} // namespace

void TestTagsProgram::init()
{
    m_plc = std::make_unique<PlcProgram>();
    QVERIFY(m_plc->serve({QLatin1String("--tcp"), QLatin1String("127.0.0.1:0")},
                         {QLatin1String("--scenario"), QLatin1String("press")}));
}

// @return standard output, its lines joined
QByteArray TestTagsProgram::run(const QList<QByteArray> &arguments, int exitCode)
{
    Program panel;
    QList<QByteArray> all = arguments;
    all += QList<QByteArray>{"--link", "tcp:" + m_plc->place().toLatin1()};
    if (!arguments.contains("--tags")) {
        all += QList<QByteArray>{"--tags", PRESS_TAGS};
    }
    if (!panel.startBytes(CNET_PANEL, all)) {
        return "did not start";
    }
    const int code = panel.exitCode();
    m_errors = panel.errors();
    const QByteArray output = panel.lines().join("; ");
    return code == exitCode ? output : "exit code " + QByteArray::number(code) + "; " + m_errors;
}

bool TestTagsProgram::store(const char *name, const QByteArray &content) const
{
    QFile file(QFile::decodeName(path(name)));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

void TestTagsProgram::readsByName_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<QByteArray>("output");
    const auto row = [](const char *name, const QList<QByteArray> &arguments, const char *output) {
        QTest::newRow(name) << arguments << QByteArray(output);
    };
    row("one", {"read", "press.speed"}, "press.speed  30.0 1/min");
    row("pattern", {"read", "recipe.s*"}, "recipe.speed  30.0 1/min; recipe.stroke  ");
    row("group within another", {"read", "press/buttons"},
        "press.start  false; press.stop  false; press.reset  false");
    row("array", {"read", "mould.zones"}, "mould.zones[0]  ");
    row("one value of an array", {"read", "recipe.zones[2]", "recipe.zones[0]"},
        "recipe.zones[2]  185.0 \xc2\xb0"
        "C; recipe.zones[0]  ");
    row("items among names",
        {"read", "press.speed", "D_W:200*2", "press.speed", "D_W:200*2", "D_W:201@u16*0.1"},
        "press.speed  30.0 1/min; 1/D_W:200  1 0x0001; 1/D_W:201  300 0x012C; "
        "1/D_W:201@u16*0.1  30.0");
    row("items among names as json", {"read", "D_W:201", "recipe.zones[1]", "--format", "json"},
        "{\"address\":\"201\",\"count\":1,\"event\":\"value\",\"good\":true,\"item\":\"1/D_W:201\","
        "\"register\":\"D_W\",\"station\":1,\"values\":[300]}; "
        "{\"address\":\"207\",\"count\":1,\"event\":\"value\",\"good\":true,\"group\":\"recipe\","
        "\"item\":\"1/D_W:207@i16*0.1\",\"name\":\"recipe.zones[1]\"");
    row("items among names as csv", {"read", "D_W:201", "press.speed", "--format", "csv"},
        "station,register,address,value,name,unit; 1,D_W,201,300,,; 1,D_W,100,30.0,press.speed");
    row("the words of a tag", {"identify", "press.speed"}, "1/D_W:100  300 0x012C  ");
    row("the words of a value of an array", {"identify", "recipe.zones[1]"}, "1/D_W:207  ");
    row("the words of an item", {"identify", "D_W:200*2"}, "1/D_W:200  1 0x0001  ");
    row("all", {"read"}, "press.speed  30.0 1/min; press.pressure_set  ");
    row("json", {"read", "press.speed", "--format", "json"},
        "{\"address\":\"100\",\"count\":1,\"event\":\"value\",\"good\":true,\"group\":\"press\","
        "\"item\":\"1/D_W:100@u16*0.1\",\"name\":\"press.speed\"");
    row("csv", {"read", "press.speed", "--format", "csv"},
        "station,register,address,value,name,unit; 1,D_W,100,30.0,press.speed,1/min");
}

void TestTagsProgram::readsByName()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, output);
    const QByteArray shown = run(arguments);
    QVERIFY2(shown.startsWith(output), shown.constData());
    QCOMPARE(m_errors, QByteArray());
}

void TestTagsProgram::writesByName()
{
    QCOMPARE(run({"write", "recipe.speed=12.5", "job.name=\"part 7\"", "D_W:205=250"}),
             QByteArray("recipe.speed=12.5: written; job.name=\"part 7\": written; "
                        "1/D_W:205=250: written"));
    QCOMPARE(run({"read", "recipe.speed", "job.name", "recipe.dwell"}),
             QByteArray("recipe.speed  12.5 1/min; job.name  \"part 7\"; recipe.dwell  0.250 s"));
    const QByteArray degrees = " \xc2\xb0"
                               "C";
    QCOMPARE(run({"write", "recipe.zones=50", "recipe.zones[2]=185.5"}),
             QByteArray("recipe.zones=50,50,50,50: written; "
                        "recipe.zones[2]=185.5: written"));
    QCOMPARE(run({"read", "recipe.zones"}),
             "recipe.zones[0]  50.0" + degrees + "; recipe.zones[1]  50.0" + degrees +
                 "; recipe.zones[2]  185.5" + degrees + "; recipe.zones[3]  50.0" + degrees);
}

void TestTagsProgram::refuses_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const QList<QByteArray> &arguments, const char *message) {
        QTest::newRow(name) << arguments << QByteArray(message);
    };
    row("a near miss", {"read", "press.sped"}, "no tag or group 'press.sped'; did you mean");
    row("a pattern that fits none", {"monitor", "oven.*"}, "no tag fits 'oven.*'");
    row("an item that is none", {"read", "press.speed", "D_W:10000"},
        "an address of D_W is a number from 0 to 9999");
    row("an item without a type of that name", {"monitor", "D_W:1@float"}, "'float' is no type");
    row("a value behind the last one", {"write", "press.speed=13", "recipe.zones[4]=1"},
        "'recipe.zones[4]': recipe.zones has 4 values, recipe.zones[0] to recipe.zones[3]");
    row("a value of an array that is not there", {"read", "mould.zones[-1]"}, "has 4 values");
    row("several values for one", {"write", "recipe.zones[1]=1,2"},
        "'recipe.zones[1]': expected 1 value, not 2");
    row("a value of no array", {"write", "press.speed[0]=1"}, "press.speed is one value");
    row("one value above the maximum", {"write", "recipe.zones[1]=300.1"},
        "recipe.zones[1]: 300.1 is above");
    row("one value that is only read", {"write", "mould.zones[1]=1"},
        "mould.zones[1] can only be read");
    row("words of nothing", {"identify"}, "expected one tag of 1 to 60 words");
    row("words of several tags", {"identify", "press"}, "expected one tag of 1 to 60 words");
    row("words of a bit", {"identify", "press.running"}, "expected one tag of 1 to 60 words");
    row("words of an item with a type", {"identify", "D_W:5@u16"}, "or an item without a type");
    row("terminal codes", {"read", "\x1b[2J"}, "no tag or group '?[2J'");
    row("an endless name", {"read", QByteArray(100000, 'x')}, "no tag or group 'xxx");
    row("no such file", {"read", "--tags", "/no/such/file"}, "cannot read /no/such/file");
    row("a directory", {"monitor", "--tags", "/"}, "cannot read /: ");
    row("an empty file", {"read", "--tags", "/dev/null"}, "/dev/null:1");
    row("a write without a value", {"write", "press.speed"}, "expected NAME=VALUE");
    row("a write of a group", {"write", "press=1"}, "'press' stands for several tags");
    row("a write of nothing", {"write"}, "expected at least one ITEM=VALUE");
    row("above the maximum", {"write", "press.speed=120.1"}, "press.speed: 120.1 is above");
    row("no such text", {"write", "press.speed=fast"}, "'fast' is no value");
    row("a tag that is only read, behind a good one",
        {"write", "press.speed=13", "press.speed_actual=1"}, "press.speed_actual can only be read");
}

// A single mistake, and nothing is written at all.
void TestTagsProgram::refuses()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, message);
    QCOMPARE(run(arguments, kUsage), QByteArray());
    QCOMPARE(faultOfComplaint(m_errors, "cnet-panel", message), QByteArray());
    QCOMPARE(run({"read", "press.speed"}), QByteArray("press.speed  30.0 1/min"));
}

void TestTagsProgram::refusesAFileWithMistakes()
{
    QVERIFY(store("bad.csv", "name,register,address\na,D_W,10000\n1b,D_W,1\nc,X,1\n"));
    const QByteArray file = path("bad.csv");
    for (const QByteArray command : {"monitor", "read", "write"}) {
        const QByteArray word = command == "write" ? "a=1" : "a";
        QCOMPARE(run({command, "--tags", file, word}, kUsage), QByteArray());
        QCOMPARE(faultOfComplaint(m_errors, "cnet-panel", file + ":2:7: address: "), QByteArray());
        QVERIFY2(m_errors.contains("; and 2 more mistakes"), m_errors.constData());
    }
}

void TestTagsProgram::watchesByName()
{
    const QByteArray text = run({"monitor", "--count", "3", "press.speed", "press.state"});
    QVERIFY2(text.contains("  press.speed  30.0 1/min; "), text.constData());
    QVERIFY2(text.contains("  press.state  "), text.constData());
    QVERIFY2(text.contains("  press.speed  quality good"), text.constData());
    const QByteArray csv = run({"monitor", "--count", "3", "--format", "csv", "press.speed"});
    QVERIFY2(csv.startsWith("time,station,register,address,count,value,quality,name,unit; "),
             csv.constData());
    QVERIFY2(csv.contains(",1,D_W,100,1,30.0,good,press.speed,1/min"), csv.constData());
    const QByteArray mixed = run({"monitor", "--count", "3", "--format", "csv", "D_W:201",
                                  "D_W:201@u16*0.1", "recipe.zones[1]", "press.speed"});
    QVERIFY2(mixed.contains(",1,D_W,201,1,300,good,,;"), mixed.constData());
    QVERIFY2(mixed.contains(",1,D_W,201,1,30.0,good,,;"), mixed.constData());
    QVERIFY2(mixed.contains(",1,D_W,207,1,185.0,good,recipe.zones[1],\xc2\xb0"
                            "C"),
             mixed.constData());
    const QByteArray json = run({"monitor", "--count", "3", "--format", "json", "press.speed"});
    QVERIFY2(json.contains("\"name\":\"press.speed\""), json.constData());
    QVERIFY2(json.contains("\"unit\":\"1/min\""), json.constData());
}

void TestTagsProgram::takesListsOfNames()
{
    QVERIFY(store("names", "# wanted\npress.speed\nrecipe.number\n"));
    const QByteArray shown = run({"read", '@' + path("names"), "press.speed"});
    QVERIFY2(shown.startsWith("press.speed  30.0 1/min; recipe.number  "), shown.constData());
    QVERIFY2(shown.count("press.speed") == 1, shown.constData());
    QVERIFY(store("names", "press.speed\npress.sped\n"));
    QCOMPARE(run({"read", '@' + path("names")}, kUsage), QByteArray());
    QVERIFY2(m_errors.contains("names:2: no tag or group 'press.sped'"), m_errors.constData());
}

// What stays is told once; what means something else now is told again.
void TestTagsProgram::takesAFileThatIsStoredAnew()
{
    const QByteArray head = "name,register,address,type,scale\nnumber,D_W,200,u16,\n";
    QVERIFY(store("live.csv", head + "speed,D_W,201,u16,0.1\n"));
    Program panel;
    QVERIFY(panel.startBytes(CNET_PANEL, {"monitor", "--tags", path("live.csv"), "--link",
                                          "tcp:" + m_plc->place().toLatin1()}));
    const auto shows = [&panel](const char *end) {
        return !panel.waitForLine([end](const QByteArray &line) { return line.endsWith(end); })
                    .isEmpty();
    };
    QVERIFY(shows("  speed  30.0"));
    QVERIFY(store("live.csv", head + "speed,D_W,201,u16,\npressure,D_W,202,u16,\n"));
    QVERIFY(shows("  speed  300"));
    QVERIFY(shows("  pressure  180"));
    QVERIFY(store("live.csv", head + "speed,D_W,20000,u16,\n2,X,1,,\n"));
    QTRY_VERIFY(panel.errors().contains("live.csv: 3 mistakes; the tags stay as they were"));
    QVERIFY(
        store("new.csv", "name,register,address,type\nstroke,D_W,204,u16\nnumber,D_W,200,u16\n"));
    QCOMPARE(std::rename(path("new.csv").constData(), path("live.csv").constData()), 0);
    QVERIFY(shows("  stroke  2500"));
    panel.signal(SIGTERM);
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(panel.lines().join('\n').count("  number  1\n"), 1);
    const QByteArray said = panel.errors();
    QVERIFY2(said.contains("live.csv: tags: 1 added, 1 changed (speed: scale), 1 unchanged"),
             said.constData());
    QVERIFY2(said.contains("live.csv:3:11: address: '20000'"), said.constData());
    QVERIFY2(said.contains("live.csv: tags: 1 added, 2 removed, 1 unchanged"), said.constData());
}

void TestTagsProgram::keepsItemsAndValuesOfArraysOverAFileStoredAnew()
{
    const QByteArray head = "name,register,address,type,count,scale\n";
    QVERIFY(store("live.csv", head + "zones,D_W,206,i16,4,0.1\n"));
    Program panel;
    QVERIFY(
        panel.startBytes(CNET_PANEL, {"monitor", "--tags", path("live.csv"), "D_W:201", "zones[1]",
                                      "D_W:200*2", "--link", "tcp:" + m_plc->place().toLatin1()}));
    const auto shows = [&panel](const char *end) {
        return !panel.waitForLine([end](const QByteArray &line) { return line.endsWith(end); })
                    .isEmpty();
    };
    QVERIFY(shows("  zones[1]  185.0"));
    QVERIFY(store("live.csv", head + "zones,D_W,206,i16,4,\nnew,D_W,1,,,\n"));
    QVERIFY(shows("  zones[1]  1850"));
    QVERIFY(store("live.csv", head + "zones,D_W,206,i16,1,\n"));
    QTRY_VERIFY(panel.errors().contains("zones is one value, not an array"));
    panel.signal(SIGTERM);
    QCOMPARE(panel.exitCode(), 0);
    QCOMPARE(panel.lines().join('\n').count("  1/D_W:201  300"), 2); // of two items
    const QByteArray said = panel.errors();
    QVERIFY2(said.contains("live.csv: tags: 1 changed (zones[1]: scale), 2 unchanged"),
             said.constData());
}

// Without --link: the line is the program's own, and has the stations that are asked for.
void TestTagsProgram::aStationOfANewTagIsSimulated()
{
    const QByteArray head = "name,register,address,station,type\nfirst,D_W,5000,1,u16\n";
    QVERIFY(store("live.csv", head));
    Program panel;
    QVERIFY(panel.startBytes(CNET_PANEL, {"monitor", "--tags", path("live.csv")}));
    const auto shows = [&panel](const char *end) {
        return !panel.waitForLine([end](const QByteArray &line) { return line.endsWith(end); })
                    .isEmpty();
    };
    QVERIFY(shows("  first  0"));
    QVERIFY(store("live.csv", head + "second,D_W,5000,9,u16\n"));
    QVERIFY(shows("  second  0"));
    panel.signal(SIGTERM);
    QCOMPARE(panel.exitCode(), 0);
}

void TestTagsProgram::reloadsOnAKey()
{
    QVERIFY(
        store("live.csv", "name,register,address,type,scale,unit\nspeed,D_W,201,u16,0.1,mm/s\n"));
    Terminal terminal;
    QVERIFY(terminal.start({CNET_PANEL, "monitor", "--tags", path("live.csv"), "--link",
                            "tcp:" + m_plc->place().toLatin1()}));
    QVERIFY2(terminal.displays("NAME"), terminal.screen().constData());
    QVERIFY2(terminal.displays("  speed     30.0 mm/s"), terminal.screen().constData());
    QVERIFY(terminal.type("r"));
    QVERIFY2(terminal.displays("live.csv: tags: 1 unchanged"), terminal.screen().constData());
    QVERIFY(terminal.type("wspeed=12.5\r"));
    QVERIFY2(terminal.displays("speed=12.5: written"), terminal.screen().constData());
    QVERIFY2(terminal.displays("  speed     12.5 mm/s"), terminal.screen().constData());
    QVERIFY(QFile::remove(QFile::decodeName(path("live.csv"))));
    QVERIFY(terminal.type("r"));
    QVERIFY2(terminal.displays("cannot read "), terminal.screen().constData());
    // What it watched before it goes on watching.
    QVERIFY(terminal.type("wspeed=13.5\r"));
    QVERIFY2(terminal.displays("  speed     13.5 mm/s"), terminal.screen().constData());
    QVERIFY(terminal.type("\x03"));
    QCOMPARE(terminal.wait(), 0);
}

QTEST_GUILESS_MAIN(TestTagsProgram)
#include "test_tags_program.moc"
