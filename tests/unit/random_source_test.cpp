// The generator against independent oracles: std::mt19937 for the word seeding, Python's random
// module for init_by_array; and the masked rejection that cuts words down to dice.
#include "rules/random_source.h"
#include "temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <vector>

TEST(RandomSource, SeedWordMatchesStdMt19937) {
    for (uint32_t seed : {0u, 5489u, 0xDEADBEEFu}) {
        RandomSource source;
        source.seedWord(seed);
        std::mt19937 oracle(seed);
        for (int i = 0; i < 2000; ++i)
            ASSERT_EQ(source.draw(), oracle()) << "seed " << seed << " word " << i;
    }
}

TEST(RandomSource, SeedArrayMatchesPythonsInitByArray) {
    std::ifstream in(HEXFOLD_TEST_DATA "/mt_init_by_array.txt");
    ASSERT_TRUE(in) << "vectors written by tests/data/mt_init_by_array.py";
    std::vector<uint32_t> words;
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != '#')
            words.push_back(static_cast<uint32_t>(std::stoul(line, nullptr, 16)));
    ASSERT_EQ(words.size(), 624u + 2000u);
    RandomSource source;
    source.seedArray(words.data());
    for (int i = 0; i < 2000; ++i)
        ASSERT_EQ(source.draw(), words[624 + i]) << "word " << i;
}

TEST(RandomSource, ReloadsOnceEvery624DrawsAndCopiesKeepTheirPlace) {
    RandomSource source;
    source.seedWord(1);
    EXPECT_EQ(source.left, 624);
    for (int i = 0; i < 624; ++i)
        source.draw();
    EXPECT_EQ(source.left, 0);
    source.draw();
    EXPECT_EQ(source.left, 623);
    EXPECT_EQ(source.next, source.state + 1);

    RandomSource copy = source;
    EXPECT_EQ(copy.next, copy.state + 1);
    for (int i = 0; i < 700; ++i)
        ASSERT_EQ(copy.draw(), source.draw());
}

TEST(RandomSource, RandIntDrawsAgainAboveTheLimit) {
    RandomSource source;
    source.seedWord(42);
    std::mt19937 oracle(42);
    EXPECT_EQ(source.randInt(0), 0u);
    oracle();
    int calls = 20000, draws = 0;
    for (int i = 0; i < calls; ++i) {
        uint32_t value;
        do
            value = oracle() & 7u, ++draws;
        while (value > 5);
        uint32_t got = source.randInt(5);
        ASSERT_LE(got, 5u);
        ASSERT_EQ(got, value);
    }
    EXPECT_GT(draws, calls * 5 / 4) << "a quarter of all draws show 6 or 7 and are thrown away";
    EXPECT_EQ(source.draw(), oracle()) << "both have made the same number of draws";
    EXPECT_EQ(source.randInt(1), oracle() & 1u);
}

TEST(RandomSource, TenMillionDiceAreUniform) {
    RandomSource source;
    source.seedWord(20240611u);
    const int rolls = 10000000;
    long long counts[7] = {};
    for (int i = 0; i < rolls; ++i)
        ++counts[source.rollDie()];
    EXPECT_EQ(counts[0], 0);
    double expected = rolls / 6.0, chiSquare = 0;
    for (int face = 1; face <= 6; ++face)
        chiSquare += (counts[face] - expected) * (counts[face] - expected) / expected;
    // Five degrees of freedom: 20.52 is exceeded by chance once in a thousand.
    EXPECT_LT(chiSquare, 20.52);
}

class RandomSeeding : public TempDirTest {};

TEST_F(RandomSeeding, UsesTheDeviceOnlyWhenItGivesAllWords) {
    std::vector<uint32_t> key(624);
    for (uint32_t i = 0; i < 624; ++i)
        key[i] = i * 2654435761u;
    write("full", std::string(reinterpret_cast<const char*>(key.data()), 624 * 4));
    write("short", std::string(reinterpret_cast<const char*>(key.data()), 623 * 4));
    RandomSource fromDevice, fromKey, first, second;
    fromDevice.seedFromDevice("full");
    fromKey.seedArray(key.data());
    EXPECT_EQ(fromDevice.draw(), fromKey.draw());

    // A short read falls back on the clock, whose counter makes two seedings in one tick differ.
    first.seedFromDevice("short");
    second.seedFromDevice("short");
    EXPECT_NE(first.draw(), second.draw());
    first.seedFromDevice("missing");
    second.seedFromDevice("missing");
    EXPECT_NE(first.draw(), second.draw());
}

TEST(RandomSource, FallbackHashMixesTimeClockAndCounter) {
    uint32_t a = systemSeedHash(0, 0);
    EXPECT_EQ(systemSeedHash(0, 0), a + 1);
    // The bytes go in lowest first: 257 times the running value plus each byte.
    uint32_t clockPart = 3u * 257u * 257u * 257u;
    EXPECT_EQ(systemSeedHash(0, 3), (a + 2) ^ clockPart);
    uint32_t timePart = 1u;
    for (int i = 0; i < 7; ++i)
        timePart *= 257u;
    EXPECT_EQ(systemSeedHash(1, 0), timePart + a + 3);
}
