// A person of the game, player character or not: skills, items, penalties, health, points and the
// per-round values of combat, with the rules of damage, stuns and healing.
#pragma once

#include "rules/dice.h"
#include "rules/item.h"
#include "rules/observer.h"
#include "rules/skill.h"
#include "rules/updatable.h"

#include <climits>
#include <list>
#include <string>
#include <unordered_set>

class Cell;
class Faction;

// A temporary or lasting malus. The dice are a positive amount that the user of the sum subtracts.
struct Penalty {
    Penalty(std::string reason = {}, DiceCode dice = {}, int duration = 0, std::string applyTo = {})
        : reason(std::move(reason)), dice(dice), duration(duration), applyTo(std::move(applyTo)) {}

    // "Wound", "Stun", "Stun Effect" and "Armor" have meaning to the rules.
    std::string reason;
    DiceCode dice;
    // Rounds left; -1 is unlimited.
    int duration;
    // A skill or attribute name, or "All".
    std::string applyTo;
};

enum HealthState : int {
    Healthy = 0,
    Wounded = 1,
    WoundedTwice = 2,
    Incapacitated = 3,
    MortallyWounded = 4,
    Killed = 5,
    Stunned = 6,
    // Names the outcome of a hit only; health never takes it.
    Unconscious = 7,
};
inline constexpr int healthStateCount = 8;
extern const char* const healthStateNames[healthStateCount];

// Marks "not declared" in actions and "none" in dodge and parry.
inline constexpr int noValue = INT_MIN;

class Character : public Observed, public Updatable {
  public:
    // Joins allNpcs or allCharacters, and updatables.
    explicit Character(bool isNpc);
    // A deep copy that joins updatables and the source's faction, but neither character list: the
    // caller files it, and may change isNpc first.
    Character(const Character& other);
    Character& operator=(const Character&) = delete;
    // Leaves its list, updatables and its faction; deletes what it owns.
    ~Character() override;

    // The character's own copy of the skill or, climbing the parents, of the first ancestor it has;
    // else "Not found" at 0D+0.
    Skill getSkill(const std::string& name) const;
    // The sum of the penalties on the skill, on any of its ancestors, and on "All".
    DiceCode getPenalty(const std::string& name) const;

    // The three take ownership. A skill of a name the character already has is deleted and false
    // comes back; a skill at 0D+0 starts at the level of its parent. Null is ignored.
    bool addSkill(Skill* s);
    void addItem(Item* i);
    void addPenalty(Penalty* p);
    // Removes the penalty from the list and deletes it; one that is not in the list is left alone.
    void removePenalty(Penalty* p);

    // A weapon goes into the weapon slot; an armor replaces the worn one and brings its "Armor"
    // penalty on "Dexterity". Other items change nothing.
    void equip(Item* i);
    // Frees the slot that holds the item, and takes the armor's penalty back off.
    void unequip(Item* i);

    // Sets the state with the "Wound" penalties and unconsciousness that belong to it.
    void setHealth(int state);
    // Turns the margin of damage over resistance into a stun or a wound; returns what the hit was.
    HealthState takeDamage(int margin);
    // One round of healing: unconsciousness wears off, penalties run out, stuns fade.
    void update(int amount) override;

    // Moves, in character_moves.cpp. Charges a way of that length over terrain of that difficulty
    // class: the speed it takes, the actions that speed costs, and moved. Gives the new speed class;
    // 0 for no way; -1, with nothing changed, for a way too short to stop at the present speed; 1,
    // with nothing changed, for a way beyond the budget or a second move in the round.
    int applyMove(float distance, int terrainClass);
    // Whether a way of that length lies within moveBudget, give or take the rounding of its length.
    bool canReach(float distance) const;
    // The penalties and the fall of a run failed by that margin. Gives the share of the way walked,
    // as a divisor: 1, 2 or 4.
    int applyMishap(int margin);
    // How far the character can run now, in map units: the move after a standstill, twice the move
    // after a cautious move, four times after anything faster for one who does nothing else this
    // round, else twice.
    float moveBudget() const;
    // The shortest way the character can stop at: at speed, it cannot stop dead.
    float shortestStop() const;
    // One action of the round goes: one fewer left, one more taken.
    void spendAction();
    // The rest of the round is gone: no actions left, and none can be taken.
    void loseRound();

    int getInitiative() const;
    // A faction keeps the value that it was given first.
    void setInitiative(int value);
    // The start of a round: nothing declared, no reaction standing, initiative to be rolled again.
    void resetCombatState();

    std::string name;
    std::list<Penalty*> penalties;
    std::list<Item*> inventory;
    std::list<Skill*> skills;
    int health = Healthy;
    int stuns = 0;
    // Rounds left; -1 never wakes by itself.
    int unconscious = 0;
    int move = 10;
    int characterPoints = 0;
    int forcePoints = 0;
    int darkSidePoints = 0;
    int actions = 0;
    // -1 when the character has lost the rest of the round.
    int actionsTaken = 0;
    Cell* cell = nullptr;
    int moveSpeed = 0;
    int dodge = noValue;
    int parry = noValue;
    // 0 standing, 1 fallen in a move, 2 knocked down.
    int posture = 0;
    bool moved = false;
    int initiative = -1;
    bool isNpc;
    Weapon* weapon = unarmedWeapon;
    Armor* armor = noArmor;
    Faction* faction = nullptr;

  private:
    void woundPenalties(int count);

    // While update walks the penalties, a removed penalty is kept here instead of being deleted,
    // so that the walk can tell it from a live one and no address is reused under it.
    bool aging = false;
    std::unordered_set<Penalty*> retired;
};

// The skill's level less the penalties on it: the one measure of what a character can still do.
DiceCode effectiveCode(const Character& c, const std::string& name);

// In order of creation; the characters own themselves.
extern std::list<Character*> allCharacters;
extern std::list<Character*> allNpcs;

// The first player character of that exact name, or null; NPCs are not searched.
Character* findCharacter(const std::string& name);

// Deletes every character and NPC.
void clearCharacters();

// Empties the whole model: factions, characters, items, skills, and last what nothing but the list
// of updatables holds (a grenade still burning). Windows that point into the model go first.
void clearModel();
