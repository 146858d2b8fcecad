// Switches and the drop-down under the real pointer: switch states, and opening, choosing, sorting and
// select() of a SelectButton.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/probe.h"
#include "support/ui_driver.h"
#include "toolkit/select_button.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

class ButtonTest : public UiTest {
  protected:
    EventLog log;
    SelectButton* select = nullptr;

    // Logs "caption pressed|raised" for a click, "chose caption=value" for a drop-down's choice.
    int clicked(Window* w) {
        auto* b = static_cast<Button*>(w);
        log.push_back(b->caption + (b->pressed ? " pressed" : " raised"));
        return 0;
    }
    int chosen(Window* w) {
        log.push_back(std::string(w == select->button ? "chose " : "? ") + static_cast<Button*>(w)->caption +
                      "=" + w->value);
        return 0;
    }
    void watchClicks(Window* w) { w->leftClickHandler.bind(this, &ButtonTest::clicked); }
    // A drop-down at (10, 10), 20 x 3, with entries added in this order.
    void makeSelect(std::initializer_list<std::pair<const char*, const char*>> entries) {
        select = new SelectButton(root, 10, 10, 20, 3, "");
        select->selectHandler.bind(this, &ButtonTest::chosen);
        for (auto [caption, value] : entries)
            select->addEntry(caption, value);
    }
    // The present choice, then the entries from top to bottom, as "caption=value".
    std::vector<std::string> texts() const {
        std::vector<Window*> rows = select->list->children;
        std::sort(rows.begin(), rows.end(), [](Window* a, Window* b) { return a->y < b->y; });
        rows.insert(rows.begin(), select->button);
        std::vector<std::string> out;
        for (Window* w : rows)
            out.push_back(static_cast<Button*>(w)->caption + "=" + w->value);
        return out;
    }
    void clickRow(int row) { click(20, 13 + 3 * row + 1.5f); } // rows 3 high, below the button
};

TEST_F(ButtonTest, ASwitchTurnsOverBeforeItsHandlerRunsAndADirectSwitchWritesItsVariable) {
    Switch* prone = new Switch(root, "Prone", 20, 20, 20, 6, "");
    bool walls = true;
    DirectSwitch* direct = new DirectSwitch(root, &walls, "Walls", 20, 30, 20, 6, "");
    watchClicks(prone);
    watchClicks(direct);
    EXPECT_TRUE(direct->pressed) << "taken from the variable";
    clickOn(prone);
    clickOn(prone);
    clickOn(direct);
    EXPECT_FALSE(walls);
    walls = true; // a change made elsewhere does not show, and the next click turns it over
    clickOn(prone);
    moveTo(30, 34);
    press();
    release();
    EXPECT_FALSE(walls);
    EXPECT_THAT(
        log, ElementsAre("Prone pressed", "Prone raised", "Walls raised", "Prone pressed", "Walls raised"));
}

TEST_F(ButtonTest, TheDropDownListsItsEntriesSortedAndChoosingSwapsWithTheChoice) {
    makeSelect({{"Medium", "15"}, {"Very Easy", "5"}, {"Heroic", "31"}, {"Easy", "10"}, {"Difficult", "20"}});
    EXPECT_THAT(texts(), ElementsAre("Medium=15", "Difficult=20", "Easy=10", "Heroic=31", "Very Easy=5"));
    new Probe(root, "below", 5, 13.5f, 30, 20, &log); // made later: in front of the closed drop-down
    clickOn(select->button);
    EXPECT_EQ(select->height, 3 + 4 * 3) << "grown over its list";
    click(60, 60);
    clickRow(0); // a click elsewhere left the list open, and the list lies in front
    EXPECT_THAT(texts(), ElementsAre("Difficult=20", "Easy=10", "Heroic=31", "Medium=15", "Very Easy=5"));
    EXPECT_EQ(select->height, 3);
    EXPECT_EQ(root->children.back(), select) << "raised when opened, and left there";
    click(20, 21.5f); // where an entry stood: the window beneath has it back
    select->select("20");
    select->select("99");
    select->select("31");
    EXPECT_THAT(texts(), ElementsAre("Heroic=31", "Difficult=20", "Easy=10", "Medium=15", "Very Easy=5"))
        << "select() of the present choice or of an unknown value changes nothing";
    EXPECT_THAT(log, ElementsAre("chose Difficult=20", "below:enter", "below:focus", "below:left click"))
        << "select() fires nothing";
}

TEST_F(ButtonTest, OneEntryOpensAnEmptyListAndEntriesAddedWhileOpenWaitForTheNextOpening) {
    makeSelect({{"None", ""}, {"Walk", "1"}}); // an empty value is no choice: overwritten
    clickOn(select->button);
    EXPECT_TRUE(select->list->visible);
    EXPECT_EQ(select->height, 3);
    select->addEntry("Run", "2");
    EXPECT_EQ(select->height, 3);
    clickOn(select->button);
    clickOn(select->button);
    EXPECT_EQ(select->height, 6);
    EXPECT_THAT(texts(), ElementsAre("Walk=1", "Run=2"));
}

TEST_F(ButtonTest, EntriesSortByCaptionBarValueInByteOrder) {
    makeSelect({{"Chosen", "x"},
                {"Same", "2"},
                {"Same", "10"},
                {"Medium", "a"},
                {"Medium range", "b"},
                {"Mediumx", "c"},
                {"L|R", "v"}});
    // "|" sorts after space and the letters, so a caption follows the longer ones that it begins;
    // a caption that holds a "|" is split there on the way back.
    EXPECT_THAT(texts(), ElementsAre("Chosen=x", "L=R|v", "Medium range=b", "Mediumx=c", "Medium=a",
                                     "Same=10", "Same=2"));
}

} // namespace
