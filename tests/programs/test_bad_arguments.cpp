#include "complaint.h"
#include "program.h"

#include <QTcpServer>
#include <QtTest>

/** cnet-panel with command lines that are wrong: one line, the exit code, and nothing is sent. */
class TestBadArguments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void refuses_data();
    void refuses();

private:
    QTcpServer m_plc; ///< that must never be asked
};

namespace {

const int kUsage = 2;
const int kNoLink = 3;
const int kNoDriver = 4;

QByteArray longText(char letter = 'A')
{
    return QByteArray(100000, letter); // of one argument the system takes not much more
}

// The arguments stand as bytes, for they need not be text.
void row(const char *name, const QList<QByteArray> &arguments, int exitCode, const char *message)
{
    QTest::newRow(name) << arguments << exitCode << QByteArray(message);
}

void addCommandRows()
{
    row("no command", {}, kUsage, "expected a command");
    row("empty command", {""}, kUsage, "expected a command");
    row("unknown command", {"bogus"}, kUsage, "no command 'bogus'");
    row("line break in a command", {"mon\nitor"}, kUsage, "no command 'mon?itor'");
    row("endless command", {longText()}, kUsage, "; --help lists them");
    row("terminal codes in a command", {"\x1b[2J\x1b]0;x\x07"}, kUsage, "no command '?[2J?]0;x?'");
    row("command that is no text", {"\xff\xfe\x80"}, kUsage, "no command");
    row("line break in an option", {"read", "--li\nnk", "D_W:1"}, kUsage, "option 'li?nk'");
    row("endless option", {"read", "--" + longText(), "D_W:1"}, kUsage, "Unknown option 'AAA");
    row("option twice with a late mistake", {"read", "--station", "1", "--station", "x", "D_W:1"},
        kUsage, "--station 'x'");
    row("value for an option that takes none", {"read", "--trace=yes", "D_W:1"}, kUsage, "trace");
    row("option of another command", {"write", "--format", "csv", "D_W:1=1"}, kUsage, "format");
    row("argument of describe", {"describe", "x\ny"}, kUsage, "'x?y': describe takes no arguments");
    row("check without an address", {"check", "D_W"}, kUsage, "expected a register and an address");
    row("check of no words", {"check", "D_W", "1", "--words", "0"}, kUsage, "--words '0'");
    row("check of endlessly many", {"check", "D_W", "1", "--words", longText('9')}, kUsage,
        "expected a number from 1 to");
    row("series of none", {"series", "D_W", "1"}, kUsage, "expected --count N");
    row("series of too many", {"series", "D_W", "1", "--count", "1000001"}, kUsage, "1 to 1000000");
    row("series with a bad step", {"series", "D_W", "1", "--count", "1", "--step", "-1"}, kUsage,
        "expected a number from 1 to 1000000, word or dword");
    row("series of an unknown register", {"series", longText(), "1", "--count", "1"}, kUsage,
        "it has D_W");
    row("series from an endless address", {"series", "D_W", longText('1'), "--count", "1"}, kUsage,
        "an address of D_W is a number from 0 to 9999");
}

void addIdentifyAndTagRows()
{
    row("identify nothing", {"identify"}, kUsage, "expected at least one item");
    row("identify two items", {"identify", "D_W:1", "D_W:2"}, kUsage, "expected one item of 1 to");
    row("identify 61 words", {"identify", "D_W:1*61"}, kUsage, "expected one item of 1 to 60");
    row("identify what has a type", {"identify", "D_W:1@u16"}, kUsage, "words without a type");
    row("identify an endless item", {"identify", longText()}, kUsage, "for example 1/D_W:100*10");
    row("identify in no format", {"identify", "--format", "x\ny", "D_W:1"}, kUsage, "'x?y'");
    row("value for --all", {"identify", "--all=1", "D_W:1"}, kUsage, "all");
    row("tags alone", {"tags"}, kUsage, "expected tags check FILE or tags list FILE");
    row("unknown command of tags", {"tags", "b\ngus"}, kUsage, "expected tags check FILE or");
    row("check of no tags", {"tags", "check"}, kUsage, "expected tags check FILE");
    row("check of two tag files", {"tags", "check", "a", "b"}, kUsage, "expected tags check FILE");
    row("tags that are not there", {"tags", "check", "/no/s\nch"}, kUsage, "/no/s?ch: No such");
    row("tags in a directory", {"tags", "list", "/"}, kUsage, "cannot read /: Is a directory");
    row("tags without end", {"tags", "check", "/dev/zero"}, kUsage, "longer than 33554432 bytes");
    row("tags of an endless name", {"tags", "list", "/" + longText()}, kUsage, "name too long");
    row("negative limit", {"tags", "check", "--limit", "-1", "x"}, kUsage, "from 0 to 1000000");
    row("endless limit", {"tags", "check", "--limit", longText('9'), "x"}, kUsage, "from 0 to");
    row("limit of a list", {"tags", "list", "--limit", "1", "x"}, kUsage, "option 'limit'");
    row("tags of station 32", {"tags", "check", "--station", "32", "x"}, kUsage, "from 0 to 31");
    row("tags checked as a table", {"tags", "check", "--format", "csv", "x"}, kUsage, "or json");
    row("list of no tags", {"tags", "list"}, kUsage, "expected tags list FILE");
    row("list in no format", {"tags", "list", "--format", "x\ny", "x"}, kUsage, "'x?y'");
    row("names of nothing", {"read", "--link", "sim", "--tags"}, kUsage, "Missing value");
    row("names of a file without a name", {"read", "--tags", "", "x"}, kUsage, "cannot read : No");
    row("names without end", {"monitor", "--tags", "/dev/zero", "x"}, kUsage, "longer than");
    row("names of a directory", {"write", "--tags", "/", "x=1"}, kUsage, "Is a directory");
    row("names of what is no text", {"identify", "--tags", "/bin/true", "x"}, kUsage,
        "a zero byte");
    row("list that is no text", {"read", "@/bin/true"}, kUsage,
        ":1: a zero byte; expected text in UTF-8");
}

void addRecipeAndFileRows()
{
    row("recipe alone", {"recipe"}, kUsage, "expected recipe write FILE or recipe read FILE");
    row("unknown command of recipe", {"recipe", "b\ngus"}, kUsage, "expected recipe write FILE");
    row("recipe from nowhere", {"recipe", "write", "x"}, kUsage, "expected --link, where to");
    row("no recipe", {"recipe", "read"}, kUsage, "expected recipe read FILE");
    row("two recipes", {"recipe", "write", "a", "b", "--link", "sim"}, kUsage, "recipe write FILE");
    row("read of a recipe that verifies", {"recipe", "read", "--no-verify", "x"}, kUsage, "verify");
    row("written recipe with an output", {"recipe", "write", "--output", "x", "y"}, kUsage,
        "Unknown option 'output'");
    const auto stats = [](const char *name, const QByteArray &file, const char *message) {
        row(name, {"monitor", "--stats", file, "D_W:1"}, kUsage, message);
    };
    stats("statistics without a name", "", "cannot write : the name is empty");
    stats("statistics into a directory", "/", "cannot write /: it is no regular file");
    stats("statistics in no directory", "/nowhere/a\nb", "/nowhere/a?b: No such file");
    stats("statistics with an endless name", "/" + longText(), "File name too long");
    row("statistics of a scan", {"scan", "--link", "sim", "--stats", "/nowhere/x"}, kUsage,
        "Unknown option 'stats'");
    row("statistics of a replay", {"replay", "--link", "sim", "--stats", "/nowhere/x", "y"}, kUsage,
        "Unknown option 'stats'");
    row("check of words and bits", {"check", "--words", "1", "--bits", "1", "D_W", "1"}, kUsage,
        "expected --words or --bits, not both");
    row("check of a third argument", {"check", "D_W", "1", "2"}, kUsage, "expected a register");
    row("value for --write", {"check", "--write=1", "D_W", "1"}, kUsage, "write");
    row("series from nowhere", {"series", "D_W", "--count", "1"}, kUsage, "expected a register");
    row("describe in a format", {"describe", "--format", "json"}, kUsage, "option 'format'");
}

void addFrameRows()
{
    row("decode of nothing", {"decode"}, kUsage, "expected a frame, a file or -");
    row("decode of an empty text", {"decode", ""}, kUsage, "there is no frame in it");
    row("decode of a wrong digit", {"decode", "05 30 3G"}, kUsage,
        "line 1, column 8: expected two");
    row("decode of half an escape", {"decode", "<ENQ>01\\x0"}, kUsage,
        "line 1, column 8: expected \\x");
    row("decode of an endless text", {"decode", longText()}, kUsage, "the line is too long");
    row("decode of a directory", {"decode", "/"}, kUsage, "/");
    row("decode as a table", {"decode", "--format", "csv", "05"}, kUsage, "expected text or json");
    const QByteArray read("01rSB08%DW0010001");
    row("send without a link", {"--trace", "send", read}, kUsage, "expected --link");
    row("send of nothing", {"send"}, kUsage, "expected a frame");
    row("send of an empty text", {"send", "--bcc", ""}, kUsage, "expected a frame");
    row("send of a wrong digit", {"send", "05 3G"}, kUsage, "column 5: expected two hexadecimal");
    row("send of half an escape", {"send", "\\x0"}, kUsage, "column 1: expected \\x and two");
    row("send of another script", {"send", "\u0661"}, kUsage, "a character of one byte");
    row("send of an endless text", {"send", longText('z')}, kUsage, "at most 1024");
    row("send of a write", {"send", "--bcc", "01wSB08%DW00100011234"}, kUsage, "--yes sends it");
    row("send of a second write", {"send", "--bcc", read + "<ENQ>01wSB"}, kUsage, "--yes sends it");
    row("send of no frame", {"send", read}, kUsage, "no plain reading");
    row("send with a bad time-out", {"send", "--bcc", read, "--timeout", "0"}, kUsage, "from 1 to");
    row("send as a table", {"send", "--bcc", read, "--format", "csv"}, kUsage, "text or json");
}

void addReplayRows()
{
    row("replay of nothing", {"replay", "--offline"}, kUsage, "expected one capture");
    row("replay of two", {"replay", "--offline", "a", "b"}, kUsage, "expected one capture");
    row("replay nowhere", {"--trace", "replay", PRESS_CAPTURE}, kUsage,
        "expected --link LINK, where to send the requests, or --offline");
    row("replay at two places", {"replay", PRESS_CAPTURE, "--offline", "--link", "sim"}, kUsage,
        "or --offline");
    const auto offline = [](const char *name, const QByteArray &file, const char *message) {
        row(name, {"replay", "--offline", file}, kUsage, message);
    };
    offline("replay of no file", "/nowhere/a\nb", "/nowhere/a?b");
    offline("replay of a directory", "/", "/");
    offline("replay of an endless name", "/" + longText(), "File name too long");
    offline("replay of an empty file", "/dev/null", "it is empty");
    offline("replay of text", "/etc/passwd", "/etc/passwd: it is no pcapng file");
    row("replay of a line that is not there",
        {"replay", "--offline", PRESS_CAPTURE, "--replay-line", "x\ny"}, kUsage,
        "no line 'x?y' in it; there is '");
    for (const QByteArray speed : {"0", "-1", "1001", "nan", "inf", "1x", ""}) {
        row(("replay at a speed of '" + speed + "'").constData(),
            {"replay", "--offline", PRESS_CAPTURE, "--speed", speed}, kUsage,
            "expected a number from 0.01 to 1000, or full");
    }
    row("replay at an endless speed",
        {"replay", "--offline", PRESS_CAPTURE, "--speed", longText('9')}, kUsage, "to 1000");
    row("replay as a table", {"replay", "--offline", PRESS_CAPTURE, "--format", "csv"}, kUsage,
        "expected text or json");
}

void addScanRows()
{
    row("scan without a line", {"scan"}, kUsage, "expected --link LINK, or --serial DEVICE");
    row("scan of two lines", {"scan", "--serial", "/dev/x", "--link", "sim"}, kUsage,
        "expected --link");
    row("scan of no device", {"scan", "--serial", ""}, kUsage, "expected serial:DEVICE");
    row("scan with settings that are none", {"scan", "--serial", "/dev/x,1"}, kUsage,
        "serial:DEVICE");
    row("scan of station 32", {"scan", "--stations", "0-32"}, kUsage, "stations from 0 to 31");
    row("scan of stations backwards", {"scan", "--stations", "5-1"}, kUsage,
        "stations from 0 to 31");
    row("scan of no stations", {"scan", "--stations", ""}, kUsage, "stations from 0 to 31");
    row("scan of endless stations", {"scan", "--stations", longText('1')}, kUsage, "0 to 31");
    row("scan of a line break", {"scan", "--stations", "1,\n"}, kUsage, "'1,?'");
    row("scan of an item", {"scan", "D_W:1"}, kUsage, "'D_W:1': scan takes no arguments");
    row("scan as a table", {"scan", "--format", "csv"}, kUsage, "expected text or json");
}

void addCaptureRows()
{
    const auto capture = [](const char *name, const QByteArray &file, const char *message) {
        row(name, {"read", "--capture", file, "D_W:1"}, kUsage, message);
    };
    capture("capture without a name", "", "expected the name of a file, or -");
    capture("capture in no directory", "/nowhere/a\nb", "to /nowhere/a?b: No such file");
    capture("capture to a directory", "/", "cannot write the capture to /: Is a directory");
    capture("capture with an endless name", "/" + longText(), "File name too long");
    row("capture in no format", {"read", "--capture", "/nowhere/x", "--capture-as", "", "D_W:1"},
        kUsage, "--capture-as '': expected pdu or rtac");
    row("format of no capture", {"read", "--capture-as", "pdu", "D_W:1"}, kUsage,
        "--capture-as: expected --capture FILE with it");
    row("capture of endless size",
        {"read", "--capture", "x", "--capture-size", longText('9'), "D_W:1"}, kUsage,
        "expected bytes from 16k to 1024G");
    row("capture of no age", {"read", "--capture", "x", "--capture-age", "-1", "D_W:1"}, kUsage,
        "expected seconds from 1 to 366d");
    row("capture that is too small", {"read", "--capture", "x", "--capture-size", "1", "D_W:1"},
        kUsage, "expected bytes from 16k to 1024G");
    row("ring of no captures", {"read", "--capture", "x", "--capture-files", "0", "D_W:1"}, kUsage,
        "--capture-files '0': expected a number from 1 to 1000");
    row("capture of a frame to a directory",
        {"send", "--bcc", "01rSB08%DW0010001", "--capture", "/"}, kUsage, "/: Is a directory");
    row("capture of a scan to a directory", {"scan", "--link", "sim", "--capture", "/"}, kUsage,
        "/: Is a directory");
    row("ring of captures that is none",
        {"read", "--capture", "/dev/null", "--capture-age", "1", "D_W:1"}, kUsage,
        "it is no regular file, which a size or an age needs");
}

void addNumberRows()
{
    const auto number = [](const char *name, const char *option, const QByteArray &value) {
        row(name, {"read", option, value, "D_W:1"}, kUsage, "expected a number from");
    };
    number("station above 31", "--station", "32");
    row("placeholders for a station", {"read", "--station", "%1%2%3%4", "D_W:1"}, kUsage,
        "--station '%1%2%3%4': expected a number from 0 to 31");
    number("line break in a station", "--station", "1\n2");
    number("endless station", "--station", longText('1'));
    number("station beyond 32 bits", "--station", "4294967297");
    number("hexadecimal station", "--station", "0x1");
    number("empty station", "--station", "");
    number("block of no words", "--block-words", "0");
    number("no attempts", "--retries", "0");
    number("fraction of a millisecond", "--timeout", "0.5");
    number("time-out that is no number", "--timeout", "nan");
    number("time-out beyond 64 bits", "--timeout", "99999999999999999999");
    row("negative interval", {"monitor", "--interval", "-1", "D_W:1"}, kUsage,
        "expected a number from 0");
    row("interval beyond 64 bits", {"monitor", "--interval", "99999999999999999999", "D_W:1"},
        kUsage, "expected a number from 0");
    row("interval of a single read", {"read", "--interval", "5", "D_W:1"}, kUsage, "interval");
    number("block of more words than a byte counts", "--block-words", "256");
    number("negative attempts", "--retries", "-1");
    number("attempts beyond 64 bits", "--retries", "99999999999999999999");
    row("no rounds", {"monitor", "--count", "0", "D_W:1"}, kUsage, "from 1 to 1000000000");
    row("rounds that are no number", {"monitor", "--count", "x\ny", "D_W:1"}, kUsage, "'x?y'");
    row("endless rounds", {"monitor", "--count", longText('9'), "D_W:1"}, kUsage, "from 1 to");
    row("an object of no bits", {"check", "--bits", "0", "D_W", "1"}, kUsage, "from 1 to");
    row("an object of endless words", {"check", "--words", longText('1'), "D_W", "1"}, kUsage,
        "from 1 to 2147483647");
    row("endless duration", {"monitor", "--for", "1e999", "D_W:1"}, kUsage, "number of seconds");
    row("duration that is none", {"monitor", "--for", "in\nf", "D_W:1"}, kUsage, "'in?f'");
    row("endless format", {"read", "--format", longText(), "D_W:1"}, kUsage, "json or csv");
}

void addItemRows()
{
    row("no item", {"read"}, kUsage, "expected at least one item");
    row("empty item", {"read", ""}, kUsage, "expected [STATION/]REGISTER:ADDRESS[*COUNT]");
    row("line break in an item", {"read", "D_W:1\n"}, kUsage, "'D_W:1?'");
    row("terminal codes in an item", {"read", "\x1b[31mD_W:1"}, kUsage, "no register '?[31mD_W'");
    row("endless item", {"read", longText()}, kUsage, "for example 1/D_W:100*10");
    row("endless register", {"read", longText() + ":1"}, kUsage, "it has D_W");
    row("endless address", {"read", "D_W:" + longText('1')}, kUsage, "from 0 to 9999");
    row("endless count", {"read", "D_W:1*" + longText('1')}, kUsage,
        "expected a count of 1 to 9999, since");
    row("endless station of an item", {"read", longText('1') + "/D_W:1"}, kUsage, "from 0 to 31");
    row("item that is no text", {"read", "D_W:\xff\xfe"}, kUsage, "from 0 to 9999");
    row("digits of another script", {"read", "D_W:\u0661"}, kUsage, "from 0 to 9999");
    row("address beyond 32 bits", {"read", "D_W:4294967396"}, kUsage, "from 0 to 9999");
    row("count of none", {"read", "D_W:1*0"}, kUsage, "expected a count of 1 to 9999, since");
    row("count beyond the last address", {"read", "D_W:9999*2"}, kUsage,
        "expected a count of 1, since");
    row("bit above 15", {"read", "M_bit:1.16"}, kUsage, "from 0.0 to 255.15");
    row("bad item behind good ones", {"read", "D_W:1", "M_W:2", "D_W:x"}, kUsage, "'D_W:x'");
    row("bad item of a monitor", {"monitor", "D_W:1", "D_W:10000"}, kUsage, "'D_W:10000'");
    row("endless type", {"read", "D_W:1@" + longText()}, kUsage, "is no type; expected bool");
    row("terminal codes in a type", {"read", "D_W:1@\x1b[31m"}, kUsage, "'?[31m' is no type");
    row("endless scale", {"read", "D_W:1@i16*" + longText('1')}, kUsage, "a number other than 0");
    row("endless string", {"read", "D_W:1@string" + longText('1')}, kUsage, "1 to 65535");
    row("type longer than its area", {"read", "D_W:9999@f64"}, kUsage, "would take 4 words");
    row("values beyond 32 bits", {"read", "D_W:0*10000@string65535"}, kUsage, "327680000 words");
    row("list that is none", {"read", "@/no/such/list"}, kUsage, "cannot read /no/such/list");
    row("list without end", {"read", "@/dev/zero"}, kUsage, "it is longer than 16777216 bytes");
    row("a list that is a directory", {"monitor", "@/"}, kUsage, "cannot read /: ");
    row("endless typed value", {"write", "D_W:1@u64=" + longText('9')}, kUsage, "no value of u64");
    row("text without an end", {"write", "D_W:1@string4=\"a"}, kUsage, "quotation mark");
    row("identify bits", {"identify", "M_bit:1.1"}, kUsage, "expected one item of 1 to 60 words");
    row("no value", {"write", "D_W:1"}, kUsage, "expected ITEM=VALUE");
    row("empty value", {"write", "D_W:1="}, kUsage, "'' is no value of D_W");
    row("value beyond 16 bits", {"write", "D_W:1=65536"}, kUsage, "'65536' is no value");
    row("endless value", {"write", "D_W:1=" + longText('9')}, kUsage, "-32768 to 65535");
    row("a list with a bad last value", {"write", "D_W:1=" + QByteArray("1,").repeated(5000) + "x"},
        kUsage, "'x' is no value of D_W");
    row("a list beyond the last address", {"write", "D_W:9999=1,2"}, kUsage, "out of range");
    row("bad write behind good ones", {"write", "D_W:1=1", "M_bit:1.1=1", "TX:1=2"}, kUsage,
        "'2' is no value of TX, which is 0 or 1");
    row("bad address behind good writes", {"write", "D_W:1=1", "D_W:10000=1"}, kUsage, "10000");
}

void addLinkRows()
{
    const auto link = [](const char *name, const QByteArray &text, int exitCode,
                         const char *message) {
        row(name, {"write", "D_W:1=1", "--link", text}, exitCode, message);
    };
    link("empty link", "", kUsage, "expected --link, where to write");
    link("unknown kind of link", "udp:127.0.0.1:1", kUsage,
         "expected tcp:HOST:PORT or serial:DEVICE");
    link("no port", "tcp:127.0.0.1", kUsage, "a port from 1 to 65535");
    link("port 0", "tcp:127.0.0.1:0", kUsage, "a port from 1 to 65535");
    link("port beyond 16 bits", "tcp:127.0.0.1:65536", kUsage, "a port from 1 to 65535");
    link("line break in a host", "tcp:a\nb:1", kNoLink, "cannot open tcp a?b:1");
    link("placeholder for a host", "tcp:%2:1", kNoLink, "cannot open tcp %2:1");
    link("endless host", "tcp:" + longText() + ":1", kNoLink, "Host not found");
    link("nobody at the port", "tcp:127.0.0.1:1", kNoLink, "cannot open tcp 127.0.0.1:1");
    link("no device", "serial:", kUsage, "expected serial:DEVICE");
    link("line settings that are none", "serial:/dev/null,1,2,3,4", kUsage, "serial:DEVICE");
    link("more line settings", "serial:/dev/null,9600,8,NONE,1,1", kUsage, "serial:DEVICE");
    link("device that is not there", "serial:/nowhere/tty", kNoLink, "No such file");
    link("device without end", "serial:/dev/zero", kNoLink, "cannot open serial /dev/zero");
    link("device that is full", "serial:/dev/full", kNoLink, "cannot open serial /dev/full");
    link("file for a device", "serial:/etc/passwd", kNoLink, "cannot open serial /etc/passwd");
    link("directory for a device", "serial:/", kNoLink, "cannot open serial /");
    link("endless device", "serial:" + longText(), kNoLink, "cannot open serial AAA");
    row("no driver", {"--driver", "/nowhere/x.so", "describe"}, kNoDriver, "cannot load");
    row("text for a driver", {"--driver", "/etc/passwd", "describe"}, kNoDriver, "cannot load");
    row("directory for a driver", {"--driver", "/", "describe"}, kNoDriver, "/ is no regular file");
    row("device for a driver", {"--driver", "/dev/zero", "describe"}, kNoDriver, "no regular file");
    row("program for a driver", {"--driver", CNET_PLC, "describe"}, kNoDriver, "cannot load");
    row("endless driver", {"--driver", longText(), "describe"}, kNoDriver, "cannot load");
}

} // namespace

