// Dialogues, message boxes and text, driven with real input: dragging by the title bar and not by
// a label, closing from a button inside, two message boxes stacked, and what they draw.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/button.h"
#include "toolkit/dialogue.h"
#include "toolkit/font.h"
#include "toolkit/input_state.h"
#include "toolkit/label.h"
#include "toolkit/message_box.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

// Logs each close while checking that the dialogue is still whole and still in its parent.
struct CloseWatcher {
    EventLog* log;
    int closed(Window* w) {
        auto* d = dynamic_cast<Dialogue*>(w);
        bool inParent =
            d && d->parent &&
            std::find(d->parent->children.begin(), d->parent->children.end(), d) != d->parent->children.end();
        std::string whole = d && inParent && !d->children.empty() ? "whole" : "broken";
        if (auto* box = dynamic_cast<MessageBox*>(w)) whole += " saying " + box->text->caption;
        log->push_back("closed " + (d ? d->caption : "?") + " " + whole);
        return 0;
    }
};

bool isWhite(Rgb c) {
    return c.r > 200 && c.g > 200 && c.b > 200;
}
bool isBlack(Rgb c) {
    return c.r < 30 && c.g < 30 && c.b < 30;
}

class DialogueTest : public UiTest {
  protected:
    EventLog log;
    CloseWatcher watcher{&log};
};

TEST_F(DialogueTest, DraggedByItsTitleBarItMovesAndBecomesTheLastChild) {
    Dialogue* first = new Dialogue(root, "First", 10, 10, 30, 20, "");
    Dialogue* second = new Dialogue(root, "Second", 50, 50, 30, 20, "");
    EXPECT_TRUE(first->movable);
    EXPECT_FALSE(first->fixedOrder);
    drag(35, 11.5f, 45, 61.5f);
    // The grab offset is taken 4 pixels after the press, where the drag starts.
    EXPECT_NEAR(first->x, 20 - 4 / pixelsPerUnitX, 0.15);
    EXPECT_NEAR(first->y, 60, 0.15);
    EXPECT_EQ(first->parent, root);
    EXPECT_THAT(root->children, ElementsAre(second, first));
}

TEST_F(DialogueTest, DraggedByALabelOnItItStaysWhereItIs) {
    Dialogue* dialogue = new Dialogue(root, "Sheet", 10, 10, 40, 20, "");
    Dialogue* other = new Dialogue(root, "Other", 60, 60, 20, 20, "");
    new Label(dialogue, "Strength", 2, 5, 30, 3, "");
    drag(20, 16.5f, 20, 50, 1);
    EXPECT_EQ(dialogue->x, 10);
    EXPECT_EQ(dialogue->y, 10);
    EXPECT_THAT(root->children, ElementsAre(dialogue, other)) << "nor is it raised";
    // The free surface beside the label still moves it.
    drag(45, 20, 45, 40);
    EXPECT_NEAR(dialogue->y, 30, 0.15);
}

TEST_F(DialogueTest, AClickOnADialogueDoesNotRaiseIt) {
    Dialogue* back = new Dialogue(root, "Back", 10, 10, 30, 20, "");
    Dialogue* front = new Dialogue(root, "Front", 30, 20, 30, 20, "");
    click(15, 25);
    EXPECT_EQ(focusWindow, back) << "the click reached the dialogue behind";
    EXPECT_THAT(root->children, ElementsAre(back, front));
}

TEST_F(DialogueTest, ItDrawsABlackTitleBarWithAWhiteTitleAboveItsBackground) {
    Dialogue* d = new Dialogue(root, "Initiative", 20, 20, 40, 20, "");
    d->backColour[0] = 0.2f;
    d->backColour[1] = 0.4f;
    d->backColour[2] = 0.8f;
    frame();
    EXPECT_TRUE(near(pixel(40, 30), Rgb{51, 102, 204}, 2)) << pixel(40, 30);
    EXPECT_EQ(pixel(58, 21.5f), (Rgb{0, 0, 0})) << "the bar is black beyond the title";
    EXPECT_TRUE(near(pixel(40, 23.3f), Rgb{51, 102, 204}, 2)) << "the bar ends at 3 units";
    // The title: white, at fontSize + 0.25 = 1.75, with a margin of 0.575 on the left and on top.
    float titleWidth = measureText("Initiative", 1.75f);
    Span across = columnsWhere(20, 20, 40, 3, isWhite);
    Span down = rowsWhere(20, 20, 40, 3, isWhite);
    EXPECT_NEAR(across.first, 20.575f, 0.4);
    EXPECT_NEAR(across.last, 20.575f + titleWidth, 0.4);
    EXPECT_GT(down.first, 20.5f);
    EXPECT_LT(down.last, 22.4f);
    EXPECT_EQ(countPixels(20, 23.2f, 40, 16.5f, isWhite), 0) << "nothing white below the bar";
}

