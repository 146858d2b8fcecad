// MapMesh: building the geometry of a block of cells, finding what of it may show from where the
// camera stands, and the passes that draw it.
//
// The picture is the one that drawing every cell on its own in immediate mode made: a textured base
// pass with the faces a little behind the lines, black outlines, red walls that win over outlines of
// equal depth, and the layers blended over faces of equal depth. Only the order of the cells changes
// (pass by pass instead of cell by cell), which matters nowhere but where two faces lie in one plane.
// The triangles are the ones that the renderer makes of the old fan and quad strip, in the same
// vertex order, so that depths and texture coordinates come out the same to the bit.
//
// What is left out cannot show:
// - a flank that a neighbour as high or higher hides, while the camera stands above the ground and
//   outside the prisms round it (else the inside of a prism shows, and the flanks in it);
// - flanks that face away from the camera, which the renderer would cull, grouped by the side they
//   face so that a whole tile's worth goes at once;
// - an upright corner line whose two flanks both face away, and the outline at the foot of a higher
//   neighbour whose flank faces away: the prism stands in front of them, again while the camera is
//   outside the prisms round them;
// - a line that a neighbour drew already in the same place.
#include "map/map_mesh.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "map/map.h"

namespace {
constexpr int blockSide = 32; // cells a side of a block, which is rebuilt and bound as a whole
constexpr int tileSide = 8;   // cells a side of a tile, which is culled as a whole
constexpr int tilesAcross = blockSide / tileSide;
constexpr int tileCount = tilesAcross * tilesAcross;
constexpr int directions = 6; // the sides of a hexagon

// Groups of a block's indices, one after another in its index buffer, each laid out tile by tile.
// Flanks, outlines at the foot of a higher neighbour and upright corner lines go by the side they
// face, when they face it as the other members of their group in the tile do; else to the group
// that is always drawn.
enum Group {
    tops,
    flanks,                               // + side
    otherFlanks = flanks + directions,    // facing some other way
    hiddenFlanks,                         // hidden by a neighbour as high
    faceGroups,                           // the groups of faces end here
    plainLines = faceGroups,              // outlines with nothing higher beyond
    footLines,                            // + side: at the foot of a higher neighbour
    cornerLines = footLines + directions, // + corner: upright between two flanks
    walls = cornerLines + directions,
    groundTops,  // the tops for the textured pass, cells of one plane joined where they can be
    layerGroups, // the face groups again for each of the three sparse layers
    groupCount = layerGroups + 3 * faceGroups
};
// The first group of a layer's faces; difficulty paints every face and uses the base groups.
int firstGroupOf(Layer layer) {
    return layer == Layer::difficulty ? tops : layerGroups + faceGroups * static_cast<int>(layer);
}

constexpr Layer layers[layerCount] = {Layer::light, Layer::smoke, Layer::protection, Layer::difficulty};
unsigned bit(Layer layer) {
    return 1u << static_cast<int>(layer);
}

struct Box {
    float lo[3] = {std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                   std::numeric_limits<float>::max()};
    float hi[3] = {std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                   std::numeric_limits<float>::lowest()};

    bool empty() const { return lo[0] > hi[0]; }
    void add(float x, float y, float z) {
        const float p[3] = {x, y, z};
        for (int i = 0; i < 3; ++i) {
            lo[i] = std::min(lo[i], p[i]);
            hi[i] = std::max(hi[i], p[i]);
        }
    }
    // The cell's prism: its top and the plane z = 0 that it stands on.
    void add(const Cell& cell) {
        for (int i = 0; i < cell.sides; ++i) {
            add(cell.corners[i].x, cell.corners[i].y, cell.corners[i].z);
            add(cell.corners[i].x, cell.corners[i].y, 0);
        }
    }
    void add(const Box& b) {
        if (b.empty()) return;
        add(b.lo[0], b.lo[1], b.lo[2]);
        add(b.hi[0], b.hi[1], b.hi[2]);
    }
    bool within(Vector3 p, float reach) const {
        const float q[3] = {p.x, p.y, p.z};
        for (int i = 0; i < 3; ++i)
            if (q[i] < lo[i] - reach || q[i] > hi[i] + reach) return false;
        return true;
    }
    // Whether the box lies wholly beyond one plane of the view volume; m takes map space to clip space.
    bool outside(const float m[16]) const {
        if (empty()) return true;
        unsigned all = 63;
        for (int c = 0; c < 8; ++c) {
            float x = c & 1 ? hi[0] : lo[0], y = c & 2 ? hi[1] : lo[1], z = c & 4 ? hi[2] : lo[2];
            float clip[4];
            for (int r = 0; r < 4; ++r)
                clip[r] = m[r] * x + m[4 + r] * y + m[8 + r] * z + m[12 + r];
            float w = clip[3];
            unsigned code = unsigned(clip[0] < -w) | unsigned(clip[0] > w) << 1 |
                            unsigned(clip[1] < -w) << 2 | unsigned(clip[1] > w) << 3 |
                            unsigned(clip[2] < -w) << 4 | unsigned(clip[2] > w) << 5;
            all &= code;
            if (!all) return false;
        }
        return true;
    }
};

// A plane upright through the lines or flanks of a group, all of which lie on parallel planes: the
// eye sees their front only from beyond the nearest of them. Normals are left unscaled: the sign of
// a side is all that counts.
struct Facing {
    float nx = 0, ny = 0;
    float nearest = std::numeric_limits<float>::max(); // the least n . p over the group's points
    bool set = false;

