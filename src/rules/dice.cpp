// Pools of six-sided dice and the difficulty table.
#include "rules/dice.h"

#include "rules/random_source.h"

#include <algorithm>
#include <climits>
#include <cstdio>

namespace {
// Codes come from hand-edited files, so sums saturate instead of overflowing.
int saturate(long long value) {
    return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}
} // namespace

std::string DiceCode::text() const {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%dD+%d", dice, pips);
    return buffer;
}

DiceCode::operator bool() const {
    return static_cast<long long>(dice) + pips != 0;
}

bool DiceCode::operator>(const DiceCode& other) const {
    if (dice != other.dice) return dice > other.dice;
    return pips > other.pips;
}

DiceCode& DiceCode::operator+=(const DiceCode& other) {
    dice = saturate(static_cast<long long>(dice) + other.dice);
    pips = saturate(static_cast<long long>(pips) + other.pips);
    return *this;
}

DiceCode DiceCode::operator+(const DiceCode& other) const {
    DiceCode sum = *this;
    sum += other;
    return sum;
}

DiceCode DiceCode::operator-(const DiceCode& other) const {
    return DiceCode(saturate(static_cast<long long>(dice) - other.dice),
                    saturate(static_cast<long long>(pips) - other.pips));
}

int DiceCode::roll() const {
    return saturate(static_cast<long long>(pips) + rollDice(dice));
}

int clampedSum(int a, int b) {
    return saturate(static_cast<long long>(a) + b);
}

bool nothingLeft(const DiceCode& code) {
    return 3LL * code.dice + code.pips <= 0;
}

int rollDice(int count) {
    int sum = 0;
    for (int i = 0; i < std::min(count, maxRolledDice); ++i)
        sum += sharedRandom.rollDie();
    return sum;
}

const DifficultyRow difficultyTable[difficultyClassCount] = {
    {5, "Very Easy"}, {10, "Easy"}, {15, "Medium"}, {20, "Difficult"}, {30, "Very Difficult"}, {31, "Heroic"},
};

int difficultyClass(int difficulty) {
    for (int i = 0; i < difficultyClassCount; ++i)
        if (difficultyTable[i].upperBound >= difficulty) return i;
    return difficultyClassCount - 1;
}

int difficultyOfClass(int difficultyClass) {
    return difficultyTable[std::clamp(difficultyClass, 0, difficultyClassCount - 1)].upperBound;
}

int clampedDifference(int a, int b) {
    return saturate(static_cast<long long>(a) - b);
}
