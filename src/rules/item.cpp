// The item classes, their record format, and the item catalogue.
#include "rules/item.h"

#include "rules/field_reader.h"

#include <algorithm>
#include <cmath>
#include <fstream>

namespace {
MeleeWeapon unarmed("Unarmed", "Brawling", DiceCode(), 0, 0, true, DiceCode());
Armor bareSkin("No Armor", DiceCode(), DiceCode(), DiceCode());

// Toward zero, kept to a range where adding the class's number cannot overflow.
int truncate(float value) {
    if (std::isnan(value)) return 0;
    return static_cast<int>(std::clamp(value, -1.0e6f, 1.0e6f));
}

// Within a bracket the difficulty rises by 5 over the bracket's length and reaches the class's
// number at its far end; a distance on a bound already belongs to the next bracket.
int bracketDifficulty(const std::array<int, 4>& range, float distance) {
    int previous = 0;
    for (int i = 0; i < 4; ++i) {
        if (static_cast<float>(range[i]) > distance) {
            float step = static_cast<float>(static_cast<long long>(range[i]) - previous) / 5.0f;
            return difficultyOfClass(i) + truncate((distance - static_cast<float>(range[i])) / step);
        }
        previous = range[i];
    }
    return -1;
}

int knownDamageType(int type) {
    return std::clamp(type, 0, damageTypeCount - 1);
}

std::array<int, 4> numbers(FieldReader& fields) {
    std::array<int, 4> values;
    for (int& v : values)
        v = fields.number();
    return values;
}

void writeNumbers(std::ostream& out, const std::array<int, 4>& values) {
    for (int v : values)
        out << v << '|';
}

// Every record is one line, so a reader never runs past its own record.
FieldReader recordLine(std::istream& in, std::string& line) {
    readLine(in, line);
    return FieldReader(line);
}
} // namespace

MeleeWeapon* const unarmedWeapon = &unarmed;
Armor* const noArmor = &bareSkin;

const char* const damageTypeNames[damageTypeCount] = {"Physical", "Energy"};

std::list<Item*> allItems;

Item* Item::clone() const {
    return new Item(*this);
}
Item* Armor::clone() const {
    return new Armor(*this);
}
Item* RangedWeapon::clone() const {
    return new RangedWeapon(*this);
}
Item* MeleeWeapon::clone() const {
    return new MeleeWeapon(*this);
}
Item* Grenade::clone() const {
    return new Grenade(*this);
}

void RangedWeapon::use() {
    if (ammo > 0) --ammo;
}

int RangedWeapon::getDifficulty(float distance) const {
    return bracketDifficulty(range, distance);
}

int MeleeWeapon::getDifficulty(float distance) const {
    if (distance > 1.0f) return -1;
    return difficultyOfClass(difficulty);
}

int Grenade::getDifficulty(float distance) const {
    return bracketDifficulty(range, distance);
}

void Grenade::update(int amount) {
    fuse = clampedSum(fuse, -amount);
    if (fuse < 0) explode();
}

void Grenade::explode() {
    explodeHandler(this);
}

Item* readItem(std::istream& in) {
    std::string line;
    FieldReader fields = recordLine(in, line);
    Item* item = new Item(std::string(fields.text()));
    item->price = fields.number();
    return item;
}

RangedWeapon* readRangedWeapon(std::istream& in) {
    std::string line;
    FieldReader fields = recordLine(in, line);
    std::string name(fields.text());
    std::string skill(fields.text());
    DiceCode damage = fields.code();
    int damageType = knownDamageType(fields.number());
    int ammo = fields.number();
    int maxAmmo = fields.number();
    std::array<int, 4> range = numbers(fields);
    auto* weapon = new RangedWeapon(name, skill, damage, damageType, range, maxAmmo);
    weapon->ammo = ammo;
    weapon->price = fields.number();
    return weapon;
}

MeleeWeapon* readMeleeWeapon(std::istream& in) {
    std::string line;
    FieldReader fields = recordLine(in, line);
    std::string name(fields.text());
    std::string skill(fields.text());
    DiceCode damage = fields.code();
    bool addStrength = fields.number() != 0;
    DiceCode maxDamage = fields.code();
    int damageType = knownDamageType(fields.number());
    // The screens offer only the six classes; a hand-edited file is held to them as well.
    int difficulty = std::clamp(fields.number(), 0, difficultyClassCount - 1);
    auto* weapon = new MeleeWeapon(name, skill, damage, damageType, difficulty, addStrength, maxDamage);
    weapon->price = fields.number();
    return weapon;
}

