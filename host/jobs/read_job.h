#pragma once

#include "host/jobs/job.h"
#include "host/jobs/read_plan.h"

namespace cnet {

/** An item that was read once. */
struct ReadResult
{
    Item item;
    QVector<quint16> values; ///< words; 0 or 1 for bits and contacts
    QVector<bool> known;     ///< of each value: it was read
    Failure failure;         ///< why a part of it was not; None: all of it was read

    bool isGood() const { return failure.isNone(); }
};

/** Reads items once, in as few requests as they fit. A refused address costs only its own item. */
class ReadJob : public Job
{
    Q_OBJECT

public:
    /** Made by Session::read(). @param blockWords most words of a request, 1 or more */
    ReadJob(const QVector<Item> &items, const RegisterCatalog &registers, int blockWords,
            Merging merging, QObject *parent = nullptr);

    /** Of the items in their order; what is still to be read counts as not known. */
    const QVector<ReadResult> &results() const { return m_results; }

    std::optional<BlockRequest> next() override;
    void ended(const BlockRequest &request, const BlockResult &result) override;

protected:
    void giveUp(const Failure &reason) override;
    QString verdict() const override;

private:
    void take(const PlannedRead &read, const QVector<quint16> &values);
    void fail(const PlannedRead &read, const Failure &failure);

    RegisterCatalog m_registers;
    QVector<ReadResult> m_results;
    QVector<PlannedRead> m_plan; ///< the first is underway or next
    int m_done = 0;
    int m_total = 0;
};

} // namespace cnet
