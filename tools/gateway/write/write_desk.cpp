#include "gateway/write/write_desk.h"

#include "gateway/write/audit_line.h"
#include "gateway/write/write_outcome.h"

#include <QUuid>

#include <algorithm>
#include <utility>

namespace cnet::gateway {

namespace {

constexpr int kLongestName = 200;
constexpr int kLongestValue = 1000;
// Of the log, at the start: ten minutes of a gateway that is asked often.
constexpr qint64 kTailBytes = 4LL * 1000 * 1000;
const char *const kEnding = "the gateway is ending";
const char *const kTooMany = "too many requests are open";
const char *const kRetained = "a retained command is not carried out: it was sent some time ago";

QString madeUpId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString unwritten(const QString &error)
{
    return QLatin1String("what cannot be written down is not carried out: ") + error;
}

WantedWrite wantedBy(const WriteRequest &request)
{
    return {request.line, request.tag, request.value};
}

} // namespace

WriteDesk::WriteDesk(const std::optional<AuditConfig> &audit, Clock &clock, const Say &say)
    : m_config(audit)
    , m_clock(clock)
    , m_trouble(QLatin1String("audit log"), say)
{}

void WriteDesk::setAudit(const std::optional<AuditConfig> &audit)
{
    passOn();
    // What is open has its result in the file that has the request, unless another one is named.
    const bool isOther = audit && m_audit && !(*audit == m_audit->config());
    m_config = audit;
    if (isOther) {
        m_audit.reset();
    }
}

// On the thread where it is used, and not before somebody asks.
void WriteDesk::openAudit()
{
    if (!m_next) {
        m_next = m_clock.makeAlarm();
        connect(m_next.get(), &Alarm::fired, this, &WriteDesk::passOn);
    }
    if (!m_audit) {
        m_audit = std::make_unique<AuditFile>(*m_config);
        remember(m_audit->tail(kTailBytes));
    }
}

// What was carried out before this start is not carried out again.
void WriteDesk::remember(const QList<QByteArray> &lines)
{
    QMap<RequestKey, QVector<AuditLine>> requests; // that have no result yet
    const auto add = [this](const AuditLine &request, const WriteAnswer &answer) {
        const RequestKey key = keyOf(answer.reply, answer.id);
        const qint64 ageMs = std::max<qint64>(0, m_clock.wallMs() - answer.atMs);
        if (!request.isRetained && !m_open.contains(key)) {
            m_recent.add({request.answer.line, request.answer.tag, request.value}, answer,
                         m_clock.nowMs() - std::min(ageMs, RecentRequests::kKeptMs));
        }
    };
    for (const QByteArray &line : lines) {
        const auto read = readAuditLine(line);
        const RequestKey key = read ? keyOf(read->answer.reply, read->answer.id) : RequestKey();
        if (read && read->what == AuditLine::What::Request) {
            requests[key].append(*read);
        } else if (read && !requests.value(key).isEmpty()) {
            // One with the same id that was refused at once stands between the first and its end.
            const AuditLine request = requests[key].takeLast();
            if (requests.value(key).isEmpty()) {
                add(request, read->answer);
            }
        }
    }
    for (const QVector<AuditLine> &open : qAsConst(requests)) {
        if (!open.isEmpty()) {
            WriteAnswer answer = open.first().answer;
            answer.outcome = WriteAnswer::Outcome::NoAnswer;
            answer.reason = QLatin1String("the gateway ended before it knew what came of it");
            add(open.first(), answer);
        }
    }
}

QString WriteDesk::whyNot(const WriteRequest &request) const
{
    if (request.arrival == WriteRequest::Arrival::Retained) {
        return QLatin1String(kRetained);
    }
    if (request.id.size() > kLongestName || request.line.size() > kLongestName ||
        request.tag.size() > kLongestName || request.value.size() > kLongestValue) {
        return QString::fromLatin1("an id or a name may have %1 characters, a value %2")
            .arg(kLongestName)
            .arg(kLongestValue);
    }
    return m_open.size() + m_repeats >= kMostOpen ? QLatin1String(kTooMany) : QString();
}

void WriteDesk::ask(const WriteRequest &request)
{
    WriteRequest own = request;
    own.id = request.id.isEmpty() ? madeUpId() : request.id;
    if (m_hasEnded || !m_config) {
        const QLatin1String off("nothing may be written from outside");
        const QString reason = m_hasEnded ? QLatin1String(kEnding) : off;
        tell(refusalOf(own, reason, m_clock.wallMs()), own.reply);
        return;
    }
    openAudit();
    const bool isLive = own.arrival == WriteRequest::Arrival::Live;
    if (!own.fault.isEmpty()) {
        const QString reason = isLive ? own.fault : QLatin1String(kRetained);
        const WriteAnswer refused = refusalOf(own, reason, m_clock.wallMs());
        put(auditLine(own, refused));
        tell(refused, own.reply);
        return;
    }
    if (isLive && isRepeated(own)) {
        return;
    }
    const QString why = whyNot(own);
    if (!why.isEmpty()) {
        refuse(own, why);
        return;
    }
    const QString error = put(auditLine(own, m_clock.wallMs()));
    if (!error.isEmpty()) {
        const WriteAnswer answer = refusalOf(own, unwritten(error), m_clock.wallMs());
        m_recent.add(wantedBy(own), answer, m_clock.nowMs());
        tell(answer, own.reply);
        return;
    }
    const RequestKey key = keyOf(own.reply, own.id);
    m_open.insert(key, {own, m_clock.nowMs(), {}});
    m_unsafe.append(key);
    m_next->set(0);
}

bool WriteDesk::isRepeated(const WriteRequest &request)
{
    const RequestKey key = keyOf(request.reply, request.id);
    const auto open = m_open.find(key);
    const auto before = m_recent.find(key, m_clock.nowMs());
    if (open == m_open.end() && !before) {
        return false;
    }
    const WantedWrite first = open != m_open.end() ? wantedBy(open->request) : before->wanted;
    if (!(first == wantedBy(request))) {
        const QLatin1String taken("another request had the same id; each needs its own");
        refuse(request, taken);
        return true;
    }
    put(auditLine(request, m_clock.wallMs(), Delivery::Again));
    if (open == m_open.end()) {
        tell(before->answer, request.reply);
    } else if (m_open.size() + m_repeats >= kMostOpen) {
        tell(refusalOf(request, QLatin1String(kTooMany), m_clock.wallMs()), request.reply);
    } else {
        open->others.append(request.reply);
        ++m_repeats;
    }
    return true;
}

// One wait for the disk for all that came meanwhile.
void WriteDesk::passOn()
{
    const QVector<RequestKey> keys = std::exchange(m_unsafe, {});
    const QString error = keys.isEmpty() ? QString() : m_audit->sync();
    if (!error.isEmpty()) {
        m_trouble.failed(error);
    }
    for (const RequestKey &key : keys) {
        if (error.isEmpty()) {
            const Open open = m_open.value(key);
            Q_EMIT wanted(open.request, open.askedMs);
        } else {
            const Open open = m_open.take(key);
            conclude(open, refusalOf(open.request, unwritten(error), m_clock.wallMs()));
        }
    }
}

void WriteDesk::settle(const WriteAnswer &answer)
{
    const RequestKey key = keyOf(answer.reply, answer.id);
    if (m_open.contains(key)) {
        conclude(m_open.take(key), answer);
    }
}

// A request that was not written down was not carried out, so it needs no result.
QString WriteDesk::put(const QByteArray &line)
{
    QString error;
    while (error.isEmpty() && !m_unwritten.isEmpty()) {
        error = m_audit->append(m_unwritten.first());
        if (error.isEmpty()) {
            m_unwritten.removeFirst();
        }
    }
    error = error.isEmpty() ? m_audit->append(line) : error;
    if (error.isEmpty()) {
        m_trouble.fine();
    } else {
        m_trouble.failed(error);
    }
    return error;
}

void WriteDesk::refuse(const WriteRequest &request, const QString &reason)
{
    const WriteAnswer answer = refusalOf(request, reason, m_clock.wallMs());
    if (put(auditLine(request, answer.atMs)).isEmpty()) {
        put(auditLine(answer));
    }
    const bool isLive = request.arrival == WriteRequest::Arrival::Live;
    if (isLive && reason != QLatin1String(kTooMany) &&
        !m_open.contains(keyOf(request.reply, request.id))) {
        m_recent.add(wantedBy(request), answer, m_clock.nowMs());
    }
    tell(answer, request.reply);
}

void WriteDesk::conclude(const Open &open, const WriteAnswer &answer)
{
    if (m_config) {
        openAudit();
    }
    if (m_audit && !put(auditLine(answer)).isEmpty()) {
        m_unwritten.append(auditLine(answer));
    }
    m_recent.add(wantedBy(open.request), answer, m_clock.nowMs());
    m_repeats -= static_cast<int>(open.others.size());
    tell(answer, open.request.reply);
    for (const WriteReply &other : open.others) {
        tell(answer, other);
    }
}

void WriteDesk::tell(WriteAnswer answer, const WriteReply &reply)
{
    answer.reply = reply;
    Q_EMIT answered(answer);
}

void WriteDesk::finish()
{
    m_hasEnded = true;
    m_unsafe.clear();
    const QMap<RequestKey, Open> open = std::exchange(m_open, {});
    for (const Open &own : open) {
        conclude(own, refusalOf(own.request, QLatin1String(kEnding), m_clock.wallMs()));
    }
    if (m_audit) {
        m_audit->sync();
    }
    m_next.reset();
    m_audit.reset();
}

} // namespace cnet::gateway
