#include "host/exchange/exchange.h"

#include "host/driver/driver_session.h"
#include "host/wire/frame_words.h"

#include <algorithm>
#include <utility>

namespace cnet {

namespace {

const int kIdlePauseMs = 10;
const int kPlcTimeMs = 500;
const int kLongestBabbleMs = 2000;
const qint64 kNsPerMs = 1000000;

} // namespace

Exchange::Exchange(const DriverFunctions &driver, Link &link, const ExchangeSettings &settings,
                   QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_link(link)
    , m_settings(settings)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Exchange::handleTimer);
    connect(&m_deadline, &Deadline::passed, this, &Exchange::handleTimeout);
    connect(&link, &Link::opened, this, &Exchange::handleOpened);
    connect(&link, &Link::failed, this, &Exchange::rest);
    connect(&link, &Link::received, this, &Exchange::handleBytes);
}

void Exchange::start()
{
    m_running = true;
    if (m_link.isOpen()) {
        handleOpened();
    }
}

void Exchange::stop()
{
    m_running = false;
    rest();
}

void Exchange::wake()
{
    if (m_state == State::Pausing) {
        pause(0);
    }
}

void Exchange::setRoundLength(int blocks)
{
    m_roundLength = blocks;
    m_readsOfRound = 0;
}

int Exchange::timeoutFor(int requestLength, int answerLength) const
{
    if (m_settings.timeoutMs > 0) {
        return m_settings.timeoutMs;
    }
    const int characters = std::max(0, requestLength) + std::max(0, answerLength);
    return kPlcTimeMs + 2 * characters * m_settings.characterMicroseconds / 1000;
}

void Exchange::handleOpened()
{
    if (m_running) {
        m_late.clear();
        emptyLine(0, 0);
    }
}

void Exchange::rest()
{
    m_state = State::Resting;
    m_timer.stop();
    m_deadline.callOff();
}

void Exchange::handleBytes(const QByteArray &bytes)
{
    m_lastByteMs = nowMs();
    if (m_state == State::Awaiting && m_collector.add(bytes)) {
        handleAnswer();
    } else if (m_state == State::Emptying && m_lateUnderway > 0) {
        m_lateUnderway -= static_cast<int>(bytes.count(kEtx));
        if (m_lateUnderway <= 0) {
            // All that was waited for has come; the usual quiet is enough from here on.
            m_holdUntilMs = m_lastByteMs;
            m_timer.start(m_settings.quietMs);
        }
    }
}

void Exchange::handleTimer()
{
    switch (m_state) {
    case State::Resting:
    case State::Telling:
    case State::Awaiting:
        break;
    case State::Pausing:
        askDriver();
        break;
    case State::Emptying: {
        const qint64 quietAt = std::max(m_holdUntilMs, m_lastByteMs + m_settings.quietMs);
        const qint64 left = std::min(quietAt, m_giveUpAtMs) - nowMs();
        if (left > 0) {
            m_timer.start(static_cast<int>(left));
        } else {
            askDriver();
        }
        break;
    }
    }
}

void Exchange::pause(int ms)
{
    m_state = State::Pausing;
    m_timer.start(ms);
}

void Exchange::emptyLine(qint64 holdMs, int lateUnderway)
{
    m_lateUnderway = lateUnderway;
    m_state = State::Emptying;
    m_deadline.callOff();
    m_lastByteMs = nowMs();
    m_holdUntilMs = m_lastByteMs + holdMs;
    m_giveUpAtMs = m_holdUntilMs + kLongestBabbleMs;
    m_timer.start(m_settings.quietMs);
}

void Exchange::askDriver()
{
    if (m_driver.getSendFrame(m_frame) == 0) {
        pause(kIdlePauseMs);
        Q_EMIT idle();
        return;
    }
    if (m_frame.sendLen <= 0) {
        // The handshake has no bytes and is not transmitted; nothing is what comes back.
        deal(QByteArray());
        pause(kIdlePauseMs);
        return;
    }
    sendFrame();
}

