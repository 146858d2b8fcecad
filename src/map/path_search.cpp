// The path search: an A* with a budget from the end of the laid-down way, or the mover's cell, to
// the hovered cell, with the line coloured by the speed that each stretch would take.
//
// Its quirks are the rules of the table, and the tests hold them:
// - the budget is the move times 1, 2 or 4, by the speed of the last move and the actions taken;
// - a target farther in a straight line than the square of what remains is refused at once;
// - a cell's sort key is its cost plus the square root of its distance to the target, fixed at the
//   first sight of the cell even when a shorter way to it turns up later;
// - among equal keys the cell put on the open list last comes first.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "map/map.h"
#include "rules/character.h"
#include "rules/speed.h"

namespace {
// The open list as a binary heap: least key first, the newest of equal keys first. A cell put on
// the list again (a shorter way reached it) keeps its key and becomes the newest; its older entries
// stay in the heap and are passed over when they come up, known by a stamp that is not the cell's.
struct OpenEntry {
    float key;
    std::uint32_t stamp; // the count of entries made before this one
    Cell* cell;
};
// True when a comes out after b.
bool later(const OpenEntry& a, const OpenEntry& b) {
    if (a.key != b.key) return a.key > b.key;
    return a.stamp < b.stamp;
}

class OpenList {
  public:
    void push(Cell* cell) {
        cell->pathOpenStamp = next;
        heap.push_back({cell->pathEstimate, next++, cell});
        std::push_heap(heap.begin(), heap.end(), later);
    }
    // The first live entry, or null when none is left.
    Cell* front() {
        while (!heap.empty()) {
            const OpenEntry& e = heap.front();
            if (e.cell->pathState == 0 && e.cell->pathOpenStamp == e.stamp) return e.cell;
            pop();
        }
        return nullptr;
    }
    void pop() {
        std::pop_heap(heap.begin(), heap.end(), later);
        heap.pop_back();
    }

  private:
    std::vector<OpenEntry> heap;
    std::uint32_t next = 0;
};

// The colour of the line where the way has run `length` metres.
PathStep colouredStep(Cell* cell, float length, float lowerLimit, float limit, float move) {
    if (length < lowerLimit) return {cell, 0, 0, 0}; // could not stop here
    if (length > limit) return {cell, 0, 0, 0};      // beyond the budget
    if (length > 2 * move) return {cell, 1, 0, 0};   // full out
    if (length > move) return {cell, 1, 1, 0};       // high speed
    if (length > move / 2) return {cell, 0, 1, 0};   // normal
    return {cell, 0, 0, 1};                          // cautious
}
} // namespace

void Map::findPath(Character* mover) {
    clearPendingPath();
    Cell* target = hovered;
    if (!target || !mover) return;

    float remaining = mover->moveBudget() - committedLength;

    Cell* start = committedPath.empty() ? mover->cell : committedPath.back().cell;
    if (!start) return;
    float h = distance(target, start);
    start->pathEstimate = h;
    if (h > remaining * remaining) return;

    start->pathCost = 0;
    start->pathParent = nullptr;
    // Every cell is unseen between searches: the cells that this one sees are set back at its end,
    // which costs the cells seen rather than the whole map.
    std::vector<Cell*> seen{start};
    start->pathState = 0;
    OpenList open;
    open.push(start);

    bool found = false;
    while (Cell* cur = open.front()) {
        if (cur == target) {
            found = true;
            break;
        }
        open.pop();
        cur->pathState = 1;
        for (int i = 0; i < cur->sides; ++i) {
            Cell* n = cur->neighbours[i];
            if (cur->walls[i] || !n) continue;
            // Height counts: a step up or down is longer than one on the flat.
            float g = cur->pathCost + distance(n, cur);
            if (n->pathState != 255 && !(g < n->pathCost)) continue;
            if (n->pathState == 255) {
                n->pathEstimate = g + std::sqrt(distance(n, target));
                if (n->pathEstimate > remaining) continue;
                seen.push_back(n);
            }
            n->pathCost = g;
            n->pathParent = cur;
            n->pathState = 0;
            open.push(n);
        }
    }
    for (Cell* c : seen)
        c->pathState = 255;
    if (!found) return;

    pendingLength = target->pathCost + committedLength;
    pendingDifficulty = committedDifficulty;
    // A character at speed cannot stop dead: the line is black short of this.
    float lowerLimit = mover->shortestStop();
    float move = static_cast<float>(mover->move);
    for (Cell* c = target; c; c = c->pathParent) {
        if (c->difficulty > pendingDifficulty) pendingDifficulty = c->difficulty;
        pendingPath.push_front(
            colouredStep(c, committedLength + c->pathCost, lowerLimit, committedLength + remaining, move));
    }

    int speed = speedClass(mover, pendingLength);
    // A way within the budget is one of the four speeds; a way of no length needs no roll, and
    // rounding past four times the move is still full out.
    if (speed < 1)
        requiredRoll = noRollNeeded;
    else
        requiredRoll = moveEntry(speed, pendingDifficulty);
}

void Map::commitPath() {
    // With nothing proposed the way laid down stays as it is, its length and difficulty too.
    if (pendingPath.empty()) return;
    for (const PathStep& step : pendingPath)
        committedPath.push_back(step);
    pendingPath.clear();
    committedLength = pendingLength;
    committedDifficulty = pendingDifficulty;
}

void Map::clearPendingPath() {
    pendingPath.clear();
    pendingLength = 0;
    pendingDifficulty = 0;
}

void Map::clearCommittedPath() {
    committedPath.clear();
    committedLength = 0;
    committedDifficulty = 0;
    requiredRoll = 0;
}
