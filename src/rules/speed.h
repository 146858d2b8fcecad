// Speed classes of a move, and the table that says what a speed adds to the difficulty of the
// ground it crosses.
#pragma once

#include "rules/dice.h"

#include <climits>

class Character;

inline constexpr int speedClassCount = 5;
// Indexed by speed class: "no", "cautious", "normal", "high", "full out".
extern const char* const speedNames[speedClassCount];

// The class of a way of length distance for the character's move: 0 for no way, up to half the
// move cautious, the move normal, twice high, four times full out; -1 beyond, or without a character.
int speedClass(const Character* c, float distance);

// Entries at or below this need no roll.
inline constexpr int noRollNeeded = -100;

// Indexed by speed class less one and by the difficulty class of the worst cell; an entry above
// noRollNeeded is added to that cell's difficulty.
extern const int moveTable[speedClassCount - 1][difficultyClassCount];

// The table's entry for a way at that speed class over ground of that difficulty; a class outside 1
// to 4 counts as the nearest one.
int moveEntry(int speed, int terrainDifficulty);
// What the roll for such a way must reach: the entry added to the ground's difficulty.
int moveDifficulty(int speed, int terrainDifficulty);
