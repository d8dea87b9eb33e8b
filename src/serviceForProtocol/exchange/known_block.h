#pragma once

#include <QtCore/QByteArray>

#include "shared/protocol.h"

/// The shortcut for a cyclic block that was polled before: its request is the same, and an answer
/// with the same characters changes nothing unless something else has changed its units. Everything
/// else goes the normal way, with the same result. Exchange thread.

/// Appends the next cyclic read to `driver.frames` if it was sent before.
/// @return  false if it was not; then nothing is done
bool repeatRequest();

/// Remembers the request that was just built for the next cyclic read.
void keepRequest();

/// @return  true if `answer` is identical to the last good answer to the block in flight, and the
///          data area still has its values: then it is good, and changes nothing
bool isLastAnswer(const QByteArray &answer);

/// Makes the same description of the request in flight as `getErrorInfo`, but only once per block.
void describeRequest(const QByteArray &answer, QString &text);

/// Remembers the good answer to the block in flight, if all its values are stored undisturbed. It
/// lives while they are being stored. The host is called meanwhile; if it changes the blocks or
/// passes in another answer, or if storing does not finish, nothing is remembered.
class KeptAnswer
{
public:
    /// @param answer  must outlive this
    explicit KeptAnswer(const QByteArray &answer);

    /// @return  false once the host has done so; then the next two results are no longer valid
    bool isUndisturbed() const { return driver.answerSerial == m_serial; }

    /// @return  the characters of the last answer, as many as this one has, if the data area still
    ///          has its values; else null
    const char *lastCharacters() const { return m_lastCharacters; }

    /// @return  true if no other cyclic block overlaps this one
    bool standsAlone() const { return m_standsAlone; }

    /// @return  the last known index in the data area of the block's first unit
    int firstRecord() const { return m_firstRecord; }

    /// To be called when all values are stored.
    /// @param firstRecord  the index in the data area of the block's first unit
    void keep(int firstRecord);

private:
    const QByteArray &m_answer;
    const int m_block;
    const unsigned m_serial;
    bool m_standsAlone = false;
    int m_firstRecord = -1;
    const char *m_lastCharacters = nullptr;
    QByteArray m_lastAnswers; ///< keeps the characters alive if the blocks are replaced meanwhile

    Q_DISABLE_COPY(KeptAnswer)
};
