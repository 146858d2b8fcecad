// The camera's arithmetic, and the map's rays through pixels: screenToPlane and pick over the
// height field, with the view where the program puts the map.
#include <random>

#include "map_test.h"

namespace {
// Where a point of map space lies in the camera's own axes.
Vector3 inCameraAxes(const Camera& c, Vector3 q) {
    Vector3 d = q - c.position();
    return {dot(c.right(), d), dot(c.up(), d), dot(c.forward(), d)};
}

// The view's u and v of a point in camera axes: the inverse of rayThrough.
std::pair<float, float> viewPoint(const Camera& c, Vector3 q) {
    Vector3 e = inCameraAxes(c, q);
    return {e.x / (e.z * c.halfWidth), -e.y / (e.z * c.halfHeight)};
}

// The lens that the map's draw gives the camera for a view of 808 x 745 pixels.
void programLens(Camera& c) {
    c.halfWidth = 808 / 2000.0f;
    c.halfHeight = -745 / 2000.0f;
    c.nearPlane = 1;
    c.farPlane = 1000;
}

// A map where the program shows it: view from pixel (215, 23.04), 808 x 745 pixels.
std::unique_ptr<HexMap> placedMap(int columns, int rows) {
    auto map = hexMap(columns, rows);
    map->setArea(20.99609375f, 3, 78.90625f, 97.00521f);
    programLens(map->camera);
    return map;
}

// The pixel at which a point of map space shows.
std::pair<float, float> pixelOf(const Map& m, Vector3 q) {
    auto [u, v] = viewPoint(m.camera, q);
    return {m.viewLeft + (u + 1) / 2 * m.viewWidth, m.viewTop + (v + 1) / 2 * m.viewHeight};
}
} // namespace

TEST(Camera, StartsAtHeightTwentyLookingStraightDown) {
    Camera c;
    EXPECT_TRUE(near(c.position(), {0, 0, 20}));
    EXPECT_TRUE(near(c.right(), {1, 0, 0}));
    EXPECT_TRUE(near(c.up(), {0, 1, 0}));
    EXPECT_TRUE(near(c.forward(), {0, 0, -1}));
}

TEST(Camera, MovesInMapAxesOrInItsOwn) {
    Camera c;
    c.move(0, 0, 0.2f, false, 1);
    EXPECT_TRUE(near(c.position(), {0, 0, 19.8f})) << "forwards is down";
    c.move(1, 2, 3, true, 2);
    EXPECT_TRUE(near(c.position(), {2, 4, 25.8f}));
    c.rotate(90, 0, 0, 1, true);
    Vector3 before = c.position();
    c.move(1, 0, 0, false, 0.5f);
    EXPECT_TRUE(near(c.position(), before + 0.5f * c.right())) << "along the turned right axis";
}

TEST(Camera, TurnsByRotateConventionsAndKeepsItsPosition) {
    Camera c;
    // About the view's own x axis by 90 degrees: the camera tilts up to look north, with height
    // growing up the view.
    c.rotate(90, 1, 0, 0, false);
    EXPECT_TRUE(near(c.forward(), {0, -1, 0}));
    EXPECT_TRUE(near(c.up(), {0, 0, -1}));
    EXPECT_TRUE(near(c.right(), {1, 0, 0}));
    EXPECT_TRUE(near(c.position(), {0, 0, 20}));
    // A world axis is first brought into camera axes; this camera's axes are left-handed.
    Camera d;
    d.rotate(90, 0, 0, 1, true);
    EXPECT_TRUE(near(d.right(), {0, -1, 0}));
    EXPECT_TRUE(near(d.up(), {1, 0, 0}));
    EXPECT_TRUE(near(d.forward(), {0, 0, -1}));
    Camera e;
    e.rotate(45, 0, 0, 0, false);
    EXPECT_TRUE(near(e.right(), {1, 0, 0})) << "an axis of no length turns nothing";
}

