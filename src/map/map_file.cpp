// Map files and textures: reading "qm2207.map6" field by field, writing a map back, the built-in
// flat map for a campaign without a usable map file, and the cache of ground pictures.
#include <GL/gl.h>
#include <IL/il.h>
#define ILUT_USE_OPENGL
#include <IL/ilut.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <ostream>
#include <sstream>
#include <vector>

#include "map/ground_picture.h"
#include "map/hex_map.h"
#include "rules/field_reader.h"
#include "rules/file_replacement.h"
#include "toolkit/graphics.h"

std::map<std::string, unsigned int> textureCache;

namespace {
bool powerOfTwo(int n) {
    return n > 0 && (n & (n - 1)) == 0;
}

// The bound image, bottom row first as OpenGL takes it, with its mipmaps: each level the mean of
// the level above, two by two and rounded half up. A picture that lets nothing through is kept
// without alpha, so that drawing it needs no blending. False, with nothing made, for an image that
// is not a square or oblong of powers of two, which is left to the image library.
//
// All of it happens in the image library's own pixels, which are deleted right after: fresh memory
// costs more to touch at start than the arithmetic on it, and a copy of a large picture is several
// megabytes of it.
bool makeMipmaps(GLuint texture) {
    int width = ilGetInteger(IL_IMAGE_WIDTH), height = ilGetInteger(IL_IMAGE_HEIGHT);
    if (!powerOfTwo(width) || !powerOfTwo(height) || ilGetInteger(IL_IMAGE_DEPTH) != 1) return false;
    if (!ilConvertImage(IL_RGBA, IL_UNSIGNED_BYTE)) return false;
    unsigned char* level = ilGetData();
    if (!level) return false;
    auto w = static_cast<std::size_t>(width), h = static_cast<std::size_t>(height);
    if (ilGetInteger(IL_IMAGE_ORIGIN) == IL_ORIGIN_UPPER_LEFT)
        for (std::size_t row = 0; row < h / 2; ++row)
            std::swap_ranges(level + row * w * 4, level + (row + 1) * w * 4, level + (h - 1 - row) * w * 4);
    bool opaque = true;
    for (std::size_t i = 3; i < w * h * 4 && opaque; i += 4)
        opaque = level[i] == 255;
    GLint format = opaque ? GL_RGB : GL_RGBA;

    glBindTexture(GL_TEXTURE_2D, texture);
    for (int l = 0;; ++l) {
        glTexImage2D(GL_TEXTURE_2D, l, format, GLsizei(w), GLsizei(h), 0, GL_RGBA, GL_UNSIGNED_BYTE, level);
        if (w == 1 && h == 1) break;
        // A side of one stays one: its texels are taken twice. The next level overwrites this one
        // from the front, never ahead of what it still has to read.
        std::size_t nw = std::max<std::size_t>(w / 2, 1), nh = std::max<std::size_t>(h / 2, 1);
        std::size_t dx = w > 1 ? 4 : 0, dy = h > 1 ? w * 4 : 0;
        for (std::size_t y = 0; y < nh; ++y)
            for (std::size_t x = 0; x < nw; ++x) {
                const unsigned char* a = &level[((h > 1 ? 2 * y : y) * w + (w > 1 ? 2 * x : x)) * 4];
                unsigned char* to = &level[(y * nw + x) * 4];
                for (int c = 0; c < 4; ++c)
                    to[c] =
                        static_cast<unsigned char>((a[c] + a[dx + c] + a[dy + c] + a[dx + dy + c] + 2) / 4);
            }
        w = nw, h = nh;
    }
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    return true;
}
} // namespace

unsigned int loadTexture(const char* name) {
    auto cached = textureCache.find(name);
    if (cached != textureCache.end()) return cached->second;
    if (!graphicsOpened()) return 0;
    ILuint image = 0;
    ilGenImages(1, &image);
    ilBindImage(image);
    // A picture that must not go to the image library leaves the map without one, under this name
    // too, so that it is refused only once.
    GLuint texture = 0;
    if (readGroundPicture(name)) {
        glGenTextures(1, &texture);
        if (!makeMipmaps(texture)) {
            glDeleteTextures(1, &texture);
            // The image library makes the mipmaps and the texture in one call of whatever else it
            // holds.
            texture = ilutGLBindMipmaps();
        }
    }
    ilDeleteImages(1, &image);
    textureCache[name] = texture;
    return texture;
}

namespace {
// Reads a map file the way it was always read: field by field up to a separator, so that a line
// with too many or too few fields runs the rest out of step rather than being refused. Only the
// texture name and the height end at a line end. Past the end every field is empty.
class FieldStream {
  public:
    explicit FieldStream(std::istream& in) : in(in) {}

