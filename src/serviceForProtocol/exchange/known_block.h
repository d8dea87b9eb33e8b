#pragma once

#include <QtCore/QByteArray>

#include "shared/protocol.h"

/// The short way of a cyclic block that was polled before: its request is the same, and an answer
/// of the same characters, while nothing else has changed its units, changes nothing. Whatever is
/// not known takes the long way, with the same outcome. Exchange thread.

/// Puts the cyclic read that is due into `driver.frames`, as it was sent before.
/// @return  false when it was not, and nothing is done
bool repeatRequest();

/// Keeps the request that was just built for the cyclic read that is due.
void keepRequest();

/// @return  true when `answer` is the last good answer to the block in flight once more, and the
///          data area still holds what that one said: it is good, and changes nothing
bool isLastAnswer(const QByteArray &answer);

/// Gives the description of the request in flight with this answer, as `getErrorInfo` does.
void describeRequest(const QByteArray &answer, QString &text);

/// Keeps the good answer to the block in flight. It lives while the values are being stored: the
/// host is called meanwhile, and when it takes that for an occasion to change the blocks or to hand
/// over another answer, nothing is known any more and nothing is kept. Neither is an answer that
/// was not stored to its end.
class KeptAnswer
{
public:
    /// @param answer  must outlive this
    explicit KeptAnswer(const QByteArray &answer);

    /// @return  false for good once the host has done that; the next two then count no more
    bool isUndisturbed() const { return driver.answerSerial == m_serial; }

    /// @return  the characters of the last answer, as many as this one has, when the data area
    ///          still holds what they say; else null
    const char *lastCharacters() const { return m_lastCharacters; }

    /// @return  true when only this block's answers bring values for its units cyclically
    bool standsAlone() const { return m_standsAlone; }

    /// @return  the index in the data area that the block's first unit had
    int firstRecord() const { return m_firstRecord; }

    /// All values are stored.
    /// @param firstRecord  the index in the data area of the block's first unit
    void keep(int firstRecord);

private:
    const QByteArray &m_answer;
    const int m_block;
    const unsigned m_serial;
    bool m_standsAlone = false;
    int m_firstRecord = -1;
    const char *m_lastCharacters = nullptr;
    QByteArray m_lastAnswers; ///< they stay alive when the blocks are replaced meanwhile

    Q_DISABLE_COPY(KeptAnswer)
};
