// What the pointer and the keys do on the map: hovering and clicking cells through the delegates,
// laying a way down with right shift, resetting it with a right click, zooming with the wheel,
// panning with the right button, turning with the third, and flying with the arrow keys.
#include <gmock/gmock.h>

#include "map_screen.h"
#include "platform/glfw2.h"
#include "rules/character.h"
#include "support/probe.h"
#include "toolkit/balloon.h"

using ::testing::ElementsAre;

namespace {
// Stands in for the combat window: logs what the map reports, and proposes a way on an empty
// hover as the combat window does for the current combatant.
class Referee {
  public:
    int occupiedClick(Window*) { return note("occupied click"); }
    int occupiedHover(Window*) { return note("occupied hover"); }
    int emptyClick(Window*) { return note("empty click"); }
    int emptyHover(Window* w) {
        if (mover) static_cast<Map*>(w)->findPath(mover);
        return note("empty hover");
    }
    int pathReset(Window*) { return note("path reset"); }
    int note(const char* what) {
        log.push_back(what);
        return 0;
    }
    ui::EventLog log;
    Character* mover = nullptr;
};

class MapInput : public MapScreen {
  protected:
    void SetUp() override {
        MapScreen::SetUp();
        map->camera.placeAt({4.5f, 5, 20}); // the whole map in view
        map->occupiedClickHandler.bind(&referee, &Referee::occupiedClick);
        map->occupiedHoverHandler.bind(&referee, &Referee::occupiedHover);
        map->emptyClickHandler.bind(&referee, &Referee::emptyClick);
        map->emptyHoverHandler.bind(&referee, &Referee::emptyHover);
        map->pathResetHandler.bind(&referee, &Referee::pathReset);
        mover = new Character(true);
        mover->actions = 1;
        placeCharacter(mover, cell(2, 5));
        referee.mover = mover;
        // Coming onto a window is an entry, not a move: only the moves after it reach the map.
        movePixels(300, 100);
        ASSERT_EQ(hoverWindow, map);
        ASSERT_EQ(map->hovered, nullptr) << "beside the cells";
    }
    void TearDown() override {
        delete mover;
        MapScreen::TearDown();
    }
    // The point of the plane z = 0 that shows at a pixel.
    Vector3 groundAt(int px, int py) {
        Vector3 p;
        map->screenToPlane(static_cast<float>(px), static_cast<float>(py), &p, 0);
        return p;
    }

    Referee referee;
    Character* mover = nullptr;
};

bool near3(Vector3 a, Vector3 b, float tolerance) {
    return std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance &&
           std::fabs(a.z - b.z) <= tolerance;
}
} // namespace

TEST_F(MapInput, HoveringReportsEachNewCellOnceAndLeavingTheCellsClearsTheProposedWay) {
    pointAt(cell(6, 5)->centre);
    EXPECT_EQ(map->hovered, cell(6, 5));
    EXPECT_FALSE(map->pendingPath.empty());
    pointAt(cell(6, 5)->centre + Vector3{0.2f, 0.1f, 0});
    EXPECT_THAT(referee.log, ElementsAre("empty hover")) << "the same cell again is no news";
    pointAt(cell(2, 5)->centre);
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "occupied hover"));

    pointAt(cell(6, 5)->centre);
    ASSERT_FALSE(map->pendingPath.empty());
    pointAt({-1.5f, 5, 0}); // on the map's window, beside the cells
    EXPECT_EQ(map->hovered, nullptr);
    EXPECT_TRUE(map->pendingPath.empty());
    EXPECT_EQ(map->pendingLength, 0);

    pointAt(cell(6, 5)->centre);
    moveTo(10, 50); // off the map's window
    EXPECT_EQ(map->hovered, cell(6, 5)) << "only the map's own moves change what it hovers";
}

TEST_F(MapInput, ANewCellUnderThePointerTakesTheBalloonAway) {
    pointAt(cell(6, 5)->centre);
    new Balloon("Mara Vell", 1.5f);
    pointAt(cell(6, 5)->centre + Vector3{0.1f, 0, 0});
    EXPECT_NE(balloonWindow, nullptr) << "moving within the cell keeps it";
    pointAt(cell(7, 5)->centre);
    EXPECT_EQ(balloonWindow, nullptr);
}

TEST_F(MapInput, ALeftClickReportsTheHoveredCellAndGivesTheMapTheKeys) {
    auto [ex, ey] = pixelOf(cell(6, 5)->centre);
    click(ex / pixelsPerUnitX, ey / pixelsPerUnitY);
    EXPECT_EQ(focusWindow, map);
    auto [ox, oy] = pixelOf(cell(2, 5)->centre);
    click(ox / pixelsPerUnitX, oy / pixelsPerUnitY);
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "empty click", "occupied hover", "occupied click"));
}

TEST_F(MapInput, RightShiftAndAClickLayTheProposedWayDown) {
    Vector3 target = cell(6, 5)->centre;
    pointAt(target);
    ASSERT_FALSE(map->pendingPath.empty());
    holdKey(platform::KEY_RSHIFT);
    press();
    release();
    EXPECT_FALSE(map->committedPath.empty());
    EXPECT_EQ(map->committedPath.back().cell, cell(6, 5));
    EXPECT_THAT(referee.log, ElementsAre("empty hover")) << "no click is reported";

    pointAt(cell(2, 5)->centre); // the mover's own cell
    press();
    release();
    EXPECT_EQ(map->committedPath.back().cell, cell(6, 5)) << "nothing is laid down on an occupied cell";
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "occupied hover")) << "and no attack starts";
    releaseKey(platform::KEY_RSHIFT);

    holdKey(platform::KEY_LSHIFT);
    pointAt(cell(8, 5)->centre);
    press();
    release();
    EXPECT_EQ(map->committedPath.back().cell, cell(6, 5)) << "the left shift key does not count";
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "occupied hover", "empty hover", "empty click"));
    releaseKey(platform::KEY_LSHIFT);
}

