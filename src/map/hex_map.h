// HexMap: the map of six-sided cells, the only kind of map the program makes. Odd columns hang half
// a cell lower than even ones; the halves of cells that would stick out of the map's rectangle are
// cut off flat.
#pragma once

#include "map/map.h"

class HexMap : public Map {
  public:
    // A flat grid at height 0 with every side open: centres, outlines and neighbours laid out.
    HexMap(Window* parent, int columns, int rows);

    Cell* cellAt(float x, float y) override;
    // Writes "qm2207.map6".
    void save() override;
};

// Where a side leads: the column and row steps to the neighbour beyond side i, for a cell in an
// even column and in an odd one.
struct GridStep {
    int column, row;
};
extern const GridStep neighbourSteps[2][6];
