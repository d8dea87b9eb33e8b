#include "panel/runs/send_run.h"

#include "host/decode/frame_decoder.h"
#include "host/exchange/trace.h"
#include "host/time/response_times.h"
#include "host/time/system_clock.h"
#include "panel/runs/command_session.h"
#include "panel/system/exit_code.h"

#include <QEventLoop>

#include <algorithm>

namespace cnet::panel {

namespace {

/** A link, one frame, and the event loop until its end. */
class SendRun
{
public:
    SendRun(const LinkSettings &settings, const QByteArray &frame, Messages &messages)
        : m_settings(settings)
        , m_request(decodeFrame(frame))
        , m_messages(messages)
        , m_link(linkFor(settings, {std::max(m_request.station, 0)}, messages))
        , m_exchange(*m_link, SystemClock::instance())
    {
        QObject::connect(m_link.get(), &Link::opened, &m_exchange, [this] {
            m_exchange.send(m_request.bytes, patienceFor(m_settings, m_request));
        });
        QObject::connect(m_link.get(), &Link::failed, &m_exchange,
                         [this](const QString &reason) { fail(reason); });
        QObject::connect(&m_exchange, &RawExchange::sent, &m_exchange,
                         [this](const QByteArray &bytes) { traceSent(bytes); });
        QObject::connect(&m_exchange, &RawExchange::ended, &m_exchange,
                         [this](const RawReply &reply) { take(reply); });
        QObject::connect(&m_stopSignals, &StopSignals::caught, &m_exchange, [this] {
            m_messages.say(QLatin1String("waiting was given up: interrupted"));
            end(kDeviceFailed);
        });
    }

    std::optional<RawReply> run(int &exitCode)
    {
        m_link->open();
        // Opening may have failed at once.
        if (!m_ended) {
            m_loop.exec();
        }
        m_link->disconnect(&m_exchange);
        m_link->close();
        exitCode = m_exitCode;
        return m_reply;
    }

private:
    void fail(const QString &reason)
    {
        const bool lost = m_exchange.isBusy();
        m_messages.say(QString::fromLatin1(lost ? "%1 is lost: %2" : "cannot open %1: %2")
                           .arg(m_link->name(), reason));
        end(lost ? kDeviceFailed : kNoLink);
    }

    void traceSent(const QByteArray &bytes)
    {
        if (m_settings.trace) {
            m_messages.line(traceRequest(QTime::currentTime(), bytes));
        }
    }

    void take(const RawReply &reply)
    {
        m_reply = reply;
        if (m_settings.trace) {
            traceReply(reply, m_messages);
        }
        end(kFine);
    }

    void end(int exitCode)
    {
        m_ended = true;
        m_exitCode = exitCode;
        m_loop.quit();
    }

    const LinkSettings &m_settings;
    DecodedFrame m_request;
    Messages &m_messages;
    std::unique_ptr<Link> m_link;
    RawExchange m_exchange;
    StopSignals m_stopSignals;
    QEventLoop m_loop;
    std::optional<RawReply> m_reply;
    int m_exitCode = kDeviceFailed;
    bool m_ended = false;
};

} // namespace

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

std::optional<RawReply> sendFrame(const LinkSettings &settings, const QByteArray &frame,
                                  Messages &messages, int &exitCode)
{
    return SendRun(settings, frame, messages).run(exitCode);
}

} // namespace cnet::panel
