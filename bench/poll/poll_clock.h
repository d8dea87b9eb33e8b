#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <unistd.h>

namespace bench {

/** Registers per poll. */
constexpr int kPollWords = 60;

/** Ends the program if it takes much longer than expected. */
inline void limitTime()
{
    const unsigned int limitS = 300;
    alarm(limitS);
}

/**
 * Counts the polls of a client and prints how long they took. The first ones, which open
 * connections and warm the caches, are not counted.
 */
class PollClock
{
public:
    /** @param polls number of polls to count */
    explicit PollClock(int polls)
        : m_wanted(polls)
    {
        limitTime();
    }

    /** Call it after each poll. @return false after the last one */
    bool pollEnded()
    {
        ++m_done;
        if (m_done == kUncounted) {
            m_begin = now();
        }
        if (m_done < kUncounted + m_wanted) {
            return true;
        }
        print();
        return false;
    }

private:
    static constexpr int kUncounted = 500;

    struct Times
    {
        double wall;
        double processor; ///< of this process, including the system's work for it
    };

    static double seconds(clockid_t clock)
    {
        timespec time{};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }

    static Times now() { return {seconds(CLOCK_MONOTONIC), seconds(CLOCK_PROCESS_CPUTIME_ID)}; }

    void print() const
    {
        const Times end = now();
        std::printf("{\"polls\": %d, \"wall\": %.6f, \"processor\": %.6f}\n", m_wanted,
                    end.wall - m_begin.wall, end.processor - m_begin.processor);
    }

    int m_wanted;
    int m_done = 0;
    Times m_begin{};
};

/** The arguments of every client: a port of this machine, and how many times to poll. */
struct PollArguments
{
    int port = 0;
    int polls = 0;
};

/** Reads the arguments, and ends the program if they are wrong. */
inline PollArguments pollArguments(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s PORT POLLS\n", argv[0]);
        std::exit(2);
    }
    const auto number = [](const char *text) {
        return static_cast<int>(std::strtol(text, nullptr, 10));
    };
    return {number(argv[1]), number(argv[2])};
}

} // namespace bench
