#include "panel/replay/replay_run.h"

#include "host/decode/frame_decoder.h"
#include "host/exchange/trace.h"
#include "host/time/clock.h"
#include "host/time/system_clock.h"
#include "host/wire/answer_shape.h"
#include "panel/replay/replay_output.h"
#include "panel/runs/command_session.h"
#include "panel/runs/send_run.h"
#include "panel/system/exit_code.h"
#include "panel/system/standard_output.h"
#include "panel/terminal/bar_and_messages.h"

#include <QEventLoop>

#include <algorithm>

namespace cnet::panel {

namespace {

constexpr int kLongestPatienceMs = 10000;
// What comes late may come a little later still.
constexpr int kLaterMs = 50;
// What an alarm holds with ease; a longer pause takes several.
constexpr qint64 kLongestAlarmMs = 3600000;

/** What was recorded for a request, as a host sees it that sends it. */
struct RecordedReply
{
    RawReply reply;
    int tookMs = 0;       ///< until the answer was whole
    int lastByteMs = 0;   ///< until the last of what came
    bool isClean = false; ///< nothing followed the answer
};

RecordedReply replyOf(const RecordedExchange &exchange)
{
    RecordedReply result;
    RawAnswer answer(exchange.request.bytes);
    for (const RecordedFrame &frame : exchange.answers) {
        const qint64 ms = (frame.timeNs - exchange.request.timeNs) / kNsPerMs;
        result.lastByteMs = static_cast<int>(std::clamp<qint64>(ms, 0, kLongestPatienceMs));
        const bool wasWhole = answer.reply().whole;
        result.isClean = answer.add(frame.bytes) && !wasWhole;
        result.tookMs = wasWhole ? result.tookMs : result.lastByteMs;
    }
    result.reply = answer.reply();
    return result;
}

QVector<int> stationsOf(const std::vector<RecordedExchange> &exchanges)
{
    QVector<int> stations;
    for (const RecordedExchange &exchange : exchanges) {
        const int station = stationOf(exchange.request.bytes);
        if (station >= 0 && station <= kHighestStation && !stations.contains(station)) {
            stations.append(station);
        }
    }
    return stations;
}

class ReplayRun
{
public:
    ReplayRun(const LinkSettings &settings, const ReplayOptions &options, Messages &messages)
        : m_settings(settings)
        , m_options(options)
        , m_messages(messages)
        , m_shown(messages, "requests")
        , m_link(linkFor(settings, stationsOf(options.exchanges), messages))
        , m_exchange(*m_link, SystemClock::instance())
        , m_due(SystemClock::instance().makeAlarm())
    {
        m_summary.requests = static_cast<int>(options.exchanges.size());
        QObject::connect(m_link.get(), &Link::opened, &m_exchange, [this] {
            m_startMs = nowMs();
            proceed();
        });
        QObject::connect(m_link.get(), &Link::failed, &m_exchange,
                         [this](const QString &reason) { fail(reason); });
        QObject::connect(&m_exchange, &RawExchange::sent, &m_exchange,
                         [this](const QByteArray &bytes) { noteSent(bytes); });
        QObject::connect(&m_exchange, &RawExchange::ended, &m_exchange,
                         [this](const RawReply &reply) { take(reply); });
        QObject::connect(m_due.get(), &Alarm::fired, &m_exchange, [this] { proceed(); });
        QObject::connect(&m_stopSignals, &StopSignals::caught, &m_exchange, [this] {
            m_messages.say(QLatin1String("the replay was given up: interrupted"));
            end(kDeviceFailed);
        });
    }

    int run()
    {
        m_link->open();
        // Opening may have failed at once.
        if (!m_ended) {
            m_loop.exec();
        }
        m_link->disconnect(&m_exchange);
        m_link->close();
        m_shown.bar().clear();
        if (m_exitCode != kNoLink) {
            writeToStandardOutput(m_options.format == OutputFormat::Json ? summaryJson(m_summary)
                                                                         : summaryText(m_summary));
        }
        return m_exitCode;
    }

private:
    static qint64 nowMs() { return SystemClock::instance().nowMs(); }

    const RecordedExchange &exchange() const { return m_options.exchanges.at(m_next); }

    qint64 sinceStartNs(const RecordedExchange &other) const
    {
        return other.request.timeNs - m_options.exchanges.front().request.timeNs;
    }

