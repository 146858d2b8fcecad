// Checking and reading the ground picture.
#include "map/ground_picture.h"

#include <IL/il.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

namespace {
constexpr std::size_t headerSize = 128; // the magic word and the header behind it
constexpr std::uint32_t maxSide = 4096;

// Header flags and capabilities that decide what the library would read.
constexpr std::uint32_t hasDepth = 0x800000;
constexpr std::uint32_t fourCCFormat = 0x4, rgbFormat = 0x40;
constexpr std::uint32_t cubeMap = 0x200, volume = 0x200000;

std::uint32_t word(std::string_view bytes, std::size_t at) {
    auto b = [&](std::size_t i) { return std::uint32_t(static_cast<unsigned char>(bytes[at + i])); };
    return b(0) | b(1) << 8 | b(2) << 16 | b(3) << 24;
}

constexpr std::uint32_t fourCC(const char (&code)[5]) {
    return std::uint32_t(code[0]) | std::uint32_t(code[1]) << 8 | std::uint32_t(code[2]) << 16 |
           std::uint32_t(code[3]) << 24;
}

bool powerOfTwo(std::uint32_t n) {
    return n != 0 && (n & (n - 1)) == 0;
}

// Each level is the largest within the file: the whole mipmap chain of a 4096 x 4096 picture at
// 32 bits a pixel, with room to spare.
constexpr std::size_t maxFileSize = headerSize + 2 * std::size_t(maxSide) * maxSide * 4;
} // namespace

const char* groundPictureFault(std::string_view bytes) {
    if (bytes.size() < headerSize || bytes.substr(0, 4) != "DDS ") return "is no DDS picture";
    if (word(bytes, 4) != 124 || word(bytes, 76) != 32) return "has a damaged header";
    std::uint32_t flags = word(bytes, 8), height = word(bytes, 12), width = word(bytes, 16);
    std::uint32_t depth = word(bytes, 24), mipmaps = word(bytes, 28);
    std::uint32_t format = word(bytes, 80), code = word(bytes, 84), bits = word(bytes, 88);
    std::uint32_t caps2 = word(bytes, 112);
    if ((caps2 & (cubeMap | volume)) != 0 || ((flags & hasDepth) != 0 && depth > 1))
        return "is no flat picture";
    if (!powerOfTwo(width) || !powerOfTwo(height) || width > maxSide || height > maxSide)
        return "has a side that is no power of two from 1 to 4096";

    // Bytes of a level of w x h pixels: blocks of 4 x 4 pixels for the compressed formats.
    std::size_t blockBytes = 0, pixelBytes = 0;
    if ((format & fourCCFormat) != 0) {
        if (code == fourCC("DXT1"))
            blockBytes = 8;
        else if (code == fourCC("DXT3") || code == fourCC("DXT5"))
            blockBytes = 16;
    } else if ((format & rgbFormat) != 0 && (bits == 24 || bits == 32)) {
        pixelBytes = bits / 8;
    }
    if (blockBytes == 0 && pixelBytes == 0) return "is in a format that the program does not read";
    // Without a linear size the library sizes even a compressed picture's rows by the bit count,
    // in 32 bits: a count beyond a pixel's 32 asks it for up to gigabytes.
    if (blockBytes && bits > 32) return "has a damaged header";

    // The library sizes what it reads by the pitch or linear size, when there is one: it must be
    // what the sides give, a row's bytes or the first level's.
    std::size_t rowBytes = pixelBytes * width;
    std::size_t firstLevel =
        blockBytes ? blockBytes * ((width + 3) / 4) * ((height + 3) / 4) : rowBytes * height;
    std::uint32_t stated = word(bytes, 20);
    if (stated != 0 && stated != firstLevel && (blockBytes || stated != rowBytes))
        return "states a size that its sides do not give";

    std::uint32_t levels = std::max<std::uint32_t>(mipmaps, 1), possible = 1;
    for (std::uint32_t side = std::max(width, height); side > 1; side /= 2)
        ++possible;
    if (levels > possible) return "announces more mipmap levels than its size allows";
    std::size_t needed = headerSize;
    for (std::uint32_t level = 0, w = width, h = height; level < levels; ++level) {
        if (blockBytes)
            needed += blockBytes * ((w + 3) / 4) * ((h + 3) / 4);
        else
            needed += pixelBytes * w * h;
        w = std::max<std::uint32_t>(w / 2, 1);
        h = std::max<std::uint32_t>(h / 2, 1);
    }
    if (bytes.size() < needed) return "is shorter than its header says";
    return nullptr;
}

bool readGroundPicture(const char* name) {
    auto refuse = [name](const char* why) {
        std::fprintf(stderr, "%s: %s; the map goes without a ground picture\n", name, why);
        return false;
    };
    std::ifstream in(name, std::ios::binary);
    if (!in) return refuse("cannot be opened");
    std::string bytes;
    char block[65536];
    while (in && bytes.size() <= maxFileSize) {
        in.read(block, sizeof block);
        bytes.append(block, static_cast<std::size_t>(in.gcount()));
    }
    if (in.bad()) return refuse("cannot be read");
    if (bytes.size() > maxFileSize) return refuse("is larger than any ground picture");
    if (const char* fault = groundPictureFault(bytes)) return refuse(fault);
    // Given as DDS whatever the name says, so that no other reader of the library sees the bytes.
    if (!ilLoadL(IL_DDS, bytes.data(), static_cast<ILuint>(bytes.size()))) return refuse("cannot be decoded");
    return true;
}
