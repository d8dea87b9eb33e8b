#pragma once

#include <QtCore/QMutex>

#include <array>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "ls_master_k_cnet/codes.h"
#include "model/observation.h"
#include "model/operation.h"
#include "support/other_thread.h"

namespace model {

/** From which threads the host calls. */
enum class HostThreads {
    One,
    Several ///< a panel's own, and others for what is done within a callback
};

/** The real driver and what its host shares with it. One at a time; a new one starts from nothing.
 */
class DriverSide
{
public:
    enum { kBlockBytes = kSharedBlockSize, kRequestPlace = kRecipeWriteByte };

    explicit DriverSide(HostThreads threads);
    ~DriverSide();
    DriverSide(const DriverSide &) = delete;
    DriverSide &operator=(const DriverSide &) = delete;

    /** @param answer  the bytes that come in, for `Act::Answer` */
    Observation apply(const Operation &operation, const std::string &answer);
    /** What waits for a callback is not done. */
    void forgetWithin() { m_within.clear(); }

    [[nodiscard]] const Bytes &block() const { return m_block; }
    [[nodiscard]] const Bytes &recipeBuffer() const { return m_recipe; }
    [[nodiscard]] static Sizes sizes();

private:
    static int hear(int deviceNo, int stationNo, QString &name, int address);
    void actWithin();
    Observation actOnOtherThread(const Operation &operation, const std::string &answer);
    Observation act(const Operation &operation, const std::string &answer);
    void start(const Operation &operation);
    static std::string monitor(const Operation &operation);
    static std::string setRecipe(const Operation &operation);
    static void write(const Operation &operation);
    static void readOnce(const Operation &operation);
    static std::string send(Bytes &values);
    static std::string takeAnswer(const std::string &answer);

    Bytes m_block;
    Bytes m_recipe;
    QMutex m_lock;
    std::vector<Notice> m_heard;
    std::deque<Operation> m_within; ///< one for each of the next callbacks
    bool m_looks = false;           ///< at each place that the host hears of

    /** For the panel, and for what is done within callbacks within one another. */
    std::array<std::unique_ptr<OtherThread>, 4> m_threads;
    std::size_t m_depth = 0; ///< of callbacks that do something
};

} // namespace model
