// A map placed where the program shows it, inside the UI driver, with the pixels of points of map
// space at hand. Layer flags are put back after each test.
#pragma once

#include <functional>
#include <utility>

#include "map/hex_map.h"
#include "support/ui_driver.h"
#include "toolkit/input_state.h"

class MapScreen : public ui::UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        clearLayers();
        map = new HexMap(root, 12, 10);
        map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    }
    void TearDown() override {
        clearLayers();
        UiTest::TearDown();
    }
    static void clearLayers() { showLight = showSmoke = showProtection = showDifficulty = showWalls = false; }

    // Where a point of map space shows, for the camera as it stands and the lens that the map's
    // draw gives it: a thousand pixels make a unit at distance 1.
    std::pair<float, float> pixelOf(Vector3 q) const {
        const Camera& c = map->camera;
        Vector3 d = q - c.position();
        float ex = dot(c.right(), d), ey = dot(c.up(), d), ez = dot(c.forward(), d);
        float u = ex / (ez * map->viewWidth / 2000), v = ey / (ez * map->viewHeight / 2000);
        return {map->viewLeft + (u + 1) / 2 * map->viewWidth, map->viewTop + (v + 1) / 2 * map->viewHeight};
    }
    ui::Rgb colourAt(Vector3 q) {
        auto [x, y] = pixelOf(q);
        return pixelAt(static_cast<int>(x), static_cast<int>(y));
    }
    // Pixels for which the predicate holds in a box of pixels around the point.
    int countAround(Vector3 q, int halfWidth, int halfHeight, const std::function<bool(ui::Rgb)>& wanted) {
        auto [x, y] = pixelOf(q);
        return countPixels((x - halfWidth) / pixelsPerUnitX, (y - halfHeight) / pixelsPerUnitY,
                           2 * halfWidth / pixelsPerUnitX, 2 * halfHeight / pixelsPerUnitY, wanted);
    }
    // Moves the pointer onto a point of map space.
    void pointAt(Vector3 q) {
        auto [x, y] = pixelOf(q);
        movePixels(static_cast<int>(x), static_cast<int>(y));
    }
    Cell* cell(int column, int row) { return map->cells[row * map->columns + column]; }

    static bool isRed(ui::Rgb c) { return c.r > 200 && c.g < 60 && c.b < 60; }

    HexMap* map = nullptr;
};
