// make_ground: paints the map's ground picture (grass, bare dirt, a gravel road with ruts, pebbles)
// and writes it as a DDS image through DevIL. The map lays the picture under all cells as one
// sheet that repeats every 26.5 map units, so everything here tiles without a seam.
//
//   make_ground OUTPUT.dds [SIZE]
#include <IL/il.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "rules/field_reader.h"
#include "tool_support.h"

namespace {

constexpr double pi = 3.14159265358979323846;

// A hash of a lattice point, wrapped to the period so that the noise tiles.
double lattice(int x, int y, int period, std::uint32_t seed) {
    x = ((x % period) + period) % period;
    y = ((y % period) + period) % period;
    std::uint32_t h =
        seed ^ (static_cast<std::uint32_t>(x) * 0x8da6b343u) ^ (static_cast<std::uint32_t>(y) * 0xd8163841u);
    h ^= h >> 13;
    h *= 0x85ebca6bu;
    h ^= h >> 16;
    return (h & 0xffffff) / double(0xffffff);
}

double smooth(double t) {
    return t * t * (3 - 2 * t);
}

// Value noise in 0..1 with `period` lattice cells across the picture; u and v run 0..1.
double noise(double u, double v, int period, std::uint32_t seed) {
    double x = u * period, y = v * period;
    int x0 = static_cast<int>(std::floor(x)), y0 = static_cast<int>(std::floor(y));
    double fx = smooth(x - x0), fy = smooth(y - y0);
    double a = lattice(x0, y0, period, seed), b = lattice(x0 + 1, y0, period, seed);
    double c = lattice(x0, y0 + 1, period, seed), d = lattice(x0 + 1, y0 + 1, period, seed);
    return (a + (b - a) * fx) * (1 - fy) + (c + (d - c) * fx) * fy;
}

// Several octaves of noise, each twice as fine and half as strong, in 0..1.
double fractal(double u, double v, int period, int octaves, std::uint32_t seed) {
    double sum = 0, weight = 1, total = 0;
    for (int o = 0; o < octaves; ++o) {
        sum += weight * noise(u, v, period << o, seed + 977u * o);
        total += weight;
        weight *= 0.5;
    }
    return sum / total;
}

struct Colour {
    double r, g, b;
};

Colour mix(Colour a, Colour b, double t) {
    t = std::clamp(t, 0.0, 1.0);
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

double band(double value, double edge0, double edge1) {
    return smooth(std::clamp((value - edge0) / (edge1 - edge0), 0.0, 1.0));
}

// The distance, in picture widths, from (u, v) to the road's centre line, which winds across the
// picture and meets itself at the edges.
double roadDistance(double u, double v) {
    // On the sample map this is the road along the south edge, clear of the hill and the shed.
    double centre = 0.93 + 0.03 * std::sin(2 * pi * u) + 0.012 * std::sin(4 * pi * u + 1.3);
    double d = std::abs(v - centre);
    return std::min(d, 1 - d);
}

Colour ground(double u, double v) {
    const Colour grassDark{0.22, 0.36, 0.15}, grassLight{0.38, 0.52, 0.22}, dryGrass{0.52, 0.53, 0.28};
    const Colour dirt{0.45, 0.36, 0.25}, dirtDark{0.34, 0.26, 0.18};
    const Colour gravel{0.58, 0.55, 0.48}, gravelDark{0.44, 0.41, 0.36};

    double lush = fractal(u, v, 8, 5, 11);
    double blades = noise(u, v, 256, 23);
    Colour c = mix(grassDark, grassLight, lush * 1.3 - 0.15 + 0.25 * (blades - 0.5));
    c = mix(c, dryGrass, band(fractal(u, v, 4, 3, 31), 0.6, 0.75) * 0.6);

    // Patches of bare dirt where the coarse noise is high, with a soft, ragged rim.
    double patch = fractal(u, v, 4, 4, 47) + 0.08 * (noise(u, v, 64, 53) - 0.5);
    Colour earth = mix(dirt, dirtDark, fractal(u, v, 32, 3, 59));
    c = mix(c, earth, band(patch, 0.6, 0.66));

    // The road: gravel with a worn verge and two darker ruts.
    double d = roadDistance(u, v) + 0.006 * (noise(u, v, 48, 61) - 0.5);
    const double halfWidth = 0.022; // about 1.2 map units wide in all
    Colour stones = mix(gravel, gravelDark, noise(u, v, 192, 67) * 0.8 + 0.2 * noise(u, v, 24, 71));
    double rut = std::exp(-std::pow((d - 0.011) / 0.0035, 2)) * 0.35;
    stones = mix(stones, gravelDark, rut);
    c = mix(c, mix(earth, c, 0.4), band(halfWidth + 0.01 - d, 0, 0.01) * 0.7);
    c = mix(c, stones, band(halfWidth - d, 0, 0.004));

    // Scattered pebbles and darker tufts.
    double speck = noise(u, v, 512, 83);
    if (speck > 0.93) c = mix(c, Colour{0.62, 0.6, 0.55}, (speck - 0.93) * 10);
    if (speck < 0.05) c = mix(c, Colour{0.14, 0.24, 0.1}, (0.05 - speck) * 12);
    return c;
}

int fail(const std::string& message) {
    return failAs("make_ground", message);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) return fail("usage: make_ground OUTPUT.dds [SIZE]");
    // Saturated, so that no number wraps round into the range.
    int size = argc == 3 ? parseNumber(argv[2]) : 1024;
    if (size < 16 || size > 4096 || (size & (size - 1)) != 0)
        return fail("size must be a power of two from 16 to 4096");

    std::vector<unsigned char> pixels(std::size_t(size) * size * 3);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            Colour c = ground((x + 0.5) / size, (y + 0.5) / size);
            unsigned char* p = &pixels[(std::size_t(y) * size + x) * 3];
            p[0] = toByte(c.r), p[1] = toByte(c.g), p[2] = toByte(c.b);
        }

    std::string fault = savePicture(argv[1], size, 3, pixels.data(), IL_DDS, false);
    return fault.empty() ? 0 : fail(fault);
}
