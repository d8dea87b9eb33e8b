#pragma once

#include <QString>

#include <benchmark/benchmark.h>

namespace bench {

/** Registers a case under a name that script/bench looks for. */
template <typename Run>
benchmark::internal::Benchmark *addCase(const QString &name, Run run)
{
    return benchmark::RegisterBenchmark(name.toLatin1().constData(), run);
}

/** The driver, as its hosts call it. */
void addDriverCases();

/** Qt SerialBus beside it. */
void addCodecCases();

} // namespace bench
