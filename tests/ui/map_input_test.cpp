// What the pointer and the keys do on the map: hovering and clicking cells through the delegates,
// laying a way down with right shift and resetting it with a right click; zooming with the wheel,
// panning with the right button, turning with the third, and flying with the keys.
#include <gmock/gmock.h>

#include "map_screen.h"
#include "platform/glfw2.h"
#include "support/probe.h"
#include "toolkit/balloon.h"

using ::testing::ElementsAre;

namespace {
// Stands in for the combat window: logs what the map reports, and proposes a way on an empty hover.
class MapInput : public MapScreen {
  protected:
    void SetUp() override {
        MapScreen::SetUp();
        map->camera.placeAt({4.5f, 5, 20}); // the whole map in view
        map->occupiedClickHandler.bind(this, &MapInput::occupiedClick);
        map->occupiedHoverHandler.bind(this, &MapInput::occupiedHover);
        map->emptyClickHandler.bind(this, &MapInput::emptyClick);
        map->emptyHoverHandler.bind(this, &MapInput::emptyHover);
        map->pathResetHandler.bind(this, &MapInput::pathReset);
        mover.actions = 1;
        placeCharacter(&mover, cell(2, 5));
        // Coming onto a window is an entry, not a move: only the moves after it reach the map.
        movePixels(300, 100);
        ASSERT_TRUE(hoverWindow == map && map->hovered == nullptr) << "beside the cells";
    }
    int occupiedClick(Window*) { return note("occupied click"); }
    int occupiedHover(Window*) { return note("occupied hover"); }
    int emptyClick(Window*) { return note("empty click"); }
    int emptyHover(Window*) { return map->findPath(&mover), note("empty hover"); }
    int pathReset(Window*) { return note("path reset"); }
    int note(const char* what) { return log.push_back(what), 0; }
    void clickAt(Vector3 q, int button = 0) { pointAt(q), press(button), release(button); }
    Vector3 groundAt(int px, int py) {
        Vector3 p;
        map->screenToPlane(float(px), float(py), &p, 0);
        return p;
    }

    Character mover{true};
    ui::EventLog log;
};
} // namespace

TEST_F(MapInput, HoveringAndClickingReportTheCellRightShiftLaysTheWayDownAndARightClickResetsIt) {
    pointAt(cell(6, 5)->centre);
    EXPECT_TRUE(map->hovered == cell(6, 5) && !map->pendingPath.empty());
    new Balloon("Mara Vell", 1.5f);
    pointAt(cell(6, 5)->centre + Vector3{0.2f, 0.1f, 0});
    EXPECT_NE(balloonWindow, nullptr) << "the same cell again is no news";
    pointAt(cell(2, 5)->centre);
    EXPECT_EQ(balloonWindow, nullptr) << "a new cell takes the balloon away";
    pointAt({-1.5f, 5, 0}); // on the map's window, beside the cells
    EXPECT_EQ(std::tuple(map->hovered, map->pendingPath.size(), map->pendingLength),
              std::tuple(nullptr, std::size_t(0), 0.0f));
    clickAt(cell(6, 5)->centre);
    clickAt(cell(2, 5)->centre);
    clickAt(cell(6, 5)->centre, 1); // nothing laid down, nothing to reset
    holdKey(platform::KEY_RSHIFT);
    clickAt(cell(6, 5)->centre);
    clickAt(cell(2, 5)->centre); // nothing is laid down on an occupied cell
    releaseKey(platform::KEY_RSHIFT);
    holdKey(platform::KEY_LSHIFT);
    clickAt(cell(8, 5)->centre);
    releaseKey(platform::KEY_LSHIFT);
    EXPECT_EQ(std::pair(map->committedPath.back().cell, map->committedPath.size()),
              std::pair(cell(6, 5), std::size_t(5)));
    clickAt(cell(8, 5)->centre, 1);
    press(1);
    movePixels(pixelOf(cell(8, 5)->centre).first + 40, pixelOf(cell(8, 5)->centre).second);
    release(1);
    // Right shift reports no click, so no attack starts; a pan is no right click.
    EXPECT_THAT(log, ElementsAre("empty hover", "occupied hover", "empty hover", "empty click",
                                 "occupied hover", "occupied click", "empty hover", "occupied hover",
                                 "empty hover", "empty click", "path reset", "empty hover"));
}

