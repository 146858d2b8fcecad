// The dice window's arithmetic, without a display: what a name rolls, the main roll with its wild
// die, spending character points, and a sweep over many seeds against the rules.
#include <gmock/gmock.h>

#include <climits>
#include <numeric>

#include "combat/roll.h"
#include "model_test.h"
#include "seed_for.h"
#include "toolkit/input_state.h"

using ::testing::ElementsAre;

namespace {

class RollArithmetic : public ModelTest {
  protected:
    void SetUp() override {
        ModelTest::SetUp();
        resetInputState();
        skillParents["Blaster"] = skillParents["Dodge"] = "Dexterity";
    }
    void TearDown() override {
        root.deleteChildren();
        ModelTest::TearDown();
    }

    Roll* open(DiceCode level, bool wild, int points = 0, int pointLimit = 0) {
        Character& c = person("Han", {{"Blaster", level}});
        c.characterPoints = points;
        auto* roll = new Roll(&root, &c, "Blaster", pointLimit, -1, -1);
        roll->wildSwitch->pressed = wild;
        return roll;
    }

    // A row of dice, left to right, as "4", "6g": g green, r red, b blue. Each die is checked to
    // stand at 2.5 k for its place k from 1.
    static std::vector<std::string> row(Roll* roll, float y) {
        std::vector<std::string> dice;
        for (Window* w : roll->children) {
            auto* label = dynamic_cast<Label*>(w);
            if (!label || label->y != y) continue;
            EXPECT_EQ(label->x, 2.5f * float(dice.size() + 1)) << label->caption;
            EXPECT_EQ(label->fontSize, 2);
            const float* c = label->textColour;
            std::string colour = c[0] == 1 ? "r" : c[1] == 0.85f ? "g" : c[2] == 0.85f ? "b" : "";
            dice.push_back(label->caption + colour);
        }
        return dice;
    }

