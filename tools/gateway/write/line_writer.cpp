#include "gateway/write/line_writer.h"

#include "gateway/toml/config_units.h"

#include "host/tag/typed_item.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cnet::gateway {

namespace {

const char *const kSuperseded = "a later request for the same value took its place";

} // namespace

LineWriter::LineWriter(const WriteRules &rules, const AllowedValues &allowed, Session &session,
                       Clock &clock)
    : m_rules(rules)
    , m_allowed(allowed)
    , m_session(session)
    , m_clock(clock)
    , m_alarm(clock.makeAlarm())
    , m_lineBucket(rules.line, clock.nowMs())
{
    connect(m_alarm.get(), &Alarm::fired, this, &LineWriter::expire);
}

LineWriter::~LineWriter()
{
    end(QLatin1String("the line is taken away"));
    if (m_underway) {
        // Nobody hears of its end any more: it is not known what comes of it.
        Underway last = *std::exchange(m_underway, std::nullopt);
        EndedWrite ended{last.own.planned.tag, {}, false, {}};
        ended.result.failure.kind = Failure::Cancelled;
        Q_EMIT answered(answerOf(last.own.request, ended, m_clock.wallMs()));
        if (last.job) {
            last.job->disconnect(this);
            delete last.job;
        }
    }
}

void LineWriter::refuse(const WriteRequest &request, const QString &reason)
{
    Q_EMIT answered(refusalOf(request, reason, m_clock.wallMs()));
}

void LineWriter::ask(const WriteRequest &request, qint64 askedMs)
{
    QString why = m_ended;
    const auto planned =
        why.isEmpty() ? m_allowed.plan(request.tag, request.value, why) : std::nullopt;
    if (planned) {
        why = whyNotNow(planned->tag);
    }
    if (!why.isEmpty() || isTooOften(*planned, why)) {
        refuse(request, why);
        return;
    }
    m_waiting.push_back({request, *planned, askedMs + m_rules.waitMs});
    supersede(tagText(planned->tag));
    begin();
}

QString LineWriter::tooLate() const
{
    return QString::fromLatin1("it could not be sent within %1").arg(durationText(m_rules.waitMs));
}

QString LineWriter::whyNotNow(const Tag &tag) const
{
    if (m_session.state() != Session::State::Open) {
        return QLatin1String("the line is down; nothing was sent");
    }
    const StationState state = m_session.stations().value(tag.item.station).state;
    return state == StationState::Away || state == StationState::Disturbed
               ? QString::fromLatin1("station %1 does not answer; nothing was sent")
                     .arg(tag.item.station)
               : QString();
}

bool LineWriter::isTooOften(const PlannedWrite &planned, QString &why)
{
    const qint64 nowMs = m_clock.nowMs();
    const QString tag = tagText(planned.tag);
    const auto own = m_buckets.find(tag) != m_buckets.end()
                         ? m_buckets.find(tag)
                         : m_buckets.insert(tag, TokenBucket(m_rules.value, nowMs));
    const auto refused = [&why](const QString &what, const WriteRate &rate) {
        why = QString::fromLatin1("too often: %1 may be written %2 times a minute")
                  .arg(what)
                  .arg(rate.perMinute);
        return true;
    };
    if (!own->hasToken(nowMs)) {
        return refused(tag, m_rules.value);
    }
    if (!m_lineBucket.hasToken(nowMs)) {
        return refused(QLatin1String("the line"), m_rules.line);
    }
    own->take();
    m_lineBucket.take();
    return false;
}

bool LineWriter::canTakeBack() const
{
    return m_underway && m_underway->job && m_underway->job->state() == Job::State::Waiting;
}

// The newest one stays, behind all others: what was asked for last is written last.
void LineWriter::supersede(const QString &tag)
{
    for (size_t i = 0; i + 1 < m_waiting.size(); ++i) {
        if (tagText(m_waiting.at(i).planned.tag) == tag) {
            WriteAnswer answer =
                refusalOf(m_waiting.at(i).request, QLatin1String(kSuperseded), m_clock.wallMs());
            answer.outcome = WriteAnswer::Outcome::Superseded;
            m_waiting.erase(m_waiting.begin() + static_cast<std::ptrdiff_t>(i));
            Q_EMIT answered(answer);
            break;
        }
    }
    if (canTakeBack() && tagText(m_underway->own.planned.tag) == tag) {
        m_underway->isSuperseded = true;
        m_underway->whyCancelled = QLatin1String(kSuperseded);
        m_underway->job->cancel();
    }
}

