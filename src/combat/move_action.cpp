// MoveAction: the checks of a move, its cost, the "Running" roll and what a failed one brings.
#include "combat/move_action.h"

#include "combat/roll.h"
#include "map/map.h"
#include "rules/character.h"
#include "rules/speed.h"

MoveAction::MoveAction(Window* parent, Character* mover, Map* map)
    : Dialogue(parent, "Resolving Movement", 0, 0, 30, 30, ""), map(map), mover(mover) {
    if (mover->actions == 0) {
        refuse(this, parent, "Nope", "No more actions this round");
        return;
    }
    if (mover->moved) {
        refuse(this, parent, "Nope", "You already moved this round");
        return;
    }
    // Someone who can no longer run can still walk where no roll is asked.
    DiceCode running = effectiveCode(*mover, "Running");
    if (nothingLeft(running) && map->requiredRoll > noRollNeeded) {
        refuse(this, parent, "No dice", "With your penalties you're at " + running.text() + ".\nForget it.");
        return;
    }
    map->commitPath();
    // Only a way laid down for someone else reaches beyond the budget of this runner, whose speed
    // and roll it would not say.
    if (!mover->canReach(map->committedLength)) {
        refuse(this, parent, "Too far", "That way is beyond your reach this round.\nLay it down anew.");
        return;
    }
    int speed = mover->applyMove(map->committedLength, difficultyClass(map->committedDifficulty));
    if (speed == 0) {
        visible = false;
        return;
    }
    if (speed < 0) {
        refuse(this, parent, "Too fast", "Sorry, gotta move further.");
        return;
    }
    if (map->requiredRoll <= noRollNeeded) {
        placeCharacter(mover, map->committedPath.back().cell);
        visible = false;
        return;
    }

    text = openReport(this, parent);
    report(text, buffer, "%s is moving at %s speed\nTerrain difficulty is %d\nTotal difficulty is %d\n",
           mover->name.c_str(), speedNames[speed], map->committedDifficulty,
           moveDifficulty(speed, map->committedDifficulty));
    auto* roll = new Roll(parent, mover, "Running", 2, -1, -1);
    roll->closeHandler.bind(this, &MoveAction::rolled);
}

MoveAction::~MoveAction() {
    map->clearCommittedPath();
    map->clearPendingPath();
}

int MoveAction::rolled(Window* sender) {
    auto* roll = dynamic_cast<Roll*>(sender);
    if (!roll) return 0;
    // A tumble hurts by the speed from before the fall, which the fall takes away.
    int speed = mover->moveSpeed;
    int margin = map->resolveMove(roll->total, mover);
    if (margin == 0) {
    } else if (margin <= 3) {
        report(text, buffer, "Slight slip, -1D for remaining round\n");
    } else if (margin <= 6) {
        report(text, buffer, "Slip, -3D for remaining round, -1D next round\n");
    } else if (margin <= 10) {
        report(text, buffer, "Fall, no more actions, -2D next round\n");
    } else if (margin <= 15 && speed != 4) {
        // The one line of a report that ends without a break.
        report(text, buffer, "Minor tumble, no damage");
    } else {
        if (margin <= 15) {
            damage = rollDice(1);
            report(text, buffer, "Minor tumble and 1D damage (%d)\n", damage);
        } else if (margin <= 20) {
            damage = rollDice(speed);
            report(text, buffer, "Tumble and %dD damage (%d)\n", speed, damage);
        } else {
            damage = rollDice(speed + 2);
            report(text, buffer, "Major tumble and %dD damage (%d)\n", speed + 2, damage);
        }
        auto* resist = new Roll(parent, mover, "PResist", 5, -1, -1);
        resist->closeHandler.bind(this, &MoveAction::resisted);
        return 0;
    }
    offerOk(this);
    return 0;
}

int MoveAction::resisted(Window* sender) {
    auto* roll = dynamic_cast<Roll*>(sender);
    if (!roll) return 0;
    if (damage < roll->total) {
        report(text, buffer, "No damage\n");
    } else {
        HealthState outcome = mover->takeDamage(clampedDifference(damage, roll->total));
        report(text, buffer, "You were %s, all in all you're now %s\n", healthStateNames[outcome],
               healthStateNames[mover->health]);
    }
    offerOk(this);
    return 0;
}
