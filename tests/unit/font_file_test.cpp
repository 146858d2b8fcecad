// The font file reader against short and damaged files, and measuring without a font.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <tuple>

#include "toolkit/font.h"

namespace {

void putInt(std::string& s, std::int32_t v) {
    s.append(reinterpret_cast<const char*>(&v), 4);
}
void putFloat(std::string& s, float v) {
    s.append(reinterpret_cast<const char*>(&v), 4);
}

// A well-formed font of three glyphs, 'A' to 'C', on a 4 x 2 texture.
std::string smallFont() {
    std::string s;
    for (std::int32_t v : {99, 4, 2, 65, 67, 0})
        putInt(s, v);
    for (int g = 0; g < 3; ++g)
        for (float v : {float(g + 1), 10.0f, 0.0f, 0.0f, 0.25f, 1.0f})
            putFloat(s, v);
    s.append(2 * 4 * 2, '\x7f');
    return s;
}

struct Parsed {
    int w = 0, h = 0, first = 0, last = 0;
    std::vector<Glyph> glyphs;
    std::vector<unsigned char> pixels;
    bool operator()(const std::string& bytes) { return parseFont(bytes, w, h, first, last, glyphs, pixels); }
};

TEST(FontFile, AWellFormedFileGivesItsDataAndShortOrDamagedOnesAreRefusedWithoutReadingPastIt) {
    std::string good = smallFont();
    Parsed p;
    ASSERT_TRUE(p(good + "trailing bytes are ignored"));
    ASSERT_EQ(p.glyphs.size(), 3u);
    EXPECT_EQ(std::tuple(p.w, p.h, p.first, p.last, p.glyphs[2].dx, p.glyphs[0].tx2, p.pixels.size()),
              std::tuple(4, 2, 65, 67, 3.0f, 0.25f, 16u));
    for (std::size_t n = 0; n <= good.size(); ++n)
        EXPECT_EQ(p(good.substr(0, n)), n == good.size()) << n << " bytes";
    struct Damage {
        std::size_t at;
        std::int32_t value;
    } damages[] = {{4, 0},
                   {8, -5},
                   {4, 0x7fffffff},
                   {16, 64}, // width, height, size, last < first
                   {12, -1},
                   {16, 0x7fffffff},
                   {24 + 4, 0},                // first < 0, count, reference height
                   {24 + 24 + 8, 0x7fc00000}}; // a glyph with a NaN
    for (const Damage& d : damages) {
        std::string s = good;
        std::memcpy(s.data() + d.at, &d.value, 4);
        EXPECT_FALSE(p(s)) << "at " << d.at;
    }
}

TEST(FontFile, WithoutAFontTextMeasuresHalfTheSizePerCharacterAndCountsLines) {
    ASSERT_FALSE(fontLoaded);
    const std::tuple<const char*, float, float, int> cases[] = {
        {"", 2, 0, 1},
        {"abc", 2, 3, 1},
        {"ab\nabcd\nx", 1, 2, 3}, // the widest line
        {"a\tb", 1, 2.5f, 1},     // the tab goes to the stop at 2
        {"abcd", 0, 4, 1},        // size 0 uses the current size of 2
        {"ends in a newline\n", 1, 8.5f, 2}};
    for (auto [text, size, width, lines] : cases)
        EXPECT_EQ(std::pair(measureText(text, size), lineCount(text)), std::pair(width, lines)) << text;
}

TEST(FontFile, LoadingAMissingOrDamagedFileLeavesTheFontUnloaded) {
    // Only the reader's failures: no GL call is made before the data is known to be good.
    std::string dir = ::testing::TempDir() + "font_file_test";
    std::filesystem::create_directories(dir);
    auto old = std::filesystem::current_path();
    std::filesystem::current_path(dir);
    std::filesystem::remove("verdana.glf");
    loadFont();
    EXPECT_FALSE(fontLoaded);
    std::ofstream("verdana.glf", std::ios::binary) << smallFont().substr(0, 40);
    loadFont();
    EXPECT_FALSE(fontLoaded);
    std::filesystem::current_path(old);
}

} // namespace