    // Takes the points of one member with its normal; false when the normal is not the group's.
    bool take(float x, float y, const Vector3& a, const Vector3& b) {
        if (!set) nx = x, ny = y, set = true;
        if (x != nx || y != ny) return false;
        nearest = std::min({nearest, nx * a.x + ny * a.y, nx * b.x + ny * b.y});
        return true;
    }
    // Whether the eye may stand in front of some member; in doubt, yes.
    bool front(float eyeX, float eyeY) const {
        if (!set) return false;
        float e = nx * eyeX + ny * eyeY;
        return e > nearest - 1e-4f * (1 + std::fabs(e) + std::fabs(nearest));
    }
};

// The outward normal of side i of a cell, in the map's plane.
void outward(const Vector3* k, int n, int i, float& x, float& y) {
    const Vector3 &a = k[i], &b = k[(i + 1) % n];
    x = b.y - a.y;
    y = a.x - b.x;
}

// The height at which another cell has the corner (x, y), or null when it has no such corner.
const float* heightAt(const Cell& other, const Vector3& corner) {
    for (int i = 0; i < other.sides; ++i)
        if (other.corners[i].x == corner.x && other.corners[i].y == corner.y) return &other.corners[i].z;
    return nullptr;
}

// Whether a prism reaching to zOther holds the span from 0 to z.
bool holds(float zOther, float z) {
    return (0 <= z && z <= zOther) || (zOther <= z && z <= 0);
}

unsigned char channel(float f) {
    // As the renderer turns a colour into eight bits: clamped, then rounded to the nearest, ties to
    // even.
    if (!(f > 0)) return 0;
    if (f >= 1) return 255;
    return static_cast<unsigned char>(std::nearbyint(f * 255.0f));
}

void appendBytes(std::string& s, const void* p, std::size_t n) {
    s.append(static_cast<const char*>(p), n);
}

// A piece of a top between two upright lines, the ones through topLeft and topRight: its edge along
// the top runs from topLeft to topRight, its edge along the bottom from bottomLeft to bottomRight, and
// a piece that ends in a point has that point twice. Two pieces of one plane in one strip, the bottom
// edge of one being the top edge of the other, make one piece of the same kind.
struct Slab {
    Vector3 topLeft, topRight, bottomLeft, bottomRight;
    GLushort indices[4]; // of the four points, in that order

    // The strip, the plane and the place in it, by which slabs that may join come together.
    auto key() const { return std::tie(topLeft.x, topRight.x, topLeft.z, topLeft.y, topRight.y); }
    bool sameStrip(const Slab& o) const {
        return topLeft.x == o.topLeft.x && topRight.x == o.topRight.x && topLeft.z == o.topLeft.z;
    }
};

// The three slabs of a level, six-sided top whose north and south sides run level between two
// upright lines, as every cell of a grid of columns has them: the point to the west, the middle, the
// point to the east. False for any other top. Slabs of no width are left out; they cover no pixel.
bool slabsOf(const Cell& cell, GLushort base, std::vector<Slab>& out) {
    const Vector3* k = cell.corners;
    if (cell.sides != 6) return false;
    for (int i = 1; i < 6; ++i)
        if (k[i].z != k[0].z) return false; // a sloping top joins nothing
    if (k[0].x != k[4].x || k[1].x != k[3].x || k[0].y != k[1].y || k[3].y != k[4].y ||
        !(k[5].x <= k[0].x && k[0].x < k[1].x && k[1].x <= k[2].x) ||
        !(k[0].y <= k[5].y && k[5].y <= k[4].y) || !(k[1].y <= k[2].y && k[2].y <= k[3].y))
        return false;
    auto at = [&](int i) { return static_cast<GLushort>(base + i); };
    const Slab pieces[3] = {
        {k[5], k[0], k[5], k[4], {at(5), at(0), at(5), at(4)}},
        {k[0], k[1], k[4], k[3], {at(0), at(1), at(4), at(3)}},
        {k[1], k[2], k[3], k[2], {at(1), at(2), at(3), at(2)}},
    };
    for (const Slab& p : pieces)
        if (p.topLeft.x < p.topRight.x) out.push_back(p);
    return true;
}

// Everything about a cell that its geometry and layers show.
std::string drawnFields(const Cell& c) {
    std::string s;
    appendBytes(s, &c.sides, sizeof c.sides);
    for (int i = 0; i < c.sides; ++i) {
        appendBytes(s, &c.corners[i], sizeof c.corners[i]);
        s.push_back(c.walls[i] ? '1' : '0');
    }
    for (const DiceCode* d : {&c.light, &c.cover, &c.protect}) {
        appendBytes(s, &d->dice, sizeof d->dice);
        appendBytes(s, &d->pips, sizeof d->pips);
    }
    appendBytes(s, &c.difficulty, sizeof c.difficulty);
    return s;
}
} // namespace

