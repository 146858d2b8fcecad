// Speed classes and the movement table.
#include "rules/speed.h"

#include "rules/character.h"

const char* const speedNames[speedClassCount] = {"no", "cautious", "normal", "high", "full out"};

const int moveTable[speedClassCount - 1][difficultyClassCount] = {
    {INT_MIN, INT_MIN, INT_MIN, -5, -5, -10},
    {-100, -100, -100, 0, 0, 0},
    {0, 0, 0, 5, 10, 10},
    {5, 5, 5, 15, 20, 20},
};

int speedClass(const Character* c, float distance) {
    if (c == nullptr) return -1;
    // In floating point, so that half an odd move is not cut down.
    float move = static_cast<float>(c->move);
    if (distance <= 0.0f) return 0;
    if (distance <= move / 2.0f) return 1;
    if (distance <= move) return 2;
    if (distance <= 2.0f * move) return 3;
    if (distance <= 4.0f * move) return 4;
    return -1;
}

int moveEntry(int speed, int terrainDifficulty) {
    int row = speed < 1 ? 0 : speed > 4 ? 3 : speed - 1;
    return moveTable[row][difficultyClass(terrainDifficulty)];
}

int moveDifficulty(int speed, int terrainDifficulty) {
    return clampedSum(moveEntry(speed, terrainDifficulty), terrainDifficulty);
}
