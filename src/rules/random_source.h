// The Mersenne Twister MT19937 with its published seedings, the masked-rejection cut of a word
// down to a range, and the shared generator that every plain roll uses.
#pragma once

#include <cstdint>

class RandomSource {
  public:
    static constexpr int stateSize = 624;

    // Starts from the published default seed, so that no instance is ever unseeded; owners then
    // seed it as they need, as a rule with seedFromSystem.
    RandomSource();
    // The draw position points into the object's own state, so copies rebase it.
    RandomSource(const RandomSource& other);
    RandomSource& operator=(const RandomSource& other);

    // 624 words from "/dev/urandom"; without them, a word hashed from the time and the clock.
    void seedFromSystem();
    // The same from any device or file; a file that cannot give all 624 words is not used at all.
    void seedFromDevice(const char* path);
    // The published init_genrand.
    void seedWord(uint32_t seed);
    // The published init_by_array with a key of 624 words.
    void seedArray(const uint32_t key[stateSize]);

    // One tempered 32-bit word.
    uint32_t draw();
    // Uniform from 0 to n, both included: the low bits under n's mask, drawn again while above n.
    uint32_t randInt(uint32_t n);
    // 1 to 6.
    int rollDie();

    uint32_t state[stateSize];
    uint32_t* next;
    int left;

  private:
    void reload();
};

// The fallback seed: the bytes of the calendar time and of the processor clock, hashed, plus a
// counter that grows with each call so that two seedings within one clock tick still differ.
uint32_t systemSeedHash(uint64_t time, uint32_t clock);

// For runs that must repeat (the soak): from now on every seeding from the system takes a word of
// the sequence first, first + 1, ... instead, so that the same input gives the same dice. A first
// word of 0 gives the system back its seeding.
void replaySystemSeeds(uint32_t first);

// Seeded from the system before main runs.
extern RandomSource sharedRandom;
