// A map placed where the program shows it, inside the UI driver, with the pixels of points of map
// space at hand. Layer flags are put back after each test.
#pragma once

#include <functional>

#include "map/hex_map.h"
#include "support/ui_driver.h"
#include "toolkit/input_state.h"

class MapScreen : public ui::UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        map = place(new HexMap(root, 12, 10));
    }
    void TearDown() override {
        showLight = showSmoke = showProtection = showDifficulty = showWalls = false;
        UiTest::TearDown();
    }
    static HexMap* place(Map* m) {
        m->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
        return static_cast<HexMap*>(m);
    }
    // Where a point of map space shows, with the lens of the map's draw: 1000 pixels a unit at 1.
    std::pair<int, int> pixelOf(Vector3 q) const {
        const Camera& c = map->camera;
        Vector3 d = q - c.position();
        float depth = dot(c.forward(), d);
        float u = dot(c.right(), d) / (depth * map->viewWidth / 2000),
              v = dot(c.up(), d) / (depth * map->viewHeight / 2000);
        return {static_cast<int>(map->viewLeft + (u + 1) / 2 * map->viewWidth),
                static_cast<int>(map->viewTop + (v + 1) / 2 * map->viewHeight)};
    }
    ui::Rgb colourAt(Vector3 q) {
        auto [x, y] = pixelOf(q);
        return pixelAt(x, y);
    }
    int countAround(Vector3 q, int half, const std::function<bool(ui::Rgb)>& wanted) {
        auto [x, y] = pixelOf(q);
        return countPixels((x - half) / pixelsPerUnitX, (y - half) / pixelsPerUnitY,
                           2 * half / pixelsPerUnitX, 2 * half / pixelsPerUnitY, wanted);
    }
    void pointAt(Vector3 q) {
        auto [x, y] = pixelOf(q);
        movePixels(x, y);
    }
    Cell* cell(int column, int row) { return map->cells[row * map->columns + column]; }
    static bool isRed(ui::Rgb c) { return c.r > 200 && c.g < 60 && c.b < 60; }

    HexMap* map = nullptr;
};
