// AttackAction: the refusals, cover, the target's standing and its reaction, the attack roll,
// damage and resistance.
#include "combat/attack_action.h"

#include <algorithm>

#include "combat/roll.h"
#include "map/map.h"
#include "rules/character.h"
#include "toolkit/button.h"
#include "toolkit/label.h"

AttackAction::AttackAction(Window* parent, Character* attacker, Character* target, Map* map)
    : Dialogue(parent, "Resolving Attack", 0, 0, 30, 30, ""), map(map), attacker(attacker), target(target) {
    distance = ::distance(attacker->cell, target->cell);
    Weapon* weapon = attacker->weapon;
    if (refusedAttackOrThrow(this, parent, *attacker, difficulty(), weapon->skill)) return;
    auto* ranged = dynamic_cast<RangedWeapon*>(weapon);
    if (ranged && ranged->ammo <= 0) {
        refuse(this, parent, "Out of Ammo", "Permaybehaps try reloading");
        return;
    }

    text = openReport(this, parent);
    isRanged = ranged != nullptr;
    // Only the target's own cell gives cover: the worse of poor light and smoke, and solid
    // protection on top.
    const Cell* place = target->cell;
    DiceCode cover = (place->light > place->cover ? place->light : place->cover) + place->protect;
    targetNumber = cover.roll();
    report(text, buffer, "%s %s %s at %.1fm\nPosition adds cover of %dD (%d)\n", attacker->name.c_str(),
           isRanged ? "shoots" : "strikes", target->name.c_str(), distance, cover.dice, targetNumber);

    // A reaction rolled earlier in the round stands for every attack of the round.
    int standing = isRanged ? target->dodge : target->parry;
    if (standing >= 0 && target->actionsTaken >= 0) {
        defence = standing;
        targetNumber = clampedSum(targetNumber, defence);
        report(text, buffer, "%s's previous %s roll was %d\nTotal difficulty is %d\n", target->name.c_str(),
               reactionName(), defence, targetNumber);
    } else if (standing >= 0) {
        // A full reaction comes on top of the difficulty, for every attack of the round.
        defence = clampedSum(standing, difficulty());
        targetNumber = clampedSum(targetNumber, defence);
        report(text, buffer,
               isRanged ? "%s was fully dodging.\nTotal difficulty is %d\n"
                        : "%s was fully parrying.\nTotal difficulty is %d\n",
               target->name.c_str(), targetNumber);
    } else if (target->actionsTaken < 0) {
        defence = difficulty();
        targetNumber = clampedSum(targetNumber, defence);
        report(text, buffer, "%s can't react.\nTotal difficulty is %d\n", target->name.c_str(), targetNumber);
    } else {
        askForReaction();
        return;
    }
    rollAttack();
}

AttackAction::~AttackAction() {
    // The request lives among the siblings; one that is no longer there has died with them.
    if (reactionWindow && std::ranges::find(parent->children, reactionWindow) != parent->children.end())
        delete reactionWindow;
}

int AttackAction::difficulty() const {
    return attacker->weapon->getDifficulty(distance);
}

void AttackAction::askForReaction() {
    reactionWindow = new Dialogue(parent, "Reaction Request", (parent->width - 29) / 2,
                                  (parent->height - 14) / 2, 29, 14, "");
    new Label(reactionWindow,
              target->name + ", any reaction to " + attacker->name + "\ntaking a " +
                  (isRanged ? "shot" : "swing") + " at you?",
              1.5f, 4.5f, 20, 1.5f, "");
    // A full reaction is open only to a target that has done nothing this round and has no
    // actions standing: one that has not declared yet qualifies.
    const struct {
        const char* caption;
        float x;
        bool shown;
        int (AttackAction::*answer)(Window*);
    } answers[] = {
        {"Don't\nreact", 1, true, &AttackAction::noReaction},
        {"Use\naction", 8, target->actions > 0, &AttackAction::useAction},
        {"Extra\naction", 15, target->actionsTaken >= 0, &AttackAction::extraAction},
        {"Fully\nreact", 22, target->actions < 1 && target->actionsTaken == 0, &AttackAction::fullReaction},
    };
    for (const auto& a : answers) {
        if (!a.shown) continue;
        auto* button = new Button(reactionWindow, a.caption, a.x, 8, 6, 5, "");
        button->leftClickHandler.bind(this, a.answer);
    }
}

void AttackAction::closeReactionWindow() {
    Dialogue* request = reactionWindow;
    reactionWindow = nullptr;
    // From inside the click of one of its buttons: nothing touches the button afterwards.
    if (request) request->close(nullptr);
}

