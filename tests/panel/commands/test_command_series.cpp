#include "panel/command_line_rows.h"

#include "panel/system/exit_code.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestCommandSeries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data();
    void prints();
};

void TestCommandSeries::prints_data()
{
    addCommandLineColumns();
    addCommandLine("D_W 100 --count 3", kFine, "100  100|101  101|102  102|");
    addCommandLine("D_W 100 --count 3 --step 10", kFine, "100  100|110  110|120  120|");
    addCommandLine("D_W 100 --count 2 --step word", kFine, "100  100|101  101|");
    addCommandLine("D_W 100 --count 2 --step dword", kFine, "100  100|102  102|");
    addCommandLine("M_bit 3.15 --count 2 --step dword", kFine, "3.15  63|4.0  64|");
    addCommandLine("TX 7 --count 1", kFine, "7  7|");
    addCommandLine("D_W 9998 --count 4", kFine, "9998  9998|9999  9999|9999  9999|9999  9999|",
                   "some would lie beyond the highest address and were set to it, 9999");
    addCommandLine("", kUsage, "", "expected a register and its first address");
    addCommandLine("D_W 1", kUsage, "", "expected --count N");
    addCommandLine("D_W 1 --count 0", kUsage, "", "expected a number from 1 to 1000000");
    addCommandLine("D_W 1 --count 1000001", kUsage, "", "expected a number from 1 to 1000000");
    addCommandLine("D_W 1 --count 1 --step 0", kUsage, "",
                   "expected a number from 1 to 1000000, word or dword");
    addCommandLine("D_W 1 --count 1 --step x", kUsage, "",
                   "expected a number from 1 to 1000000, word or dword");
    addCommandLine("D_W 10000 --count 1", kUsage, "",
                   "'10000': out of range; an address of D_W is a number");
    addCommandLine("M_bit 3 --count 1", kUsage, "",
                   "'3': not in the register's format; an address of M_bit is WORD.BIT");
    addCommandLine("Q_W 3 --count 1", kUsage, "", "the driver has no register 'Q_W', it has D_W ");
}

void TestCommandSeries::prints()
{
    checkCommandLine("series");
}

QTEST_GUILESS_MAIN(TestCommandSeries)
#include "test_command_series.moc"
