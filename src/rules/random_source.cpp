// The Mersenne Twister MT19937, its seedings, and the shared generator.
#include "rules/random_source.h"

#include <cstdio>
#include <cstring>
#include <ctime>

namespace {
constexpr int shift = 397;
constexpr uint32_t matrix = 0x9908B0DFu;
constexpr uint32_t upperMask = 0x80000000u;
constexpr uint32_t lowerMask = 0x7FFFFFFFu;

uint32_t differ = 0;

RandomSource seededFromSystem() {
    RandomSource source;
    source.seedFromSystem();
    return source;
}

void initialise(uint32_t* state, uint32_t seed) {
    state[0] = seed;
    for (uint32_t i = 1; i < RandomSource::stateSize; ++i)
        state[i] = 1812433253u * (state[i - 1] ^ (state[i - 1] >> 30)) + i;
}
} // namespace

RandomSource sharedRandom = seededFromSystem();

RandomSource::RandomSource() {
    seedWord(5489u);
}

RandomSource::RandomSource(const RandomSource& other) {
    *this = other;
}

RandomSource& RandomSource::operator=(const RandomSource& other) {
    std::memcpy(state, other.state, sizeof state);
    next = state + (other.next - other.state);
    left = other.left;
    return *this;
}

uint32_t systemSeedHash(uint64_t time, uint32_t clock) {
    uint32_t h1 = 0;
    for (int i = 0; i < 8; ++i)
        h1 = h1 * 257u + static_cast<uint8_t>(time >> (8 * i));
    uint32_t h2 = 0;
    for (int i = 0; i < 4; ++i)
        h2 = h2 * 257u + static_cast<uint8_t>(clock >> (8 * i));
    return (h1 + differ++) ^ h2;
}

namespace {
// Zero while the system seeds; else the next word that a seeding "from the system" takes.
uint32_t replaySeed = 0;
} // namespace

void replaySystemSeeds(uint32_t first) {
    replaySeed = first;
}

void RandomSource::seedFromSystem() {
    if (replaySeed != 0) {
        seedWord(replaySeed++);
        return;
    }
    seedFromDevice("/dev/urandom");
}

void RandomSource::seedFromDevice(const char* path) {
    if (std::FILE* device = std::fopen(path, "rb")) {
        uint32_t key[stateSize];
        int words = 0;
        while (words < stateSize && std::fread(&key[words], sizeof key[0], 1, device) == 1)
            ++words;
        std::fclose(device);
        if (words == stateSize) {
            seedArray(key);
            return;
        }
    }
    seedWord(systemSeedHash(static_cast<uint64_t>(std::time(nullptr)), static_cast<uint32_t>(std::clock())));
}

void RandomSource::seedWord(uint32_t seed) {
    initialise(state, seed);
    reload();
}

void RandomSource::seedArray(const uint32_t key[stateSize]) {
    initialise(state, 19650218u);
    uint32_t i = 1, j = 0;
    for (int k = 0; k < stateSize; ++k) {
        state[i] = (state[i] ^ ((state[i - 1] ^ (state[i - 1] >> 30)) * 1664525u)) + key[j] + j;
        ++i;
        ++j;
        if (i >= stateSize) {
            state[0] = state[stateSize - 1];
            i = 1;
        }
        if (j >= stateSize) j = 0;
    }
    for (int k = 0; k < stateSize - 1; ++k) {
        state[i] = (state[i] ^ ((state[i - 1] ^ (state[i - 1] >> 30)) * 1566083941u)) - i;
        ++i;
        if (i >= stateSize) {
            state[0] = state[stateSize - 1];
            i = 1;
        }
    }
    state[0] = 0x80000000u;
    reload();
}

void RandomSource::reload() {
    for (int k = 0; k < stateSize; ++k) {
        uint32_t y = (state[k] & upperMask) | (state[(k + 1) % stateSize] & lowerMask);
        state[k] = state[(k + shift) % stateSize] ^ (y >> 1) ^ ((y & 1u) ? matrix : 0u);
    }
    next = state;
    left = stateSize;
}

uint32_t RandomSource::draw() {
    if (left == 0) reload();
    --left;
    uint32_t y = *next++;
    y ^= y >> 11;
    y ^= (y << 7) & 0x9D2C5680u;
    y ^= (y << 15) & 0xEFC60000u;
    y ^= y >> 18;
    return y;
}

uint32_t RandomSource::randInt(uint32_t n) {
    uint32_t mask = n;
    mask |= mask >> 1;
    mask |= mask >> 2;
    mask |= mask >> 4;
    mask |= mask >> 8;
    mask |= mask >> 16;
    uint32_t value;
    do
        value = draw() & mask;
    while (value > n);
    return value;
}

int RandomSource::rollDie() {
    return 1 + static_cast<int>(randInt(5));
}
