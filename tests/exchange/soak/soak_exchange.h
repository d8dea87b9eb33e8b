#pragma once

#include "exchange/soak/soak_bench.h"

#include <optional>

namespace exchange::soak {

using Job = model::SchedulerModel::Job;

/** A job that has ended, and whether well. */
struct Ended
{
    Job job = Job::Idle;
    Range range;
    bool good = false;
    bool wasRefused = false; ///< the PLC's answer to its last frame was a refusal
};

/**
 * Runs exchanges. Which frame goes out and what comes of an answer the model tells; here the
 * driver's actions are checked against the PLC: that a good answer is one that a PLC has given,
 * that it is about the place that was asked for, and that an acknowledged write is in the PLC.
 */
class Exchanger
{
public:
    explicit Exchanger(Bench &bench);
    ~Exchanger();
    Exchanger(const Exchanger &) = delete;
    Exchanger &operator=(const Exchanger &) = delete;

    /** One frame and its answer. @return the job, where it has ended with that. */
    std::optional<Ended> run();

    /** Hands over an answer that no frame has asked for: nothing comes of it. */
    void takeStray(const QByteArray &answer);

    /** A frame waits to be sent again, or a second one for the same job. */
    bool isInFlight() const { return m_bench.model().inFlight() != nullptr; }

private:
    void begin();
    bool isWrite() const { return m_frame.text[3] == 'w'; }
    /** It writes words that were read before for the sake of their bits. */
    bool isPatched() const { return isWrite() && m_frame.dataPlace > 0; }
    const Range &range() const { return m_frame.item.range; }

    // The PLC's side.
    void takeServed(const plc::Exchange &exchange);
    void checkServed();

    // The answer.
    std::optional<Ended> judge(const LineAnswer &answer);
    void checkAccepted(const LineAnswer &answer);
    void checkRead(bool isOwn) const;
    void checkInPlc();
    std::vector<int> valuesIn(const QByteArray &answer) const;
    Ended end(bool good);
    void countEnd(bool good, long long readsDropped);

    Bench &m_bench;
    model::Frame m_frame;         ///< the one on its way
    std::vector<int> m_values;    ///< that its job writes
    std::vector<int> m_wordsRead; ///< by the last reading
    bool m_carriedOut = false;    ///< the PLC did what the job asks for, once at least
    Job m_transfer = Job::Idle;   ///< the last recipe job
    int m_served = 0;             ///< times that a PLC's end saw the request that was sent last
    plc::Exchange m_seen;
};

} // namespace exchange::soak
