#include "host/address/address.h"
#include "panel/commands/commands.h"
#include "panel/options/link_settings.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

namespace cnet::panel {

namespace {

const int kLongestSeries = 1000000;
const int kLongestStep = 1000000;

void addOptions(QCommandLineParser &parser)
{
    parser.addOption(
        {QLatin1String("count"), QLatin1String("How many, 1-1000000."), QLatin1String("N")});
    parser.addOption({QLatin1String("step"),
                      QLatin1String("From one address to the next: a number in the register's own "
                                    "units (default 1), word or dword."),
                      QLatin1String("STEP")});
}

bool readStep(const QCommandLineParser &parser, int &step, QString &error)
{
    const QString text = parser.value(QLatin1String("step"));
    if (text == QLatin1String("word")) {
        step = Driver::kWordInterval;
    } else if (text == QLatin1String("dword")) {
        step = Driver::kDoubleWordInterval;
    } else if (!readNumberOption(parser, QLatin1String("step"), 1, kLongestStep, step, error)) {
        error += QLatin1String(", word or dword");
        return false;
    }
    return true;
}

bool readStart(const Invocation &invocation, const RegisterInfo *&reg, int &start, QString &error)
{
    if (invocation.arguments.size() != 2) {
        error = QLatin1String("expected a register and its first address, for example D_W 100");
        return false;
    }
    const QString name = invocation.arguments.at(0);
    const QString address = invocation.arguments.at(1);
    reg = invocation.driver.registers().find(name);
    if (reg == nullptr) {
        error = QString::fromLatin1("the driver has no register '%1', it has %2")
                    .arg(name, invocation.driver.registers().names().join(QLatin1Char(' ')));
        return false;
    }
    const AddressVerdict verdict = invocation.driver.checkAddress(
        name, address, reg->isBit() ? ObjectKind::Bits : ObjectKind::Words, 1, Access::Read);
    start = verdict.number;
    if (!verdict.valid) {
        error = QString::fromLatin1("'%1': %2; an address of %3 is %4")
                    .arg(address, verdict.reason, name, addressHint(*reg));
    }
    return verdict.valid;
}

int print(const Invocation &invocation, const RegisterInfo &reg, int start, int count, int step)
{
    const AddressSeries series = invocation.driver.series(reg, start, count, step);
    const QVector<QString> &texts = series.texts;
    QString lines;
    for (int i = 0; i < texts.size() && i < series.numbers.size(); ++i) {
        lines += QString::fromLatin1("%1  %2\n").arg(texts.at(i)).arg(series.numbers.at(i));
    }
    writeToStandardOutput(lines.toLocal8Bit());
    if (!series.clamped) {
        return kFine;
    }
    invocation.messages.say(
        texts.size() < count
            ? QString::fromLatin1("the series ends early, after %1 of %2")
                  .arg(texts.size())
                  .arg(count)
            : QString::fromLatin1(
                  "some would lie beyond the highest address and were set to it, %1")
                  .arg(reg.highestText));
    return kFine;
}

int run(const Invocation &invocation)
{
    QString error;
    int count = 0;
    int step = 1;
    int start = 0;
    const RegisterInfo *reg = nullptr;
    bool ok = readStart(invocation, reg, start, error) &&
              readNumberOption(invocation.parser, QLatin1String("count"), 1, kLongestSeries, count,
                               error) &&
              readStep(invocation.parser, step, error);
    if (ok && count == 0) {
        error = QLatin1String("expected --count N, how many addresses to make");
        ok = false;
    }
    if (!ok) {
        invocation.messages.say(error);
        return kUsage;
    }
    return print(invocation, *reg, start, count, step);
}

} // namespace

const Command kSeriesCommand = {
    "series",
    "REGISTER ADDRESS --count N",
    "Makes the addresses of copies of an object as a panel editor does: a line for each, as text "
    "and as the driver's number.",
    "series M_bit 3.14 --count 3\n"
    "series D_W 100 --count 10 --step dword\n",
    addOptions,
    run};

} // namespace cnet::panel
