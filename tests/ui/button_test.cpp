// Buttons and switches read back as pixels (the bevel, the centred caption, no outline) and
// clicked with the real pointer (switch states, the bound variable of a DirectSwitch).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ui_driver.h"
#include "toolkit/button.h"
#include "toolkit/font.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

constexpr Rgb light{217, 217, 217}; // 0.85
constexpr Rgb dark{140, 140, 140};  // 0.55

// Notes what each click handler saw at the moment it ran.
struct ClickWatcher {
    std::vector<std::string> seen;
    bool* variable = nullptr;
    int clicked(Window* w) {
        auto* b = static_cast<Button*>(w);
        std::string entry = b->caption + (b->pressed ? " pressed" : " raised");
        if (variable) entry += *variable ? " true" : " false";
        seen.push_back(entry);
        return 0;
    }
};

class ButtonTest : public UiTest {
  protected:
    ClickWatcher watcher;

    // Pixels of a colour along each edge of a button at (20, 20), 20 x 6.
    int onTop(Rgb c) { return countPixels(21, 19.7f, 18, 0.6f, is(c)); }
    int onBottom(Rgb c) { return countPixels(21, 25.7f, 18, 0.6f, is(c)); }
    int onLeft(Rgb c) { return countPixels(19.8f, 21, 0.4f, 4, is(c)); }
    int onRight(Rgb c) { return countPixels(39.8f, 21, 0.4f, 4, is(c)); }
    static std::function<bool(Rgb)> is(Rgb c) {
        return [c](Rgb p) { return near(p, c, 3); };
    }
};

TEST_F(ButtonTest, ARaisedButtonIsLightAboveAndLeftDarkBelowAndRightWithNoOutline) {
    Button* b = new Button(root, "", 20, 20, 20, 6, "");
    b->backColour[0] = 0.2f;
    b->backColour[1] = 0.3f;
    b->backColour[2] = 0.8f;
    b->backColour[3] = 0; // plays no part
    b->borderColour[0] = 1;
    b->borderColour[1] = b->borderColour[2] = 0;
    frame();
    EXPECT_TRUE(near(pixel(30, 23), Rgb{51, 77, 204}, 2)) << pixel(30, 23);
    EXPECT_GT(onTop(light), 150);
    EXPECT_GT(onLeft(light), 25);
    EXPECT_GT(onBottom(dark), 150);
    EXPECT_GT(onRight(dark), 25);
    EXPECT_EQ(onTop(dark) + onLeft(dark) + onBottom(light) + onRight(light), 0);
    EXPECT_EQ(countPixels(18, 18, 24, 10, [](Rgb c) { return c.r > 200 && c.g < 50; }), 0)
        << "no red outline";

    // Holding the mouse button on a plain button changes nothing on the screen.
    moveTo(30, 23);
    press();
    EXPECT_GT(onTop(light), 150);
    EXPECT_EQ(onTop(dark), 0);
    release();
}

TEST_F(ButtonTest, APressedButtonIsSunken) {
    Button* b = new Button(root, "", 20, 20, 20, 6, "");
    b->pressed = true;
    frame();
    EXPECT_GT(onTop(dark), 150);
    EXPECT_GT(onLeft(dark), 25);
    EXPECT_GT(onBottom(light), 150);
    EXPECT_GT(onRight(light), 25);
    EXPECT_EQ(onTop(light) + onLeft(light) + onBottom(dark) + onRight(dark), 0);
}

TEST_F(ButtonTest, TheCaptionIsCentredInTheTextColour) {
    auto ink = [](Rgb c) { return c.r < 100 && c.b > 150; };
    for (const char* caption : {"OK", "Roll the dice"}) {
        root->deleteChildren();
        Button* b = new Button(root, caption, 20, 20, 30, 5, "");
        b->textColour[2] = 1; // blue
        frame();
        Span across = columnsWhere(20.5f, 20.5f, 29, 4, ink);
        Span down = rowsWhere(20.5f, 20.5f, 29, 4, ink);
        float w = measureText(caption, 1.5f);
        EXPECT_NEAR(across.first, 35 - w / 2, 0.4) << caption;
        EXPECT_NEAR(across.last, 35 + w / 2, 0.4) << caption;
        // The glyph box: 1.5 high, its top at (5 - 1.5 - 0.1) / 2 = 1.7 from the button's top.
        EXPECT_GE(down.first, 21.6f) << caption;
        EXPECT_LE(down.last, 23.3f) << caption;
    }
}

TEST_F(ButtonTest, AButtonClickFiresItsHandlerOnce) {
    Button* b = new Button(root, "Go", 20, 20, 20, 6, "");
    b->leftClickHandler.bind(&watcher, &ClickWatcher::clicked);
    clickOn(b);
    EXPECT_THAT(watcher.seen, ElementsAre("Go raised"));
}

TEST_F(ButtonTest, ASwitchTurnsOverBeforeItsHandlerRunsAndShowsItsState) {
    Switch* s = new Switch(root, "Prone", 20, 20, 20, 6, "");
    s->leftClickHandler.bind(&watcher, &ClickWatcher::clicked);
    clickOn(s);
    frame();
    EXPECT_GT(onTop(dark), 150) << "on: sunken";
    clickOn(s);
    frame();
    EXPECT_GT(onTop(light), 150) << "off: raised";
    EXPECT_THAT(watcher.seen, ElementsAre("Prone pressed", "Prone raised"));
}

TEST_F(ButtonTest, ADirectSwitchTurnsItsVariableOverAndShowsWhatItLastWrote) {
    bool showWalls = true;
    watcher.variable = &showWalls;
    DirectSwitch* s = new DirectSwitch(root, &showWalls, "Walls", 20, 20, 20, 6, "");
    s->leftClickHandler.bind(&watcher, &ClickWatcher::clicked);
    frame();
    EXPECT_GT(onTop(dark), 150) << "takes the variable at construction";
    clickOn(s);
    EXPECT_FALSE(showWalls);

    // A change made elsewhere does not show ...
    showWalls = true;
    frame();
    EXPECT_GT(onTop(light), 150);
    // ... and the next click turns the variable over from what it is, not from what was shown.
    moveTo(30, 24);
    press();
    release();
    EXPECT_FALSE(showWalls);
    EXPECT_THAT(watcher.seen, ElementsAre("Walls raised false", "Walls raised false"));
}

} // namespace
