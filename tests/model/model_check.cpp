#include "model/model_check.h"

#include "model/answer_text.h"
#include "model/sequence_shrink.h"
#include "model/side_by_side.h"

#include <optional>

namespace model {

namespace {

constexpr const char *kUsualProperties = "7#0#0#3#60";
constexpr int kMostDrainSteps = 8000;
constexpr int kQuietInARow = 12; // more than the writes in a row, after which the driver rests once

/** A sequence on both sides, with the answers that its steps ask for. */
class Run
{
public:
    explicit Run(HostThreads threads)
        : m_both(threads)
    {}

    void step(const Operation &operation)
    {
        m_now = operation;
        m_both.step(operation, operation.act == Act::Answer
                                   ? answerTo(m_both.model().inFlight(), operation)
                                   : std::string());
    }

    /** Serves all that waits. A request for an unknown register waits for ever. */
    void drain()
    {
        for (const Operation &operation : {makeStep(Act::Handshake), makeStep(Act::Ask, 0, "write"),
                                           makeStep(Act::Ask, 0, "read"), makeStep(Act::Monitor)}) {
            step(operation);
        }
        int quiet = 0;
        for (int i = 0; i < kMostDrainSteps && quiet < kQuietInARow; ++i) {
            step(makeStep(Act::Send));
            const bool sent = m_both.model().inFlight() != nullptr;
            quiet = sent ? 0 : quiet + (m_both.model().drained() ? kQuietInARow / 2 : 1);
            if (sent) {
                step(makeStep(Act::Answer, i % 7));
            }
        }
    }

    void lookAtAll(const Sequence &sequence)
    {
        for (const Operation &operation : sequence) {
            for (const Range &range : operation.ranges) {
                step(makeStep(Act::Look, {range}));
            }
        }
    }

    [[nodiscard]] const Operation &now() const { return m_now; }
    [[nodiscard]] unsigned long steps() const { return m_both.steps(); }

private:
    SideBySide m_both;
    Operation m_now;
};

/** Where driver and model part. */
struct Disagreement
{
    std::size_t step; ///< index in the sequence; its size: while the lists were emptied at the end
    std::string what; ///< the step, and what each of the two showed
};

/**
 * Runs a sequence on the driver and the model side by side, from a start with the usual properties.
 * Afterwards the cyclic reads are taken away and everything that still waits is served, and the
 * panel looks at every range that occurred.
 */
std::optional<Disagreement> run(const Sequence &sequence, HostThreads threads,
                                unsigned long *steps = nullptr)
{
    std::optional<Disagreement> disagreement;
    Run both(threads);
    std::size_t place = 0;
    try {
        both.step(makeStep(Act::Start, 0, kUsualProperties));
        for (; place < sequence.size(); ++place) {
            both.step(sequence[place]);
        }
        both.drain();
        both.lookAtAll(sequence);
    } catch (const Difference &difference) {
        const char *const when =
            place < sequence.size() ? "" : "while the lists were emptied at the end\n";
        disagreement = Disagreement{place, when + textOf(both.now()) + "\n" + difference.what()};
    }
    if (steps != nullptr) {
        *steps += both.steps();
    }
    return disagreement;
}

} // namespace

std::string disagreementOf(const Sequence &sequence, HostThreads threads, unsigned long *steps)
{
    const auto first = run(sequence, threads, steps);
    if (!first) {
        return std::string();
    }
    const Sequence reached(
        sequence.begin(),
        sequence.begin() + static_cast<std::ptrdiff_t>(
                               first->step < sequence.size() ? first->step + 1 : sequence.size()));
    const Sequence shortest =
        shrink(reached, [=](const Sequence &other) { return run(other, threads).has_value(); });
    const auto last = run(shortest, threads);
    std::string text = "at " + (last ? last : first)->what + "\nshortest of " +
                       std::to_string(sequence.size()) + " operations, as a row:\n  \"" +
                       textOf(shortest) + "\"\nstep by step:\n";
    for (std::size_t i = 0; i < shortest.size(); ++i) {
        text += "  " + std::to_string(i + 1) + "  " + textOf(shortest[i]) + "\n";
    }
    return text;
}

} // namespace model
