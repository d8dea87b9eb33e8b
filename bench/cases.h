#pragma once

#include <QString>

#include <benchmark/benchmark.h>

namespace bench {

/** Registers a case with the name that script/bench expects. */
template <typename Run>
benchmark::internal::Benchmark *addCase(const QString &name, Run run)
{
    return benchmark::RegisterBenchmark(name.toLatin1().constData(), run);
}

/** Adds the cases for the driver, called as by its hosts. */
void addDriverCases();

/** Adds the cases for Qt SerialBus. */
void addCodecCases();

} // namespace bench
