#pragma once

#include <deque>
#include <string>

#include "model/observation.h"
#include "model/operation.h"
#include "model/scheduler_model.h"

namespace model {

/** The model, used as a host uses the driver. */
class ModelSide
{
public:
    ModelSide()
        : m_model(kRecipeBytes, [this] { hear(); })
    {}
    ModelSide(const ModelSide &) = delete;
    ModelSide &operator=(const ModelSide &) = delete;

    Observation apply(const Operation &operation, const std::string &answer);
    /** What waits for a callback is not done. */
    void forgetWithin() { m_within.clear(); }

    /** A host changes the recipe only while no transfer runs, and asks for word registers. */
    [[nodiscard]] bool mayApply(const Operation &operation) const
    {
        return operation.act != Act::Recipe || !m_model.recipeInFlight();
    }

    [[nodiscard]] const SchedulerModel &model() const { return m_model; }
    [[nodiscard]] Sizes sizes() const
    {
        return {m_model.writes().size(), m_model.onceReads().size(), m_model.cyclicReads().size(),
                m_model.values().size()};
    }
    [[nodiscard]] std::size_t waitingWithin() const { return m_within.size(); }

private:
    void hear();
    Observation act(const Operation &operation, const std::string &answer);
    std::string send(Bytes &values);

    std::deque<Operation> m_within; ///< one for each of the next notices
    bool m_looks = false;           ///< at each place that the host hears of
    SchedulerModel m_model;
};

} // namespace model
