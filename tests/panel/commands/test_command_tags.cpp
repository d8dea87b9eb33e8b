#include "panel/command_line_rows.h"

#include "panel/system/exit_code.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestCommandTags : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void prints_data();
    void prints();

private:
    QTemporaryDir m_directory;
};

void TestCommandTags::initTestCase()
{
    QVERIFY(QDir::setCurrent(m_directory.path()));
    const auto write = [](const char *name, const QByteArray &content) {
        QFile file{QLatin1String(name)};
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    };
    QVERIFY(write("good.csv", "name;register;address;type;unit;group\n"
                              "press.speed;D_W;100;f32;mm/s;press\n"
                              "press.temp;D_W;101;;;press\n"
                              "oven.on;M_bit;3.5;bool;;oven\n"));
    QVERIFY(write("station.csv", "name,register,address\na,D_W,1\n"));
    QVERIFY(write("bad.csv", "name,register,address,scale\n"
                             "a,D_W,10000,0\n"
                             "a,D_W,1,1\n"
                             "good,D_W,2,1\n"));
    // The driver knows that the words do not fit.
    QVERIFY(write("long.csv", "name,register,address,count\na,D_W,9999,2\n"));
}

void TestCommandTags::cleanupTestCase()
{
    QVERIFY(QDir::setCurrent(QDir::rootPath()));
}

void TestCommandTags::prints_data()
{
    addCommandLineColumns();
    const char form[] = "expected tags check FILE or tags list FILE [NAME|GROUP|GLOB]...";
    addCommandLine("", kUsage, "", form);
    addCommandLine("chek x", kUsage, "", form);
    addCommandLine("check", kUsage, "", "expected tags check FILE");
    addCommandLine("check good.csv bad.csv", kUsage, "", "expected tags check FILE");
    addCommandLine("check good.csv", kFine,
                   "good.csv:2:21: warning: type: f32 takes D_W:100 to 101, and 'press.temp' of "
                   "line 3 begins at 101 already; expected a shorter type, or the next one further "
                   "on, for example at 102|good.csv: 0 mistakes, 1 warning, 3 good tags on station "
                   "1; divided by semicolons|");
    addCommandLine("check station.csv --station 9", kFine,
                   "station.csv: 0 mistakes, 0 warnings, 1 good tag on station 9; divided by "
                   "commas|");
    addCommandLine("check bad.csv", kUsage,
                   "bad.csv:2:7: address: '10000' is no address of D_W, which is a number from 0 "
                   "to 9999, for example 0|bad.csv:2:13: scale: '0' makes every value the same, "
                   "and none could be written; expected another number, for example 0.1|"
                   "bad.csv:3:1: name: 'a' is the name of line 2 already; expected another one, "
                   "for example a_2|bad.csv: 3 mistakes, 0 warnings, 1 good tag on station 1;");
    addCommandLine("check bad.csv --limit 0", kUsage, "bad.csv: 3 mistakes (0 listed), 0 warnings");
    addCommandLine("check long.csv", kUsage, "long.csv:2:12: count: 2 values of raw do not fit");
    addCommandLine("check bad.csv --limit 1 --format json", kUsage,
                   "{\"byteOrderMark\":false,\"divider\":\",\",\"event\":\"tags\",\"file\":"
                   "\"bad.csv\",\"good\":false,\"mistakeCount\":3,\"mistakes\":[{\"column\":7,"
                   "\"field\":\"address\",\"line\":2,\"text\":\"'10000' is no address of D_W, "
                   "which is a number from 0 to 9999, for example 0\"}],\"stations\":[1],\"tags\":"
                   "1,\"warningCount\":0,\"warnings\":[]}|");
    addCommandLine("check good.csv --format csv", kUsage, "", "expected text or json");
    addCommandLine("check good.csv --limit x", kUsage, "", "--limit");
    addCommandLine("check good.csv --station 32", kUsage, "", "--station");
    addCommandLine("check /nowhere", kUsage, "", "cannot read /nowhere: No such file");
    addCommandLine("check good.csv --link sim", kUsage, "", "Unknown option 'link'");
    addCommandLine("list", kUsage, "", "expected tags list FILE [NAME|GROUP|GLOB]...");
    addCommandLine("list good.csv", kFine,
                   "NAME         ADDRESS      TYPE  UNIT  ACCESS      GROUP  DESCRIPTION|"
                   "press.speed  1/D_W:100    f32   mm/s  read-write  press|"
                   "press.temp   1/D_W:101    raw         read-write  press|"
                   "oven.on      1/M_bit:3.5  bool        read-write  oven|");
    addCommandLine("list good.csv oven *.speed --format csv", kFine,
                   "name,register,address,station,type,unit,group|oven.on,M_bit,3.5,1,bool,,oven|"
                   "press.speed,D_W,100,1,f32,mm/s,press|");
    addCommandLine("list good.csv oven.on --format json", kFine,
                   "{\"access\":\"read-write\",\"address\":\"3.5\",\"count\":1,\"event\":\"tag\","
                   "\"group\":\"oven\",\"name\":\"oven.on\",\"offset\":0,\"register\":\"M_bit\","
                   "\"scale\":1,\"station\":1,\"type\":\"bool\"}|");
    addCommandLine("list good.csv press.sped", kUsage, "",
                   "no tag or group 'press.sped'; did you mean press.speed?");
    addCommandLine("list bad.csv", kUsage, "",
                   "bad.csv:2:7: address: '10000' is no address of D_W, which is a number from 0 "
                   "to 9999, for example 0; and 2 more mistakes, which tags check lists");
}

void TestCommandTags::prints()
{
    checkCommandLine("tags");
}

QTEST_GUILESS_MAIN(TestCommandTags)
#include "test_command_tags.moc"
