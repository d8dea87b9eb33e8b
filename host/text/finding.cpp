#include "host/text/finding.h"

#include <algorithm>
#include <utility>

namespace cnet {

QString Finding::placed() const
{
    const QString place = QString::fromLatin1("%1:%2: ").arg(line).arg(column);
    return place + (field.isEmpty() ? QString() : field + QLatin1String(": ")) + text;
}

void Findings::add(const Finding &finding)
{
    ++m_count;
    if (m_first.size() < m_limit) {
        m_first.append(finding);
    }
}

void Findings::add(const Findings &others)
{
    m_count += others.m_count;
    m_first += others.m_first;
}

void Findings::sort()
{
    std::stable_sort(m_first.begin(), m_first.end(), [](const Finding &left, const Finding &right) {
        return std::make_pair(left.line, left.column) < std::make_pair(right.line, right.column);
    });
    if (m_first.size() > m_limit) {
        m_first.resize(m_limit);
    }
}

} // namespace cnet
