// Dice known in advance: tests find the seed word from which a generator gives them, instead of
// carrying magic numbers.
#pragma once

#include <algorithm>
#include <vector>

#include "rules/random_source.h"

// The first seed word after which rollDie gives exactly these dice, in order.
inline uint32_t seedFor(const std::vector<int>& dice) {
    RandomSource r;
    for (uint32_t seed = 1;; ++seed) {
        r.seedWord(seed);
        if (std::ranges::all_of(dice, [&](int die) { return r.rollDie() == die; })) return seed;
    }
}
