// What the pointer and the keys do on the map: hovering and clicking cells through the delegates,
// laying a way down with right shift and resetting it with a right click, zooming with the wheel,
// panning with the right button, turning with the third, and flying with the keys.
#include <gmock/gmock.h>

#include "map_screen.h"
#include "platform/glfw2.h"
#include "rules/character.h"
#include "support/probe.h"
#include "toolkit/balloon.h"

using ::testing::ElementsAre;

namespace {
// Stands in for the combat window: logs what the map reports, and proposes a way on an empty hover.
class Referee {
  public:
    int occupiedClick(Window*) { return note("occupied click"); }
    int occupiedHover(Window*) { return note("occupied hover"); }
    int emptyClick(Window*) { return note("empty click"); }
    int emptyHover(Window* w) {
        static_cast<Map*>(w)->findPath(mover);
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
        referee.mover = new Character(true);
        referee.mover->actions = 1;
        placeCharacter(referee.mover, cell(2, 5));
        // Coming onto a window is an entry, not a move: only the moves after it reach the map.
        movePixels(300, 100);
        ASSERT_EQ(hoverWindow, map);
        ASSERT_EQ(map->hovered, nullptr) << "beside the cells";
    }
    void TearDown() override {
        delete referee.mover;
        MapScreen::TearDown();
    }
    void clickAt(Vector3 q, int button = 0) {
        pointAt(q);
        press(button);
        release(button);
    }
    Vector3 groundAt(int px, int py) {
        Vector3 p;
        map->screenToPlane(float(px), float(py), &p, 0);
        return p;
    }
    static bool same(Vector3 a, Vector3 b, float tolerance) {
        return std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance &&
               std::fabs(a.z - b.z) <= tolerance;
    }

    Referee referee;
};
} // namespace

TEST_F(MapInput, HoveringReportsEachNewCellOnceAndLeavingTheCellsClearsTheProposedWay) {
    pointAt(cell(6, 5)->centre);
    EXPECT_EQ(map->hovered, cell(6, 5));
    EXPECT_FALSE(map->pendingPath.empty());
    new Balloon("Mara Vell", 1.5f);
    pointAt(cell(6, 5)->centre + Vector3{0.2f, 0.1f, 0});
    EXPECT_NE(balloonWindow, nullptr) << "the same cell again is no news";
    pointAt(cell(2, 5)->centre);
    EXPECT_EQ(balloonWindow, nullptr) << "a new cell takes the balloon away";
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "occupied hover"));

    pointAt(cell(6, 5)->centre);
    pointAt({-1.5f, 5, 0}); // on the map's window, beside the cells
    EXPECT_EQ(std::tuple(map->hovered, map->pendingPath.size(), map->pendingLength),
              std::tuple(nullptr, std::size_t(0), 0.0f));
    pointAt(cell(6, 5)->centre);
    moveTo(10, 50); // off the map's window
    EXPECT_EQ(map->hovered, cell(6, 5)) << "only the map's own moves change what it hovers";
}

TEST_F(MapInput, ClicksReportTheCellRightShiftLaysTheWayDownAndARightClickResetsIt) {
    clickAt(cell(6, 5)->centre);
    EXPECT_EQ(focusWindow, map) << "a click gives the map the keys";
    clickAt(cell(2, 5)->centre);
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "empty click", "occupied hover", "occupied click"));

    referee.log.clear();
    clickAt(cell(6, 5)->centre, 1);
    EXPECT_THAT(referee.log, ElementsAre("empty hover")) << "nothing laid down, nothing to reset";
    holdKey(platform::KEY_RSHIFT);
    clickAt(cell(6, 5)->centre);
    EXPECT_EQ(map->committedPath.back().cell, cell(6, 5));
    clickAt(cell(2, 5)->centre);
    EXPECT_EQ(map->committedPath.back().cell, cell(6, 5)) << "nothing is laid down on an occupied cell";
    releaseKey(platform::KEY_RSHIFT);
    holdKey(platform::KEY_LSHIFT);
    clickAt(cell(8, 5)->centre);
    releaseKey(platform::KEY_LSHIFT);
    EXPECT_EQ(map->committedPath.back().cell, cell(6, 5)) << "the left shift key does not count";
    EXPECT_THAT(referee.log, ElementsAre("empty hover", "occupied hover", "empty hover", "empty click"))
        << "right shift reports no click, so no attack starts";

    referee.log.clear();
    clickAt(cell(8, 5)->centre, 1);
    EXPECT_THAT(referee.log, ElementsAre("path reset"));
    press(1);
    movePixels(pixelOf(cell(8, 5)->centre).first + 40, pixelOf(cell(8, 5)->centre).second);
    release(1);
    EXPECT_THAT(referee.log, ElementsAre("path reset", "empty hover")) << "a pan is no right click";
}

