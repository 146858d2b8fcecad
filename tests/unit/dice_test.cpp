// DiceCode text and rolls, the difficulty table, and the speed classes of a move.
#include "model_test.h"
#include "rules/random_source.h"
#include "rules/speed.h"

TEST(DiceCode, TextTruthNothingLeftAndRolls) {
    std::tuple<DiceCode, const char*, bool, bool> cases[] = {
        {{4, 2}, "4D+2", true, false},  {{0, 0}, "0D+0", false, true},  {{1, -1}, "1D+-1", false, true},
        {{-1, 0}, "-1D+0", true, true}, {{-1, 5}, "-1D+5", true, true}, {{0, 1}, "0D+1", true, false}};
    for (auto [code, text, truth, nothing] : cases) {
        EXPECT_EQ(code.text(), text);
        EXPECT_EQ(std::pair(static_cast<bool>(code), nothingLeft(code)), std::pair(truth, nothing)) << text;
    }
    // A roll draws one die for each die, and none without dice.
    RandomSource twin = sharedRandom;
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(DiceCode(0, 0).roll() + DiceCode(-2, 3).roll() + DiceCode(3, -1).roll(),
                  2 + twin.rollDie() + twin.rollDie() + twin.rollDie());
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
