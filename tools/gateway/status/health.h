#pragma once

#include "gateway/status/snapshot.h"

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>

namespace cnet::gateway {

/** Whether the gateway does what it is there for. */
struct Health
{
    QStringList reasons;  ///< why it does not: values may get lost; empty: it does
    QStringList warnings; ///< what somebody may want to look at; nothing is lost

    bool isGood() const { return reasons.isEmpty(); }
};

/**
 * The health that a snapshot tells of.
 * @param nowMs on the clock of the gateway: a snapshot of long ago is bad news
 */
Health healthOf(const Snapshot &snapshot, qint64 nowMs);

QJsonObject healthJson(const Health &health);

/** Everything: health, lines, stations, sinks, ledger. */
QJsonObject statusJson(const Snapshot &snapshot, qint64 nowMs);

} // namespace cnet::gateway
