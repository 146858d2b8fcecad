// Helpers for the map's model tests: maps built in code, cells by column and row.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "map/hex_map.h"

inline Cell* at(Map& map, int column, int row) {
    return map.cells[row * map.columns + column];
}
inline std::unique_ptr<HexMap> hexMap(int columns, int rows) {
    return std::make_unique<HexMap>(nullptr, columns, rows);
}

inline ::testing::AssertionResult near(const Vector3& a, const Vector3& b, float tolerance = 1e-4f) {
    if (std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance &&
        std::fabs(a.z - b.z) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") is not near ("
                                         << b.x << ", " << b.y << ", " << b.z << ")";
}
