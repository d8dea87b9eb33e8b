#include "support/rows.h"

#include <host/address/address.h>
#include <host/address/device_name.h>

using namespace cnet;

class TestDeviceName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
};

namespace {

const Case<const char *, const char *> kNames[] = {
    {"word", "%DW00100", "D_W:100"},        {"lower-case type", "%Mw7", "M_W:7"},
    {"bit", "%MX00001A", "M_bit:1.10"},     {"bit of word 0", "%PXf", "P_bit:0.15"},
    {"timer", "%TW012", "T_W:12"},          {"contact", "%CX000012", "CX:12"},
    {"zeros", "%LW0000000000001", "L_W:1"}, {"highest", "%KX9999999", "K_bit:999999.9"},
};

const Case<const char *, int> kFaults[] = {
    {"nothing", "", 0},
    {"no %", "DW1", 0},
    {"no device", "%", 1},
    {"device", "%ZW1", 1},
    {"no type", "%D", 2},
    {"bits of D", "%DX1", 2},
    {"no address", "%DW", 3},
    {"digit", "%DW1A", 4},
    {"contact", "%TX00A", 5},
    {"bit", "%MX1G", 4},
    {"word of a bit", "%MXA0", 3},
    {"too high", "%DW12345678", 10},
};

} // namespace

void TestDeviceName::reads_data()
{
    addRows(kNames);
}

void TestDeviceName::reads()
{
    const auto &row = currentRow(kNames);
    const DeviceName name = readDeviceName(row.given);
    QCOMPARE(name.fault, QString());
    QCOMPARE(name.reg.name + QLatin1Char(':') + addressText(name.reg, name.address),
             QString::fromLatin1(row.expected));
}

void TestDeviceName::refuses_data()
{
    addRows(kFaults);
}

void TestDeviceName::refuses()
{
    const auto &row = currentRow(kFaults);
    const DeviceName name = readDeviceName(row.given);
    QCOMPARE(name.faultAt, row.expected);
    QVERIFY(!name.fault.isEmpty());
}

QTEST_APPLESS_MAIN(TestDeviceName)
#include "test_device_name.moc"
