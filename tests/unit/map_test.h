// Helpers for the map's tests, the UI's too: maps built in code and placed where the program shows
// them, cells by column and row, points compared, and the pixel at which a point shows.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "map/hex_map.h"

inline Cell* at(Map& map, int column, int row) {
    return map.cells[row * map.columns + column];
}
inline std::unique_ptr<HexMap> hexMap(int columns, int rows) {
    return std::make_unique<HexMap>(nullptr, columns, rows);
}
// The base class's grid of unit squares.
class SquareMap : public Map {
  public:
    SquareMap(int columns, int rows) : Map(nullptr) { makeCells(columns, rows); }
};

inline ::testing::AssertionResult near(Vector3 a, Vector3 b, float tolerance = 1e-4f) {
    Vector3 d = a - b;
    if (std::max({std::fabs(d.x), std::fabs(d.y), std::fabs(d.z)}) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "at " << a.x << ", " << a.y << ", " << a.z;
}
// The program's place (the view from pixel 215, 23.04, 808 x 745) and the lens its draw sets.
template <class M> M* placed(M* map) {
    map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    std::tie(map->camera.halfWidth, map->camera.halfHeight) =
        std::pair(map->viewWidth / 2000, -map->viewHeight / 2000);
    return map;
}
// The pixel at which a point of map space shows.
inline std::pair<float, float> pixelOf(const Map& m, Vector3 q) {
    const Camera& c = m.camera;
    Vector3 d = q - c.position();
    float depth = dot(c.forward(), d);
    float u = dot(c.right(), d) / (depth * c.halfWidth), v = -dot(c.up(), d) / (depth * c.halfHeight);
    return {m.viewLeft + (u + 1) / 2 * m.viewWidth, m.viewTop + (v + 1) / 2 * m.viewHeight};
}