bool layerColour(const Cell& cell, Layer layer, float rgba[4]) {
    const DiceCode* code = nullptr;
    float r = 0, g = 0, b = 0;
    switch (layer) {
    case Layer::light:
        code = &cell.light;
        break;
    case Layer::smoke:
        code = &cell.cover, r = g = b = 1;
        break;
    case Layer::protection:
        code = &cell.protect, g = 1;
        break;
    case Layer::difficulty: {
        // Difficulty 1 is pure green, 16 pure yellow, 31 pure red.
        float t = (static_cast<float>(cell.difficulty) - 1) / 30;
        float m = t > 1 - t ? t : 1 - t;
        rgba[0] = t / m, rgba[1] = (1 - t) / m, rgba[2] = 0, rgba[3] = 0.5f;
        return true;
    }
    }
    if (!*code) return false;
    // 0.15 a die: seven dice hide the ground.
    rgba[0] = r, rgba[1] = g, rgba[2] = b, rgba[3] = code->dice * 0.15f;
    return true;
}

bool layerShown(Layer layer) {
    switch (layer) {
    case Layer::light:
        return showLight;
    case Layer::smoke:
        return showSmoke;
    case Layer::protection:
        return showProtection;
    case Layer::difficulty:
        return showDifficulty;
    }
    return false;
}

struct MapMesh::Block {
    int column0 = 0, row0 = 0, columns = 0, rows = 0;
    GLuint vertices = 0, indices = 0, colours = 0; // buffer objects
    GLuint vertexCount = 0;
    // Where each tile's indices start in each group; the last entry ends the group.
    std::uint32_t starts[groupCount][tileCount + 1] = {};
    Box box;
    Box tileBoxes[tileCount];
    // The prisms of a tile's cells and of their neighbours: a camera near them may see inside one.
    Box surroundings[tileCount];
    Facing flankFacing[tileCount][directions];
    Facing footFacing[tileCount][directions];
    Facing cornerFacing[tileCount][directions][2]; // the planes of the two flanks at the corner
    std::size_t colourOffsets[layerCount] = {};
    unsigned layers = 0; // layers whose colours and faces are in the buffers
    std::size_t bytes = 0;
    bool dirty = true;
};

// What a block's build gathers before it goes into the buffers.
struct MapMesh::Builder {
    std::vector<Vector3> vertices;
    std::vector<GLushort> groups[groupCount];
    std::vector<unsigned char> colours[layerCount];
    std::vector<GLuint> bottoms; // a cell's corners at z = 0, made when a flank or line needs them
    std::vector<Slab> slabs;     // the tile's tops that may join
};

MapMesh::MapMesh(Map& map) : map(map) {}

MapMesh::~MapMesh() {
    for (Block& b : blocks)
        if (b.vertices) {
            const GLuint names[3] = {b.vertices, b.indices, b.colours};
            glDeleteBuffers(3, names);
        }
}

