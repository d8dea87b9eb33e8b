#pragma once

#include "host/capture/capture_line.h"
#include "plc/stations/line.h"

#include <deque>
#include <utility>
#include <vector>

namespace plc {

/**
 * Has what goes over one connection written to a capture, and with it the faults that fired: with
 * whatever is sent in answer, or with the request where nothing is.
 */
class CaptureTap
{
public:
    /** @param capture must outlive the tap. @param line names the connection */
    CaptureTap(cnet::Capture &capture, const QString &line);

    /** Call it for each exchange, before received() for the bytes that it is made of. */
    void note(const Exchange &exchange);

    /** These bytes came in, and what they ask for was noted. */
    void received(const QByteArray &bytes);

    /** These bytes go out. */
    void sent(const QByteArray &bytes);

    /** What was noted and not sent will never be. */
    void forgetAnswers() { m_answers.clear(); }

private:
    /** What is sent for one request. */
    struct Answer
    {
        int bytesLeft;
        QString remark;
    };

    QString remarkOf(const QByteArray &request);

    cnet::CaptureLine m_line;
    std::vector<std::pair<QByteArray, QString>> m_unanswered; ///< requests with their remarks
    std::deque<Answer> m_answers;
};

} // namespace plc
