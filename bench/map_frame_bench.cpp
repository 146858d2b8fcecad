// One frame of the map on a 128 x 128 grid, drawn through the real frame loop in a window of the
// scripted backend (run it under Xvfb). The CPU time is the main thread's: the immediate-mode
// calls; a software renderer's own threads are not counted in it.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include "map/hex_map.h"
#include "platform/glfw2.h"
#include "toolkit/frame_step.h"
#include "toolkit/graphics.h"

namespace {
class Root : public Window {
  public:
    Root() : Window(nullptr, 0, 0, 100, 100, "") {}
    void draw(float) override {}
};

bool openWindow() {
    static bool opened = [] {
        if (chdir(HEXFOLD_CAMPAIGN_DIR) != 0) return false;
        platform::selectBackend(platform::Backend::Scripted);
        setupGraphics();
        if (!graphicsOpened()) return false;
        startImageLibrary();
        return true;
    }();
    return opened;
}

void frames(benchmark::State& state, bool wholeMapInView, bool layers) {
    if (!openWindow()) {
        state.SkipWithError("no window: run under xvfb-run");
        return;
    }
    Root root;
    HexMap* map = new HexMap(&root, 128, 128);
    map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    map->texture = loadTexture("back.dds");
    for (std::size_t i = 0; i < map->cells.size(); ++i) {
        Cell* c = map->cells[i];
        c->setHeight(float(i % 5) * 0.3f);
        c->difficulty = static_cast<int>(i % 31);
        c->light.dice = static_cast<int>(i % 3);
        c->walls[i % 6] = true;
    }
    if (wholeMapInView) map->camera.placeAt({48, 64, 140});
    showWalls = showLight = showDifficulty = layers;
    for (auto _ : state)
        frameStep(&root);
    showWalls = showLight = showDifficulty = false;
}

void BM_MapFrameStartCamera(benchmark::State& state) {
    frames(state, false, false);
}
void BM_MapFrameWholeMap(benchmark::State& state) {
    frames(state, true, false);
}
void BM_MapFrameWholeMapThreeLayers(benchmark::State& state) {
    frames(state, true, true);
}
} // namespace

BENCHMARK(BM_MapFrameStartCamera)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapFrameWholeMap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapFrameWholeMapThreeLayers)->Unit(benchmark::kMillisecond);
