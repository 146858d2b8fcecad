// Reading and writing the character files and their index files.
#include "rules/character_files.h"

#include "rules/character.h"
#include "rules/field_reader.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace {
const char* indexFile(bool isNpc) {
    return isNpc ? "npcs.idx" : "characters.idx";
}
std::string fileName(const std::string& name, bool isNpc) {
    return name + (isNpc ? ".npc" : ".chr");
}

bool moreRecords(std::istream& in) {
    int next = peekByte(in);
    return next != -1 && next != '[';
}

void readStats(std::istream& in, Character& c) {
    std::string line;
    while (moreRecords(in) && readLine(in, line)) {
        FieldReader fields(line);
        std::string name(fields.text());
        int dice = fields.number();
        int pips = fields.number();
        // A skill that the catalogue does not know is dropped.
        c.addSkill(makeSkill(name, dice, pips));
    }
}

void readHealth(std::istream& in, Character& c) {
    std::string line;
    readLine(in, line);
    FieldReader fields(line);
    // Stored as it stands, without the penalties that setHealth would add: those are in the file.
    int health = fields.number();
    c.health = health >= Healthy && health <= Stunned ? health : Healthy;
    c.stuns = fields.number();
    c.unconscious = fields.number();
}

void readPoints(std::istream& in, Character& c) {
    std::string line;
    readLine(in, line);
    FieldReader fields(line);
    c.characterPoints = fields.number();
    c.forcePoints = fields.number();
    c.darkSidePoints = fields.number();
}

void readPenalties(std::istream& in, Character& c) {
    std::string line;
    while (moreRecords(in) && readLine(in, line)) {
        FieldReader fields(line);
        std::string reason(fields.text());
        DiceCode dice = fields.code();
        int duration = fields.number();
        std::string applyTo(fields.text());
        c.addPenalty(new Penalty(reason, dice, duration, applyTo));
    }
}

// Items until a line that is no item header, which ends the section; "[endInventory]" is one.
void readInventory(std::istream& in, Character& c) {
    std::string line;
    while (readLine(in, line)) {
        Item* item = readItemEntry(line, in);
        if (item == nullptr) return;
        readLine(in, line);
        c.addItem(item);
        // Equipping here is what restores the "Armor" penalty that the writer leaves out.
        if (line == "1") c.equip(item);
    }
}

bool lacksFinalLineEnd(const char* path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in || in.tellg() <= 0) return false;
    in.seekg(-1, std::ios::end);
    return in.get() != '\n';
}

// Lists the name unless the index has it already. An index that does not exist gets no entry.
void listInIndex(const std::string& name, bool isNpc) {
    std::ifstream in(indexFile(isNpc));
    if (!in) return;
    std::string line;
    while (readLine(in, line))
        if (line == name) return;
    in.close();
    // An index whose last line lacks its line end would otherwise run into the new name.
    bool separate = lacksFinalLineEnd(indexFile(isNpc));
    std::ofstream out(indexFile(isNpc), std::ios::app);
    if (separate) out << '\n';
    out << name << '\n';
}

void writeCharacter(std::ostream& out, const Character& c, const Weapon* weapon, const Armor* armor) {
    out << "[Stats]\n";
    for (const Skill* s : c.skills)
        out << s->name << '|' << s->level.dice << '|' << s->level.pips << '\n';
    out << "[Health]\n" << c.health << '|' << c.stuns << '|' << c.unconscious << '\n';
    out << "[Points]\n" << c.characterPoints << '|' << c.forcePoints << '|' << c.darkSidePoints << '\n';
    out << "[Penalties]\n";
    for (const Penalty* p : c.penalties)
        out << p->reason << '|' << p->dice.dice << '|' << p->dice.pips << '|' << p->duration << '|'
            << p->applyTo << '\n';
    out << "[Inventory]\n";
    for (const Item* item : c.inventory) {
        writeItemEntry(out, *item);
        out << (item == weapon || item == armor ? "1" : "0") << '\n';
    }
    out << "[endInventory]\n";
}
} // namespace

void loadCharacters() {
    for (bool isNpc : {false, true}) {
        std::ifstream index(indexFile(isNpc));
        if (!index) return;
        std::string name;
        while (readLine(index, name))
            loadCharacter(name, isNpc);
    }
}

Character* loadCharacter(const std::string& name, bool isNpc) {
    std::ifstream in(fileName(name, isNpc));
    if (!in) return nullptr;
    Character* c = new Character(isNpc);
    c->name = name;
    readCharacter(in, *c);
    return c;
}

void readCharacter(std::istream& in, Character& c) {
    std::string line;
    while (readLine(in, line)) {
        if (line == "[Stats]")
            readStats(in, c);
        else if (line == "[Health]")
            readHealth(in, c);
        else if (line == "[Inventory]")
            readInventory(in, c);
        else if (line == "[Points]")
            readPoints(in, c);
        else if (line == "[Penalties]")
            readPenalties(in, c);
    }
}

bool saveCharacter(Character& c, std::string* failure) {
    listInIndex(c.name, c.isNpc);

    // Written beside the old file and renamed over it, so that a failed save leaves the old one whole.
    std::string target = fileName(c.name, c.isNpc);
    std::string temporary = target + ".saving";
    auto fail = [&] {
        if (failure) *failure = "cannot write \"" + target + "\": " + std::strerror(errno);
        return false;
    };
    std::ofstream out(temporary, std::ios::trunc | std::ios::binary);
    if (!out) return fail();

    // The "Armor" penalty is not stored: unequipping takes it out, and equipping puts it back.
    Weapon* weapon = c.weapon;
    Armor* armor = c.armor;
    c.unequip(weapon);
    c.unequip(armor);
    writeCharacter(out, c, weapon, armor);
    c.equip(weapon);
    c.equip(armor);

    out.close();
    if (!out || std::rename(temporary.c_str(), target.c_str()) != 0) {
        bool failed = fail();
        std::remove(temporary.c_str());
        return failed;
    }
    return true;
}
