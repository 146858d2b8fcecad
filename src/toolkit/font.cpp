// The bitmap font: loading the glFont file into one luminance-alpha texture, and drawing and
// measuring text as textured quads. Characters outside the font's range are skipped.
#include "toolkit/font.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

bool fontLoaded = false;
float currentFontSize = 2.0f;
int fontFirstChar = 0, fontLastChar = -1;
std::vector<Glyph> fontGlyphs;

namespace {
GLuint fontTexture = 0;

// Nothing the program draws needs more; a header asking for more is damage, not a font. At this
// side the file and its pixels take under 100 MiB while they are read.
constexpr int maxTextureSide = 4096;
constexpr int maxGlyphs = 65536;
constexpr std::size_t maxFileSize = 2 * std::size_t(maxTextureSide) * maxTextureSide + 24 + 24 * maxGlyphs;

std::int32_t readInt32(const std::string& bytes, std::size_t at) {
    unsigned char b[4];
    std::memcpy(b, bytes.data() + at, 4);
    return static_cast<std::int32_t>(std::uint32_t(b[0]) | std::uint32_t(b[1]) << 8 |
                                     std::uint32_t(b[2]) << 16 | std::uint32_t(b[3]) << 24);
}

float readFloat(const std::string& bytes, std::size_t at) {
    std::int32_t bits = readInt32(bytes, at);
    float f;
    std::memcpy(&f, &bits, sizeof f);
    return f;
}

void unloadFont() {
    fontGlyphs.clear();
    fontLoaded = false;
    if (fontTexture) {
        glDeleteTextures(1, &fontTexture);
        fontTexture = 0;
    }
}

const Glyph* glyphFor(char ch) {
    int c = static_cast<unsigned char>(ch);
    if (c < fontFirstChar || c > fontLastChar) return nullptr;
    std::size_t index = static_cast<std::size_t>(c - fontFirstChar);
    return index < fontGlyphs.size() ? &fontGlyphs[index] : nullptr;
}

// Width of one character at a size, 0 for a character the font lacks. Without a font every
// character counts half the size, which keeps layout sensible.
float glyphWidth(char ch, float size) {
    if (!fontLoaded) return 0.5f * size;
    const Glyph* g = glyphFor(ch);
    return g ? g->dx * size / fontGlyphs[0].dy : 0.0f;
}

int hexDigit(char c) {
    return (c >= '0' && c <= '9') ? c - '0' : c - 87;
}

void emitGlyph(const Glyph& g, float x, float y, float w, float size) {
    glTexCoord2f(g.tx1, g.ty1);
    glVertex3f(x, y, 0);
    glTexCoord2f(g.tx1, g.ty2);
    glVertex3f(x, y + size, 0);
    glTexCoord2f(g.tx2, g.ty2);
    glVertex3f(x + w, y + size, 0);
    glTexCoord2f(g.tx2, g.ty1);
    glVertex3f(x + w, y, 0);
}

void beginText(float size) {
    glEnable(GL_TEXTURE_2D);
    if (size != 0) currentFontSize = size;
    glBindTexture(GL_TEXTURE_2D, fontTexture);
    glBegin(GL_QUADS);
}

void endText() {
    glEnd();
    glDisable(GL_TEXTURE_2D);
}
} // namespace

bool parseFont(const std::string& bytes, int& textureWidth, int& textureHeight, int& firstChar, int& lastChar,
               std::vector<Glyph>& glyphs, std::vector<unsigned char>& pixels) {
    if (bytes.size() < 24) return false;
    std::int32_t w = readInt32(bytes, 4), h = readInt32(bytes, 8);
    std::int32_t first = readInt32(bytes, 12), last = readInt32(bytes, 16);
    if (w < 1 || h < 1 || w > maxTextureSide || h > maxTextureSide) return false;
    if (first < 0 || last < first || last - first >= maxGlyphs) return false;
    std::size_t n = static_cast<std::size_t>(last - first) + 1;
    std::size_t pixelBytes = 2 * std::size_t(w) * std::size_t(h);
    std::size_t tableEnd = 24 + 24 * n;
    if (bytes.size() < tableEnd + pixelBytes) return false;

    glyphs.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        float f[6];
        for (int k = 0; k < 6; ++k) {
            f[k] = readFloat(bytes, 24 + 24 * i + 4 * k);
            if (!std::isfinite(f[k])) return false;
        }
        glyphs[i] = {f[0], f[1], f[2], f[3], f[4], f[5]};
    }
    // The first glyph's height is the reference by which every width is scaled.
    if (!(glyphs[0].dy > 0)) return false;
    pixels.assign(bytes.begin() + static_cast<std::ptrdiff_t>(tableEnd),
                  bytes.begin() + static_cast<std::ptrdiff_t>(tableEnd + pixelBytes));
    textureWidth = w;
    textureHeight = h;
    firstChar = first;
    lastChar = last;
    return true;
}

