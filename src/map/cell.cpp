// Cell: the arrays of a new cell, and its height.
#include "map/cell.h"

Cell::Cell() : neighbours(new Cell* [6] {}), corners(new Vector3[6]), walls(new bool[6]{}) {}

Cell::~Cell() = default;

void Cell::setHeight(float z) {
    centre.z = z;
    for (int i = 0; i < sides; ++i)
        corners[i].z = z;
}
