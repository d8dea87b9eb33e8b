#pragma once

#include "host/link/link_address.h"
#include "host/statistics/block_book.h"
#include "host/statistics/line_meter.h"
#include "host/statistics/station_book.h"

#include <optional>

namespace cnet {

/** The numbers of a line, as they stand: its bytes, and the requests by station and by block. */
class Statistics
{
public:
    /** @param line what bytes take on the line; nothing: nobody knows */
    explicit Statistics(const std::optional<LineSettings> &line)
        : m_line(line)
    {}

    /** Counts from 0 again. @param nowMs on the session's clock */
    void reset(qint64 nowMs);

    /** When counting began, on the session's clock; negative: not yet. */
    qint64 sinceMs() const { return m_sinceMs; }

    const QMap<int, StationCounters> &stations() const { return m_stations.all(); }
    const BlockBook &blocks() const { return m_blocks; }
    const LineMeter &line() const { return m_meter; }

    /** What bytes take on the line; nothing where that is not known, as behind a TCP port. */
    const std::optional<LineSettings> &lineSettings() const { return m_line; }

    /** How busy the line was in that time, in percent; nothing where its speed is not known. */
    std::optional<double> loadPercent(const LineTraffic &traffic) const;

    // For the session.

    StationBook &stationBook() { return m_stations; }
    void sent(qint64 bytes, qint64 nowMs) { m_meter.sent(bytes, nowMs); }
    void received(qint64 bytes, qint64 nowMs) { m_meter.received(bytes, nowMs); }
    /** @return what is to be said; mostly nothing */
    QString note(const ExchangeReport &report);

private:
    std::optional<LineSettings> m_line;
    qint64 m_sinceMs = -1;
    StationBook m_stations;
    BlockBook m_blocks;
    LineMeter m_meter;
};

} // namespace cnet
