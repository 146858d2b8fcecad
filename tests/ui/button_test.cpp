// The drop-down under the real pointer: opening, choosing, sorting, select(). Switches: see the gallery test.
#include <gmock/gmock.h>

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

    int chosen(Window* w) {
        log.push_back((w == select->button ? "chose " : "? ") + static_cast<Button*>(w)->caption + "=" +
                      w->value);
        return 0;
    }
    // Adds the entries in this order to the drop-down at (10, 10), 20 x 3, made at the first call.
    void add(std::initializer_list<std::pair<const char*, const char*>> entries) {
        if (!select) {
            select = new SelectButton(root, 10, 10, 20, 3, "");
            select->selectHandler.bind(this, &ButtonTest::chosen);
        }
        for (auto [caption, value] : entries)
            select->addEntry(caption, value);
    }
    // The present choice, then the entries from top to bottom, each as "caption=value".
    std::string texts() const {
        std::vector<Window*> rows = select->list->children;
        std::ranges::sort(rows, {}, &Window::y);
        std::string out = select->button->caption + "=" + select->button->value;
        for (Window* w : rows)
            out += ", " + static_cast<Button*>(w)->caption + "=" + w->value;
        return out;
    }
};

TEST_F(ButtonTest, TheDropDownListsItsEntriesSortedAndChoosingSwapsWithTheChoice) {
    add({{"Medium", "15"}, {"Very Easy", "5"}, {"Heroic", "31"}, {"Easy", "10"}, {"Difficult", "20"}});
    EXPECT_EQ(texts(), "Medium=15, Difficult=20, Easy=10, Heroic=31, Very Easy=5");
    new Probe(root, "below", 5, 13.5f, 30, 20, &log); // made later: in front of the closed drop-down
    clickOn(select->button);
    click(60, 60);
    click(20, 14.5f); // the first row: a click elsewhere left the list open, and the list lies in front
    EXPECT_EQ(texts(), "Difficult=20, Easy=10, Heroic=31, Medium=15, Very Easy=5");
    click(20, 21.5f); // where an entry stood: the window beneath has it back
    // select() of the present choice or of an unknown value changes nothing, and select() fires nothing.
    for (const char* value : {"20", "99", "31"})
        select->select(value);
    EXPECT_EQ(texts(), "Heroic=31, Difficult=20, Easy=10, Medium=15, Very Easy=5");
    EXPECT_THAT(log, ElementsAre("chose Difficult=20", "below:enter", "below:focus", "below:left click"));
}

TEST_F(ButtonTest, OneEntryOpensAnEmptyListAndLaterEntriesSortByCaptionBarValueInByteOrder) {
    add({{"None", ""}, {"Walk", "1"}}); // an empty value is no choice: overwritten
    clickOn(select->button);
    EXPECT_TRUE(select->list->visible);
    EXPECT_EQ(select->height, 3);
    add({{"Same", "2"}, {"Same", "10"}, {"Med", "a"}, {"Med x", "b"}, {"Medx", "c"}, {"L|R", "v"}});
    // "|" sorts after space and the letters, so a caption follows the longer ones that it begins;
    // a caption that holds a "|" is split there on the way back.
    EXPECT_EQ(texts(), "Walk=1, L=R|v, Med x=b, Medx=c, Med=a, Same=10, Same=2");
}

TEST_F(ButtonTest, AFadedButtonFadesItsBevelAlongAndDrawsItsBackgroundWhateverThatColoursOwnAlpha) {
    Button* button = new Button(root, "", 20, 40, 30, 6, "");
    button->alpha = 0.5f;
    button->backColour[3] = 0;
    frame();
    // On black, each at half strength: the grey 0.7 of the background, the light 0.85 of the left
    // edge and the dark 0.55 of the bottom edge, which lie just outside the background.
    auto grey = [](int g) { return [g](Rgb c) { return near(c, {g, g, g}, 3); }; };
    EXPECT_GT(countPixels(22, 42, 26, 2, grey(89)), 500);
    EXPECT_GT(countPixels(19.7f, 41, 0.6f, 4, grey(108)), 25);
    EXPECT_GT(countPixels(21, 45.7f, 28, 0.6f, grey(70)), 250);
}

} // namespace
