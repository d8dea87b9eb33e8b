#pragma once

#include "gateway/status/snapshot.h"

namespace cnet::gateway {

/** A gateway with two lines, of which one is down, and two sinks, of which one is away. */
inline Snapshot someSnapshot()
{
    StationCounters station;
    station.frames = 1000;
    station.answers = 990;
    station.retries = 7;
    station.timeouts = 5;
    station.bad = 3;
    station.badChecks = 2;
    station.refusals = 1;
    station.late = 4;
    station.state = StationState::Answers;
    for (const double ms : {3.0, 5.0, 9.0, 5000.0}) {
        station.times.note(ms);
    }
    LineMeters press;
    press.name = QLatin1String("press");
    press.isOpen = true;
    press.stations.insert(1, station);
    station.state = StationState::Away;
    press.stations.insert(31, station);
    press.traffic.sentBytes = 12345;
    press.traffic.receivedBytes = 54321;
    press.loadPercent = 62.5;
    press.rounds = 17;
    press.changes = 4711;
    LineMeters oven;
    oven.name = QString::fromUtf8("oven \"\xc3\xb6\"\\\n");
    oven.trouble = QLatin1String("connection refused");
    SinkMeters history;
    history.state = {QLatin1String("history"), true, QString(), 4711, 0, 0, 0};
    history.valuesPerSecond = 12.25;
    SinkMeters broker;
    broker.state = {
        QLatin1String("broker"), false, QLatin1String("no route"), 4000, 100, 12, 90500};
    Snapshot snapshot;
    snapshot.atMs = 100000;
    snapshot.wallMs = 1700000100000;
    snapshot.startedMs = 1700000000500;
    snapshot.version = QLatin1String("1.2.3");
    snapshot.lines = {press, oven};
    snapshot.sinks = {history, broker};
    snapshot.recorder.ledger.batches = 12;
    snapshot.recorder.ledger.values = 711;
    snapshot.recorder.ledger.bytes = 90000;
    snapshot.recorder.ledger.oldestAgeMs = 90500;
    snapshot.recorder.ledger.hoursLeft = 2.5;
    return snapshot;
}

} // namespace cnet::gateway