void MapMesh::layOut() {
    bool relaid = firstCell != nullptr;
    for (Block& b : blocks)
        if (b.vertices) {
            const GLuint names[3] = {b.vertices, b.indices, b.colours};
            glDeleteBuffers(3, names);
        }
    blocks.clear();
    inView.clear();
    // Cells followed on a grid that has gone have gone with it.
    if (relaid) followed.clear();
    firstCell = map.cells.empty() ? nullptr : map.cells[0];
    cellCount = map.cells.size();
    bool whole = std::size_t(std::max(map.columns, 0)) * std::size_t(std::max(map.rows, 0)) == cellCount;
    blocksAcross = whole ? (map.columns + blockSide - 1) / blockSide : 0;
    blocksDown = whole ? (map.rows + blockSide - 1) / blockSide : 0;
    blocks.resize(std::size_t(blocksAcross) * std::size_t(blocksDown));
    for (int by = 0; by < blocksDown; ++by)
        for (int bx = 0; bx < blocksAcross; ++bx) {
            Block& b = blocks[std::size_t(by) * std::size_t(blocksAcross) + std::size_t(bx)];
            b.column0 = bx * blockSide;
            b.row0 = by * blockSide;
            b.columns = std::min(blockSide, map.columns - b.column0);
            b.rows = std::min(blockSide, map.rows - b.row0);
        }
}

int MapMesh::blockIndexOf(int column, int row) const {
    return (row / blockSide) * blocksAcross + column / blockSide;
}

void MapMesh::cellChanged(const Cell* cell) {
    if (blocks.empty() || !cell || map.cells.empty() || map.cells[0] != firstCell) return;
    std::ptrdiff_t index = cell - firstCell;
    if (index < 0 || std::size_t(index) >= cellCount || map.cells[std::size_t(index)] != cell) return;
    // The neighbours' flanks, shared outlines and corner lines depend on this cell's height.
    auto mark = [&](const Cell* c) {
        std::ptrdiff_t i = c - firstCell;
        if (i >= 0 && std::size_t(i) < cellCount)
            blocks[std::size_t(
                       blockIndexOf(static_cast<int>(i % map.columns), static_cast<int>(i / map.columns)))]
                .dirty = true;
    };
    mark(cell);
    for (int i = 0; i < cell->sides; ++i)
        if (cell->neighbours[i]) mark(cell->neighbours[i]);
}

void MapMesh::followCell(Cell* cell) {
    if (!cell) return;
    cellChanged(cell); // what it had before it was followed shows too
    for (const Followed& f : followed)
        if (f.cell == cell) return;
    followed.push_back({cell, drawnFields(*cell)});
}

void MapMesh::lookAtFollowed() {
    for (std::size_t i = 0; i < followed.size();) {
        Followed& f = followed[i];
        std::string now = drawnFields(*f.cell);
        if (now != f.drawn) {
            cellChanged(f.cell);
            f.drawn = std::move(now);
        }
        // Its editor has gone: that was the last look.
        if (f.cell->observerCount <= 0)
            followed.erase(followed.begin() + static_cast<std::ptrdiff_t>(i));
        else
            ++i;
    }
}

// The tile's slabs, strip by strip and plane by plane from the top down, joined while each one's top
// edge is the bottom edge of the one before; each joined run goes as the two triangles of its
// outline, in the winding of the tops' fans. The run covers the pixels that its slabs covered, no
// more and no fewer, in far fewer triangles: the renderer shades the blocks of pixels along a
// triangle's edges once for each triangle that crosses them, and a level stretch of ground then
// has edges only between its strips.
void MapMesh::joinSlabs(Builder& b) {
    std::vector<Slab>& slabs = b.slabs;
    std::sort(slabs.begin(), slabs.end(), [](const Slab& p, const Slab& q) { return p.key() < q.key(); });
    auto& out = b.groups[groundTops];
    for (std::size_t i = 0; i < slabs.size();) {
        std::size_t j = i + 1;
        while (j < slabs.size() && slabs[j].sameStrip(slabs[i]) &&
               slabs[j].topLeft == slabs[j - 1].bottomLeft && slabs[j].topRight == slabs[j - 1].bottomRight)
            ++j;
        const Slab &first = slabs[i], &last = slabs[j - 1];
        // The fans run from east to west along the north side: in the map's plane that is the
        // order top right, top left, bottom left.
        GLushort tl = first.indices[0], tr = first.indices[1], bl = last.indices[2], br = last.indices[3];
        if (first.topLeft != last.bottomLeft) out.insert(out.end(), {tr, tl, bl});
        if (first.topRight != last.bottomRight) out.insert(out.end(), {tr, bl, br});
        i = j;
    }
    slabs.clear();
}

