// Runs some of the cases a fixed number of times, to count their instructions.
//
//   bench_instructions              all cases; callgrind writes its counts after each
//   bench_instructions CASE TIMES   one case; the difference between two runs with different TIMES
//                                   is the cost of the additional steps

#include "cyclic_exchange.h"
#include "merge.h"
#include "panel_write.h"
#include "scattered_reads.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_TOGGLE_COLLECT
#define CALLGRIND_DUMP_STATS_AT(name)
#endif

namespace {

using namespace bench;

template <typename Case>
void runSteps(const char *name, int times, Case &prepared)
{
    prepared.step();
    CALLGRIND_TOGGLE_COLLECT;
    for (int i = 0; i < times; ++i) {
        prepared.step();
    }
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name);
}

void runExchange(const char *name, int times, View view, quint16 flip)
{
    CyclicExchange exchange({Host::kBlockWords, 1, view}, flip);
    runSteps(name, times, exchange);
}

void exchangeUnchanged(const char *name, int times)
{
    runExchange(name, times, View::Words, 0);
}

void exchangeWords(const char *name, int times)
{
    runExchange(name, times, View::Words, 0xFFFF);
}

void exchangeBits(const char *name, int times)
{
    runExchange(name, times, View::Bits, 0xFFFF);
}

void exchangeOneBit(const char *name, int times)
{
    runExchange(name, times, View::Bits, 0x0100);
}

void mergeScattered(const char *name, int times)
{
    Merge merge(Spread::Scattered, 1000);
    runSteps(name, times, merge);
}

void getScattered(const char *name, int times)
{
    ScatteredReads reads({1020, 1});
    runSteps(name, times, reads);
}

void setWord(const char *name, int times)
{
    PanelWrite write(Written::Word);
    runSteps(name, times, write);
}

// Multiples of ten: the driver reads the screen after ten writes.
const struct
{
    const char *name;
    void (*run)(const char *name, int times);
    int times;
} kCases[] = {
    {"exchange-60-unchanged", exchangeUnchanged, 100},
    {"exchange-60-words", exchangeWords, 100},
    {"exchange-60-bits", exchangeBits, 20},
    {"exchange-60-one-bit", exchangeOneBit, 100},
    {"merge-1000-scattered", mergeScattered, 10},
    {"get-data-100-scattered", getScattered, 20},
    {"set-data-word", setWord, 100},
};

} // namespace

int main(int argc, char **argv)
{
    if (argc == 1) {
        for (const auto &each : kCases) {
            each.run(each.name, each.times);
            std::printf("%s %d\n", each.name, each.times);
        }
        return EXIT_SUCCESS;
    }
    for (const auto &each : kCases) {
        if (argc == 3 && std::strcmp(argv[1], each.name) == 0) {
            each.run(each.name, static_cast<int>(std::strtol(argv[2], nullptr, 10)));
            return EXIT_SUCCESS;
        }
    }
    std::fprintf(stderr, "usage: bench_instructions [CASE TIMES]\n");
    return 2;
}