// Right shift and a click where no way is proposed lays nothing down and leaves the way as it was.
TEST_F(MapInput, RightShiftWithNoWayProposedChangesNothing) {
    mover.move = 4;
    cell(4, 5)->difficulty = 12;
    pointAt(cell(4, 5)->centre);
    holdKey(platform::KEY_RSHIFT);
    clickAt(cell(4, 5)->centre);
    auto laid = std::tuple(map->committedPath.size(), map->committedLength, map->committedDifficulty);
    ASSERT_EQ(laid, std::tuple(std::size_t(3), 2 * 0.9013878f, 12));
    pointAt(cell(11, 9)->centre); // out of reach
    ASSERT_TRUE(map->hovered == cell(11, 9) && map->pendingPath.empty());
    clickAt(cell(11, 9)->centre);
    releaseKey(platform::KEY_RSHIFT);
    EXPECT_EQ(std::tuple(map->committedPath.size(), map->committedLength, map->committedDifficulty), laid);
}

TEST_F(MapInput, TheWheelZoomsTowardsThePointerTheRightButtonPansTheThirdTurnsAndTheKeysFly) {
    holdKey(platform::KEY_LEFT);
    frame(10);
    releaseKey(platform::KEY_LEFT);
    EXPECT_TRUE(near(map->camera.position(), {4.5f, 5, 20}, 0)) << "no flight without the keys";
    auto [px, py] = pixelOf(cell(9, 7)->centre);
    movePixels(px, py);
    Vector3 under = groundAt(px, py);
    wheel(1); // a tenth of the height
    EXPECT_TRUE(near(groundAt(px, py), under, 1e-3f) && std::fabs(map->camera.position().z - 18) < 1e-4f);
    wheel(-2);
    EXPECT_NEAR(map->camera.position().z, 18 * 1.2f, 1e-3f) << "two notches in one frame: a fifth";
    for (float z : {1.05f, 950.0f}) {
        map->camera.placeAt({4.5f, 5, z});
        wheel(z < 2 ? 1 : -1);
        EXPECT_EQ(map->camera.position().z, z) << "the height stays between 1 and 1000";
    }

    map->camera.placeAt({4.5f, 5, 20});
    movePixels(600, 400);
    Vector3 grabbed = groundAt(600, 400);
    press(1);
    for (int step = 1; step <= 4; ++step)
        movePixels(600 + 30 * step, 400 - 20 * step);
    release(1);
    EXPECT_TRUE(near(groundAt(720, 320), grabbed, 2e-3f) && std::fabs(map->camera.position().z - 20) < 1e-5f);
    movePixels(620, 420);
    Vector3 pivot = groundAt(620, 420);
    press(2);
    EXPECT_EQ(focusWindow, map) << "the third button gives the map the keys";
    movePixels(650, 420); // 10 degrees about the vertical
    EXPECT_EQ(std::pair(mouseX, mouseY), std::pair(620, 420)) << "the pointer is put back";
    const float radians = 10 * 3.14159265f / 180;
    EXPECT_TRUE(near(map->camera.right(), {std::cos(radians), -std::sin(radians), 0}));
    EXPECT_TRUE(near(groundAt(620, 420), pivot, 2e-3f));
    Vector3 screenUp = map->camera.up();
    movePixels(620, 360); // measured from the press: 20 degrees of tilt
    // The pointer going up turns the view's forward away from the screen's up, about the camera's x.
    EXPECT_NEAR(map->camera.forward().z, -std::cos(2 * radians), 1e-3f);
    EXPECT_NEAR(dot(map->camera.forward(), screenUp), -std::sin(2 * radians), 1e-3f);
    EXPECT_TRUE(near(groundAt(620, 420), pivot, 2e-3f));
    release(2);
    EXPECT_THAT(log, ::testing::Each(::testing::Not(::testing::HasSubstr("click"))))
        << "no click from a gesture";

    // 0.2 a frame and key in the camera's axes, added up; the up arrow flies forwards.
    const int keys[3] = {platform::KEY_LEFT, platform::KEY_PAGEUP, platform::KEY_UP};
    for (int key : keys)
        holdKey(key);
    Vector3 before = map->camera.position(), right = map->camera.right(), up = map->camera.up();
    frame(10);
    EXPECT_TRUE(
        near(map->camera.position() - before, -2 * right - 2 * up + 2 * map->camera.forward(), 1e-3f));
    for (int key : keys)
        releaseKey(key);
}