void MapMesh::build(Block& block, unsigned wanted) {
    Builder b;
    auto indexOf = [&](const Cell* c) { return c - firstCell; };
    for (int t = 0; t < tileCount; ++t) {
        int tc = block.column0 + (t % tilesAcross) * tileSide, tr = block.row0 + (t / tilesAcross) * tileSide;
        block.tileBoxes[t] = block.surroundings[t] = Box();
        for (int d = 0; d < directions; ++d) {
            block.flankFacing[t][d] = block.footFacing[t][d] = Facing();
            block.cornerFacing[t][d][0] = block.cornerFacing[t][d][1] = Facing();
        }
        for (int r = tr; r < std::min(tr + tileSide, block.row0 + block.rows); ++r)
            for (int c = tc; c < std::min(tc + tileSide, block.column0 + block.columns); ++c) {
                std::size_t index = std::size_t(r) * std::size_t(map.columns) + std::size_t(c);
                const Cell& cell = *map.cells[index];
                int n = cell.sides;
                const Vector3* k = cell.corners;
                auto base = static_cast<GLuint>(b.vertices.size());
                b.vertices.insert(b.vertices.end(), k, k + n);
                b.bottoms.assign(std::size_t(n), 0);
                auto bottom = [&](int i) {
                    if (!b.bottoms[std::size_t(i)]) {
                        b.bottoms[std::size_t(i)] = static_cast<GLuint>(b.vertices.size());
                        b.vertices.push_back({k[i].x, k[i].y, 0});
                    }
                    return static_cast<GLushort>(b.bottoms[std::size_t(i)]);
                };
                auto top = [&](int i) { return static_cast<GLushort>(base + GLuint(i)); };
                auto put = [&](int group, std::initializer_list<GLushort> indices) {
                    b.groups[group].insert(b.groups[group].end(), indices);
                };
                block.tileBoxes[t].add(cell);
                block.surroundings[t].add(cell);
                for (int i = 0; i < n; ++i)
                    if (cell.neighbours[i]) block.surroundings[t].add(*cell.neighbours[i]);
                std::size_t faceStarts[faceGroups];
                for (int g = 0; g < faceGroups; ++g)
                    faceStarts[g] = b.groups[g].size();

                // The top, as the fan from the last corner to the first: cell by cell for the
                // layers, whose colours change from cell to cell, and for the ground unless it
                // joins its neighbours of the same plane.
                auto fan = [&](int group) {
                    for (int j = 1; j + 1 < n; ++j)
                        put(group, {top(n - 1), top(n - 1 - j), top(n - 2 - j)});
                };
                fan(tops);
                if (!slabsOf(cell, static_cast<GLushort>(base), b.slabs)) fan(groundTops);
                // Each flank as the two triangles of its quad in the strip round the prism.
                for (int i = 0; i < n; ++i) {
                    int j = (i + 1) % n;
                    if (k[i].z == 0 && k[j].z == 0) continue; // no height, no face
                    const Cell* beyond = cell.neighbours[i];
                    const float *zi = beyond ? heightAt(*beyond, k[i]) : nullptr,
                                *zj = beyond ? heightAt(*beyond, k[j]) : nullptr;
                    int group = otherFlanks;
                    float nx, ny;
                    outward(k, n, i, nx, ny);
                    if (zi && zj && holds(*zi, k[i].z) && holds(*zj, k[j].z))
                        group = hiddenFlanks;
                    else if (i < directions && block.flankFacing[t][i].take(nx, ny, k[i], k[j]))
                        group = flanks + i;
                    put(group, {bottom(j), bottom(i), top(j), bottom(i), top(i), top(j)});
                }
                // The outline, but for sides that a neighbour before this cell drew already at the
                // same height.
                for (int i = 0; i < n; ++i) {
                    int j = (i + 1) % n;
                    const Cell* beyond = cell.neighbours[i];
                    const float *zi = beyond ? heightAt(*beyond, k[i]) : nullptr,
                                *zj = beyond ? heightAt(*beyond, k[j]) : nullptr;
                    if (zi && zj && *zi == k[i].z && *zj == k[j].z && indexOf(beyond) < std::ptrdiff_t(index))
                        continue;
                    int group = plainLines;
                    float nx, ny;
                    outward(k, n, i, nx, ny);
                    // At the foot of a higher neighbour, seen only from in front of its flank.
                    if (zi && zj && *zi > k[i].z && *zj > k[j].z && k[i].z >= 0 && k[j].z >= 0 &&
                        i < directions && block.footFacing[t][i].take(-nx, -ny, k[i], k[j]))
                        group = footLines + i;
                    put(group, {top(i), top(j)});
                }
                // The upright line at each corner, drawn by the one of the cells meeting there that
                // stands highest (or lowest, under the ground), the first of equals.
                for (int i = 0; i < n; ++i) {
                    float z = k[i].z;
                    if (z == 0) continue;
                    bool covered = false;
                    for (const Cell* other : {cell.neighbours[(i + n - 1) % n], cell.neighbours[i]}) {
                        const float* zo = other ? heightAt(*other, k[i]) : nullptr;
                        if (zo && ((z > 0 && *zo > z) || (z < 0 && *zo < z) ||
                                   (*zo == z && indexOf(other) < std::ptrdiff_t(index))))
                            covered = true;
                    }
                    if (covered) continue;
                    // Seen only from in front of one of the two flanks that meet there.
                    int group = plainLines;
                    float ax, ay, bx, by;
                    outward(k, n, (i + n - 1) % n, ax, ay);
                    outward(k, n, i, bx, by);
                    Facing(&planes)[2] = block.cornerFacing[t][i % directions];
                    if (z > 0 && i < directions &&
                        (!planes[0].set || (planes[0].nx == ax && planes[0].ny == ay)) &&
                        (!planes[1].set || (planes[1].nx == bx && planes[1].ny == by))) {
                        planes[0].take(ax, ay, k[i], k[i]);
                        planes[1].take(bx, by, k[i], k[i]);
                        group = cornerLines + i;
                    }
                    put(group, {bottom(i), top(i)});
                }
                for (int i = 0; i < n; ++i)
                    if (cell.walls[i]) put(walls, {top(i), top((i + 1) % n)});

                for (Layer layer : layers) {
                    if (!(wanted & bit(layer))) continue;
                    float rgba[4] = {0, 0, 0, 0};
                    bool painted = layerColour(cell, layer, rgba);
                    int first = firstGroupOf(layer);
                    for (int g = 0; painted && first != tops && g < faceGroups; ++g)
                        b.groups[first + g].insert(b.groups[first + g].end(),
                                                   b.groups[g].begin() + std::ptrdiff_t(faceStarts[g]),
                                                   b.groups[g].end());
                    const unsigned char rgba8[4] = {channel(rgba[0]), channel(rgba[1]), channel(rgba[2]),
                                                    channel(rgba[3])};
                    auto& colours = b.colours[static_cast<int>(layer)];
                    for (std::size_t v = base; v < b.vertices.size(); ++v)
                        colours.insert(colours.end(), rgba8, rgba8 + 4);
                }
            }
        joinSlabs(b);
        for (int g = 0; g < groupCount; ++g)
            block.starts[g][t + 1] = static_cast<std::uint32_t>(b.groups[g].size());
    }

    // One index buffer: the groups one after another.
    std::vector<GLushort> all;
    for (int g = 0; g < groupCount; ++g) {
        auto offset = static_cast<std::uint32_t>(all.size());
        block.starts[g][0] = 0;
        for (int t = 0; t <= tileCount; ++t)
            block.starts[g][t] += offset;
        all.insert(all.end(), b.groups[g].begin(), b.groups[g].end());
    }
    block.box = Box();
    for (const Box& tile : block.tileBoxes)
        block.box.add(tile);
    if (!block.vertices) {
        GLuint names[3];
        glGenBuffers(3, names);
        block.vertices = names[0], block.indices = names[1], block.colours = names[2];
    }
    block.vertexCount = static_cast<GLuint>(b.vertices.size());
    std::size_t colourBytes = 0;
    for (Layer layer : layers) {
        block.colourOffsets[static_cast<int>(layer)] = colourBytes;
        colourBytes += b.colours[static_cast<int>(layer)].size();
    }
    glBindBuffer(GL_ARRAY_BUFFER, block.vertices);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(b.vertices.size() * sizeof(Vector3)), b.vertices.data(),
                 GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, block.colours);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(colourBytes), nullptr, GL_STATIC_DRAW);
    for (Layer layer : layers) {
        const auto& c = b.colours[static_cast<int>(layer)];
        if (!c.empty())
            glBufferSubData(GL_ARRAY_BUFFER, GLintptr(block.colourOffsets[static_cast<int>(layer)]),
                            GLsizeiptr(c.size()), c.data());
    }
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, block.indices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, GLsizeiptr(all.size() * sizeof(GLushort)), all.data(),
                 GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    block.bytes = b.vertices.size() * sizeof(Vector3) + colourBytes + all.size() * sizeof(GLushort);
    block.layers = wanted;
    block.dirty = false;
}

