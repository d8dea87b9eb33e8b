#include "complaint.h"
#include "program.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

/** cnet-panel with files that are wrong: one line, the exit code, and nothing is transferred. */
class TestBadFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void refusesContent_data();
    void refusesContent();
    void refusesTags_data();
    void refusesTags();
    void refusesHugeFile();
    void refusesPlace_data();
    void refusesPlace();
    void refusesPipeForADriver();
    void saysThatOutputIsLost_data();
    void saysThatOutputIsLost();
    void closedOutputDoesNotReachTheLine();

private:
    QByteArray path(const char *name) const;
    bool write(const char *name, const QByteArray &content) const;
    void checkRefusal(const QList<QByteArray> &arguments, const QByteArray &message);

    QTemporaryDir m_directory;
    QTcpServer m_plc; ///< that must never be asked
};

namespace {

const int kUsage = 2;
const int kOutputLost = 5;
const QByteArray kHeader("station,register,address,count,value\n");
const QByteArray kGood("1,D_W,1,2,5,6\n");

} // namespace

QByteArray TestBadFiles::path(const char *name) const
{
    return m_directory.filePath(QLatin1String(name)).toLocal8Bit();
}

bool TestBadFiles::write(const char *name, const QByteArray &content) const
{
    QFile file(QString::fromLocal8Bit(path(name)));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

void TestBadFiles::initTestCase()
{
    QVERIFY(m_plc.listen(QHostAddress(QHostAddress::LocalHost), 0));
    QVERIFY(write("good.csv", kHeader + kGood));
    QVERIFY(write("tags", "name,register,address\na,D_W,1\n"));
    QCOMPARE(mkfifo(path("pipe").constData(), 0600), 0);
    QVERIFY(QFile::link(QLatin1String("circle"), QString::fromLocal8Bit(path("circle"))));
}

void TestBadFiles::checkRefusal(const QList<QByteArray> &arguments, const QByteArray &message)
{
    Program panel;
    const QByteArray link = "tcp:127.0.0.1:" + QByteArray::number(m_plc.serverPort());
    QVERIFY(panel.startBytes(CNET_PANEL, QList<QByteArray>(arguments) << "--link" << link));
    QCOMPARE(panel.exitCode(), kUsage);
    QCOMPARE(panel.lines(), QList<QByteArray>());
    QCOMPARE(faultOfComplaint(panel.errors(), "cnet-panel", message), QByteArray());
    QVERIFY(!m_plc.waitForNewConnection(0));
}

void TestBadFiles::refusesContent_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const QByteArray &content, const char *message) {
        QTest::newRow(name) << content << QByteArray(message);
    };
    const auto line = [&row](const char *name, const QByteArray &last, const char *message) {
        row(name, kHeader + kGood + last, message);
    };
    row("empty", "", ":1: the file has no items");
    row("byte order mark alone", "\xEF\xBB\xBF", ":1: the file has no items");
    row("header alone", kHeader, ":2: the file has no items");
    row("empty lines alone", QByteArray(1000000, '\n'), ":1000001: the file has no items");
    row("no column of values", "register,address,count\nD_W,1,1\n", ":1: a column is missing");
    row("unknown column", "register,address,colour,value\n", ":1: unknown column 'colour'");
    row("column twice", "register,register,address,value\n", ":1: two columns 'register'");
    row("column behind the values", "register,value,address\n", ":1: misplaced column 'address'");
    row("quoted columns", "\"register\",\"address\",\"value\"\n", ":1: unknown column '\"register");
    row("no header", kGood, ":1: unknown column '1'");
    row("nothing but commas", QByteArray(1000000, ','), ":1: a column is missing");
    row("endless column", QByteArray(8000000, 'x'), ":1: unknown column 'xxx");
    row("divided by semicolons", "register;address;value\nD_W;1;5\n",
        "; fields are divided by commas, not by semicolons");
    row("divided by tabs", "register\taddress\tvalue\nD_W\t1\t5\n",
        "; fields are divided by commas, not by tabs");
    row("deep nesting", QByteArray(8000000, '['), ":1: unknown column '[[[");
    row("another format", "{\"register\": \"D_W\", \"value\": 5}\n", ":1: unknown column '{");
    row("spreadsheet in UTF-16", QByteArray("\xFF\xFEr\0e\0g\0", 8), ":1: a zero byte");
    row("program",
        QByteArray("\x7F"
                   "ELF\2\1\1\0\0\0\n",
                   11),
        ":1: a zero byte");
    row("terminal codes in a column", "\x1b[2J,\x07\n", ":1: unknown column '?[2J'");
    row("longer than a recipe", QByteArray(9000000, '1'), "cannot be used: it is longer than");
    line("zero byte in a line", QByteArray("1,D_W,5,1,5\0,6\n", 15), ":3: a zero byte");
    line("zero byte behind the values", QByteArray("1,D_W,5,1,5\0", 12), ":3: a zero byte");
    line("bytes that are no text", "1,D_W,\xFF\xFE\x80,1,5\n", ":3: '1/D_W:???*1'");
    line("carriage return in a line", "1,D_W,5\r6,1,5\n", ":3: '1/D_W:5?6*1'");
    line("text for a station", "x,D_W,5,1,5\n", ":3: ");
    line("station above 31", "32,D_W,5,1,5\n", ":3: '32/D_W:5*1': a station is");
    line("endless register", "1," + QByteArray(4000000, 'D') + ",5,1,5\n", ":3: the driver has no");
    line("register of bits", "1,M_bit,1.1,1,1\n", ":3: '1/M_bit:1.1*1': a recipe holds words");
    line("contact", "1,TX,1,1,1\n", ":3: '1/TX:1*1': a recipe holds words");
    line("negative address", "1,D_W,-1,1,5\n", "an address of D_W is a number from 0 to 9999");
    line("endless address", "1,D_W," + QByteArray(4000000, '1') + ",1,5\n", "from 0 to 9999");
    line("address beyond 32 bits", "1,D_W,4294967301,1,5\n", "from 0 to 9999");
    line("negative count", "1,D_W,5,-1,5\n", ":3: ");
    line("count beyond 64 bits", "1,D_W,5,99999999999999999999,5\n", ":3: '1/D_W:5*9");
    line("fewer values than counted", "1,D_W,5,3,1,2\n", ":3: '1/D_W:5*3': expected 3 values");
    line("more values than counted", "1,D_W,5,1,1,2\n", ":3: '1/D_W:5*1': expected 1 values");
    line("neither count nor values", "1,D_W,5\n", ":3: '1/D_W:5': expected a count or values");
    line("value beyond 16 bits", "1,D_W,5,1,65536\n", ":3: '65536' is no value of D_W");
    line("value beyond 64 bits", "1,D_W,5,1," + QByteArray(4000000, '9'), ":3: '999");
    line("value with an exponent", "1,D_W,5,1,1e3\n", ":3: '1e3' is no value of D_W");
    line("value with a fraction", "1,D_W,5,1,1.5\n", ":3: '1.5' is no value of D_W");
    line("formula", "1,D_W,5,1,=1+1\n", ":3: '=1+1' is no value of D_W");
    line("empty value in between", "1,D_W,5,3,1,,3\n", ":3: '' is no value of D_W");
    line("address twice", "1,D_W,2,1,5\n", ":3: '1/D_W:2' overlaps '1/D_W:1*2' of line 2");
    line("mistake at the very end", "1,M_W,5,1,5\n#\n1,M_W,9,1,x", ":5: 'x' is no value of M_W");
    line("more words than a recipe", QByteArray("1,D_W,1,1,5\n").repeated(600000),
         ":65537: more words than the 65536");
}

