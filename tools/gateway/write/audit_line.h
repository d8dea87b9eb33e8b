#pragma once

#include "gateway/change/write_request.h"

#include <QByteArray>

#include <optional>

namespace cnet::gateway {

/** One line of the audit log. */
struct AuditLine
{
    enum class What {
        Request, ///< somebody asked; of the answer only sink, topic, id, line and tag are there
        Result   ///< what was answered
    };

    What what = What::Request;
    WriteAnswer answer; ///< without its correlation
    QString value;      ///< of a request: what was asked for
    bool isRetained = false;
};

/** Whether a request came before. */
enum class Delivery {
    First,
    Again ///< it is not carried out again; reading the log passes over it
};

/** A request as one line of JSON, without anything that a terminal obeys. @param atMs in UTC */
QByteArray auditLine(const WriteRequest &request, qint64 atMs, Delivery delivery = Delivery::First);

/**
 * A request that was refused before anybody looked for its line: both in one line, which reading
 * the log passes over. The same id may be that of one that is open.
 */
QByteArray auditLine(const WriteRequest &request, const WriteAnswer &refused);

/** A result. */
QByteArray auditLine(const WriteAnswer &answer);

/** @return nothing where it is no line of the audit log */
std::optional<AuditLine> readAuditLine(const QByteArray &line);

} // namespace cnet::gateway
