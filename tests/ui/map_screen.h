// A map placed where the program shows it, inside the UI driver, with the pixels of points of map
// space at hand. Layer flags are put back after each test.
#pragma once

#include <functional>

#include "rules/character.h"
#include "support/ui_driver.h"
#include "toolkit/input_state.h"
#include "unit/map_test.h"

class MapScreen : public ui::UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        map = placed(new HexMap(root, 12, 10));
    }
    void TearDown() override {
        showLight = showSmoke = showProtection = showDifficulty = showWalls = false;
        UiTest::TearDown();
    }
    // Another map in the fixture's place.
    void replaceMap(HexMap* other) { delete map, map = placed(other); }
    std::pair<int, int> pixelOf(Vector3 q) const {
        auto [x, y] = ::pixelOf(*map, q);
        return {static_cast<int>(x), static_cast<int>(y)};
    }
    // Whether a point of map space shows in this colour, give or take the tolerance in each channel.
    ::testing::AssertionResult shows(Vector3 q, ui::Rgb colour, int tolerance = 0) {
        ui::Rgb seen = pixelAt(pixelOf(q).first, pixelOf(q).second);
        if (ui::near(seen, colour, tolerance)) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "shows " << seen;
    }
    int countAround(Vector3 q, int half, const std::function<bool(ui::Rgb)>& wanted) {
        auto [x, y] = pixelOf(q);
        return countPixels((x - half) / pixelsPerUnitX, (y - half) / pixelsPerUnitY,
                           2 * half / pixelsPerUnitX, 2 * half / pixelsPerUnitY, wanted);
    }
    void pointAt(Vector3 q) { movePixels(pixelOf(q).first, pixelOf(q).second); }
    Cell* cell(int column, int row) { return at(*map, column, row); }
    static bool isRed(ui::Rgb c) { return c.r > 200 && c.g < 60 && c.b < 60; }

    HexMap* map = nullptr;
};
