#include "view/frames/trace/frame_log.h"

#include "host/decode/frame_decoder.h"

#include <algorithm>
#include <utility>

namespace cnet::view {

namespace {

// No frame is nearly as long; a file may have packets of any size, which are explained as far.
constexpr int kLongestExplained = 4096;

} // namespace

const FrameRow *FrameLog::find(qint64 number) const
{
    return number < m_first || number >= end() ? nullptr : &at(static_cast<int>(number - m_first));
}

FrameRow *FrameLog::find(qint64 number)
{
    return const_cast<FrameRow *>(std::as_const(*this).find(number));
}

qint64 FrameLog::append(FrameRow row)
{
    const qint64 number = end();
    m_rows.push_back(std::move(row));
    m_exchanges += beginsExchange(number) ? 1 : 0;
    return number;
}

void FrameLog::append(FrameLog rows)
{
    m_exchanges += rows.m_exchanges;
    std::move(rows.m_rows.begin(), rows.m_rows.end(), std::back_inserter(m_rows));
}

bool FrameLog::beginsExchange(qint64 number) const
{
    const FrameRow *const row = find(number);
    return row != nullptr && (row->request < 0 || row->request == number);
}

int FrameLog::rowsOfOldest(int exchanges) const
{
    int begun = 0;
    for (int i = 0; i < size(); ++i) {
        begun += beginsExchange(m_first + i) ? 1 : 0;
        if (begun > exchanges) {
            return i;
        }
    }
    return size();
}

void FrameLog::removeOldest(int rows)
{
    const int count = std::clamp(rows, 0, size());
    for (int i = 0; i < count; ++i) {
        m_exchanges -= beginsExchange(m_first + i) ? 1 : 0;
    }
    m_rows.erase(m_rows.begin(), m_rows.begin() + count);
    m_first += count;
}

const FrameRow *FrameLog::partner(const FrameRow &row, qint64 number) const
{
    return find(row.request == number ? row.answer : row.request);
}

DecodedFrame FrameLog::decode(qint64 number, Detail detail) const
{
    const FrameRow *const row = find(number);
    if (row == nullptr) {
        return {};
    }
    const QByteArray bytes = row->bytes.left(kLongestExplained);
    const FrameRow *const request = row->request == number ? nullptr : find(row->request);
    if (request == nullptr) {
        return decodeFrame(bytes, nullptr, detail);
    }
    const DecodedFrame asked =
        decodeFrame(request->bytes.left(kLongestExplained), nullptr, Detail::Summary);
    return decodeFrame(bytes, asked.isGood() ? &asked : nullptr, detail);
}

} // namespace cnet::view
