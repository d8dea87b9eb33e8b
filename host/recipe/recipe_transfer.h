#pragma once

#include "host/exchange/exchange.h"
#include "host/recipe/recipe_area.h"
#include "host/recipe/recipe_layout.h"

#include <QObject>
#include <QSet>

namespace cnet {

/** How far a transfer came, and how it ended. */
struct RecipeProgress
{
    int blocks = 0;  ///< transferred
    int words = 0;   ///< in these blocks
    int total = 0;   ///< words of the whole recipe
    QString failure; ///< why it ended early, with the block at which it did; empty: it did not
};

/**
 * Transfers a recipe and follows it block by block.
 *
 * Nothing else may be exchanged meanwhile: every request that ends counts as a block. It takes the
 * session's change handler.
 */
class RecipeTransfer : public QObject
{
    Q_OBJECT

public:
    /** @param driver,exchange must outlive this object */
    RecipeTransfer(DriverSession &driver, Exchange &exchange, QObject *parent = nullptr);

    /** A transfer that is still underway is cut off. */
    ~RecipeTransfer() override;

    /**
     * Asks the driver for the transfer; ended() follows.
     *
     * @param layout whose values, for a write, are in the area already
     * @return false when there is nothing to transfer; nothing was asked for then
     */
    bool start(const RecipeLayout &layout, RecipeDirection direction);

    /** Ends a transfer early; without ended(). The exchange must send no more. */
    void cutOff(const QString &reason);

    const RecipeProgress &progress() const { return m_progress; }
    RecipeArea &area() { return m_area; }

Q_SIGNALS:
    /** A block was transferred. */
    void advanced();
    /** The transfer is over; RecipeProgress::failure tells how. */
    void ended();

private:
    void handleChange(const QString &name, int address);
    void handleEnded(const ExchangeReport &report);
    void noteFailure(const ExchangeReport &report);

    DriverSession &m_driver;
    Exchange &m_exchange;
    RecipeArea m_area;
    RecipeDirection m_direction = RecipeDirection::Write;
    RecipeProgress m_progress;
    QSet<int> m_wordsRead; ///< places in the buffer that the driver reported
    bool m_running = false;
};

} // namespace cnet