void TestBadFiles::refusesContent()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, message);
    QVERIFY(write("bad.csv", content));
    checkRefusal({"recipe", "write", path("bad.csv")}, message);
}

void TestBadFiles::refusesTags_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("message");
    const auto row = [](const char *name, const QByteArray &content, const char *message) {
        QTest::newRow(name) << content << QByteArray(message);
    };
    const QByteArray head("name;register;address;scale\n");
    row("empty", "", ":1:1: no tags; expected a line that names the columns");
    row("header alone", head, ":2:1: no tags; expected");
    row("a recipe", kHeader + kGood, ":1:32: value: no such column; expected some of name");
    row("program",
        QByteArray("\x7F"
                   "ELF\2\1\1\0\0\0\n",
                   11),
        ":1:1: a zero byte");
    row("nothing but quotes", QByteArray(1000001, '"'), ": the quote in front is not closed");
    row("lines of quotes", head + QByteArray("\"\"x\n").repeated(100000),
        ": text behind the closing");
    row("endless column", QByteArray(8000000, 'x'), ":1:1: xxxx");
    row("terminal codes", head + "\x1b[2J;D_W;1\n", ":2:1: name: '?[2J' is no name");
    row("no register", head + "a;Q;1\n", ":2:3: register: the driver has no register 'Q', it has");
    row("address beyond 64 bits", head + "a;D_W;99999999999999999999\n", ":2:7: address: '99999");
    row("decimal comma", head + "a;D_W;1;0,5\n", "the decimal sign is a point, for example 0.5");
    row("a mistake at the very end", head + "a;D_W;1\n#\na;D_W;2",
        ":4:1: name: 'a' is the name of");
    row(
        "more tags than a file may have",
        head +
            [] {
                QByteArray rows;
                for (int i = 0; i < 100001; ++i) {
                    rows += 'a' + QByteArray::number(i) + ";D_W;1\n";
                }
                return rows;
            }(),
        ":100002:1: more tags than the 100000 that a file may have");
}