void LineWriter::begin()
{
    while (!m_underway && !m_waiting.empty()) {
        const Waiting next = m_waiting.front();
        m_waiting.pop_front();
        const bool isLate = next.untilMs <= m_clock.nowMs();
        const QString why = isLate ? tooLate() : whyNotNow(next.planned.tag);
        if (!why.isEmpty()) {
            refuse(next.request, why);
            continue;
        }
        WriteJob *const job = m_session.write(next.planned.assignments, ReadBack::Always);
        m_underway = Underway{next, job, false, {}, false};
        connect(job, &WriteJob::blockSettled, this,
                [this](const Item &, const QVector<quint16> &, Confirmation confirmation) {
                    m_underway->wasPartlyTaken =
                        m_underway->wasPartlyTaken || confirmation == Confirmation::Given;
                });
        connect(job, &Job::finished, this, &LineWriter::handleEnd);
    }
    setAlarm();
}

void LineWriter::handleEnd()
{
    const Underway ended = *std::exchange(m_underway, std::nullopt);
    ended.job->disconnect(this);
    ended.job->deleteLater();
    WriteAnswer answer = answerOf(ended.own.request,
                                  {ended.own.planned.tag, ended.job->results().first(),
                                   ended.wasPartlyTaken, ended.whyCancelled},
                                  m_clock.wallMs());
    if (ended.isSuperseded && answer.outcome == WriteAnswer::Outcome::Refused) {
        answer.outcome = WriteAnswer::Outcome::Superseded;
    }
    Q_EMIT answered(answer);
    begin();
}

// All of them wait equally long, but for rules that changed meanwhile.
void LineWriter::setAlarm()
{
    qint64 firstMs = -1;
    const auto look = [&firstMs](const Waiting &own) {
        firstMs = firstMs < 0 ? own.untilMs : std::min(firstMs, own.untilMs);
    };
    std::for_each(m_waiting.cbegin(), m_waiting.cend(), look);
    if (canTakeBack()) {
        look(m_underway->own);
    }
    if (firstMs < 0) {
        m_alarm->cancel();
    } else {
        m_alarm->set(static_cast<int>(std::max<qint64>(0, firstMs - m_clock.nowMs())));
    }
}

void LineWriter::expire()
{
    const qint64 nowMs = m_clock.nowMs();
    const QString reason = tooLate();
    std::deque<Waiting> late;
    const auto first =
        std::stable_partition(m_waiting.begin(), m_waiting.end(),
                              [nowMs](const Waiting &own) { return own.untilMs > nowMs; });
    std::move(first, m_waiting.end(), std::back_inserter(late));
    m_waiting.erase(first, m_waiting.end());
    for (const Waiting &own : late) {
        refuse(own.request, reason);
    }
    if (canTakeBack() && m_underway->own.untilMs <= nowMs) {
        m_underway->whyCancelled = reason;
        m_underway->job->cancel();
    }
    setAlarm();
}

void LineWriter::setRules(const WriteRules &rules, const AllowedValues &allowed)
{
    m_rules = rules;
    m_allowed = allowed;
    m_lineBucket = TokenBucket(rules.line, m_clock.nowMs());
    m_buckets.clear();
    const std::deque<Waiting> before = std::exchange(m_waiting, {});
    for (Waiting own : before) {
        QString why;
        if (const auto planned = m_allowed.plan(own.request.tag, own.request.value, why)) {
            own.planned = *planned;
            m_waiting.push_back(own);
        } else {
            refuse(own.request, why);
        }
    }
    QString why;
    if (canTakeBack() &&
        !m_allowed.plan(m_underway->own.request.tag, m_underway->own.request.value, why)) {
        m_underway->whyCancelled = why;
        m_underway->job->cancel();
    }
    begin();
}

void LineWriter::end(const QString &reason)
{
    m_ended = reason;
    const std::deque<Waiting> before = std::exchange(m_waiting, {});
    for (const Waiting &own : before) {
        refuse(own.request, reason);
    }
    if (canTakeBack()) {
        m_underway->whyCancelled = reason;
        m_underway->job->cancel();
    }
}

} // namespace cnet::gateway
