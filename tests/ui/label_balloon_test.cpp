// Menu entries and the balloon under the real pointer: the light, the balloon's size, place and end.
#include <gmock/gmock.h>

#include <GL/gl.h>

#include "platform/glfw2.h"
#include "support/probe.h"
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
    // The edge tests are strict: pointers whose balloon would end exactly on an edge.
    float mx = 512 / pixelsPerUnitX, my = 714 / pixelsPerUnitY, high = 50 / pixelsPerUnitY;
    ASSERT_EQ(mx + 1 + (99 - mx), 100);
    ASSERT_EQ(my + (100 - my), 100);
    // The pointer in pixels, the balloon's size, and where it must stand.
    std::tuple<int, int, float, float, float, float> cases[] = {
        {815, 384, 20, 6, 815 / 10.24f - 20.5f, 43.5f},   // short of the room on the right by under a unit
        {512, 384, 99 - mx, 6, mx - (99.5f - mx), 43.5f}, // no room on the right by exactly a unit: left
        {512, 384, 60, 6, 39.5f, 43.5f},                  // too wide for either side: against the right edge
        {512, 384, mx - 0.5f, 6, 0, 43.5f},               // flipped left exactly onto the edge: stays
        {512, 50, 20, 6, 50.5f, high + 0.5f},             // short of the room above by under a unit: below
        {512, 50, 20, high - 1, 50.5f, high + 0.5f},      // no room above by exactly a unit: below
        {512, 422, 20, 60, 50.5f, 39.5f},                 // below, but past the bottom: pushed up
        {512, 760, 20, 6, 50.5f, 93.5f},                  // room above, yet near the bottom: down to the edge
        {512, 714, 20, 6.8f, 50.5f, 714 / 7.68f - 7.3f},  // room above, just clear of the bottom: above
        {512, 714, 20, 100 - my, 50.5f, my - (100.5f - my)}, // room above, ending exactly at the bottom
    };
    moveTo(30, 30); // the root is the hover window from here on, so the balloon stays
    for (auto [px, py, w, h, x, y] : cases) {
        new Balloon("x", 1.5f);
        balloonWindow->width = w;
        balloonWindow->height = h;
        platform::script::movePointer(px + 1, py); // in the same frame: only the last step counts
        movePixels(px, py);
        ASSERT_NE(balloonWindow, nullptr);
        EXPECT_NEAR(balloonWindow->x, x, 1e-3) << px << ", " << w;
        EXPECT_NEAR(balloonWindow->y, y, 1e-3) << py << ", " << h;
    }
    press();
    EXPECT_EQ(balloonWindow, nullptr);
}

TEST_F(LabelTest, ABalloonIsAGreyBoxWithItsTextAQuarterUnitInAndHalfAUnitDown) {
    // The text's label stands at (0.25, 0.5); within it the caption's own margins move a text as
    // high as the label 0.2 right and 0.05 up. The same box drawn by hand, 25 units further on,
    // must look the same pixel for pixel.
    const std::string text = "Damage 4D+2\nPResist";
    moveTo(5, 5);
    new Balloon(text, 1.5f);
    balloonWindow->x = balloonWindow->y = 20;
    Window* copy = new Window(root, 45, 45, balloonWindow->width, balloonWindow->height, "");
    new Painter(copy, 0, 0, 1, 1, [&](Painter&) {
        glColor4f(0, 0, 0, 1);
        drawText(text, 0.45f, 0.45f, 1.5f);
    });
    frame();
    int differ = 0, ink = 0;
    for (int py = toPixelY(20) - 1; py <= toPixelY(20 + balloonWindow->height) + 1; ++py)
        for (int px = toPixelX(20) - 1; px <= toPixelX(20 + balloonWindow->width) + 1; ++px) {
            Rgb c = pixelAt(px, py);
            differ += !near(c, pixelAt(px + 256, py + 192), 8);
            ink += c.r < 60;
        }
    EXPECT_GT(ink, 100);
    EXPECT_EQ(differ, 0);
}

} // namespace
