// Menu entries and the balloon under the real pointer: the light, the balloon's size, place and end.
#include <gmock/gmock.h>

#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/menu_entry.h"

using namespace ui;
using ::testing::ElementsAre;
using ::testing::FloatEq;

namespace {

class LabelTest : public UiTest {
  protected:
    std::vector<std::string> log;
    // Bound to entering and leaving: notes the red of the entry's background as the handler sees it,
    // and shows a balloon.
    int noted(Window* w) {
        log.push_back(std::to_string(std::lround(w->backColour[0] * 100)));
        new Balloon("Skills: what a character can do", 1.5f);
        return 0;
    }
    void watch(Window* w) { w->mouseEnterHandler = w->mouseLeaveHandler = Delegate(this, &LabelTest::noted); }
    // As a list rebuilt from a hover does: deletes the entry inside its own handler.
    int removed(Window* w) {
        delete w;
        return 0;
    }
    void removeOn(Delegate& handler) { handler.bind(this, &LabelTest::removed); }
};

// Decided: the entry changes its look before it fires its handler (the other order would touch an
// entry that the handler may have deleted), so the handler sees the new colour.
TEST_F(LabelTest,
       AMenuEntryLightsUpBeforeItsHandlerWhichMayDeleteItAndComesBackWithABalloonPlacedInTheSameStep) {
    MenuEntry* items = new MenuEntry(root, "Items", 10, 40, 30, 4, "");
    watch(items);
    frame();
    EXPECT_EQ(countPixels(11, 39.9f, 28, 0.3f, [](Rgb c) { return c.r < 100; }), 0) << "outline";
    movePixels(256, 322); // (25, 41.93)
    EXPECT_TRUE(near(pixel(35, 43), {217, 217, 217}, 1));
    // The balloon, placed in this step right of the pointer, is drawn over the lit entry.
    EXPECT_TRUE(near(pixel(26, 322 / 7.68f - 0.8f), {179, 179, 179}, 2));
    moveTo(60, 60);
    EXPECT_TRUE(near(pixel(35, 43), {179, 179, 179}, 1));
    EXPECT_THAT(log, ElementsAre("85", "70"));

    MenuEntry* entering = new MenuEntry(root, "Skills", 10, 50, 30, 4, "");
    MenuEntry* leaving = new MenuEntry(root, "Factions", 10, 60, 30, 4, "");
    removeOn(entering->mouseEnterHandler);
    removeOn(leaving->mouseLeaveHandler);
    moveTo(25, 52);
    moveTo(25, 62);
    moveTo(60, 80);
    EXPECT_THAT(root->children, ElementsAre(items));
}

TEST_F(LabelTest, ABalloonFitsItsTextStandsOffTheScreenEdgesAndGoesOnAPress) {
    new Balloon("Damage\n4D+2", 2);
    EXPECT_THAT((std::vector{balloonWindow->width, balloonWindow->height}),
                ElementsAre(FloatEq(measureText("Damage\n4D+2", 2) + 1), 5));
    // The pointer in pixels, the balloon's size, and where it must stand.
    std::tuple<int, int, float, float, float, float> cases[] = {
        {815, 384, 20, 6, 815 / 10.24f - 20.5f, 43.5f},  // short of the room on the right by under a unit
        {512, 384, 60, 6, 39.5f, 43.5f},                 // too wide for either side: against the right edge
        {512, 50, 20, 6, 50.5f, 50 / 7.68f + 0.5f},      // short of the room above by under a unit: below
        {512, 422, 20, 60, 50.5f, 39.5f},                // below, but past the bottom: pushed up
        {512, 760, 20, 6, 50.5f, 93.5f},                 // room above, yet near the bottom: down to the edge
        {512, 714, 20, 6.8f, 50.5f, 714 / 7.68f - 7.3f}, // room above, just clear of the bottom: above
    };
    moveTo(30, 30); // the root is the hover window from here on, so the balloon stays
    for (auto [px, py, w, h, x, y] : cases) {
        new Balloon("x", 1.5f);
        balloonWindow->width = w;
        balloonWindow->height = h;
        movePixels(px, py);
        ASSERT_NE(balloonWindow, nullptr);
        EXPECT_NEAR(balloonWindow->x, x, 1e-3) << px;
        EXPECT_NEAR(balloonWindow->y, y, 1e-3) << py;
    }
    press();
    EXPECT_EQ(balloonWindow, nullptr);
}

} // namespace
