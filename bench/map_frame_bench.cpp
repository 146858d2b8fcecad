// Frames of the map through the real frame loop in a window of the scripted backend (run it under
// Xvfb): the map's kept geometry against its first, immediate drawing, on the sample map and on
// generated maps of 128, 256 and 512 cells a side. The wall time of a frame stops after glFinish;
// the CPU time is the main thread's, so a software renderer's own threads are not counted in it.
// On the sample map, one quad of the ground picture from the same cameras gives the floor: what
// texturing the map's pixels alone costs the renderer.
#include <GL/gl.h>
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>
#include <vector>

#include "map/hex_map.h"
#include "platform/glfw2.h"
#include "support/reference/immediate_map_drawing.h"
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

void showLayers(bool on) {
    showWalls = showLight = showSmoke = showProtection = showDifficulty = on;
}

// Heights, walls and every layer's values changing from cell to cell, so that flanks show and each
// layer paints most cells.
void fill(Map& m) {
    for (std::size_t i = 0; i < m.cells.size(); ++i) {
        Cell* c = m.cells[i];
        c->setHeight(float(i % 5) * 0.3f);
        c->difficulty = static_cast<int>(i % 31);
        c->light.dice = static_cast<int>(i % 3);
        c->cover.dice = static_cast<int>(i / 7 % 3);
        c->protect.dice = static_cast<int>(i / 13 % 2);
        c->walls[i % 6] = true;
    }
}

// CPU time of the whole process, the renderer's threads included, in milliseconds.
double processCpuMs() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1e3 + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e3;
}

// One quad of the ground picture at z = 0 under all the map's cells, with the map's lens and camera,
// the texture's filters and the depth test: the map's pixels textured once, and nothing else.
class GroundQuad : public Window {
  public:
    GroundQuad(Window* parent, Map& map) : Window(parent, map.x, map.y, map.width, map.height, ""), map(map) {
        map.visible = false;
        for (const Cell* c : map.cells)
            for (int i = 0; i < c->sides; ++i) {
                lo[0] = std::min(lo[0], c->corners[i].x), hi[0] = std::max(hi[0], c->corners[i].x);
                lo[1] = std::min(lo[1], c->corners[i].y), hi[1] = std::max(hi[1], c->corners[i].y);
            }
    }
    void draw(float) override {
        map.beginView();
        glMatrixMode(GL_TEXTURE);
        glPushMatrix();
        glTranslatef(0, groundTextureShift, 0);
        glScalef(groundTextureScale, groundTextureScale, 1);
        glBindTexture(GL_TEXTURE_2D, map.texture);
        glEnable(GL_TEXTURE_2D);
        glColor4f(1, 1, 1, 1);
        glBegin(GL_QUADS);
        for (int corner = 0; corner < 4; ++corner) {
            // In the tops' winding, which the culling keeps from above.
            float x = corner >= 2 ? hi[0] : lo[0], y = corner == 1 || corner == 2 ? hi[1] : lo[1];
            glTexCoord2f(x, y);
            glVertex3f(x, y, 0);
        }
        glEnd();
        glDisable(GL_TEXTURE_2D);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        map.endView();
    }

  private:
    Map& map;
    // The corners of all cells span this rectangle; the map's cells do not change here.
    float lo[2] = {1e9f, 1e9f}, hi[2] = {-1e9f, -1e9f};
};

enum class View { start, whole, tour };
enum class Drawing { immediate, kept, groundQuad };

// Cameras that the gestures reach over the sample map: high and low, straight down, tilted, turned,
// grazing, and past the horizontal under the ground.
void tourStop(Camera& camera, int stop) {
    static const float heights[] = {3, 8, 20, 45};
    static const float tilts[] = {0, 35, 70, 88, 130};
    static const float turns[] = {0, 120, 250};
    Vector3 pivots[] = {{15, 15, 0}, {21, 12, 0}, {6, 26, 0}};
    Vector3 pivot = pivots[stop % 3];
    camera = Camera();
    camera.placeAt({pivot.x, pivot.y, heights[stop / 3 % 4]});
    camera.rotateAround(turns[stop / 12 % 3], 0, 0, 1, true, &pivot);
    camera.rotateAround(tilts[stop / 36 % 5], 1, 0, 0, false, &pivot);
}
constexpr int tourStops = 3 * 4 * 3 * 5;
// The tour goes round this often; a stop's figure is its fastest frame, which a busy moment of the
// machine does not raise.
constexpr int tourRounds = 3;
// The frame time that the sample map is to keep to from every camera.
constexpr double sampleGoalMs = 4;

