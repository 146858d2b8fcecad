// Dialogues and message boxes under the real pointer: dragged by the title bar and not by a
// label, closed from a button inside, two default message boxes, and what a message box draws.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"
#include "toolkit/message_box.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

class DialogueTest : public UiTest {
  protected:
    EventLog log;
    // Logs each close, and whether the dialogue was still whole: in its parent, with its children.
    int closed(Window* w) {
        auto* d = static_cast<Dialogue*>(w);
        bool whole = std::count(d->parent->children.begin(), d->parent->children.end(), d) == 1 &&
                     !d->children.empty();
        log.push_back(d->caption + (whole ? " closed whole" : " closed broken"));
        return 0;
    }
    void watchClose(Window* w) { w->closeHandler.bind(this, &DialogueTest::closed); }
};

TEST_F(DialogueTest, DraggedByItsTitleBarItMovesAndComesFirstButALabelOrAClickDoNothing) {
    Dialogue* first = new Dialogue(root, "First", 10, 10, 40, 20, "");
    Dialogue* second = new Dialogue(root, "Second", 60, 60, 30, 20, "");
    new Label(first, "Strength", 2, 5, 30, 3, "");
    click(45, 20);
    drag(20, 16.5f, 20, 50, 1); // from the label straight off the dialogue
    EXPECT_EQ(first->y, 10);
    EXPECT_THAT(root->children, ElementsAre(first, second)) << "neither the click nor the label raised it";
    drag(35, 11.5f, 45, 61.5f);
    EXPECT_NEAR(first->x, 20 - 4 / pixelsPerUnitX, 0.15) << "grabbed 4 pixels after the press";
    EXPECT_NEAR(first->y, 60, 0.15);
    EXPECT_THAT(root->children, ElementsAre(second, first));
}

TEST_F(DialogueTest, TwoDefaultMessageBoxesStackAndOkClosesTheFrontOneFirst) {
    new Probe(root, "below", 20, 30, 60, 40, &log);
    auto* first = new MessageBox(root, "First", "Out of range.", -1, -1, 0, 0);
    auto* second = new MessageBox(root, "Second", "No ammunition.", -1, -1, 0, 0);
    watchClose(first);
    watchClose(second);
    float okX = 35 + 16.5f, okY = 38 + 12.5f; // "OK" at (13, 11), 7 x 3, in a box at (35, 38)
    click(okX, okY);
    press();
    release();
    EXPECT_THAT(log, ElementsAre("Second closed whole"))
        << "the box beneath gets nothing until the pointer moves";
    movePixels(toPixelX(okX) + 1, toPixelY(okY));
    press();
    release();
    press();
    release();
    movePixels(toPixelX(okX) + 2, toPixelY(okY));
    EXPECT_THAT(log, ElementsAre("Second closed whole", "First closed whole", "below:enter"));
}

TEST_F(DialogueTest, AMessageBoxTakesItsDefaultsFromTheWidthAndEachCoordinate) {
    Window* panel = new Window(root, 0, 0, 60, 50, "");
    // The subtrahends of the placement are 30 and 24, not the default size of 35 x 15.
    auto* tall = new MessageBox(root, "", "", -1, -1, 0, 40);
    auto* low = new MessageBox(root, "", "", -1, 100, 50, 20);
    auto* inner = new MessageBox(panel, "", "", -1, -1, 0, 0);
    EXPECT_THAT((std::vector{tall->x, tall->y, tall->width, tall->height}), ElementsAre(35, 38, 35, 15));
    EXPECT_THAT((std::vector{low->x, low->y, low->width, low->height}), ElementsAre(35, 100, 50, 20));
    EXPECT_THAT((std::vector{inner->x, inner->y}), ElementsAre(15, 13));
}

TEST_F(DialogueTest, AMessageBoxShowsATitleBarAndTwoLinesOfItsMessageInTheBorderColour) {
    Window* paper = new Window(root, 0, 0, 60, 40, "");
    paper->backColour[0] = paper->backColour[1] = paper->backColour[2] = 1;
    auto* box =
        new MessageBox(root, "Report",
                       "The target stands behind heavy cover and the shot will need a roll of twenty or "
                       "more, which is beyond this weapon at this range. Move closer, aim for a round, "
                       "or throw a grenade over the wall instead; the referee may allow a called shot.",
                       10, 10, 0, 0);
    box->text->borderColour[0] = 0.9f;
    box->text->textColour[1] = 0.9f;
    auto red = [](Rgb c) { return c.r > 120 && c.g < 90; };
    auto white = [](Rgb c) { return c.r > 200 && c.g > 200; };
    frame();
    EXPECT_EQ(pixel(40, 12.8f), (Rgb{0, 0, 0})) << "a black bar of 3 units";
    EXPECT_NEAR(columnsWhere(10, 10, 35, 3, white).last, 10.575f + measureText("Report", 1.75f), 0.4)
        << "a white title of 1.5 + 0.25 after a margin of 0.575";
    // The text box stands at (11, 14), 33 x 5; its lines start half a unit in, 1.5 apart.
    EXPECT_GT(countPixels(11.5f, 14.6f, 32, 1.3f, red), 30);
    EXPECT_GT(countPixels(11.5f, 16.1f, 32, 1.3f, red), 30);
    EXPECT_EQ(countPixels(11.5f, 17.6f, 32, 1.3f, red), 0) << "a third line would end below 4";
    EXPECT_EQ(countPixels(10, 10, 35, 15, [](Rgb c) { return c.g > 120 && c.r < 90; }), 0)
        << "no text colour";
    screenshot("message_box");
    box->text->height = 10;
    frame();
    EXPECT_GT(countPixels(11.5f, 17.6f, 32, 1.3f, red), 30) << "the cut is the height's doing";
}

} // namespace
