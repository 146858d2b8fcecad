// The grid of six-sided cells: centres, clipped outlines, neighbours, and the inverse of the
// outlines, cellAt; checked by laws on maps of odd and even sizes and by tables of known answers.
#include <tuple>
#include <vector>

#include "map_test.h"

namespace {
const std::vector<std::pair<int, int>> sizes = {{1, 1}, {2, 2}, {3, 2}, {5, 4}, {6, 5}, {7, 3}};

float outlineArea(const Cell& c) {
    float sum = 0;
    for (int i = 0; i < c.sides; ++i) {
        const Vector3 &a = c.corners[i], &b = c.corners[(i + 1) % c.sides];
        sum += a.x * b.y - b.x * a.y;
    }
    return sum / 2;
}
} // namespace

TEST(HexGrid, TwoByTwoCentresAndNeighbours) {
    auto map = hexMap(2, 2);
    EXPECT_TRUE(near(at(*map, 0, 0)->centre, {0.5f, 0.5f, 0}));
    EXPECT_TRUE(near(at(*map, 1, 0)->centre, {1.25f, 1.0f, 0}));
    EXPECT_TRUE(near(at(*map, 0, 1)->centre, {0.5f, 1.5f, 0}));
    EXPECT_TRUE(near(at(*map, 1, 1)->centre, {1.25f, 2.0f, 0}));
    EXPECT_EQ(at(*map, 0, 0)->neighbours[2], at(*map, 1, 0));
    EXPECT_EQ(at(*map, 0, 0)->neighbours[1], nullptr);
    EXPECT_EQ(at(*map, 1, 0)->neighbours[4], at(*map, 0, 1)) << "odd columns hang half a cell lower";
}

TEST(HexGrid, NeighboursByColumnParityWithNullsAtTheBorder) {
    auto map = hexMap(5, 4);
    auto cell = [&](int c, int r) { return at(*map, c, r); };
    // Sides 0 to 5: north, north-east, south-east, south, south-west, north-west.
    const std::vector<std::tuple<int, int, std::vector<Cell*>>> known = {
        {2, 1, {cell(2, 0), cell(3, 0), cell(3, 1), cell(2, 2), cell(1, 1), cell(1, 0)}},
        {3, 1, {cell(3, 0), cell(4, 1), cell(4, 2), cell(3, 2), cell(2, 2), cell(2, 1)}},
        {0, 0, {nullptr, nullptr, cell(1, 0), cell(0, 1), nullptr, nullptr}},
        {1, 3, {cell(1, 2), cell(2, 3), nullptr, nullptr, nullptr, cell(0, 3)}},
        {4, 3, {cell(4, 2), nullptr, nullptr, nullptr, cell(3, 3), cell(3, 2)}},
        {4, 0, {nullptr, nullptr, nullptr, cell(4, 1), cell(3, 0), nullptr}},
    };
    for (const auto& [c, r, expected] : known)
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(cell(c, r)->neighbours[i], expected[i]) << "cell (" << c << ", " << r << ") side " << i;
}

TEST(HexGrid, ANeighbourSeesTheCellBackAcrossTheOppositeSideAndTheyShareThatEdge) {
    for (auto [columns, rows] : sizes) {
        auto map = hexMap(columns, rows);
        for (Cell* cell : map->cells)
            for (int i = 0; i < 6; ++i) {
                Cell* n = cell->neighbours[i];
                if (!n) continue;
                int back = (i + 3) % 6;
                EXPECT_EQ(n->neighbours[back], cell) << columns << " x " << rows << ", side " << i;
                EXPECT_TRUE(near(cell->corners[i], n->corners[(back + 1) % 6]));
                EXPECT_TRUE(near(cell->corners[(i + 1) % 6], n->corners[back]));
            }
    }
}

