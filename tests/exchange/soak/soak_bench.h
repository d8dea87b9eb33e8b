#pragma once

#include "exchange/soak/soak_plan.h"
#include "exchange/soak/soak_plant.h"
#include "exchange/soak/soak_tally.h"
#include "exchange/virtual_line.h"
#include "model/side_by_side.h"

#include <deque>
#include <functional>
#include <vector>

namespace exchange::soak {

/**
 * One phase's panel, line and PLCs. Whatever the panel does is done to the driver and to the model
 * of it, which tells what the driver must show, and both are compared at once.
 */
class Bench
{
public:
    Bench(const Plan &plan, Tally &tally);

    const Plan &plan() const { return m_plan; }
    Tally &tally() { return m_tally; }
    VirtualLine &line() { return m_line; }
    Plant &plant() { return m_plant; }
    const model::SchedulerModel &model() const { return m_both.model(); }
    const std::vector<Range> &screen() const { return m_screen; }
    bool isRecipeRequested() const { return model().requests[0] + model().requests[1] != 0; }

    /** One step of the host. @param answer what has come in, for `Act::Answer` */
    void step(const Operation &operation, const QByteArray &answer = QByteArray());
    void show(const std::vector<Range> &screen);
    void restart();

    /** The bytes that the panel sees of a range. */
    const model::Bytes &look(const Range &range);
    /** Looks at everything that the driver knows. */
    void lookAtAll();

    /** @param reaction what the host does within the driver's next calls; none: nothing any more */
    void setReaction(const std::function<std::vector<Operation>()> &reaction);

    /** Keeps the last steps as text for a phase that is replayed. */
    void setTraced(bool on) { m_traced = on; }
    void trace(const std::string &step);
    std::string traceText() const;

private:
    const Plan m_plan;
    Tally &m_tally;
    VirtualLine m_line;
    Plant m_plant;
    model::SideBySide m_both;
    std::vector<Range> m_screen;
    std::function<std::vector<Operation>()> m_reaction;
    bool m_traced = false;
    std::deque<std::string> m_trace;
};

} // namespace exchange::soak
