#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "model/block_merge.h"
#include "model/frame_text.h"
#include "model/job_list.h"
#include "model/value_model.h"

namespace model {

/** What the host gives at the start of communication. */
struct Settings
{
    std::string properties; ///< "device#cache-only#spare#retries#words"
    bool recipesShared = true;
};

/** A recipe item of the host. */
struct RecipeItem
{
    int device = 0;
    RecipePart part;
};

struct Answered
{
    int code = 0;
    std::string text;
};

/**
 * The driver as a panel and a line see it: which request comes next, what an answer does, and what
 * the host hears. Written from the rules alone, so that it can contradict the driver.
 */
class SchedulerModel
{
public:
    enum Request { RecipeWrite = 0, RecipeRead = 1 };
    enum class Job { Idle, Handshake, Write, OnceRead, Cyclic, RecipeWrite, RecipeRead };

    /**
     * @param recipeBytes  size of the recipe buffer
     * @param heard        called after each notice; may write, ask for readings and look
     */
    SchedulerModel(std::size_t recipeBytes, std::function<void()> heard);
    SchedulerModel(const SchedulerModel &) = delete;
    SchedulerModel &operator=(const SchedulerModel &) = delete;

    void start(const Settings &settings);
    void listen(bool on) { m_listening = on; }
    int monitor(const std::vector<Range> &keys);
    int setRecipe(const std::vector<RecipeItem> &items);
    void write(const Range &range, const Bytes &values, int tag);
    void readOnce(const Range &range, bool oneByteEach, int tag);
    Bytes look(const Range &range) { return m_values.look(range); }
    void needHandshake(bool need) { m_handshakeDue = need; }

    /** The frame that the host gets, or null. */
    const Frame *send();
    Answered answer(const std::string &bytes);

    /** The frame whose answer is awaited, whether or not it was handed out; or null. */
    [[nodiscard]] const Frame *inFlight() const
    {
        return m_frames.empty() ? nullptr : &m_frames.front();
    }
    [[nodiscard]] bool recipeInFlight() const
    {
        return !m_frames.empty() && (m_job == Job::RecipeWrite || m_job == Job::RecipeRead);
    }
    /** Nothing waits and nothing is on its way but the cyclic reads. */
    [[nodiscard]] bool drained() const
    {
        return m_frames.empty() && m_writes.empty() && m_onceReads.empty();
    }

    /** Whose frame was handed out last. */
    [[nodiscard]] Job job() const { return m_job; }
    [[nodiscard]] const JobList &writes() const { return m_writes; }
    [[nodiscard]] const JobList &onceReads() const { return m_onceReads; }
    [[nodiscard]] const std::deque<Range> &cyclicReads() const { return m_cyclic; }
    [[nodiscard]] std::size_t recipeBlocks() const { return m_blocks.size(); }
    /** Blocks of the transfer that runs that are done. */
    [[nodiscard]] std::size_t recipeBlocksDone() const { return m_block; }
    [[nodiscard]] const ValueModel &values() const { return m_values; }

    std::vector<Notice> notices;
    unsigned char requests[2] = {0, 0}; ///< the host's bytes, by `Request`
    Bytes recipeBuffer;

private:
    void tell(int device, int station, const std::string &name, int address);
    void pick();
    void pickRecipe(Request request);
    void pickWithoutRecipe();
    void repeatLast();
    void takeRecipeBlock(bool withValues);
    void prepareRead();
    void prepareWrite();
    void prepareHandshake();
    void deliverRecipe(const std::string &answer);
    Answered giveUpOrRepeat(const std::string &text);
    void frameDone();
    void finishJob();
    void finishOnceRead();
    void finishRecipe(Request request);

    std::function<void()> m_heard;

    // Settings.
    int m_device = 0;
    bool m_cacheOnly = false;
    int m_tries = 0;
    int m_words = 0;
    bool m_recipesShared = true;
    bool m_listening = true;

    // What waits.
    std::deque<Range> m_cyclic;
    JobList m_writes;
    JobList m_onceReads;
    Range m_awaited; ///< the one-off read whose end the host hears
    std::vector<RecipePart> m_parts;
    std::vector<RecipeBlock> m_blocks;
    std::size_t m_block = 0;
    bool m_handshakeDue = false;

    // What is on its way.
    Job m_job = Job::Idle;
    Item m_current;
    std::deque<Frame> m_frames;
    int m_sinceCyclic = 0;
    int m_badAnswers = 0;
    bool m_failed = false;

    ValueModel m_values;
};

} // namespace model
