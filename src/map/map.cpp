// Map: construction, the grid's storage, the view rectangle, the layer flags and placing characters.
#include "map/map.h"

#include "map/map_mesh.h"

#include "rules/character.h"
#include "toolkit/input_state.h"

bool showLight = false;
bool showSmoke = false;
bool showProtection = false;
bool showDifficulty = false;
bool showWalls = false;

Map::Map(Window* parent) : Window(parent, 0, 0, 1, 1, "") {}

Map::~Map() = default;

void Map::makeCells(int columnCount, int rowCount) {
    columns = columnCount > 0 ? columnCount : 0;
    rows = rowCount > 0 ? rowCount : 0;
    std::size_t count = std::size_t(columns) * std::size_t(rows);
    cellBlock.reset(count ? new Cell[count] : nullptr);
    cells.assign(count, nullptr);
    for (std::size_t i = 0; i < count; ++i)
        cells[i] = &cellBlock[i];
}

void Map::reservedHook() {}

MapMesh& Map::meshOf() {
    if (!mesh) mesh = std::make_unique<MapMesh>(*this);
    return *mesh;
}

void Map::cellChanged(Cell* cell) {
    // Before the first draw there is nothing kept to bring up to date.
    if (mesh) mesh->cellChanged(cell);
}

void Map::followCell(Cell* cell) {
    meshOf().followCell(cell);
}

std::size_t Map::geometryBytes() const {
    return mesh ? mesh->bytes() : 0;
}

void Map::setArea(float ax, float ay, float w, float h) {
    setPosition(ax, ay);
    setSize(w, h);
}

void Map::setPosition(float ax, float ay) {
    x = ax;
    y = ay;
    float sx = 0, sy = 0;
    for (Window* w = this; w; w = w->parent) {
        sx += w->x;
        sy += w->y;
    }
    viewLeft = sx * pixelsPerUnitX;
    viewTop = sy * pixelsPerUnitY;
}

void Map::setSize(float w, float h) {
    width = w;
    height = h;
    viewWidth = w * pixelsPerUnitX;
    viewHeight = h * pixelsPerUnitY;
}

void placeCharacter(Character* c, Cell* cell) {
    if (c->cell && c->cell->occupant == c) c->cell->occupant = nullptr;
    cell->occupant = c;
    c->cell = cell;
}
