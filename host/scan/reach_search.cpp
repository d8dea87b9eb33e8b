#include "host/scan/reach_search.h"

namespace cnet {

ReachSearch::ReachSearch(int lowest, int highest)
    : m_lowest(lowest)
    , m_limit(highest)
    , m_exists(lowest - 1)
    , m_absent(highest + 1)
{}

std::optional<int> ReachSearch::next() const
{
    if (m_absent - m_exists <= 1) {
        return std::nullopt;
    }
    if (!m_started) {
        return m_lowest;
    }
    return m_askedLimit ? m_exists + (m_absent - m_exists) / 2 : m_limit;
}

void ReachSearch::note(bool exists)
{
    const auto address = next();
    if (!address) {
        return;
    }
    m_askedLimit = m_askedLimit || *address == m_limit;
    m_started = true;
    if (exists) {
        m_exists = *address;
    } else {
        m_absent = *address;
    }
}

std::optional<int> ReachSearch::highest() const
{
    return m_exists < m_lowest ? std::nullopt : std::optional<int>(m_exists);
}

int ReachSearch::mostQuestions(int lowest, int highest)
{
    int questions = highest > lowest ? 2 : 1;
    for (int left = highest - lowest; left > 1; left -= left / 2) {
        ++questions;
    }
    return questions;
}

} // namespace cnet
