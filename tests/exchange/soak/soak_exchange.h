#pragma once

#include "exchange/soak/soak_bench.h"

#include "plc/line.h"
#include "plc/wire.h"

#include <optional>

namespace exchange::soak {

// ENQ st(2) command type(2)
constexpr int kCommandPosition = 3;
// ACK st(2) r type(2) blocks(2) bytes(2), and behind the data ETX check(2)
constexpr int kDataPosition = 10;
constexpr int kEndLength = 3;
constexpr int kAcknowledgement = 9;

inline bool isPositive(const QByteArray &answer)
{
    return !answer.isEmpty() && answer.at(0) == plc::kAck;
}

/** A job that has ended, and whether well. */
struct Ended
{
    JobKind kind = JobKind::None;
    Range range;
    bool good = false;
    bool wasRefused = false; ///< the PLC's answer to its last frame was a refusal
};

/**
 * Runs exchanges and holds each against the rules: that the frame serves the job whose turn it is,
 * that a good answer and nothing else is accepted, that bad ones are counted, that an acknowledged
 * write is in the PLC, and what panel and host see afterwards.
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
    void takeStray(QByteArray answer);

    /** A frame waits to be sent again, or a second one for the same job. */
    bool isInFlight() const { return m_inFlight; }
    /** Communication has started anew: whatever was in flight is forgotten. */
    void forget() { m_inFlight = false; }

private:
    // The job in flight.
    void begin(JobKind kind);
    bool isWriteFrame() const;
    int wordsInAnswer() const;
    int goodLength() const;
    void checkFrame() const;

    // The PLC's side.
    void takeServed(const plc::Exchange &exchange);
    void checkServed();

    // The answer.
    std::optional<Ended> judge(int result);
    void checkDescription(const Turn &turn) const;
    void checkAccepted(const Turn &turn);
    void checkRead(const std::vector<int> &values, bool isOwn) const;
    void checkInPlc();
    std::vector<int> valuesIn(const QByteArray &answer) const;
    std::optional<Ended> accept(const Turn &turn);
    std::optional<Ended> giveUp();
    void receiveValues(const std::vector<int> &values);
    Ended end(bool good);

    Bench &m_bench;
    bool m_inFlight = false;
    JobKind m_kind = JobKind::None;
    Job m_job;
    bool m_hasReadHalf = false; ///< its next frame reads the words whose bits it writes
    bool m_throughWords = false;
    int m_bad = 0;             ///< bad answers to the frame
    bool m_carriedOut = false; ///< the PLC did what the frame asks for, once at least
    std::vector<int> m_wordsRead;
    QByteArray m_request; ///< of the frame, once it was sent
    int m_served = 0;     ///< times that a PLC's end saw the request that was sent last
    plc::Exchange m_seen;
};

} // namespace exchange::soak
