#include "panel/command_line_rows.h"

#include "panel/system/exit_code.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestCommandCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data();
    void prints();
};

void TestCommandCheck::prints_data()
{
    addCommandLineColumns();
    addCommandLine(
        "D_W 100", kFine,
        "D_W 100: valid|number    100|size      1 word|limits    a number from 0 to 9999|");
    addCommandLine(
        "M_bit 3.5", kFine,
        "M_bit 3.5: valid|number    53|size      1 bit|limits    WORD.BIT from 0.0 to 255.15|");
    addCommandLine("TX 255 --bits 1 --write", kFine, "TX 255: valid|number    255|");
    addCommandLine("F_W 3 --write --words 4", kFine, "F_W 3: valid|number    3|size      4 words|");
    addCommandLine(
        "D_W 9999 --words 2", kUsage,
        "D_W 9999: not valid, out of range|size      2 words|limits    a number from 0 to 9999|");
    addCommandLine("D_W 10000", kUsage, "D_W 10000: not valid, out of range|");
    addCommandLine("M_bit 255.15 --bits 2", kUsage, "M_bit 255.15: not valid, out of range|");
    addCommandLine("M_bit 3.5 --words 1", kUsage,
                   "M_bit 3.5: not valid, a bit register used as words");
    addCommandLine("D_W 3 --bits 1", kUsage,
                   "D_W 3: not valid, a bit register used as words, or a word register");
    addCommandLine("D_W -1", kUsage,
                   "D_W -1: not valid, out of range|size      1 word|limits    a number from 0");
    addCommandLine("D_W x", kUsage, "D_W x: not valid, not in the register's format|");
    addCommandLine("M_bit 3.16", kUsage, "M_bit 3.16: not valid, not in the register's format|");
    addCommandLine("Q_W 0", kUsage, "Q_W 0: not valid, no such register|registers D_W ");
    addCommandLine("Q_W 5", kUsage, "Q_W 5: not valid, no such register|registers D_W ");
    addCommandLine("", kUsage, "", "expected a register and an address");
    addCommandLine("D_W", kUsage, "", "expected a register and an address");
    addCommandLine("D_W 1 2", kUsage, "", "expected a register and an address");
    addCommandLine("D_W 1 --words 1 --bits 1", kUsage, "", "expected --words or --bits, not both");
    addCommandLine("D_W 1 --words 0", kUsage, "", "expected a number from 1");
    addCommandLine("D_W 1 --words x", kUsage, "", "expected a number from 1");
    addCommandLine("D_W 1 --count 1", kUsage, "", "Unknown option 'count'");
}

void TestCommandCheck::prints()
{
    checkCommandLine("check");
}

QTEST_GUILESS_MAIN(TestCommandCheck)
#include "test_command_check.moc"
