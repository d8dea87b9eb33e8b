#include "plc/options/fill_bus.h"
#include "plc/options/option_table.h"
#include "support/rows.h"

#include <QtTest>

using namespace plc;

namespace {

QStringList arguments(const char *line)
{
    return latin("cnet-plc ").append(latin(line)).split(QLatin1Char(' '));
}

} // namespace

static const Case<const char *, bool> kPty[] = {
    {"--pty", "", false},
    {"--pty --trace", "", true},
    {"--trace --pty", "", true},
    {"--pty /tmp/plc --trace", "/tmp/plc", true},
    {"--pty=/tmp/plc", "/tmp/plc", false},
};

static const struct
{
    const char *what, *host;
    int port;
} kAddresses[] = {
    {"127.0.0.1:8000", "127.0.0.1", 8000},
    {"8000", "127.0.0.1", 8000},
    {":0", "127.0.0.1", 0},
    {"localhost:65535", "127.0.0.1", 65535},
    {"0.0.0.0:1", "0.0.0.0", 1},
    {"[::1]:8000", "::1", 8000},
    {"", "", -1},
    {"127.0.0.1", "", -1},
    {"127.0.0.1:", "", -1},
    {"127.0.0.1:65536", "", -1},
    {"127.0.0.1:-1", "", -1},
    {"nowhere:80", "", -1},
    {"127.0.0.1:http", "", -1},
};

static const struct
{
    const char *what, *host;
    int port;
    const char *path;
    bool local;
} kControlAddresses[] = {
    {"8001", "127.0.0.1", 8001, "", true},     {"[::1]:8001", "::1", 8001, "", true},
    {"127.9.9.9:1", "127.9.9.9", 1, "", true}, {"0.0.0.0:8001", "0.0.0.0", 8001, "", false},
    {"[::]:8001", "::", 8001, "", false},      {"192.0.2.1:8001", "192.0.2.1", 8001, "", false},
    {"./plc:1", "", 0, "./plc:1", true},       {"/run/plc", "", 0, "/run/plc", true},
};

static const Given<const char *> kWrong[] = {
    // what is in the message
    {"--trace", "expected --tcp [HOST:]PORT or --pty [LINK]"},
    {"--bogus", "bogus"},
    {"--tcp", "tcp"},
    {"--tcp 0 more", "\"more\": expected options only"},
    {"--tcp x:y", "--tcp: \"x:y\": expected [HOST:]PORT"},
    {"--tcp 0 --station 32", "--station: expected a number from 0 to 31, not \"32\""},
    {"--tcp 0 --station one", "--station: expected a number from 0 to 31, not \"one\""},
    {"--tcp 0 --control plc.socket", "or a path with a \"/\", for example ./plc.socket"},
    {"--tcp 0 --control 0.0.0.0:1", "other machines reach \"0.0.0.0:1\""},
    {"--tcp 0 --control 1 --control [::]:1", "other machines reach \"[::]:1\""},
    {"--tcp 0 --control-format xml", "--control-format: expected text or json, not \"xml\""},
    {"--tcp 0 --scenario none", "--scenario: expected press, or list for all of them, not"},
    {"--tcp 0 --scenario=", "--scenario: expected press"},
    {"--tcp 0 --model k80", "--model: expected full or k120s, not \"k80\""},
    {"--tcp 0 --baud 0", "--baud: expected a number from 50 to 4000000, not \"0\""},
    {"--tcp 0 --seed -1", "--seed: expected a number from 0 to 4294967295, not \"-1\""},
    {"--tcp 0 --set DW:1=1", "--set: \"DW:1\": expected REGISTER:ADDRESS"},
    {"--tcp 0 --ramp D_W:5-4", "--ramp: \"D_W:5-4\": expected FIRST-LAST"},
    {"--tcp 0 --counter D_W:5*3", "--counter: \"D_W:5*3\": a counter takes pairs of words"},
    {"--tcp 0 --replay=", "--replay: expected the name of a capture"},
    {"--tcp 0 --replay-line x", "--replay-line: expected --replay FILE with it"},
    {"--tcp 0 --capture x --capture-as y", "--capture-as 'y': expected pdu or rtac"},
    {"--tcp 0 --fault sleep", "--fault: fault \"sleep\": expected one of"},
};

static const Given<const char *> kUnfitting[] = {
    // the message
    {"--tcp 0 --set 2/D_W:0=1", "--set: no station 2: add it with --station 2"},
    {"--tcp 0 --fault 2:silence", "--fault: no station 2: add it with --station 2"},
    {"--tcp 0 --ramp D_W:9999-10000", "--ramp: D_W:10000 does not exist in station 1"},
    {"--tcp 0 --sine K_W:256", "--sine: K_W:256 does not exist in station 1"},
    {"--tcp 0 --set D_W:5000=1 --model k120s", "--set: D_W:5000 does not exist in station 1"},
};

class TestOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addresses_data() { addRows(kAddresses); }
    void addresses()
    {
        const auto &row = currentRow(kAddresses);
        const auto parsed = parseTcpAddress(latin(row.what));
        QCOMPARE(std::holds_alternative<TcpAddress>(parsed), row.port >= 0);
        if (row.port >= 0) {
            QCOMPARE(std::get<TcpAddress>(parsed).host, QHostAddress(latin(row.host)));
            QCOMPARE(int(std::get<TcpAddress>(parsed).port), row.port);
        }
    }

    void controlAddresses_data() { addRows(kControlAddresses); }
    void controlAddresses()
    {
        const auto &row = currentRow(kControlAddresses);
        const auto parsed = parseControlAddress(latin(row.what));
        QVERIFY(std::holds_alternative<ControlAddress>(parsed));
        const ControlAddress address = std::get<ControlAddress>(parsed);
        QCOMPARE(address.path, latin(row.path));
        QCOMPARE(address.tcp.host, QHostAddress(latin(row.host)));
        QCOMPARE(int(address.tcp.port), row.port);
        QCOMPARE(address.isLocal(), row.local);
        const auto options = readOptions(arguments("--tcp 0 --control") << latin(row.what));
        QCOMPARE(std::holds_alternative<Options>(options), row.local);
        const auto remote =
            readOptions(arguments("--tcp 0 --control-remote --control") << latin(row.what));
        QVERIFY(std::holds_alternative<Options>(remote));
    }

    void everything()
    {
        const auto parsed = readOptions(arguments(
            "--tcp 0 --tcp 127.0.0.1:8000 --pty /tmp/plc --station 0 --station 31 --model k120s "
            "--set M_W:3=0x1234 --set D_W:0=-1 --ramp D_W:100-119 --walk D_W:5 --fault silence*3 "
            "--baud 9600 "
            "--seed 7 --trace --memory m --script s --scenario press --control 1 --control-format "
            "json"));
        QVERIFY(std::holds_alternative<Options>(parsed));
        const Options options = std::get<Options>(parsed);
        QCOMPARE(options.tcp.size(), std::size_t(2));
        QCOMPARE(options.ptyLink.value_or(QString()), latin("/tmp/plc"));
        QVERIFY(options.stations == std::vector<int>({0, 31}));
        QCOMPARE(int(options.model), int(Model::K120s));
        QCOMPARE(options.settings.size(), std::size_t(2));
        QCOMPARE(options.motions.size(), std::size_t(2));
        QCOMPARE(options.faults.size(), std::size_t(1));
        QCOMPARE(options.memoryPath, latin("m"));
        QCOMPARE(options.scriptPath, latin("s"));
        QCOMPARE(options.scenario, latin("press"));
        QCOMPARE(options.control.size(), std::size_t(1));
        QVERIFY(options.controlFormat == ReplyFormat::Json);
        QCOMPARE(options.baud, 9600);
        QCOMPARE(options.seed, 7U);
        QVERIFY(options.trace);
    }

    void defaults()
    {
        const Options options = std::get<Options>(readOptions(arguments("--tcp 0")));
        QVERIFY(options.stations == std::vector<int>({1}));
        QVERIFY(!options.ptyLink);
        QCOMPARE(int(options.model), int(Model::Full));
        QCOMPARE(options.baud, 0);
        QVERIFY(!options.trace);
    }

    void pty_data() { addRows(kPty); }
    void pty()
    {
        const auto &row = currentRow(kPty);
        const auto parsed = readOptions(arguments(row.what));
        QVERIFY(std::holds_alternative<Options>(parsed));
        const Options options = std::get<Options>(parsed);
        QVERIFY(options.ptyLink);
        QCOMPARE(*options.ptyLink, latin(row.given));
        QCOMPARE(options.trace, row.expected);
    }

    void wrong_data() { addRows(kWrong); }
    void wrong()
    {
        const auto &row = currentRow(kWrong);
        const auto parsed = readOptions(arguments(row.what));
        QVERIFY(std::holds_alternative<TextError>(parsed));
        const QString message = std::get<TextError>(parsed).message;
        QVERIFY2(message.contains(latin(row.given)), qPrintable(message));
        QVERIFY(!message.contains(QLatin1Char('\n')));
    }

    void unfitting_data() { addRows(kUnfitting); }
    void unfitting()
    {
        const auto &row = currentRow(kUnfitting);
        const auto parsed = readOptions(arguments(row.what));
        QVERIFY(std::holds_alternative<Options>(parsed));
        Bus bus;
        const Trouble trouble = fillBus(std::get<Options>(parsed), bus);
        QCOMPARE(int(trouble.code), int(kExitUsage));
        QCOMPARE(trouble.messages, QStringList(latin(row.given)));
    }

    void fillsTheBus()
    {
        const auto parsed = readOptions(arguments("--tcp 0 --station 3 --station 4 --set "
                                                  "4/M_W:3=0x1234 --fault 3:silence --ramp T_W:0"));
        Bus bus;
        QCOMPARE(int(fillBus(std::get<Options>(parsed), bus).code), int(kExitFine));
        QCOMPARE(bus.units().size(), std::size_t(2));
        QCOMPARE(*bus.find(4)->station.memory().word('M', 3), quint16(0x1234));
        QCOMPARE(*bus.find(3)->station.memory().word('M', 3), quint16(0));
        QCOMPARE(bus.find(3)->faults.draw().size(), std::size_t(1));
        QCOMPARE(bus.find(4)->faults.draw().size(), std::size_t(0));
        QCOMPARE(bus.find(4)->motions.size(), std::size_t(1));
    }

    void helpNamesEverything()
    {
        const QString help = helpText();
        for (const char *name :
             {"--tcp",        "--pty",         "--station", "--model",          "--set",
              "--ramp",       "--sine",        "--square",  "--walk",           "--counter",
              "--fault",      "--seed",        "--baud",    "--trace",          "--memory",
              "--script",     "--scenario",    "--control", "--control-format", "--control-remote",
              "clear faults", "wrong-station", "Exit codes"}) {
            QVERIFY2(help.contains(QLatin1String(name)), name);
        }
        for (const char *name : {"SIGINT", "SIGTERM", "SIGHUP"}) {
            QVERIFY2(help.contains(QLatin1String(name)), name);
        }
        QVERIFY(std::get<Options>(readOptions(arguments("--help"))).help);
        QVERIFY(std::get<Options>(readOptions(arguments("--version"))).version);
    }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "test_options.moc"
