#pragma once

#include <QByteArray>

#include <optional>
#include <random>
#include <vector>

namespace plc {

/** Bytes on their way to the master. */
struct Chunk
{
    /** Milliseconds after the chunk before it; for the first, after the request was complete. */
    int delayMs = 0;
    QByteArray bytes;
};

enum class FaultKind {
    Silence,      ///< the request is lost: not carried out, not answered
    Delay,        ///< the answer comes late, by low to high milliseconds
    NoiseBefore,  ///< low to high random bytes before the answer, none of them a frame character
    NoiseAfter,   ///< the same after the answer
    Split,        ///< the answer comes byte by byte, low to high milliseconds apart
    WrongCheck,   ///< the block check of the answer is wrong; without effect where there is none
    WrongStation, ///< the answer names station `low`; a negative one stands for the next station
    Refuse,       ///< the request is refused with error code `low` and not carried out
    Truncate,     ///< only the first low to high bytes are sent; negative: at random, less than all
    Oversize,     ///< zeros before ETX make the answer low to high bytes long
    Echo,         ///< the request comes back before the answer, as from a two-wire converter
};

/** One way to misbehave. The meaning of low and high is told with each FaultKind. */
struct Fault
{
    FaultKind kind = FaultKind::Silence;
    int low = 0;
    int high = 0;
    int times = -1;    ///< how often it strikes before all is normal again; negative: for ever
    int percent = 100; ///< how likely it strikes at one request, 0-100
};

/** A fault with the usual values of its kind, as the command line takes them when none are given.
 */
Fault usualFault(FaultKind kind);

/**
 * The faults of one station.
 *
 * All chance comes from one generator, so the same seed and the same requests give the same faults.
 */
class Faults
{
public:
    explicit Faults(quint32 seed = 1);

    /** Starts the chance anew; the faults themselves stay, with the times they have left. */
    void setSeed(quint32 seed);

    void add(const Fault &fault) { m_faults.push_back(fault); }
    void clear() { m_faults.clear(); }

    /** Draws the faults that strike the next request and counts them off. */
    std::vector<Fault> strike();

    /** The kind's fault among those drawn, the first where there are several. */
    static std::optional<Fault> find(const std::vector<Fault> &struck, FaultKind kind);

    /**
     * What the master receives when the faults struck an answer: all kinds but Silence and Refuse,
     * which concern the request. An empty answer stays silent whatever struck.
     */
    std::vector<Chunk> disturb(const std::vector<Fault> &struck, const QByteArray &request,
                               const QByteArray &answer);

private:
    int between(int low, int high);
    QByteArray noise(int count);
    QByteArray disturbFrame(const std::vector<Fault> &struck, const QByteArray &answer);

    std::vector<Fault> m_faults;
    std::mt19937 m_random;
};

} // namespace plc
