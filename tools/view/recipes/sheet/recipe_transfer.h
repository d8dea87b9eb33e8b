#pragma once

#include "host/session.h"

#include <QObject>
#include <QPointer>
#include <QVector>

#include <optional>

namespace cnet::view {

/** What became of one word of a recipe. */
enum class WordFate {
    Untouched, ///< nothing is known of it
    Read,      ///< from the PLC
    NotRead,
    Verified,    ///< written, and read back as it was written
    Mismatch,    ///< the PLC took it, and holds another value
    Written,     ///< the PLC took it, and could not be asked whether it has it
    Unconfirmed, ///< it may have been written or not
    NotSent,     ///< it was not on the line
    NotWritten,  ///< the PLC still holds another value
};

/** How a word stands after a transfer. */
struct WordOutcome
{
    WordFate fate = WordFate::Untouched;
    std::optional<quint16> plc; ///< what the PLC holds; empty: not known
    QString reason;             ///< of what went wrong, in words; may be empty
};

/** How a transfer ended. */
struct TransferOutcome
{
    QVector<WordOutcome> words; ///< of all items, one after the other
    QString failure;            ///< why not all of it was done; empty: it was
    bool isCancelled = false;   ///< by cancel() or by the end of the session

    int count(WordFate fate) const;
};

/**
 * Reads a recipe from the PLC, or writes it and reads it back. Whatever ends it, what is known of
 * each word is told.
 */
class RecipeTransfer : public QObject
{
    Q_OBJECT

public:
    enum class Kind {
        Compare, ///< read, to see what differs
        Take,    ///< read, to have it in the file
        Write,   ///< and read back
    };

    using QObject::QObject;

    bool isRunning() const { return m_isRunning; }
    Kind kind() const { return m_kind; }

    /**
     * Begins a transfer. finished() follows, and not from within this call.
     * @param items checked, one or more, of which no two overlap; with values where they are
     * written
     * @return false: one is running already
     */
    bool start(Session *session, Kind kind, const QVector<RecipeItem> &items,
               const RegisterCatalog &registers);

    /** Ends it as soon as the line allows; finished() follows. Harmless while nothing runs. */
    void cancel();

    /** Lets go of a session that ends; finished() comes before this returns where one was running.
     */
    void leaveSession(const QString &reason);

Q_SIGNALS:
    /** @param done,total words; each counts twice where it is written and read back */
    void progressed(int done, int total);
    /** The next one can begin. */
    void finished(const cnet::view::TransferOutcome &outcome);

private:
    void startRead();
    void readBack();
    void noteSent(const QByteArray &frame);
    void writeEnded();
    void readEnded();
    void takeRead(const QVector<ReadResult> &results, const QString &reason);
    WordOutcome outcomeOf(int index, std::optional<quint16> plc, const QString &reason) const;
    void conclude();

    Kind m_kind = Kind::Compare;
    bool m_isRunning = false;
    QPointer<Session> m_session;
    QPointer<RecipeJob> m_writing;
    QPointer<ReadJob> m_reading;
    QVector<RecipeItem> m_items;
    QVector<quint16> m_wanted;   ///< of all words, where they are written
    QVector<bool> m_isConfirmed; ///< of all words: the PLC said that it took it
    QVector<bool> m_isSent;      ///< of all words: a request that writes it went out
    int m_written = 0;           ///< words of blocks that the PLC took
    RegisterCatalog m_registers;
    TransferOutcome m_outcome;
};

} // namespace cnet::view
