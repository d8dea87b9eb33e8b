#pragma once

#include "view/frames/trace/frame_row.h"

#include "host/decode/decoded_frame.h"

#include <deque>

namespace cnet::view {

/**
 * Rows in the order of the line. Each has a number, one more than the row before it, that it keeps
 * while older ones go.
 */
class FrameLog
{
public:
    /** @param first number of the first row that will come */
    explicit FrameLog(qint64 first = 0)
        : m_first(first)
    {}

    qint64 first() const { return m_first; }
    /** The number behind the last row. */
    qint64 end() const { return m_first + size(); }
    int size() const { return static_cast<int>(m_rows.size()); }
    bool isEmpty() const { return m_rows.empty(); }

    /** @param index 0 to size() - 1 */
    const FrameRow &at(int index) const { return m_rows.at(static_cast<std::size_t>(index)); }

    /** null: it is not there, or not any more */
    const FrameRow *find(qint64 number) const;
    FrameRow *find(qint64 number);

    /** @return its number */
    qint64 append(FrameRow row);
    /** @param rows whose first number is end() */
    void append(FrameLog rows);

    /** Requests with what came for them; what belongs to no request counts as one. */
    int exchanges() const { return m_exchanges; }

    /** How many rows the oldest exchanges have. @param exchanges 0 or more */
    int rowsOfOldest(int exchanges) const;
    /** @param rows as rowsOfOldest() says */
    void removeOldest(int rows);

    /** The request of a row that is not one itself; else what came for it. null: neither is there
     */
    const FrameRow *partner(const FrameRow &row, qint64 number) const;

    /** Explains a row, an answer by its request. @param number of a row that is there */
    DecodedFrame decode(qint64 number, Detail detail) const;

private:
    bool beginsExchange(qint64 number) const;

    std::deque<FrameRow> m_rows;
    qint64 m_first;
    int m_exchanges = 0;
};

} // namespace cnet::view
