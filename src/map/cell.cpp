// Cell: its height.
#include "map/cell.h"

Cell::Cell() = default;

Cell::~Cell() = default;

void Cell::setHeight(float z) {
    centre.z = z;
    for (int i = 0; i < sides; ++i)
        corners[i].z = z;
}
