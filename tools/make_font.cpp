// make_font: rasterises a TrueType face with FreeType into the program's bitmap font file (the
// glFont layout): a header, one record per printable ASCII character, and a luminance-alpha
// texture in which each character has a cell as high as a line.
//
//   make_font FONT.ttf OUTPUT.glf [LINE_HEIGHT_PIXELS]
//
// A line of 20 pixels keeps the spacing true at the sizes the program draws (11 to 21 pixels high):
// rounding each advance to whole pixels distorts the spacing of smaller rasters.
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "rules/field_reader.h"
#include "tool_support.h"

namespace {
constexpr int firstChar = 32, lastChar = 126;
constexpr int textureWidth = 256;
constexpr int gap = 2; // empty texels between cells, so that linear filtering never bleeds

// The screen's logical units are wider (10.24 px) than high (7.68 px); widths are stored narrowed
// by that ratio so that letters keep their shape on the screen.
constexpr float aspect = 7.68f / 10.24f;

struct Cell {
    int x = 0, y = 0, width = 0;
    std::vector<std::uint8_t> coverage; // width x lineHeight
};

void putInt32(std::string& out, std::int32_t v) {
    auto u = static_cast<std::uint32_t>(v);
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<char>((u >> (8 * i)) & 0xff));
}

void putFloat(std::string& out, float f) {
    std::int32_t bits;
    std::memcpy(&bits, &f, sizeof bits);
    putInt32(out, bits);
}

int fail(const std::string& message) {
    return failAs("make_font", message);
}
} // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) return fail("usage: make_font FONT.ttf OUTPUT.glf [LINE_HEIGHT_PIXELS]");
    // Saturated, so that no number wraps round into the range.
    int lineHeight = argc == 4 ? parseNumber(argv[3]) : 20;
    if (lineHeight < 6 || lineHeight > 128) return fail("line height must lie between 6 and 128 pixels");

    FT_Library library;
    if (FT_Init_FreeType(&library)) return fail("cannot start FreeType");
    // FreeType is let go on every way out, the failures too.
    struct Release {
        FT_Library library;
        ~Release() { FT_Done_FreeType(library); }
    } release{library};
    FT_Face face;
    if (FT_New_Face(library, argv[1], 0, &face)) return fail(std::string("cannot read ") + argv[1]);

    // The largest em size whose ascender and descender fit in one line.
    int ascender = 0;
    for (int em = lineHeight; em > 1; --em) {
        FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(em));
        int asc = static_cast<int>((face->size->metrics.ascender + 63) >> 6);
        int desc = static_cast<int>((-face->size->metrics.descender + 63) >> 6);
        if (asc + desc <= lineHeight) {
            // Centre the line's extent in the cell.
            ascender = asc + (lineHeight - asc - desc) / 2;
            break;
        }
    }

    std::vector<Cell> cells(lastChar - firstChar + 1);
    int penX = gap, penY = gap;
    for (int c = firstChar; c <= lastChar; ++c) {
        if (FT_Load_Char(face, static_cast<FT_ULong>(c), FT_LOAD_RENDER | FT_LOAD_TARGET_LIGHT))
            return fail("cannot render character " + std::to_string(c));
        FT_GlyphSlot slot = face->glyph;
        const FT_Bitmap& bitmap = slot->bitmap;
        int advance = static_cast<int>((slot->advance.x + 32) >> 6);
        // Ink that reaches left of the pen or right of the advance widens the cell rather than
        // being cut off.
        int left = std::min(0, slot->bitmap_left);
        int right = std::max(advance, slot->bitmap_left + static_cast<int>(bitmap.width));
        Cell& cell = cells[c - firstChar];
        cell.width = std::max(1, right - left);
        if (cell.width + 2 * gap > textureWidth)
            return fail("character " + std::to_string(c) + " is wider than the texture");
        cell.coverage.assign(static_cast<std::size_t>(cell.width) * lineHeight, 0);
        for (unsigned row = 0; row < bitmap.rows; ++row) {
            int y = ascender - slot->bitmap_top + static_cast<int>(row);
            if (y < 0 || y >= lineHeight) continue;
            for (unsigned col = 0; col < bitmap.width; ++col) {
                int x = slot->bitmap_left - left + static_cast<int>(col);
                cell.coverage[static_cast<std::size_t>(y) * cell.width + x] =
                    bitmap.buffer[row * bitmap.pitch + col];
            }
        }
        if (penX + cell.width + gap > textureWidth) {
            penX = gap;
            penY += lineHeight + gap;
        }
        cell.x = penX;
        cell.y = penY;
        penX += cell.width + gap;
    }

    int used = penY + lineHeight + gap;
    int textureHeight = 1;
    while (textureHeight < used)
        textureHeight *= 2;

    // Luminance-alpha pairs: white, with the coverage as opacity; the colour comes from the caller.
    std::vector<std::uint8_t> pixels(2 * std::size_t(textureWidth) * textureHeight, 0);
    for (std::size_t i = 0; i < pixels.size(); i += 2)
        pixels[i] = 255;
    for (const Cell& cell : cells)
        for (int y = 0; y < lineHeight; ++y)
            for (int x = 0; x < cell.width; ++x)
                pixels[2 * (std::size_t(cell.y + y) * textureWidth + cell.x + x) + 1] =
                    cell.coverage[std::size_t(y) * cell.width + x];

    std::string out;
    putInt32(out, 0);
    putInt32(out, textureWidth);
    putInt32(out, textureHeight);
    putInt32(out, firstChar);
    putInt32(out, lastChar);
    putInt32(out, 0);
    for (const Cell& cell : cells) {
        putFloat(out, cell.width * aspect);
        putFloat(out, static_cast<float>(lineHeight));
        putFloat(out, float(cell.x) / textureWidth);
        putFloat(out, float(cell.y) / textureHeight);
        putFloat(out, float(cell.x + cell.width) / textureWidth);
        putFloat(out, float(cell.y + lineHeight) / textureHeight);
    }
    out.append(reinterpret_cast<const char*>(pixels.data()), pixels.size());

    std::ofstream file(argv[2], std::ios::binary | std::ios::trunc);
    if (!file.write(out.data(), static_cast<std::streamsize>(out.size())))
        return fail(std::string("cannot write ") + argv[2]);
    return 0;
}
