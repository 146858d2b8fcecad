// Pools of six-sided dice: the DiceCode value type, plain rolls on the shared generator, and the
// table that turns a difficulty number into a class and a name.
#pragma once

#include <string>

// A number of dice plus pips. The two counters are independent: pips never carry into dice, and
// negative values stand as they are.
struct DiceCode {
    DiceCode(int dice = 0, int pips = 0) : dice(dice), pips(pips) {}

    // "%dD+%d": a negative pips value shows as "+-".
    std::string text() const;
    // True when dice and pips do not cancel out to 0. Whether anything is left to roll is the
    // stricter nothingLeft below.
    explicit operator bool() const;
    // Dice first, then pips; equal codes are not greater either way.
    bool operator>(const DiceCode& other) const;
    bool operator==(const DiceCode& other) const = default;
    DiceCode& operator+=(const DiceCode& other);
    DiceCode operator+(const DiceCode& other) const;
    // No floor at zero: this is how a penalty comes off a skill.
    DiceCode operator-(const DiceCode& other) const;
    // The pips plus one die from sharedRandom for each die, but for no more than maxRolledDice;
    // nothing explodes. No dice, no draws.
    int roll() const;

    int dice = 0;
    int pips = 0;
};

// Whether penalties have eaten the whole skill: three times the dice plus the pips is 0 or less,
// a pip being worth a third of a die. Every action that rests on a skill refuses on this, and on
// nothing else.
bool nothingLeft(const DiceCode& code);

// a + b held to the int range: counters and durations may come from hand-edited files.
int clampedSum(int a, int b);

// No roll may freeze the program: a code of more dice than this (only a hand-edited file or field
// makes one) rolls this many.
inline constexpr int maxRolledDice = 1000;

// The sum of count dice, at most maxRolledDice of them, from sharedRandom; 0 for a count of 0 or
// less.
int rollDice(int count);

struct DifficultyRow {
    int upperBound;
    const char* name;
};

// Row i is difficulty class i: "Very Easy" up to 5, ..., "Heroic" at 31.
inline constexpr int difficultyClassCount = 6;
extern const DifficultyRow difficultyTable[difficultyClassCount];

// The first class whose upper bound is not below the difficulty; 5 beyond the table.
int difficultyClass(int difficulty);
// The number that a class stands for; a class outside 0 to 5 is taken as the nearest one.
int difficultyOfClass(int difficultyClass);

// a - b held to the int range: the margin of one roll over another, whatever was typed as a total.
int clampedDifference(int a, int b);
