#include "host/jobs/read_job.h"

#include <algorithm>
#include <utility>

namespace cnet {

ReadJob::ReadJob(const QVector<Item> &items, const RegisterCatalog &registers, int blockWords,
                 Merging merging, QObject *parent)
    : Job(parent)
    , m_registers(registers)
    , m_plan(planReads(items, registers, blockWords, merging))
{
    for (const Item &item : items) {
        m_results.append(
            {item, QVector<quint16>(item.count, 0), QVector<bool>(item.count, false), Failure()});
        m_total += item.count;
    }
}

std::optional<BlockRequest> ReadJob::next()
{
    if (m_plan.isEmpty()) {
        return std::nullopt;
    }
    return BlockRequest{BlockRequest::Read, m_plan.first().request, {}, {}};
}

void ReadJob::ended(const BlockRequest &request, const BlockResult &result)
{
    const PlannedRead read = m_plan.takeFirst();
    if (result.failure.isNone()) {
        take(read, result.values);
    } else if (result.failure.kind == Failure::Refused && read.serves.size() > 1) {
        // One bad address takes the block with it, so each item is asked for by itself.
        QVector<PlannedRead> apart;
        for (const ServedBlock &served : read.serves) {
            apart.append(
                {requestFor(m_results.at(served.item).item, served.block, m_registers), {served}});
        }
        m_plan = apart + m_plan;
    } else {
        fail(read, result.failure);
    }
    if (result.failure.isGone()) {
        // A long list would take minutes to say the same again and again.
        const auto gone = [&](const PlannedRead &planned) {
            return planned.request.station == request.item.station;
        };
        for (const PlannedRead &planned : std::as_const(m_plan)) {
            if (gone(planned)) {
                fail(planned, result.failure);
            }
        }
        m_plan.erase(std::remove_if(m_plan.begin(), m_plan.end(), gone), m_plan.end());
    }
    Q_EMIT progressed(m_done, m_total);
}

void ReadJob::take(const PlannedRead &read, const QVector<quint16> &values)
{
    for (const ServedBlock &served : read.serves) {
        ReadResult &result = m_results[served.item];
        const QVector<quint16> own = valuesOf(result.item, served.block, read.request, values);
        for (int i = 0; i < own.size(); ++i) {
            result.values[served.block.offset + i] = own.at(i);
            result.known[served.block.offset + i] = true;
        }
        m_done += served.block.count;
    }
}

void ReadJob::fail(const PlannedRead &read, const Failure &failure)
{
    for (const ServedBlock &served : read.serves) {
        Failure &reason = m_results[served.item].failure;
        if (reason.isNone()) {
            reason = failure;
        }
        m_done += served.block.count;
    }
}

void ReadJob::giveUp(const Failure &reason)
{
    for (const PlannedRead &read : std::as_const(m_plan)) {
        fail(read, reason);
    }
    m_plan.clear();
}

QString ReadJob::verdict() const
{
    const auto failed = std::find_if(m_results.cbegin(), m_results.cend(),
                                     [](const ReadResult &result) { return !result.isGood(); });
    return failed == m_results.cend() ? QString() : failed->failure.text();
}

} // namespace cnet
