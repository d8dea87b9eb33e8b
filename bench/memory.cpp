// Prints how much heap a monitored unit takes in addition to its record.

#include "cyclic_exchange.h"

#include <shared/data_record.h>

#include <malloc.h>

#include <cstdio>

namespace {

const int kUnits = 99960;

size_t heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace

int main()
{
    const bench::Host host;
    const size_t before = heapBytes();
    bench::monitor({kUnits, 1});
    const double bytes = static_cast<double>(heapBytes() - before) / kUnits;
    std::printf("{\"units\": %d, \"record\": %zu, \"beside\": %.1f}\n", kUnits, sizeof(_DATA_),
                bytes - static_cast<double>(sizeof(_DATA_)));
    return 0;
}
