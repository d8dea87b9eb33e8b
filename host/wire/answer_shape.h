#pragma once

#include <QByteArray>

namespace cnet {

/**
 * What an answer shows of the question it belongs to: station, command and its own length. The wire
 * has no transaction number, so two questions of one shape cannot be told apart by their answers.
 */
struct AnswerShape
{
    quint64 addressee = 0; ///< station (2), command (1) and type (2), as they stand in both frames
    int length = 0;        ///< bytes of a positive answer

    /** Of the answer to a request. @param answerLength bytes of a positive one */
    static AnswerShape toRequest(const QByteArray &request, int answerLength);

    /** True when the answer may belong to a question of this shape; a refusal may have any length.
     */
    bool admits(const QByteArray &answer) const;

    bool operator==(const AnswerShape &other) const
    {
        return length == other.length && addressee == other.addressee;
    }
};

/** Station of a frame of either direction; -1 where it names none. */
int stationOf(const QByteArray &frame);

} // namespace cnet
