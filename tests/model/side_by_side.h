#pragma once

#include <stdexcept>
#include <string>

#include "model/driver_side.h"
#include "model/model_side.h"

namespace model {

/** Where driver and model part: what each of the two showed. */
struct Difference : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/** Driver and model under one host: whatever is done is done to both, and both are compared. */
class SideBySide
{
public:
    explicit SideBySide(HostThreads threads)
        : m_driver(threads)
    {}

    /**
     * Throws a Difference.
     * @param answer  the bytes that come in, for `Act::Answer`
     */
    void step(const Operation &operation, const std::string &answer = std::string());

    /** What waits for a callback is not done. */
    void forgetWithin()
    {
        m_driver.forgetWithin();
        m_model.forgetWithin();
    }

    [[nodiscard]] const SchedulerModel &model() const { return m_model.model(); }
    /** What the last step showed. */
    [[nodiscard]] const Observation &shown() const { return m_shown; }
    /** Steps to come from within callbacks. */
    [[nodiscard]] std::size_t waitingWithin() const { return m_model.waitingWithin(); }
    [[nodiscard]] unsigned long steps() const { return m_steps; }

private:
    void compareBuffers() const;

    DriverSide m_driver;
    ModelSide m_model;
    Observation m_shown;
    unsigned long m_steps = 0;
};

} // namespace model
