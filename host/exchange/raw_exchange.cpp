#include "host/exchange/raw_exchange.h"

#include "host/exchange/reply.h"
#include "host/wire/characters.h"

#include <algorithm>

namespace cnet {

namespace {

// Behind the head: station (2), command, type (2)
const int kAddresseeLength = 5;

QByteArray addresseeOf(const QByteArray &frame)
{
    const QByteArray addressee = frame.mid(1, kAddresseeLength);
    const bool printable = std::all_of(addressee.cbegin(), addressee.cend(),
                                       [](char byte) { return byte > ' ' && byte < '\x7f'; });
    return addressee.size() == kAddresseeLength && printable ? addressee : QByteArray();
}

} // namespace

RawAnswer::RawAnswer(const QByteArray &frame)
{
    m_reply.frame = frame;
}

// Where no block check is due, an answer ends with ETX, whatever follows it.
bool RawAnswer::add(const QByteArray &bytes)
{
    QByteArray rest = bytes;
    while (!rest.isEmpty() && !m_reply.whole) {
        const auto etxAt = rest.indexOf(kEtx);
        const auto piece = static_cast<int>(etxAt < 0 ? rest.size() : etxAt + 1);
        rest.remove(0, m_collector.add(rest.left(piece), 0));
        if (endsHere()) {
            const QByteArray answer = m_collector.answer();
            const QByteArray asked = addresseeOf(m_reply.frame);
            m_reply.whole = asked.isEmpty() || addresseeOf(answer) == asked;
            if (!m_reply.whole) {
                m_reply.elsewhere += answer;
                m_reply.strayBytes += m_collector.strayBytes();
                m_collector.clear();
            }
        }
    }
    return m_reply.whole;
}

bool RawAnswer::endsHere() const
{
    const QByteArray answer = m_collector.answer();
    const char command = answer.size() > kCommandPosition ? answer.at(kCommandPosition) : '\0';
    return m_collector.isComplete() ||
           (m_collector.hasBegun() && command >= 'A' && command <= 'Z' && answer.endsWith(kEtx));
}

RawReply RawAnswer::reply() const
{
    RawReply reply = m_reply;
    reply.answer = m_collector.hasBegun() ? m_collector.answer() : QByteArray();
    reply.strayBytes += m_collector.strayBytes();
    return reply;
}

RawExchange::RawExchange(Link &link, Clock &clock, QObject *parent)
    : QObject(parent)
    , m_link(link)
    , m_clock(clock)
    , m_alarm(clock.makeAlarm())
    , m_lastByteMs(clock.nowMs())
{
    connect(m_alarm.get(), &Alarm::fired, this, [this] {
        if (m_phase == Phase::Clearing) {
            proceed();
        } else if (m_phase == Phase::Waiting) {
            finish();
        }
    });
    connect(&link, &Link::received, this, &RawExchange::handleBytes);
    // What a serial server still holds of an earlier connection may come now.
    connect(&link, &Link::opened, this, [this] { m_lastByteMs = m_clock.nowMs(); });
}

void RawExchange::send(const QByteArray &frame, int patienceMs, int quietMs)
{
    m_frame = frame;
    m_answer = RawAnswer(frame);
    m_patienceMs = patienceMs;
    m_quietMs = quietMs;
    m_sinceMs = m_clock.nowMs();
    m_phase = Phase::Clearing;
    proceed();
}

// A line that is never quiet is used all the same.
void RawExchange::proceed()
{
    const qint64 nowMs = m_clock.nowMs();
    const qint64 leftMs =
        std::min(m_lastByteMs + m_quietMs - nowMs, m_sinceMs + kLongestBabbleMs - nowMs);
    if (leftMs > 0) {
        m_alarm->set(static_cast<int>(leftMs));
        return;
    }
    m_phase = Phase::Waiting;
    m_sentNs = m_clock.nowNs();
    m_alarm->set(m_patienceMs);
    Q_EMIT sent(m_frame);
    m_link.send(m_frame);
}

void RawExchange::handleBytes(const QByteArray &bytes)
{
    m_lastByteMs = m_clock.nowMs();
    if (m_phase == Phase::Waiting && m_answer.add(bytes)) {
        finish();
    }
}

void RawExchange::finish()
{
    m_phase = Phase::Idle;
    m_alarm->cancel();
    RawReply reply = m_answer.reply();
    reply.tookMs = static_cast<double>(m_clock.nowNs() - m_sentNs) / kNsPerMs;
    Q_EMIT ended(reply);
}

bool onlyReads(const QByteArray &frame)
{
    const char command = frame.size() > kCommandPosition ? frame.at(kCommandPosition) : '\0';
    return frame.startsWith(kEnq) && frame.count(kEnq) == 1 && (command == 'r' || command == 'R');
}

} // namespace cnet
