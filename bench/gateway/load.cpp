#include "load.h"

namespace cnet::gateway {

namespace {

constexpr int kTagsOfALine = 500;
constexpr qint64 kStartMs = 1793491200000;

} // namespace

Load::Load(int tags)
{
    for (int tag = 0; tag < tags; ++tag) {
        auto source = std::make_shared<ChangeSource>();
        source->line = QString::fromLatin1("line%1").arg(tag / kTagsOfALine);
        source->tag = QString::fromLatin1("machine.zone%1.value").arg(tag % kTagsOfALine);
        source->unit = QString::fromLatin1("bar");
        source->type.kind = tag % 5 == 0 ? ValueKind::F32 : ValueKind::U16;
        m_sources.append(source);
    }
    m_change.quality = Quality::Good;
}

const Change &Load::next()
{
    const int tag = static_cast<int>(m_count % m_sources.size());
    m_change.source = m_sources.at(tag);
    m_change.atMs = kStartMs + m_count / 10;
    if (tag % 5 == 0) {
        m_change.value = static_cast<double>(m_count % 1000) / 8;
    } else {
        m_change.value = m_count % 65536;
    }
    ++m_count;
    return m_change;
}

} // namespace cnet::gateway
