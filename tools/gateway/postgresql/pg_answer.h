#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace cnet::gateway {

/** Why a database did not do what it was told. */
struct PgFailure
{
    enum class Kind {
        None,
        Again, ///< two that wrote at once; the same works when it is tried again
        Other,
    };

    Kind kind = Kind::None;
    QString text; ///< one line; empty with None
};

/** What came of some statements. */
struct PgAnswer
{
    PgFailure failure;
    QVector<QStringList> rows; ///< of the last statement that gives any; NULL is empty
    qint64 touched = 0;        ///< rows of the last statement that changes any
};

/**
 * What the server says of a statement, for people.
 * @param state SQLSTATE: five characters
 * @param message its first line, in the server's language
 */
PgFailure failureOf(const QByteArray &state, const QString &message);

/** The part of libpq's words that says what happened, without where it was and what to do then. */
QString firstReason(const QByteArray &words);

} // namespace cnet::gateway
