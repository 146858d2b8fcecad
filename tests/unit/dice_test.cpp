// DiceCode arithmetic, text and rolls, and the difficulty table.
#include "model_test.h"
#include "rules/random_source.h"

TEST(DiceCode, TextTruthAndNothingLeft) {
    struct {
        DiceCode code;
        const char* text;
        bool truth, nothing;
    } cases[] = {{{4, 2}, "4D+2", true, false},   {{0, 0}, "0D+0", false, true},
                 {{1, -1}, "1D+-1", false, true}, {{-1, 0}, "-1D+0", true, true},
                 {{-1, 5}, "-1D+5", true, true},  {{0, 1}, "0D+1", true, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.code.text(), c.text);
        EXPECT_EQ(std::pair(static_cast<bool>(c.code), nothingLeft(c.code)), std::pair(c.truth, c.nothing))
            << c.text;
    }
}

TEST(DiceCode, ComparesDiceBeforePipsAndNeverCarries) {
    EXPECT_TRUE(DiceCode(1, 5) > DiceCode(1, 4));
    EXPECT_FALSE(DiceCode(1, 5) > DiceCode(2, 0));
    EXPECT_FALSE(DiceCode(3, 1) > DiceCode(3, 1));
    EXPECT_FALSE(DiceCode(3, 1) == DiceCode(3, 0));
    EXPECT_EQ(DiceCode(4, 2) - DiceCode(1, 0), DiceCode(3, 2));
    EXPECT_EQ(DiceCode(1, 0) - DiceCode(2, 0), DiceCode(-1, 0));
    DiceCode sum = DiceCode(1, 3) + DiceCode(0, 3);
    EXPECT_EQ(sum += DiceCode(-1, 0), DiceCode(0, 6));
}

TEST(DiceCode, RollsDrawOneDieForEachDieOnly) {
    sharedRandom.seedWord(7);
    RandomSource twin = sharedRandom;
    EXPECT_EQ(DiceCode(0, 0).roll() + DiceCode(-2, 3).roll() + rollDice(0) + rollDice(-4), 3);
    EXPECT_EQ(sharedRandom.left, twin.left) << "no dice, no draws";
    for (int i = 0; i < 50; ++i) {
        int expected = -1 + twin.rollDie() + twin.rollDie() + twin.rollDie();
        EXPECT_EQ(DiceCode(3, -1).roll(), expected);
        expected = twin.rollDie() + twin.rollDie();
        EXPECT_EQ(rollDice(2), expected);
    }
}

TEST(Difficulty, ClassesAtTheBounds) {
    std::pair<int, int> cases[] = {{-7, 0}, {5, 0},  {6, 1},  {15, 2},  {20, 3},
                                   {21, 4}, {30, 4}, {31, 5}, {1000, 5}};
    for (auto [difficulty, cls] : cases)
        EXPECT_EQ(difficultyClass(difficulty), cls) << difficulty;
    EXPECT_STREQ(difficultyTable[4].name, "Very Difficult");
    EXPECT_EQ(std::pair(difficultyOfClass(2), difficultyOfClass(9)), std::pair(15, 31));
}
