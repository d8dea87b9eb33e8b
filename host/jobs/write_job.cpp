#include "host/jobs/write_job.h"

#include "host/address/value_text.h"

#include <algorithm>
#include <utility>

namespace cnet {

QVector<ItemBlock> writeBlocksOf(const Item &item, int blockWords)
{
    const int room = item.reg.isBit() ? 1 : std::clamp(blockWords, 1, kHighestWriteWords);
    QVector<ItemBlock> blocks;
    for (int offset = 0; offset < item.count; offset += room) {
        blocks.append({offset, std::min(room, item.count - offset)});
    }
    return blocks;
}

WriteJob::WriteJob(const QVector<Assignment> &assignments, const RegisterCatalog &registers,
                   int blockWords, ReadBack readBack, OnLoss onLoss, QObject *parent)
    : Job(parent)
    , m_registers(registers)
    , m_blockWords(blockWords)
    , m_readBack(readBack)
    , m_onLoss(onLoss)
{
    for (const Assignment &assignment : assignments) {
        WriteResult result;
        result.assignment = assignment;
        for (const ItemBlock &block : writeBlocksOf(assignment.item, blockWords)) {
            Block own{static_cast<int>(m_results.size()), assignment.item,
                      assignment.values.mid(block.offset, block.count)};
            own.item.start += block.offset;
            own.item.count = block.count;
            m_blocks.append(own);
        }
        m_total += assignment.item.count;
        m_results.append(result);
        m_refused.append(false);
    }
}

WriteJob::~WriteJob()
{
    for (const Block &block : std::as_const(m_blocks)) {
        Q_EMIT blockSettled(block.item, block.values, Confirmation::Missing);
    }
}

std::optional<BlockRequest> WriteJob::next()
{
    if (!m_blocks.isEmpty()) {
        const Block &block = m_blocks.first();
        return BlockRequest{BlockRequest::Write, block.item, block.values, {}};
    }
    if (!m_readPlanned) {
        planReadBack();
    }
    auto request = m_reading ? m_reading->next() : std::nullopt;
    if (m_reading && !request) {
        takeReadBack();
    }
    return request;
}

void WriteJob::ended(const BlockRequest &request, const BlockResult &result)
{
    if (request.kind == BlockRequest::Read) {
        m_reading->ended(request, result);
        return;
    }
    const Block block = m_blocks.takeFirst();
    note(block, result.failure);
    if (result.failure.isGone()) {
        dropStation(block.item.station, result.failure.kind);
    }
    Q_EMIT progressed(m_done, m_total);
}

namespace {

WriteOutcome outcomeOf(const Failure &failure)
{
    if (failure.isNone()) {
        return WriteOutcome::Written;
    }
    if (failure.kind == Failure::Refused) {
        return WriteOutcome::Refused;
    }
    return failure.sent ? WriteOutcome::NotConfirmed : WriteOutcome::NotSent;
}

// Of two outcomes the one with the higher weight is told: it is the worse one to be wrong about.
int weightOf(WriteOutcome outcome)
{
    switch (outcome) {
    case WriteOutcome::NotSent:
        return 1;
    case WriteOutcome::Refused:
        return 2;
    case WriteOutcome::NotConfirmed:
        return 3;
    case WriteOutcome::Open:
    case WriteOutcome::Written:
    case WriteOutcome::Mismatch:
        break;
    }
    return 0;
}

} // namespace

// The outcome of an assignment is that of its worst block.
void WriteJob::note(const Block &block, const Failure &failure)
{
    WriteResult &result = m_results[block.result];
    const bool last = std::none_of(m_blocks.cbegin(), m_blocks.cend(), [&](const Block &other) {
        return other.result == block.result;
    });
    m_done += block.item.count;
    m_refused[block.result] = m_refused.at(block.result) || failure.kind == Failure::Refused;
    if (weightOf(outcomeOf(failure)) > weightOf(result.outcome)) {
        result.failure = failure;
        result.outcome = outcomeOf(failure);
    }
    if (last && result.failure.isNone()) {
        result.outcome = WriteOutcome::Written;
    }
    Q_EMIT blockSettled(block.item, block.values,
                        failure.isNone() ? Confirmation::Given : Confirmation::Missing);
}

void WriteJob::dropStation(int station, Failure::Kind reason)
{
    Failure failure;
    failure.kind = reason;
    const QVector<Block> blocks = std::exchange(m_blocks, {});
    for (const Block &block : blocks) {
        if (block.item.station == station) {
            note(block, failure);
        } else {
            m_blocks.append(block);
        }
    }
}

void WriteJob::planReadBack()
{
    m_readPlanned = true;
    QVector<Item> items;
    for (int i = 0; i < m_results.size(); ++i) {
        const WriteOutcome outcome = m_results.at(i).outcome;
        const bool failed = outcome != WriteOutcome::Written && outcome != WriteOutcome::NotSent;
        if (m_readBack == ReadBack::Always || (m_readBack == ReadBack::OnFailure && failed)) {
            m_readAgain.append(i);
            items.append(m_results.at(i).assignment.item);
        }
    }
    if (!items.isEmpty()) {
        m_reading = std::make_unique<ReadJob>(items, m_registers, m_blockWords, Merging::Together);
    }
}

void WriteJob::takeReadBack()
{
    for (int i = 0; i < m_readAgain.size(); ++i) {
        const ReadResult &read = m_reading->results().at(i);
        WriteResult &result = m_results[m_readAgain.at(i)];
        result.now = read;
        const bool holds = read.isGood() && read.values == result.assignment.values;
        if (holds && result.outcome == WriteOutcome::NotConfirmed &&
            !m_refused.at(m_readAgain.at(i))) {
            result.outcome = WriteOutcome::Written;
            result.failure = Failure();
        } else if (read.isGood() && !holds && result.outcome == WriteOutcome::Written) {
            result.outcome = WriteOutcome::Mismatch;
            result.failure.kind = Failure::Mismatch;
            result.failure.sent = true;
            result.failure.detail = QLatin1String("the PLC confirmed it and holds something else");
        }
    }
    m_reading.reset();
}

void WriteJob::giveUp(const Failure &reason)
{
    const QVector<Block> blocks = std::exchange(m_blocks, {});
    for (const Block &block : blocks) {
        note(block, reason);
    }
    if (m_reading) {
        m_reading->conclude(reason);
        takeReadBack();
    }
    m_readPlanned = true;
}

QString WriteJob::verdict() const
{
    const auto failed = std::find_if(m_results.cbegin(), m_results.cend(),
                                     [](const WriteResult &result) { return !result.isWritten(); });
    return failed == m_results.cend() ? QString() : failed->failure.text();
}

QString WriteResult::text() const
{
    const char *word = "written";
    switch (outcome) {
    case WriteOutcome::Open:
        word = "not settled";
        break;
    case WriteOutcome::Written:
        break;
    case WriteOutcome::Refused:
    case WriteOutcome::NotSent:
    case WriteOutcome::Mismatch:
        word = "not written";
        break;
    case WriteOutcome::NotConfirmed:
        word = "not confirmed";
        break;
    }
    const QString name = assignment.text();
    if (isWritten() || outcome == WriteOutcome::Open) {
        return QString::fromLatin1("%1: %2").arg(name, QLatin1String(word));
    }
    QString text =
        QString::fromLatin1("%1: %2 (%3)").arg(name, QLatin1String(word), failure.text());
    if (now && now->isGood()) {
        text += QLatin1String("; it holds ") + valuesText(now->values, assignment.item.reg.isBit());
    } else if (outcome == WriteOutcome::NotSent) {
        text += QLatin1String("; nothing was sent");
    } else {
        text += QString::fromLatin1("; what it holds is not known (%1)")
                    .arg(now ? now->failure.text() : QLatin1String("not read again"));
    }
    return text;
}

} // namespace cnet
