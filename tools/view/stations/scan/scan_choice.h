#pragma once

#include "view/connect/connection.h"

#include "host/address/register_catalog.h"
#include "host/scan/scan_result.h"

#include <QString>
#include <QVector>

#include <optional>

namespace cnet::view {

/**
 * Reads stations as "0-31" or "1,3,8-15", each once, in the order given.
 * @return nothing where it is something else, or none
 */
std::optional<QVector<int>> parseStations(const QString &text);

/** Settings that a line may have, under a name for people. */
struct SpeedChoice
{
    QString name;
    QVector<LineSettings> settings; ///< one at least, in the order in which they are tried
};

/**
 * What may be searched for on a line: only what it is set to, everything, or one baud rate with all
 * that goes with it. Of lines whose speed is not ours to choose: the first one alone.
 */
QVector<SpeedChoice> speedChoices(const Connection &connection);

/** The registers whose reach a scan finds out: those of words, since bits are read as words. */
QVector<RegisterInfo> scannedRegisters(const RegisterCatalog &registers);

/** How far a station's registers reach, in one line; empty before that is known. */
QString reachWords(const FoundStation &found);

} // namespace cnet::view
