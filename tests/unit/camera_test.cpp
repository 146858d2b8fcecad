// The map's rays through pixels with the view where the program puts it: screenToPlane, pick over
// the height field from above and from off the map, traceLine.
#include "map_test.h"

// In lengths of the direction from the origin, in the plane: a crossing ahead, behind, of a
// direction twice as long, on the segment's line, past the segment's ends; heights do not count.
TEST(Rays, RaySegmentMeasuresFromTheOriginAlongTheDirection) {
    const Vector3 a{3, 0, 0}, b{3, 2, 0};
    const std::tuple<Vector3, Vector3, float> cases[] = {
        {{1, 1, 0}, {1, 0, 0}, 2}, {{4, 1, 0}, {1, 0, 0}, -1}, {{1, 1, 7}, {2, 0, -5}, 1},
        {{3, 5, 0}, {0, 1, 0}, 0}, {{1, 3, 0}, {1, 0, 0}, -1}, {{1, 1, 0}, {0, 1, 0}, -1},
        {{0, 0, 0}, {3, 1, 0}, 1}};
    for (auto [origin, direction, t] : cases)
        EXPECT_FLOAT_EQ(raySegment(origin, direction, a, b), t) << origin.x << ", " << origin.y;
}

TEST(Rays, ScreenToPlaneAtTheViewsCentreAndCorners) {
    std::unique_ptr<HexMap> map(placed(new HexMap(nullptr, 10, 10)));
    const std::tuple<float, float, float, Vector3> cases[] = {{619, 395.54f, 0, {0, 0, 0}},
                                                              {215, 23.04f, 0, {-8.08f, -7.45f, 0}},
                                                              {1023, 768.04f, 0, {8.08f, 7.45f, 0}},
                                                              {1023, 23.04f, 2, {7.272f, -6.705f, 2}}};
    for (auto [px, py, z, expected] : cases) {
        Vector3 p;
        map->screenToPlane(px, py, &p, z);
        EXPECT_TRUE(near(p, expected)) << px << ", " << py;
    }
}

TEST(Rays, PickComesInOverTheEdgeAndFromALowCameraHitsAFlankWhereTraceLineStopsToo) {
    std::unique_ptr<HexMap> map(placed(new HexMap(nullptr, 8, 12)));
    float px, py;
    Vector3 hit; // the start camera stands beside the map, above it: rays come in over its edge
    std::tie(px, py) = pixelOf(*map, {2.75f, 2.0f, 0});
    EXPECT_TRUE(map->pick(px, py, &hit) == at(*map, 3, 1) && near(hit, {2.75f, 2.0f, 0}, 0.02f));
    EXPECT_EQ(map->pick(230, 40, &hit), nullptr) << "beside the map";
    map->camera.placeAt({1.5f, 14, -1});
    EXPECT_EQ(map->pick(619, 23.04f, &hit), nullptr) << "the ray meets the map's edge below the ground";

    for (int c = 0; c < 8; ++c)
        at(*map, c, 4)->setHeight(3);
    // Low to the south, looking north and a little down at the ground beyond the ridge of row 4.
    map->camera.placeAt({2.75f, 10.2f, 1.5f});
    map->camera.rotate(80, 1, 0, 0, false);
    std::tie(px, py) = pixelOf(*map, {2.75f, 2.0f, 0});
    EXPECT_EQ(map->pick(px, py, &hit), at(*map, 3, 4));
    EXPECT_TRUE(hit.z > 0 && hit.z < 3 && std::fabs(hit.y - 5.5f) < 0.3f) << "on its south flank, " << hit.z;
    Cell *from = at(*map, 1, 1), *to = at(*map, 6, 9);
    EXPECT_EQ(map->traceLine(from, to), at(*map, 3, 4));
    to->setHeight(8);
    EXPECT_EQ(map->traceLine(from, to), to) << "a line rising above the ridge passes";
    EXPECT_EQ(map->traceLine(from, from), nullptr);
}

// Over flat ground the cell that pick walks to is the one under the ray's point on the ground, for
// rays that cross many cells: at each crossing the side just come through, where the ray stands,
// is passed over, since a walk never goes back into the last two cells.
TEST(Rays, OverFlatGroundPickWalksToTheCellUnderEachPixel) {
    std::unique_ptr<HexMap> map(placed(new HexMap(nullptr, 12, 16)));
    map->camera.placeAt({4.3f, 17.1f, 2.2f});
    map->camera.rotate(75, 1, 0, 0, false);
    map->camera.rotate(12, 0, 0, 1, true);
    int wrong = 0, cells = 0;
    for (int py = 30; py < 768; py += 9) {
        for (int px = 220; px < 1024; px += 11) {
            Vector3 ground, hit;
            map->screenToPlane(float(px), float(py), &ground, 0);
            Cell* under = map->cellAt(ground.x, ground.y);
            Cell* picked = map->pick(float(px), float(py), &hit);
            cells += picked != nullptr;
            if (picked != under || (picked && !near(hit, ground, 1e-3f))) {
                if (wrong++ == 0) ADD_FAILURE() << "first at pixel " << px << ", " << py;
            }
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(cells, 3000) << "most rays land on the map";
}
