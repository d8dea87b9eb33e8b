#include "model/scheduler_model.h"

#include "model/register_name.h"

#include <algorithm>

namespace model {

namespace {

constexpr int kWritesInARow = 10;
constexpr int kReadsInARow = 3;
constexpr int kCyclicTag = 4;

} // namespace

const Frame *SchedulerModel::send()
{
    if (m_frames.empty()) {
        pick();
    }
    return inFlight();
}

void SchedulerModel::pick()
{
    if (m_handshakeDue) {
        m_job = Job::Handshake;
        prepareHandshake();
    } else if (m_recipesShared && requests[RecipeWrite] == 1) {
        pickRecipe(RecipeWrite);
    } else if (m_recipesShared && requests[RecipeRead] == 1) {
        pickRecipe(RecipeRead);
    } else {
        pickWithoutRecipe();
    }
}

void SchedulerModel::pickRecipe(Request request)
{
    if (m_block >= m_blocks.size()) {
        repeatLast();
        return;
    }
    takeRecipeBlock(request == RecipeWrite);
    if (request == RecipeWrite) {
        m_job = Job::RecipeWrite;
        prepareWrite();
    } else {
        m_job = Job::RecipeRead;
        prepareRead();
    }
}

void SchedulerModel::pickWithoutRecipe()
{
    if (!m_writes.empty() && m_sinceCyclic < kWritesInARow) {
        m_current = m_writes.first();
        m_job = Job::Write;
        ++m_sinceCyclic;
        prepareWrite();
    } else if (!m_onceReads.empty() && m_sinceCyclic < kReadsInARow) {
        m_current = m_onceReads.first();
        m_job = Job::OnceRead;
        ++m_sinceCyclic;
        prepareRead();
    } else if (m_cyclic.empty()) {
        m_sinceCyclic = 0;
        m_job = Job::Idle;
    } else {
        m_current = Item();
        m_current.range = m_cyclic.front();
        m_current.tag = kCyclicTag;
        m_job = Job::Cyclic;
        m_sinceCyclic = 0;
        prepareRead();
    }
}

/** A recipe is asked for that has no block left: the line must not fall silent. */
void SchedulerModel::repeatLast()
{
    switch (m_job) {
    case Job::Write:
    case Job::RecipeWrite:
        prepareWrite();
        break;
    case Job::OnceRead:
    case Job::RecipeRead:
    case Job::Cyclic:
        prepareRead();
        break;
    case Job::Handshake:
        prepareHandshake();
        break;
    case Job::Idle:
        break;
    }
}

void SchedulerModel::takeRecipeBlock(bool withValues)
{
    const RecipePart &whole = m_blocks[m_block].whole;
    m_current.range = whole.range; // the tag of the job before it stays
    m_current.values.clear();
    if (withValues) {
        const auto from = recipeBuffer.begin() + 2 * whole.place;
        m_current.values.assign(from, from + 2 * whole.range.count);
    }
}

void SchedulerModel::prepareRead()
{
    if (const auto frame = readFrame(m_current)) {
        m_frames.push_back(*frame);
    }
}

void SchedulerModel::prepareWrite()
{
    for (const Frame &frame : writeFrames(m_current)) {
        m_frames.push_back(frame);
    }
}

void SchedulerModel::prepareHandshake()
{
    m_frames.emplace_back();
}

Answered SchedulerModel::answer(const std::string &bytes)
{
    if (m_frames.empty()) {
        return {};
    }
    const Frame frame = m_frames.front();
    const std::string text = describe(frame, bytes.size());
    const Verdict verdict = judge(frame, bytes);
    if (verdict == Verdict::Bad) {
        return giveUpOrRepeat(text);
    }
    m_failed = false;
    if (verdict == Verdict::Acknowledged) {
        if (m_job == Job::Write) {
            m_values.settle(frame.item.range, true);
        }
    } else if (m_job == Job::Write && isBitName(frame.item.range.name)) {
        patchBits(frame, m_frames[1], bytes);
    } else if (m_job == Job::RecipeRead) {
        deliverRecipe(bytes);
    } else {
        m_values.take(frame, bytes, [this] { return !m_writes.empty(); });
    }
    frameDone();
    return {1, text};
}

Answered SchedulerModel::giveUpOrRepeat(const std::string &text)
{
    ++m_badAnswers;
    if (m_badAnswers < m_tries) {
        return {8, text};
    }
    m_failed = true;
    if (m_job == Job::Write) {
        m_values.settle(m_frames.front().item.range, false);
    }
    m_frames.clear();
    m_badAnswers = 0;
    finishJob();
    return {2, text};
}

void SchedulerModel::frameDone()
{
    m_frames.pop_front();
    if (m_frames.empty()) {
        finishJob();
    }
    m_badAnswers = 0;
}

void SchedulerModel::finishJob()
{
    switch (m_job) {
    case Job::Write:
        m_writes.dropFirst();
        break;
    case Job::OnceRead:
        finishOnceRead();
        break;
    case Job::Cyclic:
        if (m_cyclic.size() > 1) {
            std::rotate(m_cyclic.begin(), m_cyclic.begin() + 1, m_cyclic.end());
        }
        break;
    case Job::RecipeWrite:
        finishRecipe(RecipeWrite);
        break;
    case Job::RecipeRead:
        finishRecipe(RecipeRead);
        break;
    case Job::Idle:
    case Job::Handshake:
        break;
    }
}

void SchedulerModel::finishOnceRead()
{
    if (!m_onceReads.empty() && m_onceReads.first().range == m_awaited) {
        tell(-1, -1, "-1", m_failed ? -1 : 0);
    }
    if (m_failed) {
        m_onceReads.clear();
    } else {
        m_onceReads.dropFirst();
    }
}

void SchedulerModel::finishRecipe(Request request)
{
    ++m_block;
    if (m_failed || m_block >= m_blocks.size()) {
        m_block = 0;
        requests[request] = 0;
    }
}

void SchedulerModel::deliverRecipe(const std::string &answer)
{
    if (m_block >= m_blocks.size()) {
        return;
    }
    const std::size_t first = m_blocks[m_block].firstPart;
    const std::size_t end =
        m_block + 1 < m_blocks.size() ? m_blocks[m_block + 1].firstPart : m_parts.size();
    for (std::size_t part = first; part < std::min(end, m_parts.size()); ++part) {
        const RecipePart &item = m_parts[part];
        const int lead = item.range.start - m_parts[first].range.start;
        for (int i = 0; i < item.range.count; ++i) {
            const auto at = 10 + 4 * static_cast<std::size_t>(lead + i);
            const auto place = 2 * static_cast<std::size_t>(item.place + i);
            recipeBuffer[place] = static_cast<std::uint8_t>(pairAt(answer, at + 2));
            recipeBuffer[place + 1] = static_cast<std::uint8_t>(pairAt(answer, at));
            tell(0, -1, "RWI", item.place + i);
        }
    }
}

void SchedulerModel::tell(int device, int station, const std::string &name, int address)
{
    if (m_listening) {
        notices.push_back({device, station, name, address, {}});
        m_heard();
    }
}

} // namespace model
