#pragma once

#include "plc/fault_kinds.h"

#include <QString>

#include <array>
#include <stdexcept>

namespace exchange::soak {

/** A promise that was not kept. Ends the run. */
struct Violation : std::runtime_error
{
    explicit Violation(const QString &what)
        : std::runtime_error(what.toStdString())
    {}
};

/** @param what is only asked for where the promise was broken: a function that gives the text. */
template <typename Text>
void require(bool kept, const Text &what)
{
    if (!kept) {
        throw Violation(what());
    }
}

inline void require(bool kept, const char *what)
{
    if (!kept) {
        throw Violation(QString::fromLatin1(what));
    }
}

/** What became of jobs, and what happened around them. */
enum class Event {
    WriteQueued,
    WriteAcknowledged,
    WriteGivenUp,
    WriteCut, ///< waited when communication started anew
    ReadingQueued,
    ReadingDone,
    ReadingGivenUp,
    ReadingCut,
    CyclicDone,
    CyclicGivenUp,
    RecipeWritten, ///< whole transfers
    RecipeRead,
    RecipeGivenUp,
    PlcChange,
    StationAway,
    Restart,
    NewScreen,
    Reaction, ///< something written or asked for within a call of the driver
    StrayAnswer,
    Idle,
    Count
};

/**
 * Rules of the driver by which a write, a reading or a shown value does not become what the panel
 * asked for. Each is counted where it applies and excuses nothing else.
 */
enum class Excuse {
    WriteFolded,          ///< a newer write of the same place took its turn
    WriteDisplaced,       ///< 513 waited: the newest took the last one's turn
    ReadingFolded,        ///< a reading of the same place waited already
    ReadingDisplaced,     ///< 513 waited
    ReadingDropped,       ///< a reading before it was given up
    NewerSettled,         ///< the end of one write took a newer value of the place for confirmed
    ForeignAcknowledged,  ///< the answer to an earlier request was taken for this one's
    ForeignRead,          ///< the same with a reading
    CarriedOutAndGivenUp, ///< the PLC had done it, its answers were lost
    BitsBeyondWord,       ///< several bits over the end of a word: the rest is not sent
    BitsOverWords,        ///< several bits in two words or more: no PLC takes the frame
    WordPutBack,          ///< the PLC changed the word between its reading and its writing
    FrameTooLong,         ///< 59 or 60 words in one write: more than a PLC's frame holds
    TransferJoined,       ///< a recipe request began at the block where the other one was
    NeverSent,            ///< at rest a place shows the panel's value: its writes stay in the cache
    DisplacedStays,       ///< the same: its write was displaced, so no end of it came
    MarkStays,            ///< the same: a second mark of a bit is left, its two writes became one
    BlockRefused,         ///< at rest a block is not there: the PLC has not all of its words
    StationMissing,       ///< at rest: nobody has this station number
    Count
};

/** How often each thing happened. */
class Tally
{
public:
    void count(Event event, long long times = 1) { at(m_events, event) += times; }
    void count(Excuse excuse, long long times = 1) { at(m_excuses, excuse) += times; }
    void countFault(plc::FaultKind kind) { ++at(m_faults, kind); }
    void countFrame() { ++m_frames; }

    long long of(Event event) const { return m_events[static_cast<std::size_t>(event)]; }
    long long of(Excuse excuse) const { return m_excuses[static_cast<std::size_t>(excuse)]; }
    long long of(plc::FaultKind kind) const { return m_faults[static_cast<std::size_t>(kind)]; }
    long long frames() const { return m_frames; }

    /** Every count with its name, one a line. */
    QString report() const;

private:
    template <typename Counts, typename Name>
    static long long &at(Counts &counts, Name name)
    {
        return counts[static_cast<std::size_t>(name)];
    }

    std::array<long long, static_cast<std::size_t>(Event::Count)> m_events{};
    std::array<long long, static_cast<std::size_t>(Excuse::Count)> m_excuses{};
    std::array<long long, plc::kFaultKinds> m_faults{};
    long long m_frames = 0;
};

} // namespace exchange::soak
