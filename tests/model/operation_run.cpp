#include "model/operation_run.h"

#include <algorithm>

#include "model/answer_text.h"
#include "model/side_by_side.h"

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

} // namespace

std::optional<Disagreement> run(const Sequence &sequence, HostThreads threads, unsigned long *steps)
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

} // namespace model
