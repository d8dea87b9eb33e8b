// Measures loading and unloading the library, in a program that already uses Qt Core, like a panel.

#include <QtGlobal>

#include <benchmark/benchmark.h>

#include <dlfcn.h>

namespace {

void loadAndUnload(benchmark::State &state, const char *file)
{
    while (state.KeepRunning()) {
        void *const library = dlopen(file, RTLD_NOW);
        if (library == nullptr || dlsym(library, "intf_getSendFrame") == nullptr) {
            state.SkipWithError("the library cannot be loaded");
            break;
        }
        dlclose(library);
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (argc != 2 || qVersion() == nullptr) {
        return 2;
    }
    benchmark::RegisterBenchmark("load", loadAndUnload, argv[1])->Unit(benchmark::kMicrosecond);
    return benchmark::RunSpecifiedBenchmarks() == 0 ? 1 : 0;
}
