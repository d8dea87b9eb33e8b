#pragma once

#include "plc/scenario/press_map.h"
#include "plc/scenario/scenario.h"

#include <array>
#include <random>

namespace plc {

/** What the press is doing; the values are those of its state word. */
enum class PressState : quint16 {
    Stopped = 0,
    Running = 1,
    Fault = 2,
};

/**
 * A press that makes parts, job after job. It follows its set points, its recipe whenever that is
 * written anew, and its buttons. Its counters are kept in the memory, where a master may set them.
 * Now and then it has a pressure fault, which somebody acknowledges after a while.
 */
class Press : public Scenario
{
public:
    /** Time of one step in milliseconds. */
    static constexpr int kStepMs = 50;

    /** The same seed, steps and writes of masters give the same values. */
    explicit Press(quint32 seed);

    void advance(Memory &memory, qint64 nowMs) override;

private:
    using Recipe = std::array<quint16, press_map::kRecipeWords>;

    void switchOn(Memory &memory);
    void followRecipe(Memory &memory);
    void obeyButtons(Memory &memory);
    void watch(Memory &memory);
    void turn(Memory &memory);
    void finishStroke(Memory &memory);
    void nextJob(Memory &memory);
    void warm(Memory &memory);
    void show(Memory &memory);

    double chance();
    bool isRunning() const { return m_state == PressState::Running; }

    std::mt19937 m_random;
    qint64 m_step = -1; ///< the last one that was made
    Recipe m_recipe{};
    PressState m_state = PressState::Running;
    unsigned m_alarms = 0;
    int m_quietSteps;       ///< until the next fault may come
    int m_faultSteps = 0;   ///< until somebody acknowledges the fault
    int m_warningSteps = 0; ///< until the oil is filled up
    double m_speed = 0;     ///< strokes a minute, tenths
    double m_turn = 0;      ///< of the crank, 0 to 1; the ram is down at a half
    double m_temperature = 650;
    std::array<double, press_map::kZoneCount> m_zones{{1500, 1500, 1500, 1500}};
    double m_heat = 0; ///< what the work adds, tenths of a degree
    int m_job = 0;
};

} // namespace plc
