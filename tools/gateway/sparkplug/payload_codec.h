#pragma once

#include "host/value/typed_value.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>
#include <variant>

namespace cnet::gateway {

/** How a value travels; the numbers are those of the messages. */
enum class Datatype {
    Int16 = 2,
    Int32 = 3,
    Int64 = 4,
    UInt16 = 6,
    UInt32 = 7,
    UInt64 = 8,
    Float = 9,
    Double = 10,
    Boolean = 11,
    String = 12,
};

/** What is told of a metric's quality; a host takes one without it for good. */
enum class MetricQuality { Bad = 0, Good = 192, Stale = 500 };

/** A value within a message. */
struct Metric
{
    QString name; ///< empty: only the alias stands for it
    std::optional<quint64> alias;
    qint64 atMs = 0; ///< milliseconds since 1970 in UTC
    Datatype datatype = Datatype::Int64;
    bool tellsDatatype = false; ///< births tell it, data does not
    bool isHistorical = false;
    Scalar value; ///< of the datatype; nothing: null
    std::optional<MetricQuality> quality;
    QString cause; ///< why it is not good; empty: it is not told
    QString unit;  ///< empty: it is not told
};

struct Payload
{
    qint64 atMs = 0;
    std::optional<int> seq;
    QVector<Metric> metrics;
};

QByteArray encodePayload(const Payload &payload);

/** A value as it came: of the field that it stood in. */
using CameValue = std::variant<std::monostate, quint32, quint64, float, double, bool, QString>;

/** What a command wants of one metric. */
struct CameMetric
{
    QString name; ///< empty: the alias stands for it
    std::optional<quint64> alias;
    std::optional<quint32> datatype;
    CameValue value; ///< nothing: null, or of a kind that is not known here
};

/**
 * Reads a command.
 * @return nothing where the bytes are no message, or are more than 64 kB or 1000 metrics: each is
 * a request of its own, and a broker hands over 256 MB
 */
std::optional<QVector<CameMetric>> decodePayload(const QByteArray &bytes);

} // namespace cnet::gateway
