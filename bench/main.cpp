// Times the driver, and Qt SerialBus's codec beside it, in one program and so in one run. The names
// of the cases and what of them goes into which figure: report.py.

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