void Exchange::sendFrame()
{
    const int length = std::min(m_frame.sendLen, static_cast<int>(kSendBufSize));
    m_request = QByteArray(reinterpret_cast<const char *>(m_frame.sendBuf), length);
    m_collector.begin(m_frame.recvLen);
    const int timeoutMs = timeoutFor(length, m_frame.recvLen);
    m_lateHoldMs = 2 * timeoutMs;
    m_state = State::Awaiting;
    m_sentNs = m_clock.nsecsElapsed();
    // Set now and not when the link reports something: a link may never do so.
    m_deadline.set(timeoutMs);
    Q_EMIT sent(m_request);
    m_link.send(m_request);
}

ExchangeReport Exchange::beginReport(Outcome outcome) const
{
    ExchangeReport report;
    report.request = {m_frame.var.opKind, m_frame.var.stationNo, m_frame.var.regName,
                      m_frame.var.startAddr, m_frame.var.count};
    report.frame = m_request;
    report.answer = m_collector.hasBegun() ? m_collector.answer() : QByteArray();
    report.strayBytes = m_collector.strayBytes();
    report.sentMs = m_sentNs / kNsPerMs;
    report.tookMs = static_cast<double>(m_clock.nsecsElapsed() - m_sentNs) / kNsPerMs;
    report.outcome = outcome;
    return report;
}

void Exchange::handleTimeout()
{
    ExchangeReport report = beginReport(Outcome::TimedOut);
    m_late.missed(m_request);
    report.result = deal(m_collector.answer());
    finish(report, 0);
}

void Exchange::handleAnswer()
{
    m_deadline.callOff();
    ExchangeReport report = beginReport(Outcome::Answered);
    int lateUnderway = 0;
    judgeAnswer(report, lateUnderway);
    finish(report, lateUnderway);
}

// The driver compares neither station nor command, and it cannot know about time, so this is where
// an answer to somebody or something else is kept from it. It gets an empty one instead.
void Exchange::judgeAnswer(ExchangeReport &report, int &lateUnderway)
{
    if (!belongsTogether(m_request, report.answer)) {
        report.outcome = Outcome::Bad;
        report.note = QLatin1String("another station or command");
        report.result = deal(QByteArray());
        return;
    }
    const LateAnswers::Verdict verdict = m_late.judge(m_request);
    lateUnderway = verdict.underway;
    if (!verdict.usable) {
        report.outcome = Outcome::Bad;
        report.note = QLatin1String("it may belong to an earlier request");
        report.result = deal(QByteArray());
        return;
    }
    report.result = deal(report.answer);
    if (report.result == kAnswerGood) {
        return;
    }
    const auto code = refusalCode(report.answer);
    report.outcome = code ? Outcome::Refused : Outcome::Bad;
    report.refusal = code.value_or(0);
}

int Exchange::deal(QByteArray answer)
{
    return m_driver.dealRcvFrame(answer, m_requestText);
}

bool Exchange::endsRound(const ExchangeReport &report)
{
    if (report.request.opKind != kCyclicRead || !report.isFinal() || m_roundLength < 1) {
        return false;
    }
    ++m_readsOfRound;
    if (m_readsOfRound < m_roundLength) {
        return false;
    }
    m_readsOfRound = 0;
    ++m_rounds;
    return true;
}

void Exchange::schedule(const ExchangeReport &report, int lateUnderway, int intervalMs)
{
    if (lateUnderway > 0) {
        emptyLine(std::max(intervalMs, m_lateHoldMs), lateUnderway);
    } else if (report.outcome == Outcome::Bad || report.outcome == Outcome::TimedOut) {
        emptyLine(intervalMs, 0);
    } else if (report.result == kAnswerUnexpected) {
        pause(kIdlePauseMs);
    } else if (intervalMs > 0) {
        pause(intervalMs);
    } else {
        m_state = State::Telling;
    }
}

// What comes next is settled before anybody is told, so that whoever is told may stop it.
void Exchange::finish(const ExchangeReport &report, int lateUnderway)
{
    const bool roundOver = endsRound(report);
    schedule(report, lateUnderway, roundOver ? m_settings.intervalMs : 0);
    Q_EMIT ended(report);
    if (roundOver) {
        Q_EMIT roundEnded(m_rounds);
    }
    if (m_state == State::Telling) {
        askDriver();
    }
}

} // namespace cnet
