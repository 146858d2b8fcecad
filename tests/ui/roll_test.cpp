// The dice window worked as a referee works it: typed dice and Enter, clicks on "Roll", point
// switches, an overwritten total, and "Done" handing the total on to the step that waits.
#include <gmock/gmock.h>

#include "combat/roll.h"
#include "platform/glfw2.h"
#include "support/ui_driver.h"
#include "toolkit/input_state.h"
#include "unit/model_test.h"
#include "unit/seed_for.h"

using namespace ui;
using ::testing::ElementsAre;

namespace {

// Text is blended into the grey background at its edges: a colour is told by the channel that
// leads the others by far.
bool green(Rgb c) {
    return c.g > c.r + 80 && c.g > c.b + 80;
}
bool red(Rgb c) {
    return c.r > c.g + 80 && c.r > c.b + 80;
}
bool blue(Rgb c) {
    return c.b > c.r + 80 && c.b > c.g + 80;
}
bool black(Rgb c) {
    return c.r < 60 && c.g < 60 && c.b < 60;
}

// On the 100 x 100 root a centred window stands at (35, 38); these are its children's centres.
constexpr float rollX = 47, rollY = 60;        // "Roll", later "Done"
constexpr float totalX = 44.5f, totalY = 52;   // the total's field
constexpr float resetX = 50.4f, resetY = 52;   // "Reset"
constexpr float switchY = 55.5f;               // switch i stands at x 45 + 3 i
constexpr float mainRowY = 45, pointRowY = 48; // the two rows of dice, 2 high; die k from x 35 + 2.5 k

class RollWindow : public Model<UiTest> {
  protected:
    Roll* open(DiceCode level, int points = 0, int pointLimit = 0) {
        Character& han = person("Han", {{"Blaster", level}});
        han.characterPoints = points;
        Roll* roll = new Roll(root, &han, "Blaster", pointLimit, -1, -1);
        roll->closeHandler.bind(this, &RollWindow::rolled);
        frame();
        return roll;
    }
    // The next step of a chain: it reads the total while the window lives.
    int rolled(Window* w) {
        if (auto* roll = dynamic_cast<Roll*>(w)) totals.push_back(roll->total);
        return 0;
    }
    // Pixels of a kind in die k's place of a row.
    int dieInk(int k, float rowY, bool (*kind)(Rgb)) { return countPixels(35 + 2.5f * k, rowY, 2, 2, kind); }

    std::vector<int> totals;
};

TEST_F(RollWindow, ARefereeTypesWhatTheDiceShowedPressesEnterAndDoneHandsTheTotalOn) {
    Roll* roll = open({3, 2});
    screenshot("roll_waiting");
    EXPECT_GT(countPixels(36, 59, 6, 2, [](Rgb c) { return c == Rgb{255, 255, 255}; }), 300) << "the field";
    // The field holds the keys from the start: no click before typing.
    type("0");
    tap(platform::KEY_ENTER);
    EXPECT_EQ(roll->total, 0) << "a typed 0 is a result; pips and wild die play no part";
    EXPECT_THAT(roll->dice, ElementsAre(0));
    EXPECT_TRUE(roll->wildDice.empty());
    EXPECT_GT(dieInk(1, mainRowY, black), 10);
    EXPECT_EQ(roll->rollButton->caption, "Done");
    EXPECT_FALSE(roll->entryEdit->visible || roll->wildSwitch->visible);
    click(rollX, rollY);
    EXPECT_THAT(totals, ElementsAre(0));
    EXPECT_TRUE(root->children.empty());
}

TEST_F(RollWindow, RollShowsTheDiceWithGreenWildDiceAndPointsBuyABlueRow) {
    Roll* roll = open({3, 2}, 3, 5);
    roll->random.seedWord(seedFor({4, 2, 6, 1}));
    click(rollX, rollY);
    EXPECT_EQ(roll->total, 10);
    screenshot("roll_rolled_green");
    for (int k : {1, 2})
        EXPECT_TRUE(dieInk(k, mainRowY, black) > 10 && dieInk(k, mainRowY, green) == 0) << k;
    for (int k : {3, 4})
        EXPECT_GT(dieInk(k, mainRowY, green), 10) << k;
    EXPECT_GT(inkIn(44, 54.5f, 8, 2, {179, 179, 179}), 50) << "a switch for each of the three points";
    EXPECT_EQ(inkIn(52.5f, 54.5f, 8, 2, {179, 179, 179}), 0);

    // The second switch: the field comes back with the keys, and a typed 7 buys the two points.
    click(45 + 3, switchY);
    EXPECT_EQ(focusWindow, roll->entryEdit);
    screenshot("roll_points_picked");
    type("7");
    tap(platform::KEY_ENTER);
    EXPECT_EQ(roll->total, 17);
    EXPECT_EQ(roll->character->characterPoints, 1);
    // The one point left, rolled: a six goes on without using it up.
    click(45, switchY);
    roll->random.seedWord(seedFor({6, 3}));
    click(rollX, rollY);
    EXPECT_THAT(roll->pointDice, ElementsAre(7, 6, 3));
    EXPECT_EQ(roll->total, 26);
    screenshot("roll_points_spent");
    for (int k : {1, 2, 3})
        EXPECT_GT(dieInk(k, pointRowY, blue), 10) << k;
    EXPECT_EQ(roll->character->characterPoints, 0);
    EXPECT_EQ(inkIn(38, 54.5f, 12, 2.5f, {179, 179, 179}), 0) << "no switch and no \"Use CP:\" left";
    click(rollX, rollY);
    EXPECT_THAT(totals, ElementsAre(26));
}

TEST_F(RollWindow, AWildOneShowsRedAndTheTotalCanBeOverwrittenResetAndCommitted) {
    Roll* roll = open({3, 0});
    roll->random.seedWord(seedFor({5, 3, 1}));
    click(rollX, rollY);
    EXPECT_EQ(roll->total, 3);
    screenshot("roll_rolled_red");
    EXPECT_GT(dieInk(3, mainRowY, red), 10);
    EXPECT_EQ(dieInk(1, mainRowY, red) + dieInk(2, mainRowY, red), 0);

    // The field holds 3: backspace leaves 0, and 12 typed over it.
    click(totalX, totalY);
    tap(platform::KEY_BACKSPACE);
    type("12");
    EXPECT_TRUE(roll->resetButton->visible);
    screenshot("roll_total_overwritten");
    EXPECT_GT(inkIn(47.5f, 51.2f, 5.5f, 1.6f, {179, 179, 179}), 50) << "\"Reset\"";
    EXPECT_EQ(roll->total, 3) << "nothing is taken before Enter";
    click(resetX, resetY);
    EXPECT_EQ(*roll->totalEdit->number, 3);
    EXPECT_FALSE(roll->resetButton->visible);

    click(totalX, totalY);
    type("9");
    tap(platform::KEY_ENTER);
    EXPECT_EQ(roll->total, 39);
    EXPECT_FALSE(roll->resetButton->visible);
    // A change neither committed nor reset leaves the total as it was.
    click(totalX, totalY);
    type("5");
    click(rollX, rollY);
    EXPECT_THAT(totals, ElementsAre(39));
}

} // namespace