    // When it was sent, and not before what came for the last one must have come again.
    qint64 dueMs() const
    {
        const double recordedMs = static_cast<double>(sinceStartNs(exchange())) / kNsPerMs;
        return std::max(m_startMs + static_cast<qint64>(recordedMs / m_options.speed),
                        m_notBeforeMs);
    }

    void proceed()
    {
        if (m_next == m_options.exchanges.size()) {
            end(m_summary.isSame() ? kFine : kDeviceFailed);
            return;
        }
        const qint64 leftMs = dueMs() - nowMs();
        if (leftMs > 0) {
            m_due->set(static_cast<int>(std::min(leftMs, kLongestAlarmMs)));
            return;
        }
        m_recorded = replyOf(exchange());
        m_exchange.send(exchange().request.bytes, patienceMs(), m_quietMs);
    }

    // Where nothing came, it is waited for as long as the host of the capture has.
    int patienceMs() const
    {
        const int usualMs = patienceFor(m_settings, decodeFrame(exchange().request.bytes));
        if (m_settings.session.timeoutMs > 0) {
            return usualMs;
        }
        if (!m_recorded.reply.answer.isEmpty()) {
            return std::max(usualMs, std::min(2 * m_recorded.tookMs, kLongestPatienceMs));
        }
        if (m_next + 1 == m_options.exchanges.size()) {
            return usualMs;
        }
        const qint64 gapMs =
            (m_options.exchanges.at(m_next + 1).request.timeNs - exchange().request.timeNs) /
            kNsPerMs;
        return static_cast<int>(std::clamp<qint64>(gapMs, RawExchange::kQuietMs, usualMs));
    }

    void noteSent(const QByteArray &bytes)
    {
        m_sentMs = nowMs();
        if (m_settings.trace) {
            m_messages.line(traceRequest(QTime::currentTime(), bytes));
        }
    }

    void take(const RawReply &reply)
    {
        if (m_settings.trace) {
            traceReply(reply, m_messages);
        }
        ++m_summary.sent;
        if (exchange().isOpen) {
            ++m_summary.notCompared;
        } else {
            compare(reply);
        }
        const bool clean = m_recorded.isClean && reply.whole;
        m_quietMs = clean ? 0 : RawExchange::kQuietMs;
        m_notBeforeMs = clean ? 0 : m_sentMs + m_recorded.lastByteMs + kLaterMs;
        ++m_next;
        m_shown.bar().show(m_summary.sent, m_summary.requests);
        proceed();
    }

    void compare(const RawReply &reply)
    {
        const AnswerComparison comparison =
            compareAnswers(exchange().request.bytes, m_recorded.reply.answer, reply.answer);
        ++m_summary.changes[comparison.change];
        if (comparison.change == AnswerChange::None) {
            return;
        }
        m_shown.bar().clear();
        const auto text = m_options.format == OutputFormat::Json ? differenceJson : differenceText;
        writeToStandardOutput(text(exchange().request, sinceStartNs(exchange()), comparison));
    }

    void fail(const QString &reason)
    {
        const bool lost = m_startMs >= 0;
        m_messages.say(QString::fromLatin1(lost ? "%1 is lost: %2" : "cannot open %1: %2")
                           .arg(m_link->name(), reason));
        end(lost ? kDeviceFailed : kNoLink);
    }

    void end(int exitCode)
    {
        m_ended = true;
        m_exitCode = exitCode;
        m_due->cancel();
        m_loop.quit();
    }

    const LinkSettings &m_settings;
    const ReplayOptions &m_options;
    Messages &m_messages;
    BarAndMessages m_shown;
    std::unique_ptr<Link> m_link;
    RawExchange m_exchange;
    std::unique_ptr<Alarm> m_due;
    StopSignals m_stopSignals;
    QEventLoop m_loop;
    ReplaySummary m_summary;
    RecordedReply m_recorded; ///< for the request that is under way
    std::size_t m_next = 0;   ///< of the exchanges
    qint64 m_startMs = -1;    ///< when the first one was due; negative: the link was never open
    qint64 m_sentMs = 0;
    qint64 m_notBeforeMs = 0;
    int m_quietMs = RawExchange::kQuietMs;
    int m_exitCode = kDeviceFailed;
    bool m_ended = false;
};

} // namespace

int runReplay(const LinkSettings &link, const ReplayOptions &options, Messages &messages)
{
    return ReplayRun(link, options, messages).run();
}

} // namespace cnet::panel
