#pragma once

#include "host/jobs/read_job.h"
#include "host/recipe/recipe_direction.h"
#include "host/recipe/recipe_file.h"

#include <memory>

namespace cnet {

class DriverCore;
struct ExchangeReport;
struct RecipeLayout;

/** Whether a recipe that was written is read again and compared. */
enum class Verify { No, Yes };

/** How far a transfer came. */
struct RecipeProgress
{
    int blocks = 0; ///< transferred
    int words = 0;  ///< in these blocks
    int total = 0;  ///< words of the whole recipe
};

/**
 * Transfers a recipe as a whole, block by block, before all else. It is not resumed when the line
 * was lost: half of it may be gone with the PLC's power.
 */
class RecipeJob : public Job
{
    Q_OBJECT

public:
    /**
     * Made by Session::transfer().
     *
     * @param items of which no two overlap, with their values where they are to be written
     * @param blockWords most words of a request, 1 or more
     */
    RecipeJob(DriverCore &driver, const QVector<RecipeItem> &items, RecipeDirection direction,
              Verify verify, const RegisterCatalog &registers, int blockWords,
              QObject *parent = nullptr);
    ~RecipeJob() override;

    const RecipeProgress &progress() const { return m_progress; }

    /** Of each item, as read; empty until a transfer from the PLC is done. */
    const QVector<QVector<quint16>> &values() const { return m_values; }

    std::optional<BlockRequest> next() override;
    void begun(const BlockRequest &request) override;
    void ended(const BlockRequest &request, const BlockResult &result) override;
    bool goesFirst() const override { return true; }
    bool outlivesLine() const override { return false; }

    /** A frame of the transfer ended. @return true when it was the last one */
    bool blockEnded(const ExchangeReport &report);
    /** Has the driver forget the transfer, while nothing is in flight. */
    void withdraw();

protected:
    void giveUp(const Failure &reason) override;
    QString verdict() const override { return m_failure; }

private:
    void takeValues();
    void compare();
    QString atBlock(const QString &what) const;

    DriverCore &m_driver;
    QVector<RecipeItem> m_items;
    RecipeDirection m_direction;
    Verify m_verify;
    RegisterCatalog m_registers;
    int m_blockWords;
    int m_usualBlockWords = 0; ///< of the driver, while this one has its own
    std::unique_ptr<RecipeLayout> m_layout;
    RecipeProgress m_progress;
    bool m_transferred = false;
    bool m_transferring = false;
    std::unique_ptr<ReadJob> m_reading;
    QVector<QVector<quint16>> m_values;
    QString m_failure;
};

} // namespace cnet
