#pragma once

#include "host/driver/driver.h"
#include "host/jobs/write_job.h"
#include "host/tag/typed_item.h"

#include <QString>
#include <QVector>

#include <optional>

namespace cnet::panel {

/** One write to the PLC, and what the user asked for with it. */
struct PlannedWrite
{
    Assignment assignment;
    TypedAssignment asked; ///< the same with its type; of a plain item raw
    QString title;         ///< "1/D_W:100@f32=12.5"

    /** How it ended, in the user's words: "1/D_W:100@f32=12.5: written". */
    QString resultText(const WriteResult &result) const;
};

/**
 * Reads "ITEM=VALUE[,VALUE...]" or "ITEM@TYPE=VALUE[,VALUE...]" and checks all of it, the addresses
 * included. A long row is several writes.
 *
 * @param station of an item that names none
 * @param blockWords words of one request
 * @param error receives one sentence when the result is empty
 */
std::optional<QVector<PlannedWrite>> planWrite(const QString &text, int station,
                                               const Driver &driver, int blockWords,
                                               QString &error);

/** What a session is given. */
QVector<Assignment> assignmentsOf(const QVector<PlannedWrite> &writes);

} // namespace cnet::panel
