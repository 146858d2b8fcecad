// The benchmarks' entry point: every bench/*.cpp registers into this one binary.
#include <benchmark/benchmark.h>

BENCHMARK_MAIN();
