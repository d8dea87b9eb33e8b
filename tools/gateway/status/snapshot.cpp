#include "gateway/status/snapshot.h"

namespace cnet::gateway {

LineMeters metersOf(const GatewayLine &line)
{
    LineMeters meters;
    meters.name = line.name();
    meters.changes = line.changes();
    const Session *session = line.session();
    if (session == nullptr) {
        return meters;
    }
    const Statistics &statistics = session->statistics();
    const qint64 nowMs = session->nowMs();
    meters.isOpen = session->state() == Session::State::Open;
    meters.trouble = session->lineError();
    meters.stations = statistics.stations();
    meters.rounds = session->rounds();
    // Before the line was first open nothing is counted.
    if (statistics.sinceMs() >= 0) {
        meters.traffic = statistics.line().all(nowMs);
        meters.loadPercent = statistics.loadPercent(statistics.line().recent(nowMs));
    }
    return meters;
}

} // namespace cnet::gateway
