// make_icon: draws the program's icon for the desktop's menu, a die showing six on a grassy
// six-sided cell, and writes it as a PNG with transparency through DevIL.
//
//   make_icon OUTPUT.png [SIZE]
#include <IL/il.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "rules/field_reader.h"
#include "tool_support.h"

namespace {

struct Colour {
    double r, g, b, a;
};

// Paints `top` over `under` where a shape covers the sample.
Colour over(Colour under, Colour top) {
    double a = top.a + under.a * (1 - top.a);
    if (a <= 0) return {0, 0, 0, 0};
    auto channel = [&](double t, double u) { return (t * top.a + u * under.a * (1 - top.a)) / a; };
    return {channel(top.r, under.r), channel(top.g, under.g), channel(top.b, under.b), a};
}

// Signed distances, negative inside: a hexagon with flat top and bottom whose corners lie at
// radius r, and a square of half side h with corners rounded by c.
double hexagon(double x, double y, double r) {
    // Fold into the sextant above the centre, then measure to the flat side there.
    const double kx = -0.8660254037844386, ky = 0.5, kz = 0.5773502691896258;
    double apothem = r * 0.8660254037844386;
    x = std::abs(x), y = std::abs(y);
    double d = 2 * std::min(kx * x + ky * y, 0.0);
    x -= d * kx, y -= d * ky;
    x -= std::clamp(x, -kz * apothem, kz * apothem), y -= apothem;
    return std::hypot(x, y) * (y > 0 ? 1 : -1);
}

double roundedSquare(double x, double y, double h, double c) {
    double qx = std::abs(x) - h + c, qy = std::abs(y) - h + c;
    return std::hypot(std::max(qx, 0.0), std::max(qy, 0.0)) + std::min(std::max(qx, qy), 0.0) - c;
}

// The icon at a point of the square from -1 to 1, y downwards.
Colour icon(double x, double y) {
    Colour c{0, 0, 0, 0};
    double cell = hexagon(x, y, 0.98);
    if (cell < 0) c = over(c, {0.16, 0.22, 0.11, 1});
    if (cell < -0.07) {
        double t = (y + 1) / 2; // lighter grass towards the top, where the light comes from
        c = over(c, {0.45 - 0.17 * t, 0.64 - 0.2 * t, 0.27 - 0.1 * t, 1});
    }

    // The die, turned a little, with its shadow cast down and to the right.
    const double turn = -0.2, cs = std::cos(turn), sn = std::sin(turn);
    auto local = [&](double px, double py, double& lx, double& ly) {
        lx = cs * px + sn * py, ly = -sn * px + cs * py;
    };
    double lx, ly;
    local(x - 0.08, y - 0.1, lx, ly);
    if (roundedSquare(lx, ly, 0.47, 0.14) < 0) c = over(c, {0.05, 0.08, 0.03, 0.45});
    local(x + 0.02, y - 0.02, lx, ly);
    double face = roundedSquare(lx, ly, 0.47, 0.14);
    if (face < 0) c = over(c, face < -0.05 ? Colour{0.96, 0.94, 0.88, 1} : Colour{0.78, 0.75, 0.68, 1});
    // Six pips in two columns, in the red of the die that explodes.
    for (double px : {-0.2, 0.2})
        for (double py : {-0.24, 0.0, 0.24})
            if (std::hypot(lx - px, ly - py) < 0.085) c = over(c, {0.62, 0.1, 0.08, 1});
    return c;
}

int fail(const std::string& message) {
    return failAs("make_icon", message);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) return fail("usage: make_icon OUTPUT.png [SIZE]");
    // Saturated, so that no number wraps round into the range.
    int size = argc == 3 ? parseNumber(argv[2]) : 48;
    if (size < 16 || size > 1024) return fail("size must lie between 16 and 1024");

    // Sixteen samples a pixel smooth the edges.
    const int samples = 4;
    std::vector<unsigned char> pixels(std::size_t(size) * size * 4);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            double r = 0, g = 0, b = 0, a = 0;
            for (int sy = 0; sy < samples; ++sy)
                for (int sx = 0; sx < samples; ++sx) {
                    double u = (x + (sx + 0.5) / samples) / size * 2 - 1;
                    double v = (y + (sy + 0.5) / samples) / size * 2 - 1;
                    Colour c = icon(u, v);
                    r += c.r * c.a, g += c.g * c.a, b += c.b * c.a, a += c.a;
                }
            unsigned char* p = &pixels[(std::size_t(y) * size + x) * 4];
            p[0] = toByte(a > 0 ? r / a : 0), p[1] = toByte(a > 0 ? g / a : 0),
            p[2] = toByte(a > 0 ? b / a : 0);
            p[3] = toByte(a / (samples * samples));
        }

    // The rows above run from the top down.
    std::string fault = savePicture(argv[1], size, 4, pixels.data(), IL_PNG, true);
    return fault.empty() ? 0 : fail(fault);
}
