// ThrowAction: the refusals, the fuse, the throw and its scatter, and where the grenade goes then.
#include "combat/throw_action.h"

#include <cmath>

#include "combat/roll.h"
#include "combat/timer_window.h"
#include "map/map.h"
#include "rules/character.h"
#include "rules/random_source.h"

ThrowAction::ThrowAction(Window* parent, Character* thrower, Map* map)
    : Dialogue(parent, "Resolving Throw", 0, 0, 30, 30, ""), map(map), thrower(thrower),
      targetCell(map->hovered), grenade(dynamic_cast<Grenade*>(thrower->weapon)) {
    // The combat panel offers a throw only with a grenade in hand, on the map, at a free cell.
    if (!grenade || !targetCell || !thrower->cell) {
        refuse(this, parent, "Nope", "No grenade in hand, or nowhere to throw it");
        return;
    }
    distance = ::distance(targetCell, thrower->cell);
    difficulty = grenade->getDifficulty(distance);
    if (refusedAttackOrThrow(this, parent, *thrower, difficulty, grenade->skill)) return;

    text = openReport(this, parent);
    report(text, buffer, "%s throws grenade at %.1fm\nDifficulty is %d\n", thrower->name.c_str(), distance,
           difficulty);
    auto* timer = new TimerWindow(this);
    timer->closeHandler.bind(this, &ThrowAction::timerSet);
}

int ThrowAction::timerSet(Window* sender) {
    auto* timer = dynamic_cast<TimerWindow*>(sender);
    if (!timer) return 0;
    grenade->fuse = *timer->timerEdit->number;
    if (grenade->fuse < 0)
        report(text, buffer, "%s sets grenade to explode on impact\n", thrower->name.c_str());
    else
        report(text, buffer, "%s sets grenade to explode after %d rounds\n", thrower->name.c_str(),
               grenade->fuse);
    auto* throwRoll = new Roll(parent, thrower, grenade->skill, 2, -1, -1);
    throwRoll->closeHandler.bind(this, &ThrowAction::thrown);
    return 0;
}

int ThrowAction::thrown(Window* sender) {
    auto* throwRoll = dynamic_cast<Roll*>(sender);
    if (!throwRoll) return 0;
    roll = throwRoll->total;
    thrower->spendAction();
    grenade->use();
    report(text, buffer, "%s rolled %d and ", thrower->name.c_str(), roll);
    if (roll >= difficulty) {
        report(text, buffer, "hit\n");
    } else {
        float x = targetCell->centre.x, y = targetCell->centre.y;
        scatter(x, y);
        // Off the map or not, the fuse burns.
        if (Cell* landed = map->cellAt(x, y))
            report(text, buffer, "Grenade landed at (%.2f,%.2f)\n", landed->centre.x, landed->centre.y);
        else
            report(text, buffer, "Grenade is off the map");
    }

    // Hit or miss, the grenade has left the thrower's hands and inventory.
    thrower->unequip(grenade);
    thrower->inventory.remove(grenade);
    thrower->notifyChanged();
    Grenade* gone = grenade;
    grenade = nullptr;
    if (gone->fuse >= 0)
        addUpdatable(gone);
    else if (gone->explodeHandler)
        gone->explode(); // the handler deletes it
    else
        delete gone;
    offerOk(this);
    return 0;
}

void ThrowAction::scatter(float& x, float& y) {
    // The farther the throw, the wider the miss: one die within the second range bracket, two
    // within the third, else three.
    int dice = distance <= grenade->range[1] ? 1 : distance <= grenade->range[2] ? 2 : 3;
    int m = DiceCode(dice, 0).roll();
    // Along a diagonal, g on each axis makes about m in all.
    int g = static_cast<int>(m / std::sqrt(2.0f));
    report(text, buffer, "missed by %dm\n", m);

    // The way of the throw in the map's plane; height plays no part.
    float dx = targetCell->centre.x - thrower->cell->centre.x;
    float dy = targetCell->centre.y - thrower->cell->centre.y;
    float length = std::hypot(dx, dy);
    float ux = length > 0 ? dx / length : 0, uy = length > 0 ? dy / length : 0;
    static const char* const ways[6] = {"too far",   "to the far right", "to the right",
                                        "too short", "to the left",      "to the far left"};
    int way = sharedRandom.rollDie();
    switch (way) {
    case 1:
        x += m * ux, y += m * uy;
        break;
    case 2:
        x += g * (ux - uy), y += g * (uy + ux);
        break;
    case 3:
        x -= m * uy, y += m * ux;
        break;
    case 4:
        x -= m * ux, y -= m * uy;
        break;
    case 5:
        x += m * uy, y -= m * ux;
        break;
    default:
        x += g * (ux + uy), y += g * (uy - ux);
        break;
    }
    report(text, buffer, "Throw was %s\n", ways[way - 1]);
}
