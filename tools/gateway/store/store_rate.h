#pragma once

#include <QtGlobal>

#include <optional>

namespace cnet::gateway {

/** How fast a store grows: bytes over time, of which the last hour counts most. */
class StoreRate
{
public:
    /** @param nowMs never falling */
    void start(qint64 nowMs);

    /** @param bytes that came since the call before */
    void note(qint64 nowMs, qint64 bytes);

    /** Bytes a millisecond; nothing in the first minute, which says little. */
    std::optional<double> perMs() const;

private:
    qint64 m_lastMs = 0;
    double m_ms = 0; ///< both fade with their age
    double m_bytes = 0;
};

} // namespace cnet::gateway
