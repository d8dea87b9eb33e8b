#include "plc/servers/capture_tap.h"

#include "plc/stations/exchange_text.h"

namespace plc {

using cnet::CaptureDirection;

CaptureTap::CaptureTap(cnet::Capture &capture, const QString &line)
    : m_line(capture, line)
{}

void CaptureTap::note(const Exchange &exchange)
{
    const QString remark = faultsText(exchange.fired);
    if (const auto bytes = static_cast<int>(joined(exchange.sent).size())) {
        m_answers.push_back({bytes, remark});
    } else if (!remark.isEmpty()) {
        m_unanswered.emplace_back(exchange.request, remark);
    }
}

QString CaptureTap::remarkOf(const QByteArray &request)
{
    for (auto it = m_unanswered.begin(); it != m_unanswered.end(); ++it) {
        if (it->first == request) {
            QString remark = it->second;
            m_unanswered.erase(it);
            return remark;
        }
    }
    return {};
}

void CaptureTap::received(const QByteArray &bytes)
{
    m_line.add(CaptureDirection::Received, bytes,
               [this](const QByteArray &frame) { return remarkOf(frame); });
    m_unanswered.clear();
}

// A fault may make anything of an answer, so its end is where its bytes end.
void CaptureTap::sent(const QByteArray &bytes)
{
    QByteArray rest = bytes;
    while (!rest.isEmpty() && !m_answers.empty()) {
        Answer &answer = m_answers.front();
        const QByteArray part = rest.left(answer.bytesLeft);
        rest.remove(0, part.size());
        m_line.add(CaptureDirection::Sent, part,
                   [&answer](const QByteArray &) { return answer.remark; });
        answer.bytesLeft -= static_cast<int>(part.size());
        if (answer.bytesLeft == 0) {
            m_line.flush(CaptureDirection::Sent, answer.remark);
            m_answers.pop_front();
        }
    }
}

} // namespace plc
