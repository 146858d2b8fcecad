// The grid of six-sided cells: the 2 x 2 map's known answers, then laws over maps of odd and even
// sizes: neighbours, shared edges, and cellAt as the inverse of the outlines.
#include "map_test.h"

TEST(HexGrid, TwoByTwoCentresCutCornersAtEveryEdgeAndNeighboursWithNullsAtTheBorder) {
    auto map = hexMap(2, 2);
    const Vector3 centres[4] = {{0.5f, 0.5f, 0}, {1.25f, 1.0f, 0}, {0.5f, 1.5f, 0}, {1.25f, 2.0f, 0}};
    const int neighbours[4][6] = {
        {-1, -1, 1, 2, -1, -1}, {-1, -1, -1, 3, 2, 0}, {0, 1, 3, -1, -1, -1}, {1, -1, -1, -1, -1, 2}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(near(map->cells[i]->centre, centres[i])) << i;
        for (int s = 0; s < 6; ++s)
            EXPECT_EQ(map->cells[i]->neighbours[s],
                      neighbours[i][s] < 0 ? nullptr : map->cells[neighbours[i][s]])
                << i << ", side " << s;
    }
    // Cell, corner, where: on the upper edge, the left, the right, the lower (odd columns only).
    const std::tuple<int, int, Vector3> cut[] = {{0, 0, {0.25f, 0.5f, 0}}, {0, 1, {0.75f, 0.5f, 0}},
                                                 {0, 5, {0.25f, 0.5f, 0}}, {2, 5, {0.25f, 1.5f, 0}},
                                                 {1, 2, {1.5f, 1.0f, 0}},  {3, 2, {1.5f, 2.0f, 0}},
                                                 {3, 3, {1.5f, 2.0f, 0}},  {3, 4, {1.0f, 2.0f, 0}}};
    for (auto [i, k, corner] : cut)
        EXPECT_TRUE(near(map->cells[i]->corners[k], corner)) << i << ", corner " << k;
}

TEST(HexGrid, NeighboursMeetAcrossSharedEdgesAndCellAtFindsTheCellWhoseOutlineHoldsThePoint) {
    for (auto [columns, rows] : {std::pair{1, 1}, {2, 2}, {3, 2}, {5, 4}, {6, 5}, {7, 3}}) {
        auto map = hexMap(columns, rows);
        int full = 0;
        for (Cell* cell : map->cells) {
            int open = 0;
            for (int i = 0; i < 6; ++i) {
                const Vector3 &a = cell->corners[i], &b = cell->corners[(i + 1) % 6];
                EXPECT_TRUE(a.x >= 0.25f && a.x <= 0.75f * columns && a.y >= 0.5f && a.y <= rows);
                for (float f : {0.0f, 0.3f, 0.6f, 0.9f, 0.98f})
                    for (Vector3 p : {a - cell->centre, 0.5f * (a + b) - cell->centre,
                                      0.25f * a + 0.5f * b - 0.75f * cell->centre}) {
                        Vector3 q = cell->centre + f * p;
                        EXPECT_EQ(map->cellAt(q.x, q.y), cell)
                            << columns << " x " << rows << " at " << q.x << ", " << q.y;
                    }
                if (Cell* n = cell->neighbours[i]) {
                    ++open;
                    EXPECT_EQ(n->neighbours[(i + 3) % 6], cell) << columns << " x " << rows << ", side " << i;
                    EXPECT_TRUE(near(a, n->corners[(i + 4) % 6]) && near(b, n->corners[(i + 3) % 6]));
                }
            }
            full += open == 6;
        }
        EXPECT_EQ(full, std::max(0, columns - 2) * std::max(0, rows - 2)) << "nulls beyond the border only";
    }
    // The corner belongs to the map; on the lower edge an even column's row truncates off the
    // grid, an odd column's is the last.
    auto map = hexMap(4, 3);
    const std::tuple<float, float, Cell*> points[] = {
        {0.25f, 0.5f, at(*map, 0, 0)}, {1.25f, 3.0f, at(*map, 1, 2)}, {3.0f, 3.0f, at(*map, 3, 2)},
        {0.5f, 3.0f, nullptr},         {2.0f, 3.0f, nullptr},         {0.2499f, 1.0f, nullptr},
        {3.001f, 1.0f, nullptr},       {1.0f, 0.4999f, nullptr},      {NAN, 1.0f, nullptr}};
    for (auto [x, y, cell] : points)
        EXPECT_EQ(map->cellAt(x, y), cell) << x << ", " << y;
    SquareMap square(3, 2); // the base class's unit squares
    EXPECT_EQ(square.cellAt(2.99f, 1.5f), at(square, 2, 1));
    for (auto [x, y] : {std::pair{-0.5f, 0.5f}, {0.5f, -0.01f}, {3.0f, 0.0f}, {0.0f, 2.0f}})
        EXPECT_EQ(square.cellAt(x, y), nullptr) << x << ", " << y;
}
