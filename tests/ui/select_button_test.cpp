// The drop-down choice, clicked with the real pointer: opening and closing, choosing, the sorted
// list, select(), and how the open list takes the clicks from the windows beneath it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/input_state.h"
#include "toolkit/select_button.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

struct SelectWatcher {
    EventLog* log;
    Window* expected = nullptr;
    int selected(Window* w) {
        auto* b = static_cast<Button*>(w);
        log->push_back(std::string(w == expected ? "button" : "other") + " " + b->caption + "=" + b->value);
        return 0;
    }
};

class SelectButtonTest : public UiTest {
  protected:
    EventLog log;
    SelectWatcher watcher{&log};
    SelectButton* select = nullptr;

    void SetUp() override {
        UiTest::SetUp();
        select = new SelectButton(root, 10, 10, 20, 3, "");
        watcher.expected = select->button;
        select->selectHandler.bind(&watcher, &SelectWatcher::selected);
    }

    void addDifficulties() {
        select->addEntry("Medium", "15");
        select->addEntry("Very Easy", "5");
        select->addEntry("Heroic", "31");
        select->addEntry("Easy", "10");
        select->addEntry("Difficult", "20");
    }

    // The list's entries from top to bottom, as "caption=value".
    std::vector<std::string> entries() const {
        std::vector<Window*> rows = select->list->children;
        std::sort(rows.begin(), rows.end(), [](Window* a, Window* b) { return a->y < b->y; });
        std::vector<std::string> out;
        for (Window* w : rows) {
            auto* b = static_cast<Button*>(w);
            out.push_back(b->caption + "=" + b->value);
        }
        return out;
    }
    std::string choice() const { return select->button->caption + "=" + select->button->value; }
    void toggle() { clickOn(select->button); }
    // The row-th entry from the top of the open list, 3 high, below the button.
    void clickRow(int row) { click(20, 13 + 3 * row + 1.5f); }
};

TEST_F(SelectButtonTest, WithOneEntryTheListOpensEmpty) {
    EXPECT_EQ(select->addEntry("Only", "1"), select->button);
    toggle();
    EXPECT_TRUE(select->list->visible);
    EXPECT_EQ(select->list->height, 0);
    EXPECT_EQ(select->height, 3) << "nothing to grow by";
    toggle();
    EXPECT_FALSE(select->list->visible);
    EXPECT_EQ(choice(), "Only=1");
}

TEST_F(SelectButtonTest, EntriesStandSortedWhateverTheOrderInWhichTheyWereAdded) {
    addDifficulties();
    EXPECT_EQ(choice(), "Medium=15") << "the first entry with a value is the choice";
    EXPECT_THAT(entries(), ElementsAre("Difficult=20", "Easy=10", "Heroic=31", "Very Easy=5"));
    toggle();
    EXPECT_EQ(select->height, 3 + 4 * 3);
    clickRow(0);
    EXPECT_EQ(choice(), "Difficult=20") << "the top row holds the first in order";
}

TEST_F(SelectButtonTest, ChoosingSwapsTheEntryWithTheChoiceAndFiresWithTheButton) {
    addDifficulties();
    toggle();
    clickRow(2);
    EXPECT_THAT(log, ElementsAre("button Heroic=31")) << "fired after the swap, with the button";
    EXPECT_FALSE(select->list->visible);
    EXPECT_EQ(select->height, 3);
    EXPECT_THAT(entries(), ElementsAre("Difficult=20", "Easy=10", "Medium=15", "Very Easy=5"))
        << "the former choice goes back into its sorted place";

    // Closed again: a click on the button opens, a second one closes without choosing.
    toggle();
    toggle();
    EXPECT_FALSE(select->list->visible);
    EXPECT_EQ(log.size(), 1u);
}