void frames(benchmark::State& state, Drawing drawing, int size, View view, bool layers) {
    if (!openWindow()) {
        state.SkipWithError("no window: run under xvfb-run");
        return;
    }
    Root root;
    Map* map = size ? new HexMap(&root, size, size) : loadMap(&root);
    if (!map) {
        state.SkipWithError("no sample map: build the campaign target");
        return;
    }
    map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    map->texture = loadTexture("back.dds");
    if (size) fill(*map);
    if (view == View::whole) {
        // High enough for all rows in view; the columns take less room.
        float rows = static_cast<float>(map->rows);
        map->camera.placeAt(
            {0.375f * static_cast<float>(map->columns) + 0.25f, rows / 2 + 0.25f, 1.35f * rows + 2});
    }
    showLayers(layers);
    if (drawing == Drawing::immediate) new ImmediateMapView(&root, *map);
    if (drawing == Drawing::groundQuad) new GroundQuad(&root, *map);
    // The first frame builds what the map keeps.
    auto t0 = std::chrono::steady_clock::now();
    frameStep(&root);
    glFinish();
    double firstMs = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
    double worstMs = 0, cpuBefore = processCpuMs();
    int stop = 0;
    std::vector<double> fastest(tourStops, std::numeric_limits<double>::max());
    for (auto _ : state) {
        if (view == View::tour) tourStop(map->camera, stop % tourStops);
        auto start = std::chrono::steady_clock::now();
        frameStep(&root);
        glFinish();
        double ms =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        worstMs = std::max(worstMs, ms);
        double& best = fastest[std::size_t(stop++ % tourStops)];
        best = std::min(best, ms);
    }
    if (view == View::tour)
        state.counters["stops_over_4ms"] = static_cast<double>(
            std::count_if(fastest.begin(), fastest.end(), [](double ms) { return ms > sampleGoalMs; }));
    showLayers(false);
    state.counters["all_threads_ms"] =
        (processCpuMs() - cpuBefore) /
        static_cast<double>(std::max<benchmark::IterationCount>(state.iterations(), 1));
    state.counters["first_ms"] = firstMs;
    state.counters["worst_ms"] = worstMs;
    state.counters["cache_MB"] = static_cast<double>(map->geometryBytes()) / 1e6;
}

struct Case {
    const char* name;
    int size; // 0: the sample map
    View view;
    bool layers;
};
constexpr Case cases[] = {
    {"sample/start", 0, View::start, false},
    {"sample/whole/all_layers", 0, View::whole, true},
    {"sample/tour", 0, View::tour, false},
    {"sample/tour/all_layers", 0, View::tour, true},
    {"128/start", 128, View::start, false},
    {"128/whole", 128, View::whole, false},
    {"128/whole/all_layers", 128, View::whole, true},
    {"256/start", 256, View::start, false},
    {"256/whole/all_layers", 256, View::whole, true},
    {"512/start", 512, View::start, false},
    {"512/whole/all_layers", 512, View::whole, true},
};

const bool registered = [] {
    for (const Case& c : cases)
        for (Drawing drawing : {Drawing::immediate, Drawing::kept, Drawing::groundQuad}) {
            if (drawing == Drawing::groundQuad && (c.size || c.view == View::whole)) continue;
            const char* kinds[] = {"/immediate", "/kept", "/ground_quad"};
            std::string name = std::string("map/") + c.name + kinds[static_cast<int>(drawing)];
            bool immediate = drawing == Drawing::immediate;
            auto* b = benchmark::RegisterBenchmark(name.c_str(), frames, drawing, c.size, c.view, c.layers);
            b->Unit(benchmark::kMillisecond);
            // The immediate drawing of the large maps takes seconds a frame.
            if (immediate && c.size >= 256) b->Iterations(c.layers ? 1 : 3);
            if (c.view == View::tour) b->Iterations(tourRounds * tourStops);
        }
    return true;
}();
} // namespace
