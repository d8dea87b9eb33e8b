#pragma once

#include "gateway/change/change.h"

#include <QByteArray>

namespace cnet::gateway {

/**
 * Changes as the lines that COPY reads: time, tag, state, number, text and truth. A number has all
 * of its digits, so that no integer and no fraction is rounded.
 */
class CopyText
{
public:
    /** @param tag,state numbers that the database gave them */
    void add(const Change &change, qint64 tag, qint64 state);

    /** The lines, and begins anew. */
    QByteArray finish();

private:
    void addTime(qint64 ms);
    void addNumber(qint64 number);
    void addValue(const Scalar &value);

    QByteArray m_lines;
    qint64 m_second = -1; ///< that m_secondText has: most changes share theirs
    QByteArray m_secondText;
};

/** A text as a field of COPY; one without its zero characters, which no database takes. */
QByteArray copyField(const QString &text);

} // namespace cnet::gateway
