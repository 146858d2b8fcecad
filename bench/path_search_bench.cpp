// The path search on a large map: a mover of move 10 at full out, a budget of 40 metres, to a
// target within reach and to one just out of it (which explores everything within the budget).
#include <benchmark/benchmark.h>

#include <memory>

#include "map/hex_map.h"
#include "rules/character.h"

namespace {
struct Field {
    Field() : map(nullptr, 256, 256), mover(true) {
        // A gentle rolling ground, so that steps cost more than on the flat.
        for (int r = 0; r < 256; ++r)
            for (int c = 0; c < 256; ++c)
                map.cells[r * 256 + c]->setHeight(float((r / 7 + c / 5) % 3) * 0.5f);
        mover.move = 10;
        mover.moveSpeed = 4;
        mover.actions = 1;
        placeCharacter(&mover, map.cells[128 * 256 + 128]);
    }
    ~Field() { mover.cell->occupant = nullptr; }
    HexMap map;
    Character mover;
};

void search(benchmark::State& state, int column, int row) {
    Field field;
    field.map.hovered = field.map.cells[row * 256 + column];
    for (auto _ : state) {
        field.map.findPath(&field.mover);
        benchmark::DoNotOptimize(field.map.pendingLength);
    }
    state.counters["steps"] = static_cast<double>(field.map.pendingPath.size());
}

void BM_FindPathWithinReach(benchmark::State& state) {
    search(state, 152, 110);
}
void BM_FindPathJustOutOfReach(benchmark::State& state) {
    search(state, 128, 84);
}
} // namespace

BENCHMARK(BM_FindPathWithinReach)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FindPathJustOutOfReach)->Unit(benchmark::kMicrosecond);
