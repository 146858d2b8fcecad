// Dialogues dragged by the real pointer; default message boxes: where they stand, how they look, their OK.
#include <gmock/gmock.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/font.h"
#include "toolkit/label.h"
#include "toolkit/message_box.h"
#include "toolkit/text.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

class DialogueTest : public UiTest {
  protected:
    EventLog log;
    // Logs each close, and whether the dialogue was still whole: in its parent, with its children.
    int closed(Window* w) {
        bool whole = std::ranges::count(w->parent->children, w) == 1 && !w->children.empty();
        log.push_back(static_cast<Dialogue*>(w)->caption + (whole ? " closed whole" : " closed broken"));
        return 0;
    }
    void watchClose(Window* w) { w->closeHandler.bind(this, &DialogueTest::closed); }
};

TEST_F(DialogueTest, DraggedByItsTitleBarItMovesAndComesLastButALabelOrAClickDoNothing) {
    Dialogue* first = new Dialogue(root, "First", 10, 10, 40, 20, "");
    Dialogue* second = new Dialogue(root, "Second", 60, 60, 30, 20, "");
    new Label(first, "Strength", 2, 5, 30, 3, "");
    click(45, 20);
    drag(20, 16.5f, 20, 50, 1); // from the label straight off the dialogue
    EXPECT_EQ(first->y, 10);
    EXPECT_THAT(root->children, ElementsAre(first, second));
    drag(35, 11.5f, 45, 61.5f);
    EXPECT_NEAR(first->y, 60, 0.15);
    EXPECT_THAT(root->children, ElementsAre(second, first));
}

TEST_F(DialogueTest, DefaultMessageBoxesStackShowTheirMessageAndOkClosesTheFrontOneFirst) {
    new Probe(root, "below", 20, 30, 60, 40, &log);
    auto* inner = new MessageBox(new Window(root, 0, 0, 60, 50, ""), "", "", -1, -1, 0, 0);
    auto* first = new MessageBox(root, "First", "Out of range.", -1, -1, 0, 0);
    auto* second = new MessageBox(root, "Second",
                                  "The target stands behind heavy cover and needs a roll of twenty or more, "
                                  "beyond this weapon at this range. Move closer, or aim for a round.",
                                  -1, -1, 0, 40);
    // Placed by the subtrahends 30 and 24 from the parent's size, not by the default size of 35 x 15.
    EXPECT_THAT((std::vector{second->x, second->y, second->width, second->height, inner->x, inner->y}),
                ElementsAre(35, 38, 35, 15, 15, 13));
    // A black title bar, the title in white at 1.5 + 0.25 after a margin of 0.575, and the text in the
    // border colour at (36, 42), 33 x 5: lines half a unit in and 1.5 apart; a third would end below 4.
    second->text->borderColour[0] = 0.9f;
    auto red = [](Rgb c) { return c.r > 120 && c.g < 90; };
    frame();
    EXPECT_EQ(pixel(65, 40.8f), (Rgb{0, 0, 0}));
    EXPECT_NEAR(columnsWhere(35, 38, 35, 3, [](Rgb c) { return c.r > 200; }).last,
                35.575f + measureText("Second", 1.75f), 0.4);
    for (float y : {42.6f, 44.1f, 45.6f})
        EXPECT_EQ(countPixels(36.5f, y, 32, 1.3f, red) > 30, y < 45) << y;
    second->text->height = 10;
    frame();
    EXPECT_GT(countPixels(36.5f, 45.6f, 32, 1.3f, red), 30) << "the cut is the height's doing";
    watchClose(first);
    watchClose(second);
    // "OK" at (13, 11), 7 x 3: clicked, pressed again where it was, then clicked one pixel further.
    for (float x : {51.5f, 51.6f}) {
        click(x, 50.5f);
        press();
        release();
    }
    moveTo(51.8f, 50.5f);
    EXPECT_THAT(log, ElementsAre("Second closed whole", "First closed whole", "below:enter"));
}

TEST_F(DialogueTest, TextWrapsWithinItsMarginsAndShowsALineThatEndsExactlyAtItsLimit) {
    // Text in red on a grey box; a row of it counts as drawn when it leaves red pixels.
    auto text = [&](float x, float y, float w, float h, const char* caption) {
        Text* t = new Text(root, x, y, w, h, "");
        t->caption = caption;
        t->borderColour[0] = 0.9f;
        return t;
    };
    auto red = [this](float x, float y, float w) {
        return countPixels(x, y, w, 1.2f, [](Rgb c) { return c.r > 120 && c.g < 90; }) > 10;
    };
    // The wrap width is the box's less its margins: a line as wide as the box less half a unit
    // breaks, one as wide as the box less one and a half units does not.
    float two = measureText("wwww wwww", 1.5f);
    text(10, 10, two + 0.5f, 10, "wwww wwww");
    text(50, 10, two + 1.5f, 10, "wwww wwww");
    // A box 5.5 high leaves 4.5 for lines of 1.5: the third ends exactly there and is drawn, the
    // fourth would end below and is not (it would stand below the box, where nothing else is red).
    Text* cut = text(10, 30, measureText("wwww", 1.5f) + 1.5f, 5.5f, "wwww wwww wwww wwww");
    frame();
    EXPECT_TRUE(red(10.6f, 12.1f, two));
    EXPECT_FALSE(red(50.6f, 12.1f, two));
    EXPECT_TRUE(red(10.6f, 33.6f, cut->width - 1.2f));
    EXPECT_FALSE(red(10.6f, 35.65f, cut->width - 1.2f));
}

} // namespace