TEST_F(MapInput, ARightClickResetsALaidDownWayButAPanIsNoClick) {
    auto [px, py] = pixelOf(cell(6, 5)->centre);
    click(px / pixelsPerUnitX, py / pixelsPerUnitY, 1);
    EXPECT_THAT(referee.log, ElementsAre("empty hover")) << "nothing laid down, nothing to reset";

    map->commitPath();
    click(px / pixelsPerUnitX, py / pixelsPerUnitY, 1);
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "path reset"));

    referee.log.clear();
    press(1);
    movePixels(static_cast<int>(px) + 40, static_cast<int>(py));
    release(1);
    EXPECT_THAT(referee.log, ::testing::Not(::testing::Contains("path reset")));
}

TEST_F(MapInput, TheWheelZoomsTowardsThePointerByATenthOfTheHeight) {
    auto [px, py] = pixelOf(cell(9, 7)->centre);
    movePixels(static_cast<int>(px), static_cast<int>(py));
    Vector3 under = groundAt(static_cast<int>(px), static_cast<int>(py));
    wheel(1);
    EXPECT_NEAR(map->camera.position().z, 18, 1e-4f);
    EXPECT_TRUE(near3(groundAt(static_cast<int>(px), static_cast<int>(py)), under, 1e-3f))
        << "the point under the pointer stays there";
    wheel(-2);
    EXPECT_NEAR(map->camera.position().z, 18 * 1.2f, 1e-3f) << "two notches in one frame: a fifth";

    map->camera.placeAt({4.5f, 5, 1.05f});
    frame();
    wheel(1);
    EXPECT_NEAR(map->camera.position().z, 1.05f, 1e-6f) << "no closer than a height of 1";
    map->camera.placeAt({4.5f, 5, 950});
    frame();
    wheel(-1);
    EXPECT_NEAR(map->camera.position().z, 950, 1e-3f) << "no farther than 1000";
}

TEST_F(MapInput, DraggingWithTheRightButtonKeepsTheGroundUnderThePointer) {
    const int fromX = 600, fromY = 400;
    movePixels(fromX, fromY);
    Vector3 grabbed = groundAt(fromX, fromY);
    press(1);
    for (int step = 1; step <= 4; ++step)
        movePixels(fromX + 30 * step, fromY - 20 * step);
    release(1);
    EXPECT_TRUE(near3(groundAt(fromX + 120, fromY - 80), grabbed, 2e-3f));
    EXPECT_NEAR(map->camera.position().z, 20, 1e-5f) << "at the same height";
    EXPECT_EQ(pressTarget, nullptr);
}

TEST_F(MapInput, TheThirdButtonTurnsAboutThePointUnderThePressWhileThePointerStandsStill) {
    const int atX = 620, atY = 420;
    movePixels(atX, atY);
    Vector3 pivot = groundAt(atX, atY);
    Vector3 rightBefore = map->camera.right();
    press(2);
    EXPECT_EQ(focusWindow, map) << "the third button gives the map the keys";
    movePixels(atX + 30, atY); // 10 degrees about the vertical
    EXPECT_EQ(std::pair(mouseX, mouseY), std::pair(atX, atY)) << "the pointer is put back";
    EXPECT_NEAR(dot(map->camera.right(), rightBefore), std::cos(10 * 3.14159265f / 180), 1e-4f);
    EXPECT_TRUE(near3(groundAt(atX, atY), pivot, 2e-3f));
    movePixels(atX, atY - 60); // measured from the press: 20 degrees of tilt
    EXPECT_NEAR(map->camera.forward().z, -std::cos(20 * 3.14159265f / 180), 1e-3f);
    EXPECT_TRUE(near3(groundAt(atX, atY), pivot, 2e-3f));
    release(2);
    EXPECT_THAT(referee.log, ::testing::Each(::testing::Eq("empty hover")))
        << "the third button has no click";
}

TEST_F(MapInput, ArrowAndPageKeysFlyTheCameraOnlyWhileTheMapHasTheKeys) {
    Vector3 start = map->camera.position();
    holdKey(platform::KEY_LEFT);
    frame(10);
    releaseKey(platform::KEY_LEFT);
    EXPECT_TRUE(near3(map->camera.position(), start, 0)) << "no focus, no flight";

    auto [px, py] = pixelOf(cell(6, 5)->centre);
    click(px / pixelsPerUnitX, py / pixelsPerUnitY);
    holdKey(platform::KEY_LEFT);
    holdKey(platform::KEY_PAGEUP);
    Vector3 before = map->camera.position();
    frame(10);
    Vector3 after = map->camera.position();
    EXPECT_NEAR(after.x - before.x, -2, 1e-3f) << "0.2 a frame to the left";
    EXPECT_NEAR(after.y - before.y, -2, 1e-3f) << "and up the view at once";
    releaseKey(platform::KEY_LEFT);
    releaseKey(platform::KEY_PAGEUP);
    holdKey(platform::KEY_UP);
    before = map->camera.position();
    frame(5);
    EXPECT_NEAR(map->camera.position().z - before.z, -1, 1e-3f)
        << "up the arrow is forwards, down to the ground";
    releaseKey(platform::KEY_UP);
}
