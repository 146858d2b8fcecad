// The time from the start of the program to its first frame on the sample campaign, as a user meets
// it: each time a new process, from its launch to the moment that the first frame has been drawn.
#include "start_bench.h"

#include <GL/gl.h>
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>

#include "shell/hexfold.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"

extern char** environ;

namespace {
class Empty : public Window {
  public:
    Empty() : Window(nullptr, 0, 0, 100, 100, "") {}
    void draw(float) override {}
};
} // namespace

int runToFirstFrame(bool empty) {
    auto start = std::chrono::steady_clock::now();
    if (chdir(HEXFOLD_CAMPAIGN_DIR) != 0) return 1;
    std::unique_ptr<Window> root;
    if (empty) {
        setupGraphics();
        root = std::make_unique<Empty>();
    } else {
        root = std::make_unique<Hexfold>();
    }
    if (!graphicsOpened()) return 1;
    frameStep(root.get());
    glFinish();
    std::string ms =
        std::to_string(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count()) +
        "\n";
    return write(STDOUT_FILENO, ms.data(), ms.size()) == ssize_t(ms.size()) ? 0 : 1;
}

namespace {
// From the launch, with the loading of the libraries and the window system's set-up, to the first
// frame; the counter in_main_ms leaves the loading out. With an empty window: the part of that time
// that is not the application's.
void startToFirstFrame(benchmark::State& state, bool empty) {
    double inMain = 0;
    for (auto _ : state) {
        int out[2];
        if (pipe(out) != 0) {
            state.SkipWithError("no pipe");
            return;
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, out[0]);
        std::string program = "hexfold_bench", argument = empty ? emptyFrameArgument : firstFrameArgument;
        char* argv[] = {program.data(), argument.data(), nullptr};
        pid_t child = 0;
        auto start = std::chrono::steady_clock::now();
        int spawned = posix_spawn(&child, "/proc/self/exe", &actions, nullptr, argv, environ);
        close(out[1]);
        char text[64] = {};
        bool done = spawned == 0 && read(out[0], text, sizeof text - 1) > 0;
        auto end = std::chrono::steady_clock::now();
        inMain += std::atof(text);
        close(out[0]);
        posix_spawn_file_actions_destroy(&actions);
        if (spawned == 0) waitpid(child, nullptr, 0);
        if (!done) {
            state.SkipWithError("the program drew no frame: run under xvfb-run");
            return;
        }
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
    }
    state.counters["in_main_ms"] = inMain / static_cast<double>(state.iterations());
}

void BM_StartToFirstFrame(benchmark::State& state) {
    startToFirstFrame(state, false);
}
void BM_StartToEmptyWindow(benchmark::State& state) {
    startToFirstFrame(state, true);
}
} // namespace

BENCHMARK(BM_StartToFirstFrame)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartToEmptyWindow)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);
