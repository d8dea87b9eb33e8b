#pragma once

#include <map>
#include <stdexcept>
#include <string>

namespace exchange::soak {

/** Ends the run where a promise was not kept. @param what gives the text, and is only asked then */
template <typename Text>
void require(bool kept, const Text &what)
{
    if (!kept) {
        throw std::runtime_error(what());
    }
}

inline void require(bool kept, const char *what)
{
    if (!kept) {
        throw std::runtime_error(what);
    }
}

/** How often each thing happened that ever did. */
class Tally
{
public:
    void count(const std::string &what, long long times = 1);
    /**
     * A rule of the driver by which a write, a reading or a shown value does not become what the
     * panel asked for. It is counted where it applies and excuses nothing else.
     */
    void excuse(const std::string &rule, long long times = 1) { count("rule: " + rule, times); }
    void countFrame() { ++m_frames; }

    long long frames() const { return m_frames; }

    /** Every count with its name, one a line. */
    std::string report() const;

private:
    std::map<std::string, long long> m_counts;
    long long m_frames = 0;
};

} // namespace exchange::soak
