// DiceCode arithmetic, text and rolls, and the difficulty table.
#include "rules/dice.h"
#include "rules/random_source.h"

#include <gtest/gtest.h>

TEST(DiceCode, TextPrintsDiceAndPipsAsTheyStand) {
    EXPECT_EQ(DiceCode(4, 2).text(), "4D+2");
    EXPECT_EQ(DiceCode(0, 5).text(), "0D+5");
    EXPECT_EQ(DiceCode(1, -1).text(), "1D+-1");
    EXPECT_EQ(DiceCode(-1, 0).text(), "-1D+0");
}

TEST(DiceCode, TruthTestAndNothingLeft) {
    struct Case {
        DiceCode code;
        bool truth, nothing;
    } cases[] = {{{0, 0}, false, true}, {{1, -1}, false, true}, {{-1, 0}, true, true}, {{-1, 5}, true, true},
                 {{0, 1}, true, false}, {{1, 0}, true, false},  {{2, -1}, true, false}};
    for (const Case& c : cases) {
        EXPECT_EQ(static_cast<bool>(c.code), c.truth) << c.code.text();
        EXPECT_EQ(nothingLeft(c.code), c.nothing) << c.code.text();
    }
}

TEST(DiceCode, ComparesDiceBeforePipsAndNeverCarries) {
    EXPECT_TRUE(DiceCode(1, 5) > DiceCode(1, 4));
    EXPECT_FALSE(DiceCode(1, 5) > DiceCode(2, 0));
    EXPECT_TRUE(DiceCode(2, 0) > DiceCode(1, 2));
    EXPECT_FALSE(DiceCode(3, 1) > DiceCode(3, 1));
    EXPECT_TRUE(DiceCode(3, 1) == DiceCode(3, 1));
    EXPECT_FALSE(DiceCode(3, 1) == DiceCode(3, 0));
    EXPECT_EQ(DiceCode(4, 2) - DiceCode(1, 0), DiceCode(3, 2));
    EXPECT_EQ(DiceCode(1, 0) - DiceCode(2, 0), DiceCode(-1, 0));
    EXPECT_EQ(DiceCode(1, 3) + DiceCode(0, 3), DiceCode(1, 6));
    DiceCode sum(2, 1);
    sum += DiceCode(-1, 2);
    EXPECT_EQ(sum, DiceCode(1, 3));
}

TEST(DiceCode, RollsDrawOneDieForEachDieOnly) {
    sharedRandom.seedWord(7);
    RandomSource twin = sharedRandom;
    EXPECT_EQ(DiceCode(0, 0).roll(), 0);
    EXPECT_EQ(DiceCode(-2, 3).roll(), 3);
    EXPECT_EQ(rollDice(0), 0);
    EXPECT_EQ(rollDice(-4), 0);
    EXPECT_EQ(sharedRandom.left, twin.left) << "no dice, no draws";
    for (int i = 0; i < 50; ++i) {
        int expected = -1 + twin.rollDie() + twin.rollDie() + twin.rollDie();
        EXPECT_EQ(DiceCode(3, -1).roll(), expected);
        expected = twin.rollDie() + twin.rollDie();
        EXPECT_EQ(rollDice(2), expected);
    }
}

TEST(Difficulty, ClassesAndNamesAtTheBounds) {
    std::pair<int, int> cases[] = {{-7, 0}, {5, 0},  {6, 1},  {10, 1}, {15, 2},  {20, 3},
                                   {21, 4}, {30, 4}, {31, 5}, {40, 5}, {1000, 5}};
    for (auto [difficulty, cls] : cases)
        EXPECT_EQ(difficultyClass(difficulty), cls) << difficulty;
    EXPECT_STREQ(difficultyTable[0].name, "Very Easy");
    EXPECT_STREQ(difficultyTable[4].name, "Very Difficult");
    EXPECT_EQ(difficultyOfClass(2), 15);
    EXPECT_EQ(difficultyOfClass(9), 31);
}
