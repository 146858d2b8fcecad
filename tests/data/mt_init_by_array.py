#!/usr/bin/env python3
"""Writes mt_init_by_array.txt: a 624-word key and the first 2,000 words that Python's random
module draws after seeding with the integer made of that key.

Python seeds from an integer by splitting it into 32-bit words, lowest first, and passing them to
MT19937's init_by_array, so the words it draws are an independent oracle for seedArray. The key
itself comes from a xorshift generator, so that it owes nothing to the Mersenne Twister.

Run from this directory: python3 mt_init_by_array.py
"""
import random

KEY_WORDS = 624
OUTPUT_WORDS = 2000


def xorshift_key(seed, count):
    x = seed
    words = []
    for _ in range(count):
        x ^= (x << 13) & 0xFFFFFFFF
        x ^= x >> 17
        x ^= (x << 5) & 0xFFFFFFFF
        words.append(x)
    # The top word must not be 0, or Python would pass a shorter key.
    words[-1] |= 0x80000000
    return words


def main():
    key = xorshift_key(2463534242, KEY_WORDS)
    seed = sum(word << (32 * i) for i, word in enumerate(key))
    generator = random.Random(seed)
    with open("mt_init_by_array.txt", "w") as out:
        out.write("# key: %d words, then output: %d words, one hexadecimal word a line\n"
                  % (KEY_WORDS, OUTPUT_WORDS))
        for word in key:
            out.write("%08x\n" % word)
        for _ in range(OUTPUT_WORDS):
            out.write("%08x\n" % generator.getrandbits(32))


if __name__ == "__main__":
    main()
