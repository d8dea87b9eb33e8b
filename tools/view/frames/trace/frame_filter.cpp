#include "view/frames/trace/frame_filter.h"

#include "view/frames/trace/frame_words.h"

#include "host/text/byte_text.h"

namespace cnet::view {

namespace {

// A text that is shorter is a number or a word rather than bytes.
constexpr int kLeastHex = 2;

} // namespace

void FrameFilter::setFrames(FrameModel *model)
{
    m_frames = model;
    setSourceModel(model);
}

void FrameFilter::setQuery(const FrameQuery &query)
{
    if (query == m_query) {
        return;
    }
    m_query = query;
    const QByteArray characters = query.text.toLatin1();
    m_characters = QString::fromLatin1(characters) == query.text ? characters : QByteArray();
    const ByteText hex = readHexText(query.text);
    m_hex = hex.isFine() && hex.bytes.size() >= kLeastHex ? hex.bytes : QByteArray();
    invalidateFilter();
}

bool FrameFilter::filterAcceptsRow(int sourceRow, const QModelIndex & /*sourceParent*/) const
{
    if (m_query.isAll() || m_frames == nullptr) {
        return true;
    }
    const FrameLog &log = m_frames->log();
    const FrameRow &row = log.at(sourceRow);
    if ((m_query.station && row.station != *m_query.station) ||
        (m_query.kind && row.kind != *m_query.kind)) {
        return false;
    }
    const qint64 number = m_frames->numberAt(sourceRow);
    const FrameRow *const partner = log.partner(row, number);
    const FrameFaults faults = row.faults | (partner != nullptr ? partner->faults : FrameFaults());
    if (m_query.faultsOnly && faults == FrameFaults()) {
        return false;
    }
    return m_query.text.isEmpty() || hasText(row, number) ||
           (partner != nullptr &&
            hasText(*partner, row.request == number ? row.answer : row.request));
}

// The cheap ways first.
bool FrameFilter::hasText(const FrameRow &row, qint64 number) const
{
    return (!m_characters.isEmpty() && row.bytes.contains(m_characters)) ||
           (!m_hex.isEmpty() && row.bytes.contains(m_hex)) ||
           resultWords(row).contains(m_query.text, Qt::CaseInsensitive) ||
           row.note.contains(m_query.text, Qt::CaseInsensitive) ||
           m_frames->meaning(number).contains(m_query.text, Qt::CaseInsensitive);
}

} // namespace cnet::view