Armor* readArmor(std::istream& in) {
    std::string line;
    FieldReader fields = recordLine(in, line);
    std::string name(fields.text());
    DiceCode physical = fields.code();
    DiceCode energy = fields.code();
    DiceCode penalty = fields.code();
    auto* armor = new Armor(name, physical, energy, penalty);
    armor->price = fields.number();
    return armor;
}

Grenade* readGrenade(std::istream& in) {
    std::string line;
    FieldReader fields = recordLine(in, line);
    std::string name(fields.text());
    std::string skill(fields.text());
    // Files hold the dice of the blast only.
    std::array<DiceCode, 4> blast;
    for (DiceCode& d : blast)
        d = DiceCode(fields.number(), 0);
    std::array<int, 4> radius = numbers(fields);
    int damageType = knownDamageType(fields.number());
    std::array<int, 4> range = numbers(fields);
    auto* grenade = new Grenade(name, skill, blast, radius, range, damageType);
    grenade->price = fields.number();
    return grenade;
}

Item* readItemEntry(const std::string& header, std::istream& in) {
    if (header == "[Item]") return readItem(in);
    if (header == "[Ranged Weapon]") return readRangedWeapon(in);
    if (header == "[Melee Weapon]") return readMeleeWeapon(in);
    if (header == "[Armor]") return readArmor(in);
    if (header == "[Grenade]") return readGrenade(in);
    return nullptr;
}

void writeItem(std::ostream& out, const Item& item) {
    out << item.name << '|' << item.price << '\n';
}

void writeRangedWeapon(std::ostream& out, const RangedWeapon& w) {
    out << w.name << '|' << w.skill << '|' << w.damage.dice << '|' << w.damage.pips << '|' << w.damageType
        << '|' << w.ammo << '|' << w.maxAmmo << '|';
    writeNumbers(out, w.range);
    out << w.price << '\n';
}

void writeMeleeWeapon(std::ostream& out, const MeleeWeapon& w) {
    out << w.name << '|' << w.skill << '|' << w.damage.dice << '|' << w.damage.pips << '|'
        << (w.addStrength ? 1 : 0) << '|' << w.maxDamage.dice << '|' << w.maxDamage.pips << '|'
        << w.damageType << '|' << w.difficulty << '|' << w.price << '\n';
}

void writeArmor(std::ostream& out, const Armor& a) {
    out << a.name << '|' << a.physical.dice << '|' << a.physical.pips << '|' << a.energy.dice << '|'
        << a.energy.pips << '|' << a.penalty.dice << '|' << a.penalty.pips << '|' << a.price << '\n';
}

void writeGrenade(std::ostream& out, const Grenade& g) {
    out << g.name << '|' << g.skill << '|';
    for (const DiceCode& d : g.blastDamage)
        out << d.dice << '|';
    writeNumbers(out, g.radius);
    out << g.damageType << '|';
    writeNumbers(out, g.range);
    out << g.price << '\n';
}

void writeItemEntry(std::ostream& out, const Item& item) {
    // Anything that is none of the four classes with a record of its own is kept as a plain item.
    if (auto* w = dynamic_cast<const RangedWeapon*>(&item)) {
        out << "[Ranged Weapon]\n";
        writeRangedWeapon(out, *w);
    } else if (auto* m = dynamic_cast<const MeleeWeapon*>(&item)) {
        out << "[Melee Weapon]\n";
        writeMeleeWeapon(out, *m);
    } else if (auto* a = dynamic_cast<const Armor*>(&item)) {
        out << "[Armor]\n";
        writeArmor(out, *a);
    } else if (auto* g = dynamic_cast<const Grenade*>(&item)) {
        out << "[Grenade]\n";
        writeGrenade(out, *g);
    } else {
        out << "[Item]\n";
        writeItem(out, item);
    }
}

void loadItems() {
    std::ifstream in("items.dat");
    if (in) loadItems(in);
}

void loadItems(std::istream& in) {
    std::string line;
    while (readLine(in, line))
        if (Item* item = readItemEntry(line, in)) allItems.push_back(item);
}

void clearItems() {
    for (Item* item : allItems)
        delete item;
    allItems.clear();
}