int AttackAction::noReaction(Window*) {
    defence = difficulty();
    targetNumber = clampedSum(targetNumber, defence);
    report(text, buffer, "%s is doing nothing\nTotal difficulty is %d\n", target->name.c_str(), targetNumber);
    closeReactionWindow();
    rollAttack();
    return 0;
}

int AttackAction::useAction(Window*) {
    target->spendAction();
    report(text, buffer, "%s is using an action to react\n", target->name.c_str());
    rollReaction();
    return 0;
}

int AttackAction::extraAction(Window*) {
    // The first thing that a character does in a round costs no die.
    if (target->actions > 0 || target->actionsTaken > 0)
        target->addPenalty(new Penalty("Reaction", DiceCode(1, 0), 1, "All"));
    target->actionsTaken = clampedSum(target->actionsTaken, 1);
    report(text, buffer, "%s is taking an extra action to react\n", target->name.c_str());
    rollReaction();
    return 0;
}

int AttackAction::fullReaction(Window*) {
    target->loseRound();
    report(text, buffer, "%s is doing a full reaction\n", target->name.c_str());
    rollReaction();
    return 0;
}

void AttackAction::rollReaction() {
    closeReactionWindow();
    // Empty hands count as a melee weapon: they parry with "Melee Parry".
    const char* name = isRanged                                     ? "Dodge"
                       : dynamic_cast<MeleeWeapon*>(target->weapon) ? "Melee Parry"
                                                                    : "Brawling Parry";
    auto* roll = new Roll(parent, target, name, 5, -1, -1);
    roll->closeHandler.bind(this, &AttackAction::reactionRolled);
}

int AttackAction::reactionRolled(Window* sender) {
    auto* roll = dynamic_cast<Roll*>(sender);
    if (!roll) return 0;
    defence = roll->total;
    (isRanged ? target->dodge : target->parry) = defence;
    // An ordinary reaction takes the place of the difficulty; a full one comes on top of it.
    if (target->actionsTaken < 0) defence = clampedSum(defence, difficulty());
    targetNumber = clampedSum(targetNumber, defence);
    report(text, buffer, "%s rolled %s of %d\nTarget number is %d\n", target->name.c_str(), reactionName(),
           defence, targetNumber);
    rollAttack();
    return 0;
}

void AttackAction::rollAttack() {
    auto* roll = new Roll(parent, attacker, attacker->weapon->skill, 2, -1, -1);
    roll->closeHandler.bind(this, &AttackAction::attackRolled);
}

int AttackAction::attackRolled(Window* sender) {
    auto* roll = dynamic_cast<Roll*>(sender);
    if (!roll) return 0;
    attackRoll = roll->total;
    attacker->spendAction();
    // The round is spent whether it hits or not.
    attacker->weapon->use();
    report(text, buffer, "%s rolled %d and ", attacker->name.c_str(), attackRoll);
    // A tie hits.
    if (attackRoll >= targetNumber) {
        report(text, buffer, "hit\n");
        auto* damageRoll = new Roll(parent, attacker, "Damage", 2, -1, -1);
        damageRoll->closeHandler.bind(this, &AttackAction::damageRolled);
    } else {
        report(text, buffer, "missed\n");
        offerOk(this);
    }
    return 0;
}

int AttackAction::damageRolled(Window* sender) {
    auto* roll = dynamic_cast<Roll*>(sender);
    if (!roll) return 0;
    damage = roll->total;
    report(text, buffer, "%s hits for %d damage\n", attacker->name.c_str(), damage);
    // "PResist" or "EResist", by the first letter of the damage type.
    int type = attacker->weapon->damageType;
    std::string name =
        damageTypeNames[type >= 0 && type < damageTypeCount ? type : 0][0] + std::string("Resist");
    auto* resistRoll = new Roll(parent, target, name, 2, -1, -1);
    resistRoll->closeHandler.bind(this, &AttackAction::resisted);
    return 0;
}

int AttackAction::resisted(Window* sender) {
    auto* roll = dynamic_cast<Roll*>(sender);
    if (!roll) return 0;
    resist = roll->total;
    damage = clampedDifference(damage, resist);
    HealthState outcome = target->takeDamage(damage);
    report(text, buffer, "%s rolls resist of %d, is %s and is now %s\n", target->name.c_str(), resist,
           healthStateNames[outcome], healthStateNames[target->health]);
    offerOk(this);
    return 0;
}
