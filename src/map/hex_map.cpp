// HexMap: the layout of a grid of six-sided cells, and the inverse of it, the cell at a point.
#include "map/hex_map.h"

// Indexed by column parity, then side: north, north-east, south-east, south, south-west, north-west.
const GridStep neighbourSteps[2][6] = {
    {{0, -1}, {1, -1}, {1, 0}, {0, 1}, {-1, 0}, {-1, -1}},
    {{0, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}},
};

HexMap::HexMap(Window* parent, int columnCount, int rowCount) : Map(parent) {
    makeCells(columnCount, rowCount);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            Cell* cell = cells[r * columns + c];
            float cx = 0.75f * c + 0.5f;
            float cy = (c % 2 == 0) ? r + 0.5f : r + 1.0f; // odd columns hang half a cell lower
            cell->centre = {cx, cy, 0};
            Vector3* k = cell->corners;
            k[0] = {cx - 0.25f, cy - 0.5f, 0};
            k[1] = {cx + 0.25f, cy - 0.5f, 0};
            k[2] = {cx + 0.5f, cy, 0};
            k[3] = {cx + 0.25f, cy + 0.5f, 0};
            k[4] = {cx - 0.25f, cy + 0.5f, 0};
            k[5] = {cx - 0.5f, cy, 0};
            // Cut at the map's rectangle, (0.25, 0.5) to (0.75 columns, rows).
            if (c % 2 == 0 && r == 0) k[0].y = k[1].y = 0.5f;
            if (c == columns - 1) k[2].x = 0.75f * columns;
            if (c % 2 == 1 && r == rows - 1) k[3].y = k[4].y = static_cast<float>(rows);
            if (c == 0) k[5].x = 0.25f;
            for (int i = 0; i < cell->sides; ++i) {
                const GridStep& step = neighbourSteps[c % 2][i];
                int nc = c + step.column, nr = r + step.row;
                bool inside = nc >= 0 && nc < columns && nr >= 0 && nr < rows;
                cell->neighbours[i] = inside ? cells[nr * columns + nc] : nullptr;
            }
        }
}

Cell* HexMap::cellAt(float x, float y) {
    // The bounds themselves belong to the map; NaN belongs nowhere.
    if (!(x >= 0.25f && x <= 0.75f * columns && y >= 0.5f && y <= static_cast<float>(rows))) return nullptr;
    // A pair of columns spans 1.5 units; (c, r) is the even-column cell of this unit box, and the
    // slanted sides decide whether the point lies in an odd column to its right or left.
    float u = x / 1.5f;
    int p = static_cast<int>(u);
    int c = 2 * p, r = static_cast<int>(y);
    float fu = u - p, fy = y - r;
    if (fu > 0.5f) {
        if (fy < 0.5f) {
            if (3 * (fu - 0.5f) >= fy) c += 1, r -= 1;
        } else if (3 * (fu - 0.5f) >= 1 - fy) {
            c += 1;
        }
    }
    if (fu < 0.166667f) {
        if (fy < 0.5f) {
            if (0.5f - fy > 3 * fu) c -= 1, r -= 1;
        } else if (fy - 0.5f > 3 * fu) {
            c -= 1;
        }
    }
    if (c < 0 || c >= columns || r < 0 || r >= rows) return nullptr;
    return cells[r * columns + c];
}

void HexMap::save() {
    saveAs("qm2207.map6");
}
