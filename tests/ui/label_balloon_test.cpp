// Menu entries and the one balloon under the real pointer: the light of a menu entry, and the balloon's size,
// its place against each screen edge, and the ways it goes away.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/menu_entry.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

class LabelTest : public UiTest {
  protected:
    EventLog log;
    // Entering notes the red of the entry's background as the handler sees it and shows a balloon.
    int entered(Window* w) {
        log.push_back("enter at " + std::to_string(std::lround(w->backColour[0] * 100)));
        new Balloon("Skills: what a character can do", 1.5f);
        return 0;
    }
    int left(Window* w) {
        log.push_back("leave at " + std::to_string(std::lround(w->backColour[0] * 100)));
        return 0;
    }
    MenuEntry* entry(float y) {
        auto* e = new MenuEntry(root, "Items", 10, y, 30, 4, "");
        e->mouseEnterHandler.bind(this, &LabelTest::entered);
        e->mouseLeaveHandler.bind(this, &LabelTest::left);
        return e;
    }
};

TEST_F(LabelTest, AMenuEntryLightsUpAfterItsHandlerAndComesBackWithABalloonPlacedInTheSameStep) {
    MenuEntry* e = entry(40);
    frame();
    EXPECT_EQ(countPixels(11, 39.7f, 28, 0.6f, [](Rgb c) { return c.r > 10 && c.r < 150; }), 0)
        << "between the black screen and the grey entry, no visible outline";
    movePixels(256, 322); // (25, 41.93)
    EXPECT_TRUE(near(pixel(35, 43), {217, 217, 217}, 1)) << pixel(35, 43);
    ASSERT_NE(balloonWindow, nullptr);
    EXPECT_NEAR(balloonWindow->x, 25.5f, 1e-3);
    EXPECT_NEAR(balloonWindow->y, 322 / 7.68f - 3, 1e-3) << "1.5 + 1 high, half a unit above";
    EXPECT_TRUE(near(pixel(26, 322 / 7.68f - 0.8f), {179, 179, 179}, 2)) << "drawn over the lit entry";
    screenshot("balloon");
    moveTo(60, 60);
    EXPECT_TRUE(near(pixel(35, 43), {179, 179, 179}, 1)) << pixel(35, 43);
    EXPECT_FLOAT_EQ(e->backColour[2], 0.7f);
    EXPECT_THAT(log, ElementsAre("enter at 70", "leave at 85"));
}

TEST_F(LabelTest, ABalloonFitsItsTextAndStandsBesideThePointerOffTheScreenEdges) {
    new Balloon("Damage\n4D+2", 2);
    EXPECT_FLOAT_EQ(balloonWindow->width, measureText("Damage\n4D+2", 2) + 1);
    EXPECT_FLOAT_EQ(balloonWindow->height, 5);
    struct {
        const char* where;
        int px, py; // the pointer, in pixels
        float w, h; // the balloon's size
        float x, y; // where it must stand
    } cases[] = {
        {"middle: right of and above the pointer", 512, 384, 20, 6, 50.5f, 43.5f},
        {"right edge, short of the room by under a unit: flips", 815, 384, 20, 6, 815 / 10.24f - 20.5f,
         43.5f},
        {"too wide for either side: against the right edge", 512, 384, 60, 6, 39.5f, 43.5f},
        {"top edge, short of the room by under a unit: below", 512, 50, 20, 6, 50.5f, 50 / 7.68f + 0.5f},
        {"below, but past the bottom: pushed up", 512, 422, 20, 60, 50.5f, 39.5f},
        {"room above, yet near the bottom: pushed down to the edge", 512, 760, 20, 6, 50.5f, 93.5f},
        {"room above, and just clear of the bottom: stays above", 512, 714, 20, 6.8f, 50.5f,
         714 / 7.68f - 7.3f},
    };
    moveTo(30, 30); // the root is the hover window from here on, so the balloon stays
    for (auto& c : cases) {
        new Balloon("x", 1.5f);
        balloonWindow->width = c.w;
        balloonWindow->height = c.h;
        movePixels(c.px, c.py);
        ASSERT_NE(balloonWindow, nullptr) << c.where;
        EXPECT_NEAR(balloonWindow->x, c.x, 1e-3) << c.where;
        EXPECT_NEAR(balloonWindow->y, c.y, 1e-3) << c.where;
    }
}

TEST_F(LabelTest, ABalloonGoesOnALeftOrRightPressAndOnAHoverChangeButNotOnTheThirdButton) {
    new Probe(root, "left half", 0, 0, 50, 100, &log);
    moveTo(20, 50);
    for (int button : {2, 0, 1}) {
        new Balloon("tip", 1.5f);
        press(button);
        EXPECT_EQ(balloonWindow != nullptr, button == 2) << "button " << button;
        release(button);
    }
    new Balloon("tip", 1.5f);
    moveTo(25, 55);
    EXPECT_NE(balloonWindow, nullptr) << "a move over the same window keeps it";
    moveTo(75, 55);
    EXPECT_EQ(balloonWindow, nullptr);
}

} // namespace
