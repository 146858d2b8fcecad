// The camera's moves and turns, and the map's rays through pixels with the view where the program
// puts it: screenToPlane, pick over the height field, traceLine.
#include "map_test.h"

namespace {
Vector3 inCameraAxes(const Camera& c, Vector3 q) {
    Vector3 d = q - c.position();
    return {dot(c.right(), d), dot(c.up(), d), dot(c.forward(), d)};
}

// A map at the program's place (view from pixel 215, 23.04, 808 x 745), with the lens that its draw
// gives the camera.
std::unique_ptr<HexMap> placedMap(int columns, int rows) {
    auto map = hexMap(columns, rows);
    map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    map->camera.halfWidth = map->viewWidth / 2000;
    map->camera.halfHeight = -map->viewHeight / 2000;
    return map;
}

std::pair<float, float> pixelOf(const Map& m, Vector3 q) {
    Vector3 e = inCameraAxes(m.camera, q);
    float u = e.x / (e.z * m.camera.halfWidth), v = -e.y / (e.z * m.camera.halfHeight);
    return {m.viewLeft + (u + 1) / 2 * m.viewWidth, m.viewTop + (v + 1) / 2 * m.viewHeight};
}
} // namespace

TEST(Camera, MovesAndTurnsByItsOwnAxesOrTheMaps) {
    Camera c;
    EXPECT_TRUE(near(c.position(), {0, 0, 20}));
    EXPECT_TRUE(near(c.forward(), {0, 0, -1})) << "it starts looking straight down";
    c.move(0, 0, 0.2f, false, 1);
    c.move(1, 2, 3, true, 2);
    EXPECT_TRUE(near(c.position(), {2, 4, 25.8f})) << "forwards is down; map axes as given";
    c.rotate(90, 1, 0, 0, false);
    EXPECT_TRUE(near(c.forward(), {0, -1, 0}) && near(c.up(), {0, 0, -1})) << "tilted up to look north";
    EXPECT_TRUE(near(c.position(), {2, 4, 25.8f})) << "turning keeps the position";
    Camera d;
    d.rotate(90, 0, 0, 1, true); // a map axis, brought into this camera's left-handed axes
    EXPECT_TRUE(near(d.right(), {0, -1, 0}) && near(d.up(), {1, 0, 0}));
    d.move(1, 0, 0, false, 0.5f);
    EXPECT_TRUE(near(d.position(), {0, -0.5f, 20}));
}

TEST(Rays, ScreenToPlaneAtTheViewsCentreAndCorners) {
    auto map = placedMap(10, 10);
    EXPECT_TRUE(near({map->viewLeft, map->viewTop, map->viewWidth}, {215, 23.04f, 808}, 1e-3f));
    Vector3 p;
    map->screenToPlane(619, 395.54f, &p, 0);
    EXPECT_TRUE(near(p, {0, 0, 0})) << "the start camera looks at the map's origin";
    map->screenToPlane(215, 23.04f, &p, 0);
    EXPECT_TRUE(near(p, {-8.08f, -7.45f, 0}));
    map->screenToPlane(1023, 768.04f, &p, 0);
    EXPECT_TRUE(near(p, {8.08f, 7.45f, 0}));
    map->screenToPlane(1023, 23.04f, &p, 2);
    EXPECT_TRUE(near(p, {7.272f, -6.705f, 2})) << "a raised plane is met sooner";
}

TEST(Rays, PickFindsTheCellUnderAPixelFromOffTheMapAndFromAbove) {
    auto map = placedMap(12, 10);
    for (Vector3 camera : {Vector3{0, 0, 20}, Vector3{4, 5, 12}}) {
        map->camera.placeAt(camera);
        for (Cell* cell : map->cells) {
            // The middle of the outline (a cut cell's centre lies on the map's edge), a little off,
            // since a ray right through a corner of three cells may step into one that it only
            // touches and find no way out.
            Vector3 middle{0.013f, 0.021f, 0};
            for (int i = 0; i < 6; ++i)
                middle = middle + (1.0f / 6) * cell->corners[i];
            auto [px, py] = pixelOf(*map, middle);
            if (px < 215 || px > 1023 || py < 23.04f || py > 768) continue;
            Vector3 hit;
            EXPECT_EQ(map->pick(px, py, &hit), cell) << "at " << middle.x << ", " << middle.y;
            EXPECT_TRUE(near(hit, middle, 0.01f));
        }
    }
    Vector3 hit;
    map->camera.placeAt({0, 0, 20});
    EXPECT_EQ(map->pick(230, 40, &hit), nullptr) << "beside the map";
    map->camera.placeAt({1.5f, 12, -1});
    EXPECT_EQ(map->pick(619, 23.04f, &hit), nullptr) << "the ray meets the map's edge below the ground";
}

TEST(Rays, PickFromALowCameraHitsTheFlankOfAHighCellFirst) {
    auto map = placedMap(8, 12);
    for (int c = 0; c < 8; ++c)
        at(*map, c, 4)->setHeight(3);
    // Low to the south, looking north and a little down at the ground beyond the ridge of row 4.
    map->camera.placeAt({2.75f, 10.2f, 1.5f});
    map->camera.rotate(80, 1, 0, 0, false);
    auto [px, py] = pixelOf(*map, {2.75f, 2.0f, 0});
    Vector3 hit;
    Cell* cell = map->pick(px, py, &hit);
    EXPECT_EQ(cell, map->cellAt(2.75f, 5.0f));
    EXPECT_TRUE(hit.z > 0 && hit.z < 3) << hit.z;
    EXPECT_NEAR(hit.y, 5.5f, 0.3f) << "on its south flank";
    for (int c = 0; c < 8; ++c)
        at(*map, c, 4)->setHeight(0);
    EXPECT_EQ(map->pick(px, py, &hit), map->cellAt(2.75f, 2.0f)) << "without the ridge, the ground";
    EXPECT_TRUE(near(hit, {2.75f, 2.0f, 0}, 0.02f));
}

TEST(Rays, TraceLineReachesTheTargetUnlessACellStandsHigherThanTheLine) {
    auto map = hexMap(9, 9);
    Cell *from = at(*map, 1, 1), *to = at(*map, 7, 5);
    EXPECT_EQ(map->traceLine(from, to), to);
    for (int r = 0; r < 9; ++r)
        at(*map, 4, r)->setHeight(3);
    Cell* blocking = map->traceLine(from, to);
    ASSERT_NE(blocking, nullptr);
    EXPECT_EQ(blocking->centre.x, at(*map, 4, 0)->centre.x) << "the raised column";
    from->setHeight(4);
    to->setHeight(4);
    EXPECT_EQ(map->traceLine(from, to), to) << "a line above the column passes";
    EXPECT_EQ(map->traceLine(from, from), nullptr);
}
