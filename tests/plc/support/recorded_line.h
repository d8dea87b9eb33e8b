#pragma once

#include "host/recording/recording.h"
#include "plc/support/wire_text.h"

#include <QList>

/** What came for a request, and how many milliseconds after what came before. */
struct CameThen
{
    int afterMs;
    QByteArray bytes;
};

/** Adds an exchange to a line, `atMs` after the beginning. The bytes are as wire() takes them. */
inline void addExchange(cnet::RecordedLine &line, qint64 atMs, const QByteArray &request,
                        const QList<CameThen> &answers)
{
    const qint64 nsPerMs = 1000000;
    const qint64 startNs = 1763781000000 * nsPerMs;
    cnet::RecordedExchange exchange;
    qint64 ns = startNs + atMs * nsPerMs;
    exchange.request = {0, ns, wire(request), QString()};
    for (const CameThen &answer : answers) {
        ns += answer.afterMs * nsPerMs;
        exchange.answers.push_back({0, ns, wire(answer.bytes), QString()});
    }
    exchange.isOpen = answers.isEmpty();
    if (!line.exchanges.empty()) {
        line.exchanges.back().isOpen = false;
    }
    line.exchanges.push_back(exchange);
}
