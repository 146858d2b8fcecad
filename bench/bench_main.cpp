// The benchmarks' entry point: every bench/*.cpp registers into this one binary. After the table of
// runs comes the ratio of the map's immediate drawing to its kept geometry, case by case. Started
// with the first-frame argument, the program is instead the process whose start is measured.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include <unistd.h>

#include "start_bench.h"

namespace {
// Prints what the console reporter prints and keeps the map's frame times for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    // In colour only on a terminal.
    RatioReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_Defaults : OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& r : runs) {
            std::string name = r.run_name.function_name;
            if (r.run_type != Run::RT_Iteration || r.error_occurred || name.rfind("map/", 0) != 0) continue;
            std::size_t slash = name.rfind('/');
            std::string kind = name.substr(slash + 1);
            Frame& f = frames[name.substr(4, slash - 4)][kind == "kept" ? 1 : kind == "ground_quad" ? 2 : 0];
            f.wall = r.GetAdjustedRealTime();
            f.cpu = r.GetAdjustedCPUTime();
            auto cache = r.counters.find("cache_MB");
            f.cacheMb = cache == r.counters.end() ? 0 : cache->second.value;
            auto worst = r.counters.find("worst_ms");
            f.worst = worst == r.counters.end() ? 0 : worst->second.value;
            auto all = r.counters.find("all_threads_ms");
            f.allThreads = all == r.counters.end() ? 0 : all->second.value;
            auto over = r.counters.find("stops_over_4ms");
            f.stopsOver = over == r.counters.end() ? -1 : over->second.value;
        }
    }

    void printRatios() const {
        if (frames.empty()) return;
        // The CPU of all threads is the fairer ratio where the machine is shared: there the wall
        // time is mostly the renderer's threads waiting for a core.
        // The ground quad, where measured, is the floor: the map's pixels textured once.
        std::printf("\n%-24s %12s %12s %9s %12s %12s %9s %12s %12s %10s %12s\n", "map frame (ms)",
                    "immediate", "kept", "ratio", "imm. all", "kept all", "ratio", "kept CPU", "kept worst",
                    "cache MB", "ground quad");
        for (const auto& [name, kinds] : frames) {
            const Frame &old = kinds[0], &now = kinds[1], &floor = kinds[2];
            double ratio = now.wall > 0 ? old.wall / now.wall : 0;
            double allRatio = now.allThreads > 0 ? old.allThreads / now.allThreads : 0;
            char ground[32] = "-";
            if (floor.wall > 0) std::snprintf(ground, sizeof ground, "%.2f", floor.wall);
            std::printf("%-24s %12.2f %12.2f %8.1fx %12.2f %12.2f %8.1fx %12.2f %12.2f %10.2f %12s\n",
                        name.c_str(), old.wall, now.wall, ratio, old.allThreads, now.allThreads, allRatio,
                        now.cpu, now.worst, now.cacheMb, ground);
        }
        // The tour's cameras at which even the fastest of their frames took longer than 4 ms.
        std::printf("\n%-24s %12s %12s %12s\n", "stops over 4 ms", "immediate", "kept", "ground quad");
        for (const auto& [name, kinds] : frames) {
            if (kinds[1].stopsOver < 0) continue;
            std::printf("%-24s", name.c_str());
            for (const Frame& f : kinds) {
                char stops[32] = "-";
                if (f.stopsOver >= 0) std::snprintf(stops, sizeof stops, "%.0f", f.stopsOver);
                std::printf(" %12s", stops);
            }
            std::printf("\n");
        }
    }

  private:
    struct Frame {
        double wall = 0, cpu = 0, worst = 0, cacheMb = 0, allThreads = 0;
        double stopsOver = -1; // on a tour: the stops slower than the goal, at their fastest
    };
    std::map<std::string, Frame[3]> frames; // immediate, kept, ground quad
};
} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], firstFrameArgument) == 0) return runToFirstFrame(false);
    if (argc > 1 && std::strcmp(argv[1], emptyFrameArgument) == 0) return runToFirstFrame(true);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