    Window root{nullptr, 0, 0, 100, 100, ""};
};

TEST_F(RollArithmetic, TheMainRollTakesTheWildDieAndItsOneByTheRules) {
    struct Case {
        DiceCode code;
        bool wild;
        std::vector<int> draws;
        int total;
        std::vector<std::string> row; // the regular dice, then the wild ones
    };
    const Case cases[] = {
        // The wild die explodes: 2 + 4 + 2 + 6 + 1, and the final 1 takes itself and the 4 off.
        {{3, 2}, true, {4, 2, 6, 1}, 10, {"4", "2", "6g", "1g"}},
        {{3, 0}, true, {5, 3, 1}, 3, {"5", "3", "1r"}},
        {{1, 0}, true, {1}, 0, {"1r"}},
        {{3, 0}, false, {6, 6, 6}, 18, {"6", "6", "6"}},
        {{2, 1}, true, {3, 6, 6, 5}, 21, {"3", "6g", "6g", "5g"}},
        // Penalties beyond the skill: no regular die, the pips as they stand, the wild die all the same.
        {{-2, 3}, true, {6, 1}, 9, {"6g", "1g"}},
        {{-2, 3}, false, {}, 3, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.code.text() + (c.wild ? " wild" : ""));
        Roll* roll = open(c.code, c.wild);
        roll->random.seedWord(seedFor(c.draws));
        roll->rollButton->onLeftClick();
        EXPECT_EQ(roll->total, c.total);
        EXPECT_EQ(*roll->totalEdit->number, c.total);
        EXPECT_EQ(row(roll, 7), c.row);
    }
    // No roll may freeze the program: a code beyond a thousand dice rolls a thousand.
    for (bool wild : {true, false}) {
        Roll* roll = open({INT_MAX, 0}, wild);
        roll->rollButton->onLeftClick();
        EXPECT_EQ(int(roll->dice.size()), maxRolledDice - wild);
    }
}

TEST_F(RollArithmetic, PointSwitchesAreRadioButtonsAndTheirSixesDoNotUseUpTheCount) {
    // pointsLeft is the smaller of the limit and the points; switches show up to it.
    struct Limit {
        int limit, points, shown;
    };
    for (auto [limit, points, shown] : {Limit{5, 3, 3}, {2, 7, 2}, {0, 4, 0}, {5, -1, 0}, {9, 9, 5}}) {
        Roll* roll = open({3, 0}, true, points, limit);
        roll->rollButton->onLeftClick();
        EXPECT_EQ(std::ranges::count_if(roll->pointSwitches, [](Switch* s) { return s->visible; }), shown);
        EXPECT_EQ(roll->pointsLabel->visible, shown > 0);
    }

    Roll* roll = open({3, 2}, true, 3, 5);
    roll->rollButton->onLeftClick();
    int rolled = roll->total;
    roll->pointSwitches[1]->onLeftClick();
    roll->pointSwitches[0]->onLeftClick();
    EXPECT_TRUE(roll->pointSwitches[0]->pressed && !roll->pointSwitches[1]->pressed);
    EXPECT_EQ(roll->pointsChosen, 1);
    roll->pointSwitches[0]->onLeftClick();
    EXPECT_EQ(roll->pointsChosen, 0);
    EXPECT_EQ(roll->rollButton->caption, "Done");
    EXPECT_FALSE(roll->entryEdit->visible);
    roll->pointSwitches[1]->onLeftClick();
    EXPECT_EQ(roll->pointsChosen, 2);
    EXPECT_EQ(roll->rollButton->caption, "Roll");

    roll->random.seedWord(seedFor({6, 6, 2, 3}));
    roll->rollButton->onLeftClick();
    EXPECT_EQ(roll->total, rolled + 17);
    EXPECT_THAT(row(roll, 10), ElementsAre("6b", "6b", "2b", "3b"));
    EXPECT_EQ(roll->character->characterPoints, 1);
    EXPECT_EQ(roll->pointsLeft, 1);
    EXPECT_TRUE(roll->pointSwitches[0]->visible && !roll->pointSwitches[1]->visible);
    EXPECT_FALSE(roll->pointSwitches[1]->pressed);
}

TEST_F(RollArithmetic, OverManySeedsTheTotalFollowsTheRecordedDiceAndEveryBranchIsReached) {
    int exploded = 0, wildOneTookADie = 0, pointSixes = 0, redRows = 0;
    for (uint32_t seed = 1; seed <= 1500; ++seed) {
        SCOPED_TRACE(seed);
        bool wild = seed % 5 != 0;
        int chosen = int(seed % 4);
        Roll* roll = open({int(seed % 6) - 1, int(seed % 4)}, wild, 5, 5);
        roll->random.seedWord(seed);
        roll->rollButton->onLeftClick();
        if (chosen > 0) {
            roll->pointSwitches[chosen - 1]->onLeftClick();
            roll->rollButton->onLeftClick();
        }

        const auto &dice = roll->dice, &wildDice = roll->wildDice, &pointDice = roll->pointDice;
        auto isDie = [](int d) { return d >= 1 && d <= 6; };
        ASSERT_TRUE(std::ranges::all_of(dice, isDie) && std::ranges::all_of(wildDice, isDie) &&
                    std::ranges::all_of(pointDice, isDie));
        ASSERT_EQ(int(dice.size()), std::max(0, roll->code.dice - wild));
        ASSERT_EQ(wildDice.empty(), !wild);
        // A six goes on; anything else ends the wild die, or a point's die.
        if (wild) {
            ASSERT_NE(wildDice.back(), 6);
            ASSERT_EQ(std::ranges::count(wildDice, 6), int(wildDice.size()) - 1);
        }
        ASSERT_EQ(std::ranges::count_if(pointDice, [](int d) { return d != 6; }), chosen);
        ASSERT_TRUE(pointDice.empty() || pointDice.back() != 6);

        int expected = roll->code.pips + std::reduce(dice.begin(), dice.end()) +
                       std::reduce(wildDice.begin(), wildDice.end()) +
                       std::reduce(pointDice.begin(), pointDice.end());
        if (wild && wildDice.back() == 1) expected -= 1 + (dice.empty() ? 0 : std::ranges::max(dice));
        ASSERT_EQ(roll->total, expected);

        bool red = wild && wildDice.front() == 1;
        std::vector<std::string> mainRow, pointRow;
        for (int d : dice)
            mainRow.push_back(std::to_string(d));
        for (int d : wildDice)
            mainRow.push_back(std::to_string(d) + (red ? "r" : "g"));
        for (int d : pointDice)
            pointRow.push_back(std::to_string(d) + "b");
        ASSERT_EQ(row(roll, 7), mainRow);
        ASSERT_EQ(row(roll, 10), pointRow);

        exploded += wildDice.size() > 1;
        wildOneTookADie += wild && wildDice.back() == 1 && !dice.empty();
        pointSixes += int(pointDice.size()) > chosen;
        redRows += red;
        root.deleteChildren();
    }
    EXPECT_GT(exploded, 0);
    EXPECT_GT(wildOneTookADie, 0);
    EXPECT_GT(pointSixes, 0);
    EXPECT_GT(redRows, 0);
}

TEST_F(RollArithmetic, TheNameChoosesTheCodeAndTheSkillFound) {
    struct Case {
        const char* name;
        Item* item; // equipped, or null
        std::string caption;
    };
    const Case cases[] = {
        // Unarmed adds strength and has no cap.
        {"Damage", nullptr, "Han rolls Damage (3D+1)"},
        {"Damage", new MeleeWeapon("Club", "Melee", {1, 2}, 0, 0, true, {5, 0}), "Han rolls Damage (4D+3)"},
        {"Damage", new MeleeWeapon("Axe", "Melee", {2, 2}, 0, 0, true, {5, 0}), "Han rolls Damage (5D+0)"},
        {"Damage", new MeleeWeapon("Staff", "Melee", {2, 0}, 0, 0, false, {1, 2}), "Han rolls Damage (1D+2)"},
        {"Damage", new RangedWeapon("Blaster", "Blaster", {4, 1}, 1, {3, 10, 30, 120}, 100),
         "Han rolls Damage (4D+1)"},
        // Resistance rests on the bare strength: the penalty on "All" does not touch it.
        {"PResist", nullptr, "Han rolls PResist (3D+1)"},
        {"PResist", new Armor("Vest", {2, 0}, {1, 1}, {}), "Han rolls PResist (5D+1)"},
        {"EResist", new Armor("Vest", {2, 0}, {1, 1}, {}), "Han rolls EResist (4D+2)"},
        {"EResist", nullptr, "Han rolls EResist (3D+1)"},
        // Skills are rolled less their penalties, and named by what was found.
        {"Blaster", nullptr, "Han rolls Blaster (4D+0)"},
        {"Dodge", nullptr, "Han rolls Dexterity (2D+1)"},
        {"Lockpicking", nullptr, "Han rolls Not found (-1D+0)"},
    };
    for (const Case& c : cases) {
        Character& han = person("Han", {{"Strength", {3, 1}}, {"Dexterity", {3, 1}}, {"Blaster", {5, 0}}});
        han.addPenalty(new Penalty("Stun", {1, 0}, 1, "All"));
        if (c.item) han.addItem(c.item), han.equip(c.item);
        auto* roll = new Roll(&root, &han, c.name, 2, -1, -1);
        // The caption shows the code; the code itself must agree with it.
        EXPECT_EQ(static_cast<Label*>(roll->children.front())->caption, c.caption);
        EXPECT_EQ(c.caption.substr(c.caption.find('(')), "(" + roll->code.text() + ")");
    }
    // A name that leads nowhere still opens, and rolls the wild die alone.
    Character& leia = person("Leia", {});
    auto* lost = new Roll(&root, &leia, "Lockpicking", 2, -1, -1);
    EXPECT_EQ(static_cast<Label*>(lost->children.front())->caption, "Leia rolls Not found (0D+0)");
    lost->random.seedWord(seedFor({4}));
    lost->rollButton->onLeftClick();
    EXPECT_TRUE(lost->dice.empty());
    EXPECT_THAT(lost->wildDice, ElementsAre(4));
    EXPECT_EQ(lost->total, 4);

    // -1 centres in the parent, in each direction alone.
    EXPECT_EQ(lost->x, 35);
    EXPECT_EQ(lost->y, 38);
    auto* placed = new Roll(new Window(&root, 0, 0, 60, 50, ""), &leia, "Strength", 0, -1, 7);
    EXPECT_EQ(placed->x, 15);
    EXPECT_EQ(placed->y, 7);
}

} // namespace
