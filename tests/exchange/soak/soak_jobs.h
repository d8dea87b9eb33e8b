#pragma once

#include "exchange/soak/soak_register.h"
#include "exchange/soak/soak_tally.h"

#include <deque>
#include <optional>
#include <vector>

namespace exchange::soak {

enum class JobKind { None, RecipeWrite, RecipeRead, Write, ConditionRead, CyclicRead };

/** One request that waits: what is written or read, and the values of a write. */
struct Job
{
    Range range;
    std::vector<int> values;
};

/** A block of a recipe and its place in the buffer. */
struct RecipeBlock
{
    Range range;
    int offset = 0;
};

/** What became of a request that was put on a list. */
enum class Queued { Appended, Folded, Displaced };

/**
 * The jobs that wait, in the order in which they must be served, and whose turn it is.
 *
 * A request for a range that waits already, but not as the first, takes its place; beyond 513 the
 * newest takes the place of the last. Ten writes and condition reads may go between two cyclic
 * reads, and no condition read once three of either have gone. Recipes go before everything else.
 */
class Jobs
{
public:
    explicit Jobs(Tally &tally)
        : m_tally(tally)
    {}

    static constexpr std::size_t kMostWaiting = 513;

    Queued addWrite(const Job &job);
    void addReading(const Range &range);
    void setCyclic(const std::vector<Range> &blocks);
    void setRecipe(const std::vector<RecipeBlock> &blocks) { m_recipe = blocks; }
    /** Communication starts anew: nothing waits; the place of a recipe that was cut off stays. */
    void clear();

    /** Whose turn it is. Counts it as begun. */
    JobKind begin(bool recipeWrite, bool recipeRead);
    /** The request of the job that begin() gave; not for None. */
    const Job &current() const { return m_current; }
    JobKind kind() const { return m_kind; }
    int recipeOffset() const { return m_recipeOffset; }
    /** The blocks of the recipe, to see which is served. */
    std::size_t recipeIndex() const { return m_recipeIndex; }

    /** The job has ended. @return for a recipe: whether the transfer has ended with it. */
    bool finish(bool good);

    /** Writes of this very range that wait. */
    int waitingWrites(const Range &range) const;
    /** Some write that waits covers the place, be it by a bit of it. */
    bool isWriteWaiting(const Range &range, int offset) const;
    /** A write of the place was displaced since communication started. */
    bool wasDisplaced(const Range &range, int offset) const;
    /** The first condition read is the one that was asked for last. */
    bool isAwaited() const;

    const std::deque<Job> &writes() const { return m_writes; }
    const std::deque<Job> &readings() const { return m_readings; }
    const std::deque<Range> &cyclic() const { return m_cyclic; }
    const std::vector<RecipeBlock> &recipe() const { return m_recipe; }

private:
    static bool covers(const Range &written, const Range &range, int offset);
    static Queued insert(std::deque<Job> &list, const Job &job);
    void beginRecipe(JobKind kind);
    void finishReading(bool good);
    bool finishRecipe(bool good);

    Tally &m_tally;
    std::deque<Job> m_writes;
    std::deque<Job> m_readings;
    std::vector<Range> m_displaced;
    std::deque<Range> m_cyclic;
    std::vector<RecipeBlock> m_recipe;
    std::optional<Range> m_awaited;
    JobKind m_kind = JobKind::None;
    JobKind m_transfer = JobKind::None; ///< the one that the recipe index belongs to
    Job m_current;
    std::size_t m_recipeIndex = 0;
    int m_recipeOffset = 0;
    int m_sinceCyclicRead = 0;
};

} // namespace exchange::soak
