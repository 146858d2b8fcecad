// Equipment: the item class tree, the record format shared by "items.dat" and the inventories of
// character files, and the item catalogue.
#pragma once

#include "rules/dice.h"
#include "rules/observer.h"
#include "rules/updatable.h"
#include "toolkit/delegate.h"

#include <array>
#include <istream>
#include <list>
#include <ostream>
#include <string>

class Item : public Observed {
  public:
    explicit Item(std::string name) : name(std::move(name)) {}
    ~Item() override = default;
    // A new object of the same class with every field equal, no observers, not updatable.
    virtual Item* clone() const;
    virtual void use() {}

    std::string name;
    int price = 0;
};

class Armor : public Item {
  public:
    Armor(std::string name, DiceCode physical, DiceCode energy, DiceCode penalty)
        : Item(std::move(name)), physical(physical), energy(energy), penalty(penalty) {}
    Item* clone() const override;

    // Added to "Strength" when resisting physical or energy damage.
    DiceCode physical;
    DiceCode energy;
    // Taken off "Dexterity" while worn, through an "Armor" penalty.
    DiceCode penalty;
};

// Damage types, indexed by Weapon::damageType.
inline constexpr int damageTypeCount = 2;
extern const char* const damageTypeNames[damageTypeCount];

class Weapon : public Item {
  public:
    Weapon(std::string name, std::string skill, DiceCode damage, int damageType)
        : Item(std::move(name)), skill(std::move(skill)), damage(damage), damageType(damageType) {}
    ~Weapon() override = default;
    // The number to hit at a distance in map units, or -1 out of reach.
    virtual int getDifficulty(float distance) const = 0;

    std::string skill;
    DiceCode damage;
    int damageType;
};

class RangedWeapon : public Weapon {
  public:
    // Made full: ammo is maxAmmo.
    RangedWeapon(std::string name, std::string skill, DiceCode damage, int damageType,
                 std::array<int, 4> range, int maxAmmo)
        : Weapon(std::move(name), std::move(skill), damage, damageType), range(range), maxAmmo(maxAmmo),
          ammo(maxAmmo) {}
    Item* clone() const override;
    // Spends one round, if any is left.
    void use() override;
    int getDifficulty(float distance) const override;

    // Upper bounds of the four brackets, rising.
    std::array<int, 4> range;
    int maxAmmo;
    int ammo;
};

class MeleeWeapon : public Weapon {
  public:
    MeleeWeapon(std::string name, std::string skill, DiceCode damage, int damageType, int difficulty,
                bool addStrength, DiceCode maxDamage)
        : Weapon(std::move(name), std::move(skill), damage, damageType), difficulty(difficulty),
          addStrength(addStrength), maxDamage(maxDamage) {}
    Item* clone() const override;
    // Within one unit, the difficulty class's number; beyond, -1.
    int getDifficulty(float distance) const override;

    // A difficulty class, 0 to 5.
    int difficulty;
    bool addStrength;
    // Cap on damage with strength added; 0D+0 means none.
    DiceCode maxDamage;
};

// Counts down only while it is in updatables, which the throw arranges; then goes off.
class Grenade : public Weapon, public Updatable {
  public:
    Grenade(std::string name, std::string skill, std::array<DiceCode, 4> blastDamage,
            std::array<int, 4> radius, std::array<int, 4> range, int damageType)
        : Weapon(std::move(name), std::move(skill), DiceCode(), damageType), blastDamage(blastDamage),
          radius(radius), range(range) {}
    ~Grenade() override = default;
    Item* clone() const override;
    int getDifficulty(float distance) const override;
    // The fuse burns down by amount; once below 0 the grenade explodes, and the handler may delete
    // it, so nothing here touches the grenade after that.
    void update(int amount) override;
    void explode();

    std::array<DiceCode, 4> blastDamage;
    std::array<int, 4> radius;
    std::array<int, 4> range;
    int fuse = 0;
    DelegateOf<Grenade> explodeHandler;
};

// The two defaults that stand in a character's weapon and armor slots when nothing is equipped;
// they live for the whole run and stand in no inventory.
extern MeleeWeapon* const unarmedWeapon;
extern Armor* const noArmor;

// The catalogue in file order; owns its entries.
extern std::list<Item*> allItems;

// Each reads one record line of its class. A short record gives empty strings and zeros; a melee
// difficulty is clamped into the table and a damage type into the known types.
Item* readItem(std::istream& in);
RangedWeapon* readRangedWeapon(std::istream& in);
MeleeWeapon* readMeleeWeapon(std::istream& in);
Armor* readArmor(std::istream& in);
Grenade* readGrenade(std::istream& in);
// The record that follows a header line: null when the line is no item header.
Item* readItemEntry(const std::string& header, std::istream& in);

// Each writes one record line of its class.
void writeItem(std::ostream& out, const Item& item);
void writeRangedWeapon(std::ostream& out, const RangedWeapon& weapon);
void writeMeleeWeapon(std::ostream& out, const MeleeWeapon& weapon);
void writeArmor(std::ostream& out, const Armor& armor);
void writeGrenade(std::ostream& out, const Grenade& grenade);
// The header line of the item's class and its record.
void writeItemEntry(std::ostream& out, const Item& item);

// Reads "items.dat": header and record pairs; other lines are passed over.
void loadItems();
void loadItems(std::istream& in);
// Deletes the catalogue.
void clearItems();
