#include "exchange/soak/soak_jobs.h"

#include <algorithm>

namespace exchange::soak {

namespace {

constexpr int kWritesInARow = 10;
constexpr int kReadingsInARow = 3;

/** First and last unit: words, or contacts. */
std::pair<int, int> unitsOf(const Range &range)
{
    const int scale = range.reg->isBit() ? kBitsPerWord : 1;
    return {range.address / scale, (range.address + range.count - 1) / scale};
}

} // namespace

Queued Jobs::insert(std::deque<Job> &list, const Job &job)
{
    for (std::size_t i = list.size(); i > 1; --i) {
        if (list[i - 1].range == job.range) {
            list[i - 1] = job;
            return Queued::Folded;
        }
    }
    if (list.size() == kMostWaiting) {
        list.back() = job;
        return Queued::Displaced;
    }
    list.push_back(job);
    return Queued::Appended;
}

Queued Jobs::addWrite(const Job &job)
{
    const Range last = m_writes.empty() ? Range() : m_writes.back().range;
    const Queued queued = insert(m_writes, job);
    m_tally.count(Event::WriteQueued);
    if (queued == Queued::Folded) {
        m_tally.count(Excuse::WriteFolded);
    } else if (queued == Queued::Displaced) {
        m_tally.count(Excuse::WriteDisplaced);
        m_displaced.push_back(last);
    }
    return queued;
}

void Jobs::addReading(const Range &range)
{
    const Queued queued = insert(m_readings, {range, {}});
    m_tally.count(Event::ReadingQueued);
    if (queued == Queued::Folded) {
        m_tally.count(Excuse::ReadingFolded);
    } else if (queued == Queued::Displaced) {
        m_tally.count(Excuse::ReadingDisplaced);
    }
    m_awaited = range;
}

void Jobs::setCyclic(const std::vector<Range> &blocks)
{
    m_cyclic.assign(blocks.begin(), blocks.end());
}

void Jobs::clear()
{
    m_tally.count(Event::WriteCut, static_cast<long long>(m_writes.size()));
    m_tally.count(Event::ReadingCut, static_cast<long long>(m_readings.size()));
    m_writes.clear();
    m_readings.clear();
    m_cyclic.clear();
    m_displaced.clear();
    m_sinceCyclicRead = 0;
    m_kind = JobKind::None;
}

void Jobs::beginRecipe(JobKind kind)
{
    if (m_recipeIndex > 0 && m_transfer != kind) {
        m_tally.count(Excuse::TransferJoined);
    }
    m_transfer = kind;
    m_kind = kind;
    m_current = {m_recipe.at(m_recipeIndex).range, {}};
    m_recipeOffset = m_recipe.at(m_recipeIndex).offset;
}

JobKind Jobs::begin(bool recipeWrite, bool recipeRead)
{
    if (recipeWrite || recipeRead) {
        beginRecipe(recipeWrite ? JobKind::RecipeWrite : JobKind::RecipeRead);
    } else if (!m_writes.empty() && m_sinceCyclicRead < kWritesInARow) {
        m_kind = JobKind::Write;
        m_current = m_writes.front();
        ++m_sinceCyclicRead;
    } else if (!m_readings.empty() && m_sinceCyclicRead < kReadingsInARow) {
        m_kind = JobKind::ConditionRead;
        m_current = m_readings.front();
        ++m_sinceCyclicRead;
    } else {
        m_sinceCyclicRead = 0;
        m_kind = m_cyclic.empty() ? JobKind::None : JobKind::CyclicRead;
        m_current = m_cyclic.empty() ? Job() : Job{m_cyclic.front(), {}};
    }
    return m_kind;
}

// One that is given up takes all that wait with it.
void Jobs::finishReading(bool good)
{
    m_tally.count(good ? Event::ReadingDone : Event::ReadingGivenUp);
    m_readings.pop_front();
    if (!good) {
        m_tally.count(Excuse::ReadingDropped, static_cast<long long>(m_readings.size()));
        m_readings.clear();
    }
}

bool Jobs::finishRecipe(bool good)
{
    if (good && ++m_recipeIndex < m_recipe.size()) {
        return false;
    }
    m_recipeIndex = 0;
    if (!good) {
        m_tally.count(Event::RecipeGivenUp);
    } else {
        m_tally.count(m_kind == JobKind::RecipeWrite ? Event::RecipeWritten : Event::RecipeRead);
    }
    return true;
}

bool Jobs::finish(bool good)
{
    switch (m_kind) {
    case JobKind::Write:
        m_tally.count(good ? Event::WriteAcknowledged : Event::WriteGivenUp);
        m_writes.pop_front();
        break;
    case JobKind::ConditionRead:
        finishReading(good);
        break;
    case JobKind::CyclicRead:
        m_tally.count(good ? Event::CyclicDone : Event::CyclicGivenUp);
        m_cyclic.push_back(m_cyclic.front());
        m_cyclic.pop_front();
        break;
    case JobKind::RecipeWrite:
    case JobKind::RecipeRead:
        return finishRecipe(good);
    case JobKind::None:
        break;
    }
    return false;
}

int Jobs::waitingWrites(const Range &range) const
{
    return static_cast<int>(std::count_if(m_writes.begin(), m_writes.end(),
                                          [&range](const Job &job) { return job.range == range; }));
}

bool Jobs::covers(const Range &written, const Range &range, int offset)
{
    const int scale = range.reg->isBit() ? kBitsPerWord : 1;
    const int unit = (range.address + offset) / scale;
    const auto [first, last] = unitsOf(written);
    return written.station == range.station && written.reg->device == range.reg->device &&
           written.reg->isContact() == range.reg->isContact() && first <= unit && unit <= last;
}

bool Jobs::isWriteWaiting(const Range &range, int offset) const
{
    return std::any_of(m_writes.begin(), m_writes.end(),
                       [&](const Job &job) { return covers(job.range, range, offset); });
}

bool Jobs::wasDisplaced(const Range &range, int offset) const
{
    return std::any_of(m_displaced.begin(), m_displaced.end(),
                       [&](const Range &written) { return covers(written, range, offset); });
}

bool Jobs::isAwaited() const
{
    return !m_readings.empty() && m_awaited && m_readings.front().range == *m_awaited;
}

} // namespace exchange::soak
