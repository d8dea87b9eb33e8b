#pragma once

#include "host/wire/answer_shape.h"

#include <QByteArray>
#include <QHash>

#include <array>

namespace cnet {

/** What the stations answered last, for telling an answer from a copy of the one before it. */
class AnswerMemory
{
public:
    /** A station answered, in time or late. */
    void remember(int station, const QByteArray &answer, const QByteArray &request);

    /** The station's last answer; empty: there was none. */
    const QByteArray &last(int station) const { return m_last.at(index(station)).answer; }

    /** True when this is, byte for byte, the station's last answer. */
    bool repeats(int station, const QByteArray &answer) const { return last(station) == answer; }

    /** True when the station's last answer was to this request. */
    bool isLastRequest(int station, const QByteArray &request) const
    {
        return m_last.at(index(station)).request == request;
    }

    /**
     * True when the answer to a request is to be expected to be the last one once more: it was so
     * before, or the request writes, whose acknowledgements are all alike.
     * @param shape of the answer to the request
     */
    bool wouldRepeat(int station, const QByteArray &request, const AnswerShape &shape) const;

private:
    struct Answered
    {
        QByteArray request;
        QByteArray answer;
    };

    static size_t index(int station) { return static_cast<quint8>(station); }

    std::array<Answered, 256> m_last;        ///< by station
    QHash<QByteArray, QByteArray> m_answers; ///< to each earlier request
};

} // namespace cnet