TEST_F(SelectButtonTest, OpeningGrowsAndRaisesItSoThatTheListTakesTheClicksBeneath) {
    addDifficulties();
    new Probe(root, "below", 5, 12, 30, 20, &log);
    click(20, 14.5f);
    EXPECT_THAT(log, ElementsAre("below:enter", "below:focus", "below:left click"));
    log.clear();

    toggle();
    EXPECT_EQ(root->children.back(), select);
    click(20, 14.5f);
    EXPECT_THAT(log, ElementsAre("below:leave", "below:focus lost", "button Difficult=20"))
        << "the entry, not the window beneath";
    log.clear();

    // Closing shrinks it back but leaves it in front.
    EXPECT_EQ(root->children.back(), select);
    movePixels(toPixelX(20), toPixelY(14.5f) + 1);
    press();
    release();
    EXPECT_THAT(log, ElementsAre("below:enter", "below:focus", "below:left click"));
}

TEST_F(SelectButtonTest, AClickElsewhereLeavesTheListOpen) {
    addDifficulties();
    toggle();
    click(60, 60);
    EXPECT_TRUE(select->list->visible);
    clickRow(3);
    EXPECT_EQ(choice(), "Very Easy=5");
}

TEST_F(SelectButtonTest, SelectChangesTheChoiceQuietly) {
    addDifficulties();
    select->select("31");
    EXPECT_EQ(choice(), "Heroic=31");
    EXPECT_THAT(entries(), ElementsAre("Difficult=20", "Easy=10", "Medium=15", "Very Easy=5"));
    select->select("31");
    EXPECT_EQ(choice(), "Heroic=31") << "the present choice is not in the list: nothing changes";
    select->select("99");
    EXPECT_THAT(entries(), ElementsAre("Difficult=20", "Easy=10", "Medium=15", "Very Easy=5"));
    frame();
    EXPECT_THAT(log, ElementsAre());
}

TEST_F(SelectButtonTest, AnEntryAddedWhileOpenWaitsForTheNextOpening) {
    select->addEntry("Walk", "1");
    select->addEntry("Run", "2");
    toggle();
    EXPECT_EQ(select->height, 6);
    select->addEntry("Crawl", "0");
    EXPECT_EQ(select->list->height, 6);
    EXPECT_EQ(select->height, 6);
    toggle();
    toggle();
    EXPECT_EQ(select->height, 9);
    clickRow(0);
    EXPECT_EQ(choice(), "Crawl=0");
}

TEST_F(SelectButtonTest, EntriesSortByCaptionBarValueInByteOrder) {
    select->addEntry("Chosen", "x");
    select->addEntry("Same", "2");
    select->addEntry("Same", "10");
    select->addEntry("Medium", "a");
    select->addEntry("Medium range", "b");
    select->addEntry("Mediumx", "c");
    // "|" sorts after space and the letters, so a caption follows the longer ones it begins.
    EXPECT_THAT(entries(), ElementsAre("Medium range=b", "Mediumx=c", "Medium=a", "Same=10", "Same=2"));
}

TEST_F(SelectButtonTest, ABarInACaptionSplitsItsEntryAtTheWrongPlace) {
    select->addEntry("Chosen", "x");
    select->addEntry("Left|Right", "v");
    EXPECT_THAT(entries(), ElementsAre("Left=Right|v"));
}

TEST_F(SelectButtonTest, WhileTheChoiceHasNoValueEachEntryOverwritesIt) {
    EXPECT_EQ(select->addEntry("None", ""), select->button);
    EXPECT_EQ(select->addEntry("Some", "1"), select->button);
    EXPECT_EQ(choice(), "Some=1");
    EXPECT_TRUE(select->list->children.empty());
}

TEST_F(SelectButtonTest, TheOpenListIsDrawnBelowTheButtonInFrontOfItsSiblings) {
    addDifficulties();
    Window* cover = new Window(root, 0, 13, 40, 30, "");
    cover->backColour[0] = 1;
    cover->backColour[1] = cover->backColour[2] = 0;
    auto isRed = [](Rgb c) { return c.r > 200 && c.g < 60; };
    frame();
    EXPECT_GT(countPixels(10.5f, 14, 19, 10, isRed), 1000) << "closed, the list does not show";
    toggle();
    EXPECT_EQ(countPixels(10.5f, 13.5f, 19, 11, isRed), 0) << "open, its entries cover the window beneath";
    screenshot("select_button_open");
}

} // namespace
