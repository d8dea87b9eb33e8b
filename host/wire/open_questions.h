#pragma once

#include "host/wire/answer_shape.h"

#include <QVector>

#include <algorithm>
#include <array>
#include <optional>

namespace cnet {

/** A request that went out and was not answered yet. */
struct OpenQuestion
{
    QByteArray request;
    AnswerShape shape;
    qint64 askedMs = 0; ///< when it was sent
};

/**
 * The requests that may still be answered: those whose time-out has passed, or that were sent
 * again.
 *
 * An answer names its station and command but not what was asked, so one that comes late looks like
 * the answer to the next question of its shape. Nothing may be asked whose answer could be mistaken
 * for one of these; see Conversation.
 */
class OpenQuestions
{
public:
    /** A request was sent. @param nowMs milliseconds from any zero, never falling */
    void asked(int station, const QByteArray &request, const AnswerShape &shape, qint64 nowMs);

    /** True when a late answer could pass for the answer to this request. */
    bool confusable(int station, const QByteArray &request, const AnswerShape &shape) const;

    /**
     * An answer came, which settles the oldest question that it fits, since a station answers in
     * turn.
     * @return that question; nothing where it fits none
     */
    std::optional<OpenQuestion> settle(int station, const QByteArray &answer);

    /**
     * An answer came that may be a copy of the last one. So the question's own may still be on its
     * way, and nobody knows from here on which answer is whose: the question stays open until
     * clear().
     */
    void keep(int station, const QByteArray &request, const AnswerShape &shape);

    /** The station has answered everything that it ever will. */
    void clear(int station)
    {
        of(station).clear();
        m_kept.at(static_cast<quint8>(station)).clear();
    }

    bool isEmpty(int station) const { return of(station).isEmpty(); }

    /**
     * A form of fence whose answer fits no open question, not `next`, and is no copy of the last
     * answer; see fenceFrame().
     */
    int freeFence(int station, const AnswerShape &next, const QByteArray &lastAnswer) const;

private:
    using Questions = QVector<OpenQuestion>;

    // A station has two hexadecimal characters on the wire.
    Questions &of(int station) { return m_open.at(static_cast<quint8>(station)); }
    const Questions &of(int station) const { return m_open.at(static_cast<quint8>(station)); }

    template <typename Test>
    bool any(int station, Test test) const
    {
        const Questions &open = of(station);
        const Questions &kept = m_kept.at(static_cast<quint8>(station));
        return std::any_of(open.cbegin(), open.cend(), test) ||
               std::any_of(kept.cbegin(), kept.cend(), test);
    }

    std::array<Questions, 256> m_open; ///< by station, oldest first
    std::array<Questions, 256> m_kept; ///< likewise
};

} // namespace cnet
