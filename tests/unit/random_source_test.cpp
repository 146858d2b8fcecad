// The generator against independent oracles: std::mt19937 for the word seeding, Python's random
// module for init_by_array; and the masked rejection that cuts words down to dice.
#include "rules/random_source.h"
#include "temp_dir.h"

#include <random>
#include <vector>

// randInt goes on from the oracle's place, so that it can be checked draw by draw.
TEST(RandomSource, SeedWordMatchesStdMt19937AndRandIntRejectsSoThatDiceAreUniform) {
    RandomSource source, copy;
    std::mt19937 oracle, oracleCopy;
    for (uint32_t seed : {0u, 5489u, 0xDEADBEEFu}) {
        source.seedWord(seed);
        oracle.seed(seed);
        for (int i = 0; i < 2000; ++i) {
            if (i == 700) copy = source, oracleCopy = oracle;
            ASSERT_EQ(source.draw(), oracle()) << "seed " << seed << " word " << i;
        }
        for (int i = 0; i < 1000; ++i)
            ASSERT_EQ(copy.draw(), oracleCopy()) << "a copy keeps its place: word " << i;
    }
    int calls = 20000, draws = 0;
    for (int i = 0; i < calls; ++i) {
        uint32_t expected;
        do
            expected = oracle() & 7u, ++draws;
        while (expected > 5);
        ASSERT_EQ(source.randInt(5), expected);
    }
    EXPECT_GT(draws, calls * 5 / 4) << "a quarter of all draws show 6 or 7 and are thrown away";
    const int rolls = 10000000;
    long long counts[8] = {};
    for (int i = 0; i < rolls; ++i)
        ++counts[source.rollDie() & 7];
    EXPECT_EQ(counts[0] + counts[7], 0);
    double expected = rolls / 6.0, chiSquare = 0;
    for (int face = 1; face <= 6; ++face)
        chiSquare += (counts[face] - expected) * (counts[face] - expected) / expected;
    EXPECT_LT(chiSquare, 20.52) << "five degrees of freedom: exceeded by chance once in a thousand";
}

class RandomSeeding : public TempDirTest {};

TEST_F(RandomSeeding, ArrayMatchesPythonsInitByArrayAndADeviceSeedsOnlyWithAllWords) {
    std::ifstream in(HEXFOLD_TEST_DATA "/mt_init_by_array.txt");
    std::vector<uint32_t> words;
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != '#')
            words.push_back(static_cast<uint32_t>(std::stoul(line, nullptr, 16)));
    ASSERT_EQ(words.size(), 624u + 2000u) << "vectors written by tests/data/mt_init_by_array.py";
    RandomSource source, fromDevice, first, second;
    source.seedArray(words.data());
    for (int i = 0; i < 2000; ++i)
        ASSERT_EQ(source.draw(), words[624 + i]) << "word " << i;
    std::string key(reinterpret_cast<const char*>(words.data()), 624 * 4);
    write("full", key);
    write("short", key.substr(4));
    fromDevice.seedFromDevice("full");
    EXPECT_EQ(fromDevice.draw(), words[624]);
    // Otherwise the clock seeds, and its counter makes two seedings in one tick differ.
    for (const char* device : {"short", "missing"}) {
        first.seedFromDevice(device);
        second.seedFromDevice(device);
        EXPECT_NE(first.draw(), second.draw()) << device;
    }
    // The clock's bytes, lowest first, make 3 * 257^3; the counter adds 1 between two calls.
    uint32_t clock = 3u * 257u * 257u * 257u, hash = systemSeedHash(0, 3);
    EXPECT_EQ(systemSeedHash(0, 3), ((hash ^ clock) + 1) ^ clock);
}
