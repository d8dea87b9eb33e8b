#include "gateway/toml/config_units.h"
#include "support/rows.h"

using namespace cnet::gateway;

class TestConfigUnits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsDurations_data();
    void readsDurations();
    void readsSizes_data();
    void readsSizes();
    void readsAddresses_data();
    void readsAddresses();
};

namespace {

constexpr qint64 kNone = -1;

const Case<const char *, qint64> kDurations[] = {
    {"nothing", "0", 0},
    {"milliseconds", "250ms", 250},
    {"seconds", "10s", 10000},
    {"minutes", "5m", 300000},
    {"hours", "2h", 7200000},
    {"days", "30d", 2592000000},
    {"a blank", "10 s", 10000},
    {"many", "999999999d", 86399999913600000},
    {"too many", "1000000000d", kNone},
    {"no unit", "10", kNone},
    {"another unit", "10w", kNone},
    {"in capitals", "10S", kNone},
    {"a fraction", "1.5s", kNone},
    {"below 0", "-1s", kNone},
    {"empty", "", kNone},
    {"unit alone", "s", kNone},
};

const Case<const char *, qint64> kSizes[] = {
    {"kB", "512kB", 512000}, {"MB", "100MB", 100000000}, {"GB", "4GB", 4000000000},
    {"bytes", "512", kNone}, {"bits", "100Mb", kNone},
};

// What is expected is the port.
const Case<const char *, qint64> kAddresses[] = {
    {"usual", "127.0.0.1:9464", 9464},
    {"by name", "localhost:1", 1},
    {"version 6", "[::1]:65535", 65535},
    {"another one of this machine", "127.1.2.3:80", 80},
    {"any that is free", "127.0.0.1:0", 0},
    {"of all networks", "0.0.0.0:9464", kNone},
    {"of a network", "192.168.0.1:9464", kNone},
    {"of all networks, version 6", "[::]:9464", kNone},
    {"of a network, version 6", "[fe80::1]:9464", kNone},
    {"version 4 within 6", "[::ffff:127.0.0.1]:9464", kNone},
    {"no brackets", "::1:9464", kNone},
    {"no port", "127.0.0.1", kNone},
    {"no number", "127.0.0.1:http", kNone},
    {"a port too high", "127.0.0.1:65536", kNone},
    {"a name", "gateway.example:9464", kNone},
    {"something behind", "127.0.0.1:9464/metrics", kNone},
    {"empty", "", kNone},
};

} // namespace

void TestConfigUnits::readsDurations_data()
{
    addRows(kDurations);
}

void TestConfigUnits::readsDurations()
{
    const auto &row = currentRow(kDurations);
    const auto ms = parseDuration(QLatin1String(row.given));
    QCOMPARE(ms.value_or(kNone), row.expected);
    if (ms) {
        QCOMPARE(parseDuration(durationText(*ms)).value_or(kNone), row.expected);
    }
}

void TestConfigUnits::readsSizes_data()
{
    addRows(kSizes);
}

void TestConfigUnits::readsSizes()
{
    const auto &row = currentRow(kSizes);
    QCOMPARE(parseSize(QLatin1String(row.given)).value_or(kNone), row.expected);
}

void TestConfigUnits::readsAddresses_data()
{
    addRows(kAddresses);
}

void TestConfigUnits::readsAddresses()
{
    const auto &row = currentRow(kAddresses);
    const auto address = parseListenAddress(QLatin1String(row.given));
    QCOMPARE(address ? address->port : kNone, row.expected);
    if (address) {
        QCOMPARE(address->text, QLatin1String(row.given));
        QCOMPARE(address->isIpv6, row.given[0] == '[');
        QVERIFY(address->isIpv6 || address->ipv4 >> 24 == 127);
    }
}

QTEST_APPLESS_MAIN(TestConfigUnits)
#include "test_config_units.moc"
