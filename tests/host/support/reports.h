#pragma once

#include <host/exchange/exchange_report.h>

namespace cnet {

/** What became of a request to station 2 for D_W:100*3, as the line tells it. */
inline ExchangeReport reportOf(Outcome outcome, double tookMs = 1, qint64 sentMs = 0)
{
    ExchangeReport report;
    report.reply.station = 2;
    report.reply.frame = QByteArray(21, '>');
    report.reply.answer = outcome == Outcome::TimedOut ? QByteArray() : QByteArray(17, '<');
    report.reply.outcome = outcome;
    report.reply.defect = outcome == Outcome::Bad ? Defect::Other : Defect::None;
    report.reply.tookMs = tookMs;
    report.reply.sentMs = sentMs;
    report.range = AddressRange{2, QLatin1String("D_W"), 100, 3};
    report.good = outcome == Outcome::Answered;
    report.refusal = outcome == Outcome::Refused ? 0x1132 : 0;
    return report;
}

} // namespace cnet