TEST(Camera, RotateAroundKeepsThePivotWhereItWasInTheView) {
    std::mt19937 random(2207);
    std::uniform_real_distribution<float> spread(-10, 10), angle(-170, 170);
    Camera c;
    programLens(c);
    for (int i = 0; i < 50; ++i) {
        Vector3 pivot{spread(random), spread(random), 0};
        Vector3 before = inCameraAxes(c, pivot);
        bool world = i % 2 == 0;
        c.rotateAround(angle(random), world ? 0.0f : 1.0f, 0, world ? 1.0f : 0.0f, world, &pivot);
        EXPECT_TRUE(near(inCameraAxes(c, pivot), before, 2e-3f)) << "turn " << i;
    }
    Camera d;
    d.rotateAround(30, 0, 0, 1, true, nullptr);
    EXPECT_TRUE(near(d.position(), {0, 0, 20})) << "without a pivot it turns on the spot";
}

TEST(Camera, ViewMatrixUndoesThePose) {
    Camera c;
    c.move(3, -2, 5, true, 1);
    c.rotate(33, 0, 0, 1, true);
    c.rotate(-50, 1, 0, 0, false);
    float view[16];
    c.viewMatrix(view);
    for (Vector3 q : {Vector3{0, 0, 0}, Vector3{4, 7, 1}, c.position()}) {
        Vector3 e{view[0] * q.x + view[4] * q.y + view[8] * q.z + view[12],
                  view[1] * q.x + view[5] * q.y + view[9] * q.z + view[13],
                  view[2] * q.x + view[6] * q.y + view[10] * q.z + view[14]};
        EXPECT_TRUE(near(e, inCameraAxes(c, q), 1e-3f));
    }
    EXPECT_EQ(view[3], 0);
    EXPECT_EQ(view[15], 1);
}

TEST(Camera, ProjectionTakesDepthWithAPlusSignAndMapsNearAndFarToTheClipRange) {
    Camera c;
    programLens(c);
    float m[16];
    c.projectionMatrix(m);
    EXPECT_FLOAT_EQ(m[0], 1 / c.halfWidth);
    EXPECT_FLOAT_EQ(m[5], 1 / c.halfHeight);
    EXPECT_EQ(m[11], 1) << "w takes the eye's z as it is";
    for (auto [z, ndc] : {std::pair{1.0f, -1.0f}, std::pair{1000.0f, 1.0f}})
        EXPECT_NEAR((m[10] * z + m[14]) / z, ndc, 1e-4f) << "depth " << z;
    int nonZero = 0;
    for (float e : m)
        nonZero += e != 0;
    EXPECT_EQ(nonZero, 5);
}

TEST(Camera, RayThroughTheViewHasUnitLengthAlongForward) {
    Camera c;
    programLens(c);
    c.rotate(40, 1, 0, 0, false);
    for (auto [u, v] : {std::pair{0.0f, 0.0f}, std::pair{-1.0f, -1.0f}, std::pair{1.0f, 0.5f}}) {
        Vector3 d = c.rayThrough(u, v);
        EXPECT_NEAR(dot(d, c.forward()), 1, 1e-5f);
        auto [pu, pv] = viewPoint(c, c.position() + d);
        EXPECT_NEAR(pu, u, 1e-4f);
        EXPECT_NEAR(pv, v, 1e-4f);
    }
    EXPECT_TRUE(near(c.rayThrough(0, 0), c.forward()));
}

TEST(Rays, ScreenToPlaneAtTheViewsCentreAndCorners) {
    auto map = placedMap(10, 10);
    EXPECT_FLOAT_EQ(map->viewLeft, 215);
    EXPECT_FLOAT_EQ(map->viewTop, 23.04f);
    EXPECT_NEAR(map->viewWidth, 808, 1e-3f);
    EXPECT_NEAR(map->viewHeight, 745, 1e-3f);
    Vector3 p;
    map->screenToPlane(619, 395.54f, &p, 0);
    EXPECT_TRUE(near(p, {0, 0, 0})) << "the start camera looks at the map's origin";
    // At height 20, a view of half 0.404 by 0.3725 at distance 1 spans 8.08 by 7.45 either way.
    map->screenToPlane(215, 23.04f, &p, 0);
    EXPECT_TRUE(near(p, {-8.08f, -7.45f, 0}));
    map->screenToPlane(1023, 768.04f, &p, 0);
    EXPECT_TRUE(near(p, {8.08f, 7.45f, 0}));
    map->screenToPlane(1023, 23.04f, &p, 2);
    EXPECT_TRUE(near(p, {7.272f, -6.705f, 2})) << "a raised plane is met sooner";
    // One unit is 50 pixels at the start.
    map->screenToPlane(669, 445.54f, &p, 0);
    EXPECT_TRUE(near(p, {1, 1, 0}));
}