TEST(HexGrid, OutlinesTileTheMapsRectangleExactly) {
    for (auto [columns, rows] : sizes) {
        auto map = hexMap(columns, rows);
        float total = 0;
        int interior = 0;
        for (Cell* cell : map->cells) {
            total += outlineArea(*cell);
            for (int i = 0; i < 6; ++i) {
                const Vector3& k = cell->corners[i];
                EXPECT_GE(k.x, 0.25f);
                EXPECT_LE(k.x, 0.75f * columns);
                EXPECT_GE(k.y, 0.5f);
                EXPECT_LE(k.y, float(rows));
            }
            int open = 0;
            for (int i = 0; i < 6; ++i)
                open += cell->neighbours[i] != nullptr;
            interior += open == 6;
            EXPECT_GT(outlineArea(*cell), 0) << "every outline runs clockwise on the screen";
        }
        EXPECT_NEAR(total, (0.75f * columns - 0.25f) * (rows - 0.5f), 1e-3f) << columns << " x " << rows;
        EXPECT_EQ(interior, std::max(0, columns - 2) * std::max(0, rows - 2))
            << "only cells off the border have six neighbours";
    }
}

TEST(HexGrid, CornersAreCutFlatAtEveryEdge) {
    auto map = hexMap(4, 3);
    // First row of an even column: the top is cut to the map's upper edge.
    EXPECT_TRUE(near(at(*map, 2, 0)->corners[0], {1.75f, 0.5f, 0}));
    EXPECT_TRUE(near(at(*map, 2, 0)->corners[1], {2.25f, 0.5f, 0}));
    EXPECT_TRUE(near(at(*map, 1, 0)->corners[0], {1.0f, 0.5f, 0})) << "odd columns reach the edge uncut";
    // Last row of an odd column: the bottom is cut to y = rows.
    EXPECT_TRUE(near(at(*map, 1, 2)->corners[3], {1.5f, 3.0f, 0}));
    EXPECT_TRUE(near(at(*map, 1, 2)->corners[4], {1.0f, 3.0f, 0}));
    EXPECT_TRUE(near(at(*map, 2, 2)->corners[3], {2.25f, 3.0f, 0})) << "even columns end at y = rows uncut";
    // First column: the left point is cut to x = 0.25; last column: the right one to 0.75 columns.
    EXPECT_TRUE(near(at(*map, 0, 1)->corners[5], {0.25f, 1.5f, 0}));
    EXPECT_TRUE(near(at(*map, 3, 1)->corners[2], {3.0f, 2.0f, 0}));
    // An uncut cell keeps its full hexagon.
    const Vector3 full[6] = {{1.75f, 1.0f, 0}, {2.25f, 1.0f, 0}, {2.5f, 1.5f, 0},
                             {2.25f, 2.0f, 0}, {1.75f, 2.0f, 0}, {1.5f, 1.5f, 0}};
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(near(at(*map, 2, 1)->corners[i], full[i])) << "corner " << i;
}

TEST(HexGrid, HeightRaisesTheCentreAndEveryCorner) {
    auto map = hexMap(3, 3);
    Cell* c = at(*map, 1, 1);
    c->setHeight(2.5f);
    EXPECT_EQ(c->centre.z, 2.5f);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(c->corners[i].z, 2.5f);
    EXPECT_EQ(at(*map, 1, 0)->centre.z, 0) << "one cell at a time";
}

TEST(HexGrid, CellAtFindsTheCellWhoseOutlineHoldsThePoint) {
    for (auto [columns, rows] : sizes) {
        auto map = hexMap(columns, rows);
        for (Cell* cell : map->cells)
            for (int i = 0; i < 6; ++i) {
                const Vector3 &a = cell->corners[i], &b = cell->corners[(i + 1) % 6];
                // Points towards each corner and each side's middle, and inside each wedge.
                for (float f : {0.0f, 0.3f, 0.6f, 0.9f, 0.98f}) {
                    Vector3 toCorner = cell->centre + f * (a - cell->centre);
                    Vector3 toSide = cell->centre + f * (0.5f * (a + b) - cell->centre);
                    Vector3 inWedge = cell->centre + (f * 0.5f) * ((a - cell->centre) + (b - cell->centre));
                    for (Vector3 p : {toCorner, toSide, inWedge})
                        EXPECT_EQ(map->cellAt(p.x, p.y), cell)
                            << columns << " x " << rows << ", point (" << p.x << ", " << p.y << ")";
                }
            }
    }
}

