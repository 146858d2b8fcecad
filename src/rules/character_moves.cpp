// What a run does to a character: the speed it takes and what that costs, the budget of the next
// way, and the slips, falls and tumbles of a failed roll.
#include "rules/character.h"
#include "rules/speed.h"

float Character::moveBudget() const {
    // After a standstill the move itself is in reach, after "cautious" twice the move, after
    // anything faster four times, but twice only for a character who does more this round.
    int m = moveSpeed < 0 ? 0 : moveSpeed < 2 ? moveSpeed : 2;
    if (m == 2 && (actions > 1 || actionsTaken != 0)) m = 1;
    // In floating point: a move read from a hand-edited file may be near the int range.
    return static_cast<float>(move) * static_cast<float>(1 << m);
}

bool Character::canReach(float distance) const {
    // A way that the path search offers is summed step by step and may come out a hair above the
    // budget that it was held to.
    return distance <= moveBudget() * (1 + 1e-5f);
}

float Character::shortestStop() const {
    if (moveSpeed == 4) return static_cast<float>(move / 2);
    if (moveSpeed == 3) return 1;
    return 0;
}

void Character::spendAction() {
    actions = clampedSum(actions, -1);
    actionsTaken = clampedSum(actionsTaken, 1);
}

void Character::loseRound() {
    actions = 0;
    actionsTaken = -1;
}

int Character::applyMove(float distance, int terrainClass) {
    if (!canReach(distance) || moved) return 1;
    if (distance > 0 && distance < shortestStop()) return -1;

    // Within the budget, only rounding takes a way past four times the move: still full out.
    int speed = speedClass(this, distance);
    moveSpeed = speed < 0 ? 4 : speed;
    switch (moveSpeed) {
    case 1:
        // Picking one's way over easy ground is free; over rough ground it takes an action.
        if (terrainClass >= 3) spendAction();
        break;
    case 2:
    case 3:
        spendAction();
        break;
    case 4:
        // Running full out takes the whole round.
        loseRound();
        break;
    }
    if (distance > 0) moved = true;
    notifyChanged();
    return moveSpeed;
}

int Character::applyMishap(int margin) {
    int parts;
    if (margin <= 3) {
        addPenalty(new Penalty("Slight Slip", DiceCode(1, 0), 1, "All"));
        parts = 1;
    } else if (margin <= 6) {
        addPenalty(new Penalty("Slip", DiceCode(2, 0), 1, "All"));
        addPenalty(new Penalty("Slip", DiceCode(1, 0), 2, "All"));
        if (moveSpeed != 0) --moveSpeed;
        parts = 2;
    } else if (margin <= 10) {
        addPenalty(new Penalty("Fall", DiceCode(2, 0), 2, "All"));
        posture = 1;
        moveSpeed = 0;
        loseRound();
        parts = 2;
    } else {
        // A tumble knocks the runner out for two rounds; the damage is rolled by whoever resolves
        // the move.
        unconscious = 2;
        posture = 2;
        moveSpeed = 0;
        loseRound();
        parts = 4;
    }
    notifyChanged();
    return parts;
}
