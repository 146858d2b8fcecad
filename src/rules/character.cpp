// Characters: skills and penalties, equipment, the health state machine and its aging.
#include "rules/character.h"

#include "rules/faction.h"
#include "rules/updatable.h"

#include <algorithm>
#include <vector>

const char* const healthStateNames[healthStateCount] = {
    "Healthy",          "Wounded", "Wounded Twice", "Incapacitated",
    "Mortally Wounded", "Killed",  "Stunned",       "Unconscious",
};

std::list<Character*> allCharacters;
std::list<Character*> allNpcs;

Character::Character(bool isNpc) : isNpc(isNpc) {
    (isNpc ? allNpcs : allCharacters).push_back(this);
    addUpdatable(this);
}

Character::Character(const Character& other)
    : Observed(other), Updatable(other), name(other.name), health(other.health), stuns(other.stuns),
      unconscious(other.unconscious), move(other.move), characterPoints(other.characterPoints),
      forcePoints(other.forcePoints), darkSidePoints(other.darkSidePoints), actions(other.actions),
      actionsTaken(other.actionsTaken), cell(other.cell), moveSpeed(other.moveSpeed), dodge(other.dodge),
      parry(other.parry), posture(other.posture), moved(other.moved), initiative(other.initiative),
      isNpc(other.isNpc) {
    for (const Penalty* p : other.penalties)
        penalties.push_back(new Penalty(*p));
    for (const Item* i : other.inventory) {
        Item* copy = i->clone();
        inventory.push_back(copy);
        // The "Armor" penalty came over with the penalties, so the slots are set without equip.
        if (i == other.weapon) weapon = static_cast<Weapon*>(copy);
        if (i == other.armor) armor = static_cast<Armor*>(copy);
    }
    for (const Skill* s : other.skills)
        skills.push_back(new Skill(*s));
    // A copy ages like any other character: its penalties run out and it wakes.
    addUpdatable(this);
    if (other.faction) other.faction->addMember(this);
}

Character::~Character() {
    allCharacters.remove(this);
    allNpcs.remove(this);
    if (faction) faction->removeMember(this);
    for (Penalty* p : penalties)
        delete p;
    for (Penalty* p : retired)
        delete p;
    for (Item* i : inventory)
        delete i;
    for (Skill* s : skills)
        delete s;
}

Skill Character::getSkill(const std::string& name) const {
    // The nearest of the name and its ancestors that the character has, the first of the list
    // among equals: one walk over the skills, however deep the tree.
    Lineage lineage(name);
    const Skill* nearest = nullptr;
    std::size_t best = lineage.size();
    for (const Skill* own : skills) {
        std::size_t rank = lineage.rank(own->name);
        if (rank < best) nearest = own, best = rank;
    }
    return nearest ? *nearest : Skill("Not found", DiceCode(), 0);
}

DiceCode Character::getPenalty(const std::string& name) const {
    Lineage lineage(name);
    DiceCode sum;
    for (const Penalty* p : penalties)
        if (p->applyTo == "All" || (!p->applyTo.empty() && lineage.rank(p->applyTo) < lineage.size()))
            sum += p->dice;
    return sum;
}

DiceCode effectiveCode(const Character& c, const std::string& name) {
    return c.getSkill(name).level - c.getPenalty(name);
}

bool Character::addSkill(Skill* s) {
    if (s == nullptr) return false;
    for (const Skill* own : skills) {
        if (own->name == s->name) {
            delete s;
            return false;
        }
    }
    // A skill just learned starts where its parent stands.
    if (!s->level) s->level = getSkill(parentOf(s->name)).level;
    skills.push_back(s);
    notifyChanged();
    return true;
}

void Character::addItem(Item* i) {
    if (i == nullptr) return;
    inventory.push_back(i);
    notifyChanged();
}

void Character::addPenalty(Penalty* p) {
    if (p == nullptr) return;
    penalties.push_back(p);
    notifyChanged();
}

void Character::removePenalty(Penalty* p) {
    auto it = std::find(penalties.begin(), penalties.end(), p);
    if (it == penalties.end()) return;
    penalties.erase(it);
    if (aging)
        retired.insert(p);
    else
        delete p;
}

void Character::equip(Item* i) {
    if (auto* w = dynamic_cast<Weapon*>(i)) {
        weapon = w;
    } else if (auto* a = dynamic_cast<Armor*>(i)) {
        unequip(armor);
        armor = a;
        if (a->penalty) addPenalty(new Penalty("Armor", a->penalty, -1, "Dexterity"));
    } else {
        return;
    }
    notifyChanged();
}

