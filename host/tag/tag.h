#pragma once

#include "host/address/item.h"
#include "host/value/value_type.h"

#include <QMap>
#include <QMetaType>
#include <QString>

#include <optional>

namespace cnet {

/** What a program may do with a tag. */
enum class TagAccess {
    Read,
    ReadWrite,
};

/**
 * A name for a row of values of the PLC, and what they mean to people: raw * scale + offset, in a
 * unit, within bounds.
 */
struct Tag
{
    QString name; ///< unique in its set; empty: the item's text stands for it
    Item item;    ///< its count is in units of the register: unitsPerValue() for each value
    ValueType type;
    int count = 1;                  ///< values; more than 1 is an array
    double scale = 1;               ///< never 0; exact where it is 1 and the offset is 0
    double offset = 0;              ///< added behind the scale
    QString unit;                   ///< "mm/s", for people
    std::optional<double> min;      ///< least plausible value, behind scale and offset
    std::optional<double> max;      ///< greatest one
    std::optional<double> deadband; ///< a change by less is none; 0 or more
    TagAccess access = TagAccess::ReadWrite;
    QMap<qint64, QString> texts; ///< of an enum: number to text
    QString description;
    QString group; ///< "press/hydraulics"; empty: none

    /** Its name, or the item's text where it has none. */
    QString title() const { return name.isEmpty() ? item.text() : name; }
    /** True where a value is handed on as it is. */
    bool isScaled() const { return scale != 1 || offset != 0; }
};

} // namespace cnet

Q_DECLARE_METATYPE(cnet::Tag)
