#include "plc/control/commands.h"

#include "plc/control/listings.h"
#include "plc/setup/apply.h"

#include <algorithm>
#include <vector>

namespace plc {

namespace {

using Arguments = QStringList;

struct Command
{
    const char *name;
    const char *form; ///< its arguments; empty: it takes none
    const char *meaning;
    Reply (*run)(const Arguments &arguments, const ControlTarget &target);
};

qint64 nowOf(const ControlTarget &target)
{
    return target.nowMs ? target.nowMs() : 0;
}

/** @return why one of them cannot be applied; those in front of it are. */
template <typename Setting>
std::optional<TextError> applyInTurn(const std::vector<Setting> &settings, Bus &bus)
{
    for (const Setting &setting : settings) {
        if (auto error = apply(setting, bus)) {
            return error;
        }
    }
    return std::nullopt;
}

/** Applies all arguments or none. */
template <typename Parse>
Reply applyAll(const Arguments &arguments, Bus &bus, Parse parse)
{
    std::vector<std::decay_t<decltype(std::get<0>(parse(QString())))>> settings;
    for (const QString &argument : arguments) {
        const auto parsed = parse(argument);
        if (const TextError *error = std::get_if<TextError>(&parsed)) {
            return failure(error->message);
        }
        settings.push_back(std::get<0>(parsed));
    }
    // A single one is applied as a whole or not at all.
    if (settings.size() > 1) {
        Bus trial = bus.trial();
        if (const auto error = applyInTurn(settings, trial)) {
            return failure(error->message);
        }
    }
    const auto error = applyInTurn(settings, bus);
    return error ? failure(error->message) : Reply();
}

Reply set(const Arguments &arguments, const ControlTarget &target)
{
    // What moved until now is not to come behind what is set.
    target.bus->advance(nowOf(target));
    return applyAll(arguments, *target.bus, &parseSetting);
}

template <MotionKind kind>
Reply move(const Arguments &arguments, const ControlTarget &target)
{
    const qint64 nowMs = nowOf(target);
    Reply reply = applyAll(arguments, *target.bus, [nowMs](const QString &text) {
        Parsed<MotionSetting> parsed = parseMotion(kind, text);
        if (MotionSetting *setting = std::get_if<MotionSetting>(&parsed)) {
            setting->motion.startMs = nowMs;
        }
        return parsed;
    });
    target.bus->advance(nowMs);
    return reply;
}

Reply fault(const Arguments &arguments, const ControlTarget &target)
{
    return applyAll(arguments, *target.bus, &parseFault);
}

Reply show(const Arguments &arguments, const ControlTarget &target)
{
    target.bus->advance(nowOf(target));
    std::vector<Range> ranges;
    for (const QString &argument : arguments) {
        const Parsed<Range> range = parseRange(argument);
        if (const TextError *error = std::get_if<TextError>(&range)) {
            return failure(error->message);
        }
        ranges.push_back(std::get<Range>(range));
    }
    return showValues(ranges, *target.bus);
}

Reply faults(const Arguments & /*arguments*/, const ControlTarget &target)
{
    return listFaults(*target.bus);
}

Reply motions(const Arguments & /*arguments*/, const ControlTarget &target)
{
    return listMotions(*target.bus);
}

Reply stations(const Arguments & /*arguments*/, const ControlTarget &target)
{
    return listStations(*target.bus);
}

Reply clients(const Arguments & /*arguments*/, const ControlTarget &target)
{
    return listConnections(target.connections ? *target.connections : Connections(), nowOf(target));
}

/** Ends the motions that touch a range. */
Reply clearRange(const QString &text, const ControlTarget &target)
{
    const Parsed<Range> parsed = parseRange(text);
    if (const TextError *error = std::get_if<TextError>(&parsed)) {
        return failure(error->message);
    }
    const Range range = std::get<Range>(parsed);
    const auto units = unitsOf(range.station, *target.bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return failure(error->message);
    }
    const auto touches = [&range](const Motion &motion) {
        return motion.first.device == range.first.device && motion.first.kind == range.first.kind &&
               motion.first.address < range.first.address + range.count &&
               range.first.address < motion.first.address + motion.count;
    };
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        auto &all = unit->motions;
        all.erase(std::remove_if(all.begin(), all.end(), touches), all.end());
    }
    return {};
}

Reply clear(const Arguments &arguments, const ControlTarget &target)
{
    const QString &what = arguments.at(0);
    if (what.contains(QLatin1Char(':'))) {
        return arguments.size() == 1 ? clearRange(what, target)
                                     : failure(QLatin1String("expected one range"));
    }
    const bool all = what == QLatin1String("all");
    const bool isFaults = all || what == QLatin1String("faults");
    const bool isMotions = all || what == QLatin1String("motions");
    const bool isMemory = all || what == QLatin1String("memory");
    const std::optional<int> station =
        arguments.size() == 2 ? parseDigits(arguments.at(1)) : std::optional<int>(-1);
    if (!(isFaults || isMotions || isMemory) || !station || arguments.size() > 2) {
        return failure(QLatin1String("expected faults, motions, memory or all and, if not of all "
                                     "stations, a station; or the range of motions that end"));
    }
    const auto units = unitsOf(*station, *target.bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return failure(error->message);
    }
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        if (isFaults) {
            unit->faults.clear();
        }
        if (isMotions) {
            unit->motions.clear();
        }
        if (isMemory) {
            unit->station.memory() = Memory(unit->station.memory().model());
        }
    }
    return {};
}

