#pragma once

#include "gateway/change/change.h"
#include "gateway/sparkplug/payload_codec.h"

namespace cnet::gateway {

/** How the values of a tag travel; with a scale they are numbers with a fraction, or of 64 bits. */
Datatype datatypeOf(const ChangeSource &source);

/** A value of a tag as its datatype holds it; nothing where it does not. */
Scalar valueAs(Datatype datatype, const Scalar &value);

/** What is told of a value's quality. */
MetricQuality metricQuality(Quality quality);

/** True where the station said something about the value, if only that it refuses it. */
bool isAnswered(Quality quality);

/** True where the value's station or line does not answer. */
bool isUnanswered(Quality quality);

/** A value as it came, for people to read. */
QString shownText(const CameValue &value);

/**
 * What a command wants a metric to be, as people write it.
 * @param datatype of the metric
 * @return nothing where the command's type or value does not fit it
 */
std::optional<QString> commandText(const CameMetric &command, Datatype datatype);

/**
 * Puts data into messages, each in the order of its times. The order of what is told of one metric
 * stays: where its time went back, because a clock was set, another message begins.
 * @param metrics each with an alias
 */
QVector<QVector<Metric>> inMessages(const QVector<Metric> &metrics);

} // namespace cnet::gateway
