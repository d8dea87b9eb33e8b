#pragma once

#include "host/monitor/quality.h"
#include "host/value/typed_value.h"
#include "host/value/value_type.h"

#include <QString>
#include <QVector>

#include <memory>

namespace cnet::gateway {

/** What a value belongs to; all of its changes share it. */
struct ChangeSource
{
    QString line;
    int station = 1;
    QString tag; ///< its name; a value of an array has its index behind: "mould.zones[2]"
    QString unit;
    ValueType type; ///< with scale and offset: how the value is shown
    double scale = 1;
    double offset = 0;
};

/**
 * Sources that somebody remembers from batch to batch, which is more than the tags of one gateway:
 * those that went with a changed tag file are forgotten with the others.
 */
constexpr int kMostKnownSources = 200000;

/** A value or a quality that became another one, or that is told again. */
struct Change
{
    std::shared_ptr<const ChangeSource> source; ///< never null
    Scalar value; ///< as it was read last; nothing: never, or its words stand for no value
    Quality quality = Quality::NeverRead;
    QString cause;   ///< why it is not good, in words; often empty
    qint64 atMs = 0; ///< when it was read or the quality changed: milliseconds since 1970 in UTC
};

/** True where both say the same of the same value. */
bool operator==(const Change &left, const Change &right);

} // namespace cnet::gateway
