#pragma once

#include "gateway/change/write_request.h"

#include <QHash>
#include <QPair>

#include <deque>
#include <optional>

namespace cnet::gateway {

/** What requests are told apart by: the sink that asked, and its id. */
using RequestKey = QPair<QString, QString>;

inline RequestKey keyOf(const WriteReply &reply, const QString &id)
{
    return {reply.sink, id};
}

/** What a request wants: the same id with something else is a mistake of who asks. */
struct WantedWrite
{
    QString line;
    QString tag;
    QString value;

    bool operator==(const WantedWrite &other) const
    {
        return line == other.line && tag == other.tag && value == other.value;
    }
};

/**
 * Requests that were answered within the last minutes, so that one that is delivered again gets the
 * same answer. Of those that were refused only the newest are kept.
 */
class RecentRequests
{
public:
    static constexpr qint64 kKeptMs = 10LL * 60 * 1000;
    static constexpr int kMostRefused = 10000;

    struct Answered
    {
        WantedWrite wanted;
        WriteAnswer answer;
    };

    /** @param nowMs on a clock that never falls, here and below; below 0: before it began */
    void add(const WantedWrite &wanted, const WriteAnswer &answer, qint64 nowMs);

    std::optional<Answered> find(const RequestKey &key, qint64 nowMs);

    int count() const { return static_cast<int>(m_answered.size()); }

private:
    struct Kept
    {
        qint64 untilMs;
        RequestKey key;
    };

    void forget(std::deque<Kept> &kept, qint64 nowMs, size_t most);

    QHash<RequestKey, Answered> m_answered;
    std::deque<Kept> m_refused; ///< oldest first
    std::deque<Kept> m_others;  ///< their number is bounded by how often one may write
};

} // namespace cnet::gateway