void TestBadFiles::refusesTags()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, message);
    QVERIFY(write("tags.csv", content));
    Program list;
    QVERIFY(list.startBytes(CNET_PANEL, {"tags", "list", path("tags.csv")}));
    QCOMPARE(list.exitCode(), kUsage);
    QCOMPARE(list.lines(), QList<QByteArray>());
    QCOMPARE(faultOfComplaint(list.errors(), "cnet-panel", message), QByteArray());
    Program check;
    QVERIFY(check.startBytes(CNET_PANEL, {"tags", "check", path("tags.csv"), "--limit", "1"}));
    QCOMPARE(check.exitCode(), kUsage);
    QVERIFY2(check.lines().value(0).contains(message), check.lines().value(0).constData());
    QCOMPARE(check.errors(), QByteArray());
}

// Mostly a hole, which takes no room on the disk.
void TestBadFiles::refusesHugeFile()
{
    QVERIFY(write("huge.csv", kHeader + kGood));
    QVERIFY(QFile::resize(QString::fromLocal8Bit(path("huge.csv")), 4LL << 30));
    checkRefusal({"recipe", "write", path("huge.csv")},
                 "cannot be used: it is longer than 8388608");
}

void TestBadFiles::refusesPlace_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<QByteArray>("message");
    const auto file = [](const char *name, const QByteArray &place, const char *message) {
        QTest::newRow(name) << QList<QByteArray>{"recipe", "write", place} << QByteArray(message);
    };
    const auto output = [this](const char *name, const QByteArray &place, const char *message) {
        QTest::newRow(name) << QList<QByteArray>{"recipe", "read", path("good.csv"), "--output",
                                                 place}
                            << QByteArray(message);
    };
    file("no file name", "", "cannot read : No such file");
    file("no such file", "/nowhere/a\nb", "cannot read /nowhere/a?b: No such file");
    file("name longer than any", "/" + QByteArray(100000, 'a'), "File name too long");
    file("name that is no text", "\xff\xfe", "No such file");
    file("directory", "/", "cannot read /: Is a directory");
    file("zeros without end", "/dev/zero", "/dev/zero cannot be used: it is longer than");
    file("noise without end", "/dev/urandom", "/dev/urandom cannot be used: it is longer than");
    file("nothing", "/dev/null", "/dev/null:1: the file has no items");
    file("file that cannot be read", "/proc/self/mem", "cannot read /proc/self/mem: ");
    file("link to itself", path("circle"), "Too many levels of symbolic links");
    output("no name for the output", "", "cannot write : the name is empty");
    output("output into no directory", "/nowhere/x", "cannot write /nowhere/x: No such file");
    output("output where files cannot be", "/proc/x", "cannot write /proc/x: ");
    output("output with an endless name", "/" + QByteArray(300, 'a'), "File name too long");
    output("output to a directory", "/tmp", "cannot write /tmp: it is no regular file");
    output("output behind a file", "/etc/passwd/x", "Not a directory");
    // A file would take their place.
    output("output to a device", "/dev/full", "/dev/full: it is no regular file");
    output("output to a pipe", path("pipe"), "it is no regular file");
    output("output to a link to itself", path("circle"), "Too many levels of symbolic links");
}

