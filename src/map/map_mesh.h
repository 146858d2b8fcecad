// MapMesh: the map's cells as geometry kept from frame to frame: prisms, outlines, walls and the
// faces of the terrain layers in buffer objects, block by block, rebuilt where a cell changed and
// drawn pass by pass for the parts of the map in view.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class Cell;
class Map;

// The terrain layers, in the order in which they repaint a cell.
enum class Layer { light, smoke, protection, difficulty };
constexpr int layerCount = 4;
// The colour in which a layer repaints a cell (an alpha above 1 counts as 1), or false when the layer
// leaves the cell as it is.
bool layerColour(const Cell& cell, Layer layer, float rgba[4]);
// Whether the layer's switch is on.
bool layerShown(Layer layer);

class MapMesh {
  public:
    // Nothing is built before the first draw, and nothing is asked of OpenGL before it.
    explicit MapMesh(Map& map);
    MapMesh(const MapMesh&) = delete;
    MapMesh& operator=(const MapMesh&) = delete;
    ~MapMesh();

    // The geometry of the cell and of its neighbours, whose flanks and shared lines depend on it, is
    // built again at the next draw.
    void cellChanged(const Cell* cell);
    // The cell is looked at each frame while it has observers, and once more after the last one left.
    void followCell(Cell* cell);

    // The cells, their walls when showWalls is set, and the layers that are switched on, with the
    // map's lens and view loaded and the depth test on. Leaves the depth function at GL_LESS, no
    // texture, no arrays and no buffers bound.
    void draw(unsigned texture);
    // Each cell of the parts of the map that the last draw found in view.
    void forEachCellInView(const std::function<void(Cell*)>& visit) const;
    // What the kept geometry takes: buffers and bookkeeping.
    std::size_t bytes() const;

  private:
    struct Block;
    struct Builder;
    // A block in view, with a mask of tiles for each group of its geometry: the tiles in which the
    // group may show from where the camera stands.
    struct InView {
        Block* block;
        std::uint32_t tiles; // one bit a tile in view
        std::vector<std::uint32_t> groups;
    };
    struct Followed {
        Cell* cell;
        std::string drawn; // the fields that the drawing shows, as they were at the last look
    };

    // Blocks laid out afresh when the grid is new or has another size.
    void layOut();
    void build(Block& block, unsigned layers);
    static void joinSlabs(Builder& b);
    void lookAtFollowed();
    int blockIndexOf(int column, int row) const;
    // The masks of the groups of a block in view, for the camera's eye.
    void face(InView& v, float eyeX, float eyeY, std::uint32_t inside) const;
    // The groups from first to last (excluded) of a block in view, in one call.
    void drawGroups(const InView& v, int first, int last, unsigned mode) const;

    Map& map;
    std::vector<Block> blocks;
    int blocksAcross = 0, blocksDown = 0;
    const Cell* firstCell = nullptr; // the grid that the blocks were laid out for
    std::size_t cellCount = 0;
    std::vector<InView> inView;
    std::vector<Followed> followed;
};