TEST(HexGrid, CellAtOnTheEdgesOfTheMap) {
    auto map = hexMap(4, 3);
    EXPECT_EQ(map->cellAt(0.25f, 0.5f), at(*map, 0, 0)) << "the corner belongs to the map";
    EXPECT_EQ(map->cellAt(3.0f, 3.0f), at(*map, 3, 2)) << "so does the opposite corner";
    // The lower edge: in an even column the row truncates to `rows`, off the grid; in an odd one
    // the point lies in the last row.
    EXPECT_EQ(map->cellAt(0.5f, 3.0f), nullptr);
    EXPECT_EQ(map->cellAt(2.0f, 3.0f), nullptr);
    EXPECT_EQ(map->cellAt(1.25f, 3.0f), at(*map, 1, 2));
    EXPECT_EQ(map->cellAt(2.75f, 3.0f), at(*map, 3, 2));
    for (auto [x, y] : std::vector<std::pair<float, float>>{
             {0.2499f, 1}, {3.001f, 1}, {1, 0.4999f}, {1, 3.001f}, {-5, -5}, {NAN, 1}, {1, NAN}, {1e30f, 1}})
        EXPECT_EQ(map->cellAt(x, y), nullptr) << "(" << x << ", " << y << ")";
}

namespace {
// The plain map answers for a grid of unit squares.
class SquareMap : public Map {
  public:
    SquareMap(int columns, int rows) : Map(nullptr) { makeCells(columns, rows); }
};
} // namespace

TEST(SquareGrid, CellAtTruncatesAndKeepsNegativeCoordinatesOffTheGrid) {
    SquareMap map(3, 2);
    EXPECT_EQ(map.cellAt(0, 0), at(map, 0, 0));
    EXPECT_EQ(map.cellAt(2.99f, 1.5f), at(map, 2, 1));
    EXPECT_EQ(map.cellAt(-0.5f, 0.5f), nullptr) << "-0.5 is not folded onto column 0";
    EXPECT_EQ(map.cellAt(0.5f, -0.01f), nullptr);
    EXPECT_EQ(map.cellAt(3, 0), nullptr);
    EXPECT_EQ(map.cellAt(0, 2), nullptr);
}

TEST(Distances, BetweenCentresWithHeightAndZeroWithoutAFirstCell) {
    auto map = hexMap(4, 4);
    Cell *a = at(*map, 1, 1), *north = at(*map, 1, 0), *northEast = at(*map, 2, 1);
    EXPECT_FLOAT_EQ(distance(a, north), 1.0f);
    EXPECT_NEAR(distance(a, northEast), std::sqrt(0.8125f), 1e-6f);
    north->setHeight(2);
    EXPECT_FLOAT_EQ(distance(a, north), std::sqrt(5.0f));
    EXPECT_EQ(distance(nullptr, a), 0);
    EXPECT_EQ(distance(a, a), 0);
}

TEST(Distances, RaySegmentCrossingsByTable) {
    struct Case {
        const char* what;
        Vector3 origin, direction, a, b;
        float expected;
    };
    const Case cases[] = {
        {"ahead", {0, 0, 0}, {1, 0, 0}, {2, -1, 0}, {2, 1, 0}, 2},
        {"in lengths of the direction", {0, 0, 0}, {4, 0, 0}, {2, -1, 0}, {2, 1, 0}, 0.5f},
        {"behind the origin", {0, 0, 0}, {1, 0, 0}, {-3, -1, 0}, {-3, 1, 0}, -3},
        {"slanted", {0, 0, 0}, {1, 1, 0}, {0, 2, 0}, {2, 0, 0}, 1},
        {"z does not count", {0, 0, 5}, {1, 0, -9}, {2, -1, 7}, {2, 1, 7}, 2},
        {"both ends on one side", {0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {3, 2, 0}, -1},
        {"origin on the side's line", {2, 0.5f, 0}, {1, 0, 0}, {2, -1, 0}, {2, 1, 0}, 0},
        {"straight down, no direction in the plane", {0, 0, 5}, {0, 0, -1}, {2, -1, 0}, {2, 1, 0}, -1},
        {"along the side's line counts as on it", {0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {3, 0, 0}, 0},
    };
    for (const Case& c : cases)
        EXPECT_FLOAT_EQ(raySegment(c.origin, c.direction, c.a, c.b), c.expected) << c.what;
}
