#include "panel/command_line_rows.h"

#include "panel/system/exit_code.h"

#include <QtTest>

using namespace cnet;
using namespace cnet::panel;

class TestCommandRecipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints_data();
    void prints();
};

void TestCommandRecipe::prints_data()
{
    addCommandLineColumns();
    const char needsLink[] =
        "expected --link, where to write: tcp:HOST:PORT, serial:DEVICE, or sim";
    addCommandLine("", kUsage, "", "expected recipe write FILE or recipe read FILE");
    addCommandLine("write", kUsage, "", needsLink);
    addCommandLine("write /nowhere/file", kUsage, "", needsLink);
    addCommandLine("write --link sim", kUsage, "", "expected recipe write FILE");
    addCommandLine("send x", kUsage, "", "expected recipe write FILE or recipe read FILE");
    addCommandLine("read a b", kUsage, "", "expected recipe read FILE");
    addCommandLine("write /nowhere/file --link sim", kUsage, "",
                   "cannot read /nowhere/file: No such file");
    addCommandLine("read /nowhere/file", kUsage, "", "cannot read /nowhere/file: No such file");
    addCommandLine("write / --link sim", kUsage, "", "cannot read /");
    addCommandLine("write /dev/zero --link sim", kUsage, "",
                   "/dev/zero cannot be used: it is longer than");
    addCommandLine("write /dev/null --link sim", kUsage, "", "/dev/null:1: the file has no items");
    addCommandLine("write x --output y", kUsage, "", "Unknown option 'output'");
    addCommandLine("read x --no-verify", kUsage, "", "Unknown option 'no-verify'");
    addCommandLine("write x --link y", kUsage, "", "expected tcp:HOST:PORT or serial:DEVICE");
}

void TestCommandRecipe::prints()
{
    checkCommandLine("recipe");
}

QTEST_GUILESS_MAIN(TestCommandRecipe)
#include "test_command_recipe.moc"