TEST_F(DialogueTest, TheTitleGrowsWithTheFontSizeButTheBarDoesNot) {
    Dialogue* d = new Dialogue(root, "Wide", 20, 20, 40, 20, "");
    d->fontSize = 2.25f; // a title of 2.5 fills the bar but for its margins of 0.2
    frame();
    Span across = columnsWhere(20, 20, 40, 3, isWhite);
    EXPECT_NEAR(across.first, 20.2f, 0.4);
    EXPECT_NEAR(across.last, 20.2f + measureText("Wide", 2.5f), 0.4);
    EXPECT_TRUE(isBlack(pixel(58, 22.5f)));
    EXPECT_FALSE(isBlack(pixel(58, 23.5f)));
}

TEST_F(DialogueTest, ResizeChangesOnlyTheSize) {
    Dialogue* d = new Dialogue(root, "Roll", 20, 20, 20, 10, "");
    d->resize(40, 30);
    EXPECT_EQ(d->x, 20);
    EXPECT_EQ(d->y, 20);
    frame();
    EXPECT_TRUE(near(pixel(55, 45), Rgb{179, 179, 179}, 2)) << "drawn at the new size";
    EXPECT_TRUE(isBlack(pixel(55, 21.5f))) << "with the bar across the new width";
}

TEST_F(DialogueTest, CloseFiresTheHandlerWhileTheDialogueIsWholeThenDeletesIt) {
    Dialogue* d = new Dialogue(root, "Attack", 20, 20, 30, 20, "");
    Probe* inside = new Probe(d, "inside", 2, 5, 5, 5, &log);
    Button* done = new Button(d, "Done", 10, 14, 10, 4, "");
    done->leftClickHandler.bind(d, &Dialogue::close);
    d->closeHandler.bind(&watcher, &CloseWatcher::closed);
    (void)inside;
    clickOn(done);
    EXPECT_THAT(log, ElementsAre("closed Attack whole", "inside:destroyed"));
    EXPECT_TRUE(root->children.empty());
    EXPECT_EQ(hoverWindow, nullptr);
    EXPECT_EQ(focusWindow, nullptr);
    frame(2);
}

TEST_F(DialogueTest, ADialogueDestroyedWithoutCloseClosesSilently) {
    Dialogue* deleted = new Dialogue(root, "Deleted", 10, 10, 20, 20, "");
    Dialogue* orphan = new Dialogue(root, "With parent", 40, 10, 20, 20, "");
    deleted->closeHandler.bind(&watcher, &CloseWatcher::closed);
    orphan->closeHandler.bind(&watcher, &CloseWatcher::closed);
    delete deleted;
    root->deleteChildren();
    EXPECT_THAT(log, ElementsAre());
}

class MessageBoxTest : public DialogueTest {};