    // Up to the next `end`, which is consumed. Characters beyond the longest sensible field are
    // skipped, so that no file makes the reader allocate without bound.
    const std::string& field(char end) {
        readUntil(in, text, end, longestField);
        return text;
    }

  private:
    static constexpr std::size_t longestField = 4096;
    std::istream& in;
    std::string text;
};

// A decimal with an optional sign, fraction and exponent, as the writer makes them; anything that
// does not start with a number, and anything beyond the float range, reads as 0.
float parseReal(const std::string& field) {
    const char* first = field.data();
    const char* last = first + field.size();
    bool negative = false;
    if (first != last && (*first == '+' || *first == '-')) negative = *first++ == '-';
    if (first == last || !((*first >= '0' && *first <= '9') || *first == '.')) return 0;
    float value = 0;
    auto [end, error] = std::from_chars(first, last, value);
    if (error != std::errc() || end == first || !std::isfinite(value)) return 0;
    return negative ? -value : value;
}
} // namespace

Map* loadMap(std::istream& in, const std::string& fileName, Window* parent) {
    FieldStream file(in);
    file.field('|'); // the number of sides: every cell has six whatever it says
    int columns = parseNumber(file.field('|'));
    int rows = parseNumber(file.field('|'));
    if (in.bad()) {
        std::fprintf(stderr, "%s: cannot be read\n", fileName.c_str());
        return nullptr;
    }
    // Beyond these the header is taken for garbage, and the size bounds what reading allocates.
    if (columns < 1 || columns > maxMapSide || rows < 1 || rows > maxMapSide) {
        std::fprintf(stderr, "%s: a map has 1 to %d columns and rows, this one %d x %d\n", fileName.c_str(),
                     maxMapSide, columns, rows);
        return nullptr;
    }
    if (static_cast<long long>(columns) * rows > maxMapCells) {
        std::fprintf(stderr, "%s: a map has at most %d cells, this one %d x %d\n", fileName.c_str(),
                     maxMapCells, columns, rows);
        return nullptr;
    }
    HexMap* map = new HexMap(parent, columns, rows);
    map->reservedA = parseReal(file.field('|'));
    map->reservedB = parseReal(file.field('|'));
    std::string textureName = file.field('\n');
    if (!textureName.empty() && textureName.back() == '\r') textureName.pop_back();
    map->texture = loadTexture(textureName.c_str());
    for (Cell* cell : map->cells) {
        cell->light.dice = parseNumber(file.field('|'));
        cell->cover.dice = parseNumber(file.field('|'));
        cell->protect.dice = parseNumber(file.field('|'));
        cell->hardness.dice = parseNumber(file.field('|'));
        cell->difficulty = parseNumber(file.field('|'));
        // "0" is a wall; anything else, an empty field too, is open.
        for (int i = 0; i < cell->sides; ++i)
            cell->walls[i] = file.field('|') == "0";
        cell->setHeight(parseReal(file.field('\n')));
    }
    return map;
}

Map* loadMap(Window* parent) {
    std::ifstream in("qm2207.map6", std::ios::binary);
    if (!in) return nullptr;
    return loadMap(in, "qm2207.map6", parent);
}

Map* openMap(Window* parent) {
    if (Map* map = loadMap(parent)) return map;
    HexMap* flat = new HexMap(parent, 32, 24);
    flat->texture = loadTexture("back.dds");
    return flat;
}

void Map::write(std::ostream& out) {
    out.precision(6);
    out.unsetf(std::ios::floatfield);
    // The texture is always written as the one ground picture, whatever the map was read from.
    out << 6 << '|' << columns << '|' << rows << '|' << reservedA << '|' << reservedB << '|' << "back.dds"
        << std::endl;
    for (const Cell* c : cells) {
        out << c->light.dice << '|' << c->cover.dice << '|' << c->protect.dice << '|' << c->hardness.dice
            << '|' << c->difficulty << '|';
        // Map-edge sides too; the fields run the opposite way from the flags.
        for (int i = 0; i < c->sides; ++i)
            out << (c->walls[i] ? '0' : '1') << '|';
        out << c->centre.z << std::endl;
    }
}

void Map::saveAs(const char* fileName) {
    // Written whole beside the file and renamed over it, so that a save cut short, by a full disk or
    // a crash, leaves the old map as it was.
    std::ostringstream text;
    write(text);
    FileReplacement replacement;
    if (!replacement.prepare(fileName, text.str()) || !replacement.commit())
        std::fprintf(stderr, "%s: cannot be saved: %s\n", fileName, std::strerror(errno));
}

void Map::save() {
    saveAs("qm2207.map8");
}
