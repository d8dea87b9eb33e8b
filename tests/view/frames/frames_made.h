#pragma once

#include "host/exchange/exchange_report.h"
#include "host/wire/block_check.h"

#include <QByteArray>

namespace cnet::view {

/** A request for words of D. @param address of the first one, as it stands in the frame */
inline QByteArray readRequest(const char *address = "0010", const char *station = "01")
{
    return completedRequest(QByteArray(station) + "rSB07%DW" + address + "02");
}

/** An answer, or a refusal, with its block check. @param text from the station on */
inline QByteArray answered(const QByteArray &text, char head = '\x06')
{
    const QByteArray body = head + text + '\x03';
    return body + blockCheck(body, static_cast<int>(body.size()));
}

inline QByteArray readAnswer(const char *words = "00010002", const char *station = "01")
{
    return answered(QByteArray(station) + "rSB0104" + words);
}

inline QByteArray refusal(const char *station = "01")
{
    return answered(QByteArray(station) + "rSB1132", '\x15');
}

inline ExchangeReport report(const QByteArray &request, const QByteArray &answer,
                             Outcome outcome = Outcome::Answered, double tookMs = 12.5)
{
    ExchangeReport report;
    report.reply.station = request.mid(1, 2).toInt(nullptr, 16);
    report.reply.frame = request;
    report.reply.answer = answer;
    report.reply.outcome = outcome;
    report.reply.tookMs = tookMs;
    report.good = outcome == Outcome::Answered;
    return report;
}

} // namespace cnet::view
