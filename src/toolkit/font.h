// The one bitmap font, read from "verdana.glf" into a texture, and the text functions that draw
// and measure with it in the present coordinates and colour.
#pragma once

#include <string>
#include <vector>

struct Glyph {
    float dx, dy;   // size, in the units in which the first glyph's dy is the reference height
    float tx1, ty1; // texture coordinates of the top left corner
    float tx2, ty2; // and of the bottom right corner
};

extern bool fontLoaded;
extern float currentFontSize;
extern int fontFirstChar, fontLastChar;
extern std::vector<Glyph> fontGlyphs;

// What a font file holds: the glyph table and the luminance-alpha pixels of its texture.
struct FontFile {
    int textureWidth = 0, textureHeight = 0, firstChar = 0, lastChar = -1;
    std::vector<Glyph> glyphs;
    std::vector<unsigned char> pixels;
};

// Reads "verdana.glf" from the working directory; needs an OpenGL context. A missing, short or
// damaged file leaves the font unloaded, and text is then not drawn.
void loadFont();
// The reading half of loadFont, without OpenGL; false for a missing, unreadable, short or damaged file.
bool readFontFile(FontFile& font);
// Parses a font file's bytes into the glyph table and pixels; false for a short or damaged file.
bool parseFont(const std::string& bytes, int& textureWidth, int& textureHeight, int& firstChar, int& lastChar,
               std::vector<Glyph>& glyphs, std::vector<unsigned char>& pixels);

// 1 plus the number of newlines.
int lineCount(std::string text);
// Width of the widest line; a size of 0 means the current size.
float measureText(std::string text, float size);
// Draws at (x, y), the top left corner of the first line. Tabs stop every 2 x size from the
// origin; "^rrggbb" sets the colour. A non-zero size becomes the current size.
void drawText(std::string text, float x, float y, float size);
// Breaks lines at spaces to fit width, and stops before a line that would end below height.
void drawWrappedText(std::string text, float x, float y, float width, float height, float size);
