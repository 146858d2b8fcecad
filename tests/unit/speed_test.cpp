// Speed classes at their bounds, and the movement table.
#include "model_test.h"
#include "rules/speed.h"

class Speeds : public ModelTest {};

TEST_F(Speeds, ClassesIncludeTheirUpperBoundsAndDoNotTruncateTheHalf) {
    Character runner(false);
    std::pair<float, int> cases[] = {{0, 0},  {0.1f, 1},  {5, 1},  {5.1f, 2},  {10, 2},
                                     {20, 3}, {20.5f, 4}, {40, 4}, {40.5f, -1}};
    for (auto [distance, speed] : cases)
        EXPECT_EQ(speedClass(&runner, distance), speed) << distance;
    runner.move = 5;
    EXPECT_EQ(std::pair(speedClass(&runner, 2.5f), speedClass(&runner, 2.6f)), std::pair(1, 2));
    EXPECT_STREQ(speedNames[4], "full out");
}

TEST(MoveTable, NormalSpeedNeedsARollOnlyOnHardGround) {
    for (int terrain = 0; terrain <= 2; ++terrain)
        EXPECT_TRUE(moveTable[0][terrain] <= noRollNeeded && moveTable[1][terrain] <= noRollNeeded &&
                    moveTable[2][terrain] > noRollNeeded);
    int worstCell = 16, terrain = difficultyClass(worstCell);
    EXPECT_EQ(std::pair(moveTable[2 - 1][terrain] + worstCell, moveTable[3 - 1][terrain] + worstCell),
              std::pair(16, 21));
    EXPECT_EQ(moveTable[4 - 1][difficultyClass(31)] + 31, 51);
}
