#pragma once

#include "host/driver/driver.h"
#include "host/jobs/write_job.h"
#include "host/tag/tag_set.h"
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

/** What is needed to understand a write. */
struct WriteReading
{
    const Driver &driver;
    int station = 1;     ///< of an item that names none
    int blockWords = 60; ///< of one request
    TagSet tags;         ///< whose names stand for items
};

/**
 * Reads "ITEM=VALUE[,VALUE...]", "ITEM@TYPE=VALUE[,VALUE...]" or "NAME=VALUE[,VALUE...]" and checks
 * all of it, the addresses included. A long row is several writes.
 *
 * @param error receives one sentence when the result is empty
 */
std::optional<QVector<PlannedWrite>> planWrite(const QString &text, const WriteReading &reading,
                                               QString &error);

/** What a session is given. */
QVector<Assignment> assignmentsOf(const QVector<PlannedWrite> &writes);

} // namespace cnet::panel