void TestBadArguments::initTestCase()
{
    QVERIFY(m_plc.listen(QHostAddress(QHostAddress::LocalHost), 0));
}

void TestBadArguments::refuses_data()
{
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("message");
    addCommandRows();
    addCaptureRows();
    addIdentifyAndTagRows();
    addRecipeAndFileRows();
    addFrameRows();
    addReplayRows();
    addScanRows();
    addNumberRows();
    addItemRows();
    addLinkRows();
}

void TestBadArguments::refuses()
{
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(QByteArray, message);
    // Everything that would be sent would go here, but where the link itself is wrong.
    const bool talks = !arguments.isEmpty() && !arguments.contains("--link") &&
                       QList<QByteArray>{"read", "write", "monitor", "send", "identify"}.contains(
                           arguments.first());
    if (talks) {
        arguments << "--link"
                  << "tcp:127.0.0.1:" + QByteArray::number(m_plc.serverPort());
    }
    Program panel;
    QVERIFY(panel.startBytes(CNET_PANEL, arguments));
    QTEST(panel.exitCode(), "exitCode");
    QCOMPARE(panel.lines(), QList<QByteArray>());
    QCOMPARE(faultOfComplaint(panel.errors(), "cnet-panel", message), QByteArray());
    QVERIFY(!m_plc.waitForNewConnection(0));
}

QTEST_GUILESS_MAIN(TestBadArguments)
#include "test_bad_arguments.moc"
