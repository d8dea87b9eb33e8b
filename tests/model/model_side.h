#pragma once

#include <optional>
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
        : m_model(kRecipeBytes, [this] { actWithin(); })
    {}
    ModelSide(const ModelSide &) = delete;
    ModelSide &operator=(const ModelSide &) = delete;

    Observation apply(const Operation &operation, const std::string &answer);

    /** A host changes the recipe only while no transfer runs, and asks for word registers. */
    [[nodiscard]] bool mayApply(const Operation &operation) const
    {
        return operation.act != Act::Recipe || !m_model.recipeInFlight();
    }

    [[nodiscard]] const SchedulerModel &model() const { return m_model; }

private:
    void actWithin();
    Observation act(const Operation &operation, const std::string &answer);
    std::string send(Bytes &values);

    std::optional<Operation> m_within; ///< waits for the next notice
    SchedulerModel m_model;
};

} // namespace model