void MapMesh::face(InView& v, float eyeX, float eyeY, std::uint32_t inside) const {
    const Block& b = *v.block;
    v.groups.assign(groupCount, 0);
    for (int t = 0; t < tileCount; ++t) {
        std::uint32_t tile = 1u << t;
        if (!(v.tiles & tile)) continue;
        bool near = inside & tile;
        v.groups[tops] |= tile;
        v.groups[groundTops] |= tile;
        v.groups[otherFlanks] |= tile;
        v.groups[plainLines] |= tile;
        v.groups[walls] |= tile;
        if (near) v.groups[hiddenFlanks] |= tile;
        for (int d = 0; d < directions; ++d) {
            // The renderer culls a flank whose back the eye sees, near or not; the lines behind a
            // prism hide only from an eye outside it.
            if (b.flankFacing[t][d].front(eyeX, eyeY)) v.groups[flanks + d] |= tile;
            if (near || b.footFacing[t][d].front(eyeX, eyeY)) v.groups[footLines + d] |= tile;
            const Facing* corner = b.cornerFacing[t][d];
            if (near || corner[0].front(eyeX, eyeY) || corner[1].front(eyeX, eyeY))
                v.groups[cornerLines + d] |= tile;
        }
    }
    for (int l = 0; l < 3; ++l)
        for (int g = 0; g < faceGroups; ++g)
            v.groups[layerGroups + faceGroups * l + g] = v.groups[g];
}

