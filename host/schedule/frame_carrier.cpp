#include "host/schedule/frame_carrier.h"

#include "host/wire/frame_words.h"

#include <algorithm>

namespace cnet {

FrameCarrier::FrameCarrier(DriverCore &driver, Conversation &conversation)
    : m_driver(driver)
    , m_conversation(conversation)
{}

// After ten writes in a row the driver says once that it has nothing. A frame without bytes is a
// handshake, which is not transmitted: its answer is empty.
bool FrameCarrier::carry()
{
    m_sent = m_sent && m_open;
    m_open = m_driver.functions().getSendFrame(m_frame) != 0 ||
             m_driver.functions().getSendFrame(m_frame) != 0;
    if (m_open && m_frame.sendLen <= 0) {
        giveUp();
    }
    if (!m_open) {
        return false;
    }
    const int length = std::min(m_frame.sendLen, static_cast<int>(kSendBufSize));
    Question question;
    question.station = m_frame.var.stationNo;
    question.request = QByteArray(reinterpret_cast<const char *>(m_frame.sendBuf), length);
    question.answerLength = m_frame.recvLen;
    m_conversation.ask(question);
    return true;
}

int FrameCarrier::deal(const QByteArray &answer)
{
    QByteArray reply = answer;
    QString requestText;
    return m_driver.functions().dealRcvFrame(reply, requestText);
}

void FrameCarrier::giveUp()
{
    for (int i = 0; m_open && i < kMostAttempts; ++i) {
        m_open = deal(QByteArray()) == kAnswerResend;
    }
    m_open = false;
}

Purpose FrameCarrier::purpose() const
{
    switch (m_frame.var.opKind) {
    case kOneOffRead:
        return Purpose::Read;
    case kWrite:
        return Purpose::Write;
    default:
        return Purpose::Cyclic;
    }
}

ExchangeReport FrameCarrier::take(const Reply &reply)
{
    ExchangeReport report;
    report.purpose = purpose();
    report.reply = reply;
    report.range = AddressRange{m_frame.var.stationNo, m_frame.var.regName, m_frame.var.startAddr,
                                m_frame.var.count};
    settle(report);
    return report;
}

void FrameCarrier::settle(ExchangeReport &report)
{
    const quint64 changesBefore = m_driver.changes();
    const Outcome outcome = report.reply.outcome;
    int result = kAnswerGivenUp;
    if (!report.reply.sent) {
        giveUp();
    } else {
        result = deal(outcome == Outcome::TimedOut ? QByteArray() : report.reply.answer);
    }
    // A refusal is final: the PLC would say the same again.
    for (int i = 0; outcome == Outcome::Refused && result == kAnswerResend && i < kMostAttempts;
         ++i) {
        result = deal(report.reply.answer);
    }
    report.good = result == kAnswerGood;
    report.final = result != kAnswerResend;
    if (outcome == Outcome::Refused) {
        report.refusal = refusalCode(report.reply.answer).value_or(0);
    } else if (outcome == Outcome::Answered && !report.good) {
        report.reply.outcome = Outcome::Bad;
        report.reply.defect = Defect::Other;
        report.reply.note = QLatin1String("not accepted by the driver");
    }
    m_open = !report.final;
    m_sent = m_sent || report.reply.sent;
    report.wentOut = m_sent;
    m_changes = m_driver.changes() != changesBefore;
}

} // namespace cnet
