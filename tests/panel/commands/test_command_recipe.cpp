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
    addCommandLine("", kUsage, "", "expected recipe write FILE or recipe read FILE");
    addCommandLine("write", kUsage, "", "expected recipe write FILE");
    addCommandLine("send x", kUsage, "", "expected recipe write FILE");
    addCommandLine("read a b", kUsage, "", "expected recipe write FILE");
    addCommandLine("write /nowhere/file", kUsage, "", "cannot read /nowhere/file: No such file");
    addCommandLine("read /nowhere/file", kUsage, "", "cannot read /nowhere/file: No such file");
    addCommandLine("write /", kUsage, "", "cannot read /");
    addCommandLine("write /dev/zero", kUsage, "", "/dev/zero is no recipe: it is longer than");
    addCommandLine("write /dev/null", kUsage, "", "/dev/null:1: the file has no items");
    addCommandLine("write x --output y", kUsage, "", "--output is for recipe read");
    addCommandLine("write x --link y", kUsage, "", "expected sim, tcp:HOST:PORT");
}

void TestCommandRecipe::prints()
{
    checkCommandLine("recipe");
}

QTEST_GUILESS_MAIN(TestCommandRecipe)
#include "test_command_recipe.moc"
