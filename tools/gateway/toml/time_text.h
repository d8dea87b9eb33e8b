#pragma once

#include <QString>

#include <optional>

namespace cnet::gateway {

/**
 * Reads a time as people type it: "2026-11-22", "2026-11-22T06:00", with seconds, with a zone
 * ("Z", "+01:00") or without one, which is the local one; or "90m", "2h", "3d", so long ago.
 *
 * @param nowMs,result milliseconds since 1970 in UTC
 */
std::optional<qint64> parseTime(const QString &text, qint64 nowMs);

/** "2026-11-22T05:00:00.123Z" */
QString utcText(qint64 ms);

} // namespace cnet::gateway
