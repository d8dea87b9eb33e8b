#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include "shared/block_memory.h"
#include "shared/merge_key.h"

/// The short way of a cyclic block that was polled before: its request is the same, and an answer
/// of the same characters, while nothing else has changed its units, changes nothing. Whatever is
/// not known takes the long way, with the same outcome. Exchange thread.

/// Makes room for the memories of these cyclic reads, none of which was sent yet.
void expectBlocks(const QVector<MergeKey> &blocks);

/// Forgets them all.
void forgetBlocks();

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

/// Keeps the good answer to the block in flight once its values are stored, which is when this
/// ends. It lives while they are being stored: the host is called meanwhile, and when it takes
/// that for an occasion to change the blocks or to answer them, nothing is kept.
class KeptAnswer
{
public:
    /// @param answer  must outlive this
    explicit KeptAnswer(const QByteArray &answer);
    ~KeptAnswer();

    /// @return  the characters of the last answer, as many as this one has, when the data area
    ///          still holds what they say; else null
    const char *lastCharacters() const { return m_lastCharacters; }

    /// The index in the data area of the block's first unit: where it was, and where it is now.
    int firstRecord() const { return m_firstRecord; }
    void setFirstRecord(int index) { m_firstRecord = index; }

    /// @return  true when only this block's answers bring values for its units cyclically
    bool standsAlone() const { return m_standsAlone; }

private:
    const QByteArray &m_answer;
    const int m_block;
    const quint64 m_serial;
    const quint64 m_stamp;
    bool m_standsAlone = false;
    int m_firstRecord = -1;
    const char *m_lastCharacters = nullptr;
    QByteArray m_lastAnswers; ///< they stay alive when the blocks are replaced meanwhile

    Q_DISABLE_COPY(KeptAnswer)
};
