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

/** Reads the capture that is to be replayed, if any. @param replay receives it */
Trouble loadReplay(const Options &options, std::shared_ptr<const Replay> &replay)
{
    if (options.replayPath.isEmpty()) {
        return {};
    }
    const cnet::Recording recording = cnet::readRecordingFile(options.replayPath);
    const QString option = QLatin1String("--replay: ");
    if (!recording.error.isEmpty()) {
        return {kExitCannotOpen, {option + recording.error}};
    }
    QString error;
    const cnet::RecordedLine *const line = cnet::findLine(recording, options.replayLine, error);
    if (!line) {
        return {kExitUsage,
                {QString::fromLatin1("--replay-line: %1: %2").arg(options.replayPath, error)}};
    }
    replay = std::make_shared<Replay>(*line);
    if (replay->stations().empty() && options.stations.empty()) {
        return {kExitUsage,
                {option + options.replayPath + QLatin1String(": no station answers in it")}};
    }
    QStringList remarks;
    for (const QString &remark : recording.remarks) {
        remarks << option + remark;
    }
    return {kExitFine, remarks};
}

Trouble fillStations(const Options &options, Bus &bus)
{
    std::shared_ptr<const Replay> replay;
    Trouble trouble = loadReplay(options, replay);
    std::vector<int> stations = options.stations;
    if (replay) {
        stations.insert(stations.end(), replay->stations().cbegin(), replay->stations().cend());
    }
    for (const int station : stations) {
        Unit &unit = bus.add(station, options.model, options.seed);
        unit.scenario = makeScenario(options.scenario, unit.seed);
    }
    if (replay) {
        bus.setReplay(replay);
    }
    return trouble;
}

Trouble fillMemory(const Options &options, Bus &bus)
{
    if (!options.memoryPath.isEmpty()) {
        Trouble trouble = loadFile(options.memoryPath, bus);
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

} // namespace

Trouble fillBus(const Options &options, Bus &bus)
{
    Trouble trouble = fillStations(options, bus);
    if (trouble.code == kExitFine) {
        const Trouble more = fillMemory(options, bus);
        trouble.code = more.code;
        trouble.messages += more.messages;
    }
    return trouble;
}

} // namespace plc
