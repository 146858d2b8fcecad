// DiceCode text and rolls, the difficulty table, and the speed classes of a move.
#include "model_test.h"
#include "rules/random_source.h"
#include "rules/speed.h"

#include <climits>

// Nothing is left when three times the dice plus the pips is 0 or less: penalties have eaten the
// whole skill, a pip being a third of a die. The truth test only asks whether the two cancel out.
TEST(DiceCode, TextTruthNothingLeftAndRolls) {
    std::tuple<DiceCode, const char*, bool, bool> cases[] = {
        {{4, 2}, "4D+2", true, false},
        {{0, 0}, "0D+0", false, true},
        {{1, -1}, "1D+-1", false, false},
        {{0, 1}, "0D+1", true, false},
        {{-1, 4}, "-1D+4", true, false},
        {{-1, 3}, "-1D+3", true, true},
        {{-1, 2}, "-1D+2", true, true},
        {{1, -2}, "1D+-2", true, false},
        {{1, -3}, "1D+-3", true, true},
        {{1, -4}, "1D+-4", true, true},
        {{-1, 0}, "-1D+0", true, true},
        {{0, -3}, "0D+-3", true, true},
        {{INT_MAX, INT_MIN}, "2147483647D+-2147483648", true, false}};
    for (auto [code, text, truth, nothing] : cases) {
        EXPECT_EQ(code.text(), text);
        EXPECT_EQ(std::pair(static_cast<bool>(code), nothingLeft(code)), std::pair(truth, nothing)) << text;
    }
    // A roll draws one die for each die, and none without dice.
    RandomSource twin = sharedRandom;
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(DiceCode(0, 0).roll() + DiceCode(-2, 3).roll() + DiceCode(3, -1).roll(),
                  2 + twin.rollDie() + twin.rollDie() + twin.rollDie());
    // No more than maxRolledDice dice are rolled of any code, so that 2^31 dice from a hand-edited
    // file roll at once.
    for (int count : {maxRolledDice, maxRolledDice + 1, INT_MAX}) {
        twin = sharedRandom;
        int sum = 0;
        for (int i = 0; i < maxRolledDice; ++i)
            sum += twin.rollDie();
        EXPECT_EQ(count == INT_MAX ? DiceCode(count, 2).roll() - 2 : rollDice(count), sum) << count;
        EXPECT_TRUE(std::equal(twin.state, twin.state + 624, sharedRandom.state) &&
                    twin.left == sharedRandom.left)
            << count;
    }
}

// Both kinds of class include their upper bounds; half an odd move is not cut down.
TEST(Classes, DifficultyAndSpeedClassesAtTheirBounds) {
    std::pair<int, int> difficulties[] = {{-7, 0}, {5, 0},  {6, 1},  {10, 1}, {11, 2}, {15, 2},  {16, 3},
                                          {20, 3}, {21, 4}, {30, 4}, {31, 5}, {32, 5}, {1000, 5}};
    for (auto [difficulty, cls] : difficulties)
        EXPECT_EQ(difficultyClass(difficulty), cls) << difficulty;
    EXPECT_EQ(std::pair(difficultyOfClass(2), difficultyOfClass(9)), std::pair(15, 31));
    Character runner(false);
    std::pair<float, int> distances[] = {{0, 0},  {0.1f, 1},  {5, 1},  {5.1f, 2},  {10, 2},
                                         {20, 3}, {20.5f, 4}, {40, 4}, {40.5f, -1}};
    for (auto [distance, speed] : distances)
        EXPECT_EQ(speedClass(&runner, distance), speed) << distance;
    runner.move = 5;
    EXPECT_EQ(std::tuple(speedClass(&runner, 2.5f), speedClass(&runner, 2.6f), speedClass(nullptr, 1)),
              std::tuple(1, 2, -1));
}
