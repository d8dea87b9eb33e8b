#include "plc/setup/apply.h"

#include <algorithm>

namespace plc {

namespace {

bool isSameRange(const Motion &left, const Motion &right)
{
    return left.first.device == right.first.device && left.first.kind == right.first.kind &&
           left.first.address == right.first.address && left.count == right.count;
}

/** Takes away the motion whose place another one takes. */
void makeRoom(std::vector<Motion> &motions, const Motion &motion)
{
    motions.erase(std::remove_if(motions.begin(), motions.end(),
                                 [&motion](const Motion &old) { return isSameRange(old, motion); }),
                  motions.end());
}

std::optional<TextError> checkNumber(const Unit &unit, std::size_t number, const char *what)
{
    if (number < kMostPerStation) {
        return std::nullopt;
    }
    return TextError{QString::fromLatin1("station %1 has %2 %3 already, which is the most")
                         .arg(unit.station.number())
                         .arg(kMostPerStation)
                         .arg(QLatin1String(what))};
}

std::optional<TextError> checkMoving(const Unit &unit, const Motion &motion)
{
    qint64 moving = motion.count;
    std::size_t others = 0;
    for (const Motion &old : unit.motions) {
        if (!isSameRange(old, motion)) {
            moving += old.count;
            ++others;
        }
    }
    if (moving <= kMostMoving) {
        return checkNumber(unit, others, "motions");
    }
    return TextError{QString::fromLatin1("station %1 would have more than %2 moving values")
                         .arg(unit.station.number())
                         .arg(kMostMoving)};
}

/** Those that are over make room for another one. */
std::size_t liveFaults(const Unit &unit)
{
    const std::vector<Fault> &all = unit.faults.all();
    return static_cast<std::size_t>(
        std::count_if(all.begin(), all.end(), [](const Fault &fault) { return fault.times != 0; }));
}

} // namespace

Parsed<std::vector<Unit *>> unitsOf(int station, Bus &bus)
{
    std::vector<Unit *> units;
    for (auto &[number, unit] : bus.units()) {
        if (station < 0 || number == station) {
            units.push_back(&unit);
        }
    }
    if (units.empty()) {
        return TextError{
            QString::fromLatin1("no station %1: add it with --station %1").arg(station)};
    }
    return units;
}

std::optional<TextError> checkRange(const Unit &unit, const Point &first, int count)
{
    const Point last{first.device, first.kind, first.address + count - 1};
    if (unit.station.memory().value(first) && unit.station.memory().value(last)) {
        return std::nullopt;
    }
    return TextError{QString::fromLatin1("%1 does not exist in station %2")
                         .arg(pointText(unit.station.memory().value(first) ? last : first))
                         .arg(unit.station.number())};
}

std::optional<TextError> apply(const Setting &setting, Bus &bus)
{
    const auto units = unitsOf(setting.station, bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return *error;
    }
    // Everywhere or nowhere.
    for (const Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        if (auto error =
                checkRange(*unit, setting.first, static_cast<int>(setting.values.size()))) {
            return error;
        }
    }
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        Point point = setting.first;
        for (const quint16 value : setting.values) {
            unit->station.memory().setValue(point, value);
            ++point.address;
        }
    }
    return std::nullopt;
}

std::optional<TextError> apply(const MotionSetting &setting, Bus &bus)
{
    const auto units = unitsOf(setting.station, bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return *error;
    }
    for (const Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        for (const auto &error : {checkRange(*unit, setting.motion.first, setting.motion.count),
                                  checkMoving(*unit, setting.motion)}) {
            if (error) {
                return error;
            }
        }
    }
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        makeRoom(unit->motions, setting.motion);
        unit->motions.push_back(setting.motion);
        unit->motions.back().seed = unit->seed;
    }
    return std::nullopt;
}

std::optional<TextError> apply(const FaultSetting &setting, Bus &bus)
{
    const auto units = unitsOf(setting.station, bus);
    if (const TextError *error = std::get_if<TextError>(&units)) {
        return *error;
    }
    for (const Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        if (auto error = checkNumber(*unit, liveFaults(*unit), "faults")) {
            return error;
        }
    }
    for (Unit *const unit : std::get<std::vector<Unit *>>(units)) {
        unit->faults.add(setting.fault);
    }
    return std::nullopt;
}

} // namespace plc
