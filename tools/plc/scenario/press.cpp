#include "plc/scenario/press.h"

#include "plc/motion/motion.h"
#include "plc/scenario/words.h"

#include <algorithm>
#include <cmath>

namespace plc {

using namespace press_map;

namespace {

constexpr double kStepsPerMinute = 60000.0 / Press::kStepMs;
constexpr int kUsualJobSize = 100;
constexpr int kStepsUntilAcknowledged = 160;
constexpr int kStepsOfWarning = 100;
constexpr int kStepsBetweenFaults = 1200;
constexpr double kFaultPerStep = 1.0 / 1200;
constexpr double kWarningPerStep = 1.0 / 1500;
constexpr double kBadPart = 0.03;
constexpr int kSpeedUpPerStep = 5; ///< tenths of a stroke a minute
constexpr int kTooHot = 200;       ///< tenths of a degree above the set point
constexpr quint32 kEnergyPerStroke = 14;

/** The recipe that is in the PLC when it is delivered. */
const quint16 kFirstRecipe[kRecipeWords] = {1, 300, 180, 850, 2500, 200, 1800, 1850, 1850, 1800};

const char *const kJobs[] = {"BRACKET-0815", "COVER-1200", "HINGE LEFT", "HINGE RIGHT"};

int wordOf(const Memory &memory, int address)
{
    return memory.word('D', address).value_or(0);
}

void put(Memory &memory, int address, double value)
{
    memory.setWord('D', address, static_cast<quint16>(std::lround(value)));
}

bool button(const Memory &memory, int bit)
{
    return memory.bit('M', 0, bit).value_or(false);
}

/** How hard the ram presses, 0 to 1: only near the bottom. */
double gripAt(double turn)
{
    return std::max(0.0, 1 - std::abs(turn - 0.5) * 8);
}

void approach(double &value, double aim, double share)
{
    value += (aim - value) * share;
}

} // namespace

Press::Press(quint32 seed)
    : m_random(seed)
    , m_quietSteps(kStepsBetweenFaults)
{}

/** From 0 to 1. The library's own distributions differ from one to the other. */
double Press::chance()
{
    return static_cast<double>(m_random()) / 4294967296.0;
}

void Press::advance(Memory &memory, qint64 nowMs)
{
    const qint64 last = std::max<qint64>(nowMs, 0) / kStepMs;
    if (m_step < 0) {
        switchOn(memory);
        m_step = 0;
        show(memory);
    }
    for (; m_step < last; ++m_step) {
        followRecipe(memory);
        obeyButtons(memory);
        watch(memory);
        turn(memory);
        warm(memory);
        show(memory);
    }
}

/** Fills in what neither the command line nor a memory file has set. */
void Press::switchOn(Memory &memory)
{
    for (int i = 0; i < kRecipeWords; ++i) {
        if (wordOf(memory, kRecipe + i) == 0) {
            memory.setWord('D', kRecipe + i, kFirstRecipe[i]);
        }
    }
    memory.setBit('P', 0, kDoorClosed, true);
    if (wordOf(memory, kJobSize) == 0) {
        memory.setWord('D', kJobSize, static_cast<quint16>(toBcd(kUsualJobSize)));
    }
    if (wordOf(memory, kJobName) == 0) {
        putText(memory, kJobName, kJobNameWords, kJobs[0]);
    }
    followRecipe(memory);
}

void Press::followRecipe(Memory &memory)
{
    Recipe recipe{};
    for (int i = 0; i < kRecipeWords; ++i) {
        recipe[static_cast<std::size_t>(i)] = memory.word('D', kRecipe + i).value_or(0);
    }
    if (recipe == m_recipe) {
        return;
    }
    m_recipe = recipe;
    memory.setWord('D', kSpeedSet, recipe[kRecipeSpeed]);
    memory.setWord('D', kPressureSet, recipe[kRecipePressure]);
    memory.setWord('D', kTemperatureSet, recipe[kRecipeTemperature]);
}

void Press::obeyButtons(Memory &memory)
{
    if (button(memory, kReset)) {
        m_faultSteps = 0;
        m_state = m_state == PressState::Fault ? PressState::Stopped : m_state;
    }
    if (button(memory, kStop) && isRunning()) {
        m_state = PressState::Stopped;
    } else if (button(memory, kStart) && m_state == PressState::Stopped) {
        m_state = PressState::Running;
    }
    for (const int bit : {kStart, kStop, kReset}) {
        memory.setBit('M', 0, bit, false);
    }
}

/** Raises alarms, and takes away those whose reason is gone. */
void Press::watch(Memory &memory)
{
    // Both are drawn at every step, so that what follows does not depend on the state.
    const bool fails = chance() < kFaultPerStep;
    const bool warns = chance() < kWarningPerStep;
    m_quietSteps = std::max(m_quietSteps - 1, 0);
    if (fails && isRunning() && m_quietSteps == 0) {
        m_faultSteps = kStepsUntilAcknowledged;
        m_quietSteps = kStepsBetweenFaults;
    } else if (m_faultSteps > 0 && --m_faultSteps == 0) {
        m_state = PressState::Running;
    }
    m_warningSteps = warns ? kStepsOfWarning : std::max(m_warningSteps - 1, 0);
    const bool open = !memory.bit('P', 0, kDoorClosed).value_or(false);
    const bool hot = m_temperature > wordOf(memory, kTemperatureSet) + kTooHot;
    m_alarms = unsigned{open} << unsigned{kDoorAlarm} | unsigned{hot} << unsigned{kHeatAlarm} |
               unsigned{m_faultSteps > 0} << unsigned{kPressureAlarm} |
               unsigned{m_warningSteps > 0} << unsigned{kOilWarning};
    if (open || hot || m_faultSteps > 0) {
        m_state = PressState::Fault;
    }
}

void Press::turn(Memory &memory)
{
    const double aim = isRunning() ? std::min(wordOf(memory, kSpeedSet), 1200) : 0;
    // It brakes four times as fast as it speeds up.
    m_speed += std::clamp(aim - m_speed, -4.0 * kSpeedUpPerStep, 1.0 * kSpeedUpPerStep);
    const int timer = memory.word('T', kDwellTimer).value_or(0);
    const int dwell = m_recipe[kRecipeDwell] / 10;
    const bool down = m_turn >= 0.5 && timer < dwell && m_speed > 0;
    if (down) {
        const int next = std::min(timer + kStepMs / 10, dwell);
        memory.setWord('T', kDwellTimer, static_cast<quint16>(next));
        memory.setContact('T', kDwellTimer, next == dwell);
        return;
    }
    const double before = m_turn;
    m_turn += m_speed / 10 / kStepsPerMinute;
    if (before < 0.5 && m_turn >= 0.5) {
        memory.setWord('T', kDwellTimer, 0);
        memory.setContact('T', kDwellTimer, false);
    }
    if (m_turn >= 1) {
        m_turn -= std::floor(m_turn);
        finishStroke(memory);
    }
}

void Press::finishStroke(Memory &memory)
{
    const bool bad = chance() < kBadPart;
    putDouble(memory, kStrokes, takeDouble(memory, kStrokes) + 1);
    const int place = bad ? kBad : kGood;
    putDouble(memory, place, takeDouble(memory, place) + 1);
    putQuad(memory, kEnergy, takeQuad(memory, kEnergy) + kEnergyPerStroke);
    approach(m_heat, 60, 0.05);
    if (bad) {
        return;
    }
    const int done = wordOf(memory, kJobDone) + 1;
    // A size that is no number counts as the usual one.
    const int size = fromBcd(memory.word('D', kJobSize).value_or(0));
    if (done >= (size > 0 ? size : kUsualJobSize)) {
        nextJob(memory);
        return;
    }
    memory.setWord('D', kJobDone, static_cast<quint16>(done));
    memory.setContact('C', kJobCounter, false);
}

void Press::nextJob(Memory &memory)
{
    m_job = (m_job + 1) % static_cast<int>(std::size(kJobs));
    putText(memory, kJobName, kJobNameWords, kJobs[m_job]);
    memory.setWord('D', kJobDone, 0);
    memory.setContact('C', kJobCounter, true);
}

void Press::warm(Memory &memory)
{
    approach(m_heat, 0, 0.002);
    const double noise = (chance() - 0.5) * 2;
    approach(m_temperature, wordOf(memory, kTemperatureSet) + m_heat + 20 * noise, 0.01);
    for (std::size_t i = 0; i < m_zones.size(); ++i) {
        const auto aim = static_cast<qint16>(m_recipe[kRecipeZones + i]);
        approach(m_zones[i], aim + m_heat / 3 + 10 * (chance() - 0.5), 0.005);
    }
}

void Press::show(Memory &memory)
{
    const double grip = isRunning() ? gripAt(m_turn) : 0;
    put(memory, kSpeed, m_speed);
    const double height = (1 + std::cos(m_turn * kTurn)) / 2;
    put(memory, kPosition, height * m_recipe[kRecipeStroke] - grip * 12);
    put(memory, kTemperature, std::clamp(m_temperature, 0.0, 65535.0));
    put(memory, kLoad, 8 + grip * 74);
    const double pressure = wordOf(memory, kPressureSet) * (0.2 + 0.8 * grip);
    putFloat(memory, kPressure, static_cast<float>(m_faultSteps > 0 ? pressure / 4 : pressure));
    putDouble(memory, kTilt, static_cast<quint32>(std::lround(std::sin(m_turn * kTurn) * 180)));
    memory.setWord('D', kState, static_cast<quint16>(m_state));
    memory.setWord('D', kAlarms, static_cast<quint16>(m_alarms));
    putDouble(memory, kJobTotal, toBcd(takeDouble(memory, kGood)));
    for (int i = 0; i < kZoneCount; ++i) {
        put(memory, kZones + i, m_zones[static_cast<std::size_t>(i)]);
    }
    memory.setWord('C', kJobCounter, static_cast<quint16>(wordOf(memory, kJobDone)));
    memory.setBit('M', 0, kRunning, isRunning());
}

} // namespace plc
