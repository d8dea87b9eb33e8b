#pragma once

#include <QByteArray>

#include <optional>
#include <random>
#include <vector>

namespace plc {

/** Bytes to be sent to the master, and when. */
struct Chunk
{
    /** Milliseconds after the previous chunk; for the first, after the end of the request. */
    int delayMs = 0;
    QByteArray bytes;
};

enum class FaultKind {
    Silence,      ///< the request is lost: not carried out, not answered
    Delay,        ///< the answer is low to high milliseconds late
    NoiseBefore,  ///< low to high random bytes before the answer, no control characters of frames
    NoiseAfter,   ///< the same after the answer
    Split,        ///< the answer comes byte by byte, low to high milliseconds apart
    WrongCheck,   ///< the block check of the answer is wrong; no effect if it has none
    WrongStation, ///< the answer carries station number `low`; negative: the next station's
    Refuse,       ///< the request is refused with error code `low` and not carried out
    Truncate,     ///< only the first low to high bytes are sent; negative: a random part
    Oversize,     ///< zeros before ETX make the answer low to high bytes long
    Echo,         ///< the request comes back before the answer, as from a two-wire converter
    Repeat,       ///< low to high copies of the answer follow it, with no gap in between
};

/** At most so many copies follow an answer. */
constexpr int kMaxCopies = 5;

/** One way to misbehave. FaultKind says what low and high mean. */
struct Fault
{
    FaultKind kind = FaultKind::Silence;
    int low = 0;
    int high = 0;
    int times = -1;    ///< how many times it fires before it stops; negative: no limit
    int percent = 100; ///< the chance that a request fires it, 0-100
};

/** A fault with the default values of its kind, which the command line uses when none are given. */
Fault usualFault(FaultKind kind);

/**
 * The faults of one station: decides which of them fire, and damages the answers.
 *
 * There is one random generator, so the same seed and the same requests give the same faults.
 */
class Faults
{
public:
    explicit Faults(quint32 seed = 1);

    /** Restarts the random generator. The faults stay, and so do the times they have left. */
    void setSeed(quint32 seed);

    /** Those that are over make room for it. */
    void add(const Fault &fault);
    void clear() { m_faults.clear(); }
    /** In the order in which they were added, with the times they have left: 0 when they are over.
     */
    const std::vector<Fault> &all() const { return m_faults; }

    /** Draws the faults that fire for the next request, and counts down their times. */
    std::vector<Fault> draw();

    /** The first fault of this kind among those that fired. */
    static std::optional<Fault> find(const std::vector<Fault> &fired, FaultKind kind);

    /**
     * What the master receives when these faults fired. Silence and Refuse have no effect here:
     * they concern the request. Nothing is sent for an empty answer.
     */
    std::vector<Chunk> disturb(const std::vector<Fault> &fired, const QByteArray &request,
                               const QByteArray &answer);

private:
    int between(int low, int high);
    QByteArray noise(int count);
    QByteArray disturbFrame(const std::vector<Fault> &fired, const QByteArray &answer);
    std::vector<QByteArray> pieces(const std::vector<Fault> &fired, const QByteArray &answer);

    std::vector<Fault> m_faults;
    std::mt19937 m_random;
};

} // namespace plc
