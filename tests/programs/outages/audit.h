#pragma once

#include "outages/told.h"

#include <QHash>
#include <QStringList>

/** Compares what places have with what the ledger took. */
class Audit
{
public:
    /** @param reference all that the ledger took, in its order */
    explicit Audit(const QVector<Told> &reference);

    /**
     * The bounds of the ledger took so many changes from a place, one behind the other: from the
     * first on that it lacks, and these alone. To be called before the other checks.
     */
    void leaveOut(const char *place, const QVector<Told> &told, qint64 dropped);

    /** A place that keeps a history: each change once, in order. */
    void checkHistory(const char *place, const QVector<Told> &told);

    /** Each change at least once and nothing else, in whatever order. */
    void checkComplete(const char *place, const QVector<Told> &told);

    /**
     * A place with subscribers: each change at least once and nothing else; of each tag in order
     * those that are live, and those that are old, of one connection each.
     */
    void checkStream(const char *place, const QVector<Told> &told);

    /** The same of a place that may be told again: of what came more than once the first counts. */
    void checkFirsts(const char *place, const QVector<Told> &told);

    /** What is wrong, a line each; at most some of each kind. */
    const QStringList &faults() const { return m_faults; }

private:
    using Places = QHash<QByteArray, QVector<int>>; ///< of a change in the reference

    void findPlaces();
    void fault(const char *place, const char *what, const QByteArray &key);
    void checkOrder(const char *place, const QVector<Told> &told, bool isOld);

    QVector<Told> m_reference;
    Places m_places;
    QStringList m_faults;
    QHash<QByteArray, int> m_count; ///< of faults of a kind
};