TEST_F(MapInput, TheWheelZoomsTowardsThePointerByATenthOfTheHeightANotch) {
    auto [px, py] = pixelOf(cell(9, 7)->centre);
    movePixels(px, py);
    Vector3 under = groundAt(px, py);
    wheel(1);
    EXPECT_NEAR(map->camera.position().z, 18, 1e-4f);
    EXPECT_TRUE(same(groundAt(px, py), under, 1e-3f)) << "the point under the pointer stays there";
    wheel(-2);
    EXPECT_NEAR(map->camera.position().z, 18 * 1.2f, 1e-3f) << "two notches in one frame: a fifth";
    for (float z : {1.05f, 950.0f}) {
        map->camera.placeAt({4.5f, 5, z});
        wheel(z < 2 ? 1 : -1);
        EXPECT_EQ(map->camera.position().z, z) << "the height stays between 1 and 1000";
    }
}

TEST_F(MapInput, TheRightButtonPansTheGroundWithThePointerAndTheThirdTurnsAboutThePress) {
    movePixels(600, 400);
    Vector3 grabbed = groundAt(600, 400);
    press(1);
    for (int step = 1; step <= 4; ++step)
        movePixels(600 + 30 * step, 400 - 20 * step);
    release(1);
    EXPECT_TRUE(same(groundAt(720, 320), grabbed, 2e-3f));
    EXPECT_NEAR(map->camera.position().z, 20, 1e-5f) << "at the same height";

    movePixels(620, 420);
    Vector3 pivot = groundAt(620, 420);
    Vector3 right = map->camera.right();
    press(2);
    EXPECT_EQ(focusWindow, map) << "the third button gives the map the keys";
    movePixels(650, 420); // 10 degrees about the vertical
    EXPECT_EQ(std::pair(mouseX, mouseY), std::pair(620, 420)) << "the pointer is put back";
    EXPECT_NEAR(dot(map->camera.right(), right), std::cos(10 * 3.14159265f / 180), 1e-4f);
    EXPECT_TRUE(same(groundAt(620, 420), pivot, 2e-3f));
    movePixels(620, 360); // measured from the press: 20 degrees of tilt
    EXPECT_NEAR(map->camera.forward().z, -std::cos(20 * 3.14159265f / 180), 1e-3f);
    EXPECT_TRUE(same(groundAt(620, 420), pivot, 2e-3f));
    release(2);
    for (const std::string& entry : referee.log)
        EXPECT_EQ(entry.find("click"), std::string::npos) << "no click from either gesture";
}

TEST_F(MapInput, ArrowAndPageKeysFlyTheCameraOnlyWhileTheMapHasTheKeys) {
    Vector3 start = map->camera.position();
    holdKey(platform::KEY_LEFT);
    frame(10);
    releaseKey(platform::KEY_LEFT);
    EXPECT_TRUE(same(map->camera.position(), start, 0)) << "no focus, no flight";

    clickAt(cell(6, 5)->centre);
    holdKey(platform::KEY_LEFT);
    holdKey(platform::KEY_PAGEUP);
    Vector3 before = map->camera.position();
    frame(10);
    EXPECT_TRUE(same(map->camera.position() - before, {-2, -2, 0}, 1e-3f)) << "0.2 a frame and key, added up";
    releaseKey(platform::KEY_LEFT);
    releaseKey(platform::KEY_PAGEUP);
    holdKey(platform::KEY_UP);
    before = map->camera.position();
    frame(5);
    EXPECT_NEAR(map->camera.position().z - before.z, -1, 1e-3f)
        << "the up arrow flies forwards, down to the ground";
    releaseKey(platform::KEY_UP);
}
