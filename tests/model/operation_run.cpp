#include "model/operation_run.h"

#include <algorithm>

#include "model/answer_text.h"
#include "model/model_side.h"

namespace model {

namespace {

constexpr const char *kUsualProperties = "7#0#0#3#60";
constexpr int kMostDrainSteps = 8000;
constexpr int kQuietInARow = 12; // more than the writes in a row, after which the driver rests once

Operation ask(const char *which)
{
    Operation operation;
    operation.act = Act::Ask;
    operation.text = which;
    return operation;
}

Operation plain(Act act, int value = 0)
{
    Operation operation;
    operation.act = act;
    operation.value = value;
    return operation;
}

class SideBySide
{
public:
    explicit SideBySide(HostThreads threads)
        : m_driver(threads)
    {}

    /** @return  what differs after the step; "" for nothing */
    std::string step(const Operation &operation)
    {
        if (!m_model.mayApply(operation)) {
            return std::string();
        }
        ++m_steps;
        const std::string answer = operation.act == Act::Answer
                                       ? answerTo(m_model.model().inFlight(), operation)
                                       : std::string();
        const Observation expected = m_model.apply(operation, answer);
        const std::string what = difference(expected, m_driver.apply(operation, answer));
        return what.empty() ? sharedDifference() : what;
    }

    /** Serves all that waits. A request for an unknown register waits for ever. */
    std::string drain()
    {
        for (const Operation &operation :
             {plain(Act::Handshake), ask("write"), ask("read"), plain(Act::Monitor)}) {
            std::string what = step(operation);
            if (!what.empty()) {
                return what;
            }
        }
        int quiet = 0;
        for (int i = 0; i < kMostDrainSteps && quiet < kQuietInARow; ++i) {
            std::string what = step(plain(Act::Send));
            const bool sent = m_model.model().inFlight() != nullptr;
            quiet = sent ? 0 : quiet + (m_model.model().drained() ? kQuietInARow / 2 : 1);
            if (what.empty() && sent) {
                what = step(plain(Act::Answer, i % 7));
            }
            if (!what.empty()) {
                return what;
            }
        }
        return std::string();
    }

    std::string lookAtAll(const Sequence &sequence)
    {
        Operation look = plain(Act::Look);
        for (const Operation &operation : sequence) {
            for (const Range &range : operation.ranges) {
                look.ranges = {range};
                std::string what = step(look);
                if (!what.empty()) {
                    return textOf(look) + "\n" + what;
                }
            }
        }
        return std::string();
    }

    [[nodiscard]] unsigned long steps() const { return m_steps; }

private:
    std::string sharedDifference()
    {
        const SchedulerModel &model = m_model.model();
        const Bytes &block = m_driver.block();
        for (std::size_t i = 0; i < 2; ++i) {
            const unsigned seen = block[DriverSide::kRequestPlace + i];
            if (model.requests[i] != seen) {
                return "  model:  request byte " + std::to_string(i) + " is " +
                       std::to_string(model.requests[i]) + "\n  driver: it is " +
                       std::to_string(seen);
            }
        }
        const Bytes &buffer = m_driver.recipeBuffer();
        const auto [expected, seen] =
            std::mismatch(model.recipeBuffer.begin(), model.recipeBuffer.end(), buffer.begin());
        if (expected != model.recipeBuffer.end()) {
            return "  model:  recipe byte " + std::to_string(seen - buffer.begin()) + " is " +
                   std::to_string(*expected) + "\n  driver: it is " + std::to_string(*seen);
        }
        return std::string();
    }

    DriverSide m_driver;
    ModelSide m_model;
    unsigned long m_steps = 0;
};

} // namespace

std::optional<Disagreement> run(const Sequence &sequence, HostThreads threads, unsigned long *steps)
{
    SideBySide both(threads);
    std::string what;
    std::size_t place = 0;
    Operation start = plain(Act::Start);
    start.text = kUsualProperties;
    both.step(start);
    for (; place < sequence.size() && what.empty(); ++place) {
        what = both.step(sequence[place]);
        if (!what.empty()) {
            what.insert(0, textOf(sequence[place]) + "\n");
            break;
        }
    }
    if (what.empty()) {
        what = both.drain();
        if (what.empty()) {
            what = both.lookAtAll(sequence);
        }
        if (!what.empty()) {
            what.insert(0, "while the lists were emptied at the end\n");
        }
    }
    if (steps != nullptr) {
        *steps += both.steps();
    }
    if (what.empty()) {
        return std::nullopt;
    }
    return Disagreement{place, what};
}

} // namespace model