void MapMesh::drawGroups(const InView& v, int first, int last, unsigned mode) const {
    const Block& b = *v.block;
    // Runs of indices that follow each other in the buffer go as one.
    std::vector<GLsizei> counts;
    std::vector<const void*> offsets;
    std::uint32_t start = 0, end = 0;
    auto flush = [&] {
        if (end > start) {
            counts.push_back(GLsizei(end - start));
            offsets.push_back(reinterpret_cast<const void*>(std::uintptr_t(start) * sizeof(GLushort)));
        }
    };
    for (int g = first; g < last; ++g)
        for (int t = 0; t < tileCount; ++t) {
            if (!(v.groups[std::size_t(g)] >> t & 1)) continue;
            std::uint32_t a = b.starts[g][t], z = b.starts[g][t + 1];
            if (a == z) continue;
            if (a != end) {
                flush();
                start = a;
            }
            end = z;
        }
    flush();
    if (!counts.empty())
        glMultiDrawElements(mode, counts.data(), GL_UNSIGNED_SHORT, offsets.data(), GLsizei(counts.size()));
}

void MapMesh::draw(unsigned texture) {
    if (map.cells.empty() || map.cells[0] != firstCell || map.cells.size() != cellCount) layOut();
    lookAtFollowed();
    unsigned wanted = 0;
    for (Layer layer : layers)
        if (layerShown(layer)) wanted |= bit(layer);
    // A block whose cells changed is built whether in view or not: its bounds may have moved.
    for (Block& b : blocks)
        if (b.dirty) build(b, wanted);

    const Camera& camera = map.camera;
    float projection[16], view[16], m[16];
    camera.projectionMatrix(projection);
    camera.viewMatrix(view);
    for (int c = 0; c < 4; ++c)
        for (int r = 0; r < 4; ++r) {
            m[c * 4 + r] = 0;
            for (int i = 0; i < 4; ++i)
                m[c * 4 + r] += projection[i * 4 + r] * view[c * 4 + i];
        }
    // How far from the eye the near plane's corners reach: where that plane cuts a prism open, or
    // dips under the ground, the inside of the prisms shows.
    Vector3 eye = camera.position();
    float reach =
        1.01f * camera.nearPlane *
            std::sqrt(1 + camera.halfWidth * camera.halfWidth + camera.halfHeight * camera.halfHeight) +
        0.01f;
    bool underground = eye.z < reach;
    std::size_t count = 0;
    for (Block& b : blocks) {
        if (b.box.outside(m)) continue;
        std::uint32_t tiles = 0, inside = 0;
        for (int t = 0; t < tileCount; ++t) {
            if (b.tileBoxes[t].outside(m)) continue;
            tiles |= 1u << t;
            if (underground || b.surroundings[t].within(eye, reach)) inside |= 1u << t;
        }
        if (!tiles) continue;
        // A layer switched on since the block was built.
        if (wanted & ~b.layers) build(b, wanted);
        if (inView.size() <= count) inView.emplace_back();
        InView& v = inView[count++];
        v.block = &b;
        v.tiles = tiles;
        face(v, eye.x, eye.y, inside);
    }
    inView.resize(count);

    GLboolean blending = glIsEnabled(GL_BLEND);
    glEnableClientState(GL_VERTEX_ARRAY);
    auto bind = [](const Block& b) {
        glBindBuffer(GL_ARRAY_BUFFER, b.vertices);
        glVertexPointer(3, GL_FLOAT, sizeof(Vector3), nullptr);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, b.indices);
    };

    // The ground: texture coordinates are the map's own x and y, the faces a little behind the lines.
    // Blending changes nothing where the picture has no alpha, and costs the renderer a read.
    glBindTexture(GL_TEXTURE_2D, texture);
    GLint alphaBits = 0;
    if (texture) glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_ALPHA_SIZE, &alphaBits);
    if (alphaBits)
        glEnable(GL_BLEND);
    else
        glDisable(GL_BLEND);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1, 0.5f);
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glTranslatef(0, groundTextureShift, 0);
    glScalef(groundTextureScale, groundTextureScale, 1);
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_TEXTURE_2D);
    glColor4f(1, 1, 1, 1);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    for (const InView& v : inView) {
        bind(*v.block);
        glTexCoordPointer(2, GL_FLOAT, sizeof(Vector3), nullptr);
        // A layer finds its faces by an equal depth, which only the same triangles give to the
        // bit: with one on, the tops go cell by cell.
        int topGroup = wanted ? tops : groundTops;
        drawGroups(v, topGroup, topGroup + 1, GL_TRIANGLES);
        drawGroups(v, flanks, faceGroups, GL_TRIANGLES);
    }
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glDisable(GL_TEXTURE_2D);
    glMatrixMode(GL_TEXTURE);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glDisable(GL_POLYGON_OFFSET_FILL);

    // Lines are opaque.
    glDisable(GL_BLEND);
    glLineWidth(1);
    glColor4f(0, 0, 0, 1);
    for (const InView& v : inView) {
        bind(*v.block);
        drawGroups(v, plainLines, walls, GL_LINES);
    }
    // Equal depths pass, so that a wall shows over the outline along its side.
    glDepthFunc(GL_LEQUAL);
    if (showWalls) {
        glColor4f(1, 0, 0, 1);
        for (const InView& v : inView) {
            bind(*v.block);
            drawGroups(v, walls, walls + 1, GL_LINES);
        }
    }
    // Each layer repaints the faces over what the passes before left there: untextured, or white
    // smoke and black darkness would vanish into the ground's colours, and at the depth of the base
    // pass, which only the equal test lets through.
    if (wanted) {
        glEnable(GL_BLEND);
        glEnable(GL_POLYGON_OFFSET_FILL);
        // A layer's fragment gets through only at the depth that its face already left there, so
        // writing it would change nothing and costs the renderer a write.
        glDepthMask(GL_FALSE);
        glEnableClientState(GL_COLOR_ARRAY);
        for (Layer layer : layers) {
            if (!(wanted & bit(layer))) continue;
            int first = firstGroupOf(layer);
            for (const InView& v : inView) {
                bind(*v.block);
                glBindBuffer(GL_ARRAY_BUFFER, v.block->colours);
                glColorPointer(
                    4, GL_UNSIGNED_BYTE, 0,
                    reinterpret_cast<const void*>(v.block->colourOffsets[static_cast<int>(layer)]));
                drawGroups(v, first, first + faceGroups, GL_TRIANGLES);
            }
        }
        glDisableClientState(GL_COLOR_ARRAY);
        glDisable(GL_POLYGON_OFFSET_FILL);
        glDepthMask(GL_TRUE);
    }
    if (blending)
        glEnable(GL_BLEND);
    else
        glDisable(GL_BLEND);
    glDepthFunc(GL_LESS);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glDisableClientState(GL_VERTEX_ARRAY);
}

void MapMesh::forEachCellInView(const std::function<void(Cell*)>& visit) const {
    for (const InView& v : inView) {
        const Block& b = *v.block;
        for (int t = 0; t < tileCount; ++t) {
            if (!(v.tiles >> t & 1)) continue;
            int tc = b.column0 + (t % tilesAcross) * tileSide, tr = b.row0 + (t / tilesAcross) * tileSide;
            for (int r = tr; r < std::min(tr + tileSide, b.row0 + b.rows); ++r)
                for (int c = tc; c < std::min(tc + tileSide, b.column0 + b.columns); ++c)
                    visit(map.cells[std::size_t(r) * std::size_t(map.columns) + std::size_t(c)]);
        }
    }
}

std::size_t MapMesh::bytes() const {
    std::size_t total = sizeof *this + blocks.capacity() * sizeof(Block);
    for (const InView& v : inView)
        total += sizeof v + v.groups.capacity() * sizeof(std::uint32_t);
    for (const Block& b : blocks)
        total += b.bytes;
    for (const Followed& f : followed)
        total += sizeof f + f.drawn.capacity();
    return total;
}