TEST(Rays, PickFindsEachCellUnderItsCentreFromOffTheMapAndFromAbove) {
    auto map = placedMap(12, 10);
    for (int pass = 0; pass < 2; ++pass) {
        // First from the start, which stands off the map's rectangle; then from over the map.
        if (pass == 1) map->camera.placeAt({4, 5, 12});
        for (Cell* cell : map->cells) {
            // The middle of the outline: the centre of a cut cell lies on the map's edge. Off by a
            // little, since a ray right through a corner of three cells may step into one that it
            // only touches and find no way out of it.
            Vector3 middle{0.013f, 0.021f, 0};
            for (int i = 0; i < 6; ++i)
                middle = middle + (1.0f / 6) * cell->corners[i];
            auto [px, py] = pixelOf(*map, middle);
            if (px < 215 || px > 1023 || py < 23.04f || py > 768) continue;
            Vector3 hit;
            EXPECT_EQ(map->pick(px, py, &hit), cell)
                << "pass " << pass << ", at " << middle.x << ", " << middle.y;
            EXPECT_TRUE(near(hit, middle, 0.01f));
        }
    }
}

TEST(Rays, PickFromALowCameraHitsTheFlankOfAHighCellFirst) {
    auto map = placedMap(8, 12);
    // A ridge of high cells across row 4, and a camera low down to the south, looking north and
    // a little down, towards the ground beyond the ridge.
    for (int c = 0; c < 8; ++c)
        at(*map, c, 4)->setHeight(3);
    map->camera.placeAt({2.75f, 10.2f, 1.5f});
    map->camera.rotate(80, 1, 0, 0, false);
    auto [px, py] = pixelOf(*map, {2.75f, 2.0f, 0});
    Vector3 hit;
    Cell* cell = map->pick(px, py, &hit);
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell, map->cellAt(2.75f, 5.0f)) << "the flank of the ridge, not the ground behind it";
    EXPECT_GT(hit.z, 0);
    EXPECT_LT(hit.z, 3);
    EXPECT_NEAR(hit.y, cell->centre.y + 0.5f, 0.3f) << "on the south flank";

    for (int c = 0; c < 8; ++c)
        at(*map, c, 4)->setHeight(0);
    cell = map->pick(px, py, &hit);
    EXPECT_EQ(cell, map->cellAt(2.75f, 2.0f)) << "with the ridge gone, the ground itself";
    EXPECT_TRUE(near(hit, {2.75f, 2.0f, 0}, 0.02f));
}

TEST(Rays, PickMissesWhenTheRayLeavesOrPassesUnderTheMap) {
    auto map = placedMap(4, 4);
    Vector3 hit;
    EXPECT_EQ(map->pick(230, 40, &hit), nullptr) << "up and left of the map's rectangle";
    map->camera.placeAt({1.5f, 2, 2});
    map->camera.rotate(120, 1, 0, 0, false); // looking up into the sky
    EXPECT_EQ(map->pick(619, 395, &hit), nullptr);
    // From below the plane, off the map to the south, looking down and north: the ray meets the
    // map's edge below the ground.
    Camera fresh;
    map->camera = fresh;
    programLens(map->camera);
    map->camera.placeAt({1.5f, 6, -1});
    EXPECT_EQ(map->pick(619, 23.04f, &hit), nullptr);
}

TEST(Rays, TraceLineReachesTheTargetUnlessACellStandsHigherThanTheLineOnTheWay) {
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
    EXPECT_EQ(map->traceLine(from, from), nullptr) << "a line of no length leads nowhere";
    EXPECT_EQ(map->traceLine(nullptr, to), nullptr);
}
