#pragma once

#include "host/address/assignment.h"
#include "host/driver/driver_session.h"
#include "host/exchange/exchange.h"

#include <QList>
#include <QMap>
#include <QObject>

namespace cnet {

/**
 * The words of one block write that fit a PLC's buffer. A frame of 256 bytes is the most it takes:
 * ENQ st(2) "wSB" "08" name(8) words(2) EOT BCC(2) are 21 bytes, and each word has 4.
 */
constexpr int kBlockWriteOverhead = 1 + 2 + 3 + 2 + 8 + 2 + 1 + 2;
constexpr int kHighestWriteWords = (256 - kBlockWriteOverhead) / 4;
static_assert(kBlockWriteOverhead == 21 && kHighestWriteWords == 58, "as the PLC's manual has it");

/**
 * Cuts an assignment so that each piece is one write that the PLC can take whole: words that fit
 * its buffer, one bit, or one contact.
 *
 * The driver's write of several bits at once is right only within one word, so bits go one by one.
 * Contacts have no block write at all: each is an entry of its own.
 *
 * @param blockWords words of a block, at least 1
 */
QVector<Piece> writePiecesOf(const Item &item, int blockWords);

/**
 * Writes values and finds out how each write ended.
 *
 * The driver does not tell whether a write was taken. But the panel carries the frames, and each
 * bears the tag of its write, so it is the exchange that shows it.
 *
 * Addresses must have been checked: the driver takes every request.
 */
class Writer : public QObject
{
    Q_OBJECT

public:
    /**
     * @param driver,exchange must outlive this object
     * @param blockWords words of a block
     */
    Writer(DriverSession &driver, Exchange &exchange, int blockWords, QObject *parent = nullptr);

    /**
     * Takes values to be written in their turn, behind all that wait.
     * @return number of the assignment, for settled()
     */
    int add(const Assignment &assignment);

    /** True when everything that was added is settled. */
    bool isIdle() const { return m_assignments.isEmpty(); }

Q_SIGNALS:
    /**
     * Every write of an assignment ended.
     * @param failure why the first of those failed that did; empty: the PLC took all of them
     */
    void settled(int number, const QString &failure);

private:
    struct Part
    {
        int number = 0; ///< of the assignment
        Item item;      ///< the addresses of this part alone
        QVector<quint16> values;
    };

    struct Open
    {
        int parts = 0; ///< that are not settled yet
        QString failure;
    };

    void handleEnded(const ExchangeReport &report);
    void queueNext();
    void dropPartsOf(int station);
    void note(const Part &part, const QString &failure);
    void announceSettled();

    DriverSession &m_driver;
    Exchange &m_exchange;
    int m_blockWords;
    QList<Part> m_parts; ///< the first is underway when m_tag is set
    QMap<int, Open> m_assignments;
    int m_lastNumber = 0;
    int m_tag = 0; ///< of the write that is underway; 0: none is
    int m_lastTag = 0;
};

} // namespace cnet