void TestBadFiles::refusesPlace()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, message);
    checkRefusal(arguments, message);
}

// To open it would take for ever.
void TestBadFiles::refusesPipeForADriver()
{
    Program panel;
    QVERIFY(panel.startBytes(CNET_PANEL, {"--driver", path("pipe"), "describe"}));
    QCOMPARE(panel.exitCode(), 4);
    QCOMPARE(faultOfComplaint(panel.errors(), "cnet-panel", "pipe is no regular file"),
             QByteArray());
}

void TestBadFiles::saysThatOutputIsLost_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    const auto row = [](const QList<QByteArray> &arguments) {
        QTest::newRow(arguments.join(' ').constData()) << arguments;
    };
    row({"--help"});
    row({"--version"});
    row({"describe"});
    row({"check", "D_W", "1"});
    row({"series", "D_W", "1", "--count", "100000"});
    row({"read", "D_W:1"});
    row({"write", "D_W:1=1", "--link", "sim"});
    row({"monitor", "D_W:1"}); // ends by itself, for nobody sees anything any more
    row({"monitor", "--format", "csv", "D_W:1"});
    row({"monitor", "--format", "json", "D_W:1"});
    row({"recipe", "read", path("good.csv")});
    row({"tags", "check", path("tags")});
    row({"tags", "list", path("tags")});
}

void TestBadFiles::saysThatOutputIsLost()
{
    QFETCH(QList<QByteArray>, arguments);
    for (const char *const place : {"/dev/full", "&-"}) {
        Program panel;
        panel.setOutput(place);
        QVERIFY(panel.startBytes(CNET_PANEL, arguments));
        QCOMPARE(panel.exitCode(), kOutputLost);
        QCOMPARE(panel.errors().count("cnet-panel: cannot write to standard output: "), 1);
    }
}

// What is opened first would else get the number of standard output, and that would be the line.
void TestBadFiles::closedOutputDoesNotReachTheLine()
{
    QTcpServer plc;
    QVERIFY(plc.listen(QHostAddress(QHostAddress::LocalHost), 0));
    Program panel;
    panel.setOutput("&- <&-");
    QVERIFY(panel.startBytes(CNET_PANEL,
                             {"read", "D_W:1", "--timeout", "20", "--retries", "2", "--link",
                              "tcp:127.0.0.1:" + QByteArray::number(plc.serverPort())}));
    QVERIFY(plc.waitForNewConnection(30000));
    QTcpSocket *const line = plc.nextPendingConnection();
    while (line->state() == QAbstractSocket::ConnectedState) {
        line->waitForReadyRead(1000);
    }
    const QByteArray sent = line->readAll();
    const QRegularExpression requests(
        QRegularExpression::anchoredPattern(QLatin1String("(\x05"
                                                          "01r[^\x04]+\x04..){2}")));
    QVERIFY2(requests.match(QString::fromLatin1(sent)).hasMatch(), sent.constData());
    QVERIFY(panel.exitCode() > 0);
}

QTEST_GUILESS_MAIN(TestBadFiles)
#include "test_bad_files.moc"