Reply save(const Arguments & /*arguments*/, const ControlTarget &target)
{
    if (!target.save) {
        return failure(QLatin1String("no file to save to: start the program with --memory FILE"));
    }
    target.bus->advance(nowOf(target));
    const auto error = target.save();
    return error ? failure(error->message) : Reply();
}

Reply help(const Arguments & /*arguments*/, const ControlTarget & /*target*/)
{
    Reply reply;
    reply.lines = commandHelp();
    reply.data.insert(QLatin1String("help"), reply.lines.join(QLatin1Char('\n')));
    return reply;
}

Reply quit(const Arguments & /*arguments*/, const ControlTarget &target)
{
    if (target.quit) {
        target.quit();
    }
    return {};
}

const std::vector<Command> &commands()
{
    static const std::vector<Command> table = {
        {"set", "[STATION/]REGISTER:ADDRESS=VALUE[,VALUE...]...", "set values", set},
        {"show", "RANGE...", "show values; RANGE is [STATION/]REGISTER:FIRST[-LAST] or ...*COUNT",
         show},
        {"ramp", "RANGE[=LOW..HIGH][@MS]...", "let values move; see --ramp",
         move<MotionKind::Ramp>},
        {"sine", "RANGE[=LOW..HIGH][@MS]...", "the same, see --sine", move<MotionKind::Sine>},
        {"square", "RANGE[=LOW..HIGH][@MS]...", "the same, see --square", move<MotionKind::Square>},
        {"walk", "RANGE[=LOW..HIGH][@MS]...", "the same, see --walk", move<MotionKind::Walk>},
        {"counter", "RANGE[=LOW..HIGH][+STEP][@MS]...", "the same, see --counter",
         move<MotionKind::Counter>},
        {"motions", "", "list what moves", motions},
        {"fault", "[STATION:]KIND[=VALUE][*TIMES][@PERCENT%]...", "inject faults; see --fault",
         fault},
        {"faults", "", "list the faults with the times they have left", faults},
        {"clear", "faults|motions|memory|all [STATION]",
         "take them away, set the memory to 0; or clear RANGE, whose motions end", clear},
        {"clients", "", "list the connections of masters", clients},
        {"stations", "", "list the stations", stations},
        {"save", "", "save the memory to the file of --memory", save},
        {"help", "", "list the commands", help},
        {"quit", "", "end the program", quit},
    };
    return table;
}

const Command *commandNamed(const QString &name)
{
    const auto &all = commands();
    const auto it = std::find_if(all.begin(), all.end(), [&name](const Command &command) {
        return name == QLatin1String(command.name);
    });
    return it == all.end() ? nullptr : &*it;
}

/** The words of a line, between blanks and tabs. */
QStringList wordsOf(const QString &line)
{
    QStringList words;
    const QStringList parts = line.simplified().split(QLatin1Char(' '));
    for (const QString &part : parts) {
        if (!part.isEmpty()) {
            words << part;
        }
    }
    return words;
}

} // namespace

bool isRemark(const QString &line)
{
    const QString text = line.trimmed();
    return text.isEmpty() || text.startsWith(QLatin1Char('#'));
}

Reply runCommand(const QString &line, const ControlTarget &target)
{
    QStringList words = wordsOf(line);
    const QString name = words.isEmpty() ? QString() : words.takeFirst();
    const Command *const command = commandNamed(name);
    if (!command) {
        QStringList names;
        for (const Command &each : commands()) {
            names << QLatin1String(each.name);
        }
        return failure(QString::fromLatin1("\"%1\": expected one of %2")
                           .arg(name, names.join(QLatin1String(", "))));
    }
    const bool takesArguments = *command->form != '\0';
    Reply reply;
    if (takesArguments != words.isEmpty()) {
        reply = command->run(words, target);
    } else {
        reply = failure(
            takesArguments
                ? QString::fromLatin1("%1: expected %2").arg(name, QLatin1String(command->form))
                : QString::fromLatin1("%1 takes no arguments").arg(name));
    }
    reply.data.insert(QLatin1String("command"), name);
    return reply;
}

QStringList commandHelp()
{
    QStringList lines;
    for (const Command &command : commands()) {
        QString usage = QLatin1String(command.name);
        if (*command.form != '\0') {
            usage += QLatin1Char(' ') + QLatin1String(command.form);
        }
        lines << QString::fromLatin1("%1  %2").arg(usage, QLatin1String(command.meaning));
    }
    lines << QLatin1String("json, text  answer this connection in JSON lines or in text");
    return lines;
}

} // namespace plc
