// The grid of six-sided cells: centres, clipped outlines, neighbours and cellAt, by laws over maps
// of odd and even sizes and by tables of known answers; distances and ray crossings.
#include <vector>

#include "map_test.h"

namespace {
const std::pair<int, int> sizes[] = {{1, 1}, {2, 2}, {3, 2}, {5, 4}, {6, 5}, {7, 3}};
} // namespace

TEST(HexGrid, TwoByTwoCentresAndNeighboursByColumnParity) {
    auto map = hexMap(2, 2);
    const Vector3 centres[4] = {{0.5f, 0.5f, 0}, {1.25f, 1.0f, 0}, {0.5f, 1.5f, 0}, {1.25f, 2.0f, 0}};
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(near(map->cells[i]->centre, centres[i])) << "cell " << i;
    EXPECT_EQ(at(*map, 0, 0)->neighbours[2], at(*map, 1, 0));
    EXPECT_EQ(at(*map, 0, 0)->neighbours[1], nullptr);
    EXPECT_EQ(at(*map, 1, 0)->neighbours[4], at(*map, 0, 1)) << "odd columns hang half a cell lower";
    auto big = hexMap(5, 4);
    auto c = [&](int column, int row) { return at(*big, column, row); };
    const std::vector<Cell*> even{c(2, 0), c(3, 0), c(3, 1), c(2, 2), c(1, 1), c(1, 0)};
    const std::vector<Cell*> odd{c(3, 0), c(4, 1), c(4, 2), c(3, 2), c(2, 2), c(2, 1)};
    EXPECT_EQ(std::vector<Cell*>(c(2, 1)->neighbours.get(), c(2, 1)->neighbours.get() + 6), even);
    EXPECT_EQ(std::vector<Cell*>(c(3, 1)->neighbours.get(), c(3, 1)->neighbours.get() + 6), odd);
}

TEST(HexGrid, NeighboursSeeEachOtherBackAcrossSharedEdgesAndOutlinesTileTheRectangle) {
    for (auto [columns, rows] : sizes) {
        auto map = hexMap(columns, rows);
        float area = 0;
        int full = 0;
        for (Cell* cell : map->cells) {
            int open = 0;
            for (int i = 0; i < 6; ++i) {
                const Vector3 &a = cell->corners[i], &b = cell->corners[(i + 1) % 6];
                area += (a.x * b.y - b.x * a.y) / 2;
                EXPECT_TRUE(a.x >= 0.25f && a.x <= 0.75f * columns && a.y >= 0.5f && a.y <= rows);
                Cell* n = cell->neighbours[i];
                if (!n) continue;
                ++open;
                int back = (i + 3) % 6;
                EXPECT_EQ(n->neighbours[back], cell) << columns << " x " << rows << ", side " << i;
                EXPECT_TRUE(near(a, n->corners[(back + 1) % 6]) && near(b, n->corners[back]));
            }
            full += open == 6;
        }
        EXPECT_NEAR(area, (0.75f * columns - 0.25f) * (rows - 0.5f), 1e-3f) << columns << " x " << rows;
        EXPECT_EQ(full, std::max(0, columns - 2) * std::max(0, rows - 2)) << "nulls beyond the border only";
    }
}

TEST(HexGrid, CornersAreCutFlatAtEveryEdge) {
    auto map = hexMap(4, 3);
    EXPECT_TRUE(near(at(*map, 2, 0)->corners[0], {1.75f, 0.5f, 0})) << "first row, even column";
    EXPECT_TRUE(near(at(*map, 2, 0)->corners[1], {2.25f, 0.5f, 0}));
    EXPECT_TRUE(near(at(*map, 1, 2)->corners[3], {1.5f, 3.0f, 0})) << "last row, odd column";
    EXPECT_TRUE(near(at(*map, 1, 2)->corners[4], {1.0f, 3.0f, 0}));
    EXPECT_TRUE(near(at(*map, 0, 1)->corners[5], {0.25f, 1.5f, 0})) << "first column";
    EXPECT_TRUE(near(at(*map, 3, 1)->corners[2], {3.0f, 2.0f, 0})) << "last column";
    const Vector3 full[6] = {{1.75f, 1, 0}, {2.25f, 1, 0}, {2.5f, 1.5f, 0},
                             {2.25f, 2, 0}, {1.75f, 2, 0}, {1.5f, 1.5f, 0}};
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(near(at(*map, 2, 1)->corners[i], full[i])) << "uncut, corner " << i;
}

