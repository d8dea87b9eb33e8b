#pragma once

#include "exchange/host_loop.h"
#include "exchange/soak/soak_jobs.h"
#include "exchange/soak/soak_plan.h"
#include "exchange/soak/soak_plant.h"
#include "exchange/soak/soak_tally.h"
#include "exchange/soak/soak_view.h"
#include "support/other_thread.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace exchange::soak {

/**
 * One phase's panel, line and PLCs, and beside them what they must be: the jobs that wait, the
 * panel's values, the PLCs' memories, the recipe buffer. Whatever is done is done to both sides,
 * and both are compared at once.
 */
class Bench
{
public:
    Bench(const Plan &plan, Tally &tally);
    ~Bench();
    Bench(const Bench &) = delete;
    Bench &operator=(const Bench &) = delete;

    const Plan &plan() const { return m_plan; }
    Tally &tally() { return m_tally; }
    HostLoop &host() { return m_host; }
    Plant &plant() { return m_plant; }
    Jobs &jobs() { return m_jobs; }
    PanelView &view() { return m_view; }
    const Keys &screen() const { return m_screen; }

    // What the panel does.
    void write(const Range &range, const std::vector<int> &values);
    void readOnce(const Range &range);
    void show(const Keys &screen);
    void setRecipe(const QVector<_RCP_VAR_PRO> &items);
    void setRecipeWord(int offset, int value);
    void restart();

    // The recipe buffer, as it must be.
    std::vector<int> recipeWords(int offset, int count) const;
    void expectRecipeWords(int offset, const std::vector<int> &words);
    void compareRecipeBuffer() const;
    bool isRecipeRequested();

    /** What the host must hear within a call; what it asks for meanwhile is done here as well. */
    Calls &expected() { return m_expected; }
    /** Before a call that may make the driver call back. */
    void listen();
    /** What was heard since listen() must be what was expected. */
    void compareCalls();
    /** @param reaction what the host does within a call of the driver, if anything */
    void setReaction(std::function<std::optional<Job>()> reaction);
    /** As many jobs wait, and as many units are known, as there must be. */
    void compareSizes() const;

    /** Keeps the last steps as text for a phase that is replayed. */
    void setTraced(bool on) { m_traced = on; }
    void trace(const std::function<QString()> &step);
    QString traceText() const;

private:
    /** What the host did within a call of the driver: a write, or a reading where it has no values.
     */
    struct Reaction
    {
        std::size_t within; ///< so many calls had come, that one included
        Job job;
    };

    static int hear(int device, int station, QString &name, int address);
    void react();
    void followReactions();
    void tellDriver(const Job &job) const;
    static void callDriver(const Job &job);
    void expectWrite(const Job &job);
    void expectReading(const Range &range);

    const Plan m_plan;
    Tally &m_tally;
    HostLoop m_host;
    Plant m_plant;
    Jobs m_jobs;
    PanelView m_view;
    Keys m_screen;
    QVector<_RCP_VAR_PRO> m_recipeItems;
    std::vector<int> m_recipeBuffer;
    Calls m_expected;
    Calls m_heard;
    std::function<std::optional<Job>()> m_reaction;
    std::vector<Reaction> m_reactions;                  ///< since listen()
    std::size_t m_followed = 0;                         ///< how many of them were done here
    int m_depth = 0;                                    ///< reactions within reactions
    std::vector<std::unique_ptr<OtherThread>> m_panels; ///< for each depth; none: this thread
    bool m_traced = false;
    std::deque<QString> m_trace;
};

/** The range that a request of the driver names. */
Range rangeOf(int station, const QString &regName, int address, int count);

} // namespace exchange::soak
