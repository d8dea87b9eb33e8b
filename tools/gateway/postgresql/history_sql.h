#pragma once

#include "gateway/change/change.h"
#include "gateway/postgresql/month.h"

#include <QString>
#include <QVector>

namespace cnet::gateway {

/** 'text', with what is special in it. Texts hold no zero character in SQL; it is left out. */
QByteArray sqlText(const QString &text);

/** "name" of a table or schema. */
QByteArray sqlName(const QString &name);

/** The statements for the tables of a history in one schema, which has a name of letters and "_".
 */
class HistorySql
{
public:
    /** @param schema as it was configured */
    explicit HistorySql(const QString &schema);

    /** Settles how the session behaves. */
    QByteArray session(int timeoutMs) const;
    /** One row: synchronous_commit, fsync, the encoding, and whether the tables are there. */
    QByteArray look() const;
    QByteArray createTables() const;
    /** One row: number of the last batch that was taken from a ledger. */
    QByteArray readTaken(const QString &ledger) const;

    /** Touches one row, unless somebody else took from the ledger meanwhile: then none. */
    QByteArray beginBatch(const QString &ledger, qint64 last, qint64 next) const;
    /** Stores what follows, and commits it with the number of the batch. */
    QByteArray copyAndCommit() const;

    /** One row for each: its number, line, station and name. @param tags 1 or more, each once */
    QByteArray addTags(const QVector<const ChangeSource *> &tags) const;
    /** One row: the number of a quality with its cause. */
    QByteArray addState(Quality quality, const QString &cause) const;

    /** Makes the place of a month, where there is none. */
    QByteArray makeMonth(const Month &month) const;
    /** One row a month that is over for so long, by the clock here and by the server's: its table.
     */
    QByteArray oldMonths(qint64 wallMs, qint64 ageMs) const;
    QByteArray dropMonth(const QString &table) const;

private:
    QByteArray within(QByteArray sql) const;

    QString m_schema;
};

} // namespace cnet::gateway
