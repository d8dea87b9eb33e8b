#include "host/address/address.h"
#include "host/address/value_text.h"
#include "panel/commands/commands.h"
#include "panel/options/link_settings.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"

#include <limits>

namespace cnet::panel {

namespace {

void addOptions(QCommandLineParser &parser)
{
    parser.addOption({QLatin1String("words"),
                      QLatin1String("Checks for an object of this many 16-bit words."),
                      QLatin1String("N")});
    parser.addOption({QLatin1String("bits"),
                      QLatin1String("Checks for an object of this many bits or contacts."),
                      QLatin1String("N")});
    parser.addOption({QLatin1String("write"), QLatin1String("Checks for an object that writes.")});
}

// What is asked of the driver.
struct Question
{
    QString registerName;
    QString address;
    ObjectKind kind = ObjectKind::Words;
    int count = 1;
    Access access = Access::Read;
};

bool readQuestion(const Invocation &invocation, Question &question, QString &error)
{
    const QCommandLineParser &parser = invocation.parser;
    const QString words = QLatin1String("words");
    const QString bits = QLatin1String("bits");
    if (invocation.arguments.size() != 2) {
        error = QLatin1String("expected a register and an address, for example D_W 100");
        return false;
    }
    if (parser.isSet(words) && parser.isSet(bits)) {
        error = QLatin1String("expected --words or --bits, not both");
        return false;
    }
    question.registerName = invocation.arguments.at(0);
    question.address = invocation.arguments.at(1);
    question.access = parser.isSet(QLatin1String("write")) ? Access::Write : Access::Read;
    const RegisterInfo *reg = invocation.driver.registers().find(question.registerName);
    const bool asBits =
        parser.isSet(bits) || (!parser.isSet(words) && reg != nullptr && reg->isBit());
    question.kind = asBits ? ObjectKind::Bits : ObjectKind::Words;
    return readNumberOption(parser, asBits ? bits : words, 1, std::numeric_limits<int>::max(),
                            question.count, error);
}

QString field(const char *title, const QString &value)
{
    return QString::fromLatin1(title).leftJustified(10) + value + QLatin1Char('\n');
}

QString answerText(const Question &question, const RegisterCatalog &registers,
                   const AddressVerdict &verdict)
{
    QString text = QString::fromLatin1("%1 %2: %3\n")
                       .arg(quotable(question.registerName), quotable(question.address),
                            verdict.valid ? QLatin1String("valid")
                                          : QLatin1String("not valid, ") + verdict.reason);
    if (verdict.valid) {
        text += field("number", QString::number(verdict.number));
    }
    const RegisterInfo *reg = registers.find(question.registerName);
    if (reg == nullptr) {
        return text + field("registers", registers.names().join(QLatin1Char(' ')));
    }
    return text +
           field("size",
                 counted(question.count, question.kind == ObjectKind::Bits ? "bit" : "word")) +
           field("limits", addressHint(*reg));
}

int run(const Invocation &invocation)
{
    QString error;
    Question question;
    if (!readQuestion(invocation, question, error)) {
        invocation.messages.say(error);
        return kUsage;
    }
    const AddressVerdict verdict = invocation.driver.checkAddress(
        question.registerName, question.address, question.kind, question.count, question.access);
    writeToStandardOutput(
        answerText(question, invocation.driver.registers(), verdict).toLocal8Bit());
    return verdict.valid ? kFine : kUsage;
}

} // namespace

const Command kCheckCommand = {"check",
                               "REGISTER ADDRESS",
                               "Says whether the driver takes an address for an object of the "
                               "panel. Ends with 2 when it does not.",
                               "check D_W 9999 --words 2\n",
                               addOptions,
                               run};

} // namespace cnet::panel