bool readFontFile(FontFile& font) {
    std::ifstream in("verdana.glf", std::ios::binary);
    if (!in) return false;
    // Read no further than the largest font could reach, so that no file is taken in whole.
    std::string bytes;
    char block[65536];
    while (in && bytes.size() <= maxFileSize) {
        in.read(block, sizeof block);
        bytes.append(block, static_cast<std::size_t>(in.gcount()));
    }
    return parseFont(bytes, font.textureWidth, font.textureHeight, font.firstChar, font.lastChar, font.glyphs,
                     font.pixels);
}

void loadFont() {
    unloadFont();
    FontFile font;
    if (!readFontFile(font)) return;

    glGenTextures(1, &fontTexture);
    glBindTexture(GL_TEXTURE_2D, fontTexture);
    GLint alignment = 4;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, 2, font.textureWidth, font.textureHeight, 0, GL_LUMINANCE_ALPHA,
                 GL_UNSIGNED_BYTE, font.pixels.data());
    glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);

    fontGlyphs = std::move(font.glyphs);
    fontFirstChar = font.firstChar;
    fontLastChar = font.lastChar;
    fontLoaded = true;
}

int lineCount(std::string text) {
    int lines = 1;
    for (char c : text)
        if (c == '\n') ++lines;
    return lines;
}

float measureText(std::string text, float size) {
    float s = size != 0 ? size : currentFontSize;
    float tab = 2 * s;
    float line = 0, widest = 0;
    for (char c : text) {
        if (c == '\n') {
            widest = std::max(widest, line);
            line = 0;
        } else if (c == '\t') {
            line = (std::trunc(line / tab) + 1) * tab;
        } else {
            line += glyphWidth(c, s);
        }
    }
    return std::max(widest, line);
}

void drawText(std::string text, float x, float y, float size) {
    if (!fontLoaded) return;
    beginText(size);
    float s = currentFontSize;
    float scale = s / fontGlyphs[0].dy;
    float tab = 2 * s;
    float x0 = x;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\n') {
            y += s;
            x = x0;
        } else if (c == '\t') {
            // Stops count from the origin of the present coordinates, not from where the text began.
            x = (std::trunc(x / tab) + 1) * tab;
        } else if (c == '^' && i + 6 < text.size()) {
            auto pair = [&](std::size_t at) {
                return static_cast<GLubyte>(hexDigit(text[at]) * 16 + hexDigit(text[at + 1]));
            };
            glColor3ub(pair(i + 1), pair(i + 3), pair(i + 5));
            i += 6;
        } else if (const Glyph* g = glyphFor(c)) {
            float w = g->dx * scale;
            emitGlyph(*g, x, y, w, s);
            x += w;
        }
    }
    endText();
}

void drawWrappedText(std::string text, float x, float y, float width, float height, float size) {
    if (!fontLoaded) return;
    beginText(size);
    float s = currentFontSize;
    float scale = s / fontGlyphs[0].dy;

    // Wrap pass: a space is the only break point, and the space is lost in the break.
    std::size_t lastBreak = 0;
    float line = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n') {
            lastBreak = i;
            line = 0;
            continue;
        }
        if (text[i] == ' ') lastBreak = i;
        if (const Glyph* g = glyphFor(text[i])) line += g->dx * scale;
        if (line > width && lastBreak != 0 && text[lastBreak] != '\n') {
            text[lastBreak] = '\n';
            i = lastBreak;
            line = 0;
        }
    }

    // Draw pass: stop before the first line that would end below the height.
    float x0 = x;
    float used = s;
    for (char c : text) {
        if (c == '\n') {
            y += s;
            x = x0;
            used += s;
            continue;
        }
        if (used > height) break;
        if (const Glyph* g = glyphFor(c)) {
            float w = g->dx * scale;
            emitGlyph(*g, x, y, w, s);
            x += w;
        }
    }
    endText();
}
