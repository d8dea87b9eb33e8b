#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <variant>

namespace spcheck {

/** Which field of a metric holds its value. */
enum class Field { None, Int, Long, Float, Double, Truth, Text, Bytes, Other };

struct ReadProperty
{
    QByteArray key;
    int type = 0;
    quint64 number = 0; ///< of a whole one
    Field field = Field::None;
};

struct ReadMetric
{
    std::optional<QByteArray> name;
    std::optional<quint64> alias;
    std::optional<quint64> timestamp;
    std::optional<quint64> datatype;
    bool isHistorical = false;
    bool isNull = false;
    Field field = Field::None;
    quint64 number = 0; ///< of Int, Long and Truth; the bits of Float and Double
    QByteArray text;
    QList<ReadProperty> properties;
};

struct ReadMessage
{
    std::optional<quint64> timestamp;
    std::optional<quint64> seq;
    QList<ReadMetric> metrics;
};

/** Reads a Sparkplug message. @return nothing where the bytes are none */
std::optional<ReadMessage> readMessage(const QByteArray &bytes);

} // namespace spcheck
