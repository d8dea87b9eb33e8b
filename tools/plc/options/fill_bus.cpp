#include "plc/options/fill_bus.h"

#include "plc/scenario/scenarios.h"
#include "plc/setup/memory_file.h"

#include <QFileInfo>

namespace plc {

namespace {

Trouble ofOption(const char *option, const TextError &error)
{
    return {kExitUsage,
            {QString::fromLatin1("--%1: %2").arg(QLatin1String(option), error.message)}};
}

/** Loads the memory file; where there is none yet, there must be room for it. */
Trouble loadFile(const QString &path, Bus &bus)
{
    const QFileInfo file(path);
    if (!file.exists()) {
        const QFileInfo folder(file.absolutePath());
        if (folder.isDir() && folder.isWritable()) {
            return {};
        }
        return {kExitCannotOpen,
                {QString::fromLatin1("--memory: %1 cannot be made in its folder").arg(path)}};
    }
    const auto lines = readLines(path);
    if (const TextError *error = std::get_if<TextError>(&lines)) {
        return {kExitCannotOpen, {QLatin1String("--memory: ") + error->message}};
    }
    const QStringList mistakes = loadMemory(std::get<QStringList>(lines), path, bus);
    return {mistakes.isEmpty() ? kExitFine : kExitUsage, mistakes};
}

} // namespace

Trouble fillBus(const Options &options, Bus &bus)
{
    for (const int station : options.stations) {
        Unit &unit = bus.add(station, options.model, options.seed);
        unit.scenario = makeScenario(options.scenario, unit.seed);
    }
    if (!options.memoryPath.isEmpty()) {
        const Trouble trouble = loadFile(options.memoryPath, bus);
        if (trouble.code != kExitFine) {
            return trouble;
        }
    }
    for (const Setting &setting : options.settings) {
        if (const auto error = apply(setting, bus)) {
            return ofOption("set", *error);
        }
    }
    for (const MotionSetting &setting : options.motions) {
        if (const auto error = apply(setting, bus)) {
            return ofOption(motionKindText(setting.motion.kind).name, *error);
        }
    }
    for (const FaultSetting &setting : options.faults) {
        if (const auto error = apply(setting, bus)) {
            return ofOption("fault", *error);
        }
    }
    return {};
}

} // namespace plc
