#pragma once

#include "host/address/assignment.h"
#include "host/exchange/confirmation.h"
#include "host/jobs/read_job.h"

#include <memory>
#include <optional>

namespace cnet {

/** Whether what was written is read again. */
enum class ReadBack {
    Never,
    OnFailure, ///< where the PLC did not confirm it, since it may have carried it out all the same
    Always,
};

/** What is known of a write. */
enum class WriteOutcome {
    Open,         ///< not ended yet
    Written,      ///< the PLC has taken all of it, or was found to hold it
    Refused,      ///< the PLC said no to at least a part of it
    NotSent,      ///< nothing of what failed ever went out
    NotConfirmed, ///< it went out and nobody knows whether the PLC has carried it out
    Mismatch,     ///< the PLC confirmed it and holds something else
};

/** How the write of one assignment ended. */
struct WriteResult
{
    Assignment assignment;
    WriteOutcome outcome = WriteOutcome::Open;
    Failure failure;               ///< why, of all outcomes but Open and Written
    std::optional<ReadResult> now; ///< what the PLC was found to hold, where it was read back

    bool isWritten() const { return outcome == WriteOutcome::Written; }
    /** "1/D_W:5=7: written", or why not and what it holds. */
    QString text() const;
};

/**
 * Writes values in the order given, each assignment in as few requests as a PLC takes, before all
 * reads. What is left for a station that does not answer is not sent.
 */
class WriteJob : public Job
{
    Q_OBJECT

public:
    /** What becomes of what was not sent yet when the line is lost. */
    enum class OnLoss {
        Drop, ///< reported as not sent: no write comes as a surprise seconds later
        Keep, ///< sent when the line is back
    };

    /**
     * Made by Session::write().
     * @param assignments whose addresses were checked for writing
     * @param blockWords most words of a request, 1 or more
     */
    WriteJob(const QVector<Assignment> &assignments, const RegisterCatalog &registers,
             int blockWords, ReadBack readBack, OnLoss onLoss, QObject *parent = nullptr);

    const QVector<WriteResult> &results() const { return m_results; }

    ~WriteJob() override;

    std::optional<BlockRequest> next() override;
    void ended(const BlockRequest &request, const BlockResult &result) override;
    bool goesFirst() const override { return !m_readPlanned; }
    bool outlivesLine() const override { return m_onLoss == OnLoss::Keep; }

Q_SIGNALS:
    /** A block of an assignment was confirmed, has failed or was given up. */
    void blockSettled(const cnet::Item &item, const QVector<quint16> &values,
                      cnet::Confirmation confirmation);

protected:
    void giveUp(const Failure &reason) override;
    QString verdict() const override;

private:
    struct Block
    {
        int result = 0; ///< index
        Item item;
        QVector<quint16> values;
    };

    void note(const Block &block, const Failure &failure);
    void dropStation(int station, Failure::Kind reason);
    void planReadBack();
    void takeReadBack();

    RegisterCatalog m_registers;
    int m_blockWords;
    ReadBack m_readBack;
    OnLoss m_onLoss;
    QVector<WriteResult> m_results;
    QVector<bool> m_refused; ///< of each result: a part of it was refused
    QVector<Block> m_blocks; ///< the first is underway or next
    std::unique_ptr<ReadJob> m_reading;
    QVector<int> m_readAgain; ///< results that are read back
    bool m_readPlanned = false;
    int m_done = 0;
    int m_total = 0;
};

/**
 * Cuts an item so that each block is one write that the PLC can take whole: words that fit its
 * buffer, one bit, or one contact.
 *
 * The driver's write of several bits at once is right only within one word, so bits go one by one.
 * Contacts have no block write at all: each is an entry of its own.
 *
 * @param blockWords words of a block, at least 1
 */
QVector<ItemBlock> writeBlocksOf(const Item &item, int blockWords);

/**
 * The words of one block write that fit a PLC's buffer. A frame of 256 bytes is the most it takes:
 * ENQ st(2) "wSB" "08" name(8) words(2) EOT BCC(2) are 21 bytes, and each word has 4.
 */
constexpr int kBlockWriteOverhead = 1 + 2 + 3 + 2 + 8 + 2 + 1 + 2;
constexpr int kHighestWriteWords = (256 - kBlockWriteOverhead) / 4;
static_assert(kBlockWriteOverhead == 21 && kHighestWriteWords == 58, "as the PLC's manual has it");

} // namespace cnet