TEST(HexGrid, CellAtFindsTheCellWhoseOutlineHoldsThePoint) {
    for (auto [columns, rows] : sizes) {
        auto map = hexMap(columns, rows);
        for (Cell* cell : map->cells)
            for (int i = 0; i < 6; ++i) {
                Vector3 a = cell->corners[i] - cell->centre, b = cell->corners[(i + 1) % 6] - cell->centre;
                for (float f : {0.0f, 0.3f, 0.6f, 0.9f, 0.98f})
                    for (Vector3 p : {f * a, f * 0.5f * (a + b), f * 0.25f * a + f * 0.5f * b}) {
                        Vector3 q = cell->centre + p;
                        EXPECT_EQ(map->cellAt(q.x, q.y), cell)
                            << columns << " x " << rows << " at " << q.x << ", " << q.y;
                    }
            }
    }
    auto map = hexMap(4, 3);
    EXPECT_EQ(map->cellAt(0.25f, 0.5f), at(*map, 0, 0)) << "the corner belongs to the map";
    // On the lower edge an even column's row truncates off the grid; an odd column's is the last.
    EXPECT_EQ(map->cellAt(0.5f, 3.0f), nullptr);
    EXPECT_EQ(map->cellAt(2.0f, 3.0f), nullptr);
    EXPECT_EQ(map->cellAt(1.25f, 3.0f), at(*map, 1, 2));
    EXPECT_EQ(map->cellAt(3.0f, 3.0f), at(*map, 3, 2));
    for (auto [x, y] :
         {std::pair{0.2499f, 1.0f}, {3.001f, 1.0f}, {1.0f, 0.4999f}, {1.0f, 3.001f}, {NAN, 1.0f}})
        EXPECT_EQ(map->cellAt(x, y), nullptr) << x << ", " << y;
}

namespace {
class SquareMap : public Map {
  public:
    SquareMap(int columns, int rows) : Map(nullptr) { makeCells(columns, rows); }
};
} // namespace

TEST(SquareGrid, CellAtTruncatesAndKeepsTheStripBelowZeroOffTheGrid) {
    SquareMap map(3, 2);
    EXPECT_EQ(map.cellAt(2.99f, 1.5f), at(map, 2, 1));
    for (auto [x, y] : {std::pair{-0.5f, 0.5f}, {0.5f, -0.01f}, {3.0f, 0.0f}, {0.0f, 2.0f}})
        EXPECT_EQ(map.cellAt(x, y), nullptr) << x << ", " << y;
}

TEST(Distances, BetweenCentresWithHeightAndRayCrossingsByTable) {
    auto map = hexMap(4, 4);
    Cell *a = at(*map, 1, 1), *north = at(*map, 1, 0);
    EXPECT_FLOAT_EQ(distance(a, north), 1.0f);
    EXPECT_NEAR(distance(a, at(*map, 2, 1)), std::sqrt(0.8125f), 1e-6f);
    north->setHeight(2);
    EXPECT_FLOAT_EQ(distance(a, north), std::sqrt(5.0f));
    EXPECT_EQ(distance(nullptr, a), 0);

    struct Case {
        const char* what;
        Vector3 origin, direction, a, b;
        float expected;
    };
    const Case cases[] = {
        {"ahead", {0, 0, 0}, {1, 0, 0}, {2, -1, 0}, {2, 1, 0}, 2},
        {"in lengths of the direction", {0, 0, 0}, {4, 0, 0}, {2, -1, 0}, {2, 1, 0}, 0.5f},
        {"behind", {0, 0, 0}, {1, 0, 0}, {-3, -1, 0}, {-3, 1, 0}, -3},
        {"slanted, z not counted", {0, 0, 5}, {1, 1, -9}, {0, 2, 7}, {2, 0, 7}, 1},
        {"both ends on one side", {0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {3, 2, 0}, -1},
        {"origin on the side's line", {2, 0.5f, 0}, {1, 0, 0}, {2, -1, 0}, {2, 1, 0}, 0},
        {"straight down", {0, 0, 5}, {0, 0, -1}, {2, -1, 0}, {2, 1, 0}, -1},
    };
    for (const Case& c : cases)
        EXPECT_FLOAT_EQ(raySegment(c.origin, c.direction, c.a, c.b), c.expected) << c.what;
}
