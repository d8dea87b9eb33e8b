// What people and programs tell the simulated PLC while it runs, and what its files hold. The first
// character of an input says what the rest is.
#include "fuzz/input.h"
#include "plc/control/control_session.h"
#include "plc/control/script.h"
#include "plc/scenario/press.h"
#include "plc/setup/apply.h"
#include "plc/setup/memory_file.h"

#include <QJsonDocument>

namespace {

using namespace fuzz;

const int kMostRuns = 200;          ///< of the lines of a script
const int kMostReplyBytes = 400000; ///< the values of `show` in JSON, and the longest list

/** Stations 1 and 31, with a clock that goes on with each command. */
struct Plcs
{
    Plcs()
    {
        bus.add(1);
        bus.add(31, plc::Model::K120s);
        target.bus = &bus;
        target.nowMs = [this] { return nowMs += 777; };
        target.save = [this]() -> std::optional<plc::TextError> {
            require(!plc::memoryText(bus).isEmpty(), "a memory has a text");
            return std::nullopt;
        };
    }

    void requireBounds()
    {
        for (const auto &[number, unit] : bus.units()) {
            require(unit.faults.all().size() <= plc::kMostPerStation, "faults are bounded");
            require(unit.motions.size() <= plc::kMostPerStation, "motions are bounded");
        }
    }

    plc::Bus bus;
    qint64 nowMs = 0;
    plc::ControlTarget target;

    Q_DISABLE_COPY(Plcs)
};

void requireReply(const QByteArray &reply, bool json)
{
    require(reply.endsWith('\n') && reply.size() <= kMostReplyBytes, "a reply is bounded");
    if (json && !reply.startsWith("ok\n") && reply.startsWith('{')) {
        require(reply.count('\n') == 1, "a reply in JSON is a line");
        require(QJsonDocument::fromJson(reply).isObject(), "and an object");
    }
    const QString text = QString::fromUtf8(reply);
    for (const QChar letter : text) {
        require(letter == QLatin1Char('\n') || letter.isPrint(), "a terminal shows a reply");
    }
}

/** The same bytes in any division get the same replies. */
void talk(Input &input, plc::ReplyFormat format, bool withPress)
{
    const QByteArray bytes = input.rest();
    QByteArray replies[2];
    for (const int size : {1, 4096}) {
        Plcs plcs;
        if (withPress) {
            plcs.bus.find(1)->scenario = std::make_shared<plc::Press>(1);
        }
        plc::ControlSession session(plcs.target, format);
        QByteArray &all = replies[size == 1 ? 0 : 1];
        for (int i = 0; i < bytes.size(); i += size) {
            session.add(bytes.mid(i, size));
            while (const auto reply = session.next()) {
                requireReply(*reply, format == plc::ReplyFormat::Json);
                all += *reply;
            }
        }
        plcs.requireBounds();
    }
    require(replies[0] == replies[1], "no division matters");
}

void requireTold(const QStringList &told)
{
    require(told.size() <= plc::kMostMistakes + 1, "mistakes are bounded");
    for (const QString &mistake : told) {
        require(mistake.startsWith(QLatin1String("file:")), "a mistake has its place");
    }
}

void play(Input &input)
{
    Plcs plcs;
    plc::Mistakes mistakes(QLatin1String("file"));
    const QStringList lines = QString::fromUtf8(input.rest()).split(QLatin1Char('\n'));
    const QByteArray before = plc::memoryText(plcs.bus);
    plc::ScriptSchedule schedule(plc::parseScript(lines, plcs.target, mistakes));
    require(plc::memoryText(plcs.bus) == before, "reading a script does nothing");
    requireTold(mistakes.told());
    qint64 lastMs = 0;
    for (int i = 0; i < kMostRuns; ++i) {
        const auto next = schedule.nextMs();
        if (!next) {
            break;
        }
        require(*next >= lastMs, "time does not go back");
        lastMs = *next;
        const auto line = schedule.takeDue(lastMs);
        require(line && line->number >= 1 && line->number <= lines.size(), "a line is due");
        runCommand(line->command, plcs.target);
    }
    plcs.requireBounds();
}

void remember(Input &input)
{
    Plcs plcs;
    const QStringList lines = QString::fromUtf8(input.rest()).split(QLatin1Char('\n'));
    requireTold(plc::loadMemory(lines, QLatin1String("file"), plcs.bus));
    const QByteArray text = plc::memoryText(plcs.bus);
    Plcs others;
    const QStringList again = QString::fromUtf8(text).split(QLatin1Char('\n'));
    require(plc::loadMemory(again, QLatin1String("file"), others.bus).isEmpty(),
            "what is saved can be loaded");
    require(plc::memoryText(others.bus) == text, "a memory survives its file");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    switch (input.byte()) {
    case 'c':
        talk(input, plc::ReplyFormat::Text, false);
        break;
    case 'C':
        talk(input, plc::ReplyFormat::Json, false);
        break;
    case 'p':
        talk(input, plc::ReplyFormat::Json, true);
        break;
    case 's':
        play(input);
        break;
    case 'm':
        remember(input);
        break;
    default:
        break;
    }
    return 0;
}
