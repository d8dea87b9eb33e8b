#include "panel/runs/send_run.h"

#include "host/decode/frame_decoder.h"
#include "host/exchange/response_times.h"
#include "host/exchange/trace.h"
#include "host/time/system_clock.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"

#include <QEventLoop>

#include <algorithm>

namespace cnet::panel {

namespace {

int patienceFor(const LinkSettings &settings, const DecodedFrame &request)
{
    const ResponseTimes times(
        {settings.session.timeoutMs, settings.session.line.characterMicroseconds()});
    return times.timeoutMs(0, static_cast<int>(request.bytes.size()) + answerLength(request));
}

void traceReply(const RawReply &raw, Messages &messages)
{
    ExchangeReport report;
    report.reply.answer = raw.answer;
    report.reply.tookMs = raw.tookMs;
    report.reply.strayBytes = raw.strayBytes;
    report.reply.outcome = raw.whole              ? Outcome::Answered
                           : raw.answer.isEmpty() ? Outcome::TimedOut
                                                  : Outcome::Bad;
    messages.line(traceAnswer(QTime::currentTime(), report));
}

} // namespace

std::optional<RawReply> sendFrame(const LinkSettings &settings, const QByteArray &frame,
                                  Messages &messages, int &exitCode)
{
    const DecodedFrame request = decodeFrame(frame);
    const auto link = linkFor(settings, {std::max(request.station, 0)}, messages);
    RawExchange exchange(*link, SystemClock::instance());
    StopSignals stopSignals;
    QEventLoop loop;
    std::optional<RawReply> reply;
    exitCode = kDeviceFailed;
    bool ended = false;
    const auto end = [&] {
        ended = true;
        loop.quit();
    };
    QObject::connect(link.get(), &Link::opened, &exchange,
                     [&] { exchange.send(frame, patienceFor(settings, request)); });
    QObject::connect(link.get(), &Link::failed, &exchange, [&](const QString &reason) {
        messages.say(
            QString::fromLatin1(exchange.isBusy() ? "%1 is lost: %2" : "cannot open %1: %2")
                .arg(link->name(), reason));
        exitCode = exchange.isBusy() ? kDeviceFailed : kNoLink;
        end();
    });
    QObject::connect(&exchange, &RawExchange::sent, &exchange, [&](const QByteArray &bytes) {
        if (settings.trace) {
            messages.line(traceRequest(QTime::currentTime(), bytes));
        }
    });
    QObject::connect(&exchange, &RawExchange::ended, &exchange, [&](const RawReply &raw) {
        reply = raw;
        if (settings.trace) {
            traceReply(raw, messages);
        }
        end();
    });
    QObject::connect(&stopSignals, &StopSignals::caught, &exchange, [&] {
        messages.say(QLatin1String("waiting was given up: interrupted"));
        end();
    });
    link->open();
    if (!ended) {
        loop.exec();
    }
    link->disconnect(&exchange);
    link->close();
    return reply;
}

} // namespace cnet::panel
