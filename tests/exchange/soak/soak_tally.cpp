#include "exchange/soak/soak_tally.h"

#include <iomanip>
#include <sstream>

namespace exchange::soak {

void Tally::count(const std::string &what, long long times)
{
    if (times > 0) {
        m_counts[what] += times;
    }
}

std::string Tally::report() const
{
    std::ostringstream text;
    for (const auto &[what, times] : m_counts) {
        text << "  " << std::left << std::setw(64) << what << std::right << std::setw(12) << times
             << '\n';
    }
    return text.str();
}

} // namespace exchange::soak