void Character::unequip(Item* i) {
    if (i == nullptr) return;
    if (i == weapon) weapon = unarmedWeapon;
    if (i == armor) {
        if (armor->penalty) {
            for (Penalty* p : penalties) {
                if (p->reason == "Armor" && p->dice == armor->penalty) {
                    removePenalty(p);
                    break;
                }
            }
        }
        armor = noArmor;
    }
    notifyChanged();
}

void Character::woundPenalties(int count) {
    for (int i = 0; i < count; ++i)
        addPenalty(new Penalty("Wound", DiceCode(1, 0), -1, "All"));
}

void Character::setHealth(int state) {
    std::vector<Penalty*> wounds;
    for (Penalty* p : penalties)
        if (p->reason == "Wound") wounds.push_back(p);
    for (Penalty* p : wounds)
        removePenalty(p);
    unconscious = 0;
    switch (state) {
    case Wounded:
        woundPenalties(1);
        break;
    case WoundedTwice:
        woundPenalties(2);
        break;
    case Incapacitated:
        unconscious = rollDice(10) * 12;
        woundPenalties(2);
        break;
    case MortallyWounded:
    case Killed:
        unconscious = -1;
        woundPenalties(2);
        break;
    default:
        break;
    }
    health = state;
    notifyChanged();
}

HealthState Character::takeDamage(int margin) {
    HealthState hit;
    if (margin < 0) {
        hit = Healthy;
    } else if (margin <= 3) {
        addPenalty(new Penalty("Stun", DiceCode(1, 0), 2, "All"));
        addPenalty(new Penalty("Stun Effect", DiceCode(0, 0), 360, "All"));
        if (health == Healthy) setHealth(Stunned);
        stuns = clampedSum(stuns, 1);
        // Stuns add up: as many as the dice of Strength knock the character out.
        hit = Stunned;
        if (stuns >= getSkill("Strength").level.dice) {
            unconscious = rollDice(2) * 12;
            hit = Unconscious;
        }
    } else if (margin <= 8) {
        hit = Wounded;
        if (health >= Healthy && health <= Incapacitated) setHealth(health + 1);
        // A wound knocks the character down, whatever the state, and ends its round.
        posture = 2;
        loseRound();
    } else if (margin <= 12) {
        hit = Incapacitated;
        setHealth(health == MortallyWounded ? Killed
                  : health == Incapacitated ? MortallyWounded
                                            : Incapacitated);
    } else if (margin <= 15) {
        hit = MortallyWounded;
        setHealth(health == Incapacitated || health == MortallyWounded ? Killed : MortallyWounded);
    } else {
        hit = Killed;
        setHealth(Killed);
    }
    notifyChanged();
    return hit;
}

void Character::update(int amount) {
    if (unconscious > 0) unconscious = std::max(0, clampedSum(unconscious, -amount));

    // setHealth may remove penalties in the middle of this walk; the walk goes over the penalties
    // that stood at its start and skips the ones that have gone since.
    aging = true;
    std::vector<Penalty*> standing(penalties.begin(), penalties.end());
    int stunsCounted = 0;
    for (Penalty* p : standing) {
        if (retired.count(p) != 0 || p->duration == -1) continue;
        // A stun that runs out in this very round still keeps the character stunned until the next.
        if (p->reason == "Stun") ++stunsCounted;
        p->duration = clampedSum(p->duration, -amount);
        if (p->duration >= 1) continue;
        if (p->reason == "Stun Effect") stuns = std::max(0, clampedSum(stuns, -1));
        if (p->reason == "Wound") setHealth(health == WoundedTwice ? Wounded : Healthy);
        removePenalty(p);
    }
    aging = false;
    for (Penalty* p : retired)
        delete p;
    retired.clear();

    if (health == Stunned && stunsCounted == 0) setHealth(Healthy);
    notifyChanged();
}

int Character::getInitiative() const {
    return faction ? faction->initiative : initiative;
}

void Character::setInitiative(int value) {
    if (faction) {
        if (faction->initiative < 0) faction->initiative = value;
    } else {
        initiative = value;
    }
}

void Character::resetCombatState() {
    initiative = -1;
    actionsTaken = 0;
    dodge = noValue;
    parry = noValue;
    actions = noValue;
    moved = false;
    if (faction && faction->initiative >= 0) {
        faction->initiative = -1;
        faction->sortMembers();
        faction->notifyChanged();
    }
}

Character* findCharacter(const std::string& name) {
    for (Character* c : allCharacters)
        if (c->name == name) return c;
    return nullptr;
}

void clearCharacters() {
    while (!allCharacters.empty())
        delete allCharacters.front();
    while (!allNpcs.empty())
        delete allNpcs.front();
}

void clearModel() {
    clearFactions(), clearCharacters(), clearItems(), clearSkills(), deleteUpdatables();
}
