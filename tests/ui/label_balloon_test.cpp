// Labels, menu entries and balloons with the real pointer: what a label draws and takes, the light
// of a menu entry, and the one balloon: its size, its place against each screen edge, and the
// ways it goes away.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/balloon.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"
#include "toolkit/menu_entry.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

bool isRed(Rgb c) {
    return c.r > 150 && c.g < 80 && c.b < 80;
}
bool isGreen(Rgb c) {
    return c.g > 150 && c.r < 80 && c.b < 80;
}
bool isBlue(Rgb c) {
    return c.b > 150 && c.r < 80 && c.g < 80;
}

// Counts the balloons that died, so that a replaced one can be seen to go.
int balloonsGone = 0;
class CountedBalloon : public Balloon {
  public:
    CountedBalloon(std::string text, float size) : Balloon(std::move(text), size) {}
    ~CountedBalloon() override { ++balloonsGone; }
};

// Shows a balloon on entering, noting the background colour that the entry had at that moment.
struct Describer {
    std::vector<std::string> log;
    int enter(Window* w) {
        log.push_back("enter at " + std::to_string(static_cast<int>(w->backColour[0] * 100 + 0.5f)));
        new CountedBalloon("Skills: what a character can do", 1.5f);
        return 0;
    }
    int leave(Window* w) {
        log.push_back("leave at " + std::to_string(static_cast<int>(w->backColour[0] * 100 + 0.5f)));
        return 0;
    }
};

class LabelTest : public UiTest {
  protected:
    EventLog log;
    Describer describer;
    void SetUp() override {
        UiTest::SetUp();
        balloonsGone = 0;
    }
};

TEST_F(LabelTest, ALabelDrawsOnlyItsTextYetTakesThePointer) {
    Probe* under = new Probe(root, "under", 10, 10, 40, 10, &log);
    under->paint = false;
    Label* label = new Label(root, "Strength 3D+1", 10, 10, 40, 10, "");
    label->backColour[0] = 1;
    label->backColour[1] = label->backColour[2] = 0;
    label->borderColour[1] = 1;
    label->textColour[2] = 1;
    frame();
    EXPECT_EQ(countPixels(9, 9, 42, 12, isRed), 0) << "no background";
    EXPECT_EQ(countPixels(9, 9, 42, 12, isGreen), 0) << "no outline";
    Span across = columnsWhere(9, 9, 42, 12, isBlue);
    EXPECT_NEAR(across.first, 10 + (10 - 1.5f - 0.1f) / 2 + 0.25f, 0.4) << "left aligned after the margin";
    click(30, 15);
    EXPECT_THAT(log, ElementsAre()) << "the label, not the window beneath, took the click";
    EXPECT_EQ(focusWindow, label);
}

TEST_F(LabelTest, AMenuEntryLightsUpUnderThePointerAndComesBack) {
    MenuEntry* entry = new MenuEntry(root, "Items", 10, 10, 30, 4, "");
    entry->mouseEnterHandler.bind(&describer, &Describer::enter);
    entry->mouseLeaveHandler.bind(&describer, &Describer::leave);
    frame();
    EXPECT_TRUE(near(pixel(35, 12), Rgb{179, 179, 179}, 1)) << pixel(35, 12);
    // The outline is there but invisible: nothing dark along the top and right edges.
    auto dark = [](Rgb c) { return c.r > 10 && c.r < 150; };
    EXPECT_EQ(countPixels(11, 9.7f, 28, 0.6f, dark) + countPixels(39.8f, 10.5f, 0.4f, 3, dark), 0);
    moveTo(35, 12);
    EXPECT_TRUE(near(pixel(35, 12), Rgb{217, 217, 217}, 1)) << pixel(35, 12);
    moveTo(60, 60);
    EXPECT_TRUE(near(pixel(35, 12), Rgb{179, 179, 179}, 1)) << pixel(35, 12);
    EXPECT_FLOAT_EQ(entry->backColour[0], 0.7f);
    EXPECT_THAT(describer.log, ElementsAre("enter at 70", "leave at 85"))
        << "the handlers run before the change";

    entry->backColour[0] = 0.2f;
    entry->backColour[1] = 0.4f;
    entry->backColour[2] = 0.6f;
    moveTo(35, 12);
    EXPECT_TRUE(near(pixel(35, 12), Rgb{89, 140, 191}, 1)) << pixel(35, 12);
    moveTo(35, 30);
    EXPECT_TRUE(near(pixel(35, 12), Rgb{51, 102, 153}, 1)) << pixel(35, 12);
}

TEST_F(LabelTest, ABalloonFitsItsTextAndHoldsItInALabel) {
    new Balloon("Damage\n4D+2", 2);
    ASSERT_NE(balloonWindow, nullptr);
    float w = measureText("Damage\n4D+2", 2);
    EXPECT_FLOAT_EQ(balloonWindow->width, w + 1);
    EXPECT_FLOAT_EQ(balloonWindow->height, 5);
    EXPECT_EQ(balloonWindow->parent, nullptr);
    ASSERT_EQ(balloonWindow->children.size(), 1u);
    auto* label = dynamic_cast<Label*>(balloonWindow->children[0]);
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->caption, "Damage\n4D+2");
    EXPECT_EQ(label->fontSize, 2) << "takes the balloon's size";
    EXPECT_FLOAT_EQ(label->x, 0.25f);
    EXPECT_FLOAT_EQ(label->y, 0.5f);

    new Balloon("", 2);
    EXPECT_EQ(balloonWindow->width, 1);
    EXPECT_EQ(balloonWindow->height, 3);
}

