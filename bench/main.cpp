// Measures the driver and, for comparison, Qt SerialBus's codec, in one program and so in one run.
// figures.py says which cases make up which figure.

#include "cases.h"

int main(int argc, char **argv)
{
    bench::addDriverCases();
    bench::addCodecCases();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    return benchmark::RunSpecifiedBenchmarks() == 0 ? 1 : 0;
}