TEST_F(MessageBoxTest, TwoDefaultBoxesLieOnTopOfEachOtherAndOkClosesTheFrontOneFirst) {
    Probe* below = new Probe(root, "below", 20, 30, 60, 40, &log);
    auto* first = new MessageBox(root, "First", "Out of range.", -1, -1, 0, 0);
    auto* second = new MessageBox(root, "Second", "No ammunition.", -1, -1, 0, 0);
    first->closeHandler.bind(&watcher, &CloseWatcher::closed);
    second->closeHandler.bind(&watcher, &CloseWatcher::closed);
    for (MessageBox* box : {first, second}) {
        EXPECT_EQ(box->x, 35);
        EXPECT_EQ(box->y, 38);
        EXPECT_EQ(box->width, 35);
        EXPECT_EQ(box->height, 15);
    }
    EXPECT_THAT(root->children, ElementsAre(below, first, second));

    // "OK" stands at (13, 11) in the box, 7 x 3.
    click(35 + 16.5f, 38 + 12.5f);
    EXPECT_THAT(log, ElementsAre("closed Second whole saying No ammunition."));
    EXPECT_EQ(hoverWindow, nullptr);

    // The pointer has not moved: the box beneath gets nothing, however often the user clicks.
    press();
    release();
    EXPECT_EQ(log.size(), 1u);

    movePixels(toPixelX(35 + 16.5f) + 1, toPixelY(38 + 12.5f));
    press();
    release();
    EXPECT_THAT(log, ElementsAre("closed Second whole saying No ammunition.",
                                 "closed First whole saying Out of range."));
    EXPECT_THAT(root->children, ElementsAre(below));

    // Nor does the window below the boxes hear of the pointer until it moves.
    press();
    release();
    EXPECT_EQ(log.size(), 2u);
    movePixels(toPixelX(35 + 16.5f) + 2, toPixelY(38 + 12.5f));
    EXPECT_EQ(log.back(), "below:enter");
}

TEST_F(MessageBoxTest, OnlyTheWidthDecidesTheDefaultSizeAndEachCoordinateItsOwnDefault) {
    auto* tall = new MessageBox(root, "Tall", "", 5, 6, 0, 40);
    EXPECT_EQ(tall->width, 35);
    EXPECT_EQ(tall->height, 15) << "a height of its own does not count without a width";
    EXPECT_EQ(tall->x, 5);
    EXPECT_EQ(tall->y, 6);

    auto* low = new MessageBox(root, "Low", "", -1, 100, 50, 20);
    EXPECT_EQ(low->width, 50);
    EXPECT_EQ(low->height, 20);
    EXPECT_EQ(low->x, 35) << "centred in x only, by the fixed subtrahend of 30";
    EXPECT_EQ(low->y, 100);

    Window* panel = new Window(root, 0, 0, 60, 50, "");
    auto* inner = new MessageBox(panel, "Inner", "", -1, -1, 0, 0);
    EXPECT_EQ(inner->x, 15);
    EXPECT_EQ(inner->y, 13);
}

TEST_F(MessageBoxTest, OkKeepsItsPlaceInABoxOfAnotherSize) {
    auto* big = new MessageBox(root, "Big", "", 10, 10, 60, 40);
    big->closeHandler.bind(&watcher, &CloseWatcher::closed);
    click(10 + 16.5f, 10 + 12.5f);
    EXPECT_THAT(log, ElementsAre("closed Big whole saying "));
}

// The message in the border colour, two lines of it at the default size, and nothing in the text
// colour.
TEST_F(MessageBoxTest, TheMessageIsWrappedInTheBorderColourAndCutAfterTwoLines) {
    const std::string message = "The target stands behind heavy cover and the shot will need a roll "
                                "of twenty or more, which is beyond this weapon at this range. Move "
                                "closer, aim for a round, or throw a grenade over the wall instead; "
                                "the referee may also allow a called shot at the exposed arm.";
    auto* box = new MessageBox(root, "Report", message, 10, 10, 0, 0);
    Text* text = box->text;
    text->borderColour[0] = 0.9f;
    text->borderColour[1] = text->borderColour[2] = 0;
    text->textColour[1] = 0.9f;
    auto red = [](Rgb c) { return c.r > 120 && c.g < 90 && c.b < 90; };
    auto green = [](Rgb c) { return c.g > 120 && c.r < 90; };
    frame();
    // The text box stands at (11, 14), 33 x 5; lines start half a unit in, 1.5 apart.
    EXPECT_GT(countPixels(11.5f, 14.6f, 32, 1.3f, red), 30) << "first line";
    EXPECT_GT(countPixels(11.5f, 16.1f, 32, 1.3f, red), 30) << "second line";
    EXPECT_EQ(countPixels(11.5f, 17.6f, 32, 1.3f, red), 0) << "the third line would end below 4";
    EXPECT_EQ(countPixels(10, 10, 35, 15, green), 0) << "the text colour plays no part";
    screenshot("message_box");
    // The same message in a taller box shows its third line: the cut is the height's doing.
    text->height = 10;
    frame();
    EXPECT_GT(countPixels(11.5f, 17.6f, 32, 1.3f, red), 30);
}

} // namespace
