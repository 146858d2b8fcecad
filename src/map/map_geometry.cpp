// What the map answers about space: distances, the crossing of a ray with a side, the cell at a
// point, the point under a pixel, and the walk of a ray over the height field.
#include <cmath>

#include "map/map.h"

float distance(Cell* a, Cell* b) {
    if (!a) return 0;
    Vector3 d = a->centre - b->centre;
    return std::sqrt(dot(d, d));
}

float raySegment(Vector3 origin, Vector3 direction, Vector3 a, Vector3 b) {
    auto side = [&](Vector3 q) { return (q.x - origin.x) * direction.y - (q.y - origin.y) * direction.x; };
    if (side(a) * side(b) > 0) return -1; // both ends on one side of the ray's line
    float nx = b.y - a.y, ny = a.x - b.x;
    float length = std::sqrt(nx * nx + ny * ny);
    if (length > 0) nx /= length, ny /= length;
    float num = nx * (origin.x - a.x) + ny * (origin.y - a.y);
    if (num == 0) return 0; // the origin lies on the side's line
    float den = nx * direction.x + ny * direction.y;
    if (den == 0) return -1;
    return -num / den;
}

Cell* Map::cellAt(float px, float py) {
    // A negative coordinate lies off the grid; testing before truncating keeps the strip from -1
    // to 0 off the first column and row, and keeps NaN and values beyond the int range out.
    if (!(px >= 0 && px < columns && py >= 0 && py < rows)) return nullptr;
    int c = static_cast<int>(px), r = static_cast<int>(py);
    return cells[r * columns + c];
}

void Map::viewCoordinates(float px, float py, float& u, float& v) const {
    u = 2 * (px - viewLeft) / viewWidth - 1;
    v = 2 * (py - viewTop) / viewHeight - 1;
}

void Map::screenToPlane(float px, float py, Vector3* out, float planeZ) {
    float u, v;
    viewCoordinates(px, py, u, v);
    Vector3 d = camera.rayThrough(u, v), p = camera.position();
    float t = -(p.z - planeZ) / d.z;
    *out = p + t * d;
}

Cell* Map::pick(float px, float py, Vector3* hit) {
    float u, v;
    viewCoordinates(px, py, u, v);
    *hit = camera.position();
    Vector3 d = camera.rayThrough(u, v);
    Cell* cell = cellAt(hit->x, hit->y);
    if (!cell) {
        // The camera stands off the map: enter it where the ray first crosses its edge, drawn a
        // little inside the outline so that the crossing lies in a cell.
        float m = 0.75f * columns - 0.001f, n = rows - 0.001f;
        const Vector3 edge[4] = {{0.251f, 0.501f, 0}, {m, 0.501f, 0}, {m, n, 0}, {0.251f, n, 0}};
        float best = 1e9f;
        for (int i = 0; i < 4; ++i) {
            float t = raySegment(*hit, d, edge[i], edge[(i + 1) % 4]);
            if (t > 0 && t < best) best = t;
        }
        if (!(best < 1e9f)) return nullptr;
        *hit = *hit + best * d;
        if (hit->z < 0) return nullptr; // the ray passed under the map
        cell = cellAt(hit->x, hit->y);
        if (!cell) return nullptr;
    }
    // The last two cells are never entered again. A straight walk meets each cell once at most,
    // so the count only guards against degenerate outlines.
    Cell *prev1 = nullptr, *prev2 = nullptr;
    for (std::size_t walked = 0; walked <= cells.size(); ++walked) {
        if (cell->centre.z > hit->z) return cell; // below the top: the ray runs into the flank
        int side = -1;
        float t = 0;
        for (int i = 0; i < cell->sides; ++i) {
            t = raySegment(*hit, d, cell->corners[i], cell->corners[(i + 1) % cell->sides]);
            Cell* n = cell->neighbours[i];
            if (t >= 0 && (!n || (n != prev1 && n != prev2))) {
                side = i;
                break;
            }
        }
        if (side < 0) return nullptr;
        if (cell->centre.z > hit->z + t * d.z) {
            // The ray comes down on this cell's top before it leaves.
            *hit = *hit + ((cell->centre.z - hit->z) / d.z) * d;
            return cell;
        }
        *hit = *hit + t * d;
        Cell* next = cell->neighbours[side];
        if (!next) return nullptr; // the ray has left the map above it
        prev2 = prev1;
        prev1 = cell;
        cell = next;
    }
    return nullptr;
}

Cell* Map::traceLine(Cell* from, Cell* to) {
    if (!from || !to) return nullptr;
    Vector3 point = from->centre, d = to->centre - from->centre;
    Cell* current = from;
    for (std::size_t walked = 0; walked <= cells.size(); ++walked) {
        Cell* next = nullptr;
        float t = 0;
        for (int i = 0; i < current->sides; ++i) {
            t = raySegment(point, d, current->corners[i], current->corners[(i + 1) % current->sides]);
            if (t > 0.01f) {
                next = current->neighbours[i];
                break;
            }
        }
        if (!next) return nullptr;
        point = point + t * d;
        // A cell that stands above the line where the line leaves it blocks the line there.
        if (current != from && current->centre.z > point.z) return current;
        if (next == to) return to;
        current = next;
    }
    return nullptr;
}
