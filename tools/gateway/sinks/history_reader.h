#pragma once

#include "gateway/store/database.h"

#include "host/tag/tag.h"
#include "host/value/typed_value.h"

#include <QString>

#include <functional>
#include <limits>

namespace cnet::gateway {

/** Which changes of a history are wanted. */
struct HistoryQuery
{
    QString tag;  ///< a name, also of a whole array, or a pattern with * and ?
    QString line; ///< empty: of any line
    qint64 fromMs = std::numeric_limits<qint64>::min(); ///< since 1970 in UTC; inclusive
    qint64 toMs = std::numeric_limits<qint64>::max();   ///< exclusive
};

/** A change as a history has it. */
struct HistoryRow
{
    QString line;
    Tag tag; ///< its name, station, type, scale and unit: how the value is shown
    qint64 atMs = 0;
    TypedValue value;
    QString quality;
    QString reason; ///< often empty
};

/** Reads a history, also while the gateway writes it. */
class HistoryReader
{
public:
    StoreError open(const QString &path);

    /** @return whether there is a tag that fits the query, at any time */
    bool hasTag(const HistoryQuery &query);

    /** All names of tags. */
    QStringList tags();

    /**
     * Hands over what fits, by time; what has the same time in the order in which it came.
     * @param taker returns false for enough
     */
    StoreError read(const HistoryQuery &query,
                    const std::function<bool(const HistoryRow &)> &taker);

private:
    Database m_database;
};

} // namespace cnet::gateway