TEST_F(LabelTest, ThereIsOnlyOneBalloonAndItIsDrawnOverEverything) {
    new CountedBalloon("first", 1.5f);
    Balloon* second = new CountedBalloon("second", 1.5f);
    EXPECT_EQ(balloonsGone, 1) << "the new balloon deleted the old";
    EXPECT_EQ(balloonWindow, second);
    Window* later = new Window(root, 0, 0, 50, 50, "");
    later->backColour[0] = 1;
    later->backColour[1] = later->backColour[2] = 0;
    second->x = 10;
    second->y = 10;
    frame();
    EXPECT_TRUE(near(pixel(10.6f, 10.6f), Rgb{179, 179, 179}, 2)) << "over a window made after it";
    EXPECT_GT(inkIn(10.3f, 10.6f, second->width - 0.6f, second->height - 1, {179, 179, 179}, 60), 20)
        << "with its text";
}

// Each case: the pointer in pixels, the balloon's size, and where the balloon must stand.
struct Placement {
    const char* where;
    int px, py;
    float w, h;
    float x, y;
};

TEST_F(LabelTest, ABalloonStandsBesideThePointerAndKeepsOffTheScreenEdges) {
    const Placement cases[] = {
        // room to the right and above: right of and above the pointer
        {"middle", 512, 384, 20, 6, 50.5f, 43.5f},
        {"left edge", 0, 384, 20, 6, 0.5f, 43.5f},
        // no room to the right: flips to the left of the pointer
        {"right edge", 1000, 384, 20, 6, 97.65625f - 20.5f, 43.5f},
        // too wide for either side: against the right edge
        {"too wide", 512, 384, 60, 6, 39.5f, 43.5f},
        // no room above: below the pointer
        {"top edge", 512, 20, 20, 6, 50.5f, 20 / 7.68f + 0.5f},
        // below the pointer but past the bottom: pushed up from the bottom edge
        {"too tall", 512, 422, 20, 60, 50.5f, 39.5f},
        // room above, but the bottom rule still applies near the bottom edge
        {"bottom edge", 512, 760, 20, 6, 50.5f, 93.5f},
    };
    moveTo(30, 30); // the root is the hover window from here on
    for (const Placement& c : cases) {
        new Balloon("x", 1.5f);
        balloonWindow->width = c.w;
        balloonWindow->height = c.h;
        movePixels(c.px, c.py);
        ASSERT_NE(balloonWindow, nullptr) << c.where << ": moving over the same window keeps it";
        EXPECT_NEAR(balloonWindow->x, c.x, 1e-3) << c.where;
        EXPECT_NEAR(balloonWindow->y, c.y, 1e-3) << c.where;
    }
}

TEST_F(LabelTest, ABalloonMadeOnEnteringIsPlacedInTheSameStep) {
    MenuEntry* entry = new MenuEntry(root, "Skills", 10, 40, 30, 4, "");
    entry->mouseEnterHandler.bind(&describer, &Describer::enter);
    movePixels(256, 322); // (25, 41.93)
    ASSERT_NE(balloonWindow, nullptr);
    EXPECT_NEAR(balloonWindow->x, 25.5f, 1e-3);
    EXPECT_NEAR(balloonWindow->y, 322 / 7.68f - 3, 1e-3) << "above the pointer: 1.5 + 1 high, plus 0.5";
    // Below its text, where it covers the lit entry.
    EXPECT_TRUE(near(pixel(26, 322 / 7.68f - 0.8f), Rgb{179, 179, 179}, 2)) << "drawn there, over the entry";
    screenshot("balloon");
}

TEST_F(LabelTest, ABalloonGoesOnALeftOrRightPressAndOnAHoverChangeButNotOnTheThirdButton) {
    new Probe(root, "left half", 0, 0, 50, 100, &log);
    moveTo(20, 50);
    new CountedBalloon("tip", 1.5f);
    press(2);
    release(2);
    EXPECT_NE(balloonWindow, nullptr) << "the third button leaves it";
    moveTo(25, 55);
    EXPECT_NE(balloonWindow, nullptr) << "a move within the same window leaves it";
    press(0);
    EXPECT_EQ(balloonWindow, nullptr);
    release(0);
    new CountedBalloon("tip", 1.5f);
    press(1);
    EXPECT_EQ(balloonWindow, nullptr);
    release(1);
    new CountedBalloon("tip", 1.5f);
    moveTo(75, 55);
    EXPECT_EQ(balloonWindow, nullptr) << "the pointer left the window";
    EXPECT_EQ(balloonsGone, 3);
}

} // namespace
