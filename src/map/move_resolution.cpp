// The end of a rolled move: where the runner gets to along the laid-down way, after a good roll or
// a slip, a fall or a tumble.
#include <algorithm>

#include "map/map.h"
#include "rules/character.h"
#include "rules/speed.h"

int Map::resolveMove(int roll, Character* mover) {
    int difficulty = moveDifficulty(mover->moveSpeed, committedDifficulty);
    // A tie succeeds.
    int margin = roll >= difficulty ? 0 : clampedDifference(difficulty, roll);
    long long last = static_cast<long long>(committedPath.size()) - 1;
    long long reached = last;
    if (margin > 0) {
        int parts = mover->applyMishap(margin);
        // The steps that the runner gets past before it goes down, never beyond the last.
        reached = std::min(last, static_cast<long long>((committedPath.size() - 0.5) / parts));
    }
    // A way may cross a cell where someone stands: whoever comes down there comes down just short.
    while (reached > 0 && committedPath[reached].cell->occupant &&
           committedPath[reached].cell->occupant != mover)
        --reached;
    if (reached >= 0) placeCharacter(mover, committedPath[reached].cell);
    clearCommittedPath();
    return margin;
}
