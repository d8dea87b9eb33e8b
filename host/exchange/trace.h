#pragma once

#include "host/exchange/exchange_report.h"

#include <QString>
#include <QTime>

namespace cnet {

/** The line of a trace for a request: time, direction, length, hexadecimal and words. */
QString traceRequest(const QTime &time, const QByteArray &frame);

/** The line of a trace for what came back, with the time it took. */
QString traceAnswer(const QTime &time, const ExchangeReport &report);

/** The line for an answer that came after its time-out. */
QString traceLate(const QTime &time, const QByteArray &answer, double lateMs);

/** The line for an answer that is not believed before the same comes again. */
QString traceDoubted(const QTime &time, const QByteArray &answer, double tookMs);

} // namespace cnet
